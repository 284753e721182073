#pragma once

#include <cstdlib>

namespace corvrec
{

// Tests that could try everything run a fixed sample by default, and everything where CORVREC_LONG is set in
// the environment (scripts/test --long).
template <typename Value>
Value SampleOrAll(Value sample, Value all)
{
    return std::getenv("CORVREC_LONG") == nullptr ? sample : all;
}

} // namespace corvrec
