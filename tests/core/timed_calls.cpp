#include "tests/core/timed_calls.h"

#include <algorithm>

namespace corvrec
{

namespace
{

constexpr std::int64_t kSecond = 1'000'000'000;

timespec TimeOf(std::int64_t nanoseconds)
{
    return {.tv_sec = nanoseconds / kSecond, .tv_nsec = nanoseconds % kSecond};
}

} // namespace

void TimedCalls::Changed(const std::string& path, bool keepsModified)
{
    struct stat status {
    };
    if (::stat(path.c_str(), &status) != 0)
        return;
    Times& times = times_[status.st_ino];
    times.changed = Ticked();
    if (!keepsModified)
        times.modified = Ticked();
}

void TimedCalls::CopyTimes(const std::string& from, const std::string& to)
{
    struct stat source {
    };
    struct stat target {
    };
    if (Stat(from.c_str(), source) == 0 && Stat(to.c_str(), target) == 0)
        times_[target.st_ino] = times_[source.st_ino];
}

void TimedCalls::ShowTimes(struct stat& status)
{
    const Times& times = times_.try_emplace(status.st_ino, Times{Ticked(), Ticked()}).first->second;
    status.st_mtim = TimeOf(times.modified);
    status.st_ctim = TimeOf(times.changed);
}

void TimedCalls::Touch(int descriptor)
{
    struct stat status {
    };
    if (::fstat(descriptor, &status) == 0)
        times_[status.st_ino] = {Ticked(), Ticked()};
}

int TimedCalls::Open(const char* path, int flags, mode_t mode)
{
    return SystemCalls().Open(path, flags, mode);
}

int TimedCalls::Stat(const char* path, struct stat& status)
{
    const int result = SystemCalls().Stat(path, status);
    if (result == 0)
        ShowTimes(status);
    return result;
}

int TimedCalls::StatOpened(int descriptor, struct stat& status)
{
    const int result = SystemCalls().StatOpened(descriptor, status);
    if (result == 0)
        ShowTimes(status);
    return result;
}

int TimedCalls::StatFileSystem(int descriptor, struct statfs& status)
{
    const int result = SystemCalls().StatFileSystem(descriptor, status);
    status.f_type = 0x0000EF53; // a file system with this machine's times
    return result;
}

ssize_t TimedCalls::Read(int descriptor, char* bytes, std::size_t count, off_t offset)
{
    return SystemCalls().Read(descriptor, bytes, count, offset);
}

ssize_t TimedCalls::Write(int descriptor, const char* bytes, std::size_t count, off_t offset)
{
    const ssize_t written = SystemCalls().Write(descriptor, bytes, count, offset);
    Touch(descriptor);
    return written;
}

int TimedCalls::Truncate(int descriptor, off_t size)
{
    const int result = SystemCalls().Truncate(descriptor, size);
    Touch(descriptor);
    return result;
}

int TimedCalls::Reserve(int descriptor, off_t offset, off_t length)
{
    const int result = SystemCalls().Reserve(descriptor, offset, length);
    Touch(descriptor);
    return result;
}

// The time by the clock of file times, which ticks every 4 ms or finer.
timespec TimedCalls::FileClock()
{
    constexpr std::int64_t clockTick = 4'000'000;
    return TimeOf(now_ - now_ % std::min(tick_, clockTick));
}

} // namespace corvrec
