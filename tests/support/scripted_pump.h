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

// An event loop that plays a script of (time, action) pairs. It alone moves the clock: a rest goes straight
// to the next action, or past the deadline when none comes before; a pass without a rest takes no time unless
// it is told to.
class ScriptedPump final : public EventPump
{
public:
    explicit ScriptedPump(FakeClock& clock)
        : clock_(clock)
        , start_(clock.TickMs())
    {
    }

    void Process(std::optional<std::int64_t> deadlineTick) override;

    // An event, so many milliseconds after the pump was made. Events of one time are handled in one pass, in
    // the order in which they were given.
    void At(std::int64_t ms, std::function<void()> action)
    {
        script_.emplace(start_ + ms, std::move(action));
    }

    // From now on a pass that does not rest takes so long.
    void SetPassMs(std::int64_t ms) { passMs_ = ms; }

    // One entry a pass: whether it was allowed to rest.
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
