#include "core/site/conversions.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>

// What the shared vectors leave out: limits, and texts that no field and no file should contain.
namespace corvrec
{

namespace
{

using namespace std::string_literals;

constexpr double kLargest = std::numeric_limits<double>::max();

struct Number {
    const char* name;
    std::string text;
    double value;
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const Number& number, std::ostream* out)
{
    *out << number.name;
}

class OddNumber : public testing::TestWithParam<Number>
{
};

TEST_P(OddNumber, HasTheValueOfItsLeadingDigits)
{
    EXPECT_EQ(LeadingNumber(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Conversions, OddNumber,
    testing::Values(Number{"infinity", "inf", 0}, Number{"infinityWithSign", "-Infinity", 0},
                    Number{"notANumber", "nan", 0}, Number{"hexadecimalOfC", "0x1F", 0},
                    Number{"hexadecimal", "&H1F", 0}, Number{"octal", "&o17", 0},
                    Number{"exponent", "1e2", 1}, Number{"negativeExponent", "5e-1", 5},
                    Number{"capitalD", "1D+2", 1}, Number{"exponentAlone", "e5", 0},
                    Number{"pointAlone", ".", 0}, Number{"pointAndExponent", ".e5", 0},
                    Number{"pointAtTheEnd", "5.", 5}, Number{"twoPoints", "1.5.5", 1.5},
                    Number{"leadingBlanks", " \t\n-5", -5}, Number{"blankInside", "1 2", 1},
                    Number{"tabInside", "1\t2", 1}, Number{"lineFeedInside", "1\n2", 1},
                    Number{"blankBeforeThePoint", "1 .5", 1}, Number{"blankAfterThePoint", "1. 5", 1},
                    Number{"blankAfterTheSign", "- 5", 0}, Number{"twoSigns", "+-5", 0},
                    Number{"carriageReturn", "\r1", 0}, Number{"nul", "1\0002"s, 1},
                    Number{"verticalTab", "\v1", 0}, Number{"noBreakSpace", "\xC2\xA0"s + "1", 0},
                    Number{"tooSmall", "00." + std::string(400, '0') + "1", 0},
                    Number{"tooSmallNegative", "-." + std::string(400, '0') + "1", 0},
                    Number{"tooManyDigits", std::string(400, '9'), kLargest},
                    Number{"tooManyDigitsAfterZeros", "00" + std::string(400, '9') + ".5", kLargest},
                    Number{"tooManyDigitsNegative", "-" + std::string(400, '9'), -kLargest}),
    [](const auto& row) { return row.param.name; });

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

struct Start {
    const char* name;
    const char* stored;
    const char* field;
};

class OddStartTime : public testing::TestWithParam<Start>
{
};

TEST_P(OddStartTime, IsReadAsATimeOrNotAtAll)
{
    EXPECT_EQ(ReadStartTime(GetParam().stored).field, GetParam().field);
}

INSTANTIATE_TEST_SUITE_P(
    Conversions, OddStartTime,
    testing::Values(Start{"blanksInFront", "  8:5", "08:05"}, Start{"points", "8.5.9", "08:05"},
                    Start{"noMinutes", "08:", "__:__"}, Start{"noSeparator", "0830", "__:__"},
                    Start{"threeDigits", "008:30", "__:__"}, Start{"threeDigitsOfMinutes", "08:300", "__:__"},
                    Start{"secondsMissing", "08:30:", "__:__"},
                    Start{"secondsOutOfRange", "08:30:60", "__:__"}, Start{"letterAfter", "08:30x", "__:__"},
                    Start{"tabAfter", "08:30\tx", "__:__"}, Start{"negative", "-8:30", "__:__"},
                    Start{"blankInside", "08 :30", "__:__"}, Start{"twoMarks", "08:30pp", "__:__"}),
    [](const auto& row) { return row.param.name; });

TEST(StartTime, TwoMarksCountAsOne)
{
    EXPECT_TRUE(ReadStartTime("08:30pp").marked);
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
