#include "core/file/section.h"

#include "core/file/code_page.h"
#include "core/file/profile_file.h"

namespace corvrec
{

std::string WithoutLineBreaks(std::string_view text)
{
    std::string line(text);
    std::erase_if(line, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    return line;
}

namespace
{

// The bytes that the file gets for a text.
std::string Stored(std::string_view text)
{
    return Cp1252FromUtf8(WithoutLineBreaks(text));
}

} // namespace

std::string AsStored(std::string_view text)
{
    return Utf8FromCp1252(Stored(text));
}

Section::Section(ProfileFile& file, std::string_view name, std::size_t size)
    : file_(file)
    , name_(Stored(name))
    , size_(size)
{
}

std::optional<std::string> Section::Read(std::string_view key) const
{
    const std::string value = file_.Read(name_, Stored(key), kMissing, size_);
    if (value == kMissing)
        return std::nullopt;
    return Utf8FromCp1252(value);
}

bool Section::Write(std::string_view key, std::string_view value)
{
    return file_.Write(name_, Stored(key), Stored(value));
}

bool Section::DeleteKey(std::string_view key)
{
    return file_.DeleteKey(name_, Stored(key));
}

bool Section::Delete()
{
    return file_.DeleteSection(name_);
}

} // namespace corvrec
