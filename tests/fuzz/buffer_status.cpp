// The decoders of the devices' replies: whatever a device sends, each field shows a text of its own form.
//
// Input: the computer's date as a number, '|', and the reply: "20261121|...".

#include "core/device/buffer_status.h"

#include "core/device/buffer_device.h"
#include "core/file/code_page.h"
#include "tests/fuzz/check.h"
#include "tests/fuzz/fields.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace corvrec::fuzz
{

namespace
{

constexpr std::array<Field BufferStatus::*, 14> kFields{
    &BufferStatus::memoria,     &BufferStatus::condizione,    &BufferStatus::riempimento,
    &BufferStatus::ripetizioni, &BufferStatus::ultimoscarico, &BufferStatus::ultimiDati,
    &BufferStatus::guasto,      &BufferStatus::modello,       &BufferStatus::firmware,
    &BufferStatus::data,        &BufferStatus::ora,           &BufferStatus::selezione,
    &BufferStatus::stampante,   &BufferStatus::modem,
};

// Any date from the year 100 on, as yyyymmdd; other numbers become a valid date too.
DateTime DateOf(std::size_t number)
{
    return {.year = static_cast<int>(100 + number / 10000 % 9900),
            .month = static_cast<int>(1 + number / 100 % 12),
            .day = static_cast<int>(1 + number % 28),
            .hour = static_cast<int>(number % 24),
            .minute = static_cast<int>(number % 60),
            .second = static_cast<int>(number % 59)};
}

std::string TextNumber(TextId id)
{
    return "text " + std::to_string(static_cast<int>(id));
}

// Whether the text has the form, in which '#' stands for a digit.
bool HasForm(std::string_view text, std::string_view form)
{
    return std::ranges::equal(
        text, form, [](char c, char wanted) { return wanted == '#' ? c >= '0' && c <= '9' : c == wanted; });
}

int NumberAt(std::string_view text, std::size_t begin, std::size_t length)
{
    return static_cast<int>(Fields::NumberOf(text.substr(begin, length), 0)); // four digits at most
}

std::chrono::sys_seconds MomentOf(int year, int month, int day, int secondOfDay)
{
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    Check(date.ok(), "a shown date exists");
    return std::chrono::sys_days(date) + std::chrono::seconds(secondOfDay);
}

// The moment that the field means; nullopt outside the years 100 to 9999.
std::optional<std::chrono::sys_seconds> MomentAgo(double days, const DateTime& now)
{
    using std::chrono::sys_days;
    using std::chrono::year;
    constexpr double secondsPerDay = 24 * 60 * 60;
    const double second = static_cast<double>(MomentOf(now.year, now.month, now.day,
                                                       now.hour * 3600 + now.minute * 60 + now.second)
                                                  .time_since_epoch()
                                                  .count()) -
                          std::round(days * secondsPerDay);
    const std::chrono::sys_seconds first = sys_days(year(100) / 1 / 1);
    const std::chrono::sys_seconds end = sys_days(year(10000) / 1 / 1);
    if (second < static_cast<double>(first.time_since_epoch().count()) ||
        second >= static_cast<double>(end.time_since_epoch().count()))
        return std::nullopt;
    return std::chrono::sys_seconds(std::chrono::seconds(std::llround(second)));
}

void CheckShown(const DaysAgo& ago, const std::string& shown, const DateTime& now)
{
    const auto moment = MomentAgo(ago.days, now);
    Check(shown.empty() == !moment.has_value(), "only a moment that cannot be shown is empty");
    if (!moment)
        return;
    const bool hasTime = shown.size() > 10;
    Check(HasForm(shown, hasTime ? "##/##/#### ##:##:##" : "##/##/####"), "a moment has its form");
    const int second =
        hasTime ? NumberAt(shown, 11, 2) * 3600 + NumberAt(shown, 14, 2) * 60 + NumberAt(shown, 17, 2) : 0;
    Check(MomentOf(NumberAt(shown, 6, 4), NumberAt(shown, 3, 2), NumberAt(shown, 0, 2), second) == *moment,
          "the moment is that many days ago");
}

void CheckShown(const Percent& percent, const std::string& shown, const DateTime& /*now*/)
{
    const std::size_t comma = shown.find(',');
    Check(comma != std::string::npos && shown.size() - comma <= 3 && shown.back() != '0',
          "a percentage's form");
    std::string point = shown;
    point[comma] = '.';
    const bool isSmall = std::abs(percent.value) < 1e9; // larger doubles have no hundredths
    Check(!isSmall || std::abs(std::strtod(("0" + point).c_str(), nullptr) - percent.value) < 0.005001 ||
              percent.value < 0,
          "a percentage is rounded to hundredths");
}

void CheckShown(const ByteValue& byte, const std::string& shown, const DateTime& /*now*/)
{
    Check(byte.value >= 0 && byte.value <= 255 && shown == std::to_string(byte.value), "a byte's number");
}

void CheckShown(TextId id, const std::string& shown, const DateTime& /*now*/)
{
    Check(shown == TextNumber(id), "a text of the table");
}

void CheckShown(std::string_view received, const std::string& shown, const DateTime& /*now*/)
{
    Check(Cp1252FromUtf8(shown) == received, "a text as received");
}

void CheckShown(const ReceivedDate& date, const std::string& shown, const DateTime& /*now*/)
{
    const std::string parts =
        std::string(date.day) + "/" + std::string(date.month) + "/" + std::string(date.year);
    Check(Cp1252FromUtf8(shown) == parts, "a date as received");
}

void CheckShown(const ReceivedTime& time, const std::string& shown, const DateTime& /*now*/)
{
    Check(Cp1252FromUtf8(shown) == std::string(time.hour) + ":" + std::string(time.minute),
          "a time as received");
}

// What is received of a shorter reply is a prefix of what is received of the whole.
void CheckBegin(std::string_view part, std::string_view whole)
{
    Check(whole.starts_with(part), "a shorter reply only shortens its fields");
}

void CheckBegin(const ReceivedDate& part, const ReceivedDate& whole)
{
    CheckBegin(part.day, whole.day);
    CheckBegin(part.month, whole.month);
    CheckBegin(part.year, whole.year);
}

void CheckBegin(const ReceivedTime& part, const ReceivedTime& whole)
{
    CheckBegin(part.hour, whole.hour);
    CheckBegin(part.minute, whole.minute);
}

// Numbers and choices of a part say nothing about those of the whole.
template <typename Kind>
void CheckBegin(const Kind& /*part*/, const Kind& /*whole*/)
{
}

void CheckCut(const BufferStatus& part, const BufferStatus& whole)
{
    for (const auto field : kFields) {
        if (field == &BufferStatus::modello)
            continue; // the name of a version, not a part of the reply
        std::visit(
            [&](const auto& received) {
                using Kind = std::decay_t<decltype(received)>;
                if (const auto* const all = std::get_if<Kind>(&(whole.*field)))
                    CheckBegin(received, *all);
            },
            part.*field);
    }
}

void CheckReply(std::string_view reply, const DateTime& now)
{
    constexpr std::array<int, 4> models{model::stratobox11, model::stratobox20, model::stratobox30,
                                        model::stratoboxBuffer};
    for (const int model : models) {
        const auto status = StatusOf(model, reply);
        Check(status.has_value(), "each model has a decoder");
        for (const auto field : kFields) {
            const std::string shown = ShownText(*status.*field, now, TextNumber);
            Check(Utf8FromCp1252(Cp1252FromUtf8(shown)) == shown, "what is shown is UTF-8");
            std::visit([&](const auto& kind) { CheckShown(kind, shown, now); }, *status.*field);
        }
        CheckCut(*StatusOf(model, reply.substr(0, reply.size() / 2)), *status);
    }
    Check(StatusOf(model::stratobox20, reply) == StatusOf(model::stratobox30, reply),
          "a 2.0 answers as a 3.0");
    Check(!StatusOf(0, reply), "an unknown model has no decoder");
}

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    corvrec::fuzz::Fields fields(data, size);
    const corvrec::DateTime now = corvrec::fuzz::DateOf(fields.Number(0));
    corvrec::fuzz::CheckReply(fields.Rest(), now);
    return 0;
}
