#pragma once

#include "core/site/code_tables.h"

#include <optional>
#include <string>

namespace corvrec
{

// A flow-control character: the letter (Q for Ctrl-Q) if `control` is set, otherwise the character itself.
struct FlowCharacter {
    bool control = false;
    std::string text;

    bool operator==(const FlowCharacter&) const = default;
};

// A telephone number as typed, dialled by tone or by pulse.
struct DialNumber {
    bool tone = false;
    std::string number;

    bool operator==(const DialNumber&) const = default;
};

// An alert and its limit: seconds without the data file, or MByte of free space.
struct Alert {
    bool on = false;
    std::optional<std::string> limit; // nullopt: the field keeps its text

    bool operator==(const Alert&) const = default;
};

// The settings of one site: one field per stored value, in the order in which they are read. An empty field
// means, when loaded, that the key is missing or matches no row; when saved, that nothing is chosen. Rows are
// those of the code tables. All other values are the texts that the controls show, in UTF-8. The site's name
// and code are not here but in the site list.
struct SiteRecord {
    std::optional<int> device;    // row of kDevices
    std::optional<bool> remote;   // reached by modem
    std::optional<int> handshake; // row of kHandshakes
    std::optional<FlowCharacter> xon;
    std::optional<FlowCharacter> xoff;
    std::optional<std::string> baud;
    std::optional<std::string> dataBits;
    std::optional<int> parity; // row of kParities
    std::optional<std::string> stopBits;

    std::optional<bool> enabled;
    std::optional<ScheduleKind> schedule;
    std::optional<int> weekdays;          // sum of weekday bits; weekly only
    std::optional<std::string> interval;  // "hh:mm", days or weeks, as the interval field shows it
    std::optional<std::string> startTime; // "hh:mm", or "__:__" when the stored time cannot be read
    std::optional<bool> marked;           // "Ora" ends in "p": a mark of the recorder, only passed on

    std::optional<bool> addDate;
    std::optional<bool> addTime;
    std::optional<bool> dropNulls;
    std::optional<bool> fixCrLf;

    std::optional<std::string> dataFile;
    std::optional<std::string> exchangeFile;
    std::optional<std::string> historyFile;
    std::optional<std::string> logFile; // shared by all sites, stored in "General"

    std::optional<std::string> modemModel;
    std::optional<std::string> initString;
    std::optional<std::string> resetString;
    std::optional<DialNumber> dial;
    std::optional<std::string> importAttempts;

    std::optional<Alert> fileAlert;
    std::optional<Alert> diskAlert;

    bool operator==(const SiteRecord&) const = default;
};

} // namespace corvrec
