#pragma once

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
    // bytes: the file's content. editedCode: returns the code of the site being edited or removed. report:
    // called with each violation.
    WatchedFile(ProfileFile& file, std::string_view bytes, std::function<std::string()> editedCode,
                std::function<void(QString)> report);

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override;
    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override;
    bool Write(std::string_view section, std::string_view key, std::string_view value) override;
    bool DeleteKey(std::string_view section, std::string_view key) override;
    bool DeleteSection(std::string_view section) override;
    bool IsWritable() override { return file_.IsWritable(); }
    void Flush() override;

    // The content that the file should have.
    const ReferenceProfile& Expected() const { return expected_; }

    int Saves() const { return saves_; }
    int Removals() const { return removals_; }

private:
    void MustBeEdited(std::string_view section, std::string_view key);
    void Expect(bool holds, const char* what, std::string_view section, std::string_view key);

    ProfileFile& file_;
    ReferenceProfile expected_;
    std::function<std::string()> editedCode_;
    std::function<void(QString)> report_;
    int saves_ = 0;
    int removals_ = 0;
};

} // namespace corvrec
