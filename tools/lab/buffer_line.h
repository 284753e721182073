#pragma once

#include "tools/lab/line_device.h"
#include "tools/lab/simulated_buffer.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::lab
{

// What goes wrong on the way from a buffer device. An answer is what the device sends for one byte received.
struct Faults {
    bool silence = false;                   // nothing is sent
    bool garbage = false;                   // every byte arrives damaged, as at the wrong speed
    bool echo = false;                      // what is received comes back first
    bool nuls = false;                      // a NUL follows every byte
    bool endless = false;                   // from the first byte received on, bytes without end
    bool burst = false;                     // see SimulatedBuffer::SetBurst
    std::optional<std::size_t> partial{};   // only so many bytes of each answer
    std::optional<std::size_t> dropAfter{}; // the line breaks after so many bytes sent since it was connected
    std::int64_t pauseMs = 0;               // before each byte but the first of an answer; 0: all at once

    bool operator==(const Faults&) const = default;
};

// A buffer device and the line that it is on.
class BufferLine final : public LineDevice
{
public:
    BufferLine(SimulatedBuffer device, const Faults& faults);

    void Receive(std::string_view bytes, std::int64_t nowMs) override;
    std::string Send(std::int64_t nowMs) override;
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override;
    void Disconnect() override;
    [[nodiscard]] bool IsGone() const override;

    [[nodiscard]] const SimulatedBuffer& Device() const { return device_; }

private:
    struct Due {
        std::int64_t atMs;
        std::string bytes;
    };

    [[nodiscard]] std::string Spoilt(std::string answer) const;
    void Queue(std::string_view bytes, std::int64_t nowMs);

    SimulatedBuffer device_;
    Faults faults_;
    std::deque<Due> due_;
    std::size_t sent_ = 0; // since the line was connected
    bool isFlooding_ = false;
};

} // namespace corvrec::lab
