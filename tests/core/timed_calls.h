#pragma once

#include "core/file/posix_calls.h"

#include <cstdint>
#include <map>
#include <string>

namespace corvrec
{

// The real calls over a file system whose clock moves only on request, in ticks as coarse as the test wants:
// two changes in one tick get the same times. Other programs' changes must be reported to it.
class TimedCalls final : public PosixCalls
{
public:
    // tick: nanoseconds between two different file times.
    explicit TimedCalls(std::int64_t tick)
        : tick_(tick)
    {
    }

    void Advance(std::int64_t nanoseconds) { now_ += nanoseconds; }
    // Another program has changed the file now; with keepsModified it has set the modification time back.
    void Changed(const std::string& path, bool keepsModified = false);

    void CopyTimes(const std::string& from, const std::string& to);

    int Open(const char* path, int flags, mode_t mode) override;
    int Close(int descriptor) override { return SystemCalls().Close(descriptor); }
    int Stat(const char* path, struct stat& status) override;
    int StatOpened(int descriptor, struct stat& status) override;
    int StatFileSystem(int descriptor, struct statfs& status) override;
    ssize_t Read(int descriptor, char* bytes, std::size_t count, off_t offset) override;
    ssize_t Write(int descriptor, const char* bytes, std::size_t count, off_t offset) override;
    int Truncate(int descriptor, off_t size) override;
    int Reserve(int descriptor, off_t offset, off_t length) override;
    int SyncData(int descriptor) override { return SystemCalls().SyncData(descriptor); }
    int Sync(int descriptor) override { return SystemCalls().Sync(descriptor); }
    int MayWrite(const char* path) override { return SystemCalls().MayWrite(path); }
    timespec FileClock() override;

private:
    struct Times {
        std::int64_t modified = 0;
        std::int64_t changed = 0;
    };

    [[nodiscard]] std::int64_t Ticked() const { return now_ - now_ % tick_; }
    void ShowTimes(struct stat& status);
    void Touch(int descriptor);

    std::int64_t tick_;
    std::int64_t now_ = 1'770'000'000'123'456'789;
    std::map<ino_t, Times> times_;
};

} // namespace corvrec
