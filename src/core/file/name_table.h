#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

namespace corvrec::ini
{

// Where a section or a key begins, and the hash of its name. Deliberately no more: a file may hold one every
// two bytes, and the index may take only a few times the room of the file. Everything else is read from the
// text.
struct Entry {
    std::uint32_t begin = 0;
    std::uint32_t hash = 0;
};

// In file order. Unlike a vector, a deque grows without a second copy of its contents.
using Entries = std::deque<Entry>;

// The hash of a name, ignoring case.
std::uint32_t HashOf(std::string_view name);

// Hash table with open addressing that finds the first of equal names. It holds no names, only indices into a
// list of entries.
class NameTable
{
public:
    void Reserve(std::size_t names)
    {
        slots_ = {}; // free the old ones before the new ones are made
        slots_.assign(4 + names + names / 2, 0);
    }

    [[nodiscard]] bool HasRoomFor(std::size_t names) const { return slots_.size() >= 4 + names + names / 3; }

    // isSame(index): whether an entry with the same hash has the same name.
    template <typename IsSame>
    void AddFirst(const Entries& entries, std::size_t index, IsSame isSame)
    {
        std::uint32_t& slot = slots_[PlaceOf(entries, entries[index].hash, isSame)];
        if (slot == 0)
            slot = static_cast<std::uint32_t>(index + 1);
    }

    template <typename IsSame>
    std::optional<std::size_t> Find(const Entries& entries, std::uint32_t hash, IsSame isSame) const
    {
        const std::uint32_t slot = slots_[PlaceOf(entries, hash, isSame)];
        return slot == 0 ? std::nullopt : std::optional<std::size_t>(slot - 1);
    }

private:
    // The slot that holds the name, or the free one where it belongs.
    template <typename IsSame>
    std::size_t PlaceOf(const Entries& entries, std::uint32_t hash, IsSame isSame) const
    {
        auto place = static_cast<std::size_t>(std::uint64_t{hash} * slots_.size() >> 32);
        while (slots_[place] != 0 && !(entries[slots_[place] - 1].hash == hash && isSame(slots_[place] - 1)))
            place = place + 1 == slots_.size() ? 0 : place + 1;
        return place;
    }

    std::vector<std::uint32_t> slots_; // index + 1, or 0 for free; at least a quarter is always free
};

} // namespace corvrec::ini
