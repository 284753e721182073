#pragma once

#include <cstdint>
#include <optional>

namespace corvrec
{

// Handles the window system's events while a handler of ours is still running.
class EventPump
{
public:
    virtual ~EventPump() = default;

    // Handles pending events; any handler of an enabled window may run. With a deadline (a tick of the clock)
    // it may first block until an event comes, such as a received byte, or until the clock has passed the
    // deadline, not merely reached it. Without a deadline it returns at once.
    virtual void Process(std::optional<std::int64_t> deadlineTick) = 0;
};

// Raised by a handler that runs during a wait (cancel button, closing window) to end the wait. Waits read the
// flag but never lower it: left raised, it also ends the next wait.
struct CancelFlag {
    bool raised = false;
};

} // namespace corvrec
