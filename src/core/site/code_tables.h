#pragma once

#include "core/text_ids.h"

#include <array>
#include <optional>
#include <string_view>
#include <variant>

namespace corvrec
{

// A row of a code table: what the settings file stores, and what the list shows (a fixed text or one from the
// string table). Row n of a list is row n of its table.
struct CodeRow {
    std::string_view code;
    std::variant<std::string_view, TextId> shown;
};

// Where the data comes from: the exchange itself (Pabx), a plain buffer, or a Stratobox buffer device. Key
// "Dispositivo".
inline constexpr std::array<CodeRow, 6> kDevices{{
    {"COM", "Pabx"},
    {"BUFF", "Buffer"},
    {"STX11", "Stratobox 1.1"},
    {"STX20", "Stratobox 2.0"},
    {"STX30", "Stratobox 3.0"},
    {"STX40", "Stratobox Buffer"},
}};

// Rows of kDevices.
namespace device
{
inline constexpr int pabx = 0;
inline constexpr int buffer = 1;
inline constexpr int stratobox11 = 2;
inline constexpr int stratobox20 = 3;
inline constexpr int stratobox30 = 4;
inline constexpr int stratoboxBuffer = 5;
} // namespace device

// Key "Handshake". The row number is also the port's own value (LineSettings::handshaking).
inline constexpr std::array<CodeRow, 3> kHandshakes{{
    {"NONE", text::noHandshake},
    {"XON", "Software"},
    {"HDW", "Hardware"},
}};

// Rows of kHandshakes.
namespace handshake
{
inline constexpr int software = 1; // uses the flow-control characters Xon and Xoff
inline constexpr int hardware = 2;
} // namespace handshake

// Key "Parita". The code is also the parity letter of LineSettings::settings.
inline constexpr std::array<CodeRow, 3> kParities{{
    {"N", text::noParity},
    {"E", text::evenParity},
    {"O", text::oddParity},
}};

// When a site's data is acquired. The values are the rows of the schedule list.
enum class ScheduleKind { continuous = 0, hourly = 1, daily = 2, weekly = 3 };

// The rows' texts.
inline constexpr std::array kScheduleTexts{text::continuous, text::hourly, text::daily, text::weekly};

// Weekday bits, as the settings file adds them up in "Ricorrenza".
namespace weekday
{
inline constexpr int sunday = 1;
inline constexpr int monday = 2;
inline constexpr int tuesday = 4;
inline constexpr int wednesday = 8;
inline constexpr int thursday = 16;
inline constexpr int friday = 32;
inline constexpr int saturday = 64;
} // namespace weekday

// The bit of each row of the weekday list, Monday to Sunday.
inline constexpr std::array<int, 7> kWeekdayRows{weekday::monday,   weekday::tuesday, weekday::wednesday,
                                                 weekday::thursday, weekday::friday,  weekday::saturday,
                                                 weekday::sunday};

} // namespace corvrec
