#include "tests/support/probed_calls.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <numeric>
#include <unistd.h>
#include <utility>

namespace corvrec
{

namespace
{

constexpr std::size_t kNoEnd = std::numeric_limits<std::size_t>::max();

void Rewrite(const std::filesystem::path& file, std::string_view bytes)
{
    std::ofstream(file, std::ios::binary) << bytes;
}

} // namespace

void ProbedCalls::FailAt(std::size_t number, int error)
{
    faults_.push_back({.first = number, .last = number, .name = {}, .error = error});
}

void ProbedCalls::FailFrom(std::size_t number, int error)
{
    faults_.push_back({.first = number, .last = kNoEnd, .name = {}, .error = error});
}

void ProbedCalls::ShortenAt(std::size_t number, std::size_t bytes)
{
    shortages_.push_back({.number = number, .bytes = bytes});
}

void ProbedCalls::FailAll(std::string name, int error)
{
    faults_.push_back({.first = 0, .last = kNoEnd, .name = std::move(name), .error = error});
}

void ProbedCalls::RewriteAt(std::size_t number, std::filesystem::path file, std::string bytes)
{
    rewritings_.push_back(
        {.number = number, .file = std::move(file), .bytes = std::move(bytes), .isReplacing = false});
}

void ProbedCalls::ReplaceAt(std::size_t number, std::filesystem::path file, std::string bytes)
{
    rewritings_.push_back(
        {.number = number, .file = std::move(file), .bytes = std::move(bytes), .isReplacing = true});
}

void ProbedCalls::Mend()
{
    faults_.clear();
    shortages_.clear();
    rewritings_.clear();
    end_ = kNoEnd;
}

std::size_t ProbedCalls::Written() const
{
    return std::accumulate(pieces_.begin(), pieces_.end(), std::size_t{0},
                           [](std::size_t sum, const Piece& piece) { return sum + piece.count; });
}

// Records the call. Returns true and sets errno when it has to fail.
bool ProbedCalls::Fails(std::string_view name)
{
    const std::size_t number = made_.size();
    if (number == end_)
        ::_exit(endedStatus);
    made_.emplace_back(name);
    for (const Rewriting& rewriting : rewritings_) {
        if (rewriting.number == number)
            CarryOut(rewriting);
    }
    const auto fault = std::ranges::find_if(faults_, [&](const Fault& candidate) {
        return number >= candidate.first && number <= candidate.last &&
               (candidate.name.empty() || candidate.name == name);
    });
    if (fault == faults_.end())
        return false;
    errno = fault->error;
    return true;
}

void ProbedCalls::CarryOut(const Rewriting& rewriting)
{
    if (!rewriting.isReplacing) {
        Rewrite(rewriting.file, rewriting.bytes);
        return;
    }
    const std::filesystem::path replacement = rewriting.file.string() + ".new";
    Rewrite(replacement, rewriting.bytes);
    std::filesystem::rename(replacement, rewriting.file);
}

std::size_t ProbedCalls::Shortened(std::size_t count) const
{
    const auto shortage = std::ranges::find(shortages_, made_.size() - 1, &Shortage::number);
    return shortage == shortages_.end() ? count : std::min(count, shortage->bytes);
}

int ProbedCalls::Open(const char* path, int flags, mode_t mode)
{
    return Fails("open") ? -1 : SystemCalls().Open(path, flags, mode);
}

int ProbedCalls::Close(int descriptor)
{
    // A failing close also closes the descriptor.
    const bool fails = Fails("close");
    const int error = errno;
    const int result = SystemCalls().Close(descriptor);
    if (fails)
        errno = error;
    return fails ? -1 : result;
}

int ProbedCalls::Stat(const char* path, struct stat& status)
{
    return Fails("stat") ? -1 : SystemCalls().Stat(path, status);
}

int ProbedCalls::StatOpened(int descriptor, struct stat& status)
{
    return Fails("fstat") ? -1 : SystemCalls().StatOpened(descriptor, status);
}

int ProbedCalls::StatFileSystem(int descriptor, struct statfs& status)
{
    if (Fails("fstatfs"))
        return -1;
    const int result = SystemCalls().StatFileSystem(descriptor, status);
    status.f_type = fileSystemType_;
    return result;
}

ssize_t ProbedCalls::Read(int descriptor, char* bytes, std::size_t count, off_t offset)
{
    return Fails("pread") ? -1 : SystemCalls().Read(descriptor, bytes, Shortened(count), offset);
}

ssize_t ProbedCalls::Write(int descriptor, const char* bytes, std::size_t count, off_t offset)
{
    if (Fails("pwrite"))
        return -1;
    const ssize_t written = SystemCalls().Write(descriptor, bytes, Shortened(count), offset);
    if (written > 0)
        pieces_.push_back({.call = made_.size() - 1,
                           .begin = static_cast<std::size_t>(offset),
                           .count = static_cast<std::size_t>(written)});
    return written;
}

int ProbedCalls::Truncate(int descriptor, off_t size)
{
    return Fails("ftruncate") ? -1 : SystemCalls().Truncate(descriptor, size);
}

int ProbedCalls::Reserve(int descriptor, off_t offset, off_t length)
{
    return Fails("fallocate") ? -1 : SystemCalls().Reserve(descriptor, offset, length);
}

int ProbedCalls::SyncData(int descriptor)
{
    return Fails("fdatasync") ? -1 : SystemCalls().SyncData(descriptor);
}

int ProbedCalls::Sync(int descriptor)
{
    return Fails("fsync") ? -1 : SystemCalls().Sync(descriptor);
}

int ProbedCalls::MayWrite(const char* path)
{
    if (deniedWriting_ == 0)
        return SystemCalls().MayWrite(path);
    errno = deniedWriting_;
    return -1;
}

timespec ProbedCalls::FileClock()
{
    return fileClock_;
}

} // namespace corvrec
