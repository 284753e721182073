#pragma once

#include <cstddef>

namespace corvrec
{

// Calls of operator new so far, by the whole program. Linking this in replaces the operators.
std::size_t Allocations();

} // namespace corvrec
