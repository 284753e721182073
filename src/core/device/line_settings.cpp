#include "core/device/line_settings.h"

#include "core/site/code_tables.h"

#include <cstddef>

namespace corvrec
{

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
