#include "core/site/conversions.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

// What the shared vectors leave out: limits, and texts that no field and no file should contain.
namespace corvrec
{

namespace
{

using namespace std::string_literals;

constexpr double kLargest = std::numeric_limits<double>::max();

TEST(LeadingNumber, IsTheValueOfTheLeadingDigits)
{
    const std::string zeros(400, '0');
    const std::string nines(400, '9');
    for (const std::string& text :
         {"inf"s, "-Infinity"s, "nan"s, "0x1F"s, "&H1F"s, "&o17"s, "e5"s, "."s, ".e5"s, "- 5"s, "+-5"s,
          "\r1"s, "\v1"s, "\xC2\xA0"s + "1", "00." + zeros + "1", "-." + zeros + "1"})
        EXPECT_EQ(LeadingNumber(text), 0) << text;
    for (const std::string& text : {"1e2"s, "1D+2"s, "1 2"s, "1\t2"s, "1\n2"s, "1 .5"s, "1. 5"s, "1\0002"s})
        EXPECT_EQ(LeadingNumber(text), 1) << text;
    EXPECT_EQ(LeadingNumber("5e-1"), 5);
    EXPECT_EQ(LeadingNumber("5."), 5);
    EXPECT_EQ(LeadingNumber("1.5.5"), 1.5);
    EXPECT_EQ(LeadingNumber(" \t\n-5"), -5);
    EXPECT_EQ(LeadingNumber(nines), kLargest);
    EXPECT_EQ(LeadingNumber("00" + nines + ".5"), kLargest);
    EXPECT_EQ(LeadingNumber("-" + nines), -kLargest);
}

TEST(Whole, SaturatesAtBothEndsOf16Bits)
{
    EXPECT_EQ(Whole16(32767.4), 32767);
    EXPECT_EQ(Whole16(32767.5), 32767);
    EXPECT_EQ(Whole16(-32768.5), -32768);
    EXPECT_EQ(Whole16(kLargest), 32767);
    EXPECT_EQ(Whole16(-kLargest), -32768);
}

TEST(Whole, SaturatesAtBothEndsOf32Bits)
{
    EXPECT_EQ(Whole32(2147483647.4), 2147483647);
    EXPECT_EQ(Whole32(2147483647.5), 2147483647);
    EXPECT_EQ(Whole32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(Whole32(kLargest), 2147483647);
    EXPECT_EQ(Whole32(-kLargest), std::numeric_limits<std::int32_t>::min());
}

TEST(SignedText, HoldsTheWholeRange)
{
    EXPECT_EQ(SignedText(std::numeric_limits<std::int64_t>::max()), " 9223372036854775807");
    EXPECT_EQ(SignedText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(TwoDigits, PutsTheSignInFrontOfThem)
{
    EXPECT_EQ(TwoDigits(-12), "-12");
    EXPECT_EQ(TwoDigits(-1.5), "-02");
    EXPECT_EQ(TwoDigits(-0.4), "00");
}

TEST(PercentText, RoundsTheDecimalForm)
{
    EXPECT_EQ(PercentText(1.005), "1,01"); // slightly less in binary
    EXPECT_EQ(PercentText(0.015), ",02");
    EXPECT_EQ(PercentText(1.0049999), "1,");
    EXPECT_EQ(PercentText(7.9949999999999992), "7,99"); // one step below 7.995
    EXPECT_EQ(PercentText(9.995), "10,");
    EXPECT_EQ(PercentText(10), "10,");
}

TEST(PercentText, WritesNoSignForANegativeNumberThatRoundsToZero)
{
    EXPECT_EQ(PercentText(-0.004), ",");
    EXPECT_EQ(PercentText(-0.5), "-,5");
}

TEST(PercentText, SurvivesTheLargestAndTheSmallestNumber)
{
    EXPECT_EQ(PercentText(kLargest), "92233720368547758,07");
    EXPECT_EQ(PercentText(std::numeric_limits<double>::denorm_min()), ",");
}

TEST(Interval, OfTheContinuousKindIsEmptyAndStoredAsOne)
{
    EXPECT_EQ(IntervalText(ScheduleKind::continuous, "3600"), "");
    EXPECT_EQ(StoredInterval(ScheduleKind::continuous, "08:30"), "1");
}

TEST(Interval, BeyondTheRangeOf32BitsIsReadAsItWasStored)
{
    EXPECT_EQ(IntervalText(ScheduleKind::daily, StoredInterval(ScheduleKind::daily, "30000")), "30000");
    EXPECT_EQ(IntervalText(ScheduleKind::daily, "8639913600"), "99999");
    EXPECT_EQ(IntervalText(ScheduleKind::daily, "-2592000000"), "-30000");
    EXPECT_EQ(IntervalText(ScheduleKind::weekly, StoredInterval(ScheduleKind::weekly, "30000")), " 30000");
    EXPECT_EQ(IntervalText(ScheduleKind::hourly, "2592000000"), "__:__");
    EXPECT_EQ(IntervalText(ScheduleKind::hourly, std::string(300, '9')), "__:__");
}

TEST(Interval, EndsAtTheLastWholeCountThatIsReadBack)
{
    const std::string huge(300, '9');

    EXPECT_EQ(StoredInterval(ScheduleKind::daily, huge), " 9007199254713600");
    EXPECT_EQ(IntervalText(ScheduleKind::daily, " 9007199254713600"), "104249991374");
    EXPECT_EQ(StoredInterval(ScheduleKind::daily, "104249991374"), " 9007199254713600");
    EXPECT_EQ(StoredInterval(ScheduleKind::weekly, "-" + huge), "-9007199254368000");
    EXPECT_EQ(IntervalText(ScheduleKind::weekly, "-9007199254368000"), "-14892855910");
}

TEST(Interval, OfTheHourlyKindMayBeIncomplete)
{
    EXPECT_EQ(StoredInterval(ScheduleKind::hourly, ""), " 0");
    EXPECT_EQ(StoredInterval(ScheduleKind::hourly, "__:__"), " 0");
    EXPECT_EQ(StoredInterval(ScheduleKind::hourly, "2"), " 7200");
    EXPECT_EQ(StoredInterval(ScheduleKind::hourly, "2:"), " 7200");
    EXPECT_EQ(StoredInterval(ScheduleKind::hourly, ":5"), " 300");
    EXPECT_EQ(StoredInterval(ScheduleKind::hourly, "9999999999:9999999999"), " 7859790148020");
}

TEST(Interval, OfAnUnknownKindIsThatOfTheContinuousKind)
{
    const auto unknown = static_cast<ScheduleKind>(7);

    EXPECT_EQ(IntervalText(unknown, "3600"), "");
    EXPECT_EQ(StoredInterval(unknown, "2"), "1");
}

TEST(StartTime, IsReadAsATimeOrNotAtAll)
{
    EXPECT_EQ(ReadStartTime("  8:5").field, "08:05");
    EXPECT_EQ(ReadStartTime("8.5.9").field, "08:05");
    for (const char* const stored : {"08:", "0830", "008:30", "08:300", "08:30:", "08:30:60", "08:30x",
                                     "08:30\tx", "-8:30", "08 :30", "08:30pp"})
        EXPECT_EQ(ReadStartTime(stored).field, "__:__") << stored;
    EXPECT_TRUE(ReadStartTime("08:30pp").marked); // two marks count as one
}

TEST(IsDate, KnowsTheLeapYearsOfItsCentury)
{
    EXPECT_TRUE(IsDate("29/02/96"));
    EXPECT_FALSE(IsDate("29/02/98"));
    EXPECT_FALSE(IsDate("29-02-96"));
    EXPECT_FALSE(IsDate("29/02/1996"));
}

TEST(FlowCharacter, EveryControlCharacterIsStoredAsItWasRead)
{
    for (int code = 0; code < 32; ++code) {
        SCOPED_TRACE(code);
        const std::string stored = " " + std::to_string(code);

        const FlowCharacter character = ReadFlowCharacter(stored).value();

        EXPECT_TRUE(character.control);
        EXPECT_EQ(StoredFlowCharacter(character), stored);
    }
}

TEST(FlowCharacter, AnEmptyFieldCannotBeStored)
{
    EXPECT_EQ(StoredFlowCharacter({.control = true, .text = ""}), std::nullopt);
}

TEST(FlowCharacter, LimitsAreOneByte)
{
    EXPECT_EQ(ReadFlowCharacter("255"), (FlowCharacter{.control = false, .text = "ÿ"}));
    EXPECT_EQ(ReadFlowCharacter("255.5"), std::nullopt);
    EXPECT_EQ(ReadFlowCharacter("-63"), (FlowCharacter{.control = true, .text = "\x01"}));
    EXPECT_EQ(ReadFlowCharacter("-63.6"), std::nullopt);
}

TEST(DialNumber, CountsCharactersAndNotBytes)
{
    EXPECT_EQ(ReadDialNumber("èèDT5"), (DialNumber{.tone = true, .number = "5"}));
    EXPECT_EQ(ReadDialNumber("ATDPè€"), (DialNumber{.tone = false, .number = "è€"}));
}

TEST(AtPrefix, IsNotSeenInOtherAlphabets)
{
    EXPECT_EQ(WithAtPrefix("ÀT"), "ATÀT");
}

TEST(Alert, WithoutALimitIsStoredEmpty)
{
    EXPECT_EQ(StoredAlert({.on = true, .limit = std::nullopt}), "");
    EXPECT_EQ(StoredAlert({.on = false, .limit = std::nullopt}), "0");
}

TEST(Alert, IsOffWhenTheNumberRoundsToMinusOne)
{
    EXPECT_EQ(ReadAlert("-0.6"), (Alert{.on = false, .limit = std::nullopt}));
    EXPECT_EQ(ReadAlert("-1.6"), (Alert{.on = true, .limit = "-1.6"}));
}

} // namespace

} // namespace corvrec
