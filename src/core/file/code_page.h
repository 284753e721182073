#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

// The settings file, the modem catalogue and the devices speak Windows code page 1252; the windows speak
// UTF-8. The five bytes that the page leaves unassigned (81 8D 8F 90 9D) stand for the control characters of
// the same number, both ways, so that every byte survives the way there and back.

// A character outside the page, and every broken piece of UTF-8, becomes '?'.
std::string Cp1252FromUtf8(std::string_view utf8);
std::string Utf8FromCp1252(std::string_view bytes);

// A single Unicode character and its byte, by the same rules.
char Cp1252FromCharacter(char32_t character);
char32_t CharacterFromCp1252(char byte);

} // namespace corvrec
