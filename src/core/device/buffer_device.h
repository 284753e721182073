#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

class Clock;
class ReplyWait;
class SerialPort;

// Numbers of the buffer device's models.
namespace model
{
inline constexpr int stratobox11 = 11;
inline constexpr int stratobox20 = 20; // answers as a 30; the editor itself asks for a 30
inline constexpr int stratobox30 = 30;
inline constexpr int stratoboxBuffer = 40;
} // namespace model

struct BufferModel {
    int number = model::stratobox11;
    bool settableClock = false;

    bool operator==(const BufferModel&) const = default;
};

// From the row of kDevices. Every row that is no newer device, -1 for none chosen among them, is asked like
// a 1.1.
BufferModel BufferModelOf(int deviceRow);

// Milliseconds. None may be a multiple of the clock's step, kTickStepMs: see Wait.
inline constexpr int kLineClearTimeOutMs = 30000;
inline constexpr int kStatusTimeOutMs = 30000;
inline constexpr int kStatusByModemTimeOutMs = 10000; // shorter than by cable on purpose
inline constexpr int kClockPauseMs = 20;              // after each character of the clock command
inline constexpr int kClockSendTimeOutMs = 1000;      // more than twice what its end takes at 300 baud

// Clears the line before a request: the device answers the line-clear character with the same. Whether it
// does is not told; the request that follows shows.
void SXAzzeraLinea(ReplyWait& wait, int timeOutMs);

// Asks for the status and returns the raw reply in code page 1252, shorter or empty when the device falls
// silent or the user cancels. The reply has two parts, each with its own time-out. PortError passes through,
// unless the fields are all there.
[[nodiscard]] std::string RiceviSXStatus(ReplyWait& wait, int modelNumber, int timeOutMs);

// Sets the device's clock from a valid time "hh:mm" and a valid date "dd/mm/yy". The device does not answer;
// the call takes the ten pauses, and the time until a slow line has sent all, and handles no events.
// PortError passes through.
void ImpostaDataOra(SerialPort& port, Clock& clock, std::string_view time, std::string_view date);

} // namespace corvrec
