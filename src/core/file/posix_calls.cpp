#include "core/file/posix_calls.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace corvrec
{

namespace
{

// Opening a FIFO must not block, a terminal must not become the controlling one, and a child process must not
// inherit the file.
constexpr int kOpenFlags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

class RealCalls final : public PosixCalls
{
public:
    int Open(const char* path, int flags, mode_t mode) override { return ::open(path, flags, mode); }
    int Close(int descriptor) override { return ::close(descriptor); }
    int Stat(const char* path, struct stat& status) override { return ::stat(path, &status); }
    int StatOpened(int descriptor, struct stat& status) override { return ::fstat(descriptor, &status); }
    int StatFileSystem(int descriptor, struct statfs& status) override
    {
        return ::fstatfs(descriptor, &status);
    }
    ssize_t Read(int descriptor, char* bytes, std::size_t count, off_t offset) override
    {
        return ::pread(descriptor, bytes, count, offset);
    }
    ssize_t Write(int descriptor, const char* bytes, std::size_t count, off_t offset) override
    {
        return ::pwrite(descriptor, bytes, count, offset);
    }
    int Truncate(int descriptor, off_t size) override { return ::ftruncate(descriptor, size); }
    int Reserve(int descriptor, off_t offset, off_t length) override
    {
        // Not posix_fallocate: it makes the file grow at once, and was seen to do so even when it failed.
        return ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, offset, length);
    }
    int SyncData(int descriptor) override { return ::fdatasync(descriptor); }
    int Sync(int descriptor) override { return ::fsync(descriptor); }
    int MayWrite(const char* path) override { return ::faccessat(AT_FDCWD, path, W_OK, AT_EACCESS); }
    timespec FileClock() override
    {
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
        return now;
    }
};

} // namespace

PosixCalls& SystemCalls()
{
    static RealCalls calls;
    return calls;
}

Descriptor::Descriptor(PosixCalls& calls, const char* path, int flags)
    : calls_(calls)
    , number_(Repeated([&] { return calls.Open(path, flags | kOpenFlags, 0666); }))
{
}

bool Descriptor::Close()
{
    if (number_ == -1)
        return true;
    return calls_.Close(std::exchange(number_, -1)) == 0 || errno == EINTR;
}

} // namespace corvrec
