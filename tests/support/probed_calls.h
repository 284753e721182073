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

// The real system calls but for the clock, listed by their names as they are made, of which chosen ones fail.
// Calls are counted from 0; questions for the time and for permissions are not counted.
class ProbedCalls final : public PosixCalls
{
public:
    [[nodiscard]] const std::vector<std::string>& Made() const { return made_; }
    void ForgetMade()
    {
        made_.clear();
        pieces_.clear();
    }
    // What each pwrite has written, without its bytes; the failed ones apart.
    struct Piece {
        std::size_t call = 0; // its number in Made()
        std::size_t begin = 0;
        std::size_t count = 0;
        [[nodiscard]] std::size_t End() const { return begin + count; }
    };
    [[nodiscard]] const std::vector<Piece>& Pieces() const { return pieces_; }
    // Bytes that all pwrites together have written.
    [[nodiscard]] std::size_t Written() const;

    // The call of that number in Made() fails with this errno.
    void FailAt(std::size_t number, int error);
    // That call and all later ones fail, without effect: for the file it is as if the process were gone.
    void FailFrom(std::size_t number, int error);
    // That pread or pwrite moves only so many bytes. 0 is what a disk may answer that has no room.
    void ShortenAt(std::size_t number, std::size_t bytes);
    // Every call of that name fails.
    void FailAll(std::string name, int error);
    // Just before that call the process ends, as if it were killed, with this status.
    static constexpr int endedStatus = 77;
    void EndAt(std::size_t number) { end_ = number; }
    // Just before that call somebody else rewrites the file in place, or puts another one in its place.
    void RewriteAt(std::size_t number, std::filesystem::path file, std::string bytes);
    void ReplaceAt(std::size_t number, std::filesystem::path file, std::string bytes);
    // From now on nothing of this happens.
    void Mend();

    // Time by the clock of file times. It does not run: which calls are made never depends on how fast the
    // machine is. At first it is before every file's time, so no file is old enough to be trusted.
    void SetFileClock(const timespec& now) { fileClock_ = now; }
    // Every file is old by now.
    void LetFilesAge() { SetFileClock({.tv_sec = 4'000'000'000, .tv_nsec = 0}); }
    // The question whether the file may be written fails with this errno; 0: it is asked as usual.
    void DenyWriting(int error) { deniedWriting_ = error; }
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
    int MayWrite(const char* path) override;
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
    std::uint32_t fileSystemType_ = 0x0000EF53; // a local one, whatever the tests run on
};

} // namespace corvrec
