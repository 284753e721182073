#pragma once

#include "core/file/posix_calls.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// The real system calls except for the clock, recorded by name as they are made; chosen ones fail. Calls are
// counted from 0, without queries of the time and of permissions.
class ProbedCalls final : public PosixCalls
{
public:
    [[nodiscard]] const std::vector<std::string>& Made() const { return made_; }
    void ForgetMade()
    {
        made_.clear();
        pieces_.clear();
    }
    // What each successful pwrite has written, without the bytes.
    struct Piece {
        std::size_t call = 0; // its number in Made()
        std::size_t begin = 0;
        std::size_t count = 0;
        [[nodiscard]] std::size_t End() const { return begin + count; }
    };
    [[nodiscard]] const std::vector<Piece>& Pieces() const { return pieces_; }
    // The number of bytes that all pwrites have written.
    [[nodiscard]] std::size_t Written() const;

    // The call with this number in Made() fails with this errno.
    void FailAt(std::size_t number, int error);
    // That call and all later ones fail without effect: for the file it is as if the process had ended.
    void FailFrom(std::size_t number, int error);
    // That pread or pwrite moves only this many bytes. 0 is a possible result on a full disk.
    void ShortenAt(std::size_t number, std::size_t bytes);
    // Every call with that name fails.
    void FailAll(std::string name, int error);
    // The process ends just before that call, as if killed, with this exit status.
    static constexpr int endedStatus = 77;
    void EndAt(std::size_t number) { end_ = number; }
    // Just before that call, another program rewrites the file in place or replaces it.
    void RewriteAt(std::size_t number, std::filesystem::path file, std::string bytes);
    void ReplaceAt(std::size_t number, std::filesystem::path file, std::string bytes);
    // Cancels all of the above.
    void Mend();

    // The time by the clock of file times. It does not run, so the calls made never depend on the machine's
    // speed. Initially it is before every file's time, so no file is old enough to be trusted.
    void SetFileClock(const timespec& now) { fileClock_ = now; }
    // Makes every file old.
    void LetFilesAge() { SetFileClock({.tv_sec = 4'000'000'000, .tv_nsec = 0}); }
    // The query whether the file can be written fails with this errno; 0: it is made normally.
    void DenyWriting(int error) { deniedWriting_ = error; }
    // The type that the file system reports.
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
    int MayWrite(const char* path) override;
    timespec FileClock() override;

private:
    struct Fault {
        std::size_t first = 0;
        std::size_t last = 0;
        std::string name; // empty: any call
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
        bool isReplacing = false;
    };

    bool Fails(std::string_view name);
    static void CarryOut(const Rewriting& rewriting);
    [[nodiscard]] std::size_t Shortened(std::size_t count) const;

    std::vector<std::string> made_;
    std::vector<Piece> pieces_;
    std::size_t end_ = std::numeric_limits<std::size_t>::max();
    std::vector<Fault> faults_;
    std::vector<Shortage> shortages_;
    std::vector<Rewriting> rewritings_;
    int deniedWriting_ = 0; // errno
    timespec fileClock_{};
    std::uint32_t fileSystemType_ = 0x0000EF53; // a local file system, whatever the tests run on
};

} // namespace corvrec
