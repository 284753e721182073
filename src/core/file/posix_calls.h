#pragma once

#include "core/file/profile_file.h"

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

} // namespace corvrec
