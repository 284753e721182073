#pragma once

#include <cstdlib>

namespace corvrec
{

// Exhaustive tests run a fixed sample by default, and everything when CORVREC_LONG is in the environment
// (scripts/test --long).
template <typename Value>
Value SampleOrAll(Value sample, Value all)
{
    return std::getenv("CORVREC_LONG") == nullptr ? sample : all;
}

// Under AddressSanitizer a process takes tens of milliseconds to fork, and a save ten times as long: the
// tests that do thousands of both take fewer cases then.
#ifdef CORVREC_SANITIZED
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif

} // namespace corvrec
