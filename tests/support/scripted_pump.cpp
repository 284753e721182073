#include "tests/support/scripted_pump.h"

#include <algorithm>
#include <utility>

namespace corvrec
{

void ScriptedPump::Process(std::optional<std::int64_t> deadlineTick)
{
    mayRest_.push_back(deadlineTick.has_value());
    if (RunDue()) // a pending event ends a rest at once
        return;
    if (!deadlineTick) {
        clock_.Advance(passMs_);
        return;
    }
    const std::int64_t past = std::max(*deadlineTick + 1, clock_.TickMs());
    const std::int64_t until = script_.empty() ? past : std::min(past, script_.begin()->first);
    clock_.Advance(until - clock_.TickMs());
    RunDue();
}

bool ScriptedPump::RunDue()
{
    // Removed first: actions added by an action run in a later pass.
    std::vector<std::function<void()>> due;
    while (!script_.empty() && script_.begin()->first <= clock_.TickMs())
        due.push_back(std::move(script_.extract(script_.begin()).mapped()));
    for (const std::function<void()>& action : due)
        action();
    return !due.empty();
}

} // namespace corvrec
