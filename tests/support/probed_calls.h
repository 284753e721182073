#pragma once

#include "config/posix_calls.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// The real system calls, listed by their names as they are made, of which chosen ones fail. Calls are counted
// from 0, the clock's questions apart.
class ProbedCalls final : public PosixCalls
{
public:
    [[nodiscard]] const std::vector<std::string>& Made() const { return made_; }
    void ForgetMade() { made_.clear(); }
    // Bytes that all pwrites together have written.
    [[nodiscard]] std::size_t Written() const { return written_; }

    // The call of that number in Made() fails with this errno.
    void FailAt(std::size_t number, int error);
    // That call and all later ones fail, without effect: for the file it is as if the process were gone.
    void FailFrom(std::size_t number, int error);
    // That pread or pwrite moves only so many bytes. 0 is what a disk may answer that has no room.
    void ShortenAt(std::size_t number, std::size_t bytes);
    // Every call of that name fails.
    void FailAll(std::string name, int error);
    // Just before that call somebody else rewrites the file in place.
    void RewriteAt(std::size_t number, std::filesystem::path file, std::string bytes);

    // The clock of file times runs so many seconds ahead: what was just written looks old.
    void SetClockAhead(std::int64_t seconds) { clockAhead_ = seconds; }
    // What the file system tells as its type.
    void SetFileSystemType(std::uint32_t type) { fileSystemType_ = type; }

    int Open(const char* path, int flags, mode_t mode) override;
    int Close(int descriptor) override;
    int Stat(const char* path, struct stat& status) override;
    int StatOpened(int descriptor, struct stat& status) override;
    int StatFileSystem(int descriptor, struct statfs& status) override;
    ssize_t Read(int descriptor, char* bytes, std::size_t count, off_t offset) override;
    ssize_t Write(int descriptor, const char* bytes, std::size_t count, off_t offset) override;
    int Truncate(int descriptor, off_t size) override;
    int Reserve(int descriptor, off_t offset, off_t length) override;
    int SyncData(int descriptor) override;
    int Sync(int descriptor) override;
    timespec FileClock() override;

private:
    struct Fault {
        std::size_t first = 0;
        std::size_t last = 0;
        std::string name; // empty: any
        int error = 0;
    };
    struct Shortage {
        std::size_t number = 0;
        std::size_t bytes = 0;
    };
    struct Rewriting {
        std::size_t number = 0;
        std::filesystem::path file;
        std::string bytes;
    };

    bool Fails(std::string_view name);
    [[nodiscard]] std::size_t Shortened(std::size_t count) const;

    std::vector<std::string> made_;
    std::size_t written_ = 0;
    std::vector<Fault> faults_;
    std::vector<Shortage> shortages_;
    std::vector<Rewriting> rewritings_;
    std::int64_t clockAhead_ = 0;
    std::uint32_t fileSystemType_ = 0x0000EF53; // a local one, whatever the tests run on
};

} // namespace corvrec
