#include "core/file/file_stamp_posix.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace corvrec
{

bool Moment::IsBefore(const Moment& other) const
{
    return std::tie(seconds, nanoseconds) < std::tie(other.seconds, other.nanoseconds);
}

Moment MomentOf(const timespec& time)
{
    return {.seconds = time.tv_sec, .nanoseconds = time.tv_nsec};
}

Stamp StampOf(const struct stat& status)
{
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modified = MomentOf(status.st_mtim),
            .changed = MomentOf(status.st_ctim)};
}

bool IsOlderThanItsTick(const Stamp& stamp, Moment readingBegan)
{
    // Both margins (20 ms, 2 s) exceed the tick.
    constexpr std::int64_t margin = 20'000'000; // ns
    constexpr std::int64_t second = 1'000'000'000;
    if (stamp.modified.IsWholeSecond() || stamp.changed.IsWholeSecond()) {
        readingBegan.seconds -= 2;
    } else if (readingBegan.nanoseconds >= margin) {
        readingBegan.nanoseconds -= margin;
    } else {
        readingBegan.seconds -= 1;
        readingBegan.nanoseconds += second - margin;
    }
    return stamp.modified.IsBefore(readingBegan) && stamp.changed.IsBefore(readingBegan);
}

bool HasLocalTimes(const struct statfs& status)
{
    // Magic numbers of statfs.
    constexpr std::array<std::uint32_t, 16> local = {
        0x0000EF53, // ext2, ext3, ext4
        0x58465342, // XFS
        0x9123683E, // Btrfs
        0xCA451A4E, // bcachefs
        0x2FC12FC1, // ZFS
        0xF2F52010, // F2FS
        0x01021994, // tmpfs
        0x858458F6, // ramfs
        0x794C7630, // overlayfs
        0x00004D44, // FAT
        0x2011BAB0, // exFAT
        0x7366746E, // NTFS
        0x3153464A, // JFS
        0x52654973, // ReiserFS
        0x00003434, // NILFS
        0x0000482B, // HFS+
    };
    return std::ranges::find(local, static_cast<std::uint32_t>(status.f_type)) != local.end();
}

} // namespace corvrec
