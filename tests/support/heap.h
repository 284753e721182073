#pragma once

#include <cstddef>
#include <malloc.h>

#ifdef __SANITIZE_ADDRESS__
// Of the sanitizer's run-time library; g++ comes without its header.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace corvrec
{

// Bytes of the heap that are in use. Two such figures can be compared, one means nothing.
inline std::size_t AllocatedBytes()
{
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

} // namespace corvrec
