#pragma once

#include "tests/support/recording_device.h"
#include "tools/lab/line_device.h"

#include <QString>

#include <cstdint>
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
    int stop_[2] = {-1, -1};
    std::thread thread_;
};

// Answers the first byte with a text, sent at once, and nothing after it.
class OneAnswer final : public lab::LineDevice
{
public:
    explicit OneAnswer(std::string text)
        : text_(std::move(text))
    {
    }

    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        isAsked_ = isAsked_ || !bytes.empty();
    }
    std::string Send(std::int64_t /*nowMs*/) override { return isAsked_ ? std::exchange(text_, {}) : ""; }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override {}
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::string text_;
    bool isAsked_ = false;
};

} // namespace corvrec
