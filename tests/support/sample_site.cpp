#include "tests/support/sample_site.h"

#include "tests/support/settings_file.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace corvrec
{

SiteRecord SampleSite()
{
    return {
        .device = DeviceRowOf("STX30"),
        .remote = true,
        .handshake = 1,
        .xon = FlowCharacter{.control = true, .text = "Q"},
        .xoff = FlowCharacter{.control = true, .text = "S"},
        .baud = "9600",
        .dataBits = "8",
        .parity = 1,
        .stopBits = "1",
        .enabled = true,
        .schedule = ScheduleKind::daily,
        .weekdays = std::nullopt,
        .interval = "2",
        .startTime = "08:30",
        .marked = false,
        .addDate = true,
        .addTime = false,
        .dropNulls = true,
        .fixCrLf = false,
        .dataFile = R"(C:\Dati\Ufficio.txt)",
        .exchangeFile = R"(C:\Dati\Scambio.txt)",
        .historyFile = R"(C:\Dati\Storico.txt)",
        .logFile = "Corvrec.log",
        .modemModel = "Generico",
        .initString = "ATX3S0=0",
        .resetString = "AT&F",
        .dial = DialNumber{.tone = true, .number = "0123"},
        .importAttempts = "3",
        .fileAlert = Alert{.on = true, .limit = "600"},
        .diskAlert = Alert{.on = true, .limit = "20"},
    };
}

const char* ShownSite()
{
    return R"(chkAbilitato: on|cboTipoConn: Stratobox 3.0|optLocale: off|optRemoto: on|cboHandS: Software|)"
           R"(chkXon: on|txtXon: Q|chkXoff: on|txtXoff: S|cboVelocita: 9600|cboBitDati: 8|cboParita: Pari|)"
           R"(cboBitStop: 1|cboRicorrenza: Giornaliera|lstGiorni: |mskValore: 2|mskOrario: 08:30|)"
           R"(chkData: on|chkOra: off|chkNull: on|chkCrLf: off|txtDati: C:\Dati\Ufficio.txt|)"
           R"(txtDati2: C:\Dati\Scambio.txt|txtStorico: C:\Dati\Storico.txt|txtLog: Corvrec.log|)"
           R"(cboModem: Generico|txtStringaInit: ATX3S0=0|txtStringaReset: AT&F|optToni: on|optImpulsi: off|)"
           R"(txtTelefono: 0123|txtTentImpor: 3|chkFile: on|txtFile: 600|chkSpazio: on|txtSpazio: 20)";
}

std::vector<KeyValue> SavedKeys(const std::vector<KeyValue>& changes)
{
    std::vector<KeyValue> keys{
        {"SitoAbilitato", "1"},
        {"STimeRead", "20"},
        {"STimeWrite", "20"},
        {"MTimeRead", "60"},
        {"MTimeWrite", "60"},
        {"FlagCRLF", "0"},
        {"Dispositivo", "STX30"},
        {"MODEM", "1"},
        {"Handshake", "XON"},
        {"Xon", " 17"},
        {"Xoff", " 19"},
        {"Baud", "9600"},
        {"BitDati", "8"},
        {"Parita", "E"},
        {"Stop", "1"},
        {"Ricorrenza", "-2"},
        {"Ogni", " 172800"},
        {"Ora", "08:30 03/03/2026"},
        {"AggData", "1"},
        {"AggOra", "0"},
        {"EliminaNull", "1"},
        {"CorreggiCR", "0"},
        {"Dati", R"(C:\Dati\Ufficio.txt)"},
        {"Dati2", R"(C:\Dati\Scambio.txt)"},
        {"Storico", R"(C:\Dati\Storico.txt)"},
        {"Modello", "Generico"},
        {"StringaModem", "ATX3S0=0"},
        {"StringaReset", "AT&F"},
        {"NumeroTel", "ATDT0123"},
        {"Importazione", "3"},
        {"FileTimeout", "600"},
        {"SpazioTimeout", "20"},
        {"TimeoutFineImp", "15"},
        {std::string(kLastKey), "00"},
    };
    const auto find = [&](std::string_view key) {
        const auto found = std::ranges::find(keys, key, &KeyValue::key);
        if (found == keys.end())
            throw std::out_of_range("no save writes " + std::string(key));
        return found;
    };
    for (const KeyValue& change : changes)
        find(change.key)->value = change.value;
    if (find("Ricorrenza")->value == "0") // the continuous kind, whose start time comes first
        std::iter_swap(find("Ogni"), find("Ora"));
    return keys;
}

std::string SavedSite(const std::vector<KeyValue>& changes)
{
    std::string lines;
    for (const auto& [key, value] : SavedKeys(changes))
        lines += key + "=" + value + "\r\n";
    return lines;
}

std::string SavedNewSite(const std::vector<KeyValue>& changes)
{
    std::vector<KeyValue> values{
        {"SitoAbilitato", "0"},
        {"FlagCRLF", "0"},
        {"Dispositivo", "COM"},
        {"MODEM", "0"},
        {"Handshake", "HDW"},
        {"Parita", "N"},
        {"Ricorrenza", "0"},
        {"Ogni", "1"},
        {"Ora", "12.00 21/11/2026"},
        {"AggData", "0"},
        {"EliminaNull", "0"},
        {"Dati", R"(C:\Roma\Dati.txt)"},
        {"Dati2", R"(C:\Roma\Scambio.txt)"},
        {"Storico", R"(C:\Roma\Storico.txt)"},
        {"StringaModem", "ATX3S0=0&M5&K0&C1&D2&R1"},
        {"NumeroTel", "ATDT"},
        {"Importazione", ""},
        {"FileTimeout", "0"},
        {"SpazioTimeout", "0"},
    };
    values.insert(values.end(), changes.begin(), changes.end());
    return SavedSite(values);
}

bool IsWhole(const SettingsFile& file, std::string_view code)
{
    return std::ranges::all_of(SavedKeys(),
                               [&](const KeyValue& line) { return !file.Line(code, line.key).empty(); });
}

} // namespace corvrec
