#pragma once

#include "core/text_ids.h"

#include <array>
#include <cstddef>
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

// The model numbers of the Stratobox buffer devices.
enum class BufferModel { stratobox11 = 11, stratobox20 = 20, stratobox30 = 30, stratoboxBuffer = 40 };

// What the editor offers for a device: an exchange or a plain buffer is connected locally and has a
// handshake; a Stratobox has a status, and the newer ones can be reached by modem.
enum class DeviceKind { exchange, localStratobox, stratobox };

// Where the data comes from: everything that the editor knows of one device.
struct DeviceRow {
    std::string_view code;  // key "Dispositivo"
    std::string_view shown; // in the list
    DeviceKind kind;
    BufferModel model; // how its status is requested and decoded; of no use for an exchange
    bool settableClock;
    bool highSpeeds; // above 19200 baud
    bool keepsNulls; // "EliminaNull" is always stored as off
};

// Row n of the list is row n of the table.
inline constexpr std::array kDevices{
    DeviceRow{.code = "COM",
              .shown = "Pabx",
              .kind = DeviceKind::exchange,
              .model = BufferModel::stratobox11,
              .settableClock = false,
              .highSpeeds = false,
              .keepsNulls = false},
    DeviceRow{.code = "BUFF",
              .shown = "Buffer",
              .kind = DeviceKind::exchange,
              .model = BufferModel::stratobox11,
              .settableClock = false,
              .highSpeeds = false,
              .keepsNulls = false},
    DeviceRow{.code = "STX11",
              .shown = "Stratobox 1.1",
              .kind = DeviceKind::localStratobox,
              .model = BufferModel::stratobox11,
              .settableClock = false,
              .highSpeeds = false,
              .keepsNulls = false},
    DeviceRow{.code = "STX20",
              .shown = "Stratobox 2.0",
              .kind = DeviceKind::stratobox,
              .model = BufferModel::stratobox30, // answers as a 3.0
              .settableClock = true,
              .highSpeeds = false,
              .keepsNulls = false},
    DeviceRow{.code = "STX30",
              .shown = "Stratobox 3.0",
              .kind = DeviceKind::stratobox,
              .model = BufferModel::stratobox30,
              .settableClock = true,
              .highSpeeds = false,
              .keepsNulls = false},
    DeviceRow{.code = "STX40",
              .shown = "Stratobox Buffer",
              .kind = DeviceKind::stratobox,
              .model = BufferModel::stratoboxBuffer,
              .settableClock = true,
              .highSpeeds = true,
              .keepsNulls = true},
};

// The row of a code that the table has.
constexpr int DeviceRowOf(std::string_view code)
{
    std::size_t row = 0;
    while (kDevices.at(row).code != code)
        ++row;
    return static_cast<int>(row);
}

// The device of a list's row. The first one, an exchange, when no row is chosen (-1).
constexpr const DeviceRow& DeviceOf(int row)
{
    return row < 0 ? kDevices.front() : kDevices.at(static_cast<std::size_t>(row));
}

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
