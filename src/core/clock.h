#pragma once

#include <cstdint>

namespace corvrec
{

// Local date and time of day, Gregorian calendar. month and day count from 1, hour from 0 to 23.
struct DateTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const DateTime&) const = default;
};

// Time as the program sees it, so that a test can set it.
class Clock
{
public:
    virtual ~Clock() = default;

    virtual DateTime Now() const = 0;

    // Milliseconds since an arbitrary moment, never running backwards, whatever is done to the time of day.
    // Only differences of two such values mean something. The real clock moves in steps of kTickStepMs.
    virtual std::int64_t TickMs() const = 0;

    // Stops the calling thread; no event is handled meanwhile.
    virtual void Sleep(std::int64_t ms) = 0;
};

// The tick's step. A wait that ends exactly at its time-out counts as success (kept from the tick of 10 to 16
// ms of the platform where that never happened); no time-out in use is a multiple of 13, so none can end
// there.
inline constexpr std::int64_t kTickStepMs = 13;

class SystemClock final : public Clock
{
public:
    DateTime Now() const override;
    std::int64_t TickMs() const override;
    void Sleep(std::int64_t ms) override;
};

} // namespace corvrec
