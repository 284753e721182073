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

} // namespace corvrec
