#include "core/clock.h"
#include "tests/support/fake_clock.h"

#include <chrono>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvrec
{

namespace
{

// Seconds since the epoch of a local time, computed by the C library instead of the code under test.
std::time_t SecondsOf(const DateTime& local)
{
    std::tm parts{};
    parts.tm_year = local.year - 1900;
    parts.tm_mon = local.month - 1;
    parts.tm_mday = local.day;
    parts.tm_hour = local.hour;
    parts.tm_min = local.minute;
    parts.tm_sec = local.second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

std::int64_t SteadyMs()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

TEST(SystemClock, NowIsTheLocalTime)
{
    const SystemClock clock;
    const std::time_t before = std::time(nullptr);

    const std::time_t now = SecondsOf(clock.Now());

    // The hour before the end of summer time comes twice, and the local time is ambiguous.
    const std::time_t repeatedHour = 3600;
    EXPECT_GE(now, before - repeatedHour);
    EXPECT_LE(now, std::time(nullptr) + repeatedHour);
}

TEST(SystemClock, TheTickMovesInSteps)
{
    const SystemClock clock;
    const std::int64_t before = SteadyMs();

    const std::int64_t tick = clock.TickMs();

    EXPECT_EQ(tick % 13, 0);
    EXPECT_GT(tick, before - 13);
    EXPECT_LE(tick, SteadyMs());
}

TEST(SystemClock, SleepLastsAsLongAsAsked)
{
    SystemClock clock;
    const auto before = std::chrono::steady_clock::now();

    clock.Sleep(2);

    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(2));
}

TEST(FakeClock, MovesOnlyWhenAsked)
{
    FakeClock clock;
    const DateTime date{.year = 2024, .month = 2, .day = 29, .hour = 23, .minute = 59, .second = 58};
    const std::int64_t before = clock.TickMs();

    clock.SetNow(date);
    clock.Advance(7);
    clock.Sleep(20);

    EXPECT_EQ(clock.Now(), date);
    EXPECT_EQ(clock.TickMs(), before + 27);
    EXPECT_THAT(clock.Sleeps(), testing::ElementsAre(20));
}

} // namespace

} // namespace corvrec
