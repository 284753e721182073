#include "core/file/code_page.h"
#include "core/site/site_list.h"
#include "tests/support/recording_profile_file.h"
#include "tests/support/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvrec
{

namespace
{

using namespace std::string_literals;
using testing::ElementsAre;

SiteRow Row(std::string_view code)
{
    SiteRow row;
    row.code = code;
    return row;
}

// The only site of a file whose section has this line.
ListedSite SiteWith(const std::string& line)
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

    const std::vector<ListedSite> sites = ListSites(*file);

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
    SettingsFile file("[Siti]\r\nA=\r\n");

    const std::vector<ListedSite> sites = ListSites(*file);

    ASSERT_EQ(sites.size(), 1U);
    EXPECT_EQ(sites[0].name, "");
    EXPECT_EQ(sites[0].enabled, 0);
    EXPECT_EQ(sites[0].schedule, std::nullopt);
}

TEST(ListSites, ANameThatReadsAsMissingIsShownAs0)
{
    SettingsFile file("[Siti]\r\nA=-CaVacca-\r\n");

    EXPECT_EQ(ListSites(*file).at(0).name, "0");
}

TEST(ListSites, TheEnabledFlagIsTheNumberItself)
{
    EXPECT_EQ(SiteWith("SitoAbilitato=1").enabled, 1);
    EXPECT_EQ(SiteWith("SitoAbilitato=-1").enabled, -1);
    EXPECT_EQ(SiteWith("SitoAbilitato=0.5").enabled, 0.5);
    EXPECT_EQ(SiteWith("SitoAbilitato=si").enabled, 0);
    EXPECT_EQ(SiteWith("SitoAbilitato=").enabled, 0);
}

TEST(ListSites, ANegativeNumberWithoutMeaningHasNoKind)
{
    EXPECT_EQ(SiteWith("Ricorrenza=-3").schedule, std::nullopt);
    EXPECT_EQ(SiteWith("Ricorrenza=-2.6").schedule, std::nullopt);
    EXPECT_EQ(SiteWith("Ricorrenza=-65536").schedule, std::nullopt); // saturated, not wrapped to 0
}

TEST(ListSites, TheKindIsThatOfTheRoundedNumber)
{
    EXPECT_EQ(SiteWith("Ricorrenza=-2.5").schedule, ScheduleKind::daily);
    EXPECT_EQ(SiteWith("Ricorrenza=0.5").schedule, ScheduleKind::continuous);
    EXPECT_EQ(SiteWith("Ricorrenza=mai").schedule, ScheduleKind::continuous);
    EXPECT_EQ(SiteWith("Ricorrenza=65536").schedule, ScheduleKind::weekly);
}

TEST(ListSites, TheKeyListIsCutAt498Bytes)
{
    // 100 names of 4 bytes and a NUL: 99 fit into 498, and the last one loses its NUL and a letter.
    std::string bytes = "[Siti]\r\n";
    for (int i = 0; i < 100; ++i)
        bytes += "S" + std::to_string(100 + i) + "=Sito\r\n";
    SettingsFile file(bytes);

    const std::vector<ListedSite> sites = ListSites(*file);

    ASSERT_EQ(sites.size(), 99U);
    EXPECT_EQ(sites.back().code, "S198");
}

TEST(ListSites, ANameThatJustLosesItsNulIsNoSite)
{
    // 99 times 5 bytes are 495; a last name of 3 letters makes 499 with its NUL.
    std::string bytes = "[Siti]\r\n";
    for (int i = 0; i < 99; ++i)
        bytes += "S" + std::to_string(100 + i) + "=Sito\r\n";
    SettingsFile lost(bytes + "FIN=Ultimo\r\n");
    SettingsFile kept(bytes + "FI=Ultimo\r\n");

    EXPECT_EQ(ListSites(*lost).size(), 99U);
    EXPECT_EQ(ListSites(*kept).back().code, "FI");
}

TEST(ListHolds, CodesThatAreAllListedAtTheNextStart)
{
    std::string bytes = "[Siti]\r\n";
    std::vector<SiteRow> rows;
    for (int i = 0; i < 99; ++i) {
        rows.push_back(Row("S" + std::to_string(100 + i)));
        bytes += rows.back().code + "=Sito\r\n";
    }
    for (const std::string_view last : {"F", "FI", "FIN", "FINE", "\u00C0\u00C0", "\u00C0\u00C0\u00C0"}) {
        SettingsFile file(bytes + Cp1252FromUtf8(last) + "=Ultimo\r\n");
        rows.push_back(Row(last));

        EXPECT_EQ(ListHolds(rows), ListSites(*file).size() == 100) << last;

        rows.pop_back();
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

TEST(ListSites, ANameOf200CharactersIsShownWhole)
{
    SettingsFile file("[Siti]\r\nA=" + std::string(200, 'x') + "\r\n");

    EXPECT_EQ(ListSites(*file).at(0).name, std::string(200, 'x'));
}

TEST(ReadComPort, GivesTheTextUnchanged)
{
    SettingsFile file("[General]\r\nCom=COM12 \r\n");

    EXPECT_EQ(ReadComPort(*file), "COM12");
}

TEST(ReadComPort, AnEmptyValueIsNotMissing)
{
    SettingsFile empty("[General]\r\nCom=\r\n");
    SettingsFile elsewhere("[Siti]\r\nCom=COM1\r\n");
    SettingsFile missing;

    EXPECT_EQ(ReadComPort(*empty), "");
    EXPECT_EQ(ReadComPort(*elsewhere), std::nullopt);
    EXPECT_EQ(ReadComPort(*missing), std::nullopt);
}

TEST(ReadComPort, HasABufferOf500)
{
    RecordingProfileFile file;

    EXPECT_EQ(ReadComPort(file), std::nullopt);

    EXPECT_THAT(file.reads, ElementsAre("[General]Com 500"));
}

TEST(RemoveSite, TakesTheSectionAndTheKeyAndNothingElse)
{
    SettingsFile file(
        "; elenco\r\n[Siti]\r\nA=Alfa\r\nCITT\xC0=Citt\xE0\r\nC=Gamma\r\n\r\n"
        "[CITT\xC0]\r\nBaud=9600\r\nEstraneo=1\r\n[C]\r\nCITT\xC0=resta\r\n[General]\r\nCom=COM1\r\n");

    RemoveSite(*file, "CITTÀ");

    EXPECT_EQ(file.Bytes(), "; elenco\r\n[Siti]\r\nA=Alfa\r\nC=Gamma\r\n\r\n"
                            "[C]\r\nCITT\xC0=resta\r\n[General]\r\nCom=COM1\r\n");
}

TEST(RemoveSite, TakesTheSectionFirstAndTheKeyEvenIfThatFails)
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
        {.name = "Alfa", .code = "A", .enabled = 1, .schedule = ""},
        {.name = "Beta", .code = "B", .enabled = 1, .schedule = ""},
        {.name = "Gamma", .code = "C", .enabled = 1, .schedule = ""},
    };
};

TEST_F(Collision, OneEqualFileOfTheSameKindIsEnough)
{
    EXPECT_EQ(Find({.data = "b1", .exchange = "x", .history = "x"}), 1);
    EXPECT_EQ(Find({.data = "x", .exchange = "b2", .history = "x"}), 1);
    EXPECT_EQ(Find({.data = "x", .exchange = "x", .history = "cà"}), 2);
}

TEST_F(Collision, FilesOfDifferentKindsMayBeEqual)
{
    EXPECT_EQ(Find({.data = "a2", .exchange = "a3", .history = "a1"}), std::nullopt);
}

TEST_F(Collision, LetterCaseCounts)
{
    EXPECT_EQ(Find({.data = "A1", .exchange = "x", .history = "x"}), std::nullopt);
}

TEST_F(Collision, TheFirstOtherSiteIsFound)
{
    EXPECT_EQ(Find({.data = "a1", .exchange = "x", .history = "x"}), 0);
    EXPECT_EQ(Find({.data = "a1", .exchange = "x", .history = "x"}, "A"), 2);
}

TEST_F(Collision, TheCodeOfTheSiteItselfIsComparedExactly)
{
    EXPECT_EQ(Find({.data = "b1", .exchange = "x", .history = "x"}, "B"), std::nullopt);
    EXPECT_EQ(Find({.data = "b1", .exchange = "x", .history = "x"}, "b"), 1);
}

TEST_F(Collision, AMissingFileNameIsAnEmptyOne)
{
    EXPECT_EQ(Find({.data = "x", .exchange = "x", .history = ""}), 1);
}

TEST(FindCollision, WithoutSitesThereIsNone)
{
    SettingsFile file;

    EXPECT_EQ(FindCollision(*file, {}, {.data = "", .exchange = "", .history = ""}, "A"), std::nullopt);
}

TEST(FindCollision, ReadsThreeFilesWithABufferOf100)
{
    RecordingProfileFile file;
    const std::vector<SiteRow> rows{{.name = "Alfa", .code = "A", .enabled = 1, .schedule = ""}};

    EXPECT_EQ(FindCollision(file, rows, {.data = "x", .exchange = "x", .history = "x"}, "B"), std::nullopt);

    EXPECT_THAT(file.reads, ElementsAre("[A]Dati 100", "[A]Dati2 100", "[A]Storico 100"));
}

} // namespace

} // namespace corvrec
