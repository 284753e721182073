#pragma once

#include <cstdio>
#include <cstdlib>

namespace corvrec::fuzz
{

// Prints what does not hold and aborts, which the fuzzer reports as a finding.
inline void Check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

} // namespace corvrec::fuzz
