#include "core/file/ini_text.h"
#include "tests/support/settings_file.h"
#include "tests/support/wine.h"

#include <fstream>
#include <sstream>

namespace corvrec
{

namespace
{

// What Windows' profile functions write, by the model that is used where there are none. Wine's own functions
// drop leading blanks and blank lines, so that tests of windows that compare whole files would fail. The
// system decides about access.
class ModelProfileFile final : public ProfileFile
{
public:
    explicit ModelProfileFile(const std::filesystem::path& path)
        : path_(path)
        , system_(OpenProfileFile(path))
    {
    }

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override
    {
        return Text().Read(section, key, fallback, size);
    }

    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override
    {
        return Text().Keys(section, fallback, size);
    }

    bool Write(std::string_view section, std::string_view key, std::string_view value) override
    {
        IniText text = Text();
        return Apply(text, text.Put(section, key, value));
    }

    bool DeleteKey(std::string_view section, std::string_view key) override
    {
        IniText text = Text();
        return Apply(text, text.EraseKey(section, key));
    }

    bool DeleteSection(std::string_view section) override
    {
        IniText text = Text();
        return Apply(text, text.EraseSection(section));
    }

    bool IsWritable() override { return system_->IsWritable(); }
    void Flush() override {}

private:
    [[nodiscard]] IniText Text() const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path_, std::ios::binary).rdbuf();
        return IniText(bytes.str());
    }

    bool Apply(IniText& text, const std::optional<Edit>& edit) const
    {
        if (!edit)
            return false;
        if (edit->ChangesNothing())
            return true;
        text.Apply(*edit);
        std::ofstream file(path_, std::ios::binary | std::ios::trunc);
        file << text.Bytes();
        return file.good();
    }

    std::filesystem::path path_;
    std::unique_ptr<ProfileFile> system_;
};

} // namespace

std::unique_ptr<ProfileFile> OpenSettings(const std::filesystem::path& file)
{
    if (IsWine())
        return std::make_unique<ModelProfileFile>(file);
    return OpenProfileFile(file);
}

} // namespace corvrec
