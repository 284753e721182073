#pragma once

#include <cstdint>

namespace corvrec
{

// Local date and time of day, Gregorian calendar. month and day count from 1; hour is 0 to 23.
struct DateTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const DateTime&) const = default;
};

// The program's only source of time, so that a test can set it.
class Clock
{
public:
    virtual ~Clock() = default;

    virtual DateTime Now() const = 0;

    // Milliseconds since an arbitrary moment. Never runs backwards, even when the time of day is set back.
    // Only differences of two such values mean something. The real clock moves in steps of kTickStepMs.
    virtual std::int64_t TickMs() const = 0;

    // Blocks the calling thread; no event is handled meanwhile.
    virtual void Sleep(std::int64_t ms) = 0;
};

// Step of the real clock. A wait whose elapsed time exactly equals its time-out counts as a success (see
// Wait). Deliberate, as in older editors: with their platform's steps of 10 to 16 ms it never happened, and
// here it cannot either, since no time-out in use is a multiple of 13.
inline constexpr std::int64_t kTickStepMs = 13;

// The machine's own clock: local time zone, monotonic tick.
class SystemClock final : public Clock
{
public:
    DateTime Now() const override;
    std::int64_t TickMs() const override;
    void Sleep(std::int64_t ms) override;
};

} // namespace corvrec
