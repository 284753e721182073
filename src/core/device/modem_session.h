#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

class ReplyWait;

// What the modem dialogue needs of a site's modem settings, in UTF-8.
struct ModemSettings {
    std::string resetString;
    std::string initString;
    std::string number;
    bool pulse = false; // else by tone

    bool operator==(const ModemSettings&) const = default;
};

// Milliseconds. None may be a multiple of the clock's step, kTickStepMs: see Wait.
inline constexpr int kModemCommandTimeOutMs = 3000; // reset and initialisation
inline constexpr int kDialTimeOutMs = 120000;
inline constexpr int kEscapeTimeOutMs = 10000; // back from data to commands
inline constexpr int kHangUpTimeOutMs = 6000;

// The bytes of one Hayes command, in code page 1252 and ending in a carriage return: with "AT" in front
// unless it begins so in any case; and for dialling. Bytes within that are control characters in their lower
// seven bits are left out, so that a field never holds a second command: with 7 data bits 8D is a carriage
// return, and "€" (80) a NUL.
std::string CommandLine(std::string_view command);
std::string DialLine(std::string_view number, bool pulse);

enum class Connection { connected, noReply, cancelled };

// Resets, initialises and dials, each step only when the one before it was answered. Anything but "CONNECT"
// after dialling, such as a busy report, counts as no reply once the time is up. After a cancel the flag is
// lowered again. The port stays open whatever the result is. PortError passes through.
[[nodiscard]] Connection InitModem(ReplyWait& wait, const ModemSettings& modem);

// Hangs up. False when the modem did not answer or the user cancelled; a raised cancel flag is lowered again.
// The port stays open. PortError passes through.
[[nodiscard]] bool CloseModem(ReplyWait& wait);

} // namespace corvrec
