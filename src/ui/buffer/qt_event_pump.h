#pragma once

#include "core/device/event_pump.h"

namespace corvrec
{

class Clock;

// Runs Qt's event loop one pass at a time. Blocking uses no processor time.
class QtEventPump final : public EventPump
{
public:
    explicit QtEventPump(const Clock& clock)
        : clock_(clock)
    {
    }

    void Process(std::optional<std::int64_t> deadlineTick) override;

private:
    const Clock& clock_;
};

} // namespace corvrec
