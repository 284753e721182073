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

// How a wait ended. A wait whose elapsed time exactly equals its time-out is a success even though nothing
// came; kTickStepMs makes sure that this cannot happen to the time-outs in use.
enum class Wait { timeOut = 1, success = 2, cancelled = 3 };

// Waits for a device's reply; sends nothing. Each pass handles the window system's events and takes at most
// one character from the port. During a wait the port's InputLen is 1; afterwards it is what it was. A raised
// cancel flag ends a wait and overrides every other result. Time-outs are in milliseconds; 0 succeeds at
// once. PortError passes through; the buffer then holds what arrived before it.
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

    // Waits until `count` characters have come, and appends them to the buffer.
    Wait ForCount(int timeOutMs, int count, std::string& buffer);

    // Waits for a text, ignoring ASCII case; it must not be empty. Input received before the call and not yet
    // read counts too. All input is discarded.
    Wait ForText(int timeOutMs, std::string_view text);

    // The same, but input is appended to the buffer. The text may begin in what the buffer held before. If
    // the device never stops sending, the buffer keeps its first `keptHead` characters and, of the last ones,
    // as many as the text has.
    Wait ForText(int timeOutMs, std::string_view text, std::string& buffer, std::size_t keptHead = kKeptHead);

    [[nodiscard]] SerialPort& Port() const { return port_; }
    [[nodiscard]] CancelFlag& Cancel() const { return cancel_; }

    // 64 KiB: far more than any reply. A line at full speed takes seconds to send that much.
    static constexpr std::size_t kKeptHead = 64 * std::size_t{1024};

private:
    // The deadline for EventPump::Process: how long a pass may block.
    [[nodiscard]] std::optional<std::int64_t> RestDeadline(std::int64_t deadlineTick) const;
    [[nodiscard]] Wait Result(std::int64_t elapsed, int timeOutMs) const;

    SerialPort& port_;
    const Clock& clock_;
    EventPump& events_;
    CancelFlag& cancel_;
};

} // namespace corvrec
