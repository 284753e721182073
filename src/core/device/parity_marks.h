#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

// Reads the input of a line whose system marks characters with a parity error (PARMRK of termios): FF 00 c is
// such a character, FF 00 00 a break, FF FF the character FF. A mark may be split over several reads.
class ParityMarks
{
public:
    // The characters that the bytes complete: "?" for one with a parity error, nothing for a break.
    std::string Decode(std::string_view bytes);

    // The rest of a mark that has begun will not come.
    void Reset() { state_ = State::plain; }

private:
    enum class State { plain, afterFF, afterFF00 };

    std::optional<char> Next(char byte);

    State state_ = State::plain;
};

} // namespace corvrec
