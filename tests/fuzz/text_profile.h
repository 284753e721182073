#pragma once

#include "core/file/ini_text.h"
#include "core/file/profile_file.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvrec::fuzz
{

// A settings file that is only a string in memory.
class TextProfile final : public ProfileFile
{
public:
    explicit TextProfile(std::string_view bytes)
        : text_(std::string(bytes))
    {
    }

    [[nodiscard]] const std::string& Bytes() const { return text_.Bytes(); }

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override
    {
        return text_.Read(section, key, fallback, size);
    }
    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override
    {
        return text_.Keys(section, fallback, size);
    }
    bool Write(std::string_view section, std::string_view key, std::string_view value) override
    {
        return Apply(text_.Put(section, key, value));
    }
    bool DeleteKey(std::string_view section, std::string_view key) override
    {
        return Apply(text_.EraseKey(section, key));
    }
    bool DeleteSection(std::string_view section) override { return Apply(text_.EraseSection(section)); }
    bool IsWritable() override { return true; }
    void Flush() override {}

private:
    bool Apply(const std::optional<Edit>& edit)
    {
        if (edit)
            text_.Apply(*edit);
        return edit.has_value();
    }

    IniText text_;
};

} // namespace corvrec::fuzz
