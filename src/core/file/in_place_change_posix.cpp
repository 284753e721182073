#include "core/file/in_place_change_posix.h"

#include "core/file/posix_calls.h"

#include <algorithm>
#include <cerrno>

namespace corvrec
{

namespace
{

// A kill during a pwrite can tear it at a multiple of this and nowhere else.
constexpr std::size_t kPageSize = 4096;

} // namespace

InPlaceChange::InPlaceChange(PosixCalls& calls, const Descriptor& file, IniText& text, std::string& scratch)
    : calls_(calls)
    , file_(file.Number())
    , text_(text)
    , scratch_(scratch)
    , oldSize_(text.Bytes().size())
{
}

bool InPlaceChange::Make(const Edit& edit)
{
    edit_ = edit;
    removed_ = text_.Bytes().substr(edit.offset, edit.removed);
    text_.Apply(edit);

    const std::string_view inserted = edit.inserted;
    const auto difference = std::mismatch(inserted.begin(), inserted.end(), removed_.begin(), removed_.end());
    const std::size_t begin = edit.offset + static_cast<std::size_t>(difference.first - inserted.begin());
    if (text_.Bytes().size() == oldSize_)
        return Replace(begin);
    return text_.Bytes().size() > oldSize_ ? Grow(begin) : Shrink(begin);
}

bool InPlaceChange::Replace(std::size_t begin)
{
    std::size_t end = edit_.offset + edit_.inserted.size();
    while (end > begin && text_.Bytes()[end - 1] == removed_[end - 1 - edit_.offset])
        --end;
    return WriteOrUndo(begin, std::string_view(text_.Bytes()).substr(begin, end - begin));
}

bool InPlaceChange::Grow(std::size_t begin)
{
    // No reservation is needed at the end of the file, where truncating undoes everything and takes no
    // room, or inside one page, for which the system reserves by itself before it copies.
    const std::size_t newSize = text_.Bytes().size();
    const bool needsReserve = begin != oldSize_ && begin / kPageSize != (newSize - 1) / kPageSize;
    return (!needsReserve || ReserveUpTo(newSize)) &&
           WriteOrUndo(begin, std::string_view(text_.Bytes()).substr(begin));
}

bool InPlaceChange::ReserveUpTo(std::size_t newSize)
{
    const std::size_t length = newSize - oldSize_;
    if (Repeated([&] { return calls_.Reserve(file_, Offset(oldSize_), Offset(length)); }) == 0)
        return true;
    const bool isUnknown = errno == EOPNOTSUPP || errno == ENOSYS || errno == EINVAL;
    // The file system cannot reserve: occupy the room with padding that no read can see.
    return isUnknown && WriteOrUndo(oldSize_, text_.Filler(length));
}

bool InPlaceChange::Shrink(std::size_t begin)
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
bool InPlaceChange::WriteOrUndo(std::size_t begin, std::string_view bytes)
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

std::string InPlaceChange::OldBytes() const
{
    return std::string(text_.Bytes()).replace(edit_.offset, edit_.inserted.size(), removed_);
}

// The number of bytes written; fewer than all after an error.
std::size_t InPlaceChange::Write(std::size_t begin, std::string_view bytes)
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

bool InPlaceChange::TruncateTo(std::size_t size)
{
    return Repeated([&] { return calls_.Truncate(file_, Offset(size)); }) == 0;
}

} // namespace corvrec
