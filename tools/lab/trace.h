#pragma once

#include <cstdint>
#include <iosfwd>
#include <string_view>

namespace corvrec::lab
{

enum class Direction { fromEditor, toEditor };

// Writes one line for each burst of bytes and each event of a port:
//
//      3.021 COM1 opened
//      3.024 COM1 < 13 02  ..
//      3.024 COM1 > 13  .
//
// The time is in seconds. "<" comes from the editor, ">" goes to it. The bytes are hexadecimal, then ASCII
// with a dot for each that cannot be printed. Every line is flushed before the call returns; if that fails,
// std::runtime_error is thrown.
class Trace
{
public:
    // The times in the trace count from startMs. With a null output nothing is written; any other must
    // outlive the trace.
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
