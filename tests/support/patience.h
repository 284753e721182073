#pragma once

#include <chrono>

namespace corvrec
{

// How long a test waits for something that must happen. Only a failing test waits that long, so it is more
// than any busy machine needs.
inline constexpr std::chrono::milliseconds kPatience{60'000};
inline constexpr int kPatienceMs = static_cast<int>(kPatience.count());

} // namespace corvrec
