#pragma once

#include "tools/lab/buffer_line.h"
#include "tools/lab/line_device.h"
#include "tools/lab/simulated_buffer.h"
#include "tools/lab/simulated_modem.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvrec::lab
{

// A mistake on the command line. The text is for the user and names the option.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// One device and its line. A member initialiser is the option's default.
struct DeviceOptions {
    int port = 1;
    BufferModel model = BufferModel::stratoboxBuffer;
    std::vector<std::pair<std::string, std::string>> fields{}; // in the order given
    Faults faults{};
    std::optional<ModemBehaviour> modem{}; // nullopt: no modem in between
    std::chrono::sys_seconds clock = kClockAfterPowerLoss;

    static constexpr std::chrono::sys_seconds kClockAfterPowerLoss =
        std::chrono::sys_days{std::chrono::year{2000} / 1 / 1};

    bool operator==(const DeviceOptions&) const = default;
};

struct Options {
    bool help = false;
    bool version = false;
    bool quiet = false;
    std::optional<std::string> traceFile{}; // nullopt: standard output
    std::vector<DeviceOptions> devices{DeviceOptions{}};

    bool operator==(const Options&) const = default;
};

// Parses the arguments after the program's name. The first --port sets the first device's port and each
// further one begins another device; a device's options belong to the device begun last. `now` is the
// machine's local time, for "--clock now". Throws UsageError.
Options ParseOptions(std::span<const char* const> arguments, std::chrono::sys_seconds now);

// Builds the device, with its modem if there is one. nowMs: the time as in LineDevice. Throws UsageError for
// a field that the model does not have.
std::unique_ptr<LineDevice> MakeDevice(const DeviceOptions& options, std::int64_t nowMs);

// What --help prints.
std::string_view Help();

} // namespace corvrec::lab
