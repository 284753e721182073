#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

class Clock;
class EventPump;
class SerialPort;
struct CancelFlag;

// How a wait ended. A wait whose time is exactly up counts as a success, though nothing came; the clock's
// step is chosen so that this cannot happen to the time-outs in use.
enum class Wait { timeOut = 1, success = 2, cancelled = 3 };

// The waits for a device's reply. They send nothing. Each pass handles the window system's events and takes
// at most one character from the port; meanwhile the port's InputLen is 1, afterwards what it was. A raised
// cancel flag ends a wait and outweighs every other result. Time-outs are milliseconds; 0 is a success at
// once. The port's PortError passes through; the buffer then holds what came before.
class ReplyWait
{
public:
    // All four must outlive the wait.
    ReplyWait(SerialPort& port, const Clock& clock, EventPump& events, CancelFlag& cancel)
        : port_(port)
        , clock_(clock)
        , events_(events)
        , cancel_(cancel)
    {
    }

    // Until so many characters have come; they are appended to the buffer.
    Wait ForCount(int timeOutMs, int count, std::string& buffer);

    // Until the text, which must not be empty, has come; ASCII letters are compared without regard to case.
    // What was received before the call and not taken counts. All is thrown away.
    Wait ForText(int timeOutMs, std::string_view text);

    // The same, and what comes is appended to the buffer. The text may lie in what the buffer held before.
    // From a device that never stops, the buffer keeps the first `keptHead` characters and as many of the
    // last as the text is long.
    Wait ForText(int timeOutMs, std::string_view text, std::string& buffer, std::size_t keptHead = kKeptHead);

    [[nodiscard]] SerialPort& Port() const { return port_; }
    [[nodiscard]] CancelFlag& Cancel() const { return cancel_; }

    // Far more than any reply; a line at full speed takes seconds to fill it.
    static constexpr std::size_t kKeptHead = 64 * std::size_t{1024};

private:
    [[nodiscard]] std::optional<std::int64_t> RestDeadline(std::int64_t deadlineTick) const;
    [[nodiscard]] Wait Result(std::int64_t elapsed, int timeOutMs) const;

    SerialPort& port_;
    const Clock& clock_;
    EventPump& events_;
    CancelFlag& cancel_;
};

} // namespace corvrec
