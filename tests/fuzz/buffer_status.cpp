// The decoders of the devices' replies: whatever a device sends, each field shows a text of its own form.
//
// Input: the computer's date as a number, '|', and the reply: "20261121|...".

#include "core/device/buffer_status.h"

#include "core/file/code_page.h"
#include "core/site/conversions.h"
#include "tests/fuzz/fuzzing.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::fuzz
{

namespace
{

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

void CheckMomentForm(const std::string& shown)
{
    if (shown.empty())
        return;
    const bool hasTime = shown.size() > 10;
    Check(HasForm(shown, hasTime ? "##/##/#### ##:##:##" : "##/##/####"), "a moment has its form");
}

// NowMinusDays and PercentText for the number that the reply begins with.
void CheckNumbers(std::string_view reply, const DateTime& now)
{
    const double number = LeadingNumber(reply);
    const std::string shown = NowMinusDays(now, number);
    const auto moment = MomentAgo(number, now);
    Check(shown.empty() == !moment.has_value(), "only a moment that cannot be shown is empty");
    CheckMomentForm(shown);
    if (moment) {
        const bool hasTime = shown.size() > 10;
        const int second =
            hasTime ? NumberAt(shown, 11, 2) * 3600 + NumberAt(shown, 14, 2) * 60 + NumberAt(shown, 17, 2)
                    : 0;
        Check(MomentOf(NumberAt(shown, 6, 4), NumberAt(shown, 3, 2), NumberAt(shown, 0, 2), second) ==
                  *moment,
              "the moment is that many days ago");
    }

    const std::string percent = PercentText(number);
    const std::size_t comma = percent.find(',');
    Check(comma != std::string::npos && percent.size() - comma <= 3 && percent.back() != '0',
          "a percentage's form");
    std::string point = percent;
    point[comma] = '.';
    const bool isSmall = std::abs(number) < 1e9; // larger doubles have no hundredths
    Check(!isSmall || number < 0 || std::abs(std::strtod(("0" + point).c_str(), nullptr) - number) < 0.005001,
          "a percentage is rounded to hundredths");
}

// Whether the label shows what the device has sent, such as a text, a date or a time. Other labels show
// numbers and choices.
bool IsReceived(StatusField field, BufferModel model)
{
    using enum StatusField;
    switch (field) {
    case memory:
    case repetitions:
    case firmware:
        return true;
    case percentUsed:
        return model != BufferModel::stratoboxBuffer;
    default:
        return false;
    }
}

void CheckField(StatusField field, const std::string& shown, const std::string& ofHalf, BufferModel model,
                std::string_view reply)
{
    Check(Utf8FromCp1252(Cp1252FromUtf8(shown)) == shown, "what is shown is UTF-8");
    const bool isFixed = shown.starts_with("text ") || shown == "01.10";
    const std::string bytes = Cp1252FromUtf8(shown);
    if (IsReceived(field, model) && !isFixed) {
        Check(reply.find(bytes) != std::string_view::npos, "a text as received");
        Check(bytes.starts_with(Cp1252FromUtf8(ofHalf)), "a shorter reply only shortens its fields");
    }
    if (field == StatusField::date && !isFixed)
        Check(bytes.size() >= 2 && bytes.size() <= 8, "a date as received");
    if (field == StatusField::time && !isFixed)
        Check(!bytes.empty() && bytes.size() <= 5, "a time as received");
    const bool isMoment = field == StatusField::sinceDownload || field == StatusField::sinceData;
    if (isMoment && model != BufferModel::stratobox11)
        CheckMomentForm(shown);
    if (isMoment && model == BufferModel::stratobox11)
        Check(shown.empty() || Fields::NumberOf(shown, 256) <= 255, "a byte's number");
}

void CheckReply(std::string_view reply, const DateTime& now)
{
    const StatusContext context{.now = now, .text = TextNumber};
    for (const BufferModel model :
         {BufferModel::stratobox11, BufferModel::stratobox30, BufferModel::stratoboxBuffer}) {
        const BufferStatus status = StatusOf(model, reply, context);
        const BufferStatus half = StatusOf(model, reply.substr(0, reply.size() / 2), context);
        for (std::size_t field = 0; field < kStatusFields; ++field)
            CheckField(static_cast<StatusField>(field), status.at(field), half.at(field), model, reply);
    }
    CheckNumbers(reply, now);
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
