#pragma once

#include <cstddef>
#include <string_view>

// What the lines of a profile file mean. Positions count units: bytes, or the 16-bit units after the mark of
// UTF-16.
namespace corvrec::ini
{

inline constexpr std::string_view kLineEnd = "\r\n";

struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// The file's text with one byte per unit. For UTF-16 also the original bytes, two per unit.
struct Text {
    std::string_view units;
    std::string_view wide;

    // Whether every character of the span has a byte in the page, so that no '?' stands for a missing one. A
    // name or value with a missing character never equals a parameter.
    [[nodiscard]] bool IsExact(Span span) const;
};

struct Line {
    std::size_t begin = 0;
    std::size_t textEnd = 0; // before the line end
    std::size_t end = 0;     // after the line end; equal to textEnd when the line has none
};

// A bare line has neither bracket nor "=": reads ignore it, and deleting its section deletes it.
enum class LineKind { blank, header, comment, key, bare };

// A line with a key.
struct KeyLine {
    std::size_t begin = 0;
    Span name;
    Span value; // after the '=', up to the line end
    std::size_t end = 0;
};

inline bool IsLineEnd(char unit)
{
    return unit == '\r' || unit == '\n';
}

// Includes NUL: a tail of zeros, as a crash leaves it, is a blank line.
inline bool IsBlank(char unit)
{
    return static_cast<unsigned char>(unit) <= 0x20 && !IsLineEnd(unit);
}

inline std::string_view Slice(std::string_view units, Span span)
{
    return units.substr(span.begin, span.end - span.begin);
}

// The text of a name or value: without surrounding blanks, and only up to a NUL.
Span TextOf(std::string_view units, Span span);

Line LineAt(std::string_view units, std::size_t begin);
LineKind KindOf(std::string_view units, const Line& line);

// The name in the header line that begins at `begin`: up to ']' or the end of the line.
Span HeaderName(std::string_view units, std::size_t begin);

// The parts of a line with a key, and its name alone.
KeyLine KeyLineOf(std::string_view units, const Line& line);
Span KeyName(std::string_view units, std::size_t begin);

} // namespace corvrec::ini
