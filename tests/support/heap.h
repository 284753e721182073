#pragma once

#include <cstddef>
#include <malloc.h>

#ifdef CORVREC_SANITIZED
// Declared here because g++ lacks the header of the sanitizer's run-time library.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace corvrec
{

// Heap bytes in use. Only the difference of two such figures means something.
inline std::size_t AllocatedBytes()
{
#ifdef CORVREC_SANITIZED
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

} // namespace corvrec
