// Usage: line_partner DIRECTORY COMMAND [ARGUMENT...]
//
// Runs a test program that Wine executes, and is the device at the other end of its serial port. Wine's
// registry gives the two links com1 and com2 in the directory as its ports. com1 leads to a pseudo-terminal
// on which the test program commands this one; com2 leads to the device of the moment (device_thread.h). A
// command and its answer are a line each:
//
//   plug DESCRIPTION  a new device in place of the one before
//   unplug
//   stop, read        the device stops reading, or goes on
//   received N        waits until it has received N bytes; answers with all of them in hexadecimal
//
// Returns the command's result.

#include "tests/support/device_thread.h"
#include "tools/lab/pty.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace
{

using corvrec::DeviceThread;
namespace fs = std::filesystem;

// The link may be in use; it is replaced in one step.
void Link(const fs::path& link, const std::string& target)
{
    const fs::path fresh = link.string() + ".new";
    fs::remove(fresh);
    fs::create_symlink(target, fresh);
    fs::rename(fresh, link);
}

std::string Hexadecimal(const std::string& bytes)
{
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += digits.data();
    }
    return text;
}

std::string Obey(const std::string& command, const fs::path& link, std::optional<DeviceThread>& device)
{
    const std::size_t end = command.find(' ');
    const std::string verb = command.substr(0, end);
    const std::string rest = end == std::string::npos ? std::string() : command.substr(end + 1);
    if (verb == "plug") {
        device.emplace(rest);
        Link(link, device->Name());
    } else if (verb == "unplug") {
        device.reset();
    } else if (verb == "stop") {
        device->StopReading();
    } else if (verb == "read") {
        device->ReadAgain();
    } else if (verb == "received") {
        return Hexadecimal(device->Received(std::stoul(rest)));
    } else {
        throw std::invalid_argument("no such command: " + command);
    }
    return "done";
}

void Send(corvrec::lab::Pty& line, std::string_view bytes)
{
    while (!bytes.empty()) {
        pollfd state{.fd = line.Line(), .events = POLLOUT, .revents = 0};
        poll(&state, 1, -1);
        bytes.remove_prefix(line.Write(bytes));
    }
}

pid_t Start(char* const* command)
{
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child > 0)
        return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that has run out of time must not hold the ports
    execvp(command[0], command);
    std::perror(command[0]);
    std::_Exit(EXIT_FAILURE);
}

int Run(const fs::path& directory, char* const* command)
{
    fs::create_directories(directory);
    corvrec::lab::Pty line;
    Link(directory / "com1", line.Name());
    fs::remove(directory / "com2");
    const pid_t child = Start(command);
    const auto childEnd = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    std::optional<DeviceThread> device;
    std::string commands;
    std::array<pollfd, 2> watched{{{.fd = childEnd, .events = POLLIN, .revents = 0},
                                   {.fd = line.Line(), .events = POLLIN, .revents = 0}}};
    while (poll(watched.data(), watched.size(), -1) >= 0 && watched.front().revents == 0) {
        commands += line.Read();
        for (std::size_t end = 0; (end = commands.find('\n')) != std::string::npos;
             commands.erase(0, end + 1))
            Send(line, Obey(commands.substr(0, end), directory / "com2", device) + '\n');
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 3) {
        std::fputs("Usage: line_partner DIRECTORY COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    try {
        return Run(argv[1], argv + 2);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "line_partner: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
