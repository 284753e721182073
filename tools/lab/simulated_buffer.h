#pragma once

#include "core/site/code_tables.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::lab
{

// The model with this name: "1.1", "2.0", "3.0" or "Buffer", in exactly this case.
std::optional<BufferModel> ModelNamed(std::string_view name);

// All names, for the user.
std::string ModelNames();

// A buffer device, seen from its own side of the line: it gets one byte at a time and answers at once.
//
//   0x13 (DC3)  clears the line; the answer is the same byte. After the status of a 1.1 it is the rest of
//               the reply instead: two bytes.
//   0x02 (STX)  asks for the status. The answer ends in "*"; a 1.1's has no end mark and is 18 bytes long.
//   0x0F (SI)   sets the clock to the ten digits that follow, hhmmddmmyy, and the seconds to 0. There is no
//               answer. A command that is cut short or names no valid moment changes nothing. A 1.1 has no
//               clock.
//
// Anything else is ignored.
class SimulatedBuffer
{
public:
    // The clock starts at this local time and advances with the milliseconds given in the calls.
    SimulatedBuffer(BufferModel model, std::chrono::sys_seconds time, std::int64_t nowMs);

    // Sets a field of the status reply: memory, percent, used, repetitions, download-hours, data-hours,
    // faults, version, firmware, printer, modem. Shorter values are padded with leading blanks. "used" is V,
    // M, P or any other character. For a 1.1 it is sent as a raw byte, and the hours are raw bytes from 0 to
    // 255. Throws std::invalid_argument, with a text for the user, when the model has no such field or the
    // value does not fit.
    void Set(std::string_view field, std::string_view value);

    // Sends a whole status at once, without waiting for the 0x13 in the middle. That 0x13 is still answered
    // by the same byte.
    void SetBurst(bool burst) { burst_ = burst; }

    // The bytes that the device sends for one received byte; may be empty.
    std::string Answer(char byte, std::int64_t nowMs);

    [[nodiscard]] std::chrono::sys_seconds Time(std::int64_t nowMs) const;

private:
    [[nodiscard]] bool IsCounted() const; // see ReplyLayout
    std::string Status(std::int64_t nowMs);
    void SetClock(std::int64_t nowMs);

    BufferModel model_;
    std::string reply_;                      // without date and time, which a request fills in
    std::string rest_;                       // the second part of a requested status, to be sent after 0x13
    std::optional<std::string> clockDigits_; // of a clock command that has begun
    std::chrono::sys_seconds setTo_;         // what the clock showed at setAtMs_
    std::int64_t setAtMs_;
    bool burst_ = false;
};

} // namespace corvrec::lab
