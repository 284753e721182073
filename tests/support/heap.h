#pragma once

#include "tests/support/sanitized.h"

#ifdef _WIN32
#include "tests/support/wine.h" // windows.h, which psapi.h needs

#include <psapi.h>
#else
#include <malloc.h>
#endif

namespace corvrec
{

// Heap bytes in use; on Windows, all memory of the process. Only the difference of two such figures means
// something.
inline std::size_t AllocatedBytes()
{
#ifdef _WIN32
    PROCESS_MEMORY_COUNTERS_EX memory{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                           sizeof memory);
    return memory.PrivateUsage;
#else
    return IsSanitized() ? __sanitizer_get_current_allocated_bytes() : mallinfo2().uordblks;
#endif
}

} // namespace corvrec
