#pragma once

#include "core/file/ini_text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace corvrec
{

class Descriptor;
class PosixCalls;

// Changes the content of an open file in place. A failure leaves the file as it was. A kill between two calls
// leaves content that reads as the old or the new one. A kill during a pwrite may tear it at a page border:
// closing that gap would take a second file or a journal.
class InPlaceChange
{
public:
    // text: what the file holds. scratch: a buffer to reuse; its contents are lost.
    InPlaceChange(PosixCalls& calls, const Descriptor& file, IniText& text, std::string& scratch);

    // Makes the edit in the text and in the file. False: the file is as it was, and the text must no longer
    // be used. True also when the file's end could not be cut off; then Filler padding follows the new
    // content.
    bool Make(const Edit& edit);

private:
    bool Replace(std::size_t begin);
    bool Grow(std::size_t begin);
    bool ReserveUpTo(std::size_t newSize);
    bool Shrink(std::size_t begin);
    bool WriteOrUndo(std::size_t begin, std::string_view bytes);
    [[nodiscard]] std::string OldBytes() const;
    std::size_t Write(std::size_t begin, std::string_view bytes);
    bool TruncateTo(std::size_t size);

    PosixCalls& calls_;
    int file_;
    IniText& text_;
    std::string& scratch_;
    std::size_t oldSize_;
    Edit edit_;
    std::string removed_; // removed by the edit
};

} // namespace corvrec
