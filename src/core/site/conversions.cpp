#include "core/site/conversions.h"

#include "core/file/code_page.h"
#include "core/file/letter_case.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

namespace corvrec
{

namespace
{

constexpr int kSecondsPerMinute = 60;
constexpr int kSecondsPerHour = 60 * kSecondsPerMinute;
constexpr int kSecondsPerDay = 24 * kSecondsPerHour;
constexpr int kDaysPerWeek = 7;

constexpr std::string_view kEmptyTime = "__:__";

// ASCII: a control character and its letter are this far apart (Ctrl-A is 1, A is 65). All characters below
// the blank are control characters.
constexpr int kControlToLetter = 'A' - 1;
constexpr int kBlank = ' ';
constexpr int kLastCharacter = 0xFF;

constexpr std::string_view kToneDial = "ATDT";
constexpr std::string_view kPulseDial = "ATDP";

// The stored form of an alert that is off. Deliberate: the editor itself writes "0", which loads as on with
// limit 0; older editors do the same.
constexpr int kAlertOff = -1;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool TakeAnyOf(std::string_view& text, std::string_view characters)
{
    if (text.empty() || characters.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

// Halves go to the even neighbour: nearbyint in the default rounding mode.
template <class Whole>
Whole Saturated(double value)
{
    using Limits = std::numeric_limits<Whole>;
    // Exact as a double. Its negative is exact too, and is the first number above the range.
    constexpr auto kLowest = static_cast<double>(Limits::min());
    const double rounded = std::nearbyint(value);
    if (rounded <= kLowest)
        return Limits::min();
    if (rounded >= -kLowest)
        return Limits::max();
    return static_cast<Whole>(rounded);
}

// The number at the very start of the text, without sign.
double LeadingDecimal(std::string_view text)
{
    // from_chars would also accept "inf" and "nan".
    if (text.empty() || !(IsDigit(text.front()) || text.front() == '.'))
        return 0;
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc::result_out_of_range)
        return value;
    const bool tooSmall = text.at(text.find_first_not_of('0')) == '.';
    return tooSmall ? 0 : std::numeric_limits<double>::max();
}

// The number that the digits spell; the largest integer when it does not fit.
std::int64_t WholeDigits(std::string_view digits)
{
    std::int64_t value = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return parsed.ec == std::errc::result_out_of_range ? std::numeric_limits<std::int64_t>::max() : value;
}

// At least `width` digits, not counting a sign.
std::string Padded(std::int64_t value, std::size_t width)
{
    std::string digits = std::to_string(value);
    const std::size_t sign = value < 0 ? 1 : 0;
    if (digits.size() < sign + width)
        digits.insert(sign, sign + width - digits.size(), '0');
    return digits;
}

// The shortest decimal form that reads back as the value.
std::string DecimalText(double value)
{
    std::array<char, 400> buffer{}; // the longest finite double takes 326 characters
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    return {buffer.data(), end.ptr};
}

// Whether the text matches a pattern in which "#" stands for a digit and any other character for itself.
bool HasShape(std::string_view text, std::string_view pattern)
{
    return std::ranges::equal(text, pattern,
                              [](char c, char shape) { return shape == '#' ? IsDigit(c) : c == shape; });
}

// Removes a number of one or two digits from the front of the text; nullopt when it is longer or above the
// limit.
std::optional<int> TakeTimePart(std::string_view& text, int limit)
{
    const auto end = std::ranges::find_if_not(text, IsDigit);
    const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    if (digits.empty() || digits.size() > 2)
        return std::nullopt;
    text.remove_prefix(digits.size());
    const int number = LeadingWhole(digits);
    return number <= limit ? std::optional(number) : std::nullopt;
}

// "hh:mm" for the time at the beginning of the text. The classic platform reads times far more generously.
// Accepted here is what recorder and editor write, and what a careful hand writes: "12.00 03/03/2026",
// "8:30", "08:30:15 ...".
std::optional<std::string> LeadingTime(std::string_view text)
{
    text = TrimBlanks(text);
    const auto hour = TakeTimePart(text, 23);
    if (!hour || !TakeAnyOf(text, ".:"))
        return std::nullopt;
    const auto minute = TakeTimePart(text, 59);
    if (!minute)
        return std::nullopt;
    if (TakeAnyOf(text, ".:") && !TakeTimePart(text, 59))
        return std::nullopt;
    if (!text.empty() && text.front() != ' ')
        return std::nullopt;
    return Padded(*hour, 2) + ":" + Padded(*minute, 2);
}

std::string DateText(const DateTime& date)
{
    return Padded(date.day, 2) + "/" + Padded(date.month, 2) + "/" + Padded(date.year, 4);
}

// "hh:mm", or an empty field when a part does not fit its two digits. Left-over seconds may round up to
// ":60", which the editor then refuses to save.
std::string HourMinuteText(std::int64_t seconds)
{
    const std::int64_t hours = seconds / kSecondsPerHour;
    const double minutes = static_cast<double>(seconds % kSecondsPerHour) / kSecondsPerMinute;
    std::string field = Padded(hours, 2) + ":" + TwoDigits(minutes);
    return HasShape(field, "##:##") ? field : std::string(kEmptyTime);
}

std::int64_t SecondsOf(std::string_view hourMinute)
{
    const std::size_t colon = std::min(hourMinute.find(':'), hourMinute.size());
    const std::int64_t hours = LeadingWhole(hourMinute.substr(0, colon));
    const std::int64_t minutes = LeadingWhole(hourMinute.substr(std::min(colon + 1, hourMinute.size())));
    return hours * kSecondsPerHour + minutes * kSecondsPerMinute;
}

// The field has no upper limit. The stored text ends at the last whole count below 2^53 seconds: up to there
// a double holds every whole number, so what is saved is read back.
std::string SecondsText(std::string_view count, int secondsEach)
{
    constexpr double kExactSeconds = 9007199254740992;
    const double most = std::floor(kExactSeconds / secondsEach);
    return SignedText(Saturated<std::int64_t>(std::clamp(LeadingNumber(count), -most, most) * secondsEach));
}

std::string OneCharacter(int code)
{
    const auto byte = static_cast<char>(code);
    return Utf8FromCp1252({&byte, 1});
}

} // namespace

double LeadingNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n"), text.size()));
    if (TakeAnyOf(text, "-"))
        return -LeadingDecimal(text);
    TakeAnyOf(text, "+"); // skipped if present
    return LeadingDecimal(text);
}

std::int16_t Whole16(double value)
{
    return Saturated<std::int16_t>(value);
}

std::int32_t Whole32(double value)
{
    return Saturated<std::int32_t>(value);
}

std::int32_t LeadingWhole(std::string_view text)
{
    return Whole32(LeadingNumber(text));
}

std::string SignedText(std::int64_t value)
{
    return (value < 0 ? "" : " ") + std::to_string(value);
}

std::string TwoDigits(double value)
{
    return Padded(Saturated<std::int64_t>(std::round(value)), 2);
}

std::string PercentText(double value)
{
    // Rounded in decimal form: in binary, 1.005 is below the half.
    const std::string decimal = DecimalText(std::abs(value));
    const std::size_t point = std::min(decimal.find('.'), decimal.size());
    std::string decimals = decimal.substr(std::min(point + 1, decimal.size()));
    decimals.resize(3, '0');
    std::int64_t hundredths = WholeDigits(decimal.substr(0, point) + decimals.substr(0, 2));
    if (decimals.at(2) >= '5') // never true beyond the integer's range: a double that large is whole
        ++hundredths;
    if (value < 0)
        hundredths = -hundredths;
    std::string text = Padded(hundredths, 2);
    text.insert(text.size() - 2, ",");
    text.erase(text.find_last_not_of('0') + 1);
    return text;
}

std::string_view TrimBlanks(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool IsOne(std::string_view text)
{
    return LeadingNumber(text) == 1;
}

ScheduleKind ScheduleKindOf(std::string_view ricorrenza)
{
    const int number = LeadingWhole(ricorrenza);
    if (number >= 1)
        return ScheduleKind::weekly;
    if (number == -1)
        return ScheduleKind::hourly;
    return number == -2 ? ScheduleKind::daily : ScheduleKind::continuous;
}

std::string IntervalText(ScheduleKind kind, std::string_view storedSeconds)
{
    // 64 bits, since a save may write more than 32.
    const auto seconds = Saturated<std::int64_t>(LeadingNumber(storedSeconds));
    switch (kind) {
    case ScheduleKind::continuous:
        break;
    case ScheduleKind::hourly:
        return HourMinuteText(seconds);
    case ScheduleKind::daily:
        return std::to_string(seconds / kSecondsPerDay);
    case ScheduleKind::weekly:
        return SignedText(seconds / kSecondsPerDay / kDaysPerWeek);
    }
    return {};
}

std::string StoredInterval(ScheduleKind kind, std::string_view interval)
{
    switch (kind) {
    case ScheduleKind::continuous:
        break;
    case ScheduleKind::hourly:
        return SignedText(SecondsOf(interval));
    case ScheduleKind::daily:
        return SecondsText(interval, kSecondsPerDay);
    case ScheduleKind::weekly:
        return SecondsText(interval, kSecondsPerDay * kDaysPerWeek);
    }
    return "1";
}

StartTime ReadStartTime(std::string_view ora)
{
    const bool marked = ora.ends_with('p');
    if (marked)
        ora.remove_suffix(1);
    return {.field = LeadingTime(ora).value_or(std::string(kEmptyTime)), .marked = marked};
}

std::string StoredStartTime(ScheduleKind kind, std::string_view field, const DateTime& today, bool marked)
{
    const std::string_view time = kind == ScheduleKind::continuous ? "12.00" : field;
    return std::string(time) + " " + DateText(today) + (marked ? "p" : "");
}

bool IsTime(std::string_view field)
{
    return HasShape(field, "##:##") && LeadingWhole(field.substr(0, 2)) < 24 &&
           LeadingWhole(field.substr(3, 2)) < 60;
}

bool IsDate(std::string_view field)
{
    if (!HasShape(field, "##/##/##"))
        return false;
    const std::chrono::year_month_day date{
        std::chrono::year(2000 + LeadingWhole(field.substr(6, 2))),
        std::chrono::month(static_cast<unsigned>(LeadingWhole(field.substr(3, 2)))),
        std::chrono::day(static_cast<unsigned>(LeadingWhole(field.substr(0, 2)))),
    };
    return date.ok();
}

std::optional<FlowCharacter> ReadFlowCharacter(std::string_view stored)
{
    const int number = LeadingWhole(stored);
    if (number > kLastCharacter || number <= -kControlToLetter) // no field can hold a NUL
        return std::nullopt;
    const bool control = number < kBlank;
    return FlowCharacter{.control = control,
                         .text = OneCharacter(control ? number + kControlToLetter : number)};
}

std::optional<std::string> StoredFlowCharacter(const FlowCharacter& character)
{
    if (!character.control)
        return character.text;
    const std::string bytes = Cp1252FromUtf8(character.text);
    if (bytes.empty())
        return std::nullopt;
    return SignedText(static_cast<unsigned char>(bytes.front()) - kControlToLetter);
}

std::string WithAtPrefix(std::string_view command)
{
    const bool prefixed = EqualIgnoringCase(command.substr(0, 2), "AT");
    return (prefixed ? "" : "AT") + std::string(command);
}

DialNumber ReadDialNumber(std::string_view stored)
{
    // Positions count characters: bytes of the code page.
    const std::string command = Cp1252FromUtf8(stored);
    if (command.size() < kToneDial.size())
        return {.tone = false, .number = ""};
    const std::string_view prefix = std::string_view(command).substr(0, kToneDial.size());
    const std::string_view number = std::string_view(command).substr(kToneDial.size());
    return {.tone = prefix.ends_with("DT"), .number = Utf8FromCp1252(number)};
}

std::string StoredDialNumber(const DialNumber& dial)
{
    return std::string(dial.tone ? kToneDial : kPulseDial) + dial.number;
}

Alert ReadAlert(std::string_view stored)
{
    if (LeadingWhole(stored) == kAlertOff)
        return {.on = false, .limit = std::nullopt};
    return {.on = true, .limit = std::string(stored)};
}

std::string StoredAlert(const Alert& alert)
{
    return alert.on ? alert.limit.value_or("") : "0";
}

} // namespace corvrec
