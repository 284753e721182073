#pragma once

#include "core/file/code_page.h"
#include "core/file/profile_file.h"
#include "tests/support/reference_profile.h"

#include <QString>

#include <functional>
#include <string>
#include <string_view>

namespace corvrec
{

// A real settings file under watch: every read must return what the profile functions would, and every write
// must belong to the site being edited and stay on one line.
class WatchedFile final : public ProfileFile
{
public:
    // bytes: the file's content. editedCode: returns the code of the site being edited or removed, as in the
    // file. report: called with each violation.
    WatchedFile(ProfileFile& file, std::string_view bytes, std::function<std::string()> editedCode,
                std::function<void(QString)> report)
        : file_(file)
        , expected_(bytes)
        , editedCode_(std::move(editedCode))
        , report_(std::move(report))
    {
    }

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override
    {
        std::string value = file_.Read(section, key, fallback, size);
        const std::string expected = expected_.Read(section, key, size).value_or(std::string(fallback));
        Expect(value == expected, "read", section, key);
        return value;
    }

    // Not checked here: the shown list is compared as a whole.
    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override
    {
        return file_.Keys(section, fallback, size);
    }

    bool Write(std::string_view section, std::string_view key, std::string_view value) override
    {
        MustBeEdited(section, key);
        const bool isOneLine = value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
        Expect(isOneLine, "line break", section, key);
        if (key == "CharToDel") // the last key of a save
            ++saves_;
        expected_.Write(section, key, value);
        return file_.Write(section, key, value);
    }

    bool DeleteKey(std::string_view section, std::string_view key) override
    {
        MustBeEdited(section, key);
        ++removals_;
        expected_.DeleteKey(section, key);
        return file_.DeleteKey(section, key);
    }

    bool DeleteSection(std::string_view section) override
    {
        MustBeEdited(section, "");
        expected_.DeleteSection(section);
        return file_.DeleteSection(section);
    }

    bool IsWritable() override { return file_.IsWritable(); }
    void Flush() override { file_.Flush(); }

    // The content that the file should have.
    const ReferenceProfile& Expected() const { return expected_; }

    int Saves() const { return saves_; }
    int Removals() const { return removals_; }

private:
    // Allowed are the site's own section, its line in the list of sites, and the log that all sites share.
    void MustBeEdited(std::string_view section, std::string_view key)
    {
        const std::string code = editedCode_();
        const bool isEdited =
            section == code || (section == "Siti" && key == code) || (section == "General" && key == "Log");
        Expect(isEdited, "not the site being edited", section, key);
    }

    void Expect(bool holds, const char* what, std::string_view section, std::string_view key)
    {
        const std::string place = Utf8FromCp1252("[" + std::string(section) + "] " + std::string(key));
        if (!holds)
            report_(QString("%1: %2").arg(what, QString::fromStdString(place)));
    }

    ProfileFile& file_;
    ReferenceProfile expected_;
    std::function<std::string()> editedCode_;
    std::function<void(QString)> report_;
    int saves_ = 0;
    int removals_ = 0;
};

} // namespace corvrec
