#include "core/device/parity_marks.h"

#include <utility>

namespace corvrec
{

namespace
{

constexpr char kMark = '\xFF';
constexpr char kDamaged = '?';

} // namespace

std::string ParityMarks::Decode(std::string_view bytes)
{
    std::string characters;
    for (const char byte : bytes) {
        if (const std::optional<char> character = Next(byte))
            characters += *character;
    }
    return characters;
}

// The character that the byte completes, if any.
std::optional<char> ParityMarks::Next(char byte)
{
    const State before = std::exchange(state_, State::plain);
    if (before == State::plain && byte == kMark) {
        state_ = State::afterFF;
        return std::nullopt;
    }
    if (before == State::afterFF && byte == '\0') {
        state_ = State::afterFF00;
        return std::nullopt;
    }
    if (before != State::afterFF00)
        return byte;
    // A NUL with a parity error looks like a break; the port drops NULs anyway.
    return byte == '\0' ? std::nullopt : std::optional(kDamaged);
}

} // namespace corvrec
