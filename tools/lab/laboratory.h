#pragma once

#include "tools/lab/line_device.h"
#include "tools/lab/pty.h"
#include "tools/lab/trace.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvrec::lab
{

// The current time for the calls of LineDevice.
std::int64_t NowMs();

// One device on its own pseudo-terminal.
class LabPort
{
public:
    // number: of the port in the trace.
    LabPort(int number, std::unique_ptr<LineDevice> device, Trace& trace);

    [[nodiscard]] int Number() const { return number_; }

    // The pseudo-terminal's path. It exists until the port is unplugged.
    [[nodiscard]] const std::string& Name() const { return name_; }

    // Transfers what can be transferred, in both directions, and returns at once. Does nothing once the
    // device is unplugged.
    void Serve(std::int64_t nowMs);
    [[nodiscard]] bool IsUnplugged() const { return !pty_; }

    // When to call Serve next even if no descriptor is ready; nullopt: not before one is.
    [[nodiscard]] std::optional<std::int64_t> NextMs(std::int64_t nowMs) const;

    // Only for a port that is not unplugged.
    [[nodiscard]] const Pty& Terminal() const { return *pty_; }
    [[nodiscard]] bool WantsToWrite() const { return !unsent_.empty(); }

private:
    // Handles the editor's opening and closing of the port.
    void FollowVisits(std::int64_t nowMs);
    void SendWhatIsDue(std::int64_t nowMs);

    int number_;
    std::unique_ptr<Pty> pty_;
    std::string name_;
    std::unique_ptr<LineDevice> device_;
    Trace& trace_;
    std::string unsent_;   // left over because the pseudo-terminal is full
    int visitors_ = 0;     // programs that have the device open
    bool isGoing_ = false; // unplugged once its last bytes are fetched
};

// Serves all ports until `stop` becomes readable or every port is unplugged. Throws std::system_error.
void Serve(std::vector<LabPort>& ports, int stop);

} // namespace corvrec::lab
