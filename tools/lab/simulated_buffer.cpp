#include "tools/lab/simulated_buffer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <stdexcept>
#include <utility>

namespace corvrec::lab
{

namespace
{

constexpr char kStatusRequest = '\x02'; // STX
constexpr char kClockSet = '\x0F';      // SI
constexpr char kLineClear = '\x13';     // DC3

constexpr std::size_t kClockDigits = 10;

// How a field's value is encoded in the reply: as text, as one byte, or V, M and P as bytes.
enum class Coding { text, number, usedMemory };

// A field of the reply, and its value at the start. Positions count from 1, as in the device's manual.
struct FieldPlace {
    std::string_view name;
    std::size_t position;
    std::size_t width;
    std::string_view initial;
    Coding coding = Coding::text;
};

constexpr std::array<FieldPlace, 7> kFields11{{
    {"repetitions", 2, 2, "01"},
    {"memory", 4, 7, "0032768"},
    {"percent", 13, 3, "12"},
    {"used", 17, 1, "M", Coding::usedMemory},
    {"download-hours", 18, 1, "5", Coding::number},
    {"data-hours", 19, 1, "1", Coding::number},
    {"faults", 20, 1, "0"},
}};

constexpr std::array<FieldPlace, 8> kFields30{{
    {"memory", 2, 7, "0131072"},
    {"percent", 11, 3, "12"},
    {"used", 15, 1, "M"},
    {"download-hours", 16, 3, "5"},
    {"data-hours", 19, 3, "1"},
    {"faults", 22, 1, "N"},
    {"version", 23, 1, "6"},
    {"firmware", 24, 4, "3.05"},
}};

constexpr std::array<FieldPlace, 9> kFields40{{
    {"memory", 2, 7, "0524288"},
    {"percent", 9, 7, "12.5"},
    {"used", 16, 1, "M"},
    {"download-hours", 17, 3, "5"},
    {"data-hours", 20, 3, "1"},
    {"faults", 23, 1, "N"},
    {"firmware", 25, 4, "4.10"},
    {"modem", 39, 1, "0"},
    {"printer", 40, 1, "1"},
}};

// The shape of a model's reply.
struct Layout {
    std::string_view model;
    std::span<const FieldPlace> fields;
    std::size_t length;        // including the "*"
    std::size_t firstPart;     // sent before 0x13
    std::size_t clockPosition; // of ddmmyyhhmm; 0: the device has no clock
};

// In the order of Model.
constexpr std::array<Layout, 4> kLayouts{{
    {"1.1", kFields11, 20, 18, 0},
    {"2.0", kFields30, 38, 38, 28},
    {"3.0", kFields30, 38, 38, 28},
    {"Buffer", kFields40, 41, 41, 29},
}};

const Layout& LayoutOf(Model model)
{
    return kLayouts.at(static_cast<std::size_t>(model));
}

// -1 when the text is not a number.
int Number(std::string_view digits)
{
    int number = -1;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stop == end ? number : -1;
}

std::string TwoDigits(unsigned number)
{
    return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
}

std::invalid_argument Refusal(const FieldPlace& field, std::string_view must)
{
    return std::invalid_argument("field " + std::string(field.name) + " must be " + std::string(must));
}

std::string Encoded(const FieldPlace& field, std::string_view value)
{
    switch (field.coding) {
    case Coding::number: {
        constexpr int kGreatestByte = 255;
        const int number = Number(value);
        if (number < 0 || number > kGreatestByte)
            throw Refusal(field, "a number from 0 to 255");
        return {static_cast<char>(number)};
    }
    case Coding::usedMemory:
        if (value == "V")
            return {'\0'};
        if (value == "M")
            return {'\x55'};
        if (value == "P")
            return {'\xFF'};
        [[fallthrough]];
    case Coding::text:
        break;
    }
    if (value.size() > field.width)
        throw Refusal(field, "no longer than " + std::to_string(field.width));
    return std::string(field.width - value.size(), ' ') + std::string(value);
}

// Overwrites the reply from a position, counted from 1.
void Put(std::string& reply, std::size_t position, std::string_view bytes)
{
    reply.replace(position - 1, bytes.size(), bytes);
}

// The time as "ddmmyyhhmm".
std::string ClockText(std::chrono::sys_seconds time)
{
    const auto midnight = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date = midnight;
    const std::chrono::hh_mm_ss ofDay(time - midnight);
    return TwoDigits(static_cast<unsigned>(date.day())) + TwoDigits(static_cast<unsigned>(date.month())) +
           TwoDigits(static_cast<unsigned>(static_cast<int>(date.year()))) +
           TwoDigits(static_cast<unsigned>(ofDay.hours().count())) +
           TwoDigits(static_cast<unsigned>(ofDay.minutes().count()));
}

// The time from "hhmmddmmyy"; nullopt when it does not exist.
std::optional<std::chrono::sys_seconds> ClockTime(std::string_view digits)
{
    constexpr int kCentury = 2000;
    const auto part = [digits](std::size_t index) { return Number(digits.substr(2 * index, 2)); };
    const int hour = part(0);
    const int minute = part(1);
    const std::chrono::year_month_day date{std::chrono::year{kCentury + part(4)},
                                           std::chrono::month{static_cast<unsigned>(part(3))},
                                           std::chrono::day{static_cast<unsigned>(part(2))}};
    if (!date.ok() || hour > 23 || minute > 59)
        return std::nullopt;
    return std::chrono::sys_days{date} + std::chrono::hours{hour} + std::chrono::minutes{minute};
}

} // namespace

std::optional<Model> ModelNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(kLayouts, name, &Layout::model);
    if (found == kLayouts.end())
        return std::nullopt;
    return static_cast<Model>(found - kLayouts.begin());
}

SimulatedBuffer::SimulatedBuffer(Model model, std::chrono::sys_seconds time, std::int64_t nowMs)
    : model_(model)
    , reply_(LayoutOf(model).length, ' ')
    , setTo_(time)
    , setAtMs_(nowMs)
{
    const Layout& layout = LayoutOf(model);
    reply_.front() = kStatusRequest; // a reply begins with its request
    if (layout.firstPart == layout.length)
        reply_.back() = '*';
    for (const FieldPlace& field : layout.fields)
        Put(reply_, field.position, Encoded(field, field.initial));
}

void SimulatedBuffer::Set(std::string_view field, std::string_view value)
{
    const Layout& layout = LayoutOf(model_);
    const auto place = std::ranges::find(layout.fields, field, &FieldPlace::name);
    if (place == layout.fields.end()) {
        std::string known;
        for (const FieldPlace& each : layout.fields)
            known.append(known.empty() ? "" : ", ").append(each.name);
        throw std::invalid_argument("model " + std::string(layout.model) + " has no field " +
                                    std::string(field) + ", but " + known);
    }
    Put(reply_, place->position, Encoded(*place, value));
}

std::string SimulatedBuffer::Answer(char byte, std::int64_t nowMs)
{
    if (clockDigits_ && byte >= '0' && byte <= '9') {
        *clockDigits_ += byte;
        if (clockDigits_->size() == kClockDigits)
            SetClock(nowMs);
        return {};
    }
    // Any other byte ends a clock command, and is then a command of its own.
    clockDigits_.reset();

    switch (byte) {
    case kStatusRequest:
        return Status(nowMs);
    case kLineClear:
        return rest_.empty() ? std::string{kLineClear} : std::exchange(rest_, {});
    case kClockSet:
        if (LayoutOf(model_).clockPosition != 0)
            clockDigits_.emplace();
        return {};
    default:
        return {};
    }
}

std::chrono::sys_seconds SimulatedBuffer::Time(std::int64_t nowMs) const
{
    return setTo_ + std::chrono::floor<std::chrono::seconds>(std::chrono::milliseconds{nowMs - setAtMs_});
}

std::string SimulatedBuffer::Status(std::int64_t nowMs)
{
    const Layout& layout = LayoutOf(model_);
    std::string reply = reply_;
    if (layout.clockPosition != 0)
        Put(reply, layout.clockPosition, ClockText(Time(nowMs)));
    if (!burst_) {
        rest_ = reply.substr(layout.firstPart);
        return reply.substr(0, layout.firstPart);
    }
    // The answer to the 0x13 that is still to come is sent together with the end mark.
    return layout.firstPart == layout.length ? reply + kLineClear : reply;
}

void SimulatedBuffer::SetClock(std::int64_t nowMs)
{
    if (const auto time = ClockTime(*clockDigits_)) {
        setTo_ = *time;
        setAtMs_ = nowMs;
    }
    clockDigits_.reset();
}

} // namespace corvrec::lab
