#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

class ProfileFile;

// Size of the buffer for reading one value, including the closing NUL: values of sites and of "General" are
// cut at 99 bytes.
inline constexpr std::size_t kValueSize = 100;

// What a read returns for a missing key. A key that holds exactly this text counts as missing.
inline constexpr std::string_view kMissing = "-CaVacca-";

// The text without CR, LF and NUL, which would break the file's lines.
std::string WithoutLineBreaks(std::string_view text);

// The text as it will be read back: without line breaks, and with '?' for each character that the code page
// lacks. Blanks and quotes at the ends, which a read would drop, stay.
std::string AsStored(std::string_view text);

// One section of the settings file, in UTF-8. Applies the missing-key rule and the code page to each value.
class Section
{
public:
    // size: of the buffer for a read, including the closing NUL.
    Section(ProfileFile& file, std::string_view name, std::size_t size = kValueSize);

    // nullopt when the key is missing; an empty value is an empty string.
    std::optional<std::string> Read(std::string_view key) const;

    // CR, LF and NUL are removed from key and value. False when nothing could be written.
    bool Write(std::string_view key, std::string_view value);

    // False when the file could not be changed; a missing key or section is no error.
    bool DeleteKey(std::string_view key);
    bool Delete();

private:
    ProfileFile& file_;
    std::string name_; // code page 1252
    std::size_t size_;
};

} // namespace corvrec
