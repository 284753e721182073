#pragma once

#include "core/clock.h"
#include "core/site/code_tables.h"
#include "core/site/site_record.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// The text conversions of the classic Windows forms platform that the settings file's values were made with.
namespace corvrec
{

// Value of the leading digits. Leading blanks, tabs and line feeds are skipped; then an optional sign,
// digits, and one "." as decimal point. No exponent, no base prefix, no blank inside. Stops at the first
// character that does not fit; nothing usable is 0. Always finite.
double LeadingNumber(std::string_view text);

// Rounded to the nearest, halves to the even neighbour; clamped to the range of the type.
std::int16_t Whole16(double value);
std::int32_t Whole32(double value);
std::int32_t LeadingWhole(std::string_view text);

// Decimal digits with a place for the sign in front: " 62", "-1".
std::string SignedText(std::int64_t value);

// At least two digits, halves rounded away from zero: "05", "31" for 30.5.
std::string TwoDigits(double value);

// Two places at most, halves rounded away from zero, decimal comma always written: "12,35", "50,", ",".
std::string PercentText(double value);

// Without blanks (U+0020 only) at both ends.
std::string_view TrimBlanks(std::string_view text);

// Exactly the number 1.
bool IsOne(std::string_view text);

// Kind that a "Ricorrenza" stands for in the editor: every number below 1 that is not -1 or -2 is continuous.
ScheduleKind ScheduleKindOf(std::string_view ricorrenza);

// Text of the interval field for a stored number of seconds, and back: "hh:mm" (hourly), days, weeks (with a
// leading blank). Not limited to 32 bits: what is stored is read back, up to 2^53 seconds. The continuous
// kind has no interval: empty, and 1 second.
std::string IntervalText(ScheduleKind kind, std::string_view storedSeconds);
std::string StoredInterval(ScheduleKind kind, std::string_view interval);

// A stored start time as the start field shows it.
struct StartTime {
    std::string field;   // "hh:mm", or "__:__" when the time cannot be read
    bool marked = false; // ended in "p"
};
StartTime ReadStartTime(std::string_view ora);
std::string StoredStartTime(ScheduleKind kind, std::string_view field, const DateTime& today, bool marked);

// A complete masked time "HH:MM" from 00:00 to 23:59, a complete masked date "DD/MM/YY" of the years 2000 to
// 2099.
bool IsTime(std::string_view field);
bool IsDate(std::string_view field);

// A flow-control character from its stored form, a whole number: below 32 a control character, shown as its
// letter. Nothing when no such character exists.
std::optional<FlowCharacter> ReadFlowCharacter(std::string_view stored);

// The stored form: the code of the letter minus 64, or the text as it stands. Throws std::out_of_range when
// the letter of a control character is missing.
std::string StoredFlowCharacter(const FlowCharacter& character);

// The modem command with "AT" in front, unless it begins so in any case.
std::string WithAtPrefix(std::string_view command);

DialNumber ReadDialNumber(std::string_view stored);
std::string StoredDialNumber(const DialNumber& dial);

Alert ReadAlert(std::string_view stored);
std::string StoredAlert(const Alert& alert);

} // namespace corvrec
