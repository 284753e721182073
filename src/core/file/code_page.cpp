#include "core/file/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace corvrec
{

namespace
{

constexpr char kNoSuchCharacter = '?';

// Unicode's replacement for a broken piece of UTF-8. The page does not have it either.
constexpr char32_t kBroken = 0xFFFD;

// The characters of the bytes 80 to 9F. Every other byte has its character's number.
constexpr std::array<char32_t, 32> kHighControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98
};

// What the first byte of a UTF-8 sequence says: the sequence's length, the first bits of the character, and
// the least character that needs this length.
struct Lead {
    std::size_t length = 1;
    char32_t bits = kBroken;
    char32_t least = 0;
};

Lead LeadOf(unsigned char byte)
{
    if (byte < 0x80)
        return {.length = 1, .bits = byte, .least = 0};
    if (byte >= 0xC0 && byte < 0xE0)
        return {.length = 2, .bits = byte & 0x1FU, .least = 0x80};
    if (byte >= 0xE0 && byte < 0xF0)
        return {.length = 3, .bits = byte & 0x0FU, .least = 0x800};
    if (byte >= 0xF0 && byte < 0xF8)
        return {.length = 4, .bits = byte & 0x07U, .least = 0x10000};
    return {};
}

bool Continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Removes one character, or one broken piece, from the front of the text. Surrogates and numbers beyond
// Unicode need no check: the page has none of them.
char32_t TakeCharacter(std::string_view& utf8)
{
    const Lead lead = LeadOf(static_cast<unsigned char>(utf8.front()));
    char32_t character = lead.bits;
    std::size_t taken = 1;
    while (taken < lead.length && taken < utf8.size() && Continues(utf8[taken])) {
        character = (character << 6U) | (static_cast<unsigned char>(utf8[taken]) & 0x3FU);
        ++taken;
    }
    utf8.remove_prefix(taken);
    return taken == lead.length && character >= lead.least ? character : kBroken;
}

// Three bytes are enough: every character of the page is below U+10000.
void AppendUtf8(std::string& utf8, char32_t character)
{
    if (character < 0x80) {
        utf8 += static_cast<char>(character);
        return;
    }
    if (character < 0x800) {
        utf8 += static_cast<char>(0xC0U | (character >> 6U));
    } else {
        utf8 += static_cast<char>(0xE0U | (character >> 12U));
        utf8 += static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
    }
    utf8 += static_cast<char>(0x80U | (character & 0x3FU));
}

} // namespace

char Cp1252FromCharacter(char32_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<char>(character);
    const auto* const found = std::ranges::find(kHighControls, character);
    return found == kHighControls.end() ? kNoSuchCharacter
                                        : static_cast<char>(0x80 + (found - kHighControls.begin()));
}

char32_t CharacterFromCp1252(char byte)
{
    const auto number = static_cast<unsigned char>(byte);
    return number >= 0x80 && number < 0xA0 ? kHighControls.at(number - 0x80U) : number;
}

std::string Cp1252FromUtf8(std::string_view utf8)
{
    std::string bytes;
    bytes.reserve(utf8.size());
    while (!utf8.empty())
        bytes += Cp1252FromCharacter(TakeCharacter(utf8));
    return bytes;
}

std::string Utf8FromCp1252(std::string_view bytes)
{
    std::string utf8;
    utf8.reserve(bytes.size());
    for (const char byte : bytes)
        AppendUtf8(utf8, CharacterFromCp1252(byte));
    return utf8;
}

std::string Cp1252FromUtf16(std::string_view wide)
{
    std::string bytes;
    bytes.reserve(wide.size() / 2);
    for (std::size_t i = 0; i + 1 < wide.size(); i += 2) {
        const auto low = static_cast<unsigned char>(wide[i]); // char may be signed
        const auto high = static_cast<unsigned char>(wide[i + 1]);
        bytes += Cp1252FromCharacter(low | static_cast<char32_t>(high) << 8);
    }
    return bytes;
}

std::string Utf16FromCp1252(std::string_view bytes)
{
    std::string wide;
    wide.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        const char32_t unit = CharacterFromCp1252(byte); // every character of the page is below U+10000
        wide += static_cast<char>(unit & 0xFF);
        wide += static_cast<char>(unit >> 8);
    }
    return wide;
}

} // namespace corvrec
