#pragma once

#include <cstdint>
#include <iosfwd>
#include <string_view>

namespace corvrec::lab
{

enum class Direction { fromEditor, toEditor };

// A line for each burst of bytes, and for each thing that happens to a port:
//
//       3.021 COM1 opened
//       3.024 COM1 < 13 02  ..
//       3.024 COM1 > 13  .
//
// The time is in seconds; "<" comes from the editor, ">" goes to it; the bytes are hexadecimal, then as ASCII
// characters with a dot for those that cannot be printed. Every line is on its way when the call returns;
// std::runtime_error when it cannot be.
class Trace
{
public:
    // Times of the calls count from this one. Nothing is written without an output.
    Trace(std::ostream* output, std::int64_t startMs)
        : output_(output)
        , startMs_(startMs)
    {
    }

    void Bytes(int port, Direction direction, std::string_view bytes, std::int64_t nowMs);
    void Event(int port, std::string_view what, std::int64_t nowMs);

private:
    void Line(int port, std::string_view text, std::int64_t nowMs);

    std::ostream* output_;
    std::int64_t startMs_;
};

} // namespace corvrec::lab
