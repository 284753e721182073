#include "core/site/site_keys.h"
#include "tests/support/recording_profile_file.h"
#include "tests/support/sample_site.h"
#include "tests/support/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace corvrec
{

namespace
{

using testing::ElementsAre;

// An empty record after loading a section with these lines.
SiteRecord Loaded(const std::string& lines)
{
    SettingsFile file("[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\n" + lines + "\r\n");
    SiteRecord site;
    LoadSite(*file, "UFF", site);
    return site;
}

// Lines of the section, and the fields that they set in an otherwise empty record.
struct Row {
    const char* name;
    const char* lines;
    void (*set)(SiteRecord&);
};

void Nothing(SiteRecord& /*site*/) {}

class LoadSiteKey : public testing::TestWithParam<Row>
{
};

TEST_P(LoadSiteKey, SetsItsFieldAndNoOther)
{
    SiteRecord expected;
    GetParam().set(expected);

    EXPECT_EQ(Loaded(GetParam().lines), expected);
}

const auto kName = [](const auto& row) { return row.param.name; };

INSTANTIATE_TEST_SUITE_P(
    Device, LoadSiteKey,
    testing::Values(Row{"com", "Dispositivo=COM", [](SiteRecord& s) { s.device = 0; }},
                    Row{"buff", "Dispositivo=BUFF", [](SiteRecord& s) { s.device = 1; }},
                    Row{"stx11", "Dispositivo=STX11", [](SiteRecord& s) { s.device = 2; }},
                    Row{"stx20", "Dispositivo=STX20", [](SiteRecord& s) { s.device = 3; }},
                    Row{"stx30", "Dispositivo=STX30", [](SiteRecord& s) { s.device = 4; }},
                    Row{"stx40", "Dispositivo=STX40", [](SiteRecord& s) { s.device = 5; }},
                    Row{"lowerCase", "Dispositivo=stx30", [](SiteRecord& s) { s.device = 4; }},
                    Row{"mixedCase", "Dispositivo=bUfF", [](SiteRecord& s) { s.device = 1; }},
                    Row{"longer", "Dispositivo=STX301", Nothing}, Row{"shorter", "Dispositivo=STX3", Nothing},
                    Row{"shownText", "Dispositivo=Pabx", Nothing}, Row{"empty", "Dispositivo=", Nothing}),
    kName);

INSTANTIATE_TEST_SUITE_P(Connection, LoadSiteKey,
                         testing::Values(Row{"local", "MODEM=0", [](SiteRecord& s) { s.remote = false; }},
                                         Row{"remote", "MODEM=1", [](SiteRecord& s) { s.remote = true; }},
                                         Row{"twoDigits", "MODEM=00", [](SiteRecord& s) { s.remote = true; }},
                                         Row{"text", "MODEM=no", [](SiteRecord& s) { s.remote = true; }},
                                         Row{"empty", "MODEM=", [](SiteRecord& s) { s.remote = true; }}),
                         kName);

INSTANTIATE_TEST_SUITE_P(
    Handshake, LoadSiteKey,
    testing::Values(Row{"none", "Handshake=NONE", [](SiteRecord& s) { s.handshake = 0; }},
                    Row{"xon", "Handshake=XON", [](SiteRecord& s) { s.handshake = 1; }},
                    Row{"hdw", "Handshake=HDW", [](SiteRecord& s) { s.handshake = 2; }},
                    Row{"lowerCase", "Handshake=hdw", [](SiteRecord& s) { s.handshake = 2; }},
                    Row{"shownText", "Handshake=Hardware", Nothing}, Row{"empty", "Handshake=", Nothing}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    FlowCharacters, LoadSiteKey,
    testing::Values(Row{"control", "Xon= 17\r\nXoff= 19",
                        [](SiteRecord& s) {
                            s.xon = FlowCharacter{.control = true, .text = "Q"};
                            s.xoff = FlowCharacter{.control = true, .text = "S"};
                        }},
                    Row{"plain", "Xon=65\r\nXoff=233",
                        [](SiteRecord& s) {
                            s.xon = FlowCharacter{.control = false, .text = "A"};
                            s.xoff = FlowCharacter{.control = false, .text = "é"};
                        }},
                    Row{"storedAsItself", "Xon=Q",
                        [](SiteRecord& s) { s.xon = FlowCharacter{.control = true, .text = "@"}; }},
                    Row{"empty",
                        "Xoff=", [](SiteRecord& s) { s.xoff = FlowCharacter{.control = true, .text = "@"}; }},
                    Row{"onlyXoff", "Xoff=32",
                        [](SiteRecord& s) { s.xoff = FlowCharacter{.control = false, .text = " "}; }},
                    Row{"noSuchXon", "Xon=256\r\nXoff=19",
                        [](SiteRecord& s) { s.xoff = FlowCharacter{.control = true, .text = "S"}; }},
                    Row{"noSuchXoff", "Xon=17\r\nXoff=-64",
                        [](SiteRecord& s) { s.xon = FlowCharacter{.control = true, .text = "Q"}; }}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Line, LoadSiteKey,
    testing::Values(Row{"baud", "Baud=115200", [](SiteRecord& s) { s.baud = "115200"; }},
                    Row{"baudOfNoList", "Baud=96", [](SiteRecord& s) { s.baud = "96"; }},
                    Row{"baudEmpty", "Baud=", [](SiteRecord& s) { s.baud = ""; }},
                    Row{"dataBits", "BitDati=7", [](SiteRecord& s) { s.dataBits = "7"; }},
                    Row{"dataBitsOdd", "BitDati=nove", [](SiteRecord& s) { s.dataBits = "nove"; }},
                    Row{"parityNone", "Parita=N", [](SiteRecord& s) { s.parity = 0; }},
                    Row{"parityEven", "Parita=E", [](SiteRecord& s) { s.parity = 1; }},
                    Row{"parityOdd", "Parita=o", [](SiteRecord& s) { s.parity = 2; }},
                    Row{"parityOther", "Parita=M", Nothing}, Row{"parityEmpty", "Parita=", Nothing},
                    Row{"stopBits", "Stop=2", [](SiteRecord& s) { s.stopBits = "2"; }},
                    Row{"stopBitsOdd", "Stop=1.5", [](SiteRecord& s) { s.stopBits = "1.5"; }}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Enabled, LoadSiteKey,
    testing::Values(Row{"one", "SitoAbilitato=1", [](SiteRecord& s) { s.enabled = true; }},
                    Row{"zero", "SitoAbilitato=0", [](SiteRecord& s) { s.enabled = false; }},
                    Row{"two", "SitoAbilitato=2", [](SiteRecord& s) { s.enabled = false; }},
                    Row{"text", "SitoAbilitato=1x", [](SiteRecord& s) { s.enabled = true; }},
                    Row{"empty", "SitoAbilitato=", [](SiteRecord& s) { s.enabled = false; }}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Schedule, LoadSiteKey,
    testing::Values(Row{"continuous", "Ricorrenza=0\r\nOgni=1",
                        [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
                    Row{"continuousAndItsTime", "Ricorrenza=0\r\nOra=12.00 03/03/2026\r\nOgni=3600",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::continuous;
                            s.startTime = "12:00";
                            s.marked = false;
                        }},
                    Row{"hourly", "Ricorrenza=-1\r\nOgni= 5400",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::hourly;
                            s.interval = "01:30";
                        }},
                    Row{"hourlyTooLong", "Ricorrenza=-1\r\nOgni=360000",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::hourly;
                            s.interval = "__:__";
                        }},
                    Row{"daily", "Ricorrenza=-2\r\nOgni=172800",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::daily;
                            s.interval = "2";
                        }},
                    Row{"dailyEmpty", "Ricorrenza=-2\r\nOgni=",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::daily;
                            s.interval = "0";
                        }},
                    Row{"weekly", "Ricorrenza= 62\r\nOgni= 1209600",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::weekly;
                            s.weekdays = 62;
                            s.interval = " 2";
                        }},
                    Row{"weeklyAllDays", "Ricorrenza=127",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::weekly;
                            s.weekdays = 127;
                        }},
                    Row{"weeklyBeyondSaturday", "Ricorrenza=193",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::weekly;
                            s.weekdays = 65;
                        }},
                    Row{"weeklyHighBitsOnly", "Ricorrenza=40960",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::weekly;
                            s.weekdays = 0;
                        }},
                    Row{"otherNegative", "Ricorrenza=-5\r\nOgni=3600",
                        [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
                    Row{"text", "Ricorrenza=abc",
                        [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
                    Row{"empty", "Ricorrenza=", [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
                    Row{"intervalWithoutKind", "Ogni=3600", Nothing},
                    Row{"intervalBeforeKind", "Ogni=7200\r\nRicorrenza=-1",
                        [](SiteRecord& s) {
                            s.schedule = ScheduleKind::hourly;
                            s.interval = "02:00";
                        }},
                    Row{"timeWithMark", "Ora=08:30 21/11/2026p",
                        [](SiteRecord& s) {
                            s.startTime = "08:30";
                            s.marked = true;
                        }},
                    Row{"timeUnreadable", "Ora=mezzogiorno",
                        [](SiteRecord& s) {
                            s.startTime = "__:__";
                            s.marked = false;
                        }}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Transformations, LoadSiteKey,
    testing::Values(Row{"addDate", "AggData=1", [](SiteRecord& s) { s.addDate = true; }},
                    Row{"addDateOff", "AggData=0", [](SiteRecord& s) { s.addDate = false; }},
                    Row{"addTime", "AggOra= 01", [](SiteRecord& s) { s.addTime = true; }},
                    Row{"addTimeOff", "AggOra=si", [](SiteRecord& s) { s.addTime = false; }},
                    Row{"dropNulls", "EliminaNull=1.0", [](SiteRecord& s) { s.dropNulls = true; }},
                    Row{"dropNullsOff", "EliminaNull=11", [](SiteRecord& s) { s.dropNulls = false; }},
                    Row{"dropNullsOfTheStratoboxBuffer", "Dispositivo=STX40\r\nEliminaNull=1",
                        [](SiteRecord& s) {
                            s.device = 5;
                            s.dropNulls = true;
                        }},
                    Row{"fixCrLf", "CorreggiCR=1", [](SiteRecord& s) { s.fixCrLf = true; }},
                    Row{"fixCrLfOff", "CorreggiCR=-1", [](SiteRecord& s) { s.fixCrLf = false; }}),
    kName);

INSTANTIATE_TEST_SUITE_P(Files, LoadSiteKey,
                         testing::Values(Row{"dataInUtf8ReadsAsTheCodePage", R"(Dati=c:\dati\città=1.txt)",
                                             [](SiteRecord& s) {
                                                 s.dataFile = "c:\\dati\\cittÃ\xC2\xA0=1.txt";
                                             }},
                                         Row{"dataEmpty", "Dati=", [](SiteRecord& s) { s.dataFile = ""; }},
                                         Row{"exchange", R"(Dati2=\\server\x y.txt)",
                                             [](SiteRecord& s) { s.exchangeFile = R"(\\server\x y.txt)"; }},
                                         Row{"history", "Storico=/var/storico.txt",
                                             [](SiteRecord& s) { s.historyFile = "/var/storico.txt"; }},
                                         Row{"logOfTheSiteIsNotRead", "Log=altro.log", Nothing},
                                         Row{"logOfGeneral", "Dati=d\r\n[General]\r\nLog=Corvrec.log",
                                             [](SiteRecord& s) {
                                                 s.dataFile = "d";
                                                 s.logFile = "Corvrec.log";
                                             }}),
                         kName);

INSTANTIATE_TEST_SUITE_P(
    Modem, LoadSiteKey,
    testing::Values(
        Row{"model", "Modello=Generico", [](SiteRecord& s) { s.modemModel = "Generico"; }},
        Row{"initString", "StringaModem=ATX3S0=0&M5", [](SiteRecord& s) { s.initString = "ATX3S0=0&M5"; }},
        Row{"initStringQuoted", "StringaModem=\"ATZ\"", [](SiteRecord& s) { s.initString = "ATZ"; }},
        Row{"resetString", "StringaReset=&F", [](SiteRecord& s) { s.resetString = "&F"; }},
        Row{"tone", "NumeroTel=ATDT0123",
            [](SiteRecord& s) { s.dial = DialNumber{.tone = true, .number = "0123"}; }},
        Row{"pulse", "NumeroTel=ATDP0123",
            [](SiteRecord& s) { s.dial = DialNumber{.tone = false, .number = "0123"}; }},
        Row{"noNumber",
            "NumeroTel=", [](SiteRecord& s) { s.dial = DialNumber{.tone = false, .number = ""}; }},
        Row{"attempts", "Importazione=3x", [](SiteRecord& s) { s.importAttempts = "3x"; }}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Alerts, LoadSiteKey,
    testing::Values(Row{"file", "FileTimeout=600",
                        [](SiteRecord& s) { s.fileAlert = Alert{.on = true, .limit = "600"}; }},
                    Row{"fileZeroIsOn", "FileTimeout=0",
                        [](SiteRecord& s) { s.fileAlert = Alert{.on = true, .limit = "0"}; }},
                    Row{"fileOff", "FileTimeout=-1",
                        [](SiteRecord& s) { s.fileAlert = Alert{.on = false, .limit = std::nullopt}; }},
                    Row{"disk", "SpazioTimeout=20 MB",
                        [](SiteRecord& s) { s.diskAlert = Alert{.on = true, .limit = "20 MB"}; }},
                    Row{"diskOff", "SpazioTimeout=-1",
                        [](SiteRecord& s) { s.diskAlert = Alert{.on = false, .limit = std::nullopt}; }},
                    Row{"diskEmpty", "SpazioTimeout=",
                        [](SiteRecord& s) { s.diskAlert = Alert{.on = true, .limit = ""}; }}),
    kName);

TEST(LoadSite, ReadsEveryKeyOfASite)
{
    SettingsFile file("[UFF]\r\n" + SavedSite() + "[General]\r\nLog=Corvrec.log\r\n");
    SiteRecord site;

    EXPECT_TRUE(LoadSite(*file, "UFF", site));

    EXPECT_EQ(site, SampleSite());
}

TEST(LoadSite, KeysThatTheSiteLacksKeepWhatTheRecordHolds)
{
    SettingsFile file("[UFF]\r\nBaud=300\r\n");
    SiteRecord site = SampleSite();

    LoadSite(*file, "UFF", site);

    SiteRecord expected = SampleSite();
    expected.baud = "300";
    EXPECT_EQ(site, expected);
}

TEST(LoadSite, ValuesThatFitNothingKeepWhatTheRecordHolds)
{
    SettingsFile file("[UFF]\r\nDispositivo=X\r\nHandshake=X\r\nParita=X\r\nXon=999\r\nXoff=999\r\n");
    SiteRecord site = SampleSite();

    LoadSite(*file, "UFF", site);

    EXPECT_EQ(site, SampleSite());
}

TEST(LoadSite, TheIntervalOfASiteWithoutKindIsThatOfTheKindHeld)
{
    SettingsFile file("[UFF]\r\nOgni=5400\r\n");
    SiteRecord site;
    site.schedule = ScheduleKind::hourly;

    LoadSite(*file, "UFF", site);

    EXPECT_EQ(site.interval, "01:30");
}

TEST(LoadSite, TheContinuousKindKeepsTheIntervalHeld)
{
    SettingsFile file("[UFF]\r\nRicorrenza=0\r\nOgni=5400\r\n");
    SiteRecord site;
    site.interval = "7";

    LoadSite(*file, "UFF", site);

    EXPECT_EQ(site.interval, "7");
}

TEST(LoadSite, AMissingFileChangesNothing)
{
    SettingsFile file;
    SiteRecord site = SampleSite();

    EXPECT_FALSE(LoadSite(*file, "UFF", site));

    EXPECT_EQ(site, SampleSite());
    EXPECT_FALSE(file.Exists());
}

TEST(LoadSite, TheSentinelAsAValueIsAMissingKey)
{
    EXPECT_EQ(Loaded("MODEM=-CaVacca-\r\nDati=-CaVacca-\r\nFileTimeout=-CaVacca-"), SiteRecord());
}

// The result of loading these lines.
bool Result(const std::string& lines)
{
    SettingsFile file("[UFF]\r\n" + lines);
    SiteRecord site;
    return LoadSite(*file, "UFF", site);
}

TEST(LoadSite, ReportsOnlyWhetherBothAlertsWereFound)
{
    EXPECT_TRUE(Result("FileTimeout=-1\r\nSpazioTimeout=\r\n"));
    EXPECT_FALSE(Result("FileTimeout=600\r\n"));
    EXPECT_FALSE(Result("SpazioTimeout=20\r\n"));
    EXPECT_FALSE(Result("Dispositivo=COM\r\nMODEM=0\r\n"));
}

TEST(LoadSite, ValuesAreCutAt99Characters)
{
    const SiteRecord site = Loaded("Dati=" + std::string(98, 'x') + "yz");

    EXPECT_EQ(site.dataFile, std::string(98, 'x') + "y");
}

TEST(LoadSite, FindsASiteWhoseCodeHasAccents)
{
    SettingsFile file("[CITT\xC0]\r\nDati=\x80.txt\r\n");
    SiteRecord site;

    LoadSite(*file, "CITTÀ", site);

    EXPECT_EQ(site.dataFile, "€.txt");
}

TEST(LoadSite, WritesNothing)
{
    const std::string bytes = "; nota\r\n[UFF]\r\nOra=8:30\r\nXon=Q\r\n";
    SettingsFile file(bytes);
    SiteRecord site;

    LoadSite(*file, "UFF", site);

    EXPECT_EQ(file.Bytes(), bytes);
}

TEST(LoadSite, AsksForEachKeyOnceInFileOrderWithABufferOf100)
{
    RecordingProfileFile file;
    SiteRecord site;

    LoadSite(file, "UFF", site);

    EXPECT_THAT(file.reads,
                ElementsAre("[UFF]SitoAbilitato 100", "[UFF]Dispositivo 100", "[UFF]MODEM 100",
                            "[UFF]Handshake 100", "[UFF]Xon 100", "[UFF]Xoff 100", "[UFF]Baud 100",
                            "[UFF]BitDati 100", "[UFF]Parita 100", "[UFF]Stop 100", "[UFF]Ricorrenza 100",
                            "[UFF]Ogni 100", "[UFF]Ora 100", "[UFF]AggData 100", "[UFF]AggOra 100",
                            "[UFF]EliminaNull 100", "[UFF]CorreggiCR 100", "[UFF]Dati 100", "[UFF]Dati2 100",
                            "[UFF]Storico 100", "[General]Log 100", "[UFF]Modello 100",
                            "[UFF]StringaModem 100", "[UFF]StringaReset 100", "[UFF]NumeroTel 100",
                            "[UFF]Importazione 100", "[UFF]FileTimeout 100", "[UFF]SpazioTimeout 100"));
}

} // namespace

} // namespace corvrec
