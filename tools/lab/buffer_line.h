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

// Faults on the line from a buffer device. An answer is what the device sends for one received byte.
struct Faults {
    bool silence = false;                   // the device sends nothing
    bool garbage = false;                   // every byte arrives damaged, as at a wrong speed
    bool echo = false;                      // received bytes are sent back first
    bool nuls = false;                      // a NUL follows every byte
    bool endless = false;                   // after the first received byte, sends without end
    bool burst = false;                     // see SimulatedBuffer::SetBurst
    std::optional<std::size_t> partial{};   // only the first n bytes of each answer
    std::optional<std::size_t> dropAfter{}; // the line breaks after n bytes sent since it was connected
    std::int64_t pauseMs = 0;               // before each byte except an answer's first; 0: all at once

    bool operator==(const Faults&) const = default;
};

// A buffer device together with the line that it is on, which applies the faults.
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
    // Bytes waiting for their time, in the order of the times.
    struct Due {
        std::int64_t atMs;
        std::string bytes;
    };

    // The answer after silence, partial, garbage and nuls.
    [[nodiscard]] std::string WithFaults(std::string answer) const;
    void Queue(std::string_view bytes, std::int64_t nowMs);

    SimulatedBuffer device_;
    Faults faults_;
    std::deque<Due> due_;
    std::size_t sent_ = 0;    // since the line was connected
    bool isFlooding_ = false; // the endless fault has begun
};

} // namespace corvrec::lab
