#pragma once

#include <cstddef>

#ifndef _WIN32 // MinGW has no sanitizers
// Of AddressSanitizer's run-time library; declared here because g++ lacks its header. Null in programs
// without it.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace corvrec
{

// Whether the program is linked with the sanitized libraries.
inline bool IsSanitized()
{
#ifdef _WIN32
    return false;
#else
    return &__sanitizer_get_current_allocated_bytes != nullptr;
#endif
}

} // namespace corvrec
