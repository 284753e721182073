#pragma once

#include "core/device/event_pump.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_device.h"
#include "tools/lab/laboratory.h"
#include "tools/lab/line_device.h"
#include "tools/lab/trace.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace corvrec
{

// An event loop for an editor whose device runs in the same thread, on a real pseudo-terminal. The test
// controls the time: as soon as nothing moves, a rest jumps to the device's next byte or past the deadline.
// Half a minute of silence then takes no time, and every run is the same.
//
// While the pump exists, the environment gives the device as the editor's port with this number.
class LabPump final : public EventPump
{
public:
    // The maximum length of a rest, so that a test can act in the middle of a long silence.
    static constexpr std::int64_t kLongestRestMs = 5000;

    LabPump(FakeClock& clock, std::unique_ptr<lab::LineDevice> device, int port = 2);
    ~LabPump() override;
    LabPump(const LabPump&) = delete;
    LabPump& operator=(const LabPump&) = delete;

    // A pass serves the device and then the windows. Without a rest, the clock advances by one step of the
    // tick.
    void Process(std::optional<std::int64_t> deadlineTick) override;

    // Runs the action in the pass with this number, counted from 0.
    void AtPass(std::size_t pass, std::function<void()> action);
    [[nodiscard]] std::size_t Passes() const { return passes_; }

    // The number of passes without a rest for one step of the tick (initially 1): more simulate a faster
    // machine.
    void SetPassesPerStep(std::size_t passes) { passesPerStep_ = passes; }

    // Lets the device receive what was sent to it outside a wait.
    void Settle();

    // Everything that the editor has sent, and the number of bytes sent to it, read or not.
    [[nodiscard]] const std::string& Received() const { return traffic_.received; }
    [[nodiscard]] std::size_t Sent() const { return traffic_.sent; }

    // Pulls the cable.
    void Unplug() { line_.reset(); }

    // Whether this process has the device's port open.
    [[nodiscard]] bool IsHeld() const;

private:
    bool Serve();

    FakeClock& clock_;
    const QByteArray variable_;
    std::string name_;
    Traffic traffic_;
    lab::Trace trace_{nullptr, 0};
    std::optional<lab::LabPort> line_; // empty once it is unplugged
    std::multimap<std::size_t, std::function<void()>> actions_;
    std::size_t passes_ = 0;
    std::size_t passesPerStep_ = 1;
};

} // namespace corvrec
