#pragma once

#include "core/file/profile_file.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

// Opens the file as the program does. In the tests of the windows, under Wine, by a model of the profile
// functions.
std::unique_ptr<ProfileFile> OpenSettings(const std::filesystem::path& file);

// A temporary directory with a real Corvrec.ini, opened as ProfileFile, and removed with the object. All
// texts are the file's own bytes.
class SettingsFile
{
public:
    // nullopt: the file is missing at first.
    explicit SettingsFile(std::optional<std::string_view> bytes = std::nullopt);
    ~SettingsFile();
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    SettingsFile(SettingsFile&&) = delete;
    SettingsFile& operator=(SettingsFile&&) = delete;

    ProfileFile& operator*() { return *file_; }
    ProfileFile* operator->() { return file_.get(); }

    [[nodiscard]] std::filesystem::path Directory() const { return directory_; }
    [[nodiscard]] std::filesystem::path Path() const { return directory_ / "Corvrec.ini"; }

    // The whole file; empty when it is missing, so ask Exists() where that matters.
    [[nodiscard]] std::string Bytes() const;
    [[nodiscard]] bool Exists() const;

    // The key's first line in the first section with that name, without its line end; empty when there is
    // none. Names are compared exactly, and lines are parsed independently of the code under test.
    [[nodiscard]] std::string Line(std::string_view section, std::string_view key) const;

    // Rewrites the file in place, as another program would.
    void Rewrite(std::string_view bytes) const;
    void Remove() const;

private:
    std::filesystem::path directory_;
    std::unique_ptr<ProfileFile> file_;
};

} // namespace corvrec
