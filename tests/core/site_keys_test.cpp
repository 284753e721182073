#include "core/site/new_site.h"
#include "core/site/site_keys.h"
#include "tests/support/recording_profile_file.h"
#include "tests/support/sample_site.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvrec
{

namespace
{

using namespace std::string_literals;

constexpr DateTime kToday{.year = 2026, .month = 3, .day = 3};

// Lines of a site's section, and the fields of the record that they stand for.
struct Row {
    const char* lines;
    void (*set)(SiteRecord& site);
};

void Nothing(SiteRecord& /*site*/) {}

FlowCharacter Control(const char* letter)
{
    return {.control = true, .text = letter};
}

FlowCharacter Plain(const char* text)
{
    return {.control = false, .text = text};
}

Alert Off()
{
    return {.on = false, .limit = std::nullopt};
}

Alert On(const char* limit)
{
    return {.on = true, .limit = limit};
}

void SetSchedule(SiteRecord& site, ScheduleKind kind, const char* interval, const char* start, bool marked)
{
    site.schedule = kind;
    site.interval = interval;
    site.startTime = start;
    site.marked = marked;
}

// Loaded and saved alike.
constexpr std::array kBothWays{
    Row{"SitoAbilitato=1", [](SiteRecord& s) { s.enabled = true; }},
    Row{"SitoAbilitato=0", [](SiteRecord& s) { s.enabled = false; }},
    Row{"Dispositivo=COM", [](SiteRecord& s) { s.device = 0; }},
    Row{"Dispositivo=BUFF", [](SiteRecord& s) { s.device = 1; }},
    Row{"Dispositivo=STX11", [](SiteRecord& s) { s.device = 2; }},
    Row{"Dispositivo=STX20", [](SiteRecord& s) { s.device = 3; }},
    Row{"Dispositivo=STX30", [](SiteRecord& s) { s.device = 4; }},
    Row{"Dispositivo=STX40", [](SiteRecord& s) { s.device = 5; }},
    Row{"MODEM=0", [](SiteRecord& s) { s.remote = false; }},
    Row{"MODEM=1", [](SiteRecord& s) { s.remote = true; }},
    Row{"Handshake=NONE", [](SiteRecord& s) { s.handshake = 0; }},
    Row{"Handshake=XON", [](SiteRecord& s) { s.handshake = 1; }},
    Row{"Handshake=HDW", [](SiteRecord& s) { s.handshake = 2; }},
    Row{"Xoff=-9", [](SiteRecord& s) { s.xoff = Control("7"); }},
    Row{"Baud=115200", [](SiteRecord& s) { s.baud = "115200"; }},
    Row{"Baud=", [](SiteRecord& s) { s.baud = ""; }},
    Row{"BitDati=nove", [](SiteRecord& s) { s.dataBits = "nove"; }},
    Row{"Parita=N", [](SiteRecord& s) { s.parity = 0; }},
    Row{"Parita=E", [](SiteRecord& s) { s.parity = 1; }},
    Row{"Parita=O", [](SiteRecord& s) { s.parity = 2; }},
    Row{"Stop=1.5", [](SiteRecord& s) { s.stopBits = "1.5"; }},
    Row{"Ricorrenza=0\r\nOra=12.00 03/03/2026p\r\nOgni=1",
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::continuous;
            s.startTime = "12:00";
            s.marked = true;
        }},
    Row{"AggData=1", [](SiteRecord& s) { s.addDate = true; }},
    Row{"AggData=0", [](SiteRecord& s) { s.addDate = false; }},
    Row{"AggOra=1", [](SiteRecord& s) { s.addTime = true; }},
    Row{"EliminaNull=1", [](SiteRecord& s) { s.dropNulls = true; }},
    Row{"EliminaNull=0", [](SiteRecord& s) { s.dropNulls = false; }},
    Row{"CorreggiCR=1", [](SiteRecord& s) { s.fixCrLf = true; }},
    Row{"Dati=a=b;c [d].txt", [](SiteRecord& s) { s.dataFile = "a=b;c [d].txt"; }},
    Row{"Dati=C:\\Citt\xE0\\per\xF2\x80.txt", [](SiteRecord& s) { s.dataFile = R"(C:\Città\però€.txt)"; }},
    Row{"Dati=", [](SiteRecord& s) { s.dataFile = ""; }},
    Row{R"(Dati2=\\server\x y.txt)", [](SiteRecord& s) { s.exchangeFile = R"(\\server\x y.txt)"; }},
    Row{"Storico=/var/storico.txt", [](SiteRecord& s) { s.historyFile = "/var/storico.txt"; }},
    Row{"Modello=Modello \xAB\xE8\xBB", [](SiteRecord& s) { s.modemModel = "Modello «è»"; }},
    Row{"StringaModem=ATX3S0=0&M5", [](SiteRecord& s) { s.initString = "ATX3S0=0&M5"; }},
    Row{"StringaReset=at&f", [](SiteRecord& s) { s.resetString = "at&f"; }},
    Row{"NumeroTel=ATDT0123", [](SiteRecord& s) { s.dial = DialNumber{.tone = true, .number = "0123"}; }},
    Row{"NumeroTel=ATDP0,1 2", [](SiteRecord& s) { s.dial = DialNumber{.tone = false, .number = "0,1 2"}; }},
    Row{"Importazione=3x", [](SiteRecord& s) { s.importAttempts = "3x"; }},
    Row{"FileTimeout=600", [](SiteRecord& s) { s.fileAlert = On("600"); }},
    Row{"FileTimeout=0", [](SiteRecord& s) { s.fileAlert = On("0"); }},
    Row{"SpazioTimeout=20 MB", [](SiteRecord& s) { s.diskAlert = On("20 MB"); }},
    Row{"SpazioTimeout=", [](SiteRecord& s) { s.diskAlert = On(""); }},
};

// The same, for values that begin with a blank.
constexpr std::array kBothWaysWithBlank{
    Row{"Xon= 17", [](SiteRecord& s) { s.xon = Control("Q"); }},
    Row{"Xoff= 19", [](SiteRecord& s) { s.xoff = Control("S"); }},
    Row{"Ricorrenza=-1\r\nOgni= 5400\r\nOra=08:30 03/03/2026",
        [](SiteRecord& s) { SetSchedule(s, ScheduleKind::hourly, "01:30", "08:30", false); }},
    Row{"Ricorrenza=-2\r\nOgni= 172800\r\nOra=08:30 03/03/2026p",
        [](SiteRecord& s) { SetSchedule(s, ScheduleKind::daily, "2", "08:30", true); }},
    Row{"Ricorrenza= 65\r\nOgni= 604800\r\nOra=23:59 03/03/2026",
        [](SiteRecord& s) {
            SetSchedule(s, ScheduleKind::weekly, " 1", "23:59", false);
            s.weekdays = weekday::saturday | weekday::sunday;
        }},
};

// Loaded; a save would write something else.
constexpr std::array kLoaded{
    Row{"SitoAbilitato=2", [](SiteRecord& s) { s.enabled = false; }},
    Row{"SitoAbilitato=1x", [](SiteRecord& s) { s.enabled = true; }},
    Row{"SitoAbilitato=", [](SiteRecord& s) { s.enabled = false; }},
    Row{"Dispositivo=stx30", [](SiteRecord& s) { s.device = 4; }},
    Row{"Dispositivo=bUfF", [](SiteRecord& s) { s.device = 1; }},
    Row{"Dispositivo=STX301", Nothing},
    Row{"Dispositivo=STX3", Nothing},
    Row{"Dispositivo=Pabx", Nothing},
    Row{"Dispositivo=", Nothing},
    Row{"MODEM=00", [](SiteRecord& s) { s.remote = true; }},
    Row{"MODEM=no", [](SiteRecord& s) { s.remote = true; }},
    Row{"MODEM=", [](SiteRecord& s) { s.remote = true; }},
    Row{"Handshake=hdw", [](SiteRecord& s) { s.handshake = 2; }},
    Row{"Handshake=Hardware", Nothing},
    Row{"Handshake=", Nothing},
    Row{"Xon=65", [](SiteRecord& s) { s.xon = Plain("A"); }},
    Row{"Xoff=233", [](SiteRecord& s) { s.xoff = Plain("é"); }},
    Row{"Xon=Q", [](SiteRecord& s) { s.xon = Control("@"); }}, // stored as itself
    Row{"Xoff=", [](SiteRecord& s) { s.xoff = Control("@"); }},
    Row{"Xoff=32", [](SiteRecord& s) { s.xoff = Plain(" "); }},
    Row{"Xon=256\r\nXoff=19", [](SiteRecord& s) { s.xoff = Control("S"); }},
    Row{"Xon=17\r\nXoff=-64", [](SiteRecord& s) { s.xon = Control("Q"); }},
    Row{"Parita=o", [](SiteRecord& s) { s.parity = 2; }},
    Row{"Parita=M", Nothing},
    Row{"Parita=", Nothing},
    Row{"Ricorrenza=0\r\nOgni=5400", [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
    Row{"Ricorrenza=-5\r\nOgni=3600", [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
    Row{"Ricorrenza=abc", [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
    Row{"Ricorrenza=", [](SiteRecord& s) { s.schedule = ScheduleKind::continuous; }},
    Row{"Ogni=7200\r\nRicorrenza=-1",
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::hourly;
            s.interval = "02:00";
        }},
    Row{"Ricorrenza=-1\r\nOgni=360000",
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::hourly;
            s.interval = "__:__";
        }},
    Row{"Ricorrenza=-2\r\nOgni=",
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::daily;
            s.interval = "0";
        }},
    Row{"Ricorrenza=193", // beyond Saturday
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::weekly;
            s.weekdays = 65;
        }},
    Row{"Ricorrenza=40960",
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::weekly;
            s.weekdays = 0;
        }},
    Row{"Ora=08:30 21/11/2026p",
        [](SiteRecord& s) {
            s.startTime = "08:30";
            s.marked = true;
        }},
    Row{"Ora=mezzogiorno",
        [](SiteRecord& s) {
            s.startTime = "__:__";
            s.marked = false;
        }},
    Row{"AggOra= 01", [](SiteRecord& s) { s.addTime = true; }},
    Row{"AggOra=si", [](SiteRecord& s) { s.addTime = false; }},
    Row{"EliminaNull=1.0", [](SiteRecord& s) { s.dropNulls = true; }},
    Row{"EliminaNull=11", [](SiteRecord& s) { s.dropNulls = false; }},
    Row{"Dispositivo=STX40\r\nEliminaNull=1",
        [](SiteRecord& s) {
            s.device = 5;
            s.dropNulls = true;
        }},
    Row{"CorreggiCR=-1", [](SiteRecord& s) { s.fixCrLf = false; }},
    Row{"Dati=citt\xC3\xA0.txt", [](SiteRecord& s) { s.dataFile = "cittÃ\xC2\xA0.txt"; }}, // UTF-8
    Row{"Log=altro.log", Nothing},
    Row{"Dati=d\r\n[General]\r\nLog=x.log",
        [](SiteRecord& s) {
            s.dataFile = "d";
            s.logFile = "x.log";
        }},
    Row{"StringaModem=\"ATZ\"", [](SiteRecord& s) { s.initString = "ATZ"; }},
    Row{"StringaReset=&F", [](SiteRecord& s) { s.resetString = "&F"; }},
    Row{"NumeroTel=", [](SiteRecord& s) { s.dial = DialNumber{.tone = false, .number = ""}; }},
    Row{"FileTimeout=-1", [](SiteRecord& s) { s.fileAlert = Off(); }},
    Row{"SpazioTimeout=-1", [](SiteRecord& s) { s.diskAlert = Off(); }},
    Row{"MODEM=-CaVacca-\r\nDati=-CaVacca-\r\nFileTimeout=-CaVacca-", Nothing}, // the text for "missing"
};

// Saved; a load would read something else.
constexpr std::array kSaved{
    Row{"SitoAbilitato=0", [](SiteRecord& s) { s.enabled.reset(); }},
    Row{"MODEM=0", [](SiteRecord& s) { s.remote.reset(); }},
    Row{"Xon=Q", [](SiteRecord& s) { s.xon = Plain("Q"); }},
    Row{"Xoff=\xE8", [](SiteRecord& s) { s.xoff = Plain("è"); }},
    Row{"Xon=", [](SiteRecord& s) { s.xon = Plain(""); }},
    Row{"Xoff=", [](SiteRecord& s) { s.xoff.reset(); }},
    Row{"Baud=", [](SiteRecord& s) { s.baud.reset(); }},
    Row{"BitDati=", [](SiteRecord& s) { s.dataBits.reset(); }},
    Row{"Stop=", [](SiteRecord& s) { s.stopBits.reset(); }},
    Row{"Stop=1\r\nAggData=1", [](SiteRecord& s) { s.schedule.reset(); }}, // no schedule at all
    Row{"AggData=0", [](SiteRecord& s) { s.addDate.reset(); }},
    Row{"EliminaNull=0", [](SiteRecord& s) { s.device = 5; }}, // the Stratobox Buffer keeps them
    Row{"Dati=a[General]Com=9", [](SiteRecord& s) { s.dataFile = "a\r\n[General]\r\nCom=9"; }},
    Row{"Dati=a\tb?", [](SiteRecord& s) { s.dataFile = "a\tbЖ"; }},
    Row{"Dati=", [](SiteRecord& s) { s.dataFile.reset(); }},
    Row{"Dati2=", [](SiteRecord& s) { s.exchangeFile.reset(); }},
    Row{"Storico=", [](SiteRecord& s) { s.historyFile.reset(); }},
    Row{"Modello=", [](SiteRecord& s) { s.modemModel.reset(); }},
    Row{"StringaModem=ATX3S0=0", [](SiteRecord& s) { s.initString = "X3S0=0"; }},
    Row{"StringaModem=AT", [](SiteRecord& s) { s.initString.reset(); }},
    Row{"StringaReset=AT&F", [](SiteRecord& s) { s.resetString = "&F"; }},
    Row{"StringaReset=AT", [](SiteRecord& s) { s.resetString.reset(); }},
    Row{"NumeroTel=ATDP", [](SiteRecord& s) { s.dial.reset(); }},
    Row{"Importazione=", [](SiteRecord& s) { s.importAttempts.reset(); }},
    Row{"FileTimeout=0", [](SiteRecord& s) { s.fileAlert = Alert{.on = false, .limit = "600"}; }},
    Row{"FileTimeout=0", [](SiteRecord& s) { s.fileAlert.reset(); }},
    Row{"SpazioTimeout=0", [](SiteRecord& s) { s.diskAlert = Alert{.on = false, .limit = "20"}; }},
    Row{"SpazioTimeout=0", [](SiteRecord& s) { s.diskAlert.reset(); }},
};

constexpr std::array kSavedWithBlank{
    Row{"Xon= 49", [](SiteRecord& s) { s.xon = Control("q"); }},
    Row{"Ricorrenza= 0\r\nOgni= 0\r\nOra= 03/03/2026",
        [](SiteRecord& s) {
            s.schedule = ScheduleKind::weekly;
            s.interval.reset();
            s.startTime.reset();
            s.marked.reset();
        }},
    Row{"Dati= \"a\" ", [](SiteRecord& s) { s.dataFile = " \"a\" "; }},
};

SiteRecord Changed(SiteRecord site, const Row& row)
{
    row.set(site);
    return site;
}

// The record after loading a section with these lines, and whether LoadSite reports success.
std::pair<SiteRecord, bool> Loaded(const std::string& lines, SiteRecord site = {})
{
    SettingsFile file("[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\n" + lines + "\r\n");
    const bool isFound = LoadSite(*file, "UFF", site);
    return {site, isFound};
}

void ExpectLoaded(const Row& row)
{
    SCOPED_TRACE(row.lines);
    EXPECT_EQ(Loaded(row.lines).first, Changed({}, row));
    EXPECT_EQ(Loaded(row.lines, SampleSite()).first, Changed(SampleSite(), row)); // other fields stay
}

void ExpectSaved(const Row& row)
{
    SettingsFile file;
    SaveSite(*file, "UFF", "Ufficio", Changed(SampleSite(), row), kToday);
    EXPECT_THAT(file.Bytes(), testing::HasSubstr("\r\n"s + row.lines + "\r\n"));
}

TEST(SiteKeys, AreLoadedAndSavedAlike)
{
    std::ranges::for_each(kBothWays, ExpectLoaded);
    std::ranges::for_each(kBothWays, ExpectSaved);
}

TEST(SiteKeys, AreLoaded)
{
    std::ranges::for_each(kBothWaysWithBlank, ExpectLoaded);
    std::ranges::for_each(kLoaded, ExpectLoaded);
}

TEST(SiteKeys, AreSaved)
{
    std::ranges::for_each(kSaved, ExpectSaved);
}

TEST(SiteKeys, WithALeadingBlankAreSaved)
{
    std::ranges::for_each(kBothWaysWithBlank, ExpectSaved);
    std::ranges::for_each(kSavedWithBlank, ExpectSaved);
}

TEST(SiteKeys, OfTheSampleAreLoadedAndSavedAsAWhole)
{
    SettingsFile file;
    SiteRecord site;

    EXPECT_TRUE(SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday).done);
    EXPECT_TRUE(LoadSite(*file, "UFF", site));

    EXPECT_EQ(file.Bytes(),
              "[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\n" + SavedSite() + "[General]\r\nLog=Corvrec.log\r\n");
    EXPECT_TRUE(IsWhole(file, "UFF"));
    EXPECT_EQ(site, SampleSite());
}

TEST(SiteKeys, OfANewSiteAreAllWritten)
{
    SettingsFile file;
    const SiteRecord site = NewSite({.year = 2026, .month = 3, .day = 3, .hour = 8, .minute = 5});

    EXPECT_TRUE(SaveSite(*file, "UFF", "Ufficio", site, kToday).done);

    EXPECT_TRUE(IsWhole(file, "UFF"));
    EXPECT_EQ(site.startTime, "08:05");
}

TEST(LoadSite, AnIntervalWithoutAStoredKindHasTheUnitOfTheRecordsKind)
{
    SiteRecord site;
    EXPECT_EQ(Loaded("Ogni=5400", site).first, site);

    site.schedule = ScheduleKind::hourly;
    EXPECT_EQ(Loaded("Ogni=5400", site).first.interval, "01:30");
}

TEST(LoadSite, AMissingFileChangesNothing)
{
    SettingsFile file;
    SiteRecord site = SampleSite();

    EXPECT_FALSE(LoadSite(*file, "UFF", site));

    EXPECT_EQ(site, SampleSite());
    EXPECT_FALSE(file.Exists());
}

TEST(LoadSite, ReportsOnlyWhetherBothAlertsWereFound)
{
    EXPECT_TRUE(Loaded("FileTimeout=-1\r\nSpazioTimeout=").second);
    EXPECT_FALSE(Loaded("FileTimeout=600").second);
    EXPECT_FALSE(Loaded("SpazioTimeout=20").second);
    EXPECT_FALSE(Loaded("Dispositivo=COM\r\nMODEM=0").second);
}

TEST(LoadSite, ValuesAreCutAt99Characters)
{
    EXPECT_EQ(Loaded("Dati=" + std::string(98, 'x') + "yz").first.dataFile, std::string(98, 'x') + "y");
}

// Only read by the recorder: every save resets them, and no load asks for them.
constexpr std::array kRecordersOwn{"STimeRead", "STimeWrite",     "MTimeRead", "MTimeWrite",
                                   "FlagCRLF",  "TimeoutFineImp", "CharToDel"};

TEST(LoadSite, AsksForEachKeyOnceInFileOrderWithABufferOf100AndWritesNothing)
{
    std::vector<std::string> expected;
    for (const auto& [key, value] : SavedKeys()) {
        if (std::ranges::find(kRecordersOwn, key) == kRecordersOwn.end())
            expected.push_back("[UFF]" + key + " 100");
        if (key == "Storico")
            expected.emplace_back("[General]Log 100");
    }
    RecordingProfileFile file;
    SiteRecord site;

    LoadSite(file, "UFF", site);

    EXPECT_EQ(file.reads, expected);
    EXPECT_TRUE(file.writes.empty());
}

TEST(SaveSite, WritesInAFixedOrderAndReadsNothing)
{
    std::vector<std::string> expected = {"[Siti]UFF=Ufficio"};
    for (const auto& [key, value] : SavedKeys()) {
        expected.push_back("[UFF]" + key + "=" + value);
        if (key == "Storico")
            expected.emplace_back("[General]Log=Corvrec.log");
    }
    RecordingProfileFile file;

    EXPECT_TRUE(SaveSite(file, "UFF", "Ufficio", SampleSite(), kToday).done);

    EXPECT_EQ(file.writes, expected);
    EXPECT_TRUE(file.reads.empty());
}

TEST(SaveSite, WritesEveryKeyWhateverFailedBeforeAndReportsOnlyTheLast)
{
    RecordingProfileFile failing;
    failing.failing = {"UFF", "Log"};
    for (const auto& [key, value] : SavedKeys()) {
        if (key != kLastKey)
            failing.failing.insert(key);
    }
    EXPECT_TRUE(SaveSite(failing, "UFF", "Ufficio", SampleSite(), kToday).done);
    EXPECT_EQ(failing.writes.size(), SavedKeys().size() + 2); // also the name and "Log"

    failing.failing = {std::string(kLastKey)};
    EXPECT_FALSE(SaveSite(failing, "UFF", "Ufficio", SampleSite(), kToday).done);
}

TEST(SaveSite, ChangesItsOwnKeysOfAnExistingFileAndNothingElse)
{
    SettingsFile file("; configurazione\n[General]\nCom=COM1\nlog = vecchio.log\n\n"
                      "[Siti]\r\nA=Alfa\r\nuff=Vecchio nome\r\n; elenco\r\n\r\n"
                      "[Uff]\r\n  STimeRead = 5\r\nEstraneo=1\r\n; nota\r\nBaud=300\r\n\r\n"
                      "[A]\r\nBaud=1200");
    std::string added = SavedSite();
    for (const std::string_view line : {"STimeRead=20\r\n", "Baud=9600\r\n"})
        added.erase(added.find(line), line.size());
    for (int save = 1; save <= 2; ++save) { // the second one changes nothing
        EXPECT_TRUE(SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday).done);

        EXPECT_EQ(file.Bytes(), "; configurazione\n[General]\nCom=COM1\nlog =Corvrec.log\n\n"
                                "[Siti]\r\nA=Alfa\r\nuff=Ufficio\r\n; elenco\r\n\r\n"
                                "[Uff]\r\n  STimeRead =20\r\nEstraneo=1\r\n; nota\r\nBaud=9600\r\n" +
                                    added + "\r\n[A]\r\nBaud=1200");
    }
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

TEST(SaveSite, ResetsTheRecordersSettings)
{
    std::string before = "[UFF]\r\n";
    std::string after = before;
    for (const auto& [key, value] : SavedKeys()) {
        if (std::ranges::find(kRecordersOwn, key) != kRecordersOwn.end()) {
            before += key + "=99\r\n";
            after += key + "=" + value + "\r\n";
        }
    }
    SettingsFile file(before);

    SaveSite(*file, "UFF", "Ufficio", SampleSite(), kToday);

    EXPECT_TRUE(file.Bytes().starts_with(after));
}

TEST(SaveSite, WithoutAKindAStoredScheduleStays)
{
    const std::string schedule = "[UFF]\r\nRicorrenza=-1\r\nOgni=5400\r\nOra=8:30\r\n";
    SettingsFile file(schedule);
    SiteRecord site = SampleSite();
    site.schedule.reset();

    SaveSite(*file, "UFF", "Ufficio", site, kToday);

    EXPECT_TRUE(file.Bytes().starts_with(schedule));
}

TEST(SaveSite, NameAndCodeMayHoldAnyCharacter)
{
    SettingsFile file;

    SaveSite(*file, "A", "", SampleSite(), kToday);
    SaveSite(*file, "CITTÀ", "Città = [1]\r\n; \"due\"", SampleSite(), kToday);

    EXPECT_EQ(file.Line("Siti", "A"), "A=");
    EXPECT_EQ(file.Line("Siti", "CITT\xC0"), "CITT\xC0=Citt\xE0 = [1]; \"due\"");
    EXPECT_TRUE(IsWhole(file, "CITT\xC0"));
    SiteRecord site;
    LoadSite(*file, "CITTÀ", site);
    EXPECT_EQ(site, SampleSite());
}

// Expects a save to stop at that key, after this line.
void ExpectStop(void (*change)(SiteRecord&), std::string_view key, std::string_view lastLine)
{
    SettingsFile file;
    SiteRecord site = SampleSite();
    change(site);

    EXPECT_EQ(SaveSite(*file, "UFF", "Ufficio", site, kToday).stoppedAt, key);

    EXPECT_TRUE(file.Bytes().starts_with("[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\nSitoAbilitato=1\r\n"));
    EXPECT_TRUE(file.Bytes().ends_with("\r\n" + std::string(lastLine) + "\r\n")) << file.Bytes();
    EXPECT_FALSE(IsWhole(file, "UFF"));
}

TEST(SaveSite, StopsAtAKeyWithoutAValue)
{
    ExpectStop([](SiteRecord& s) { s.device.reset(); }, "Dispositivo", "FlagCRLF=0");
    ExpectStop([](SiteRecord& s) { s.device = -1; }, "Dispositivo", "FlagCRLF=0");
    ExpectStop([](SiteRecord& s) { s.device = 6; }, "Dispositivo", "FlagCRLF=0");
    ExpectStop([](SiteRecord& s) { s.handshake.reset(); }, "Handshake", "MODEM=1");
    ExpectStop([](SiteRecord& s) { s.handshake = 3; }, "Handshake", "MODEM=1");
    ExpectStop([](SiteRecord& s) { s.xon = Control(""); }, "Xon", "Handshake=XON");
    ExpectStop([](SiteRecord& s) { s.parity.reset(); }, "Parita", "BitDati=8");
    ExpectStop([](SiteRecord& s) { s.parity = 3; }, "Parita", "BitDati=8");
}

TEST(SaveSite, StopsAtXoffAfterXon)
{
    ExpectStop([](SiteRecord& s) { s.xoff = Control(""); }, "Xoff", "Xon= 17");
}

} // namespace

} // namespace corvrec
