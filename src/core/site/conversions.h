#pragma once

#include "core/clock.h"
#include "core/site/code_tables.h"
#include "core/site/site_record.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Conversions between the settings file's values and the texts of the controls. Numbers are read and written
// as on the classic Windows forms platform that older editors were made with.
namespace corvrec
{

// The number that the text begins with; 0 when there is none. Leading blanks, tabs and line feeds are
// skipped; then come an optional sign, digits, and one "." as decimal point. No exponent, no base prefix, no
// blank inside. Reading stops at the first character that does not fit. Always finite.
double LeadingNumber(std::string_view text);

// Rounded to the nearest whole number, halves to the even neighbour; clamped to the range of the type.
// LeadingWhole rounds the LeadingNumber.
std::int16_t Whole16(double value);
std::int32_t Whole32(double value);
std::int32_t LeadingWhole(std::string_view text);

// Decimal digits after a sign or a blank: " 62", "-1".
std::string SignedText(std::int64_t value);

// At least two digits; halves are rounded away from zero: "05", "31" for 30.5.
std::string TwoDigits(double value);

// At most two decimals, the decimal comma always written; halves are rounded away from zero: "12,35", "50,",
// ",".
std::string PercentText(double value);

// Without blanks at either end (U+0020 only).
std::string_view TrimBlanks(std::string_view text);

// Whether the text begins with exactly the number 1: the stored form of a flag that is on.
bool IsOne(std::string_view text);

// The schedule kind that the editor shows for a "Ricorrenza": -1 hourly, -2 daily, from 1 on weekly (the sum
// of the weekdays), any other number continuous.
ScheduleKind ScheduleKindOf(std::string_view ricorrenza);

// The interval field's text for the seconds stored in "Ogni", and back. The field holds "hh:mm" (hourly),
// days (daily) or weeks with a leading blank (weekly). Values are not limited to 32 bits: what is stored is
// read back, up to 2^53 seconds. The continuous kind has no interval: its field is empty and 1 second is
// stored.
std::string IntervalText(ScheduleKind kind, std::string_view storedSeconds);
std::string StoredInterval(ScheduleKind kind, std::string_view interval);

// A start time ("Ora") as the field shows it.
struct StartTime {
    std::string field;   // "hh:mm", or "__:__" when the time cannot be read
    bool marked = false; // "Ora" ended in "p", a mark of the recorder
};

// "Ora" holds time, date and an optional "p". Reading ignores the date; writing puts in today's. The time of
// the continuous kind is always 12.00.
StartTime ReadStartTime(std::string_view ora);
std::string StoredStartTime(ScheduleKind kind, std::string_view field, const DateTime& today, bool marked);

// Whether a masked field holds a complete time "hh:mm" from 00:00 to 23:59, or a complete and existing date
// "dd/mm/yy" of the years 2000 to 2099.
bool IsTime(std::string_view field);
bool IsDate(std::string_view field);

// A flow-control character from its stored form, a whole number in code page 1252. Below 32 it is a control
// character, shown as its letter: 17 is Ctrl-Q. nullopt when there is no such character.
std::optional<FlowCharacter> ReadFlowCharacter(std::string_view stored);

// The stored form: for a control character its letter's code minus 64, otherwise the text itself. Deliberate:
// a character typed as itself is stored as itself, although a letter then loads as Ctrl-@; older editors
// store it this way. nullopt when a control character has no letter.
std::optional<std::string> StoredFlowCharacter(const FlowCharacter& character);

// The modem command with "AT" in front, unless it begins with that in either case.
std::string WithAtPrefix(std::string_view command);

// "NumeroTel" holds a dial command: "ATDT" (tone) or "ATDP" (pulse) and the number. A stored text shorter
// than the command is an empty number, by pulse.
DialNumber ReadDialNumber(std::string_view stored);
std::string StoredDialNumber(const DialNumber& dial);

// "FileTimeout" and "SpazioTimeout" hold the limit of an alert that is on. A stored -1 means off.
Alert ReadAlert(std::string_view stored);
std::string StoredAlert(const Alert& alert);

} // namespace corvrec
