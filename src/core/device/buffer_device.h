#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

class Clock;
class ReplyWait;
class SerialPort;

// Model numbers of the buffer device. The last two digits of a model's stored code ("STX30").
namespace model
{
inline constexpr int stratobox11 = 11;
inline constexpr int stratobox20 = 20; // answers as a 30; the editor itself asks for a 30
inline constexpr int stratobox30 = 30;
inline constexpr int stratoboxBuffer = 40;
} // namespace model

// How to talk to a device: the model whose dialogue it speaks, and whether its clock can be set.
struct BufferModel {
    int number = model::stratobox11;
    bool settableClock = false;

    bool operator==(const BufferModel&) const = default;
};

// The model for a row of kDevices. A row without a model of its own, or -1 for none chosen, is treated as a
// 1.1.
BufferModel BufferModelOf(int deviceRow);

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
[[nodiscard]] std::string RiceviSXStatus(ReplyWait& wait, int modelNumber, int timeOutMs);

// Sets the device's clock from a valid time "hh:mm" and a valid date "dd/mm/yy": sends SI and the ten digits
// hhmmddmmyy. The device does not answer. The call blocks for the ten pauses and until a slow line has sent
// everything; it handles no events. Throws PortError.
void ImpostaDataOra(SerialPort& port, Clock& clock, std::string_view time, std::string_view date);

} // namespace corvrec
