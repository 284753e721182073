#include "core/site/new_site.h"

#include "core/site/conversions.h"

namespace corvrec
{

SiteRecord NewSite(const DateTime& now)
{
    return {
        .device = DeviceRowOf("COM"),
        .remote = false,
        .handshake = handshake::hardware,
        .xon = FlowCharacter{.control = true, .text = "Q"},
        .xoff = FlowCharacter{.control = true, .text = "S"},
        .baud = "9600",
        .dataBits = "8",
        .parity = 0, // none
        .stopBits = "1",
        .enabled = false,
        .schedule = ScheduleKind::continuous,
        .weekdays = 0,
        .interval = "1",
        .startTime = TwoDigits(now.hour) + ":" + TwoDigits(now.minute),
        .marked = std::nullopt, // the last loaded site's stays
        .addDate = false,
        .addTime = false,
        .dropNulls = false,
        .fixCrLf = false,
        .dataFile = "Corvrec.txt",
        .exchangeFile = "CRemoto.txt",
        .historyFile = "Storico.txt",
        .logFile = "Corvrec.log",
        .modemModel = std::nullopt, // the first one of the catalogue
        .initString = std::nullopt, // that model's
        .resetString = "&F",
        .dial = DialNumber{.tone = true, .number = ""},
        .importAttempts = "",
        .fileAlert = Alert{.on = false, .limit = "600"},
        .diskAlert = Alert{.on = false, .limit = "20"},
    };
}

} // namespace corvrec
