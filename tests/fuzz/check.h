#pragma once

#include <cstdio>
#include <cstdlib>

namespace corvrec::fuzz
{

// Ends the program with a word when something does not hold: the fuzzer takes that as a finding.
inline void Check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

} // namespace corvrec::fuzz
