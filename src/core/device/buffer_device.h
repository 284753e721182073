#pragma once

#include "core/site/code_tables.h"

#include <string>
#include <string_view>

namespace corvrec
{

class Clock;
class ReplyWait;
class SerialPort;

// ASCII control characters that the device takes as commands.
inline constexpr std::string_view kStatusRequest = "\x02"; // STX
inline constexpr std::string_view kClockSet = "\x0F";      // SI
inline constexpr std::string_view kLineClear = "\x13";     // DC3

// The last character of a status that is not counted: see ReplyLayout.
inline constexpr std::string_view kEndOfStatus = "*";

// Milliseconds. None may be a multiple of kTickStepMs: see Wait.
inline constexpr int kLineClearTimeOutMs = 30000;
inline constexpr int kStatusTimeOutMs = 30000;
inline constexpr int kStatusByModemTimeOutMs = 10000; // deliberately shorter than by cable
inline constexpr int kClockPauseMs = 20;              // after each character of the clock command
inline constexpr int kClockSendTimeOutMs = 1000;      // more than twice a command's time at 300 baud

// Clears the line before a request: sends the line-clear character (DC3), waits for the device to echo it and
// discards all input. A missing echo is not reported: the request that follows will show it. Throws
// PortError.
void SXAzzeraLinea(ReplyWait& wait, int timeOutMs);

// Requests the status and returns the raw reply in code page 1252; see buffer_status.h for its meaning. The
// reply is short or empty when the device falls silent or the user cancels. It comes in two parts, each with
// its own time-out: up to the end mark or byte count, and after a line clear. Throws PortError, unless all
// fields have arrived by then.
[[nodiscard]] std::string RiceviSXStatus(ReplyWait& wait, BufferModel model, int timeOutMs);

// Sets the device's clock from a valid time "hh:mm" and a valid date "dd/mm/yy": sends SI and the ten digits
// hhmmddmmyy. The device does not answer. The call blocks for the ten pauses and until a slow line has sent
// everything; it handles no events. Throws PortError.
void ImpostaDataOra(SerialPort& port, Clock& clock, std::string_view time, std::string_view date);

} // namespace corvrec
