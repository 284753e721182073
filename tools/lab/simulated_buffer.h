#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::lab
{

enum class Model { stratobox11, stratobox20, stratobox30, stratoboxBuffer };

// "1.1", "2.0", "3.0", "Buffer"; letter case counts.
std::optional<Model> ModelNamed(std::string_view name);

// A buffer device, from its own side of the line: it is given one byte at a time and answers at once.
//
//   0x13 (DC3)   clears the line; the answer is the same byte. After the status of a 1.1 it is the rest of
//   the
//                reply instead: two bytes.
//   0x02 (STX)   asks for the status; the answer ends in "*", but a 1.1's is 18 bytes long and has no end
//   mark. 0x0F (SI)    sets the clock to the ten digits that follow, hhmmddmmyy, the seconds to 0. There is
//   no answer.
//                A command that breaks off or names no moment changes nothing. A 1.1 has no clock.
//
// Anything else is ignored.
class SimulatedBuffer
{
public:
    // The clock starts at this local time and runs with the milliseconds of the calls.
    SimulatedBuffer(Model model, std::chrono::sys_seconds time, std::int64_t nowMs);

    // Sets a field of the status reply: memory, percent, used, repetitions, download-hours, data-hours,
    // faults, version, firmware, printer, modem. Shorter values are filled with blanks in front. "used" is V,
    // M or P, or any other character; for a 1.1 it becomes a byte, and the hours are bytes from 0 to 255.
    // Throws std::invalid_argument when the model has no such field or the value does not fit; the text is
    // for the user.
    void Set(std::string_view field, std::string_view value);

    // All that belongs to a status comes at once, without waiting for 0x13 in the middle. The 0x13 is still
    // answered, by the same byte.
    void SetBurst(bool burst) { burst_ = burst; }

    std::string Answer(char byte, std::int64_t nowMs);

    [[nodiscard]] std::chrono::sys_seconds Time(std::int64_t nowMs) const;

private:
    std::string Status(std::int64_t nowMs);
    void SetClock(std::int64_t nowMs);

    Model model_;
    std::string reply_; // without date and time, which are put in when it is asked for
    std::string rest_;  // of a status that was asked for, to be sent after 0x13
    std::optional<std::string> clockDigits_;
    std::chrono::sys_seconds setTo_;
    std::int64_t setAtMs_;
    bool burst_ = false;
};

} // namespace corvrec::lab
