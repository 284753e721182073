#pragma once

#include <cstddef>

namespace corvrec
{

// Calls of operator new so far in the whole program. Linking this file replaces the operators.
std::size_t Allocations();

} // namespace corvrec
