#include "tools/lab/simulated_buffer.h"

#include "core/device/buffer_device.h"
#include "core/device/buffer_status.h"
#include "core/site/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace corvrec::lab
{

namespace
{

constexpr std::size_t kClockDigits = 10;

// How a field's value is encoded in the reply: as text, as one byte, or V, M and P as bytes.
enum class Coding { text, number, usedMemory };

// A field that can be set, and its value at the start.
struct SettableField {
    std::string_view name;
    StatusField field;
    std::string_view initial;
    Coding coding = Coding::text;
};

constexpr std::array kFields11{
    SettableField{"repetitions", StatusField::repetitions, "01"},
    SettableField{"memory", StatusField::memory, "0032768"},
    SettableField{"percent", StatusField::percentUsed, "12"},
    SettableField{"used", StatusField::usedMemory, "M", Coding::usedMemory},
    SettableField{"download-hours", StatusField::sinceDownload, "5", Coding::number},
    SettableField{"data-hours", StatusField::sinceData, "1", Coding::number},
    SettableField{"faults", StatusField::faults, "0"},
};

constexpr std::array kFields30{
    SettableField{"memory", StatusField::memory, "0131072"},
    SettableField{"percent", StatusField::percentUsed, "12"},
    SettableField{"used", StatusField::usedMemory, "M"},
    SettableField{"download-hours", StatusField::sinceDownload, "5"},
    SettableField{"data-hours", StatusField::sinceData, "1"},
    SettableField{"faults", StatusField::faults, "N"},
    SettableField{"version", StatusField::version, "6"},
    SettableField{"firmware", StatusField::firmware, "3.05"},
};

constexpr std::array kFields40{
    SettableField{"memory", StatusField::memory, "0524288"},
    SettableField{"percent", StatusField::percentUsed, "12.5"},
    SettableField{"used", StatusField::usedMemory, "M"},
    SettableField{"download-hours", StatusField::sinceDownload, "5"},
    SettableField{"data-hours", StatusField::sinceData, "1"},
    SettableField{"faults", StatusField::faults, "N"},
    SettableField{"firmware", StatusField::firmware, "4.10"},
    SettableField{"modem", StatusField::modem, "0"},
    SettableField{"printer", StatusField::printer, "1"},
};

struct Played {
    std::string_view name;
    BufferModel model;
    std::span<const SettableField> fields;
};

constexpr std::array kPlayed{
    Played{"1.1", BufferModel::stratobox11, kFields11},
    Played{"2.0", BufferModel::stratobox20, kFields30},
    Played{"3.0", BufferModel::stratobox30, kFields30},
    Played{"Buffer", BufferModel::stratoboxBuffer, kFields40},
};
static_assert(std::ranges::all_of(kDevices,
                                  [](const DeviceRow& device) {
                                      return device.kind == DeviceKind::exchange ||
                                             std::ranges::any_of(kPlayed, [&](const Played& played) {
                                                 return device.shown.ends_with(played.name);
                                             });
                                  }),
              "every Stratobox of the editor can be played");

const Played& PlayedAs(BufferModel model)
{
    return *std::ranges::find(kPlayed, model, &Played::model);
}

// The field's place in the model's reply; null when the model does not send it.
const FieldPlace* PlaceOf(BufferModel model, StatusField field)
{
    const auto fields = LayoutOf(model).fields;
    const auto place = std::ranges::find(fields, field, &FieldPlace::field);
    return place == fields.end() ? nullptr : &*place;
}

// Includes the end mark.
std::size_t ReplyLength(const ReplyLayout& layout)
{
    const FieldPlace& last = *std::ranges::max_element(layout.fields, {}, &FieldPlace::position);
    return last.position + last.width - 1 + (layout.counted == 0 ? 1 : 0);
}

// -1 when the text is not a number.
int Number(std::string_view digits)
{
    int number = -1;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stop == end ? number : -1;
}

std::invalid_argument Refusal(const SettableField& field, std::string_view must)
{
    return std::invalid_argument("field " + std::string(field.name) + " must be " + std::string(must));
}

std::string Encoded(const SettableField& field, std::size_t width, std::string_view value)
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
    if (value.size() > width)
        throw Refusal(field, "no longer than " + std::to_string(width));
    return std::string(width - value.size(), ' ') + std::string(value);
}

// Overwrites the reply from a position, counted from 1.
void Put(std::string& reply, std::size_t position, std::string_view bytes)
{
    reply.replace(position - 1, bytes.size(), bytes);
}

// The time as "ddmmyy" and as "hhmm".
std::string DateText(std::chrono::sys_seconds time)
{
    const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(time));
    return TwoDigits(static_cast<unsigned>(date.day())) + TwoDigits(static_cast<unsigned>(date.month())) +
           TwoDigits(static_cast<int>(date.year()) % 100);
}

std::string TimeText(std::chrono::sys_seconds time)
{
    const std::chrono::hh_mm_ss ofDay(time - std::chrono::floor<std::chrono::days>(time));
    return TwoDigits(static_cast<double>(ofDay.hours().count())) +
           TwoDigits(static_cast<double>(ofDay.minutes().count()));
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

std::optional<BufferModel> ModelNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(kPlayed, name, &Played::name);
    return found == kPlayed.end() ? std::nullopt : std::optional(found->model);
}

std::string ModelNames()
{
    std::string names;
    for (const Played& played : kPlayed)
        names.append(names.empty() ? "" : ", ").append(played.name);
    return names;
}

SimulatedBuffer::SimulatedBuffer(BufferModel model, std::chrono::sys_seconds time, std::int64_t nowMs)
    : model_(model)
    , reply_(ReplyLength(LayoutOf(model)), ' ')
    , setTo_(time)
    , setAtMs_(nowMs)
{
    reply_.front() = kStatusRequest.front(); // a reply begins with its request
    if (!IsCounted())
        reply_.back() = kEndOfStatus.front();
    for (const SettableField& field : PlayedAs(model).fields)
        Set(field.name, field.initial);
}

void SimulatedBuffer::Set(std::string_view field, std::string_view value)
{
    const Played& played = PlayedAs(model_);
    const auto settable = std::ranges::find(played.fields, field, &SettableField::name);
    if (settable == played.fields.end()) {
        std::string known;
        for (const SettableField& each : played.fields)
            known.append(known.empty() ? "" : ", ").append(each.name);
        throw std::invalid_argument("model " + std::string(played.name) + " has no field " +
                                    std::string(field) + ", but " + known);
    }
    const FieldPlace& place = *PlaceOf(model_, settable->field);
    Put(reply_, place.position, Encoded(*settable, place.width, value));
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

    if (byte == kStatusRequest.front())
        return Status(nowMs);
    if (byte == kLineClear.front())
        return rest_.empty() ? std::string(kLineClear) : std::exchange(rest_, {});
    if (byte == kClockSet.front() && PlaceOf(model_, StatusField::date) != nullptr)
        clockDigits_.emplace();
    return {};
}

std::chrono::sys_seconds SimulatedBuffer::Time(std::int64_t nowMs) const
{
    return setTo_ + std::chrono::floor<std::chrono::seconds>(std::chrono::milliseconds{nowMs - setAtMs_});
}

bool SimulatedBuffer::IsCounted() const
{
    return LayoutOf(model_).counted != 0;
}

std::string SimulatedBuffer::Status(std::int64_t nowMs)
{
    std::string reply = reply_;
    if (const FieldPlace* const date = PlaceOf(model_, StatusField::date))
        Put(reply, date->position, DateText(Time(nowMs)));
    if (const FieldPlace* const time = PlaceOf(model_, StatusField::time))
        Put(reply, time->position, TimeText(Time(nowMs)));
    // In a burst, the answer to the 0x13 that is still to come follows the end mark at once.
    if (burst_)
        return IsCounted() ? reply : reply.append(kLineClear);
    if (IsCounted()) {
        const auto firstPart = static_cast<std::size_t>(LayoutOf(model_).counted);
        rest_ = reply.substr(firstPart);
        reply.resize(firstPart);
    }
    return reply;
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
