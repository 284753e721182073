#pragma once

#include <cstdint>
#include <ctime>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

namespace corvrec
{

// A time of a file or of a clock.
struct Moment {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    bool operator==(const Moment&) const = default;
    [[nodiscard]] bool IsBefore(const Moment& other) const;
    // True for every time of a file system that keeps no finer ones.
    [[nodiscard]] bool IsWholeSecond() const { return nanoseconds == 0; }
};

Moment MomentOf(const timespec& time);

// Identifies a state of a file, as far as the system can distinguish two of them.
struct Stamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    Moment modified;
    Moment changed; // ctime: moves even when the time of modification is set back

    bool operator==(const Stamp&) const = default;
};

Stamp StampOf(const struct stat& status);

// Whether an equal stamp later proves equal content, for a file whose reading began at that moment. File
// times move in ticks of 1 to 10 ms, or of whole seconds on old file systems, and two changes within one tick
// leave the same stamp. So a stamp proves something only if it was already older than a tick.
bool IsOlderThanItsTick(const Stamp& stamp, Moment readingBegan);

// Whether the times of this file system come from this machine's clock. The times of any other one, known or
// not, may come from another machine or from a program, and prove nothing.
bool HasLocalTimes(const struct statfs& status);

} // namespace corvrec
