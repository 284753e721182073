#include "tests/support/sample_site.h"

namespace corvrec
{

SiteRecord SampleSite()
{
    return {
        .device = device::stratobox30,
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

} // namespace corvrec
