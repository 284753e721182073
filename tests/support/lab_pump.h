#pragma once

#include "core/device/event_pump.h"
#include "tests/support/fake_clock.h"
#include "tests/support/noting_device.h"
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

// The event loop of an editor whose device is played in the same thread, on a real pseudo-terminal, so that
// time is the test's: a rest goes straight to the device's next byte, or past the deadline, as soon as
// nothing moves any more. Half a minute of silence takes no time then, and every run is like the one before.
//
// The environment names the device as the editor's port with the number, as long as the pump lives.
class LabPump final : public EventPump
{
public:
    // A rest ends then at the latest, so that a test can act in the middle of a long silence.
    static constexpr std::int64_t kLongestRestMs = 5000;

    LabPump(FakeClock& clock, std::unique_ptr<lab::LineDevice> device, int port = 2);
    ~LabPump() override;
    LabPump(const LabPump&) = delete;
    LabPump& operator=(const LabPump&) = delete;

    // A pass serves the device, then the windows. Unless it rests the clock's tick moves by a step in it.
    void Process(std::optional<std::int64_t> deadlineTick) override;

    // An event in the pass of that number, counted from 0 since the pump was made.
    void AtPass(std::size_t pass, std::function<void()> action);
    [[nodiscard]] std::size_t Passes() const { return passes_; }

    // So many passes without a rest make one step of the tick (1 at first): a faster machine.
    void SetPassesPerStep(std::size_t passes) { passesPerStep_ = passes; }

    // Lets the device take what was sent to it outside of a wait.
    void Settle();

    // All that has come from the editor, and the count of bytes for it, fetched or not.
    [[nodiscard]] const std::string& Received() const { return traffic_.received; }
    [[nodiscard]] std::size_t Sent() const { return traffic_.sent; }

    // Pulls the cable.
    void Unplug() { line_.reset(); }

    // Whether this process has the device open as a port.
    [[nodiscard]] bool IsHeld() const;

private:
    bool Serve();

    FakeClock& clock_;
    const QByteArray variable_;
    std::string name_;
    Traffic traffic_;
    lab::Trace trace_{nullptr, 0};
    std::optional<lab::LabPort> line_; // nothing once it is unplugged
    std::multimap<std::size_t, std::function<void()>> actions_;
    std::size_t passes_ = 0;
    std::size_t passesPerStep_ = 1;
};

} // namespace corvrec
