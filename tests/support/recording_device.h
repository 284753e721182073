#pragma once

#include "tools/lab/line_device.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvrec
{

// The traffic on a device's line.
struct Traffic {
    std::string received; // by the device
    std::size_t sent = 0; // number of bytes sent by the device
};

// A device that records its traffic, which must outlive it.
class RecordingDevice final : public lab::LineDevice
{
public:
    RecordingDevice(std::unique_ptr<lab::LineDevice> device, Traffic& traffic)
        : device_(std::move(device))
        , traffic_(traffic)
    {
    }

    void Receive(std::string_view bytes, std::int64_t nowMs) override
    {
        traffic_.received += bytes;
        device_->Receive(bytes, nowMs);
    }
    std::string Send(std::int64_t nowMs) override
    {
        std::string bytes = device_->Send(nowMs);
        traffic_.sent += bytes.size();
        return bytes;
    }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return device_->NextSendMs(); }
    void Disconnect() override { device_->Disconnect(); }
    [[nodiscard]] bool IsGone() const override { return device_->IsGone(); }

private:
    std::unique_ptr<lab::LineDevice> device_;
    Traffic& traffic_;
};

} // namespace corvrec
