#include "tests/ui/watched_file.h"

#include "tests/support/page_text.h"

#include <utility>

namespace corvrec
{

WatchedFile::WatchedFile(ProfileFile& file, std::string_view bytes, std::function<std::string()> editedCode,
                         std::function<void(QString)> report)
    : file_(file)
    , expected_(bytes)
    , editedCode_(std::move(editedCode))
    , report_(std::move(report))
{
}

std::string WatchedFile::Read(std::string_view section, std::string_view key, std::string_view fallback,
                              std::size_t size)
{
    std::string value = file_.Read(section, key, fallback, size);
    Expect(value == expected_.Read(section, key, size).value_or(std::string(fallback)), "read", section, key);
    return value;
}

std::string WatchedFile::Keys(std::string_view section, std::string_view fallback, std::size_t size)
{
    return file_.Keys(section, fallback, size); // not checked here: the shown list is compared as a whole
}

bool WatchedFile::Write(std::string_view section, std::string_view key, std::string_view value)
{
    MustBeEdited(section, key);
    Expect(value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos, "line break",
           section, key);
    if (key == "CharToDel") // the last key of a save
        ++saves_;
    expected_.Write(section, key, value);
    return file_.Write(section, key, value);
}

bool WatchedFile::DeleteKey(std::string_view section, std::string_view key)
{
    MustBeEdited(section, key);
    ++removals_;
    expected_.DeleteKey(section, key);
    return file_.DeleteKey(section, key);
}

bool WatchedFile::DeleteSection(std::string_view section)
{
    MustBeEdited(section, "");
    expected_.DeleteSection(section);
    return file_.DeleteSection(section);
}

void WatchedFile::Flush()
{
    file_.Flush();
}

// Allowed are the site's own section, its line in the list of sites, and the log that all sites share.
void WatchedFile::MustBeEdited(std::string_view section, std::string_view key)
{
    const std::string code = editedCode_();
    const bool isEdited =
        section == code || (section == "Siti" && key == code) || (section == "General" && key == "Log");
    Expect(isEdited, "not the site being edited", section, key);
}

void WatchedFile::Expect(bool holds, const char* what, std::string_view section, std::string_view key)
{
    if (!holds)
        report_(QStringLiteral("%1: [%2] %3").arg(what, PageText(section), PageText(key)));
}

} // namespace corvrec
