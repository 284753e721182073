#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec::fuzz
{

// The profile functions in the simplest form: every call parses the whole file and keeps nothing. Shares no
// code with src/core/file except the code page.

std::string ReadReference(std::string_view file, std::string_view section, std::string_view key,
                          std::string_view fallback, std::size_t size);
std::string KeysReference(std::string_view file, std::string_view section, std::string_view fallback,
                          std::size_t size);
std::string FallbackReference(std::string_view fallback, std::size_t size);

// The file afterwards; nullopt when it cannot be written.
std::optional<std::string> WriteReference(std::string_view file, std::string_view section,
                                          std::string_view key, std::string_view value);
std::optional<std::string> DeleteKeyReference(std::string_view file, std::string_view section,
                                              std::string_view key);
std::optional<std::string> DeleteSectionReference(std::string_view file, std::string_view section);

// The lines that no save of the site may lose, without line ends and blank lines: all except the header, keys
// and bare lines of sections with its code, its key in "Siti", and "Log" in "General".
std::vector<std::u16string> ForeignLinesReference(std::string_view file, std::string_view code);

} // namespace corvrec::fuzz
