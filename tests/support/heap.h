#pragma once

#include "tests/support/sanitized.h"

#include <malloc.h>

namespace corvrec
{

// Heap bytes in use. Only the difference of two such figures means something.
inline std::size_t AllocatedBytes()
{
    return IsSanitized() ? __sanitizer_get_current_allocated_bytes() : mallinfo2().uordblks;
}

} // namespace corvrec
