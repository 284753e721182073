#include "core/clock.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace corvrec
{

DateTime SystemClock::Now() const
{
    const std::time_t now = std::time(nullptr);
    // localtime is not thread-safe; the program has one thread.
    const std::tm local = *std::localtime(&now);
    return {
        .year = local.tm_year + 1900,
        .month = local.tm_mon + 1,
        .day = local.tm_mday,
        .hour = local.tm_hour,
        .minute = local.tm_min,
        .second = local.tm_sec,
    };
}

std::int64_t SystemClock::TickMs() const
{
    using std::chrono::milliseconds;
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    const std::int64_t ms = std::chrono::duration_cast<milliseconds>(sinceStart).count();
    return ms - ms % kTickStepMs;
}

void SystemClock::Sleep(std::int64_t ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace corvrec
