#include "core/file/code_page.h"
#include "core/site/site_list.h"
#include "tests/support/recording_profile_file.h"
#include "tests/support/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

using namespace std::string_literals;
using testing::ElementsAre;

// The only site of a file whose section has this line.
SiteRow SiteWith(const std::string& line)
{
    SettingsFile file("[Siti]\r\nA=Alfa\r\n[A]\r\n" + line + "\r\n");
    return ListSites(*file).at(0);
}

TEST(ListSites, GivesTheSitesInFileOrder)
{
    SettingsFile file(
        "[Siti]\r\nZZ=Zeta\r\nAA=Alfa e Beta\r\nCITT\xC0=Citt\xE0\r\n"
        "[AA]\r\nSitoAbilitato=1\r\nRicorrenza=-1\r\n[ZZ]\r\nSitoAbilitato=0\r\nRicorrenza= 62\r\n"
        "[CITT\xC0]\r\nRicorrenza=0\r\n");

    const std::vector<SiteRow> sites = ListSites(*file);

    ASSERT_EQ(sites.size(), 3U);
    EXPECT_EQ(sites[0].code, "ZZ");
    EXPECT_EQ(sites[0].name, "Zeta");
    EXPECT_EQ(sites[0].enabled, 0);
    EXPECT_EQ(sites[0].schedule, ScheduleKind::weekly);
    EXPECT_EQ(sites[1].code, "AA");
    EXPECT_EQ(sites[1].name, "Alfa e Beta");
    EXPECT_EQ(sites[1].enabled, 1);
    EXPECT_EQ(sites[1].schedule, ScheduleKind::hourly);
    EXPECT_EQ(sites[2].code, "CITTÀ");
    EXPECT_EQ(sites[2].name, "Città");
    EXPECT_EQ(sites[2].enabled, 0);
    EXPECT_EQ(sites[2].schedule, ScheduleKind::continuous);
}

TEST(ListSites, IsEmptyWithoutAFileASectionOrAKey)
{
    SettingsFile missing;
    SettingsFile noSection("[General]\r\nCom=COM1\r\n");
    SettingsFile noKey("[Siti]\r\n; nessun sito\r\n[A]\r\nRicorrenza=0\r\n");

    EXPECT_TRUE(ListSites(*missing).empty());
    EXPECT_TRUE(ListSites(*noSection).empty());
    EXPECT_TRUE(ListSites(*noKey).empty());
}

TEST(ListSites, ASiteWithoutSectionIsShownWithoutValues)
{
    SettingsFile file("[Siti]\r\nA=\r\nB=-CaVacca-\r\nC=" + std::string(200, 'x') + "\r\n");

    const std::vector<SiteRow> sites = ListSites(*file);

    ASSERT_EQ(sites.size(), 3U);
    EXPECT_EQ(sites[0].name, "");
    EXPECT_EQ(sites[0].enabled, 0);
    EXPECT_EQ(sites[0].schedule, std::nullopt);
    EXPECT_EQ(sites[1].name, "0"); // reads as missing
    EXPECT_EQ(sites[2].name, std::string(200, 'x'));
}

TEST(ListSites, TheEnabledFlagIsTheNumberItself)
{
    for (const auto& [stored, enabled] : {std::pair("1", 1.0), {"-1", -1}, {"0.5", 0.5}, {"si", 0}, {"", 0}})
        EXPECT_EQ(SiteWith(std::string("SitoAbilitato=") + stored).enabled, enabled) << stored;
}

TEST(ListSites, TheKindIsThatOfTheRoundedNumberAndNoneForOtherNegativeOnes)
{
    using Kind = std::optional<ScheduleKind>;
    for (const auto& [stored, kind] : {std::pair("-3", Kind()),
                                       {"-2.6", {}},
                                       {"-65536", {}}, // saturated, not wrapped to 0
                                       {"-2.5", ScheduleKind::daily},
                                       {"0.5", ScheduleKind::continuous},
                                       {"mai", ScheduleKind::continuous},
                                       {"65536", ScheduleKind::weekly}})
        EXPECT_EQ(SiteWith(std::string("Ricorrenza=") + stored).schedule, kind) << stored;
}

TEST(ListSites, TheKeyListIsCutAt498Bytes)
{
    // 100 names of 4 bytes and a NUL: 99 fit into 498, and the last one loses its NUL and a letter.
    std::string bytes = "[Siti]\r\n";
    for (int i = 0; i < 100; ++i)
        bytes += "S" + std::to_string(100 + i) + "=Sito\r\n";
    SettingsFile file(bytes);

    const std::vector<SiteRow> sites = ListSites(*file);

    ASSERT_EQ(sites.size(), 99U);
    EXPECT_EQ(sites.back().code, "S198");
}

// 99 times 5 bytes are 495; a last name of 3 letters makes 499 with its NUL, which is then lost.
TEST(ListHoldsAllSites, WhenNoneIsCutOff)
{
    std::string bytes = "[Siti]\r\n";
    for (int i = 0; i < 99; ++i)
        bytes += "S" + std::to_string(100 + i) + "=Sito\r\n";
    for (const auto& [last, isListed] : {std::pair("F", true),
                                         {"FI", true},
                                         {"FIN", false},
                                         {"FINE", false},
                                         {"\u00C0\u00C0", true},
                                         {"\u00C0\u00C0\u00C0", false}}) {
        SettingsFile file(bytes + Cp1252FromUtf8(last) + "=Ultimo\r\n");

        EXPECT_EQ(ListSites(*file).back().code == last, isListed) << last;
        EXPECT_EQ(ListSites(*file).size(), isListed ? 100U : 99U) << last;
        EXPECT_EQ(ListHoldsAllSites(*file), isListed) << last;
    }
}

TEST(ListSites, EveryReadHasABufferOf500)
{
    RecordingProfileFile file;
    file.keys = "A\0B\0"s;

    EXPECT_EQ(ListSites(file).size(), 2U);

    EXPECT_THAT(file.reads,
                ElementsAre("[Siti] 500", "[A]SitoAbilitato 500", "[Siti]A 500", "[A]Ricorrenza 500",
                            "[B]SitoAbilitato 500", "[Siti]B 500", "[B]Ricorrenza 500"));
}

TEST(ListedName, IsWhatTheNextStartShows)
{
    EXPECT_EQ(ListedName("Città €"), "Città €");
    EXPECT_EQ(ListedName("\t\"Alfa\" "), "Alfa");
    EXPECT_EQ(ListedName("Ж\r\n"), "?");
    EXPECT_EQ(ListedName("-CaVacca-"), "0");
}

TEST(ReadComPort, GivesTheTextUnchangedWithABufferOf500)
{
    SettingsFile file("[General]\r\nCom=COM12 \r\n");
    SettingsFile empty("[General]\r\nCom=\r\n");
    SettingsFile elsewhere("[Siti]\r\nCom=COM1\r\n");
    RecordingProfileFile missing;

    EXPECT_EQ(ReadComPort(*file), "COM12");
    EXPECT_EQ(ReadComPort(*empty), "");
    EXPECT_EQ(ReadComPort(*elsewhere), std::nullopt);
    EXPECT_EQ(ReadComPort(missing), std::nullopt);
    EXPECT_THAT(missing.reads, ElementsAre("[General]Com 500"));
}

TEST(RemoveSite, DeletesTheSectionAndTheKeyAndNothingElse)
{
    SettingsFile file(
        "; elenco\r\n[Siti]\r\nA=Alfa\r\nCITT\xC0=Citt\xE0\r\nC=Gamma\r\n\r\n"
        "[CITT\xC0]\r\nBaud=9600\r\nEstraneo=1\r\n[C]\r\nCITT\xC0=resta\r\n[General]\r\nCom=COM1\r\n");

    RemoveSite(*file, "CITTÀ");

    EXPECT_EQ(file.Bytes(), "; elenco\r\n[Siti]\r\nA=Alfa\r\nC=Gamma\r\n\r\n"
                            "[C]\r\nCITT\xC0=resta\r\n[General]\r\nCom=COM1\r\n");
}

TEST(RemoveSite, DeletesTheSectionFirstAndTheKeyEvenIfThatFails)
{
    RecordingProfileFile file;
    file.failing = {"A"};

    RemoveSite(file, "A");

    EXPECT_THAT(file.writes, ElementsAre("delete [A]", "delete [Siti]A"));
}

class Collision : public testing::Test
{
protected:
    [[nodiscard]] std::optional<int> Find(const SiteFiles& files, std::string_view ownCode = "NUOVO")
    {
        return FindCollision(*file_, rows_, files, ownCode);
    }

private:
    SettingsFile file_{"[A]\r\nDati=a1\r\nDati2=a2\r\nStorico=a3\r\n[B]\r\nDati=b1\r\nDati2=b2\r\n"
                       "[C]\r\nDati=a1\r\nDati2=c2\r\nStorico=c\xE0\r\n"};
    std::vector<SiteRow> rows_{
        {.name = "Alfa", .code = "A", .enabled = 1, .schedule = std::nullopt},
        {.name = "Beta", .code = "B", .enabled = 1, .schedule = std::nullopt},
        {.name = "Gamma", .code = "C", .enabled = 1, .schedule = std::nullopt},
    };
};

TEST_F(Collision, IsTheFirstOtherSiteWithAnEqualFileOfTheSameKind)
{
    EXPECT_EQ(Find({.data = "b1", .exchange = "x", .history = "x"}), 1);
    EXPECT_EQ(Find({.data = "x", .exchange = "b2", .history = "x"}), 1);
    EXPECT_EQ(Find({.data = "x", .exchange = "x", .history = "cà"}), 2);
    EXPECT_EQ(Find({.data = "x", .exchange = "x", .history = ""}), 1); // a missing name is an empty one
    EXPECT_EQ(Find({.data = "a2", .exchange = "a3", .history = "a1"}), std::nullopt); // other kinds
    EXPECT_EQ(Find({.data = "A1", .exchange = "x", .history = "x"}), std::nullopt);   // letter case
    EXPECT_EQ(Find({.data = "a1", .exchange = "x", .history = "x"}), 0);
    EXPECT_EQ(Find({.data = "a1", .exchange = "x", .history = "x"}, "A"), 2);
    // The code of the site itself is compared exactly.
    EXPECT_EQ(Find({.data = "b1", .exchange = "x", .history = "x"}, "B"), std::nullopt);
    EXPECT_EQ(Find({.data = "b1", .exchange = "x", .history = "x"}, "b"), 1);
}

TEST(FindCollision, WithoutSitesThereIsNone)
{
    SettingsFile file;

    EXPECT_EQ(FindCollision(*file, {}, {.data = "", .exchange = "", .history = ""}, "A"), std::nullopt);
}

TEST(FindCollision, ReadsThreeFilesWithABufferOf100)
{
    RecordingProfileFile file;
    const std::vector<SiteRow> rows{{.name = "Alfa", .code = "A", .enabled = 1, .schedule = std::nullopt}};

    EXPECT_EQ(FindCollision(file, rows, {.data = "x", .exchange = "x", .history = "x"}, "B"), std::nullopt);

    EXPECT_THAT(file.reads, ElementsAre("[A]Dati 100", "[A]Dati2 100", "[A]Storico 100"));
}

} // namespace

} // namespace corvrec
