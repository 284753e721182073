#include "core/site/modem_catalogue.h"
#include "tests/support/settings_file.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

using namespace std::string_literals;
using Pairs = std::vector<std::pair<std::string, std::string>>;

// A directory with a modem.dat of the given bytes.
class Catalogue : public testing::Test
{
protected:
    [[nodiscard]] std::filesystem::path Path() const { return settings_.Directory() / "modem.dat"; }

    void Write(const std::string& bytes) const
    {
        std::ofstream file(Path(), std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    [[nodiscard]] Pairs Read() const
    {
        const ModemCatalogue catalogue(Path());
        Pairs pairs;
        for (std::size_t line = 0; line < catalogue.Models().Count(); ++line) {
            const ModemModel model = catalogue.Models().At(line);
            pairs.emplace_back(model.name, model.initString);
        }
        return pairs;
    }

    [[nodiscard]] Pairs ReadBytes(const std::string& bytes) const
    {
        Write(bytes);
        return Read();
    }

private:
    SettingsFile settings_; // only for its directory
};

TEST_F(Catalogue, AMissingFileGivesNoModel)
{
    EXPECT_EQ(Read(), Pairs());
}

TEST_F(Catalogue, EachLineIsAModel)
{
    const Pairs both{{"A", "1"}, {"B", "2"}};
    const Pairs blankBetween{{"A", "1"}, {"", ""}, {"B", "2"}};
    const std::vector<std::pair<std::string, Pairs>> files{
        {"", {}},
        {"A=1\r\nB=2\r\n", both},
        {"A=1\nB=2\n", both},
        {"A=1\rB=2\r", both},
        {"A=1\r\nB=2", both},
        {"A=1\nB=2\r", both},
        {"A=1\r\n\r\nB=2\r\n", blankBetween},
        {"A=1\n\rB=2", blankBetween},
        {"\n", {{"", ""}}},
        {"ATZ\r\nB=2\r\n", {{"", "ATZ"}, {"B", "2"}}}, // without "=" all string
        {"Modello X=ATZ=1\r\n", {{"Modello X", "ATZ=1"}}},
        {" A =\t1 \r\n", {{" A ", "\t1 "}}},
        {"A\0B=1\0\r\nC=2"s, {{"A\0B"s, "1\0"s}, {"C", "2"}}},
        {"Velocit\xE0 \x80=AT\xE8\r\n", {{"Velocità €", "ATè"}}},
    };
    for (const auto& [bytes, models] : files)
        EXPECT_EQ(ReadBytes(bytes), models) << testing::PrintToString(bytes);
}

TEST_F(Catalogue, ThereIsNoLimitOnTheNumberOfLines)
{
    std::string bytes;
    Pairs expected;
    for (int i = 0; i < 10'000; ++i) {
        const std::string number = std::to_string(i);
        bytes.append("Modem ").append(number).append("=S0=").append(number).append("\r\n");
        expected.emplace_back("Modem " + number, "S0=" + number);
    }

    EXPECT_EQ(ReadBytes(bytes), expected);
}

TEST_F(Catalogue, ALineMayBeLongerThanOneReadOfTheFile)
{
    const std::string command(200'000, 'x');

    EXPECT_EQ(ReadBytes("A=" + command + "\r\nB=2"), (Pairs{{"A", command}, {"B", "2"}}));
}

TEST_F(Catalogue, ALineEndMayLieAcrossTwoReadsOfTheFile)
{
    for (std::size_t length = 65534; length <= 65537; ++length) {
        SCOPED_TRACE(length);
        const std::string line(length, 'x');

        EXPECT_EQ(ReadBytes(line + "\r\nB=2"), (Pairs{{"", line}, {"B", "2"}}));
    }
}

TEST_F(Catalogue, OneMebibyteIsRead)
{
    const std::string first = "A=" + std::string(ModemCatalogue::mostBytes - 6, 'x') + "\n";

    EXPECT_EQ(ReadBytes(first + "B=2"), (Pairs{{"A", first.substr(2, first.size() - 3)}, {"B", "2"}}));
    EXPECT_EQ(ReadBytes(first + "B=2\nC=3\n").size(), 1U) << "the second line's end is beyond the limit";
    EXPECT_EQ(ReadBytes(first.substr(1) + "B=2\nC=3\n").size(), 2U)
        << "the second line's end is the last byte";
    EXPECT_EQ(ReadBytes(std::string(ModemCatalogue::mostBytes + 1, 'x') + "\nB=2"), Pairs());
}

TEST_F(Catalogue, TheLimitMayLieInsideALineEnd)
{
    const std::string first = "A=" + std::string(ModemCatalogue::mostBytes - 3, 'x') + "\r";

    EXPECT_EQ(ReadBytes(first + "\nB=2\r\n").size(), 1U);
}

TEST_F(Catalogue, ADirectoryInItsPlaceGivesNoModel)
{
    std::filesystem::create_directory(Path());

    EXPECT_EQ(Read(), Pairs());
}

TEST_F(Catalogue, APathThroughAFileGivesNoModel)
{
    Write("A=1\r\n");

    EXPECT_EQ(ModemCatalogue(Path() / "modem.dat").Models().Count(), 0U);
}

} // namespace

} // namespace corvrec
