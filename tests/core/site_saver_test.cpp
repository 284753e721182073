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

using namespace std::string_literals;

constexpr DateTime kToday{.year = 2026, .month = 3, .day = 3};

// The key's line after saving the sample with one change.
template <class Change>
std::string LineAfter(const char* key, Change change)
{
    SettingsFile file;
    SiteRecord site = SampleSite();
    change(site);
    SaveSite(*file, "UFF", "Ufficio", site, kToday);
    return file.Line("UFF", key);
}

TEST(SaveSite, WritesAWholeNewFile)
{
    SettingsFile file;

    EXPECT_TRUE(SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday).done);

    EXPECT_EQ(file.Bytes(),
              "[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\n" + SavedSite() + "[General]\r\nLog=Corvrec.log\r\n");
    EXPECT_TRUE(IsWhole(file, "UFF"));
}

TEST(SaveSite, WritesInAFixedOrder)
{
    RecordingProfileFile file;

    EXPECT_TRUE(SaveSite(file, "UFF", "Ufficio", SampleSite(), kToday).done);

    EXPECT_THAT(file.writes,
                testing::ElementsAre(
                    "[Siti]UFF=Ufficio", "[UFF]SitoAbilitato=1", "[UFF]STimeRead=20", "[UFF]STimeWrite=20",
                    "[UFF]MTimeRead=60", "[UFF]MTimeWrite=60", "[UFF]FlagCRLF=0", "[UFF]Dispositivo=STX30",
                    "[UFF]MODEM=1", "[UFF]Handshake=XON", "[UFF]Xon= 17", "[UFF]Xoff= 19", "[UFF]Baud=9600",
                    "[UFF]BitDati=8", "[UFF]Parita=E", "[UFF]Stop=1", "[UFF]Ricorrenza=-2",
                    "[UFF]Ogni= 172800", "[UFF]Ora=08:30 03/03/2026", "[UFF]AggData=1", "[UFF]AggOra=0",
                    "[UFF]EliminaNull=1", "[UFF]CorreggiCR=0", "[UFF]Dati=C:\\Dati\\Ufficio.txt",
                    "[UFF]Dati2=C:\\Dati\\Scambio.txt", "[UFF]Storico=C:\\Dati\\Storico.txt",
                    "[General]Log=Corvrec.log", "[UFF]Modello=Generico", "[UFF]StringaModem=ATX3S0=0",
                    "[UFF]StringaReset=AT&F", "[UFF]NumeroTel=ATDT0123", "[UFF]Importazione=3",
                    "[UFF]FileTimeout=600", "[UFF]SpazioTimeout=20", "[UFF]TimeoutFineImp=15",
                    "[UFF]CharToDel=00"));
    EXPECT_TRUE(file.reads.empty());
}

TEST(SaveSite, ChangesItsOwnKeysOfAnExistingFileAndNothingElse)
{
    SettingsFile file("; configurazione\n"
                      "[General]\n"
                      "Com=COM1\n"
                      "log = vecchio.log\n"
                      "\n"
                      "[Siti]\r\n"
                      "A=Alfa\r\n"
                      "uff=Vecchio nome\r\n"
                      "; elenco\r\n"
                      "\r\n"
                      "[Uff]\r\n"
                      "  STimeRead = 5\r\n"
                      "Estraneo=1\r\n"
                      "; nota\r\n"
                      "Baud=300\r\n"
                      "\r\n"
                      "[A]\r\n"
                      "Baud=1200");
    SiteRecord site = SampleSite();
    site.baud = "19200";

    EXPECT_TRUE(SaveSite(*file, "UFF", "Ufficio", site, kToday).done);

    EXPECT_EQ(file.Bytes(), "; configurazione\n"
                            "[General]\n"
                            "Com=COM1\n"
                            "log =Corvrec.log\n"
                            "\n"
                            "[Siti]\r\n"
                            "A=Alfa\r\n"
                            "uff=Ufficio\r\n"
                            "; elenco\r\n"
                            "\r\n"
                            "[Uff]\r\n"
                            "  STimeRead =20\r\n"
                            "Estraneo=1\r\n"
                            "; nota\r\n"
                            "Baud=19200\r\n"
                            "SitoAbilitato=1\r\n"
                            "STimeWrite=20\r\n"
                            "MTimeRead=60\r\n"
                            "MTimeWrite=60\r\n"
                            "FlagCRLF=0\r\n"
                            "Dispositivo=STX30\r\n"
                            "MODEM=1\r\n"
                            "Handshake=XON\r\n"
                            "Xon= 17\r\n"
                            "Xoff= 19\r\n"
                            "BitDati=8\r\n"
                            "Parita=E\r\n"
                            "Stop=1\r\n"
                            "Ricorrenza=-2\r\n"
                            "Ogni= 172800\r\n"
                            "Ora=08:30 03/03/2026\r\n"
                            "AggData=1\r\n"
                            "AggOra=0\r\n"
                            "EliminaNull=1\r\n"
                            "CorreggiCR=0\r\n"
                            "Dati=C:\\Dati\\Ufficio.txt\r\n"
                            "Dati2=C:\\Dati\\Scambio.txt\r\n"
                            "Storico=C:\\Dati\\Storico.txt\r\n"
                            "Modello=Generico\r\n"
                            "StringaModem=ATX3S0=0\r\n"
                            "StringaReset=AT&F\r\n"
                            "NumeroTel=ATDT0123\r\n"
                            "Importazione=3\r\n"
                            "FileTimeout=600\r\n"
                            "SpazioTimeout=20\r\n"
                            "TimeoutFineImp=15\r\n"
                            "CharToDel=00\r\n"
                            "\r\n"
                            "[A]\r\n"
                            "Baud=1200");
}

TEST(SaveSite, ASecondSaveChangesNothing)
{
    SettingsFile file;
    SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday);
    const std::string once = file.Bytes();

    SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday);

    EXPECT_EQ(file.Bytes(), once);
}

TEST(SaveSite, AllSitesShareOneLog)
{
    SettingsFile file;
    SiteRecord site = SampleSite();
    SaveSite(*file, "A", "Alfa", site, kToday);
    site.logFile = "nuovo.log";

    SaveSite(*file, "B", "Beta", site, kToday);

    EXPECT_EQ(file.Line("General", "Log"), "Log=nuovo.log");
    EXPECT_EQ(file.Line("A", "Log"), "");
    EXPECT_EQ(file.Line("B", "Log"), "");
}

TEST(SaveSite, EverySaveResetsTheRecordersSettings)
{
    SettingsFile file("[UFF]\r\nSTimeRead=5\r\nSTimeWrite=5\r\nMTimeRead=5\r\nMTimeWrite=5\r\nFlagCRLF=1\r\n"
                      "TimeoutFineImp=5\r\nCharToDel=FF\r\n");

    SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday);

    EXPECT_TRUE(
        file.Bytes().starts_with("[UFF]\r\nSTimeRead=20\r\nSTimeWrite=20\r\nMTimeRead=60\r\nMTimeWrite=60\r\n"
                                 "FlagCRLF=0\r\nTimeoutFineImp=15\r\nCharToDel=00\r\n"));
}

// One change of the sample, and the line that it results in.
struct Row {
    const char* name;
    const char* key;
    void (*change)(SiteRecord&);
    const char* line;
};

class SaveSiteKey : public testing::TestWithParam<Row>
{
};

TEST_P(SaveSiteKey, WritesItsLine)
{
    EXPECT_EQ(LineAfter(GetParam().key, GetParam().change), GetParam().line);
}

const auto kName = [](const auto& row) { return row.param.name; };

INSTANTIATE_TEST_SUITE_P(Enabled, SaveSiteKey,
                         testing::Values(Row{"no", "SitoAbilitato", [](SiteRecord& s) { s.enabled = false; },
                                             "SitoAbilitato=0"},
                                         Row{"unknown", "SitoAbilitato",
                                             [](SiteRecord& s) { s.enabled.reset(); }, "SitoAbilitato=0"}),
                         kName);

INSTANTIATE_TEST_SUITE_P(
    Device, SaveSiteKey,
    testing::Values(Row{"row0", "Dispositivo", [](SiteRecord& s) { s.device = 0; }, "Dispositivo=COM"},
                    Row{"row1", "Dispositivo", [](SiteRecord& s) { s.device = 1; }, "Dispositivo=BUFF"},
                    Row{"row2", "Dispositivo", [](SiteRecord& s) { s.device = 2; }, "Dispositivo=STX11"},
                    Row{"row3", "Dispositivo", [](SiteRecord& s) { s.device = 3; }, "Dispositivo=STX20"},
                    Row{"row4", "Dispositivo", [](SiteRecord& s) { s.device = 4; }, "Dispositivo=STX30"},
                    Row{"row5", "Dispositivo", [](SiteRecord& s) { s.device = 5; }, "Dispositivo=STX40"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Connection, SaveSiteKey,
    testing::Values(Row{"local", "MODEM", [](SiteRecord& s) { s.remote = false; }, "MODEM=0"},
                    Row{"unknown", "MODEM", [](SiteRecord& s) { s.remote.reset(); }, "MODEM=0"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Handshake, SaveSiteKey,
    testing::Values(Row{"row0", "Handshake", [](SiteRecord& s) { s.handshake = 0; }, "Handshake=NONE"},
                    Row{"row1", "Handshake", [](SiteRecord& s) { s.handshake = 1; }, "Handshake=XON"},
                    Row{"row2", "Handshake", [](SiteRecord& s) { s.handshake = 2; }, "Handshake=HDW"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    FlowCharacters, SaveSiteKey,
    testing::Values(
        Row{"lowerCase", "Xon", [](SiteRecord& s) { s.xon = FlowCharacter{.control = true, .text = "q"}; },
            "Xon= 49"},
        Row{"digit", "Xoff", [](SiteRecord& s) { s.xoff = FlowCharacter{.control = true, .text = "7"}; },
            "Xoff=-9"},
        Row{"itself", "Xon", [](SiteRecord& s) { s.xon = FlowCharacter{.control = false, .text = "Q"}; },
            "Xon=Q"},
        Row{"itselfWithAccent", "Xoff",
            [](SiteRecord& s) { s.xoff = FlowCharacter{.control = false, .text = "è"}; }, "Xoff=\xE8"},
        Row{"emptyField", "Xon", [](SiteRecord& s) { s.xon = FlowCharacter{.control = false, .text = ""}; },
            "Xon="},
        Row{"unknown", "Xoff", [](SiteRecord& s) { s.xoff.reset(); }, "Xoff="}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Line, SaveSiteKey,
    testing::Values(Row{"baud", "Baud", [](SiteRecord& s) { s.baud = "115200"; }, "Baud=115200"},
                    Row{"noBaud", "Baud", [](SiteRecord& s) { s.baud.reset(); }, "Baud="},
                    Row{"dataBits", "BitDati", [](SiteRecord& s) { s.dataBits = "7"; }, "BitDati=7"},
                    Row{"noDataBits", "BitDati", [](SiteRecord& s) { s.dataBits.reset(); }, "BitDati="},
                    Row{"parity0", "Parita", [](SiteRecord& s) { s.parity = 0; }, "Parita=N"},
                    Row{"parity1", "Parita", [](SiteRecord& s) { s.parity = 1; }, "Parita=E"},
                    Row{"parity2", "Parita", [](SiteRecord& s) { s.parity = 2; }, "Parita=O"},
                    Row{"stopBits", "Stop", [](SiteRecord& s) { s.stopBits = "2"; }, "Stop=2"},
                    Row{"noStopBits", "Stop", [](SiteRecord& s) { s.stopBits.reset(); }, "Stop="}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Transformations, SaveSiteKey,
    testing::Values(Row{"noDate", "AggData", [](SiteRecord& s) { s.addDate = false; }, "AggData=0"},
                    Row{"dateUnknown", "AggData", [](SiteRecord& s) { s.addDate.reset(); }, "AggData=0"},
                    Row{"time", "AggOra", [](SiteRecord& s) { s.addTime = true; }, "AggOra=1"},
                    Row{"nullsStay", "EliminaNull", [](SiteRecord& s) { s.dropNulls = false; },
                        "EliminaNull=0"},
                    Row{"nullsStayInTheStratoboxBuffer", "EliminaNull", [](SiteRecord& s) { s.device = 5; },
                        "EliminaNull=0"},
                    Row{"crLf", "CorreggiCR", [](SiteRecord& s) { s.fixCrLf = true; }, "CorreggiCR=1"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Files, SaveSiteKey,
    testing::Values(
        Row{"dataWithEquals", "Dati", [](SiteRecord& s) { s.dataFile = "a=b;c [d].txt"; },
            "Dati=a=b;c [d].txt"},
        Row{"dataWithBlanksAndQuotes", "Dati", [](SiteRecord& s) { s.dataFile = " \"a\" "; }, "Dati= \"a\" "},
        Row{"dataWithLineBreaks", "Dati", [](SiteRecord& s) { s.dataFile = "a\r\n[General]\r\nCom=9"; },
            "Dati=a[General]Com=9"},
        Row{"dataWithTab", "Dati", [](SiteRecord& s) { s.dataFile = "a\tb"; }, "Dati=a\tb"},
        Row{"dataWithAccents", "Dati", [](SiteRecord& s) { s.dataFile = "città€Ж"; }, "Dati=citt\xE0\x80?"},
        Row{"noData", "Dati", [](SiteRecord& s) { s.dataFile.reset(); }, "Dati="},
        Row{"noExchange", "Dati2", [](SiteRecord& s) { s.exchangeFile.reset(); }, "Dati2="},
        Row{"noHistory", "Storico", [](SiteRecord& s) { s.historyFile.reset(); }, "Storico="}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Modem, SaveSiteKey,
    testing::Values(
        Row{"noModel", "Modello", [](SiteRecord& s) { s.modemModel.reset(); }, "Modello="},
        Row{"initStringGetsAt", "StringaModem", [](SiteRecord& s) { s.initString = "X3S0=0"; },
            "StringaModem=ATX3S0=0"},
        Row{"initStringInLowerCase", "StringaModem", [](SiteRecord& s) { s.initString = "at&f"; },
            "StringaModem=at&f"},
        Row{"noInitString", "StringaModem", [](SiteRecord& s) { s.initString.reset(); }, "StringaModem=AT"},
        Row{"resetStringGetsAt", "StringaReset", [](SiteRecord& s) { s.resetString = "&F"; },
            "StringaReset=AT&F"},
        Row{"noResetString", "StringaReset", [](SiteRecord& s) { s.resetString.reset(); }, "StringaReset=AT"},
        Row{"pulse", "NumeroTel",
            [](SiteRecord& s) { s.dial = DialNumber{.tone = false, .number = "0,1 2"}; },
            "NumeroTel=ATDP0,1 2"},
        Row{"noNumber", "NumeroTel", [](SiteRecord& s) { s.dial.reset(); }, "NumeroTel=ATDP"},
        Row{"noAttempts", "Importazione", [](SiteRecord& s) { s.importAttempts.reset(); }, "Importazione="}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    Alerts, SaveSiteKey,
    testing::Values(
        Row{"fileOff", "FileTimeout", [](SiteRecord& s) { s.fileAlert = Alert{.on = false, .limit = "600"}; },
            "FileTimeout=0"},
        Row{"fileUnknown", "FileTimeout", [](SiteRecord& s) { s.fileAlert.reset(); }, "FileTimeout=0"},
        Row{"diskOff", "SpazioTimeout",
            [](SiteRecord& s) { s.diskAlert = Alert{.on = false, .limit = "20"}; }, "SpazioTimeout=0"},
        Row{"diskEmpty", "SpazioTimeout", [](SiteRecord& s) { s.diskAlert = Alert{.on = true, .limit = ""}; },
            "SpazioTimeout="},
        Row{"diskUnknown", "SpazioTimeout", [](SiteRecord& s) { s.diskAlert.reset(); }, "SpazioTimeout=0"}),
    kName);

// The three lines of a schedule, in file order.
std::string ScheduleLines(const SiteRecord& site)
{
    SettingsFile file;
    SaveSite(*file, "UFF", "Ufficio", site, kToday);
    const std::string bytes = file.Bytes();
    const std::size_t begin = bytes.find("Stop=1\r\n") + "Stop=1\r\n"s.size();
    return bytes.substr(begin, bytes.find("AggData=") - begin);
}

TEST(SaveSite, ContinuousStartsAtNoonOfToday)
{
    SiteRecord site = SampleSite();
    site.schedule = ScheduleKind::continuous;

    EXPECT_EQ(ScheduleLines(site), "Ricorrenza=0\r\nOra=12.00 03/03/2026\r\nOgni=1\r\n");
}

TEST(SaveSite, ContinuousKeepsTheMark)
{
    SiteRecord site = SampleSite();
    site.schedule = ScheduleKind::continuous;
    site.marked = true;

    EXPECT_EQ(ScheduleLines(site), "Ricorrenza=0\r\nOra=12.00 03/03/2026p\r\nOgni=1\r\n");
}

TEST(SaveSite, HourlyIntervalIsInSeconds)
{
    SiteRecord site = SampleSite();
    site.schedule = ScheduleKind::hourly;
    site.interval = "01:30";

    EXPECT_EQ(ScheduleLines(site), "Ricorrenza=-1\r\nOgni= 5400\r\nOra=08:30 03/03/2026\r\n");
}

TEST(SaveSite, DailyKeepsTheMark)
{
    SiteRecord site = SampleSite();
    site.marked = true;

    EXPECT_EQ(ScheduleLines(site), "Ricorrenza=-2\r\nOgni= 172800\r\nOra=08:30 03/03/2026p\r\n");
}

TEST(SaveSite, WeekendIsMask65WithALeadingBlank)
{
    SiteRecord site = SampleSite();
    site.schedule = ScheduleKind::weekly;
    site.weekdays = weekday::saturday | weekday::sunday;
    site.interval = " 1";

    EXPECT_EQ(ScheduleLines(site), "Ricorrenza= 65\r\nOgni= 604800\r\nOra=08:30 03/03/2026\r\n");
}

TEST(SaveSite, ScheduleFieldsThatAreNotKnownAreEmpty)
{
    SiteRecord site = SampleSite();
    site.schedule = ScheduleKind::weekly;
    site.interval.reset();
    site.startTime.reset();
    site.marked.reset();

    EXPECT_EQ(ScheduleLines(site), "Ricorrenza= 0\r\nOgni= 0\r\nOra= 03/03/2026\r\n");
}

TEST(SaveSite, WithoutAKindTheScheduleIsNotWritten)
{
    SiteRecord site = SampleSite();
    site.schedule.reset();

    EXPECT_EQ(ScheduleLines(site), "");
}

TEST(SaveSite, WithoutAKindAStoredScheduleStays)
{
    SettingsFile file("[UFF]\r\nRicorrenza=-1\r\nOgni=5400\r\nOra=8:30\r\n");
    SiteRecord site = SampleSite();
    site.schedule.reset();

    SaveSite(*file, "UFF", "Ufficio", site, kToday);

    EXPECT_TRUE(file.Bytes().starts_with("[UFF]\r\nRicorrenza=-1\r\nOgni=5400\r\nOra=8:30\r\n"));
}

TEST(SaveSite, TheNameMayBeEmptyOrHoldAnyCharacter)
{
    SettingsFile file;

    SaveSite(*file, "A", "", SampleSite(), kToday);
    SaveSite(*file, "B", "Città = [1]\r\n; \"due\"", SampleSite(), kToday);

    EXPECT_EQ(file.Line("Siti", "A"), "A=");
    EXPECT_EQ(file.Line("Siti", "B"), "B=Citt\xE0 = [1]; \"due\"");
}

TEST(SaveSite, ACodeMayHoldAccents)
{
    SettingsFile file;

    SaveSite(*file, "CITTÀ", "Città", SampleSite(), kToday);

    EXPECT_EQ(file.Line("Siti", "CITT\xC0"), "CITT\xC0=Citt\xE0");
    EXPECT_EQ(file.Line("CITT\xC0", "Baud"), "Baud=9600");
}

// A change that cannot be saved, and the last line written before it.
struct Stop {
    const char* name;
    void (*change)(SiteRecord&);
    const char* lastLine;
    const char* key; // that has no value
};

class SaveSiteStops : public testing::TestWithParam<Stop>
{
};

TEST_P(SaveSiteStops, AfterTheEarlierLines)
{
    SettingsFile file;
    SiteRecord site = SampleSite();
    GetParam().change(site);

    EXPECT_EQ(SaveSite(*file, "UFF", "Ufficio", site, kToday).stoppedAt, GetParam().key);

    EXPECT_TRUE(file.Bytes().starts_with("[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\nSitoAbilitato=1\r\n"));
    EXPECT_TRUE(file.Bytes().ends_with("\r\n"s + GetParam().lastLine + "\r\n")) << file.Bytes();
    EXPECT_FALSE(IsWhole(file, "UFF"));
}

INSTANTIATE_TEST_SUITE_P(
    SaveSite, SaveSiteStops,
    testing::Values(Stop{"noDevice", [](SiteRecord& s) { s.device.reset(); }, "FlagCRLF=0", "Dispositivo"},
                    Stop{"deviceBelow", [](SiteRecord& s) { s.device = -1; }, "FlagCRLF=0", "Dispositivo"},
                    Stop{"deviceAbove", [](SiteRecord& s) { s.device = 6; }, "FlagCRLF=0", "Dispositivo"},
                    Stop{"noHandshake", [](SiteRecord& s) { s.handshake.reset(); }, "MODEM=1", "Handshake"},
                    Stop{"handshakeAbove", [](SiteRecord& s) { s.handshake = 3; }, "MODEM=1", "Handshake"},
                    Stop{"xonEmpty",
                         [](SiteRecord& s) { s.xon = FlowCharacter{.control = true, .text = ""}; },
                         "Handshake=XON", "Xon"},
                    Stop{"xoffEmpty",
                         [](SiteRecord& s) { s.xoff = FlowCharacter{.control = true, .text = ""}; },
                         "Xon= 17", "Xoff"},
                    Stop{"noParity", [](SiteRecord& s) { s.parity.reset(); }, "BitDati=8", "Parita"},
                    Stop{"parityAbove", [](SiteRecord& s) { s.parity = 3; }, "BitDati=8", "Parita"}),
    kName);

TEST(SaveSite, ReportsOnlyTheLastWrite)
{
    RecordingProfileFile file;
    file.failing = {kLastKey.data()};

    EXPECT_FALSE(SaveSite(file, "UFF", "Ufficio", SampleSite(), kToday).done);
}

TEST(SaveSite, WritesEveryKeyWhateverFailedBefore)
{
    RecordingProfileFile good;
    SaveSite(good, "UFF", "Ufficio", SampleSite(), kToday);
    RecordingProfileFile failing;
    failing.failing = {"UFF",        "SitoAbilitato", "STimeRead",   "STimeWrite",    "MTimeRead",
                       "MTimeWrite", "FlagCRLF",      "Dispositivo", "MODEM",         "Handshake",
                       "Xon",        "Xoff",          "Baud",        "BitDati",       "Parita",
                       "Stop",       "Ricorrenza",    "Ogni",        "Ora",           "AggData",
                       "AggOra",     "EliminaNull",   "CorreggiCR",  "Dati",          "Dati2",
                       "Storico",    "Log",           "Modello",     "StringaModem",  "StringaReset",
                       "NumeroTel",  "Importazione",  "FileTimeout", "SpazioTimeout", "TimeoutFineImp"};

    EXPECT_TRUE(SaveSite(failing, "UFF", "Ufficio", SampleSite(), kToday).done);

    EXPECT_EQ(failing.writes, good.writes);
    EXPECT_EQ(failing.writes.size(), 36U);
}

class RoundTrip : public testing::TestWithParam<Row>
{
};

TEST_P(RoundTrip, LoadsAndSavesTheSameTwice)
{
    SettingsFile file;
    SiteRecord site = SampleSite();
    GetParam().change(site);
    SaveSite(*file, "UFF", "Ufficio", site, kToday);
    const std::string saved = file.Bytes();

    SiteRecord loaded;
    LoadSite(*file, "UFF", loaded);
    SaveSite(*file, "UFF", "Ufficio", loaded, kToday);
    SiteRecord loadedAgain;
    LoadSite(*file, "UFF", loadedAgain);

    EXPECT_EQ(file.Bytes(), saved);
    EXPECT_EQ(loadedAgain, loaded);
}

INSTANTIATE_TEST_SUITE_P(SaveSite, RoundTrip,
                         testing::Values(Row{"daily", "", [](SiteRecord&) {}, ""},
                                         Row{"continuousMarked", "",
                                             [](SiteRecord& s) {
                                                 s.schedule = ScheduleKind::continuous;
                                                 s.marked = true;
                                             },
                                             ""},
                                         Row{"hourly", "",
                                             [](SiteRecord& s) {
                                                 s.schedule = ScheduleKind::hourly;
                                                 s.interval = "12:05";
                                             },
                                             ""},
                                         Row{"weeklyMarked", "",
                                             [](SiteRecord& s) {
                                                 s.schedule = ScheduleKind::weekly;
                                                 s.weekdays = 42;
                                                 s.interval = "3";
                                                 s.marked = true;
                                             },
                                             ""},
                                         Row{"localPulseAlertsOff", "",
                                             [](SiteRecord& s) {
                                                 s.device = 0;
                                                 s.remote = false;
                                                 s.dial = DialNumber{.tone = false, .number = ""};
                                                 s.fileAlert = Alert{.on = false, .limit = "600"};
                                                 s.diskAlert = Alert{.on = false, .limit = "20"};
                                             },
                                             ""},
                                         Row{"accents", "",
                                             [](SiteRecord& s) {
                                                 s.dataFile = R"(C:\Città\però€.txt)";
                                                 s.modemModel = "Modello «è»";
                                             },
                                             ""}),
                         kName);

TEST(SaveSite, ACharacterStoredAsItselfLoadsAsControlAtSign)
{
    SettingsFile file;
    SiteRecord site = SampleSite();
    site.xon = FlowCharacter{.control = false, .text = "Q"};
    SaveSite(*file, "UFF", "Ufficio", site, kToday);

    SiteRecord loaded;
    LoadSite(*file, "UFF", loaded);

    EXPECT_EQ(loaded.xon, (FlowCharacter{.control = true, .text = "@"}));
}

} // namespace

} // namespace corvrec
