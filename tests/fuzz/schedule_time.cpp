// Schedules, times and the number readings that they use: what is read is within its range, and what is read,
// stored and read again stays the same.
//
// Input: a stored value, '|', and the text of a field: "3600|08:30".

#include "core/file/code_page.h"
#include "core/file/section.h"
#include "core/site/conversions.h"
#include "core/site/site_keys.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/text_profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

namespace corvrec::fuzz
{

namespace
{

constexpr DateTime kToday{.year = 2026, .month = 11, .day = 21};
constexpr std::string_view kEmptyTime = "__:__";
constexpr std::array<ScheduleKind, 4> kKinds{ScheduleKind::continuous, ScheduleKind::hourly,
                                             ScheduleKind::daily, ScheduleKind::weekly};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The number of two digits, or -1.
int TwoDigitsAt(std::string_view text, std::size_t place)
{
    const bool areDigits = IsDigit(text[place]) && IsDigit(text[place + 1]);
    return areDigits ? (text[place] - '0') * 10 + (text[place + 1] - '0') : -1;
}

bool IsTimeReference(std::string_view text)
{
    if (text.size() != 5 || text[2] != ':')
        return false;
    const int hour = TwoDigitsAt(text, 0);
    const int minute = TwoDigitsAt(text, 3);
    return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59;
}

bool IsDateReference(std::string_view text)
{
    if (text.size() != 8 || text[2] != '/' || text[5] != '/')
        return false;
    const int day = TwoDigitsAt(text, 0);
    const int month = TwoDigitsAt(text, 3);
    const int year = TwoDigitsAt(text, 6);
    if (month < 1 || month > 12 || year < 0)
        return false;
    constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const int leapDay = month == 2 && year % 4 == 0 ? 1 : 0; // 2000 is a leap year too
    return day >= 1 && day <= lengths.at(static_cast<std::size_t>(month - 1)) + leapDay;
}

// The leading part of the text that is a number: a sign, digits, one point.
std::string_view NumberAtStart(std::string_view text)
{
    std::size_t end = !text.empty() && (text.front() == '+' || text.front() == '-') ? 1 : 0;
    bool hasPoint = false;
    while (end < text.size() && (IsDigit(text[end]) || (text[end] == '.' && !hasPoint))) {
        hasPoint = hasPoint || text[end] == '.';
        ++end;
    }
    return text.substr(0, end);
}

void CheckNumber(std::string_view text)
{
    const double value = LeadingNumber(text);
    Check(std::isfinite(value), "a number is finite");

    const std::string_view unblanked = text.substr(std::min(text.find_first_not_of(" \t\n"), text.size()));
    const std::string number(NumberAtStart(unblanked)); // NUL-terminated for strtod
    constexpr double most = std::numeric_limits<double>::max();
    Check(value == std::clamp(std::strtod(number.c_str(), nullptr), -most, most),
          "a number is its leading digits");
    Check(LeadingNumber(" \t\n" + std::string(text)) == value, "leading blanks are skipped");
    for (const char* end : {"x", "e5", " 5", "\t5"}) {
        const bool endsNumber = !number.empty() || *end == 'x' || *end == 'e'; // leading blanks are skipped
        Check(!endsNumber || LeadingNumber(number + end) == value, "any other character ends the number");
    }

    const std::int32_t whole = LeadingWhole(text);
    const double clamped = std::clamp(value, double{std::numeric_limits<std::int32_t>::min()},
                                      double{std::numeric_limits<std::int32_t>::max()});
    Check(std::abs(whole - clamped) <= 0.5, "a whole number is the nearest one");
    Check(Whole16(value) == std::clamp<std::int32_t>(whole, -32768, 32767),
          "16 bits hold the same number, clamped");
    Check(LeadingWhole(SignedText(whole)) == whole, "a stored number is read again");
    Check(IsOne(text) == (value == 1), "only the number 1 is on");
}

void CheckKind(std::string_view ricorrenza)
{
    const std::int32_t number = LeadingWhole(ricorrenza);
    const ScheduleKind kind = ScheduleKindOf(ricorrenza);
    Check((kind == ScheduleKind::weekly) == (number >= 1), "numbers from 1 on are weekly");
    Check((kind == ScheduleKind::hourly) == (number == -1), "-1 is hourly");
    Check((kind == ScheduleKind::daily) == (number == -2), "-2 is daily");
}

void CheckInterval(std::string_view stored)
{
    for (const ScheduleKind kind : kKinds) {
        const std::string field = IntervalText(kind, stored);
        if (kind == ScheduleKind::hourly && !IsTime(field))
            continue; // the editor refuses it: "99:60" would load as "__:__"
        const std::string once = StoredInterval(kind, field);
        Check(StoredInterval(kind, IntervalText(kind, once)) == once, "a stored interval stays the same");
    }
}

void CheckTimeField(std::string_view field)
{
    Check(IsTime(field) == IsTimeReference(field), "a time is HH:MM");
    Check(IsDate(field) == IsDateReference(field), "a date is DD/MM/YY");
    if (!IsTime(field))
        return;
    for (const bool marked : {false, true}) {
        const StartTime again = ReadStartTime(StoredStartTime(ScheduleKind::hourly, field, kToday, marked));
        Check(again.field == field && again.marked == marked, "a start time is read as it was stored");
    }
    Check(IntervalText(ScheduleKind::hourly, StoredInterval(ScheduleKind::hourly, field)) == field,
          "an hourly interval is read as it was stored");
}

void CheckStartTime(std::string_view ora)
{
    const StartTime start = ReadStartTime(ora);
    Check(IsTime(start.field) || start.field == kEmptyTime, "a start time is a time or empty");
    Check(start.marked == ora.ends_with('p'), "the mark is the last letter");
}

// The loader gives the same results.
void CheckLoaded(std::string_view ricorrenza, std::string_view ora)
{
    constexpr int allDays = 127;
    TextProfile file("[S]\nRicorrenza=" + WithoutLineBreaks(ricorrenza) +
                     "\nOgni=3600\nOra=" + WithoutLineBreaks(ora));
    const Section section(file, "S");
    SiteRecord site;
    LoadSite(file, "S", site); // the result is false: there are no alerts
    Check(site.schedule.has_value() == section.Read("Ricorrenza").has_value(), "a kind is loaded");
    Check(site.startTime.has_value() == section.Read("Ora").has_value(), "a start time is loaded");
    Check(site.weekdays.has_value() == (site.schedule == ScheduleKind::weekly),
          "only the weekly kind has days");
    if (!site.weekdays)
        return;
    Check(*site.weekdays == (LeadingWhole(*section.Read("Ricorrenza")) & allDays), "each weekday is a bit");
    TextProfile again("[S]\nRicorrenza=" + SignedText(*site.weekdays));
    SiteRecord same;
    LoadSite(again, "S", same);
    Check(same.weekdays.value_or(0) == *site.weekdays, "weekdays keep their bits");
}

void CheckTexts(std::string_view bytes)
{
    const std::string text = Utf8FromCp1252(bytes);
    Check(Cp1252FromUtf8(text) == bytes, "every byte has a character");

    const std::string command = WithAtPrefix(text);
    Check(command.ends_with(text) && WithAtPrefix(command) == command, "AT is prepended once");
    for (const bool tone : {false, true}) {
        const DialNumber dial{.tone = tone, .number = text};
        Check(ReadDialNumber(StoredDialNumber(dial)) == dial, "a number is dialled as it was stored");
    }
    const Alert alert = ReadAlert(text);
    Check(alert.on == (LeadingWhole(text) != -1), "an alert is off at -1");
    Check(!alert.on || StoredAlert(alert) == text, "an alert that is on is stored as it was");

    const auto character = ReadFlowCharacter(text);
    if (!character)
        return;
    Check(Cp1252FromUtf8(character->text).size() == 1, "a flow-control character is one byte");
    const std::string stored = StoredFlowCharacter(*character).value();
    Check(character->control ? LeadingWhole(stored) == LeadingWhole(text) : stored == character->text,
          "a control character keeps its number, any other its text");
}

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace corvrec::fuzz;
    Fields fields(data, size);
    const std::string_view stored = fields.Text();
    const std::string_view field = fields.Rest();
    CheckNumber(stored);
    CheckKind(stored);
    CheckInterval(stored);
    CheckTimeField(field);
    CheckStartTime(field);
    CheckLoaded(stored, field);
    CheckTexts(stored);
    CheckTexts(field);
    return 0;
}
