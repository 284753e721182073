#pragma once

#include <chrono>

namespace corvrec
{

// How long a test waits for what has to come. Only a test that fails waits to the end of it, so it is longer
// than any busy machine needs.
inline constexpr std::chrono::milliseconds kPatience{60'000};
inline constexpr int kPatienceMs = static_cast<int>(kPatience.count());

} // namespace corvrec
