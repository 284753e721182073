#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace corvrec
{

// Random choices that a seed repeats on every machine; the standard library's distributions differ between
// implementations.
class Chance
{
public:
    explicit Chance(std::uint64_t seed)
        : engine_(seed)
    {
    }

    // 0 to count - 1.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }

    // True in this percentage of calls.
    bool Percent(std::size_t percent) { return Below(100) < percent; }

    template <class Range>
    const auto& OneOf(const Range& range)
    {
        const auto count = static_cast<std::size_t>(std::ssize(range));
        return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(count)));
    }

private:
    std::mt19937_64 engine_;
};

// A text that nobody types: the settings file's syntax characters, quotes, outer blanks, line breaks, NULs,
// control characters, letters inside and outside code page 1252, single surrogates, up to 300 characters.
QString OddText(Chance& chance);

} // namespace corvrec
