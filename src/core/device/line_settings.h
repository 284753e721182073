#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

// How a serial line is run. Values that fit no port or no line are no error before the port is opened.
struct LineSettings {
    int commPort = 0;     // number of the port, from 1
    std::string settings; // speed, parity letter, data bits, stop bits: "9600,N,8,1"
    int handshaking = 0;  // 0 none, 1 XON/XOFF, 2 RTS/CTS

    bool operator==(const LineSettings&) const = default;
};

// The settings text from the texts of the lists and the row of kParities. What is not chosen stays empty, and
// the port then refuses to open.
std::string LineSettingsText(std::string_view baud, int parityRow, std::string_view dataBits,
                             std::string_view stopBits);

// From the row of kHandshakes, -1 for none chosen. A local line is always run without handshaking, whatever
// the site's own is.
int Handshaking(bool local, int handshakeRow);

} // namespace corvrec
