#pragma once

#include <cstdint>
#include <optional>

namespace corvrec
{

// Handling of the window system's events while a handler of ours is still running.
class EventPump
{
public:
    virtual ~EventPump() = default;

    // Handles what is pending; any handler of an enabled window may run meanwhile. Given a deadline, in ticks
    // of the clock, it may first rest until an event comes (a received byte is one) or the clock has passed
    // the deadline, not only met it. Without a deadline it returns at once.
    virtual void Process(std::optional<std::int64_t> deadlineTick) = 0;
};

// Raised by a handler that runs during a wait (the cancel button, a window that is closed) to end the wait.
// Every wait looks at it and none lowers it: a flag left raised ends the next wait too.
struct CancelFlag {
    bool raised = false;
};

} // namespace corvrec
