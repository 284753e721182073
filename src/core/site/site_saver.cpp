#include "core/site/site_saver.h"

#include "core/file/section.h"
#include "core/site/code_tables.h"
#include "core/site/conversions.h"

#include <cstddef>
#include <string>

namespace corvrec
{

namespace
{

// The writes of one area. A failed write does not stop the following ones.
class Writes
{
public:
    explicit Writes(Section& section)
        : section_(section)
    {
    }

    void Put(std::string_view key, std::string_view value)
    {
        const bool done = section_.Write(key, value);
        allDone_ = allDone_ && done;
    }

    bool AllDone() const { return allDone_; }

private:
    Section& section_;
    bool allDone_ = true;
};

std::string_view Flag(std::optional<bool> on)
{
    return on.value_or(false) ? "1" : "0";
}

std::string Text(const std::optional<std::string>& text)
{
    return text.value_or("");
}

// Index into the table, or -1 when nothing is chosen, so that at() throws.
std::size_t Row(std::optional<int> row)
{
    return static_cast<std::size_t>(row.value_or(-1));
}

// The time-outs and the line-end flag belong to the recorder; every save resets them, as older editors do.
bool WriteIdentity(Section& sites, Section& section, std::string_view code, std::string_view name,
                   const SiteRecord& site)
{
    Writes list(sites);
    list.Put(code, name);
    Writes writes(section);
    writes.Put("SitoAbilitato", Flag(site.enabled));
    writes.Put("STimeRead", "20");
    writes.Put("STimeWrite", "20");
    writes.Put("MTimeRead", "60");
    writes.Put("MTimeWrite", "60");
    writes.Put("FlagCRLF", "0");
    return list.AllDone() && writes.AllDone();
}

bool WriteDevice(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Dispositivo", kDevices.at(Row(site.device)).code);
    return writes.AllDone();
}

bool WriteConnection(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("MODEM", Flag(site.remote));
    return writes.AllDone();
}

bool WriteHandshake(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Handshake", kHandshakes.at(Row(site.handshake)).code);
    return writes.AllDone();
}

// Deliberate: a character typed as itself is stored as itself, although a letter then loads as Ctrl-@. Older
// editors store it this way.
bool WriteFlowCharacters(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Xon", StoredFlowCharacter(site.xon.value_or(FlowCharacter{})));
    writes.Put("Xoff", StoredFlowCharacter(site.xoff.value_or(FlowCharacter{})));
    return writes.AllDone();
}

bool WriteBaud(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Baud", Text(site.baud));
    return writes.AllDone();
}

bool WriteDataBits(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("BitDati", Text(site.dataBits));
    return writes.AllDone();
}

bool WriteParity(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Parita", kParities.at(Row(site.parity)).code);
    return writes.AllDone();
}

bool WriteStopBits(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Stop", Text(site.stopBits));
    return writes.AllDone();
}

std::string Ricorrenza(ScheduleKind kind, std::optional<int> weekdays)
{
    switch (kind) {
    case ScheduleKind::continuous:
        break;
    case ScheduleKind::hourly:
        return "-1";
    case ScheduleKind::daily:
        return "-2";
    case ScheduleKind::weekly:
        return SignedText(weekdays.value_or(0));
    }
    return "0";
}

// Without a kind nothing is written. The date in "Ora" is that of the save; a different start date is lost.
bool WriteSchedule(Section& section, const SiteRecord& site, const DateTime& today)
{
    Writes writes(section);
    if (!site.schedule)
        return writes.AllDone();
    const ScheduleKind kind = *site.schedule;
    const std::string ora = StoredStartTime(kind, Text(site.startTime), today, site.marked.value_or(false));
    const std::string ogni = StoredInterval(kind, Text(site.interval));

    writes.Put("Ricorrenza", Ricorrenza(kind, site.weekdays));
    // New keys are added to the file in the order of the writes, and older editors write this order.
    if (kind == ScheduleKind::continuous) {
        writes.Put("Ora", ora);
        writes.Put("Ogni", ogni);
    } else {
        writes.Put("Ogni", ogni);
        writes.Put("Ora", ora);
    }
    return writes.AllDone();
}

// "EliminaNull" is always off for the Stratobox Buffer, whatever the check box says.
bool WriteTransformations(Section& section, const SiteRecord& site)
{
    const bool keepsNulls = kDevices.at(Row(site.device)).code == "STX40";
    Writes writes(section);
    writes.Put("AggData", Flag(site.addDate));
    writes.Put("AggOra", Flag(site.addTime));
    writes.Put("EliminaNull", keepsNulls ? "0" : Flag(site.dropNulls));
    writes.Put("CorreggiCR", Flag(site.fixCrLf));
    return writes.AllDone();
}

// All sites share one log, stored in "General"; saving any site writes it.
bool WriteFiles(Section& section, Section& general, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Dati", Text(site.dataFile));
    writes.Put("Dati2", Text(site.exchangeFile));
    writes.Put("Storico", Text(site.historyFile));
    Writes shared(general);
    shared.Put("Log", Text(site.logFile));
    return writes.AllDone() && shared.AllDone();
}

bool WriteModem(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("Modello", Text(site.modemModel));
    writes.Put("StringaModem", WithAtPrefix(Text(site.initString)));
    writes.Put("StringaReset", WithAtPrefix(Text(site.resetString)));
    writes.Put("NumeroTel", StoredDialNumber(site.dial.value_or(DialNumber{})));
    writes.Put("Importazione", Text(site.importAttempts));
    return writes.AllDone();
}

bool WriteAlerts(Section& section, const SiteRecord& site)
{
    Writes writes(section);
    writes.Put("FileTimeout", StoredAlert(site.fileAlert.value_or(Alert{})));
    writes.Put("SpazioTimeout", StoredAlert(site.diskAlert.value_or(Alert{})));
    writes.Put("TimeoutFineImp", "15"); // the recorder's, like the time-outs in WriteIdentity
    return writes.AllDone();
}

bool WriteCharToDelete(Section& section)
{
    Writes writes(section);
    writes.Put("CharToDel", "00");
    return writes.AllDone();
}

} // namespace

bool SaveSite(ProfileFile& file, std::string_view code, std::string_view name, const SiteRecord& site,
              const DateTime& today)
{
    Section sites(file, "Siti");
    Section section(file, code);
    Section general(file, "General");

    // Results ignored on purpose: only the last area's counts.
    WriteIdentity(sites, section, code, name, site);
    WriteDevice(section, site);
    WriteConnection(section, site);
    WriteHandshake(section, site);
    WriteFlowCharacters(section, site);
    WriteBaud(section, site);
    WriteDataBits(section, site);
    WriteParity(section, site);
    WriteStopBits(section, site);
    WriteSchedule(section, site, today);
    WriteTransformations(section, site);
    WriteFiles(section, general, site);
    WriteModem(section, site);
    WriteAlerts(section, site);
    return WriteCharToDelete(section);
}

} // namespace corvrec
