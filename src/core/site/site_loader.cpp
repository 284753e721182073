#include "core/site/site_loader.h"

#include "core/file/section.h"
#include "core/site/code_tables.h"
#include "core/site/conversions.h"

#include <algorithm>
#include <span>
#include <utility>

namespace corvrec
{

namespace
{

// Comparing ASCII is enough, since the codes are ASCII.
bool EqualAsideCase(std::string_view left, std::string_view right)
{
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    return std::ranges::equal(left, right, {}, upper, upper);
}

// Sets the field to the row of the stored code, ignoring case. An unknown code selects nothing.
bool ReadRow(const Section& section, std::string_view key, std::span<const CodeRow> table,
             std::optional<int>& row)
{
    const auto code = section.Read(key);
    if (!code)
        return false;
    const auto found =
        std::ranges::find_if(table, [&](const CodeRow& entry) { return EqualAsideCase(entry.code, *code); });
    if (found == table.end())
        return false;
    row = static_cast<int>(found - table.begin());
    return true;
}

bool ReadText(const Section& section, std::string_view key, std::optional<std::string>& text)
{
    auto stored = section.Read(key);
    if (!stored)
        return false;
    text = std::move(stored);
    return true;
}

// Exactly 1 means on.
bool ReadFlag(const Section& section, std::string_view key, std::optional<bool>& flag)
{
    const auto stored = section.Read(key);
    if (!stored)
        return false;
    flag = IsOne(*stored);
    return true;
}

bool ReadDevice(const Section& section, SiteRecord& site)
{
    return ReadRow(section, "Dispositivo", kDevices, site.device);
}

// Anything except "0" means by modem.
bool ReadConnection(const Section& section, SiteRecord& site)
{
    const auto modem = section.Read("MODEM");
    if (!modem)
        return false;
    site.remote = *modem != "0";
    return true;
}

bool ReadHandshake(const Section& section, SiteRecord& site)
{
    return ReadRow(section, "Handshake", kHandshakes, site.handshake);
}

// A number without a character counts as a missing key: a slip in the file must not stop the load.
bool ReadCharacter(const Section& section, std::string_view key, std::optional<FlowCharacter>& character)
{
    const auto stored = section.Read(key);
    if (!stored)
        return false;
    const auto read = ReadFlowCharacter(*stored);
    if (!read)
        return false;
    character = read;
    return true;
}

bool ReadFlowCharacters(const Section& section, SiteRecord& site)
{
    const bool xon = ReadCharacter(section, "Xon", site.xon);
    const bool xoff = ReadCharacter(section, "Xoff", site.xoff);
    return xon && xoff;
}

bool ReadBaud(const Section& section, SiteRecord& site)
{
    return ReadText(section, "Baud", site.baud);
}

bool ReadDataBits(const Section& section, SiteRecord& site)
{
    return ReadText(section, "BitDati", site.dataBits);
}

bool ReadParity(const Section& section, SiteRecord& site)
{
    return ReadRow(section, "Parita", kParities, site.parity);
}

bool ReadStopBits(const Section& section, SiteRecord& site)
{
    return ReadText(section, "Stop", site.stopBits);
}

// Only a weekly number contains weekdays. Bits above Saturday's have no meaning.
bool ReadScheduleKind(const Section& section, SiteRecord& site)
{
    const auto ricorrenza = section.Read("Ricorrenza");
    if (!ricorrenza)
        return false;
    site.schedule = ScheduleKindOf(*ricorrenza);
    if (site.schedule == ScheduleKind::weekly) {
        constexpr int kAllDays = 2 * weekday::saturday - 1;
        site.weekdays = LeadingWhole(*ricorrenza) & kAllDays;
    }
    return true;
}

// The unit depends on the kind, so the kind is read first. The continuous kind has no interval.
bool ReadInterval(const Section& section, SiteRecord& site)
{
    const auto ogni = section.Read("Ogni");
    if (!ogni)
        return false;
    const ScheduleKind kind = site.schedule.value_or(ScheduleKind::continuous);
    if (kind != ScheduleKind::continuous)
        site.interval = IntervalText(kind, *ogni);
    return true;
}

bool ReadStart(const Section& section, SiteRecord& site)
{
    const auto ora = section.Read("Ora");
    if (!ora)
        return false;
    const StartTime start = ReadStartTime(*ora);
    site.startTime = start.field;
    site.marked = start.marked;
    return true;
}

bool ReadSchedule(const Section& section, SiteRecord& site)
{
    const bool enabled = ReadFlag(section, "SitoAbilitato", site.enabled);
    const bool kind = ReadScheduleKind(section, site);
    const bool interval = ReadInterval(section, site);
    const bool start = ReadStart(section, site);
    return enabled && kind && interval && start;
}

bool ReadTransformations(const Section& section, SiteRecord& site)
{
    const bool date = ReadFlag(section, "AggData", site.addDate);
    const bool time = ReadFlag(section, "AggOra", site.addTime);
    const bool nulls = ReadFlag(section, "EliminaNull", site.dropNulls);
    const bool crLf = ReadFlag(section, "CorreggiCR", site.fixCrLf);
    return date && time && nulls && crLf;
}

bool ReadFiles(const Section& section, const Section& general, SiteRecord& site)
{
    const bool data = ReadText(section, "Dati", site.dataFile);
    const bool exchange = ReadText(section, "Dati2", site.exchangeFile);
    const bool history = ReadText(section, "Storico", site.historyFile);
    const bool log = ReadText(general, "Log", site.logFile); // shared by all sites
    return data && exchange && history && log;
}

bool ReadDial(const Section& section, SiteRecord& site)
{
    const auto command = section.Read("NumeroTel");
    if (!command)
        return false;
    site.dial = ReadDialNumber(*command);
    return true;
}

bool ReadModem(const Section& section, SiteRecord& site)
{
    const bool model = ReadText(section, "Modello", site.modemModel);
    const bool initString = ReadText(section, "StringaModem", site.initString);
    const bool resetString = ReadText(section, "StringaReset", site.resetString);
    const bool dial = ReadDial(section, site);
    const bool attempts = ReadText(section, "Importazione", site.importAttempts);
    return model && initString && resetString && dial && attempts;
}

bool ReadOneAlert(const Section& section, std::string_view key, std::optional<Alert>& alert)
{
    const auto stored = section.Read(key);
    if (!stored)
        return false;
    alert = ReadAlert(*stored);
    return true;
}

bool ReadAlerts(const Section& section, SiteRecord& site)
{
    const bool file = ReadOneAlert(section, "FileTimeout", site.fileAlert);
    const bool disk = ReadOneAlert(section, "SpazioTimeout", site.diskAlert);
    return file && disk;
}

} // namespace

bool LoadSite(ProfileFile& file, std::string_view code, SiteRecord& site)
{
    const Section section(file, code);
    const Section general(file, "General");

    ReadDevice(section, site); // results ignored on purpose: a missing key is never reported
    ReadConnection(section, site);
    ReadHandshake(section, site);
    ReadFlowCharacters(section, site);
    ReadBaud(section, site);
    ReadDataBits(section, site);
    ReadParity(section, site);
    ReadStopBits(section, site);
    ReadSchedule(section, site);
    ReadTransformations(section, site);
    ReadFiles(section, general, site);
    ReadModem(section, site);
    return ReadAlerts(section, site);
}

} // namespace corvrec
