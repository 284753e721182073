#include "core/file/name_table.h"

#include "core/file/letter_case.h"

namespace corvrec::ini
{

// FNV-1a of the folded name (offset basis and prime of 64 bits). NameTable uses the upper bits; the
// multiplication at the end (Knuth's: 2^32 over the golden ratio) carries the last letters into them.
std::uint32_t HashOf(std::string_view name)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : name)
        hash = (hash ^ Folded(byte)) * 0x100000001B3;
    return static_cast<std::uint32_t>(hash ^ hash >> 32) * 0x9E3779B1U;
}

} // namespace corvrec::ini
