#include "tests/fuzz/memory_calls.h"

#include "tests/fuzz/fuzzing.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <utility>

namespace corvrec::fuzz
{

namespace
{

constexpr int kDescriptor = 3;
constexpr std::size_t kPageSize = 4096;
constexpr std::size_t kLittle = 48; // bytes
// Nanoseconds. File times may advance in larger steps than the clock that they come from.
constexpr std::int64_t kClockTick = 4'000'000;
constexpr std::int64_t kFileTick = 10'000'000;
constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::uint32_t kExt4 = 0x0000EF53;
constexpr std::uint32_t kNfs = 0x00006969;

int Fail(int error)
{
    errno = error;
    return -1;
}

timespec TimeOf(std::int64_t nanoseconds)
{
    return {.tv_sec = nanoseconds / kSecond, .tv_nsec = nanoseconds % kSecond};
}

} // namespace

void MemoryCalls::Rewrite(std::string_view bytes)
{
    kind_ = Kind::regular;
    bytes_ = bytes;
    Touch();
}

void MemoryCalls::Replace(std::string_view bytes)
{
    ++inode_;
    Rewrite(bytes);
}

void MemoryCalls::ReplaceWithSameTimes(std::string_view bytes)
{
    const auto [modified, changed] = std::pair(modified_, changed_);
    Replace(bytes);
    modified_ = modified;
    changed_ = changed;
}

void MemoryCalls::RewriteAndSetBack(std::string_view bytes)
{
    const std::int64_t before = modified_;
    Rewrite(bytes);
    modified_ = before;
}

void MemoryCalls::SetKind(Kind kind)
{
    kind_ = kind;
    changed_ = FileTime();
}

int MemoryCalls::Open(const char* /*path*/, int flags, mode_t /*mode*/)
{
    Check(!isOpen_, "the file is opened only once at a time");
    if (Interrupts())
        return Fail(EINTR);
    const bool forWriting = (flags & O_ACCMODE) == O_RDWR;
    if (kind_ == Kind::missing && (flags & O_CREAT) != 0) {
        ++inode_;
        Rewrite({});
    }
    if (kind_ == Kind::missing)
        return Fail(ENOENT);
    if (kind_ == Kind::unreadable || (kind_ == Kind::unwritable && forWriting))
        return Fail(EACCES);
    if (kind_ == Kind::directory && forWriting)
        return Fail(EISDIR);
    isOpen_ = true;
    isOpenForWriting_ = forWriting;
    return kDescriptor;
}

int MemoryCalls::Close(int descriptor)
{
    CheckOpen(descriptor, false);
    isOpen_ = false;
    return Interrupts() ? Fail(EINTR) : 0; // the descriptor is closed anyway
}

int MemoryCalls::Stat(const char* /*path*/, struct stat& status)
{
    if (kind_ == Kind::missing)
        return Fail(ENOENT);
    status = {};
    status.st_dev = mood_.hasForeignTimes ? 2 : 1;
    status.st_ino = inode_;
    status.st_mode = kind_ == Kind::directory ? S_IFDIR : S_IFREG;
    status.st_size = static_cast<off_t>(bytes_.size()); // a few thousand
    status.st_mtim = TimeOf(mood_.hasForeignTimes ? 1 : modified_);
    status.st_ctim = TimeOf(mood_.hasForeignTimes ? 1 : changed_);
    return 0;
}

int MemoryCalls::StatOpened(int descriptor, struct stat& status)
{
    CheckOpen(descriptor, false);
    return Stat(nullptr, status);
}

int MemoryCalls::StatFileSystem(int descriptor, struct statfs& status)
{
    CheckOpen(descriptor, false);
    status = {};
    status.f_type = mood_.hasForeignTimes ? kNfs : kExt4;
    return 0;
}

ssize_t MemoryCalls::Read(int descriptor, char* bytes, std::size_t count, off_t offset)
{
    CheckOpen(descriptor, false);
    if (Interrupts())
        return Fail(EINTR);
    if (kind_ == Kind::directory)
        return Fail(EISDIR);
    const auto begin = std::min(static_cast<std::size_t>(offset), bytes_.size());
    const std::size_t moved = std::min(Moved(count), bytes_.size() - begin);
    std::memcpy(bytes, bytes_.data() + begin, moved);
    return static_cast<ssize_t>(moved);
}

ssize_t MemoryCalls::Write(int descriptor, const char* bytes, std::size_t count, off_t offset)
{
    CheckOpen(descriptor, true);
    if (Interrupts())
        return Fail(EINTR);
    const auto begin = static_cast<std::size_t>(offset);
    Check(begin <= bytes_.size(), "no hole is written into the file");
    std::size_t moved = Moved(count);
    if (begin + moved > SizeLimit()) {
        // Within one page, room is reserved before anything is copied; across a page border, the write is
        // short.
        const bool isInOnePage = begin / kPageSize == (begin + moved - 1) / kPageSize;
        moved = isInOnePage || begin > SizeLimit() ? 0 : SizeLimit() - begin;
        if (moved == 0)
            return Fail(ENOSPC);
    }
    bytes_.replace(begin, moved, bytes, moved);
    Touch();
    return static_cast<ssize_t>(moved);
}

int MemoryCalls::Truncate(int descriptor, off_t size)
{
    CheckOpen(descriptor, true);
    if (Interrupts())
        return Fail(EINTR);
    Check(static_cast<std::size_t>(size) <= bytes_.size(), "a truncation never makes the file grow");
    bytes_.resize(static_cast<std::size_t>(size));
    Touch();
    return 0;
}

int MemoryCalls::Reserve(int descriptor, off_t offset, off_t length)
{
    CheckOpen(descriptor, true);
    if (Interrupts())
        return Fail(EINTR);
    if (mood_.cannotReserve)
        return Fail(EOPNOTSUPP);
    if (static_cast<std::size_t>(offset + length) > SizeLimit())
        return Fail(ENOSPC);
    Touch();
    return 0;
}

int MemoryCalls::SyncData(int descriptor)
{
    CheckOpen(descriptor, false);
    return Interrupts() ? Fail(EINTR) : 0;
}

int MemoryCalls::Sync(int descriptor)
{
    return SyncData(descriptor);
}

timespec MemoryCalls::FileClock()
{
    return TimeOf(now_ - now_ % kClockTick);
}

// Interrupts a call, but not its repetition.
bool MemoryCalls::Interrupts()
{
    wasInterrupted_ = mood_.interrupts && !wasInterrupted_;
    return wasInterrupted_;
}

void MemoryCalls::CheckOpen(int descriptor, bool forWriting) const
{
    Check(isOpen_ && descriptor == kDescriptor, "the descriptor is open");
    Check(isOpenForWriting_ || !forWriting, "the descriptor is open for writing");
}

std::size_t MemoryCalls::Moved(std::size_t count) const
{
    return mood_.movesLittle ? std::min(count, kLittle) : count;
}

std::size_t MemoryCalls::SizeLimit() const
{
    return std::max(largestSize_, bytes_.size());
}

std::int64_t MemoryCalls::FileTime() const
{
    return now_ - now_ % (mood_.countsTwoSeconds ? 2 * kSecond : kFileTick);
}

void MemoryCalls::Touch()
{
    modified_ = FileTime();
    changed_ = modified_;
    ++changes_;
}

} // namespace corvrec::fuzz
