#include "tools/lab/options.h"

#include "core/site/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace corvrec::lab
{

namespace
{

// The result so far, and what the current option needs.
struct Parsing {
    Options options;
    std::chrono::sys_seconds now;
    bool isPortNamed = false;

    DeviceOptions& Device() { return options.devices.back(); }
    // Any option of the modem also puts one in front of the device.
    ModemBehaviour& Modem()
    {
        if (!Device().modem)
            Device().modem.emplace();
        return *Device().modem;
    }
};

// The whole number that the text spells, at least `least`. Throws UsageError.
int Number(std::string_view text, int least)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least) {
        throw UsageError("\"" + std::string(text) + "\" is not a whole number from " + std::to_string(least) +
                         " on");
    }
    return number;
}

// Splits "name=value"; a name alone has an empty value.
std::pair<std::string_view, std::string_view> Split(std::string_view text)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos)
        return {text, {}};
    return {text.substr(0, equals), text.substr(equals + 1)};
}

void TakePort(Parsing& parsing, std::string_view value)
{
    const int port = Number(value, 1);
    const auto& devices = parsing.options.devices;
    if (parsing.isPortNamed && std::ranges::find(devices, port, &DeviceOptions::port) != devices.end())
        throw UsageError("port " + std::to_string(port) + " is taken already");
    if (parsing.isPortNamed)
        parsing.options.devices.emplace_back();
    parsing.Device().port = port;
    parsing.isPortNamed = true;
}

void TakeModel(Parsing& parsing, std::string_view value)
{
    const std::optional<BufferModel> model = ModelNamed(value);
    if (!model)
        throw UsageError("no model \"" + std::string(value) + "\", but " + ModelNames());
    parsing.Device().model = *model;
}

void TakeField(Parsing& parsing, std::string_view value)
{
    if (value.find('=') == std::string_view::npos)
        throw UsageError("\"" + std::string(value) + "\" is not of the form name=value");
    const auto [name, text] = Split(value);
    parsing.Device().fields.emplace_back(name, text);
}

// value: "now" or "hh:mm dd/mm/yy".
void TakeClock(Parsing& parsing, std::string_view value)
{
    if (value == "now") {
        parsing.Device().clock = parsing.now;
        return;
    }
    constexpr std::size_t kTimeLength = 5;
    const std::string_view time = value.substr(0, kTimeLength);
    const std::string_view date = value.substr(std::min(value.size(), kTimeLength + 1));
    if (!IsTime(time) || !IsDate(date) || value[kTimeLength] != ' ')
        throw UsageError("\"" + std::string(value) +
                         R"(" is neither "now" nor of the form "hh:mm dd/mm/yy")");
    const auto part = [](std::string_view field, std::size_t at) { return Number(field.substr(at, 2), 0); };
    constexpr int kCentury = 2000;
    parsing.Device().clock =
        std::chrono::sys_days{std::chrono::year{kCentury + part(date, 6)} / part(date, 3) / part(date, 0)} +
        std::chrono::hours{part(time, 0)} + std::chrono::minutes{part(time, 3)};
}

struct FaultOption {
    std::string_view name;
    bool hasCount;
    void (*take)(Faults&, int count);
};

constexpr std::array<FaultOption, 9> kFaults{{
    {"silence", false, [](Faults& faults, int) { faults.silence = true; }},
    {"partial", true, [](Faults& faults, int count) { faults.partial = static_cast<std::size_t>(count); }},
    {"garbage", false, [](Faults& faults, int) { faults.garbage = true; }},
    {"slow", true, [](Faults& faults, int count) { faults.pauseMs = count; }},
    {"burst", false, [](Faults& faults, int) { faults.burst = true; }},
    {"echo", false, [](Faults& faults, int) { faults.echo = true; }},
    {"endless", false, [](Faults& faults, int) { faults.endless = true; }},
    {"nuls", false, [](Faults& faults, int) { faults.nuls = true; }},
    {"drop", true, [](Faults& faults, int count) { faults.dropAfter = static_cast<std::size_t>(count); }},
}};

void TakeFault(Parsing& parsing, std::string_view value)
{
    const auto [name, count] = Split(value);
    const auto* const fault = std::ranges::find(kFaults, name, &FaultOption::name);
    if (fault == kFaults.end())
        throw UsageError("no fault \"" + std::string(name) + "\"");
    if (!fault->hasCount && value != name)
        throw UsageError(std::string(name) + " takes no number");
    fault->take(parsing.Device().faults, fault->hasCount ? Number(count, 1) : 0);
}

using Take = void (*)(Parsing&, std::string_view value);

struct Option {
    std::string_view name;
    bool hasValue;
    Take take;
};

constexpr std::array<Option, 14> kOptions{{
    {"--port", true, TakePort},
    {"--model", true, TakeModel},
    {"--field", true, TakeField},
    {"--clock", true, TakeClock},
    {"--fault", true, TakeFault},
    {"--modem", false, [](Parsing& parsing, std::string_view) { parsing.Modem(); }},
    {"--modem-echo", false, [](Parsing& parsing, std::string_view) { parsing.Modem().echo = true; }},
    {"--modem-silent", false, [](Parsing& parsing, std::string_view) { parsing.Modem().silent = true; }},
    {"--dial-answer", true,
     [](Parsing& parsing, std::string_view value) { parsing.Modem().dialAnswer = value; }},
    {"--dial-delay", true,
     [](Parsing& parsing, std::string_view value) { parsing.Modem().dialDelayMs = Number(value, 0); }},
    {"--trace", true, [](Parsing& parsing, std::string_view value) { parsing.options.traceFile = value; }},
    {"--quiet", false, [](Parsing& parsing, std::string_view) { parsing.options.quiet = true; }},
    {"--help", false, [](Parsing& parsing, std::string_view) { parsing.options.help = true; }},
    {"--version", false, [](Parsing& parsing, std::string_view) { parsing.options.version = true; }},
}};

} // namespace

Options ParseOptions(std::span<const char* const> arguments, std::chrono::sys_seconds now)
{
    Parsing parsing{.options = {}, .now = now};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        // Both "--name=value" and "--name value" are accepted.
        const auto [name, joined] = Split(argument);
        const auto* const option = std::ranges::find(kOptions, name, &Option::name);
        if (option == kOptions.end())
            throw UsageError("no option \"" + std::string(argument) + "\"");
        const bool isJoined = name.size() < argument.size();
        if (!option->hasValue && isJoined)
            throw UsageError(std::string(name) + " takes no value");
        if (option->hasValue && !isJoined && ++i == arguments.size())
            throw UsageError(std::string(name) + " needs a value");
        try {
            option->take(parsing, option->hasValue && !isJoined ? arguments[i] : joined);
        } catch (const UsageError& error) {
            throw UsageError(std::string(name) + ": " + error.what());
        }
    }
    return parsing.options;
}

std::unique_ptr<LineDevice> MakeDevice(const DeviceOptions& options, std::int64_t nowMs)
{
    SimulatedBuffer buffer(options.model, options.clock, nowMs);
    try {
        for (const auto& [name, value] : options.fields)
            buffer.Set(name, value);
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }
    auto line = std::make_unique<BufferLine>(std::move(buffer), options.faults);
    if (!options.modem)
        return line;
    return std::make_unique<SimulatedModem>(std::move(line), *options.modem);
}

std::string_view Help()
{
    return R"(Usage: corvrec-lab [OPTION]...

Simulates Stratobox buffer devices on pseudo-terminals, each on a serial line or behind a modem. For each device it prints
a line like CORVREC_COM1=/dev/pts/3: a configuration editor started with this in its environment finds the device on its
port COM1. Then every byte is traced, until Ctrl+C.

A device:
  --port N             the editor's port (1); a second --port begins a second device, and so on
  --model MODEL        1.1, 2.0, 3.0 or Buffer (Buffer)
  --field NAME=VALUE   a field of the status reply: memory, percent, used (V, M, P), repetitions, download-hours,
                       data-hours, faults, version, firmware, printer, modem; no model has all of them
  --clock TIME         "hh:mm dd/mm/yy" or now: the device's clock at the start (00:00 01/01/00); a 1.1 has none
  --fault FAULT        silence; partial=N: N bytes of each answer; garbage: damaged bytes; slow=MS: a pause
                       before each byte; burst: a status in one piece; echo; endless; nuls: one after each byte;
                       drop=N: the line breaks after N bytes. Several can be given.

A modem in front of it (--modem alone, or any of the others):
  --modem              a Hayes modem
  --modem-echo         it echoes commands
  --modem-silent       it is switched off
  --dial-answer TEXT   the answer to dialling: "CONNECT 9600", BUSY, "NO CARRIER", "NO ANSWER"; with an empty text
                       there is none
  --dial-delay MS      how long dialling takes (1000)

The program:
  --trace FILE         writes the trace there and not to standard output
  --quiet              no trace
  --help, --version
)";
}

} // namespace corvrec::lab
