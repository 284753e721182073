#include "core/device/buffer_device.h"
#include "core/device/modComExtension.h"
#include "core/device/modem_session.h"
#include "core/device/serial_port.h"
#include "tests/support/serial_line.h"

#include <algorithm>
#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

using testing::IsEmpty;
using testing::Throws;

// One wait with a time-out of 3 s.
struct Waiting {
    const char* name;
    const char* before; // in the caller's buffer
    const char* input;  // received before the wait
    const char* script;
    Wait result;
    const char* buffer;
    int endMs;
    const char* passes;    // "r" for each that may rest, "." for the others
    const char* left = ""; // input that is not read
};

constexpr auto kTimeOut = Wait::timeOut;
constexpr auto kSuccess = Wait::success;
constexpr auto kCancelled = Wait::cancelled;

void Expect(const Waiting& expected, Wait (*wait)(ReplyWait&, std::string& buffer))
{
    SCOPED_TRACE(expected.name);
    SerialLine line(expected.script);
    line.port.Receive(expected.input);
    std::string buffer = expected.before;

    EXPECT_EQ(wait(line.wait, buffer), expected.result);

    EXPECT_EQ(buffer, expected.buffer);
    EXPECT_EQ(line.Elapsed(), expected.endMs);
    std::string passes;
    for (const bool mayRest : line.pump.MayRest())
        passes += mayRest ? 'r' : '.';
    EXPECT_EQ(passes, expected.passes);
    EXPECT_EQ(line.port.Waiting(), expected.left);
    EXPECT_EQ(line.cancel.raised, expected.result == Wait::cancelled);
    EXPECT_EQ(line.port.InputLen(), 0);
}

TEST(ForCount, OfTwoCharacters)
{
    for (const Waiting& expected : {

             Waiting{"LeavesTheRest", "before ", "abc", "", kSuccess, "before ab", 0, "..", "c"},
             Waiting{"OneByOne", "", "", "100: a | 2999: b", kSuccess, "ab", 2999, "rr"},
             Waiting{"Silence", "", "", "", kTimeOut, "", 3001, "r."}, // one rest, and the last pass
             // Any event of a window.
             Waiting{"EndedExactlyAtTheTimeOut", "", "", "3000: ", kSuccess, "", 3000, "r."},
             Waiting{"OneOnly", "", "", "100: a", kTimeOut, "a", 3001, "rr."},
             Waiting{"EventsThatBringNothing", "", "a", "10:  | 20:  | 30: b", kSuccess, "ab", 30, ".rrr"},
             Waiting{"Cancelled", "", "", "500: cancelled", kCancelled, "", 500, "r"},
             Waiting{"CancelledWithTheLast", "", "a", "500: b | 500: cancelled", kCancelled, "ab", 500, ".r"},
         })
        Expect(expected, [](ReplyWait& wait, std::string& buffer) { return wait.ForCount(3000, 2, buffer); });
}

TEST(ForText, OfOk)
{
    for (const Waiting& expected : {

             Waiting{"LowerCase", "", "\r\nok\r\n", "", kSuccess, "\r\nok", 0, "...", "\r\n"},
             // The first letter is taken before the first pass.
             Waiting{"IsWaitingAlready", "", "OK", "", kSuccess, "OK", 0, "."},
             Waiting{"InTheCallersBuffer", "an OK in front", "", "", kSuccess, "an OK in front", 0, "."},
             Waiting{"BeginsInTheCallersBuffer", "O", "", "100: K", kSuccess, "OK", 100, ".r"},
             Waiting{"OneByOne", "", "", "100: O | 200: O | 300: K", kSuccess, "OOK", 300, ".rrr"},
             Waiting{"Separated", "", "O K", "", kTimeOut, "O K", 3001, "..r."},
             Waiting{"Silence", "", "", "", kTimeOut, "", 3001, ".r."},
             Waiting{"EndedExactlyAtTheTimeOut", "", "", "3000: ", kSuccess, "", 3000, ".r."},
             Waiting{"Cancelled", "", "", "500: cancelled", kCancelled, "", 500, ".r"},
             Waiting{"CancelledWithTheText", "", "O", "500: K | 500: cancelled", kCancelled, "OK", 500, ".r"},
         })
        Expect(expected,
               [](ReplyWait& wait, std::string& buffer) { return wait.ForText(3000, "OK", buffer); });
}

// Both kinds of wait.
enum class Kind { count, text };

class EitherWait : public testing::TestWithParam<Kind>
{
protected:
    Wait For(int timeOutMs, int count = 5)
    {
        return GetParam() == Kind::count ? line_.wait.ForCount(timeOutMs, count, buffer_)
                                         : line_.wait.ForText(timeOutMs, "*", buffer_);
    }

    SerialLine line_;
    std::string buffer_;
};

INSTANTIATE_TEST_SUITE_P(, EitherWait, testing::Values(Kind::count, Kind::text));

TEST_P(EitherWait, WithATimeOutOfZeroSucceedsWithoutAPass)
{
    line_.port.Receive("ab");

    EXPECT_EQ(For(0), Wait::success);

    // For a text, one waiting character is taken before the time begins.
    EXPECT_EQ(buffer_, GetParam() == Kind::count ? "" : "a");
    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

TEST_P(EitherWait, MakesNoPassWhenAlreadyCancelled)
{
    line_.cancel.raised = true;

    EXPECT_EQ(For(3000), Wait::cancelled);

    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

TEST_P(EitherWait, ReadsOneByOneAndRestoresInputLen)
{
    line_.port.SetInputLen(7);
    int during = 0;
    line_.pump.At(100, [&] {
        during = line_.port.InputLen();
        line_.port.Receive("ab*cd and more");
    });

    For(3000);

    EXPECT_EQ(during, 1);
    EXPECT_EQ(line_.port.InputLen(), 7);
}

TEST_P(EitherWait, PassesThePortsErrorOnAndRestoresInputLen)
{
    line_.port.SetInputLen(7);
    line_.pump.At(100, [this] { line_.port.Receive("a"); });
    line_.pump.At(200, [this] { line_.port.Lose(); });

    EXPECT_THAT([&] { For(3000); }, Throws<PortError>());

    EXPECT_EQ(line_.port.InputLen(), 7);
    EXPECT_EQ(buffer_, "a");
    EXPECT_EQ(line_.Elapsed(), 200);
}

TEST_P(EitherWait, ThrowsAtOnceOnAClosedPort)
{
    line_.port.SetInputLen(7);
    line_.port.Close();

    EXPECT_THAT([&] { For(3000); }, Throws<PortError>());

    EXPECT_EQ(line_.port.InputLen(), 7);
}

TEST(ForCount, OfZeroSucceedsWithoutAPass)
{
    SerialLine line;
    line.port.Receive("a");
    std::string buffer;

    EXPECT_EQ(line.wait.ForCount(3000, 0, buffer), Wait::success);

    EXPECT_EQ(buffer, "");
    EXPECT_THAT(line.pump.MayRest(), IsEmpty());
}

TEST(ForCount, TakesNoMoreFromADeviceThatNeverStops)
{
    SerialLine line;
    line.port.Pour('x');
    std::string buffer;

    EXPECT_EQ(line.wait.ForCount(3000, 18, buffer), Wait::success);

    EXPECT_EQ(buffer, std::string(18, 'x'));
}

TEST(ForText, IgnoresTheCaseOfLettersOnly)
{
    SerialLine line;
    // Bytes that differ by 0x20, as upper and lower case do.
    const std::vector<std::pair<std::string, std::string>> pairs{{"[", "{"}, {"@", "`"}, {"\xC8", "\xE8"}};
    for (const auto& [received, text] : pairs) {
        line.port.Receive(received);

        EXPECT_EQ(line.wait.ForText(3000, text), Wait::timeOut) << text;
    }
    line.port.Receive("AZ");
    EXPECT_EQ(line.wait.ForText(3000, "az"), Wait::success);
}

// A device that sends "begin", then a character every three milliseconds, and after 299 s the text.
class Flood : public testing::Test
{
protected:
    Flood()
    {
        line_.pump.SetPassMs(3);
        line_.port.Receive("begin");
        line_.pump.At(10, [this] { line_.port.Pour('x'); });
        line_.pump.At(299'000, [this] {
            line_.port.Pour(std::nullopt);
            line_.port.Receive("CONNECT");
        });
    }

    SerialLine line_;
    std::string buffer_;
};

TEST_F(Flood, KeepsTheBeginningAndTheEndInTheBuffer)
{
    const Wait result = line_.wait.ForText(300'000, "connect", buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_.size(), 65'536U + 7);
    EXPECT_TRUE(buffer_.starts_with("beginxxx"));
    EXPECT_EQ(buffer_.substr(65'535), "xCONNECT");
}

TEST_F(Flood, TimesOutLikeSilence)
{
    EXPECT_EQ(line_.wait.ForText(290'000, "connect", buffer_), Wait::timeOut);

    EXPECT_EQ(line_.Elapsed(), 290'004); // the last pass begins at 290 001
}

TEST_F(Flood, NeverGrowsABufferThatKeepsNothing)
{
    std::size_t longest = 0;
    for (int ms = 11; ms < 299'000; ms += 100)
        line_.pump.At(ms, [&] { longest = std::max(longest, buffer_.size()); });

    const Wait result = line_.wait.ForText(300'000, "connect", buffer_, 0);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(longest, 7U);
    EXPECT_EQ(buffer_, "CONNECT");
}

TEST_F(Flood, IsEndedByTheCancelFlag)
{
    line_.pump.At(50'000, [this] { line_.cancel.raised = true; });

    EXPECT_EQ(line_.wait.ForText(300'000, "connect"), Wait::cancelled);

    EXPECT_EQ(line_.Elapsed(), 50'001);
}

// The text is found wherever it is relative to the part that the buffer keeps.
TEST(ForText, FindsTheTextWhateverTheBufferKeeps)
{
    for (std::size_t keptHead = 0; keptHead < 12; ++keptHead) {
        SerialLine line;
        line.port.Receive("abcdefgOKh");
        std::string buffer;

        EXPECT_EQ(line.wait.ForText(3000, "ok", buffer, keptHead), Wait::success);

        EXPECT_TRUE(buffer.ends_with("OK")) << buffer;
        EXPECT_EQ(line.port.Waiting(), "h");
    }
}

// Otherwise a wait could end exactly at its time-out, and a silent device would pass for one that answered.
TEST(TimeOuts, AreNoMultiplesOfTheClocksStep)
{
    for (const int timeOutMs : {kModemCommandTimeOutMs, kDialTimeOutMs, kEscapeTimeOutMs, kHangUpTimeOutMs,
                                kLineClearTimeOutMs, kStatusTimeOutMs, kStatusByModemTimeOutMs})
        EXPECT_NE(timeOutMs % kTickStepMs, 0) << timeOutMs;
}

TEST(TimeOuts, AreThoseOfTheDevices)
{
    EXPECT_EQ(kModemCommandTimeOutMs, 3000);
    EXPECT_EQ(kDialTimeOutMs, 120000);
    EXPECT_EQ(kEscapeTimeOutMs, 10000);
    EXPECT_EQ(kHangUpTimeOutMs, 6000);
    EXPECT_EQ(kLineClearTimeOutMs, 30000);
    EXPECT_EQ(kStatusTimeOutMs, 30000);
    EXPECT_EQ(kStatusByModemTimeOutMs, 10000);
}

} // namespace

} // namespace corvrec
