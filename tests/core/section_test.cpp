#include "core/file/code_page.h"
#include "core/file/section.h"
#include "tests/support/recording_profile_file.h"
#include "tests/support/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace corvrec
{

namespace
{

using namespace std::string_literals;
using testing::ElementsAre;

TEST(Section, AMissingKeyHasNoValueAndAnEmptyOneHas)
{
    SettingsFile file("[UFF]\r\nBaud=\r\n");
    SettingsFile missing;

    EXPECT_EQ(Section(*file, "UFF").Read("Baud"), "");
    EXPECT_EQ(Section(*file, "UFF").Read("Stop"), std::nullopt);
    EXPECT_EQ(Section(*file, "ALTRO").Read("Baud"), std::nullopt);
    EXPECT_EQ(Section(*missing, "UFF").Read("Baud"), std::nullopt);
}

TEST(Section, TheSentinelItselfCountsAsMissingInItsOwnSpellingOnly)
{
    SettingsFile file("[UFF]\r\nA=-CaVacca-\r\nB=-cavacca-\r\nC=-CaVacca-1\r\n");
    const Section section(*file, "UFF");

    EXPECT_EQ(section.Read("A"), std::nullopt);
    EXPECT_EQ(section.Read("B"), "-cavacca-");
    EXPECT_EQ(section.Read("C"), "-CaVacca-1");
}

TEST(Section, ValuesAreCutAt99CharactersOrAtAChosenSize)
{
    SettingsFile file("[UFF]\r\nDati=" + std::string(600, '\xE0') + "\r\n");

    EXPECT_EQ(Section(*file, "UFF").Read("Dati"), Utf8FromCp1252(std::string(99, '\xE0')));
    EXPECT_EQ(Section(*file, "UFF", 500).Read("Dati"), Utf8FromCp1252(std::string(499, '\xE0')));
}

TEST(Section, ReadsAndWritesTheCodePage)
{
    SettingsFile file;
    Section section(*file, "Città");

    EXPECT_TRUE(section.Write("Perché", "€ Ж"));

    EXPECT_EQ(file.Bytes(), "[Citt\xE0]\r\nPerch\xE9=\x80 ?\r\n");
    EXPECT_EQ(section.Read("Perché"), "€ ?");
}

TEST(Section, LineBreaksAndNulsNeverReachTheFile)
{
    SettingsFile file;
    Section section(*file, "U\r\nF\0F"s);

    EXPECT_TRUE(section.Write("D\ra\nti\0"s, "a\r\n[b]\r\nc=1\0d"s));

    EXPECT_EQ(file.Bytes(), "[UFF]\r\nDati=a[b]c=1d\r\n");
    EXPECT_EQ(section.Read("Da\rti"), "a[b]c=1d");
}

TEST(Section, OtherControlCharactersPass)
{
    SettingsFile file;

    EXPECT_TRUE(Section(*file, "UFF").Write("Xon", "\ta\x1A\x0B\x7F"));

    EXPECT_EQ(file.Bytes(), "[UFF]\r\nXon=\ta\x1A\x0B\x7F\r\n");
}

TEST(Section, DeletesAKeyAndTheWholeSection)
{
    SettingsFile file("[A]\r\nBaud=1\r\n[Citt\xE0]\r\nBaud=2\r\nPerch\xE9=3\r\n[C]\r\nBaud=4\r\n");
    Section section(*file, "Città");

    EXPECT_TRUE(section.DeleteKey("Perché"));
    EXPECT_EQ(file.Bytes(), "[A]\r\nBaud=1\r\n[Citt\xE0]\r\nBaud=2\r\n[C]\r\nBaud=4\r\n");
    EXPECT_TRUE(section.Delete());
    EXPECT_EQ(file.Bytes(), "[A]\r\nBaud=1\r\n[C]\r\nBaud=4\r\n");
}

TEST(Section, ReportsFailures)
{
    RecordingProfileFile file;
    file.failing = {"Baud", "UFF"};
    Section section(file, "UFF");

    EXPECT_FALSE(section.Write("Baud", "9600"));
    EXPECT_FALSE(section.DeleteKey("Baud"));
    EXPECT_FALSE(section.Delete());
    EXPECT_THAT(file.writes, ElementsAre("[UFF]Baud=9600", "delete [UFF]Baud", "delete [UFF]"));
}

TEST(AsStored, IsWhatALaterReadGives)
{
    EXPECT_EQ(AsStored("a\r\nà€Ж"), "aà€?");
}

TEST(WithoutLineBreaks, KeepsEverythingElse)
{
    EXPECT_EQ(WithoutLineBreaks("\r\n a\tb\0c è\r"s), " a\tbc è");
    EXPECT_EQ(WithoutLineBreaks("\r\n"), "");
}

} // namespace

} // namespace corvrec
