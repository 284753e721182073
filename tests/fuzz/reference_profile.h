#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec::fuzz
{

// What the profile functions do, in the simplest way: every call takes the whole file apart into its lines,
// and nothing is kept. It shares no code with config/ but the code page.

std::string ReadReference(std::string_view file, std::string_view section, std::string_view key,
                          std::string_view fallback, std::size_t size);
std::string KeysReference(std::string_view file, std::string_view section, std::string_view fallback,
                          std::size_t size);
std::string FallbackReference(std::string_view fallback, std::size_t size);

// The file afterwards; nothing when it cannot be written.
std::optional<std::string> WriteReference(std::string_view file, std::string_view section,
                                          std::string_view key, std::string_view value);
std::optional<std::string> DeleteKeyReference(std::string_view file, std::string_view section,
                                              std::string_view key);
std::optional<std::string> DeleteSectionReference(std::string_view file, std::string_view section);

// The lines that no save of the site may lose, without their line ends and the blank ones: all but the
// header, the keys and the bare lines of sections named by its code, its key in "Siti", and "Log" in
// "General".
std::vector<std::u16string> LinesAsideReference(std::string_view file, std::string_view code);

} // namespace corvrec::fuzz
