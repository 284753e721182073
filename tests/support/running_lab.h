#pragma once

#include "tests/support/recording_device.h"
#include "tools/lab/line_device.h"

#include <QString>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace corvrec
{

namespace lab
{
class LabPort;
class Trace;
} // namespace lab

// A device on a real pseudo-terminal, served by its own thread, so that it answers whatever the editor is
// doing. While it exists, the environment gives it as the editor's port with this number.
class RunningLab
{
public:
    explicit RunningLab(std::unique_ptr<lab::LineDevice> device, int port = 2);
    ~RunningLab();
    RunningLab(const RunningLab&) = delete;
    RunningLab& operator=(const RunningLab&) = delete;

    // Pulls the cable. Afterwards the device is idle and can be inspected.
    void Unplug();

    // Everything that the editor has sent. Only for an unplugged device.
    [[nodiscard]] const std::string& Received() const;

private:
    const QByteArray variable_;
    std::unique_ptr<lab::Trace> trace_;
    std::unique_ptr<Traffic> traffic_;
    std::vector<lab::LabPort> ports_;
    std::array<int, 2> stop_{-1, -1}; // a pipe
    std::thread thread_;
};

// A device that is a function: for the bytes that it receives, the bytes that it sends at once.
class Answering final : public lab::LineDevice
{
public:
    explicit Answering(std::function<std::string(std::string_view)> answer)
        : answer_(std::move(answer))
    {
    }

    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        if (!bytes.empty())
            unsent_ += answer_(bytes);
    }
    std::string Send(std::int64_t /*nowMs*/) override { return std::exchange(unsent_, {}); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override { unsent_.clear(); }
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::function<std::string(std::string_view)> answer_;
    std::string unsent_;
};

} // namespace corvrec
