#include "ui/buffer/serial_device.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace corvrec
{

namespace
{

// The directories in which QSerialPort looks for lock files.
constexpr std::array kLockDirectories{"/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
                                      "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};

// Enough for any lock file.
constexpr std::size_t kLongestLock = 256;

// The content of a regular file; nullopt when it cannot be read. Careful flags, because the file may be in a
// directory that everybody can write to: no link, no FIFO, no terminal.
std::optional<std::string> ReadLock(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW);
    if (descriptor < 0)
        return std::nullopt;
    std::optional<std::string> content;
    struct stat status {
    };
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        std::array<char, kLongestLock> bytes{};
        const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
        if (count >= 0)
            content.emplace(bytes.data(), static_cast<std::size_t>(count));
    }
    ::close(descriptor);
    return content;
}

// Whether Qt wrote the lock file: the process number without leading blanks, then further lines. Such a file
// is left to Qt, which judges it better, by the program's name and by a system lock on the file.
bool IsLockOfQt(std::string_view lock)
{
    const std::size_t end = lock.find('\n');
    return end != std::string_view::npos && end > 0 && end + 1 < lock.size() &&
           lock.find_first_not_of("0123456789") == end;
}

// The process number in a lock file; 0 when there is none. Either text, right-aligned in ten characters and
// followed by a line feed or the program's name, or a binary number.
pid_t ProcessOf(std::string_view lock)
{
    pid_t process = 0;
    const std::string_view text = lock.substr(std::min(lock.find_first_not_of(' '), lock.size()));
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), process);
    if (error == std::errc() && (end == text.data() + text.size() || *end == '\n' || *end == ' '))
        return process;
    process = 0;
    if (lock.size() == sizeof process)
        std::memcpy(&process, lock.data(), sizeof process);
    return process;
}

// Signal 0 only checks; EPERM means that the process belongs to somebody else.
bool IsLiving(pid_t process)
{
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

// False when the settings cannot be read or set.
template <class Change>
bool ChangeSettings(int port, Change change)
{
    termios settings{};
    if (::tcgetattr(port, &settings) != 0)
        return false;
    change(settings);
    return ::tcsetattr(port, TCSANOW, &settings) == 0;
}

void HangUpAtTheEnd(termios& settings)
{
    settings.c_cflag |= HUPCL;
}

} // namespace

QString PortDevice(int commPort)
{
    if (commPort < 1)
        return {};
    QString named = qEnvironmentVariable(qPrintable(QString("CORVREC_COM%1").arg(commPort)));
    if (!named.isEmpty())
        return named;
    QString linked = QString("/dev/corvrec-com%1").arg(commPort);
    return QFileInfo::exists(linked) ? linked : QString("/dev/ttyS%1").arg(commPort - 1);
}

QString ResolvedDevice(const QString& name)
{
    const QString device = QFileInfo(name).canonicalFilePath();
    return device.isEmpty() ? name : device;
}

bool IsLocked(const QString& device)
{
    QString name = device;
    if (name.startsWith("/dev/"))
        name.remove(0, 5);
    const std::string file = "/LCK.." + QFile::encodeName(name.replace('/', '_')).toStdString();
    for (const char* const directory : kLockDirectories) {
        const std::string path = directory + file;
        const std::optional<std::string> lock = ReadLock(path);
        // An empty file may be about to be written. Qt waits half a minute before it treats one as abandoned.
        if (!lock || lock->empty() || IsLockOfQt(*lock))
            continue;
        const pid_t process = ProcessOf(*lock);
        // A lock with our own number is left over from an earlier process: this one writes only Qt's locks.
        if (process != ::getpid() && IsLiving(process))
            return true;
        ::unlink(path.c_str());
    }
    return false;
}

bool SetUpLine(PortHandle port, bool hasParity)
{
    const bool isSet = ChangeSettings(port, [hasParity](termios& settings) {
        HangUpAtTheEnd(settings);
        settings.c_iflag &= ~static_cast<tcflag_t>(IXANY);
        if (hasParity) {
            settings.c_iflag |= INPCK | PARMRK;
            settings.c_iflag &= ~static_cast<tcflag_t>(IGNPAR);
        }
    });
    return isSet && hasParity;
}

bool HasSent(PortHandle port)
{
    int queued = 0;
    if (::ioctl(port, TIOCOUTQ, &queued) == 0 && queued > 0)
        return false;
    // Bytes left in the device itself. Not every driver can report them.
    unsigned status = 0;
    return ::ioctl(port, TIOCSERGETLSR, &status) != 0 || (status & TIOCSER_TEMT) != 0;
}

HangUpOnClose::HangUpOnClose(PortHandle port) noexcept
    : port_(::fcntl(port, F_DUPFD_CLOEXEC, 0))
{
}

HangUpOnClose::~HangUpOnClose()
{
    if (port_ < 0)
        return;
    ChangeSettings(port_, HangUpAtTheEnd);
    ::close(port_); // the last descriptor: the system sends what is left and then lowers DTR
}

} // namespace corvrec
