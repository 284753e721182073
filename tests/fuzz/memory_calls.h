#pragma once

#include "core/file/posix_calls.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace corvrec::fuzz
{

// One file in memory, with the behaviour of the system's. The changes made by other programs and the system
// come first, then the calls.
class MemoryCalls final : public PosixCalls
{
public:
    enum class Kind { missing, regular, unwritable, unreadable, directory };

    // Behaviour that a system may show without notice. No result may depend on it.
    struct Mood {
        bool interrupts = false;       // every interruptible call fails once before it does anything
        bool movesLittle = false;      // a read or write moves only a few bytes
        bool cannotReserve = false;    // no fallocate
        bool hasForeignTimes = false;  // a network file system whose times stand still
        bool countsTwoSeconds = false; // file times as coarse as those of FAT
    };

    // Changes by another program.
    void Rewrite(std::string_view bytes);
    void Replace(std::string_view bytes); // by another file of the same name
    void ReplaceWithSameTimes(std::string_view bytes);
    void RewriteAndSetBack(std::string_view bytes); // and sets the modification time back
    void Remove() { kind_ = Kind::missing; }
    void SetKind(Kind kind);

    void SetMood(const Mood& mood) { mood_ = mood; }
    // The file cannot grow beyond this size; a larger one stays as large.
    void SetLargestSize(std::size_t size) { largestSize_ = size; }
    void Wait(std::int64_t milliseconds) { now_ += milliseconds * 1'000'000; }

    [[nodiscard]] const std::string& Bytes() const { return bytes_; }
    [[nodiscard]] Kind FileKind() const { return kind_; }
    [[nodiscard]] bool IsOpen() const { return isOpen_; }
    // Increases with each call that changes the file's content, size or reserved room.
    [[nodiscard]] std::size_t Changes() const { return changes_; }

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
    int MayWrite(const char* /*path*/) override { return 0; }
    timespec FileClock() override;

private:
    bool Interrupts();
    void CheckOpen(int descriptor, bool forWriting) const;
    [[nodiscard]] std::size_t Moved(std::size_t count) const;
    [[nodiscard]] std::size_t SizeLimit() const;
    [[nodiscard]] std::int64_t FileTime() const;
    void Touch();

    Kind kind_ = Kind::missing;
    std::string bytes_;
    std::uint64_t inode_ = 1;
    std::int64_t now_ = 1'700'000'000'123'456'789; // nanoseconds; not a whole second
    std::int64_t modified_ = 0;
    std::int64_t changed_ = 0;
    std::size_t changes_ = 0;
    std::size_t largestSize_ = std::numeric_limits<std::size_t>::max();
    Mood mood_;
    bool wasInterrupted_ = false;
    bool isOpen_ = false;
    bool isOpenForWriting_ = false;
};

} // namespace corvrec::fuzz
