#include "core/device/buffer_status.h"

#include "core/file/code_page.h"
#include "core/site/conversions.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <initializer_list>

namespace corvrec
{

namespace
{

struct Choice {
    char code;
    TextId shown;
};

// The text for the field's byte; `other` for an unknown one or when the reply ends before it.
TextId Choose(std::string_view field, std::initializer_list<Choice> choices, TextId other)
{
    const auto* const chosen = std::ranges::find_if(
        choices, [field](const Choice& choice) { return !field.empty() && field.front() == choice.code; });
    return chosen == choices.end() ? other : chosen->shown;
}

// At least four digits: years from 100 on.
std::string YearText(int year)
{
    const int century = year / 100;
    return TwoDigits(century) + TwoDigits(year % 100);
}

// The forms of a field.

std::string Received(std::string_view field, const StatusContext& /*context*/)
{
    return Utf8FromCp1252(field);
}

// Deliberate: the devices send hours, but editors have always taken them for days.
std::string MomentBefore(std::string_view field, const StatusContext& context)
{
    return NowMinusDays(context.now, LeadingNumber(field));
}

std::string ByteNumber(std::string_view field, const StatusContext& /*context*/)
{
    return field.empty() ? "" : std::to_string(static_cast<unsigned char>(field.front()));
}

std::string Percentage(std::string_view field, const StatusContext& /*context*/)
{
    return PercentText(LeadingNumber(field));
}

// ddmmyy
std::string Date(std::string_view field, const StatusContext& /*context*/)
{
    const std::string day = Utf8FromCp1252(field.substr(0, 2));
    const std::string month = Utf8FromCp1252(field.substr(std::min<std::size_t>(field.size(), 2), 2));
    const std::string year = Utf8FromCp1252(field.substr(std::min<std::size_t>(field.size(), 4)));
    return day + "/" + month + "/" + year;
}

// hhmm
std::string Time(std::string_view field, const StatusContext& /*context*/)
{
    const std::string hour = Utf8FromCp1252(field.substr(0, 2));
    const std::string minute = Utf8FromCp1252(field.substr(std::min<std::size_t>(field.size(), 2)));
    return hour + ":" + minute;
}

std::string UsedMemory(std::string_view field, const StatusContext& context)
{
    return context.text(
        Choose(field, {{'V', text::none}, {'M', text::part}, {'P', text::full}}, text::error));
}

std::string UsedMemoryByte(std::string_view field, const StatusContext& context)
{
    return context.text(
        Choose(field, {{'\0', text::none}, {'\x55', text::part}, {'\xFF', text::full}}, text::error));
}

// An unknown code is no fault.
std::string Faults(std::string_view field, const StatusContext& context)
{
    return context.text(Choose(field, {{'R', text::powerCut}, {'L', text::lowBattery}}, text::noFault));
}

// The same codes, but an unknown one is shown as such.
std::string KnownFaults(std::string_view field, const StatusContext& context)
{
    return context.text(Choose(field, {{'N', text::noFault}, {'R', text::powerCut}, {'L', text::lowBattery}},
                               text::faultsUndetectable));
}

// Deliberate: the byte is read as a number ("5" is 5), not as a character code; older editors read it this
// way. So it never reaches the bits of an active selector (64) and an active printer (above 127).
std::string FaultBits(std::string_view field, const StatusContext& context)
{
    constexpr int kFaultBits = 64;
    return context.text(LeadingWhole(field) % kFaultBits != 0 ? text::yes : text::no);
}

std::string InactiveSelector(std::string_view /*field*/, const StatusContext& context)
{
    return context.text(text::selectorInactive);
}

std::string InactivePrinter(std::string_view /*field*/, const StatusContext& context)
{
    return context.text(text::printerInactive);
}

std::string Version(std::string_view field, const StatusContext& context)
{
    // Indexed by the number that the device sends.
    constexpr std::array<std::string_view, 8> kVersions{"Std (16)", "Std (24)",  "Std (48)", "Std (72)",
                                                        "Std (96)", "Std (120)", "Standard", "Sat"};
    const auto number = static_cast<std::size_t>(LeadingNumber(field));
    return number < kVersions.size() ? std::string(kVersions.at(number)) : context.text(text::unknownVersion);
}

// A 1.1 does not send its version of the firmware.
std::string FixedFirmware(std::string_view /*field*/, const StatusContext& /*context*/)
{
    return "01.10";
}

std::string Presence(std::string_view field, const StatusContext& context)
{
    return context.text(Choose(field, {{'0', text::absent}}, text::present));
}

constexpr std::array kFields11{
    FieldPlace{StatusField::repetitions, 2, 2, Received},
    FieldPlace{StatusField::memory, 4, 7, Received},
    FieldPlace{StatusField::percentUsed, 13, 3, Received},
    FieldPlace{StatusField::usedMemory, 17, 1, UsedMemoryByte},
    FieldPlace{StatusField::sinceDownload, 18, 1, ByteNumber},
    FieldPlace{StatusField::sinceData, 19, 1, ByteNumber},
    FieldPlace{StatusField::faults, 20, 1, FaultBits},
    FieldPlace{StatusField::selector, 20, 1, InactiveSelector},
    FieldPlace{StatusField::printer, 20, 1, InactivePrinter},
    FieldPlace{StatusField::firmware, 20, 0, FixedFirmware},
};

constexpr std::array kFields30{
    FieldPlace{StatusField::memory, 2, 7, Received},
    FieldPlace{StatusField::percentUsed, 11, 3, Received},
    FieldPlace{StatusField::usedMemory, 15, 1, UsedMemory},
    FieldPlace{StatusField::sinceDownload, 16, 3, MomentBefore},
    FieldPlace{StatusField::sinceData, 19, 3, MomentBefore},
    FieldPlace{StatusField::faults, 22, 1, Faults},
    FieldPlace{StatusField::version, 23, 1, Version},
    FieldPlace{StatusField::firmware, 24, 4, Received},
    FieldPlace{StatusField::date, 28, 6, Date},
    FieldPlace{StatusField::time, 34, 4, Time},
};

constexpr std::array kFields40{
    FieldPlace{StatusField::memory, 2, 7, Received},
    FieldPlace{StatusField::percentUsed, 9, 7, Percentage},
    FieldPlace{StatusField::usedMemory, 16, 1, UsedMemory},
    FieldPlace{StatusField::sinceDownload, 17, 3, MomentBefore},
    FieldPlace{StatusField::sinceData, 20, 3, MomentBefore},
    FieldPlace{StatusField::faults, 23, 1, KnownFaults},
    FieldPlace{StatusField::firmware, 25, 4, Received},
    FieldPlace{StatusField::date, 29, 6, Date},
    FieldPlace{StatusField::time, 35, 4, Time},
    FieldPlace{StatusField::modem, 39, 1, Presence},
    FieldPlace{StatusField::printer, 40, 1, Presence},
};

constexpr ReplyLayout kReply11{.fields = kFields11, .counted = 18, .countedAfterLineClear = 2};
constexpr ReplyLayout kReply30{.fields = kFields30};
constexpr ReplyLayout kReply40{.fields = kFields40};

BufferStatus Decoded(const ReplyLayout& layout, std::string_view reply, const StatusContext& context)
{
    BufferStatus status;
    status.fill(context.text(text::notAvailable));
    for (const FieldPlace& place : layout.fields) {
        const std::string_view bytes = reply.substr(std::min(place.position - 1, reply.size()), place.width);
        status.at(static_cast<std::size_t>(place.field)) = place.shown(bytes, context);
    }
    return status;
}

} // namespace

const ReplyLayout& LayoutOf(BufferModel model)
{
    switch (model) {
    case BufferModel::stratobox11:
        return kReply11;
    case BufferModel::stratobox20:
    case BufferModel::stratobox30:
        return kReply30;
    case BufferModel::stratoboxBuffer:
        break;
    }
    return kReply40;
}

BufferStatus StatusOf(BufferModel model, std::string_view reply, const StatusContext& context)
{
    return Decoded(LayoutOf(model), reply, context);
}

BufferStatus Sx11Status(std::string_view reply, const StatusContext& context)
{
    return Decoded(kReply11, reply, context);
}

BufferStatus Sx30Status(std::string_view reply, const StatusContext& context)
{
    return Decoded(kReply30, reply, context);
}

BufferStatus Sx40Status(std::string_view reply, const StatusContext& context)
{
    return Decoded(kReply40, reply, context);
}

std::string NowMinusDays(const DateTime& now, double days)
{
    using std::chrono::year;
    constexpr double kSecondsPerDay = 24 * 60 * 60;
    // More than all printable years together; the seconds still fit an integer.
    constexpr double kMostDays = 10000 * 366;
    if (std::abs(days) > kMostDays)
        return {};
    const std::chrono::sys_days today = year{now.year} / now.month / now.day;
    const std::chrono::sys_seconds moment =
        today + std::chrono::hours{now.hour} + std::chrono::minutes{now.minute} +
        std::chrono::seconds{now.second} - std::chrono::seconds{std::llround(days * kSecondsPerDay)};
    const auto midnight = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date = midnight;
    if (date.year() < year{100} || date.year() > year{9999})
        return {};
    std::string shown = TwoDigits(static_cast<unsigned>(date.day())) + "/" +
                        TwoDigits(static_cast<unsigned>(date.month())) + "/" +
                        YearText(static_cast<int>(date.year()));
    if (moment == midnight)
        return shown;
    const std::chrono::hh_mm_ss time(moment - midnight);
    return shown + " " + TwoDigits(static_cast<double>(time.hours().count())) + ":" +
           TwoDigits(static_cast<double>(time.minutes().count())) + ":" +
           TwoDigits(static_cast<double>(time.seconds().count()));
}

} // namespace corvrec
