#include "core/device/buffer_device.h"
#include "core/device/modComExtension.h"
#include "core/device/modem_session.h"
#include "core/device/serial_port.h"
#include "tests/support/serial_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Throws;

class ReplyWaitTest : public testing::Test
{
protected:
    // Milliseconds since the test began.
    [[nodiscard]] std::int64_t Elapsed() const { return line_.clock.TickMs() - start_; }

    SerialLine line_;
    std::string buffer_;

private:
    std::int64_t start_ = line_.clock.TickMs();
};

using ForCount = ReplyWaitTest;
using ForText = ReplyWaitTest;

TEST_F(ForCount, TakesTheGivenNumberOfCharactersAndLeavesTheRest)
{
    line_.port.Receive("abcdef");

    const Wait result = line_.wait.ForCount(3000, 4, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_, "abcd");
    EXPECT_EQ(line_.port.Waiting(), "ef");
}

TEST_F(ForCount, AppendsToTheBuffer)
{
    buffer_ = "before ";
    line_.port.Receive("ab");

    line_.wait.ForCount(3000, 2, buffer_);

    EXPECT_EQ(buffer_, "before ab");
}

TEST_F(ForCount, WaitsForCharactersThatComeOneByOne)
{
    line_.pump.At(100, [this] { line_.port.Receive("a"); });
    line_.pump.At(2999, [this] { line_.port.Receive("b"); });

    const Wait result = line_.wait.ForCount(3000, 2, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_, "ab");
    EXPECT_EQ(Elapsed(), 2999);
}

TEST_F(ForCount, OfZeroSucceedsWithoutAPass)
{
    line_.port.Receive("a");

    const Wait result = line_.wait.ForCount(3000, 0, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_, "");
    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

TEST_F(ForCount, WithATimeOutOfZeroSucceedsWithoutAPass)
{
    line_.port.Receive("a");

    const Wait result = line_.wait.ForCount(0, 5, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_, "");
    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

TEST_F(ForCount, OfASilentDeviceTimesOutOnceTheTimeIsPast)
{
    const Wait result = line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(result, Wait::timeOut);
    EXPECT_EQ(Elapsed(), 3001);
    EXPECT_THAT(line_.pump.MayRest(), ElementsAre(true, false)) << "one rest, and the last pass";
}

TEST_F(ForCount, EndedExactlyAtItsTimeOutIsASuccess)
{
    line_.pump.At(3000, [] {}); // any event of a window

    const Wait result = line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(Elapsed(), 3000);
    EXPECT_EQ(buffer_, "");
}

TEST_F(ForCount, KeepsWhatCameBeforeTheTimeOut)
{
    line_.pump.At(100, [this] { line_.port.Receive("abc"); });

    const Wait result = line_.wait.ForCount(3000, 4, buffer_);

    EXPECT_EQ(result, Wait::timeOut);
    EXPECT_EQ(buffer_, "abc");
}

TEST_F(ForCount, DoesNotRestWhileCharactersWait)
{
    line_.port.Receive("abc");

    line_.wait.ForCount(3000, 3, buffer_);

    EXPECT_THAT(line_.pump.MayRest(), ElementsAre(false, false, false));
    EXPECT_EQ(Elapsed(), 0);
}

TEST_F(ForCount, RestsAgainAfterAnEventThatBringsNothing)
{
    line_.pump.At(10, [] {});
    line_.pump.At(20, [] {});
    line_.pump.At(30, [this] { line_.port.Receive("a"); });

    const Wait result = line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(Elapsed(), 30);
    EXPECT_THAT(line_.pump.MayRest(), ElementsAre(true, true, true));
}

TEST_F(ForCount, IsEndedByTheCancelFlag)
{
    line_.pump.At(500, [this] { line_.cancel.raised = true; });

    const Wait result = line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(result, Wait::cancelled);
    EXPECT_EQ(Elapsed(), 500);
    EXPECT_TRUE(line_.cancel.raised);
}

TEST_F(ForCount, IsCancelledEvenWhenTheLastCharacterComesWithTheCancel)
{
    line_.pump.At(500, [this] {
        line_.port.Receive("a");
        line_.cancel.raised = true;
    });

    const Wait result = line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(result, Wait::cancelled);
    EXPECT_EQ(buffer_, "a");
}

TEST_F(ForCount, MakesNoPassWhenAlreadyCancelled)
{
    line_.port.Receive("a");
    line_.cancel.raised = true;

    const Wait result = line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(result, Wait::cancelled);
    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

TEST_F(ForCount, ReadsOneByOneAndThenAsBefore)
{
    line_.port.SetInputLen(7);
    int during = 0;
    line_.pump.At(100, [&] {
        during = line_.port.InputLen();
        line_.port.Receive("a");
    });

    line_.wait.ForCount(3000, 1, buffer_);

    EXPECT_EQ(during, 1);
    EXPECT_EQ(line_.port.InputLen(), 7);
}

TEST_F(ForCount, PassesThePortsErrorOnAndReadsAsBefore)
{
    line_.port.SetInputLen(7);
    line_.pump.At(100, [this] { line_.port.Receive("a"); });
    line_.pump.At(200, [this] { line_.port.Lose(); });

    EXPECT_THAT([&] { line_.wait.ForCount(3000, 5, buffer_); }, Throws<PortError>());

    EXPECT_EQ(line_.port.InputLen(), 7);
    EXPECT_EQ(buffer_, "a");
}

TEST_F(ForCount, ThrowsOnAClosedPort)
{
    line_.port.Close();

    EXPECT_THAT([&] { line_.wait.ForCount(3000, 1, buffer_); }, Throws<PortError>());
}

TEST_F(ForCount, TakesNoMoreFromADeviceThatNeverStops)
{
    line_.port.Pour('x');

    const Wait result = line_.wait.ForCount(3000, 18, buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_, std::string(18, 'x'));
}

TEST_F(ForText, FindsALowerCaseReply)
{
    line_.port.Receive("\r\nok\r\n");

    EXPECT_EQ(line_.wait.ForText(3000, "OK", buffer_), Wait::success);

    EXPECT_EQ(buffer_, "\r\nok");
    EXPECT_EQ(line_.port.Waiting(), "\r\n");
}

TEST_F(ForText, FindsAnUpperCaseReply)
{
    line_.port.Receive("CONNECT 9600");

    EXPECT_EQ(line_.wait.ForText(3000, "connect", buffer_), Wait::success);

    EXPECT_EQ(buffer_, "CONNECT");
}

TEST_F(ForText, IgnoresTheCaseOfLettersOnly)
{
    // Bytes that differ by 0x20, as upper and lower case do.
    const std::vector<std::pair<std::string, std::string>> pairs{{"[", "{"}, {"@", "`"}, {"\xC8", "\xE8"}};
    for (const auto& [received, text] : pairs) {
        line_.port.Receive(received);

        EXPECT_EQ(line_.wait.ForText(3000, text), Wait::timeOut) << text;
    }
}

TEST_F(ForText, FindsAReplyThatWaitsAlreadyWithoutResting)
{
    line_.port.Receive("OK");

    const Wait result = line_.wait.ForText(3000, "OK", buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_THAT(line_.pump.MayRest(), ElementsAre(false))
        << "the first letter is taken before the first pass";
}

TEST_F(ForText, FindsOneCharacterThatWaitsAlreadyWithoutResting)
{
    line_.port.Receive("*");

    const Wait result = line_.wait.ForText(3000, "*", buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_EQ(buffer_, "*");
}

TEST_F(ForText, FindsWhatTheCallersBufferHoldsWithoutResting)
{
    buffer_ = "in front * and behind";

    const Wait result = line_.wait.ForText(3000, "*", buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_EQ(buffer_, "in front * and behind");
}

TEST_F(ForText, FindsWhatBeginsInTheCallersBuffer)
{
    buffer_ = "CONN";
    line_.pump.At(100, [this] { line_.port.Receive("ECT"); });

    EXPECT_EQ(line_.wait.ForText(3000, "CONNECT", buffer_), Wait::success);

    EXPECT_EQ(buffer_, "CONNECT");
    EXPECT_EQ(Elapsed(), 100);
}

TEST_F(ForText, FindsAReplyWhoseLettersComeOneByOne)
{
    line_.pump.At(100, [this] { line_.port.Receive("O"); });
    line_.pump.At(200, [this] { line_.port.Receive("O"); });
    line_.pump.At(300, [this] { line_.port.Receive("K"); });

    EXPECT_EQ(line_.wait.ForText(3000, "OK", buffer_), Wait::success);

    EXPECT_EQ(buffer_, "OOK");
    EXPECT_EQ(Elapsed(), 300);
}

TEST_F(ForText, DoesNotTakeSeparatedLettersForTheText)
{
    line_.port.Receive("O K");

    EXPECT_EQ(line_.wait.ForText(3000, "OK", buffer_), Wait::timeOut);

    EXPECT_EQ(buffer_, "O K");
}

TEST_F(ForText, RestsOnceAllIsSearched)
{
    const Wait result = line_.wait.ForText(3000, "OK", buffer_);

    EXPECT_EQ(result, Wait::timeOut);
    EXPECT_EQ(Elapsed(), 3001);
    EXPECT_THAT(line_.pump.MayRest(), ElementsAre(false, true, false));
}

TEST_F(ForText, EndedExactlyAtItsTimeOutIsASuccess)
{
    line_.pump.At(3000, [] {});

    EXPECT_EQ(line_.wait.ForText(3000, "OK", buffer_), Wait::success);

    EXPECT_EQ(Elapsed(), 3000);
    EXPECT_EQ(buffer_, "");
}

TEST_F(ForText, WithATimeOutOfZeroSucceedsWithoutAPass)
{
    EXPECT_EQ(line_.wait.ForText(0, "OK", buffer_), Wait::success);

    EXPECT_EQ(buffer_, "");
    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

TEST_F(ForText, TakesOneWaitingCharacterBeforeTheTimeBegins)
{
    line_.port.Receive("ab");

    line_.wait.ForText(0, "OK", buffer_);

    EXPECT_EQ(buffer_, "a");
    EXPECT_EQ(line_.port.Waiting(), "b");
}

TEST_F(ForText, IsEndedByTheCancelFlag)
{
    line_.pump.At(500, [this] { line_.cancel.raised = true; });

    EXPECT_EQ(line_.wait.ForText(3000, "OK"), Wait::cancelled);

    EXPECT_EQ(Elapsed(), 500);
    EXPECT_TRUE(line_.cancel.raised);
}

TEST_F(ForText, IsCancelledEvenWhenTheTextComesWithTheCancel)
{
    line_.pump.At(500, [this] {
        line_.port.Receive("*");
        line_.cancel.raised = true;
    });

    EXPECT_EQ(line_.wait.ForText(3000, "*", buffer_), Wait::cancelled);

    EXPECT_EQ(buffer_, "*");
}

TEST_F(ForText, ReadsOneByOneAndThenAsBefore)
{
    line_.port.SetInputLen(0);
    int during = 0;
    line_.pump.At(100, [&] {
        during = line_.port.InputLen();
        line_.port.Receive("OK and more");
    });

    line_.wait.ForText(3000, "OK");

    EXPECT_EQ(during, 1);
    EXPECT_EQ(line_.port.InputLen(), 0);
    EXPECT_EQ(line_.port.Waiting(), " and more");
}

TEST_F(ForText, PassesThePortsErrorOnAndReadsAsBefore)
{
    line_.port.SetInputLen(7);
    line_.pump.At(200, [this] { line_.port.Lose(); });

    EXPECT_THAT([&] { line_.wait.ForText(3000, "OK", buffer_); }, Throws<PortError>());

    EXPECT_EQ(line_.port.InputLen(), 7);
    EXPECT_EQ(Elapsed(), 200);
}

TEST_F(ForText, ThrowsAtOnceOnALostPort)
{
    line_.port.SetInputLen(7);
    line_.port.Lose();

    EXPECT_THAT([&] { line_.wait.ForText(3000, "OK"); }, Throws<PortError>());

    EXPECT_EQ(line_.port.InputLen(), 7);
    EXPECT_THAT(line_.pump.MayRest(), IsEmpty());
}

// A device that sends "begin", then a character every three milliseconds, and after 299 s the text.
class Flood : public ReplyWaitTest
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
};

TEST_F(Flood, KeepsTheBeginningAndTheEndInTheBuffer)
{
    const Wait result = line_.wait.ForText(300'000, "connect", buffer_);

    EXPECT_EQ(result, Wait::success);
    EXPECT_EQ(buffer_.size(), 65'536U + 7);
    EXPECT_TRUE(buffer_.starts_with("beginxxx"));
    EXPECT_EQ(buffer_.substr(65'535), "xCONNECT");
}

TEST_F(Flood, IsTimedOutLikeSilence)
{
    EXPECT_EQ(line_.wait.ForText(290'000, "connect", buffer_), Wait::timeOut);

    EXPECT_EQ(Elapsed(), 290'004); // the last pass begins at 290 001
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

    EXPECT_EQ(Elapsed(), 50'001);
}

// The text is found wherever it is relative to the part that the buffer keeps.
class KeptHead : public ReplyWaitTest, public testing::WithParamInterface<std::size_t>
{
};

TEST_P(KeptHead, DoesNotHideTheText)
{
    line_.port.Receive("abcdefgOKh");

    EXPECT_EQ(line_.wait.ForText(3000, "ok", buffer_, GetParam()), Wait::success);

    EXPECT_TRUE(buffer_.ends_with("OK")) << buffer_;
    EXPECT_EQ(line_.port.Waiting(), "h");
}

INSTANTIATE_TEST_SUITE_P(, KeptHead, testing::Range(std::size_t{0}, std::size_t{12}));

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
