#include "core/clock.h"
#include "tools/lab/laboratory.h"
#include "tools/lab/options.h"
#include "tools/lab/trace.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <ostream>
#include <span>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace
{

using namespace corvrec::lab;

// Exit status for a mistake on the command line.
constexpr int kUsage = 2;

// Write end of the pipe that ends the program's main loop. Global for the signal handler.
int stopWriteEnd = -1;

void Stop(int /*signal*/)
{
    // If the pipe is full, it is readable already.
    [[maybe_unused]] const auto written = write(stopWriteEnd, "", 1);
}

// A pipe that becomes readable on SIGINT, SIGTERM and SIGHUP.
class StopPipe
{
public:
    StopPipe()
    {
        if (pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
        stopWriteEnd = ends_.back();
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            std::signal(signal, Stop);
    }

    [[nodiscard]] int ReadEnd() const { return ends_.front(); }

private:
    std::array<int, 2> ends_{}; // never closed: a signal may come until the program's end
};

std::chrono::sys_seconds LocalTime()
{
    const corvrec::DateTime now = corvrec::SystemClock().Now();
    return std::chrono::sys_days{std::chrono::year{now.year} / now.month / now.day} +
           std::chrono::hours{now.hour} + std::chrono::minutes{now.minute} + std::chrono::seconds{now.second};
}

// The stream for the trace, or null for none. Throws UsageError when the file cannot be written.
std::ostream* TraceOutput(const Options& options, std::ofstream& file)
{
    if (options.quiet)
        return nullptr;
    if (!options.traceFile)
        return &std::cout;
    file.open(*options.traceFile);
    if (!file)
        throw UsageError("--trace: \"" + *options.traceFile + "\" cannot be written");
    return &file;
}

void Run(const Options& options)
{
    const StopPipe stop; // first: once the names are printed, a signal must end the program in order
    std::ofstream file;
    Trace trace(TraceOutput(options, file), NowMs());
    std::vector<LabPort> ports;
    for (const DeviceOptions& device : options.devices)
        ports.emplace_back(device.port, MakeDevice(device, NowMs()), trace);
    for (const LabPort& port : ports)
        std::cout << "CORVREC_COM" << port.Number() << '=' << port.Name() << '\n';
    std::cout.flush();
    Serve(ports, stop.ReadEnd());
}

int Start(std::span<const char* const> arguments)
{
    const Options options = ParseOptions(arguments, LocalTime());
    if (options.help)
        std::cout << Help();
    else if (options.version)
        std::cout << "corvrec-lab " CORVREC_VERSION "\n";
    else
        Run(options);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        return Start(std::span<const char* const>(argv, static_cast<std::size_t>(argc)).subspan(1));
    } catch (const UsageError& error) {
        std::cerr << "corvrec-lab: " << error.what() << "\nTry corvrec-lab --help\n";
        return kUsage;
    } catch (const std::exception& error) {
        std::cerr << "corvrec-lab: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
