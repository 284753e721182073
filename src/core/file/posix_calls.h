#pragma once

#include "core/file/profile_file.h"

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

namespace corvrec
{

// The system calls for the settings file, unchanged: -1 and errno report a failure. An interface, so that a
// test can count them and make each one fail.
class PosixCalls
{
public:
    virtual ~PosixCalls() = default;

    virtual int Open(const char* path, int flags, mode_t mode) = 0;
    virtual int Close(int descriptor) = 0;
    virtual int Stat(const char* path, struct stat& status) = 0;
    virtual int StatOpened(int descriptor, struct stat& status) = 0;                               // fstat
    virtual int StatFileSystem(int descriptor, struct statfs& status) = 0;                         // fstatfs
    virtual ssize_t Read(int descriptor, char* bytes, std::size_t count, off_t offset) = 0;        // pread
    virtual ssize_t Write(int descriptor, const char* bytes, std::size_t count, off_t offset) = 0; // pwrite
    virtual int Truncate(int descriptor, off_t size) = 0;                // ftruncate
    virtual int Reserve(int descriptor, off_t offset, off_t length) = 0; // fallocate, keeping the size
    virtual int SyncData(int descriptor) = 0;                            // fdatasync
    virtual int Sync(int descriptor) = 0;                                // fsync
    virtual int MayWrite(const char* path) = 0;                          // faccessat: W_OK, effective user
    virtual timespec FileClock() = 0; // now, by the clock of the file times
};

// The real calls; lives as long as the program.
PosixCalls& SystemCalls();

// As OpenProfileFile, using the given calls, which must outlive the file.
std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file, PosixCalls& calls);

// A signal may interrupt any call before it has done anything. Not for close: see Descriptor::Close.
template <typename Call>
auto Repeated(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

// The position in a file as the system calls take it; no settings file is too large for it.
inline off_t Offset(std::size_t position)
{
    return static_cast<off_t>(position);
}

// An open file, or none. Closed with the object at the latest.
class Descriptor
{
public:
    // A file that the call creates gets the mode 0666 less the umask.
    Descriptor(PosixCalls& calls, const char* path, int flags);
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;

    [[nodiscard]] bool IsOpen() const { return number_ != -1; }
    [[nodiscard]] int Number() const { return number_; }

    // Never repeated: the descriptor is gone whatever the result, and EINTR says nothing about the data. Any
    // other error counts: network file systems report a failed write only here.
    bool Close();

private:
    PosixCalls& calls_;
    int number_;
};

} // namespace corvrec
