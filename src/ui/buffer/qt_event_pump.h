#pragma once

#include "core/device/event_pump.h"

namespace corvrec
{

class Clock;

// Qt's event loop, one pass at a time. A rest costs no processor time.
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
