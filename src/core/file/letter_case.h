#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace corvrec
{

// Upper case as Windows folds it in code page 1252. Accents stay. DF, B5, 83 and D7 have no partner in the
// page.
constexpr std::array<unsigned char, 256> FoldTable()
{
    std::array<unsigned char, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        const bool isLower = (i >= 'a' && i <= 'z') || (i >= 0xE0 && i <= 0xFE && i != 0xF7);
        table.at(i) = static_cast<unsigned char>(isLower ? i - 0x20 : i);
    }
    table.at(0x9A) = 0x8A;
    table.at(0x9C) = 0x8C;
    table.at(0x9E) = 0x8E;
    table.at(0xFF) = 0x9F;
    return table;
}

inline constexpr std::array<unsigned char, 256> kFolded = FoldTable();

inline unsigned char Folded(char byte)
{
    return kFolded[static_cast<unsigned char>(byte)];
}

inline bool EqualIgnoringCase(std::string_view left, std::string_view right)
{
    return std::ranges::equal(left, right, {}, Folded, Folded);
}

} // namespace corvrec
