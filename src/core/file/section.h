#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

class ProfileFile;

// Bytes that a read of one value may fill, the closing NUL included: values of a site and of "General" are
// cut at 99.
inline constexpr std::size_t kValueSize = 100;

// The text that a read gives for a missing key. A key that holds just this text counts as missing.
inline constexpr std::string_view kMissing = "-CaVacca-";

// A text that may be stored: without CR, LF and NUL, which would break the file's lines.
std::string WithoutLineBreaks(std::string_view text);

// The text as it comes back from the file: without line breaks, and with '?' for each character that the code
// page lacks. Blanks and quotes at the ends are not looked at.
std::string AsStored(std::string_view text);

// One section of the settings file, in UTF-8. The missing-key rule and the code page live here and nowhere
// else.
class Section
{
public:
    // size: bytes a read may fill, the closing NUL included.
    Section(ProfileFile& file, std::string_view name, std::size_t size = kValueSize);

    // Nothing when the key is missing; an empty value is an empty text.
    std::optional<std::string> Read(std::string_view key) const;

    // CR, LF and NUL are left out of the value, and out of the key.
    bool Write(std::string_view key, std::string_view value);
    bool DeleteKey(std::string_view key);
    bool Delete();

private:
    ProfileFile& file_;
    std::string name_; // code page 1252
    std::size_t size_;
};

} // namespace corvrec
