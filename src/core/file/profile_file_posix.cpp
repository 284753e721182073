#include "core/file/file_stamp_posix.h"
#include "core/file/in_place_change_posix.h"
#include "core/file/ini_text.h"
#include "core/file/posix_calls.h"
#include "core/file/profile_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace corvrec
{

namespace
{

// A larger file is not a settings file; reads and writes of it fail.
constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;

// How much is compared at a time: a portion that stays in the processor's cache.
constexpr std::size_t kPortion = std::size_t{256} * 1024;

// How much more than expected is read at least when a file grows meanwhile.
constexpr std::size_t kGrowth = 4096;

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
            const std::size_t wanted = std::max(expected + 1, length + kGrowth);
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

    // Asks the system each time, except after a "no", which is remembered: the answer may come over a
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

std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file, PosixCalls& calls)
{
    return std::make_unique<PosixProfileFile>(file, calls);
}

std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file)
{
    return OpenProfileFile(file, SystemCalls());
}

} // namespace corvrec
