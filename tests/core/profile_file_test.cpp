#include "core/file/profile_file.h"
#include "tests/support/settings_file.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>

namespace corvrec
{

namespace
{

// Sites "[S0]", "[S1]" ... with the given number of keys each: "K0=S0 0", "K1=S0 1" ...
std::string ManySites(std::size_t sites, std::size_t keys)
{
    std::string bytes;
    for (std::size_t site = 0; site < sites; ++site) {
        bytes += "[S" + std::to_string(site) + "]\r\n";
        for (std::size_t key = 0; key < keys; ++key)
            bytes +=
                "K" + std::to_string(key) + "=" + std::to_string(site) + " " + std::to_string(key) + "\r\n";
    }
    return bytes;
}

TEST(ProfileFile, AMissingFileReadsAsTheFallback)
{
    SettingsFile file;

    EXPECT_EQ(file->Read("MI", "Ogni", "-CaVacca-", 100), "-CaVacca-");
    EXPECT_EQ(file->Keys("MI", "-CaVacca-", 100), "-CaVacca-");
    EXPECT_FALSE(file.Exists());
}

TEST(ProfileFile, TheFirstWriteCreatesTheFile)
{
    SettingsFile file;

    EXPECT_TRUE(file->Write("Siti", "MI", "Milano"));

    EXPECT_EQ(file.Bytes(), "[Siti]\r\nMI=Milano\r\n");
}

TEST(ProfileFile, NoOtherFileIsLeftInTheDirectory)
{
    SettingsFile file("[A]\r\nk=1\r\n");

    file->Write("A", "k", std::string(10'000, 'x'));
    file->DeleteSection("A");
    file->Flush();

    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(file.Directory()), {}), 1);
}

TEST(ProfileFile, AFlushKeepsTheBytesAndClosesTheFile)
{
    SettingsFile file("[A]\r\nk=1\r\n");

    file->Write("A", "k", "2");
    file->Flush();

    EXPECT_EQ(file.Bytes(), "[A]\r\nk=2\r\n");
    file.Remove(); // on Windows an open file cannot be removed
    EXPECT_FALSE(file.Exists());
    file->Flush(); // does not create a missing file
    EXPECT_FALSE(file.Exists());
}

TEST(ProfileFile, AChangeByAnotherProgramIsSeenByTheVeryNextCall)
{
    SettingsFile file("[A]\r\nk=1\r\n");
    for (int i = 0; i < 200; ++i) {
        const std::string value = std::to_string(100 + i); // the same size, and mostly the same tick
        file.Rewrite("[A]\r\nk=" + value + "\r\n");
        ASSERT_EQ(file->Read("A", "k", "none", 100), value);
    }
}

TEST(ProfileFile, AWriteKeepsWhatAnotherProgramWroteMeanwhile)
{
    SettingsFile file("[A]\r\nk=1\r\n");
    file->Read("A", "k", "none", 100);
    file.Rewrite("[A]\r\nk=2\r\n[B]\r\nl=3\r\n");

    EXPECT_TRUE(file->Write("A", "m", "4"));

    EXPECT_EQ(file.Bytes(), "[A]\r\nk=2\r\nm=4\r\n[B]\r\nl=3\r\n");
}

TEST(ProfileFile, TwoObjectsOnOneFileSeeEachOther)
{
    SettingsFile file("[A]\r\nk=1\r\n");
    const auto other = OpenProfileFile(file.Path());
    for (int i = 0; i < 50; ++i) {
        const std::string value = std::to_string(10 + i);
        ASSERT_TRUE((i % 2 == 0 ? *file : *other).Write("A", "k", value));
        ASSERT_EQ((i % 2 == 0 ? *other : *file).Read("A", "k", "none", 100), value);
    }
}

TEST(ProfileFile, AFileThatIsReplacedTruncatedOrRemovedIsReadAgain)
{
    SettingsFile file("[A]\r\nk=1\r\n");
    EXPECT_EQ(file->Read("A", "k", "none", 100), "1");
    SettingsFile other("[A]\r\nk=2\r\n");
    std::filesystem::last_write_time(other.Path(), std::filesystem::last_write_time(file.Path()));
    std::filesystem::rename(other.Path(), file.Path());
    EXPECT_EQ(file->Read("A", "k", "none", 100), "2");

    std::filesystem::resize_file(file.Path(), 0);
    EXPECT_EQ(file->Read("A", "k", "none", 100), "none");

    file.Rewrite("[A]\r\nk=3\r\n");
    EXPECT_EQ(file->Read("A", "k", "none", 100), "3");
    file.Remove();
    EXPECT_EQ(file->Read("A", "k", "none", 100), "none");
    EXPECT_TRUE(file->Write("A", "l", "2"));
    EXPECT_EQ(file.Bytes(), "[A]\r\nl=2\r\n");
}

TEST(ProfileFile, AParameterEndsAtItsFirstNul)
{
    using namespace std::string_literals;
    SettingsFile file;

    EXPECT_TRUE(file->Write("A\0x"s, "k\0y"s, "1\0z"s));

    EXPECT_EQ(file.Bytes(), "[A]\r\nk=1\r\n");
}

TEST(ProfileFile, ALineMovesAcrossManyPagesAndBack)
{
    const std::string before = "[A]\r\nk=1\r\n" + ManySites(200, 34);
    SettingsFile file(before);

    EXPECT_TRUE(file->Write("A", "k", std::string(9000, 'x')));
    EXPECT_EQ(file.Bytes(), "[A]\r\nk=" + std::string(9000, 'x') + "\r\n" + ManySites(200, 34));
    EXPECT_TRUE(file->Write("A", "k", "1"));
    EXPECT_EQ(file.Bytes(), before);
}

class ProfileFileInDirectory : public testing::TestWithParam<std::u16string>
{
};

TEST_P(ProfileFileInDirectory, OfAnyNameIsReadAndWritten)
{
    const SettingsFile home;
    const auto path = home.Directory() / GetParam() / "Corvrec.ini";
    std::filesystem::create_directory(path.parent_path());
    const auto file = OpenProfileFile(path);

    EXPECT_TRUE(file->Write("A", "k", "1"));

    EXPECT_EQ(file->Read("A", "k", "none", 100), "1");
    EXPECT_EQ(std::filesystem::file_size(path), std::string_view("[A]\r\nk=1\r\n").size());
}

std::string DirectoryKind(const testing::TestParamInfo<std::u16string>& info)
{
    return std::array{"InTheCodePage", "BeyondTheCodePage", "BeyondSixteenBits"}.at(info.index);
}

INSTANTIATE_TEST_SUITE_P(ProfileFile, ProfileFileInDirectory,
                         testing::Values(u"Citt\u00E0 di prova", u"\u03A9\u4E2D", u"\U0001F4C1"),
                         DirectoryKind);

TEST(ProfileFile, ABareNameIsAFileOfTheWorkingDirectory)
{
    SettingsFile file("[A]\r\nk=1\r\n");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(file.Directory());
    const auto bare = OpenProfileFile(file.Path().filename());

    EXPECT_EQ(bare->Read("A", "k", "none", 100), "1");
    EXPECT_TRUE(bare->Write("A", "k", "2"));
    std::filesystem::current_path(before);

    EXPECT_EQ(file.Bytes(), "[A]\r\nk=2\r\n");
}

TEST(ProfileFile, EveryKeyOfALongListIsFoundAfterASave)
{
    SettingsFile file(ManySites(1000, 3));
    EXPECT_TRUE(file->DeleteSection("S500"));
    for (const std::string key : {"0", "1", "2"})
        EXPECT_TRUE(file->Write("S500", "K" + key, "500 " + key));

    EXPECT_TRUE(file.Bytes().ends_with("[S999]\r\nK0=999 0\r\nK1=999 1\r\nK2=999 2\r\n"
                                       "[S500]\r\nK0=500 0\r\nK1=500 1\r\nK2=500 2\r\n"));
    for (int site = 0; site < 1000; ++site) {
        for (const std::string key : {"0", "1", "2"}) {
            const std::string number = std::to_string(site);
            ASSERT_EQ(file->Read("S" + number, "K" + key, "none", 100), number + " " + key);
        }
    }
}

TEST(SettingsFile, ALineIsTheFirstOfItsKeyInItsSection)
{
    const SettingsFile file("[B]\r\nOgni=1\r\n[A]\r\nOgnidi=2\r\nOgni= 62\r\nOgni=3\r\n[A]\r\nOra=4\r\n");

    EXPECT_EQ(file.Line("A", "Ogni"), "Ogni= 62");
    EXPECT_EQ(file.Line("A", "Ora"), "");
}

} // namespace

} // namespace corvrec
