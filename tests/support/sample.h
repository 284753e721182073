#pragma once

#include "tests/support/sanitized.h"

#include <cstdlib>

namespace corvrec
{

// Exhaustive tests run a fixed sample by default, a smaller one with the sanitized libraries, and everything
// when CORVREC_LONG is in the environment (scripts/test --long).
template <typename Value>
Value SampleOrAll(Value sample, Value sanitizedSample, Value all)
{
    if (std::getenv("CORVREC_LONG") != nullptr)
        return all;
    return IsSanitized() ? sanitizedSample : sample;
}

} // namespace corvrec
