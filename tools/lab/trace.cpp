#include "tools/lab/trace.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <stdexcept>
#include <string>

namespace corvrec::lab
{

namespace
{

bool IsPrintable(char c)
{
    return c >= ' ' && c <= '~';
}

std::string Hexadecimal(char c)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(c);
    return {kDigits[code / kDigits.size()], kDigits[code % kDigits.size()]};
}

std::string Seconds(std::int64_t ms)
{
    constexpr double kMsPerSecond = 1000;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%9.3f", static_cast<double>(ms) / kMsPerSecond);
    return text.data();
}

} // namespace

void Trace::Bytes(int port, Direction direction, std::string_view bytes, std::int64_t nowMs)
{
    if (output_ == nullptr || bytes.empty())
        return;
    std::string text(direction == Direction::fromEditor ? "<" : ">");
    for (const char byte : bytes)
        text.append(" ").append(Hexadecimal(byte));
    text += "  ";
    for (const char byte : bytes)
        text += IsPrintable(byte) ? byte : '.';
    Line(port, text, nowMs);
}

void Trace::Event(int port, std::string_view what, std::int64_t nowMs)
{
    if (output_ != nullptr)
        Line(port, what, nowMs);
}

void Trace::Line(int port, std::string_view text, std::int64_t nowMs)
{
    *output_ << Seconds(nowMs - startMs_) << " COM" << port << ' ' << text << '\n' << std::flush;
    if (!*output_)
        throw std::runtime_error("the trace cannot be written");
}

} // namespace corvrec::lab
