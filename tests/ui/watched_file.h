#pragma once

#include "core/file/profile_file.h"
#include "tests/support/reference_profile.h"

#include <QString>

#include <functional>
#include <string>
#include <string_view>

namespace corvrec
{

// A real settings file under watch: every read has to give what the profile functions would give, and every
// write has to be of the site that is being edited, on one line.
class WatchedFile final : public ProfileFile
{
public:
    // bytes: the file's content. editedCode: code of the site being edited or removed; report: told what went
    // wrong.
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

    // What the file must hold.
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
