#pragma once

#include "core/device/event_pump.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/odd_texts.h"

#include <QString>

#include <functional>
#include <string>

namespace corvrec
{

// A modem with a device at its other end, driven by chance: both answer as they should, send garbage or stay
// silent, refuse the port or disappear. Reports any command to the modem that is not exactly one line.
class ChanceDevice final : public FakePort
{
public:
    ChanceDevice(const Clock& clock, Chance& chance, std::function<void(QString)> report);

    void Open() override;
    void Output(std::string_view bytes) override;

private:
    std::string AnswerTo(std::string_view bytes);

    Chance& chance_;
    std::function<void(QString)> report_;
};

// Handles the window system's events and advances the time of a wait in leaps, so that no wait takes real
// time.
class LeapingPump final : public EventPump
{
public:
    LeapingPump(FakeClock& clock, Chance& chance)
        : clock_(clock)
        , chance_(chance)
    {
    }

    void Process(std::optional<std::int64_t> deadlineTick) override;

    // Whether a handler of the program is waiting for events.
    [[nodiscard]] bool IsInside() const { return depth_ > 0; }

private:
    FakeClock& clock_;
    Chance& chance_;
    int depth_ = 0;
};

} // namespace corvrec
