#include "core/device/line_settings.h"

#include "core/site/code_tables.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

namespace corvrec
{

namespace
{

constexpr std::array<std::pair<std::string_view, LineParity>, 5> kParityLetters{{
    {"N", LineParity::none},
    {"E", LineParity::even},
    {"O", LineParity::odd},
    {"M", LineParity::mark},
    {"S", LineParity::space},
}};

constexpr std::array<std::pair<std::string_view, LineStopBits>, 3> kStopBitTexts{{
    {"1", LineStopBits::one},
    {"1.5", LineStopBits::oneAndHalf},
    {"2", LineStopBits::two},
}};

// The value that the table gives for the text.
template <typename Table>
auto ValueOf(const Table& table, std::string_view text) -> std::optional<decltype(table[0].second)>
{
    const auto row = std::ranges::find(table, text, [](const auto& each) { return each.first; });
    return row == table.end() ? std::nullopt : std::optional(row->second);
}

// Digits only; 0 for any other text.
int NumberOf(std::string_view text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

// Removes the text up to the next comma, and the comma, from the rest. Nullopt when there is nothing left to
// remove.
std::optional<std::string_view> NextPart(std::optional<std::string_view>& rest)
{
    if (!rest)
        return std::nullopt;
    const std::size_t comma = rest->find(',');
    const std::string_view part = rest->substr(0, comma);
    if (comma == std::string_view::npos)
        rest.reset();
    else
        rest->remove_prefix(comma + 1);
    return part;
}

} // namespace

std::optional<LineFormat> FormatOf(std::string_view settings)
{
    std::optional<std::string_view> rest = settings;
    const int baud = NumberOf(NextPart(rest).value_or(""));
    const auto parity = ValueOf(kParityLetters, NextPart(rest).value_or(""));
    const int dataBits = NumberOf(NextPart(rest).value_or(""));
    const auto stopBits = ValueOf(kStopBitTexts, NextPart(rest).value_or(""));
    if (rest || baud <= 0 || !parity || dataBits < 5 || dataBits > 8 || !stopBits)
        return std::nullopt;
    return LineFormat{.baud = baud, .parity = *parity, .dataBits = dataBits, .stopBits = *stopBits};
}

std::string LineSettingsText(std::string_view baud, int parityRow, std::string_view dataBits,
                             std::string_view stopBits)
{
    const std::string_view parity =
        parityRow < 0 ? "" : kParities.at(static_cast<std::size_t>(parityRow)).code;
    std::string settings(baud);
    for (const std::string_view part : {parity, dataBits, stopBits}) {
        settings += ',';
        settings += part;
    }
    return settings;
}

int Handshaking(bool local, int handshakeRow)
{
    // The table's rows are in the order of the port's values.
    const bool handshakes = handshakeRow == 1 || handshakeRow == 2;
    return !local && handshakes ? handshakeRow : 0;
}

} // namespace corvrec
