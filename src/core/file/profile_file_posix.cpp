#include "core/file/ini_text.h"
#include "core/file/posix_calls.h"
#include "core/file/profile_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <optional>
#include <string>
#include <system_error>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace corvrec
{

namespace
{

// A larger file is not a settings file; reads and writes of it fail.
constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;

// How much is compared at a time: a portion that stays in the processor's cache.
constexpr std::size_t kPortion = std::size_t{256} * 1024;

// A kill during a pwrite can tear it at a multiple of this and nowhere else.
constexpr std::size_t kPageSize = 4096;

// Opening a FIFO must not block, a terminal must not become the controlling one, and a child process must not
// inherit the file.
constexpr int kOpenFlags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

class RealCalls final : public PosixCalls
{
public:
    int Open(const char* path, int flags, mode_t mode) override { return ::open(path, flags, mode); }
    int Close(int descriptor) override { return ::close(descriptor); }
    int Stat(const char* path, struct stat& status) override { return ::stat(path, &status); }
    int StatOpened(int descriptor, struct stat& status) override { return ::fstat(descriptor, &status); }
    int StatFileSystem(int descriptor, struct statfs& status) override
    {
        return ::fstatfs(descriptor, &status);
    }
    ssize_t Read(int descriptor, char* bytes, std::size_t count, off_t offset) override
    {
        return ::pread(descriptor, bytes, count, offset);
    }
    ssize_t Write(int descriptor, const char* bytes, std::size_t count, off_t offset) override
    {
        return ::pwrite(descriptor, bytes, count, offset);
    }
    int Truncate(int descriptor, off_t size) override { return ::ftruncate(descriptor, size); }
    int Reserve(int descriptor, off_t offset, off_t length) override
    {
        // Not posix_fallocate: it makes the file grow at once, and was seen to do so even when it failed.
        return ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, offset, length);
    }
    int SyncData(int descriptor) override { return ::fdatasync(descriptor); }
    int Sync(int descriptor) override { return ::fsync(descriptor); }
    int MayWrite(const char* path) override { return ::faccessat(AT_FDCWD, path, W_OK, AT_EACCESS); }
    timespec FileClock() override
    {
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
        return now;
    }
};

// A signal may interrupt any call before it has done anything. Not for close: see Descriptor::Close.
template <typename Call>
auto Repeated(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

// No file here is larger than kLargestFile.
off_t Offset(std::size_t position)
{
    return static_cast<off_t>(position);
}

// An open file, or none. Closed with the object at the latest.
class Descriptor
{
public:
    Descriptor(PosixCalls& calls, const char* path, int flags)
        : calls_(calls)
        , number_(Repeated([&] { return calls.Open(path, flags | kOpenFlags, 0666); }))
    {
    }
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;

    [[nodiscard]] bool IsOpen() const { return number_ != -1; }
    [[nodiscard]] int Number() const { return number_; }

    // Never repeated: the descriptor is gone whatever the result, and EINTR says nothing about the data. Any
    // other error counts: network file systems report a failed write only here.
    bool Close()
    {
        if (number_ == -1)
            return true;
        return calls_.Close(std::exchange(number_, -1)) == 0 || errno == EINTR;
    }

private:
    PosixCalls& calls_;
    int number_;
};

// A time of a file or of a clock.
struct Moment {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    bool operator==(const Moment&) const = default;
    [[nodiscard]] bool IsBefore(const Moment& other) const
    {
        return std::tie(seconds, nanoseconds) < std::tie(other.seconds, other.nanoseconds);
    }
    // Then the file system may keep no finer times.
    [[nodiscard]] bool IsWholeSecond() const { return nanoseconds == 0; }
};

Moment MomentOf(const timespec& time)
{
    return {.seconds = time.tv_sec, .nanoseconds = time.tv_nsec};
}

// Identifies a state of a file, as far as the system can distinguish two of them.
struct Stamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    Moment modified;
    Moment changed; // ctime: moves even when the time of modification is set back

    bool operator==(const Stamp&) const = default;
};

Stamp StampOf(const struct stat& status)
{
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modified = MomentOf(status.st_mtim),
            .changed = MomentOf(status.st_ctim)};
}

// File times move in ticks of 1 to 10 ms, or of whole seconds on old file systems, and two changes within one
// tick leave the same stamp. So a stamp proves something only if it was already older than a tick when
// reading began. Both margins (20 ms, 2 s) exceed the tick.
bool IsOlderThanItsTick(const Stamp& stamp, Moment readingBegan)
{
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

// File systems whose times come from this machine's clock (magic numbers of statfs). The times of any other
// one, known or not, may come from another machine or from a program, and prove nothing.
bool HasLocalTimes(const struct statfs& status)
{
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

// Changes the content of an open file in place. A failure leaves the file as it was. A kill between two calls
// leaves content that reads as the old or the new one. A kill during a pwrite may tear it at a page border:
// closing that gap would take a second file or a journal.
class InPlaceChange
{
public:
    // text: what the file holds. scratch: a buffer to reuse; its contents are lost.
    InPlaceChange(PosixCalls& calls, const Descriptor& file, IniText& text, std::string& scratch)
        : calls_(calls)
        , file_(file.Number())
        , text_(text)
        , scratch_(scratch)
        , oldSize_(text.Bytes().size())
    {
    }

    // Makes the edit in the text and in the file. False: the file is as it was, and the text must no longer
    // be used. True also when the file's end could not be cut off; then Filler padding follows the new
    // content.
    bool Make(const Edit& edit)
    {
        edit_ = edit;
        removed_ = text_.Bytes().substr(edit.offset, edit.removed);
        text_.Apply(edit);

        const std::string_view inserted = edit.inserted;
        const auto difference =
            std::mismatch(inserted.begin(), inserted.end(), removed_.begin(), removed_.end());
        const std::size_t begin = edit.offset + static_cast<std::size_t>(difference.first - inserted.begin());
        if (text_.Bytes().size() == oldSize_)
            return Replace(begin);
        return text_.Bytes().size() > oldSize_ ? Grow(begin) : Shrink(begin);
    }

private:
    bool Replace(std::size_t begin)
    {
        std::size_t end = edit_.offset + edit_.inserted.size();
        while (end > begin && text_.Bytes()[end - 1] == removed_[end - 1 - edit_.offset])
            --end;
        return WriteOrUndo(begin, std::string_view(text_.Bytes()).substr(begin, end - begin));
    }

    bool Grow(std::size_t begin)
    {
        // No reservation is needed at the end of the file, where truncating undoes everything and takes no
        // room, or inside one page, for which the system reserves by itself before it copies.
        const std::size_t newSize = text_.Bytes().size();
        const bool needsReserve = begin != oldSize_ && begin / kPageSize != (newSize - 1) / kPageSize;
        return (!needsReserve || ReserveUpTo(newSize)) &&
               WriteOrUndo(begin, std::string_view(text_.Bytes()).substr(begin));
    }

    bool ReserveUpTo(std::size_t newSize)
    {
        const std::size_t length = newSize - oldSize_;
        if (Repeated([&] { return calls_.Reserve(file_, Offset(oldSize_), Offset(length)); }) == 0)
            return true;
        const bool isUnknown = errno == EOPNOTSUPP || errno == ENOSYS || errno == EINVAL;
        // The file system cannot reserve: occupy the room with padding that no read can see.
        return isUnknown && WriteOrUndo(oldSize_, text_.Filler(length));
    }

    bool Shrink(std::size_t begin)
    {
        // The new end of the content with padding up to the old size first, then the truncation. Without the
        // padding, a kill before the truncation would leave the end of the old content after the new one,
        // from the middle of a line on.
        const std::size_t newSize = text_.Bytes().size();
        scratch_.clear();
        scratch_.reserve(oldSize_ - begin); // growing by appending would take twice that
        scratch_.append(text_.Bytes(), begin).append(text_.Filler(oldSize_ - newSize));
        if (!WriteOrUndo(begin, scratch_))
            return false;
        TruncateTo(newSize); // on failure the padding stays, and the value is in place
        return true;
    }

    // Writes all of the bytes or none. Only when undoing fails too is there nothing more to be done.
    bool WriteOrUndo(std::size_t begin, std::string_view bytes)
    {
        const std::size_t written = Write(begin, bytes);
        if (written == bytes.size())
            return true;
        if (written > 0 && begin < oldSize_)
            Write(begin, OldBytes().substr(begin, written));
        if (begin + bytes.size() > oldSize_)
            TruncateTo(oldSize_); // needs no room, and returns what was reserved
        return false;
    }

    [[nodiscard]] std::string OldBytes() const
    {
        return std::string(text_.Bytes()).replace(edit_.offset, edit_.inserted.size(), removed_);
    }

    // The number of bytes written; fewer than all after an error.
    std::size_t Write(std::size_t begin, std::string_view bytes)
    {
        std::size_t written = 0;
        while (written < bytes.size()) {
            const ssize_t count = Repeated([&] {
                return calls_.Write(file_, bytes.data() + written, bytes.size() - written,
                                    Offset(begin + written));
            });
            if (count <= 0)
                break;
            written += static_cast<std::size_t>(count);
        }
        return written;
    }

    bool TruncateTo(std::size_t size)
    {
        return Repeated([&] { return calls_.Truncate(file_, Offset(size)); }) == 0;
    }

    PosixCalls& calls_;
    int file_;
    IniText& text_;
    std::string& scratch_;
    std::size_t oldSize_;
    Edit edit_;
    std::string removed_; // removed by the edit
};

// Keeps the last content read, so that an unchanged file need not be read again.
class PosixProfileFile final : public ProfileFile
{
public:
    PosixProfileFile(std::filesystem::path path, PosixCalls& calls)
        : path_(std::move(path))
        , calls_(calls)
    {
    }

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override
    {
        return Current().Read(section, key, fallback, size);
    }

    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override
    {
        return Current().Keys(section, fallback, size);
    }

    bool Write(std::string_view section, std::string_view key, std::string_view value) override
    {
        return Change([&](IniText& text) { return text.Put(section, key, value); });
    }

    bool DeleteKey(std::string_view section, std::string_view key) override
    {
        return Change([&](IniText& text) { return text.EraseKey(section, key); });
    }

    bool DeleteSection(std::string_view section) override
    {
        return Change([&](IniText& text) { return text.EraseSection(section); });
    }

    bool IsWritable() override
    {
        if (calls_.MayWrite(path_.c_str()) == 0)
            return true;
        const std::filesystem::path directory = path_.has_parent_path() ? path_.parent_path() : ".";
        return errno == ENOENT && calls_.MayWrite(directory.c_str()) == 0;
    }

    void Flush() override
    {
        if (!isUnflushed_)
            return;
        isUnflushed_ = false;
        const Descriptor file(calls_, path_.c_str(), O_RDONLY);
        if (file.IsOpen())
            Repeated([&] { return calls_.SyncData(file.Number()); });
        if (std::exchange(isNew_, false))
            FlushDirectory();
    }

private:
    // The file as it was when last read or written. Trusted: an equal stamp proves equal content.
    struct Snapshot {
        IniText text;
        Stamp stamp;
        bool isTrusted = false;
    };

    // The file's current content; empty when it cannot be read.
    IniText& Current()
    {
        struct stat status {
        };
        const bool isFile =
            Repeated([&] { return calls_.Stat(path_.c_str(), status); }) == 0 && S_ISREG(status.st_mode);
        if (isFile && snapshot_ && snapshot_->isTrusted && snapshot_->stamp == StampOf(status))
            return snapshot_->text;
        if (isFile && TakeSnapshot(StampOf(status)))
            return snapshot_->text;
        snapshot_.reset();
        return nothing_;
    }

    // Reads the file. `stamp` is what stat reported a moment ago. A file that changes while it is read is
    // read again; one that does not come to rest is used as it was last seen, for this one call.
    bool TakeSnapshot(Stamp stamp)
    {
        Moment began = MomentOf(calls_.FileClock());
        const Descriptor file(calls_, path_.c_str(), O_RDONLY);
        if (!file.IsOpen())
            return false;
        for (int attempt = 1;; ++attempt) {
            const auto bytes = Bytes(file, stamp.size);
            struct stat status {
            };
            if (!bytes || calls_.StatOpened(file.Number(), status) != 0 || !S_ISREG(status.st_mode))
                return false;
            const Stamp after = StampOf(status);
            const bool isAtRest = after == stamp && static_cast<std::size_t>(after.size) == bytes->size();
            if (isAtRest || attempt == 3) {
                Keep(*bytes);
                snapshot_->stamp = after;
                snapshot_->isTrusted =
                    isAtRest && IsOlderThanItsTick(after, began) && IsLocal(file, after.device);
                return true;
            }
            stamp = after;
            began = MomentOf(calls_.FileClock());
        }
    }

    // Bytes equal to the snapshot's keep its index. Otherwise `bytes` is in buffer_, which the snapshot takes
    // over.
    void Keep(std::string_view bytes)
    {
        if (snapshot_ && bytes.data() == snapshot_->text.Bytes().data())
            return;
        buffer_.resize(bytes.size());
        snapshot_.emplace(Snapshot{.text = IniText(std::move(buffer_)), .stamp = {}, .isTrusted = false});
        buffer_.clear();
    }

    // The file's content: the snapshot's own bytes when the file still holds them. nullopt when it cannot be
    // read or is too large.
    std::optional<std::string_view> Bytes(const Descriptor& file, off_t size)
    {
        if (HoldsSnapshot(file, size))
            return snapshot_->text.Bytes();
        return ReadAll(file, size);
    }

    // Whether the file equals the snapshot, byte for byte; false when it cannot be read. Nothing read is
    // kept.
    bool HoldsSnapshot(const Descriptor& file, off_t size)
    {
        if (!snapshot_ || snapshot_->text.Bytes().size() != static_cast<std::size_t>(size))
            return false;
        const std::string_view known = snapshot_->text.Bytes();
        buffer_.resize(std::max(buffer_.size(), std::min(known.size() + 1, kPortion)));
        std::size_t length = 0;
        for (;;) {
            const std::size_t wanted = std::min(known.size() + 1 - length, kPortion);
            const ssize_t count =
                Repeated([&] { return calls_.Read(file.Number(), buffer_.data(), wanted, Offset(length)); });
            if (count <= 0)
                return count == 0 && length == known.size();
            const std::string_view portion(buffer_.data(), static_cast<std::size_t>(count));
            if (portion != known.substr(length, portion.size()))
                return false;
            length += portion.size();
            if (length == known.size() && portion.size() < wanted)
                return true; // a short read with room for one more byte: the end of the file
        }
    }

    // Reads the whole file into buffer_, whatever size was reported. nullopt when it cannot be read or is too
    // large.
    std::optional<std::string_view> ReadAll(const Descriptor& file, off_t size)
    {
        const auto expected = static_cast<std::size_t>(size);
        std::size_t length = 0;
        while (expected <= kLargestFile && length <= kLargestFile) {
            // Asking for one byte more than expected detects the end of the file without another call.
            const std::size_t wanted = std::max(expected + 1, length + kPageSize);
            if (buffer_.size() < wanted)
                buffer_.resize(wanted);
            const ssize_t count = Repeated([&] {
                return calls_.Read(file.Number(), buffer_.data() + length, wanted - length, Offset(length));
            });
            if (count < 0)
                return std::nullopt;
            length += static_cast<std::size_t>(count);
            if (count == 0 || length == expected)
                return std::string_view(buffer_).substr(0, length);
        }
        return std::nullopt;
    }

    // Asked each time that "yes" would lead to trust. "No" is remembered, since the answer may come over a
    // network.
    bool IsLocal(const Descriptor& file, dev_t device)
    {
        if (foreignDevice_ == device)
            return false;
        struct statfs status {
        };
        const bool isLocal = Repeated([&] { return calls_.StatFileSystem(file.Number(), status); }) == 0 &&
                             HasLocalTimes(status);
        if (!isLocal)
            foreignDevice_ = device;
        return isLocal;
    }

    // makeEdit: IniText& -> std::optional<Edit>; nullopt makes the change fail.
    template <typename MakeEdit>
    bool Change(MakeEdit makeEdit)
    {
        std::optional<Descriptor> file(std::in_place, calls_, path_.c_str(), O_RDWR);
        if (!file->IsOpen() && errno == ENOENT) {
            file.emplace(calls_, path_.c_str(), O_RDWR | O_CREAT);
            isNew_ = isNew_ || file->IsOpen();
            isUnflushed_ = isUnflushed_ || isNew_;
        }
        const bool isDone = file->IsOpen() && RefreshFrom(*file) && Carry(makeEdit(snapshot_->text), *file);
        if (!isDone)
            snapshot_.reset();
        return isDone;
    }

    // Makes the snapshot equal to the file before a change. A change never builds on a snapshot that was not
    // compared with the file, nor on fewer bytes than the file has: it would overwrite those after them.
    bool RefreshFrom(const Descriptor& file)
    {
        for (int attempt = 1; attempt <= 3; ++attempt) {
            struct stat status {
            };
            if (calls_.StatOpened(file.Number(), status) != 0 || !S_ISREG(status.st_mode))
                return false;
            const auto bytes = Bytes(file, status.st_size);
            if (!bytes)
                return false;
            if (bytes->size() >= static_cast<std::size_t>(status.st_size)) {
                Renew(*bytes, StampOf(status));
                return true;
            }
        }
        return false;
    }

    // Keeps the snapshot's trust when neither bytes nor stamp have changed.
    void Renew(std::string_view bytes, const Stamp& stamp)
    {
        const bool isKnown = snapshot_ && bytes.data() == snapshot_->text.Bytes().data();
        if (isKnown && snapshot_->stamp == stamp)
            return;
        Keep(bytes);
        snapshot_->stamp = stamp;
        snapshot_->isTrusted = false;
    }

    // Carries out the edit and closes the file, since closing may report that a write has failed.
    bool Carry(const std::optional<Edit>& edit, Descriptor& file)
    {
        if (!edit || edit->ChangesNothing())
            return edit.has_value();
        IniText& text = snapshot_->text;
        if (text.Bytes().size() - edit->removed + edit->inserted.size() > kLargestFile)
            return false; // too large to be read again
        if (!InPlaceChange(calls_, file, text, buffer_).Make(*edit))
            return false;
        isUnflushed_ = true;

        struct stat status {
        };
        const bool isKnown = calls_.StatOpened(file.Number(), status) == 0;
        if (!file.Close())
            return false;
        if (!isKnown) {
            snapshot_.reset();
            return true;
        }
        snapshot_->stamp = StampOf(status);
        // Not trusted: another program may write within the same tick. The next comparison also finds padding
        // that stayed.
        snapshot_->isTrusted = false;
        return true;
    }

    // Flushes the name of a new file, which is part of its directory's data. With links, it is the directory
    // of the real file.
    void FlushDirectory()
    {
        std::error_code failure;
        const auto file = std::filesystem::canonical(path_, failure);
        if (failure)
            return;
        const Descriptor directory(calls_, file.parent_path().c_str(), O_RDONLY | O_DIRECTORY);
        if (directory.IsOpen())
            Repeated([&] { return calls_.Sync(directory.Number()); });
    }

    std::filesystem::path path_;
    PosixCalls& calls_;
    std::optional<Snapshot> snapshot_;
    IniText nothing_; // the content of a missing file
    // Reused between calls, so that reading a file of the same size allocates nothing.
    std::string buffer_;
    std::optional<dev_t> foreignDevice_; // file system whose times prove nothing
    bool isUnflushed_ = false;
    bool isNew_ = false; // created, and its name not yet flushed
};

} // namespace

PosixCalls& SystemCalls()
{
    static RealCalls calls;
    return calls;
}

std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file, PosixCalls& calls)
{
    return std::make_unique<PosixProfileFile>(file, calls);
}

std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file)
{
    return OpenProfileFile(file, SystemCalls());
}

} // namespace corvrec
