#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

// The settings file, the modem catalogue and the devices use Windows code page 1252; the windows use UTF-8.
// The five bytes that the page leaves unassigned (81 8D 8F 90 9D) map to the control characters of the same
// number and back, so that every byte survives the round trip.

// A character outside the page and each broken piece of UTF-8 become '?'.
std::string Cp1252FromUtf8(std::string_view utf8);
std::string Utf8FromCp1252(std::string_view bytes);

// UTF-16 little endian, without a byte order mark. Half a character at the end is ignored.
std::string Cp1252FromUtf16(std::string_view wide);
std::string Utf16FromCp1252(std::string_view bytes);

// A single Unicode character and its byte, by the same rules.
char Cp1252FromCharacter(char32_t character);
char32_t CharacterFromCp1252(char byte);

} // namespace corvrec
