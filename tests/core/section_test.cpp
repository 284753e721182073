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

TEST(Section, AMissingKeyHasNoValue)
{
    SettingsFile file("[UFF]\r\nBaud=9600\r\n");

    EXPECT_EQ(Section(*file, "UFF").Read("Stop"), std::nullopt);
    EXPECT_EQ(Section(*file, "ALTRO").Read("Baud"), std::nullopt);
}

TEST(Section, EverythingIsMissingInAMissingFile)
{
    SettingsFile file;

    EXPECT_EQ(Section(*file, "UFF").Read("Baud"), std::nullopt);
}

TEST(Section, AnEmptyValueIsNotMissing)
{
    SettingsFile file("[UFF]\r\nBaud=\r\n");

    EXPECT_EQ(Section(*file, "UFF").Read("Baud"), "");
}

TEST(Section, TheSentinelItselfCountsAsMissingInItsOwnSpellingOnly)
{
    SettingsFile file("[UFF]\r\nA=-CaVacca-\r\nB=-cavacca-\r\nC=-CaVacca-1\r\n");
    const Section section(*file, "UFF");

    EXPECT_EQ(section.Read("A"), std::nullopt);
    EXPECT_EQ(section.Read("B"), "-cavacca-");
    EXPECT_EQ(section.Read("C"), "-CaVacca-1");
}

TEST(Section, ValuesAreCutAt99Characters)
{
    SettingsFile file("[UFF]\r\nDati=" + std::string(120, '\xE0') + "\r\n");

    const auto value = Section(*file, "UFF").Read("Dati");

    std::string expected;
    for (int i = 0; i < 99; ++i)
        expected += "à";
    EXPECT_EQ(value, expected);
}

TEST(Section, TheSizeOfAReadCanBeChosen)
{
    SettingsFile file("[UFF]\r\nDati=" + std::string(600, 'x') + "\r\n");

    EXPECT_EQ(Section(*file, "UFF", 500).Read("Dati"), std::string(499, 'x'));
}

TEST(Section, ReadsTheCodePage)
{
    SettingsFile file("[Citt\xE0]\r\nPerch\xE9=\x80 5\r\n");

    EXPECT_EQ(Section(*file, "Città").Read("Perché"), "€ 5");
}

TEST(Section, WritesTheCodePage)
{
    SettingsFile file;

    EXPECT_TRUE(Section(*file, "Città").Write("Perché", "€ Ж"));

    EXPECT_EQ(file.Bytes(), "[Citt\xE0]\r\nPerch\xE9=\x80 ?\r\n");
}

TEST(Section, LineBreaksAndNulsNeverReachTheFile)
{
    SettingsFile file;

    EXPECT_TRUE(Section(*file, "U\r\nF\0F"s).Write("D\ra\nti\0"s, "a\r\n[b]\r\nc=1\0d"s));

    EXPECT_EQ(file.Bytes(), "[UFF]\r\nDati=a[b]c=1d\r\n");
}

TEST(Section, OtherControlCharactersPass)
{
    SettingsFile file;

    EXPECT_TRUE(Section(*file, "UFF").Write("Xon", "\ta\x1A\x0B\x7F"));

    EXPECT_EQ(file.Bytes(), "[UFF]\r\nXon=\ta\x1A\x0B\x7F\r\n");
}

TEST(Section, ReadsWhatItWroteUnderANameWithLineBreaks)
{
    SettingsFile file;
    Section section(*file, "U\nFF");

    EXPECT_TRUE(section.Write("Da\rti", "x"));

    EXPECT_EQ(section.Read("Da\rti"), "x");
}

TEST(Section, DeletesAKey)
{
    SettingsFile file("[Siti]\r\nA=Alfa\r\nCitt\xE0=Beta\r\n");

    EXPECT_TRUE(Section(*file, "Siti").DeleteKey("Città"));

    EXPECT_EQ(file.Bytes(), "[Siti]\r\nA=Alfa\r\n");
}

TEST(Section, DeletesTheWholeSection)
{
    SettingsFile file("[A]\r\nBaud=1\r\n[Citt\xE0]\r\nBaud=2\r\n[C]\r\nBaud=3\r\n");

    EXPECT_TRUE(Section(*file, "Città").Delete());

    EXPECT_EQ(file.Bytes(), "[A]\r\nBaud=1\r\n[C]\r\nBaud=3\r\n");
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

TEST(WithoutLineBreaks, KeepsEverythingElse)
{
    EXPECT_EQ(WithoutLineBreaks("\r\n a\tb\0c è\r"s), " a\tbc è");
    EXPECT_EQ(WithoutLineBreaks("\r\n"), "");
}

} // namespace

} // namespace corvrec
