#pragma once

#include "tools/lab/line_device.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvrec
{

// A device as it is, with a note of all that it was sent. The text must live longer.
class NotingDevice final : public lab::LineDevice
{
public:
    NotingDevice(std::unique_ptr<lab::LineDevice> device, std::string& received)
        : device_(std::move(device))
        , received_(received)
    {
    }

    void Receive(std::string_view bytes, std::int64_t nowMs) override
    {
        received_ += bytes;
        device_->Receive(bytes, nowMs);
    }
    std::string Send(std::int64_t nowMs) override { return device_->Send(nowMs); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return device_->NextSendMs(); }
    void Disconnect() override { device_->Disconnect(); }
    [[nodiscard]] bool IsGone() const override { return device_->IsGone(); }

private:
    std::unique_ptr<lab::LineDevice> device_;
    std::string& received_;
};

} // namespace corvrec
