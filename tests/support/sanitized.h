#pragma once

#include <cstddef>

// Of AddressSanitizer's run-time library; declared here because g++ lacks its header. Null in programs
// without it.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace corvrec
{

// Whether the program is linked with the sanitized libraries.
inline bool IsSanitized()
{
    return &__sanitizer_get_current_allocated_bytes != nullptr;
}

} // namespace corvrec
