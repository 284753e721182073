#include "core/site/site_keys.h"

#include "core/file/letter_case.h"
#include "core/file/section.h"
#include "core/site/code_tables.h"
#include "core/site/conversions.h"

#include <algorithm>
#include <array>
#include <string>

namespace corvrec
{

namespace
{

// One key of a site, in both directions.
struct Key {
    std::string_view name;

    // Decodes a stored value. False: it is no valid value, and the record stays as it is. Null: never read.
    bool (*read)(const std::string& stored, SiteRecord& site) = nullptr;

    // The value to store; nullopt stops the save. Null: `fixed` is stored.
    std::optional<std::string> (*stored)(const SiteRecord& site, const DateTime& today) = nullptr;

    // A value of the recorder's own. Every save resets it, as older editors do.
    std::string_view fixed = {};

    // Whether a save writes the key. Null: always.
    bool (*isWritten)(const SiteRecord& site) = nullptr;

    bool inGeneral = false;  // in "General", shared by all sites, instead of the site's own section
    bool startsArea = false; // only the result of the last area is reported
};

constexpr Key Fixed(std::string_view name, std::string_view value)
{
    return {.name = name, .fixed = value};
}

// Exactly 1 means on.
template <auto Field>
constexpr Key Flag(std::string_view name)
{
    return {.name = name,
            .read =
                [](const std::string& stored, SiteRecord& site) {
                    site.*Field = IsOne(stored);
                    return true;
                },
            .stored = [](const SiteRecord& site, const DateTime& /*today*/) -> std::optional<std::string> {
                return (site.*Field).value_or(false) ? "1" : "0";
            }};
}

template <auto Field>
constexpr Key Text(std::string_view name)
{
    return {.name = name,
            .read =
                [](const std::string& stored, SiteRecord& site) {
                    site.*Field = stored;
                    return true;
                },
            .stored = [](const SiteRecord& site, const DateTime& /*today*/) -> std::optional<std::string> {
                return (site.*Field).value_or("");
            }};
}

// The code of the chosen row, compared ignoring case. An unknown code selects nothing.
template <auto Field, const auto& Table>
constexpr Key Coded(std::string_view name)
{
    return {.name = name,
            .read =
                [](const std::string& stored, SiteRecord& site) {
                    const auto* const found = std::ranges::find_if(
                        Table, [&](const auto& row) { return EqualIgnoringCase(row.code, stored); });
                    if (found == Table.end())
                        return false;
                    site.*Field = static_cast<int>(found - Table.begin());
                    return true;
                },
            .stored = [](const SiteRecord& site, const DateTime& /*today*/) -> std::optional<std::string> {
                const auto row = static_cast<std::size_t>((site.*Field).value_or(-1));
                return row < Table.size() ? std::optional<std::string>(Table[row].code) : std::nullopt;
            }};
}

// A value with a conversion in each direction.
template <auto Field, auto Read, auto Store>
constexpr Key Value(std::string_view name)
{
    return {.name = name,
            .read =
                [](const std::string& stored, SiteRecord& site) {
                    const std::optional value = Read(stored);
                    if (value)
                        site.*Field = value;
                    return value.has_value();
                },
            .stored = [](const SiteRecord& site, const DateTime& /*today*/) -> std::optional<std::string> {
                return Store((site.*Field).value_or(decltype((site.*Field).value()){}));
            }};
}

// Anything except "0" means by modem.
bool ReadConnection(const std::string& modem, SiteRecord& site)
{
    site.remote = modem != "0";
    return true;
}

// Only a weekly number contains weekdays. Bits above Saturday's have no meaning.
bool ReadScheduleKind(const std::string& ricorrenza, SiteRecord& site)
{
    site.schedule = ScheduleKindOf(ricorrenza);
    if (site.schedule == ScheduleKind::weekly) {
        constexpr int kAllDays = 2 * weekday::saturday - 1;
        site.weekdays = LeadingWhole(ricorrenza) & kAllDays;
    }
    return true;
}

std::optional<std::string> StoredScheduleKind(const SiteRecord& site, const DateTime& /*today*/)
{
    switch (site.schedule.value_or(ScheduleKind::continuous)) {
    case ScheduleKind::continuous:
        break;
    case ScheduleKind::hourly:
        return "-1";
    case ScheduleKind::daily:
        return "-2";
    case ScheduleKind::weekly:
        return SignedText(site.weekdays.value_or(0));
    }
    return "0";
}

// The unit depends on the kind, which is read before. The continuous kind has no interval.
bool ReadInterval(const std::string& ogni, SiteRecord& site)
{
    const ScheduleKind kind = site.schedule.value_or(ScheduleKind::continuous);
    if (kind != ScheduleKind::continuous)
        site.interval = IntervalText(kind, ogni);
    return true;
}

std::optional<std::string> StoredOgni(const SiteRecord& site, const DateTime& /*today*/)
{
    return StoredInterval(site.schedule.value_or(ScheduleKind::continuous), site.interval.value_or(""));
}

bool ReadStart(const std::string& ora, SiteRecord& site)
{
    const StartTime start = ReadStartTime(ora);
    site.startTime = start.field;
    site.marked = start.marked;
    return true;
}

// The date is that of the save; a different start date is lost.
std::optional<std::string> StoredOra(const SiteRecord& site, const DateTime& today)
{
    return StoredStartTime(site.schedule.value_or(ScheduleKind::continuous), site.startTime.value_or(""),
                           today, site.marked.value_or(false));
}

bool HasSchedule(const SiteRecord& site)
{
    return site.schedule.has_value();
}

bool IsContinuous(const SiteRecord& site)
{
    return site.schedule == ScheduleKind::continuous;
}

bool IsPeriodic(const SiteRecord& site)
{
    return HasSchedule(site) && !IsContinuous(site);
}

// Always off for a device that keeps NULs, whatever the check box says.
std::optional<std::string> StoredDropNulls(const SiteRecord& site, const DateTime& /*today*/)
{
    const bool keepsNulls = DeviceOf(site.device.value_or(-1)).keepsNulls;
    return !keepsNulls && site.dropNulls.value_or(false) ? "1" : "0";
}

// Conversions that never fail, in the form that Value takes.
std::optional<DialNumber> ReadDial(std::string_view stored)
{
    return ReadDialNumber(stored);
}

std::optional<Alert> ReadLimit(std::string_view stored)
{
    return ReadAlert(stored);
}

std::optional<std::string> ReadCommand(std::string_view stored)
{
    return std::string(stored);
}

constexpr Key InGeneral(Key key)
{
    key.inGeneral = true;
    return key;
}

constexpr Key StartOfArea(Key key)
{
    key.startsArea = true;
    return key;
}

// In file order. New keys are added to the file in the order of the writes; recorders and older editors
// depend on it.
constexpr std::array kKeys{
    Flag<&SiteRecord::enabled>("SitoAbilitato"),
    Fixed("STimeRead", "20"),
    Fixed("STimeWrite", "20"),
    Fixed("MTimeRead", "60"),
    Fixed("MTimeWrite", "60"),
    Fixed("FlagCRLF", "0"),
    Coded<&SiteRecord::device, kDevices>("Dispositivo"),
    Key{.name = "MODEM", .read = ReadConnection, .stored = Flag<&SiteRecord::remote>("").stored},
    Coded<&SiteRecord::handshake, kHandshakes>("Handshake"),
    Value<&SiteRecord::xon, ReadFlowCharacter, StoredFlowCharacter>("Xon"),
    Value<&SiteRecord::xoff, ReadFlowCharacter, StoredFlowCharacter>("Xoff"),
    Text<&SiteRecord::baud>("Baud"),
    Text<&SiteRecord::dataBits>("BitDati"),
    Coded<&SiteRecord::parity, kParities>("Parita"),
    Text<&SiteRecord::stopBits>("Stop"),
    Key{.name = "Ricorrenza",
        .read = ReadScheduleKind,
        .stored = StoredScheduleKind,
        .isWritten = HasSchedule},
    Key{.name = "Ora", .stored = StoredOra, .isWritten = IsContinuous}, // before "Ogni" for this kind alone
    Key{.name = "Ogni", .read = ReadInterval, .stored = StoredOgni, .isWritten = HasSchedule},
    Key{.name = "Ora", .read = ReadStart, .stored = StoredOra, .isWritten = IsPeriodic},
    Flag<&SiteRecord::addDate>("AggData"),
    Flag<&SiteRecord::addTime>("AggOra"),
    Key{.name = "EliminaNull", .read = Flag<&SiteRecord::dropNulls>("").read, .stored = StoredDropNulls},
    Flag<&SiteRecord::fixCrLf>("CorreggiCR"),
    Text<&SiteRecord::dataFile>("Dati"),
    Text<&SiteRecord::exchangeFile>("Dati2"),
    Text<&SiteRecord::historyFile>("Storico"),
    InGeneral(Text<&SiteRecord::logFile>("Log")),
    Text<&SiteRecord::modemModel>("Modello"),
    Value<&SiteRecord::initString, ReadCommand, WithAtPrefix>("StringaModem"),
    Value<&SiteRecord::resetString, ReadCommand, WithAtPrefix>("StringaReset"),
    Value<&SiteRecord::dial, ReadDial, StoredDialNumber>("NumeroTel"),
    Text<&SiteRecord::importAttempts>("Importazione"),
    StartOfArea(Value<&SiteRecord::fileAlert, ReadLimit, StoredAlert>("FileTimeout")),
    Value<&SiteRecord::diskAlert, ReadLimit, StoredAlert>("SpazioTimeout"),
    Fixed("TimeoutFineImp", "15"),
    StartOfArea(Fixed("CharToDel", "00")),
};

} // namespace

bool LoadSite(ProfileFile& file, std::string_view code, SiteRecord& site)
{
    const Section section(file, code);
    const Section general(file, "General");

    bool isAreaFound = true;
    for (const Key& key : kKeys) {
        if (key.read == nullptr)
            continue;
        const auto stored = (key.inGeneral ? general : section).Read(key.name);
        const bool isFound = stored && key.read(*stored, site);
        isAreaFound = isFound && (isAreaFound || key.startsArea);
    }
    return isAreaFound;
}

SaveResult SaveSite(ProfileFile& file, std::string_view code, std::string_view name, const SiteRecord& site,
                    const DateTime& today)
{
    Section section(file, code);
    Section general(file, "General");
    Section(file, "Siti")
        .Write(code, name); // result ignored on purpose, like those of all areas but the last

    SaveResult result;
    for (const Key& key : kKeys) {
        if (key.isWritten != nullptr && !key.isWritten(site))
            continue;
        const std::optional<std::string> value =
            key.stored ? key.stored(site, today) : std::string(key.fixed);
        if (!value) {
            result.stoppedAt = key.name;
            return result;
        }
        const bool isDone = (key.inGeneral ? general : section).Write(key.name, *value);
        result.done = isDone && (result.done || key.startsArea);
    }
    return result;
}

} // namespace corvrec
