#include "core/device/receive_buffer.h"

#include <algorithm>
#include <iterator>

namespace corvrec
{

void ReceiveBuffer::Append(std::string_view bytes)
{
    std::ranges::copy_if(bytes, std::back_inserter(characters_), [](char c) { return c != '\0'; });
}

std::string ReceiveBuffer::Take()
{
    const int count = inputLen_ == 0 ? Count() : std::min(Count(), inputLen_);
    const auto end = characters_.begin() + count;
    std::string taken(characters_.begin(), end);
    characters_.erase(characters_.begin(), end);
    return taken;
}

} // namespace corvrec
