#pragma once

#include "core/clock.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace corvrec
{

// A clock that moves only on request. Unlike the real one, its tick has no steps, so a wait can end exactly
// at its time-out.
class FakeClock final : public Clock
{
public:
    [[nodiscard]] DateTime Now() const override { return now_; }
    [[nodiscard]] std::int64_t TickMs() const override { return tickMs_; }

    // Advances the tick like a real sleep, and records the duration.
    void Sleep(std::int64_t ms) override
    {
        sleeps_.push_back(ms);
        Advance(ms);
        if (duringSleep_)
            duringSleep_();
    }

    // What other programs do while this one sleeps.
    void SetDuringSleep(std::function<void()> action) { duringSleep_ = std::move(action); }

    void SetNow(const DateTime& now) { now_ = now; }

    // Advances the tick only; the time of day never moves, it is set.
    void Advance(std::int64_t ms) { tickMs_ += ms; }

    [[nodiscard]] const std::vector<std::int64_t>& Sleeps() const { return sleeps_; }

private:
    DateTime now_{.year = 2026, .month = 3, .day = 3, .hour = 10, .minute = 20, .second = 30};
    std::int64_t tickMs_ = 1000;
    std::vector<std::int64_t> sleeps_;
    std::function<void()> duringSleep_;
};

} // namespace corvrec
