#include "core/device/buffer_status.h"

#include "core/device/buffer_device.h"
#include "core/file/code_page.h"
#include "core/site/conversions.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace corvrec
{

namespace
{

// Cuts a reply into fields. Positions count from 1, as in the device's manual. A field beyond the end is
// empty.
class Reply
{
public:
    explicit Reply(std::string_view bytes)
        : bytes_(bytes)
    {
    }

    [[nodiscard]] std::string_view At(std::size_t position, std::size_t width) const
    {
        return bytes_.substr(std::min(position - 1, bytes_.size()), width);
    }

private:
    std::string_view bytes_;
};

struct Choice {
    char code;
    TextId shown;
};

// The text for the field's first character; `other` for an unknown one or an empty field.
TextId Choose(std::string_view field, std::initializer_list<Choice> choices, TextId other)
{
    const auto* const chosen = std::ranges::find_if(
        choices, [field](const Choice& choice) { return !field.empty() && field.front() == choice.code; });
    return chosen == choices.end() ? other : chosen->shown;
}

DaysAgo Days(std::string_view field)
{
    return {LeadingNumber(field)};
}

// Empty when the reply ends before the byte.
Field Byte(std::string_view field)
{
    if (field.empty())
        return field;
    return ByteValue{static_cast<unsigned char>(field.front())};
}

// Indexed by the number that the device sends.
constexpr std::array<std::string_view, 8> kVersions{"Std (16)", "Std (24)",  "Std (48)", "Std (72)",
                                                    "Std (96)", "Std (120)", "Standard", "Sat"};

Field Version(std::string_view field)
{
    const auto number = static_cast<std::size_t>(LeadingNumber(field));
    return number < kVersions.size() ? Field(kVersions.at(number)) : Field(text::unknownVersion);
}

TextId Presence(std::string_view field)
{
    return Choose(field, {{'0', text::absent}}, text::present);
}

// The fault bits of a 1.1. Deliberate: the field is read as a number ("5" is 5), not as a character code;
// older editors read it this way.
TextId Faults(std::string_view field)
{
    constexpr int kFaultBits = 64;
    return LeadingWhole(field) % kFaultBits != 0 ? text::yes : text::no;
}

// At least four digits: years from 100 on.
std::string YearText(int year)
{
    const int century = year / 100;
    return TwoDigits(century) + TwoDigits(year % 100);
}

// Overloads of Shown: one for each kind of Field.

using TextOf = std::string (*)(TextId);

std::string Shown(std::string_view received, const DateTime& /*now*/, TextOf /*text*/)
{
    return Utf8FromCp1252(received);
}

std::string Shown(TextId id, const DateTime& /*now*/, TextOf text)
{
    return text(id);
}

std::string Shown(DaysAgo ago, const DateTime& now, TextOf /*text*/)
{
    return NowMinusDays(now, ago.days);
}

std::string Shown(Percent percent, const DateTime& /*now*/, TextOf /*text*/)
{
    return PercentText(percent.value);
}

std::string Shown(const ReceivedDate& date, const DateTime& /*now*/, TextOf /*text*/)
{
    return Utf8FromCp1252(date.day) + "/" + Utf8FromCp1252(date.month) + "/" + Utf8FromCp1252(date.year);
}

std::string Shown(const ReceivedTime& time, const DateTime& /*now*/, TextOf /*text*/)
{
    return Utf8FromCp1252(time.hour) + ":" + Utf8FromCp1252(time.minute);
}

std::string Shown(ByteValue byte, const DateTime& /*now*/, TextOf /*text*/)
{
    return std::to_string(byte.value);
}

} // namespace

BufferStatus Sx11Status(std::string_view bytes)
{
    const Reply reply(bytes);
    return {
        .memoria = reply.At(4, 7),
        .condizione = Choose(reply.At(17, 1),
                             {{'\0', text::none}, {'\x55', text::part}, {'\xFF', text::full}}, text::error),
        .riempimento = reply.At(13, 3),
        .ripetizioni = reply.At(2, 2),
        .ultimoscarico = Byte(reply.At(18, 1)),
        .ultimiDati = Byte(reply.At(19, 1)),
        .guasto = Faults(reply.At(20, 1)),
        .modello = text::notAvailable,
        .firmware = "01.10",
        .data = text::notAvailable,
        .ora = text::notAvailable,
        // Always inactive. Deliberate: the last byte is read as a digit, as in older editors. A value below
        // 10 never reaches the bits for an active selector (64) and printer (above 127).
        .selezione = text::selectorInactive,
        .stampante = text::printerInactive,
        .modem = text::notAvailable,
    };
}

BufferStatus Sx30Status(std::string_view bytes)
{
    const Reply reply(bytes);
    return {
        .memoria = reply.At(2, 7),
        .condizione =
            Choose(reply.At(15, 1), {{'V', text::none}, {'M', text::part}, {'P', text::full}}, text::error),
        .riempimento = reply.At(11, 3),
        .ripetizioni = text::notAvailable,
        .ultimoscarico = Days(reply.At(16, 3)),
        .ultimiDati = Days(reply.At(19, 3)),
        // For these models an unknown code means no fault.
        .guasto = Choose(reply.At(22, 1), {{'R', text::powerCut}, {'L', text::lowBattery}}, text::noFault),
        .modello = Version(reply.At(23, 1)),
        .firmware = reply.At(24, 4),
        .data = ReceivedDate{.day = reply.At(28, 2), .month = reply.At(30, 2), .year = reply.At(32, 2)},
        .ora = ReceivedTime{.hour = reply.At(34, 2), .minute = reply.At(36, 2)},
        .selezione = text::notAvailable,
        .stampante = text::notAvailable,
        .modem = text::notAvailable,
    };
}

BufferStatus Sx40Status(std::string_view bytes)
{
    const Reply reply(bytes);
    return {
        .memoria = reply.At(2, 7),
        .condizione =
            Choose(reply.At(16, 1), {{'V', text::none}, {'M', text::part}, {'P', text::full}}, text::error),
        .riempimento = Percent{LeadingNumber(reply.At(9, 7))},
        .ripetizioni = text::notAvailable,
        .ultimoscarico = Days(reply.At(17, 3)),
        .ultimiDati = Days(reply.At(20, 3)),
        .guasto =
            Choose(reply.At(23, 1), {{'N', text::noFault}, {'R', text::powerCut}, {'L', text::lowBattery}},
                   text::faultsUndetectable),
        .modello = text::notAvailable,
        .firmware = reply.At(25, 4),
        .data = ReceivedDate{.day = reply.At(29, 2), .month = reply.At(31, 2), .year = reply.At(33, 2)},
        .ora = ReceivedTime{.hour = reply.At(35, 2), .minute = reply.At(37, 2)},
        .selezione = text::notAvailable,
        .stampante = Presence(reply.At(40, 1)),
        .modem = Presence(reply.At(39, 1)),
    };
}

std::optional<BufferStatus> StatusOf(int modelNumber, std::string_view bytes)
{
    switch (modelNumber) {
    case model::stratobox11:
        return Sx11Status(bytes);
    case model::stratobox20:
    case model::stratobox30:
        return Sx30Status(bytes);
    case model::stratoboxBuffer:
        return Sx40Status(bytes);
    default:
        return std::nullopt;
    }
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

std::string ShownText(const Field& field, const DateTime& now, std::string (*text)(TextId))
{
    return std::visit([&](const auto& kind) { return Shown(kind, now, text); }, field);
}

} // namespace corvrec
