#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

// Decodes the input of a line on which the system marks parity errors (PARMRK of termios): FF 00 c is a
// character with a parity error, FF 00 00 a break, FF FF the character FF. A mark may be split between reads.
class ParityMarks
{
public:
    // The characters that the bytes complete: "?" for one with a parity error, nothing for a break.
    std::string Decode(std::string_view bytes);

    // Forgets a mark that has begun: its rest will not come.
    void Reset() { state_ = State::plain; }

private:
    enum class State { plain, afterFF, afterFF00 };

    std::optional<char> Next(char byte);

    State state_ = State::plain;
};

} // namespace corvrec
