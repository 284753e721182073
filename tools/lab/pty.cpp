#include "tools/lab/pty.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace corvrec::lab
{

namespace
{

[[noreturn]] void Fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

// The path of the slave, which exists from then on.
std::string Unlock(int master)
{
    if (grantpt(master) != 0 || unlockpt(master) != 0)
        Fail("pseudo-terminal");
    std::array<char, 64> name{};
    if (ptsname_r(master, name.data(), name.size()) != 0)
        Fail("pseudo-terminal");
    return name.data();
}

} // namespace

Descriptor::Descriptor(int descriptor, const char* what)
    : descriptor_(descriptor)
{
    if (descriptor < 0)
        Fail(what);
}

Descriptor::~Descriptor()
{
    close(descriptor_);
}

Pty::Pty()
    : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "pseudo-terminal")
    , name_(Unlock(master_.Get()))
    , slave_(open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), name_.c_str())
    , watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC), "inotify")
{
    // After opening the slave: our own opening must not be counted.
    if (inotify_add_watch(watch_.Get(), name_.c_str(), IN_OPEN | IN_CLOSE) < 0)
        Fail(name_.c_str());

    // Raw mode: a terminal would echo and change line ends, even before the editor opens it.
    termios settings{};
    if (tcgetattr(slave_.Get(), &settings) != 0)
        Fail(name_.c_str());
    cfmakeraw(&settings);
    if (tcsetattr(slave_.Get(), TCSANOW, &settings) != 0)
        Fail(name_.c_str());
    if (fcntl(master_.Get(), F_SETFL, O_NONBLOCK) != 0)
        Fail(name_.c_str());
}

std::string Pty::Read()
{
    std::string bytes;
    std::array<char, 1024> portion{};
    ssize_t count = 0;
    while ((count = read(master_.Get(), portion.data(), portion.size())) > 0)
        bytes.append(portion.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        Fail(name_.c_str());
    return bytes;
}

std::size_t Pty::Write(std::string_view bytes)
{
    const ssize_t count = write(master_.Get(), bytes.data(), bytes.size());
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        Fail(name_.c_str());
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool Pty::HasUnread() const
{
    // Unlike the count of waiting bytes (FIONREAD), poll includes bytes that the system has not handed over
    // yet.
    pollfd slave{.fd = slave_.Get(), .events = POLLIN, .revents = 0};
    return poll(&slave, 1, 0) > 0;
}

Pty::Visits Pty::TakeVisits()
{
    Visits visits;
    alignas(inotify_event) std::array<char, 4096> events{};
    ssize_t count = 0;
    while ((count = read(watch_.Get(), events.data(), events.size())) > 0) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            inotify_event event{};
            std::memcpy(&event, &events.at(at), sizeof event);
            visits.opened += (event.mask & IN_OPEN) != 0 ? 1 : 0;
            visits.closed += (event.mask & IN_CLOSE) != 0 ? 1 : 0;
            at += sizeof event + event.len;
        }
    }
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        Fail(name_.c_str());
    if (visits.closed > 0) {
        // The next editor must find neither old bytes nor an old claim to exclusive use.
        tcflush(slave_.Get(), TCIFLUSH);
        ioctl(slave_.Get(), TIOCNXCL);
    }
    return visits;
}

} // namespace corvrec::lab
