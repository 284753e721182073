#pragma once

#include "core/clock.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace corvrec
{

// Time that stands still until it is told to move. The tick is as fine as the test wants it: unlike the real
// one's it has no steps, so a wait can be made to end exactly at its time-out.
class FakeClock final : public Clock
{
public:
    [[nodiscard]] DateTime Now() const override { return now_; }
    [[nodiscard]] std::int64_t TickMs() const override { return tickMs_; }

    // Moves the tick as a real sleep would, and is noted.
    void Sleep(std::int64_t ms) override
    {
        sleeps_.push_back(ms);
        Advance(ms);
        if (duringSleep_)
            duringSleep_();
    }

    // What others do while the program sleeps.
    void SetDuringSleep(std::function<void()> action) { duringSleep_ = std::move(action); }

    void SetNow(const DateTime& now) { now_ = now; }

    // The tick alone; the time of day is set, it never runs.
    void Advance(std::int64_t ms) { tickMs_ += ms; }

    [[nodiscard]] const std::vector<std::int64_t>& Sleeps() const { return sleeps_; }

private:
    DateTime now_{.year = 2026, .month = 3, .day = 3, .hour = 10, .minute = 20, .second = 30};
    std::int64_t tickMs_ = 1000;
    std::vector<std::int64_t> sleeps_;
    std::function<void()> duringSleep_;
};

} // namespace corvrec
