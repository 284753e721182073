#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

// How a serial line is run. Values that no port or line supports are not an error before the port is opened.
struct LineSettings {
    int commPort = 0;     // number of the port, from 1
    std::string settings; // speed, parity letter, data bits, stop bits: "9600,N,8,1"
    int handshaking = 0;  // 0 none, 1 XON/XOFF, 2 RTS/CTS

    bool operator==(const LineSettings&) const = default;
};

// The meaning of LineSettings::settings.
enum class LineParity { none, even, odd, mark, space };
enum class LineStopBits { one, oneAndHalf, two };
struct LineFormat {
    int baud = 0; // bits per second, above 0
    LineParity parity = LineParity::none;
    int dataBits = 0; // 5 to 8
    LineStopBits stopBits = LineStopBits::one;

    bool operator==(const LineFormat&) const = default;
};

// Nullopt for a text that is not complete or has a value that no line knows.
std::optional<LineFormat> FormatOf(std::string_view settings);

// The settings text from the texts of the lists and a row of kParities. A part that is not chosen (empty
// text, row -1) stays empty, and then the port refuses to open.
std::string LineSettingsText(std::string_view baud, int parityRow, std::string_view dataBits,
                             std::string_view stopBits);

// LineSettings::handshaking for a row of kHandshakes, -1 for none chosen. A local line always runs without
// handshaking, whatever the site's own setting is.
int Handshaking(bool local, int handshakeRow);

} // namespace corvrec
