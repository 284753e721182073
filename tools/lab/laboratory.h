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

// The time of LineDevice.
std::int64_t NowMs();

// One device on a pseudo-terminal of its own.
class LabPort
{
public:
    // The number is the port's in the trace.
    LabPort(int number, std::unique_ptr<LineDevice> device, Trace& trace);

    [[nodiscard]] int Number() const { return number_; }

    // Of the pseudo-terminal, which is there until the port is unplugged.
    [[nodiscard]] const std::string& Name() const { return name_; }

    // Moves what can be moved and comes back at once. Once the device is unplugged there is nothing more to
    // serve.
    void Serve(std::int64_t nowMs);
    [[nodiscard]] bool IsUnplugged() const { return !pty_; }

    // When to serve next although no descriptor is ready; nothing: not before.
    [[nodiscard]] std::optional<std::int64_t> NextMs(std::int64_t nowMs) const;

    // Of a port that is not unplugged.
    [[nodiscard]] const Pty& Terminal() const { return *pty_; }
    [[nodiscard]] bool WantsToWrite() const { return !unsent_.empty(); }

private:
    void MindVisits(std::int64_t nowMs);
    void SendWhatIsDue(std::int64_t nowMs);

    int number_;
    std::unique_ptr<Pty> pty_;
    std::string name_;
    std::unique_ptr<LineDevice> device_;
    Trace& trace_;
    std::string unsent_;   // the pseudo-terminal is full
    int visitors_ = 0;     // that have the device open
    bool isGoing_ = false; // unplugged as soon as its last bytes are fetched
};

// Serves all ports until the descriptor can be read or every port is unplugged.
void Serve(std::vector<LabPort>& ports, int stop);

} // namespace corvrec::lab
