#pragma once

#include "core/device/event_pump.h"
#include "tests/support/fake_clock.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace corvrec
{

// An event loop that plays a script of (time, action) pairs, and is the only one to move the clock: a rest
// jumps to the next action, or past the deadline when that comes first. A pass without a rest takes no time
// unless SetPassMs says so.
class ScriptedPump final : public EventPump
{
public:
    explicit ScriptedPump(FakeClock& clock)
        : clock_(clock)
        , start_(clock.TickMs())
    {
    }

    void Process(std::optional<std::int64_t> deadlineTick) override;

    // An event at this time in milliseconds after the pump was made. Events of the same time run in one pass,
    // in the order in which they were added.
    void At(std::int64_t ms, std::function<void()> action)
    {
        script_.emplace(start_ + ms, std::move(action));
    }

    // The duration of later passes that do not rest.
    void SetPassMs(std::int64_t ms) { passMs_ = ms; }

    // One entry per pass: whether it was allowed to rest.
    [[nodiscard]] const std::vector<bool>& MayRest() const { return mayRest_; }

private:
    bool RunDue();

    FakeClock& clock_;
    std::int64_t start_;
    std::int64_t passMs_ = 0;
    std::multimap<std::int64_t, std::function<void()>> script_;
    std::vector<bool> mayRest_;
};

} // namespace corvrec
