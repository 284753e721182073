#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

class ReplyWait;

// The part of a site's modem settings that the dialogue needs, in UTF-8.
struct ModemSettings {
    std::string resetString;
    std::string initString;
    std::string number;
    bool pulse = false; // pulse dialling instead of tone

    bool operator==(const ModemSettings&) const = default;
};

// Milliseconds. None may be a multiple of kTickStepMs: see Wait.
inline constexpr int kModemCommandTimeOutMs = 3000; // reset and initialisation
inline constexpr int kDialTimeOutMs = 120000;
inline constexpr int kEscapeTimeOutMs = 10000; // return from data to command mode
inline constexpr int kHangUpTimeOutMs = 6000;

// The bytes of one Hayes command in code page 1252, ending in a carriage return. CommandLine puts "AT" in
// front, unless the command begins with it in either case; DialLine dials a number. Bytes whose lower seven
// bits are a control character are dropped, so that a field can never hold a second command: a line with 7
// data bits sends 8D as a carriage return and "€" (80) as a NUL.
std::string CommandLine(std::string_view command);
std::string DialLine(std::string_view number, bool pulse);

enum class Connection { connected, noReply, cancelled };

// Resets, initialises and dials; a step runs only after the one before it was answered. Any reply to dialling
// other than "CONNECT", such as a busy report, ends as noReply when the time is up. After a cancel the flag
// is lowered. The port stays open whatever the result. Throws PortError.
[[nodiscard]] Connection InitModem(ReplyWait& wait, const ModemSettings& modem);

// Hangs up. False when the modem does not answer or the user cancels; a cancel flag that ended it is lowered.
// The port stays open. Throws PortError.
[[nodiscard]] bool CloseModem(ReplyWait& wait);

} // namespace corvrec
