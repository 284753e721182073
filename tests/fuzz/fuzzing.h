#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace corvrec::fuzz
{

// Prints what does not hold and aborts, which the fuzzer reports as a finding.
inline void Check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

// Splits the input at each '|', so that it is readable and easy for the fuzzer to extend. '|' has no meaning
// in any tested grammar, so nothing is missed.
class Fields
{
public:
    Fields(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size) // bytes are characters here
    {
    }

    [[nodiscard]] bool AtEnd() const { return isAtEnd_; }

    // The next field; empty after the last one.
    std::string_view Text()
    {
        const std::size_t length = std::min(rest_.find('|'), rest_.size());
        const std::string_view field = rest_.substr(0, length);
        isAtEnd_ = length == rest_.size();
        rest_.remove_prefix(isAtEnd_ ? length : length + 1);
        return field;
    }

    // The decimal number at the start of the next field, or otherwise when there is none.
    std::size_t Number(std::size_t otherwise) { return NumberOf(Text(), otherwise); }

    // The rest of the input, including any '|'.
    std::string_view Rest()
    {
        isAtEnd_ = true;
        return std::exchange(rest_, {});
    }

    static std::size_t NumberOf(std::string_view field, std::size_t otherwise)
    {
        std::size_t number = otherwise;
        std::from_chars(field.data(), field.data() + field.size(), number);
        return number;
    }

private:
    std::string_view rest_;
    bool isAtEnd_ = false;
};

} // namespace corvrec::fuzz
