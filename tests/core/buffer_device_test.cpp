#include "core/device/buffer_device.h"
#include "core/device/serial_port.h"
#include "tests/support/serial_line.h"

#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace corvrec
{

namespace
{

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;
using testing::Throws;

constexpr const char* kStatusRequest = "\x02";
constexpr const char* kLineClear = "\x13";

std::int64_t Elapsed(const SerialLine& line)
{
    return line.clock.TickMs() - FakeClock().TickMs();
}

TEST(SXAzzeraLinea, ClearsAroundTheDevicesAnswer)
{
    SerialLine line;
    line.pump.At(50, [&] { line.port.Receive("garbage\x13more"); });

    SXAzzeraLinea(line.wait, 30000);

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 ClearInput", "0 Output <13>", "50 ClearInput"));
    EXPECT_EQ(line.port.Waiting(), "");
}

TEST(SXAzzeraLinea, DoesNotTakeWhatCameBeforeForTheAnswer)
{
    SerialLine line;
    line.port.Receive("\x13\x13");

    SXAzzeraLinea(line.wait, 30000);

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 ClearInput", "0 Output <13>", "30001 ClearInput"));
}

TEST(SXAzzeraLinea, EndsOnACancelAndLeavesTheFlag)
{
    SerialLine line;
    line.pump.At(50, [&] { line.cancel.raised = true; });

    SXAzzeraLinea(line.wait, 30000);

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 ClearInput", "0 Output <13>", "50 ClearInput"));
    EXPECT_TRUE(line.cancel.raised);
}

TEST(SXAzzeraLinea, PassesThePortsErrorOn)
{
    SerialLine line;
    line.pump.At(50, [&] { line.port.Lose(); });

    EXPECT_THAT([&] { SXAzzeraLinea(line.wait, 30000); }, Throws<PortError>());
}

// Every model whose reply ends with "*", and numbers that belong to no model.
class RiceviSXStatusByText : public testing::TestWithParam<int>
{
};

TEST_P(RiceviSXStatusByText, CollectsUpToTheStarAndUpToTheLineClear)
{
    SerialLine line;
    line.pump.At(10, [&] { line.port.Receive("\x02status*"); });
    line.port.Answer(kLineClear, "then\x13");

    const std::string reply = RiceviSXStatus(line.wait, GetParam(), 30000);

    EXPECT_EQ(reply, "\x02status*then\x13");
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output <02>", "10 Output <13>"));
}

INSTANTIATE_TEST_SUITE_P(, RiceviSXStatusByText, testing::Values(20, 30, 40, 99, 0));

TEST(RiceviSXStatus, DoesNotWaitForALineClearThatCameWithTheStar)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "status*\x13");

    const std::string reply = RiceviSXStatus(line.wait, 40, 30000);

    EXPECT_EQ(reply, "status*\x13");
    EXPECT_EQ(Elapsed(line), 0);
}

TEST(RiceviSXStatus, FindsALineClearInFrontOfTheStar)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "\x13status*");

    const std::string reply = RiceviSXStatus(line.wait, 40, 30000);

    EXPECT_EQ(reply, "\x13status*");
    EXPECT_EQ(Elapsed(line), 0);
}

TEST(RiceviSXStatus, TakesOneMoreCharacterAtTheEnd)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "status*");
    line.pump.At(10, [&] { line.port.Receive("\x13!?"); });

    const std::string reply = RiceviSXStatus(line.wait, 30, 30000);

    EXPECT_EQ(reply, "status*\x13!");
    EXPECT_EQ(line.port.Waiting(), "?");
}

// The wait consumes the line clear before its first pass, and checks it only after it has taken the next
// character.
TEST(RiceviSXStatus, TakesTwoMoreCharactersWhenTheLineClearWaitsAlready)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "status*");
    line.port.Answer(kLineClear, "\x13!?.");

    const std::string reply = RiceviSXStatus(line.wait, 30, 30000);

    EXPECT_EQ(reply, "status*\x13!?");
    EXPECT_EQ(line.port.Waiting(), ".");
}

TEST(RiceviSXStatus, Takes18Then2Then1CharactersFromAnA11)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "abc*efghijklmno\x13qr");
    line.pump.At(70, [&] { line.port.Receive("stuv"); });

    const std::string reply = RiceviSXStatus(line.wait, 11, 30000);

    EXPECT_EQ(reply, "abc*efghijklmno\x13qrstu");
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output <02>", "0 Output <13>"));
    EXPECT_EQ(line.port.Waiting(), "v");
}

TEST(RiceviSXStatus, ReturnsAShortReplyOfAnA11)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "abcdefghijklmnopqr");

    const std::string reply = RiceviSXStatus(line.wait, 11, 30000);

    EXPECT_EQ(reply, "abcdefghijklmnopqr");
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output <02>", "0 Output <13>"));
    EXPECT_EQ(Elapsed(line), 30001);
}

class SilentDevice : public testing::TestWithParam<int>
{
};

TEST_P(SilentDevice, GivesAnEmptyReplyAfterBothTimeOuts)
{
    SerialLine line;

    const std::string reply = RiceviSXStatus(line.wait, GetParam(), 10000);

    EXPECT_EQ(reply, "");
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output <02>", "10001 Output <13>"));
    EXPECT_EQ(Elapsed(line), 20002);
}

INSTANTIATE_TEST_SUITE_P(, SilentDevice, testing::Values(11, 20, 30, 40));

TEST(RiceviSXStatus, ReturnsAPartialReply)
{
    SerialLine line;
    line.pump.At(10, [&] {
        line.port.Receive("\x02"
                          "0131072");
    });

    const std::string reply = RiceviSXStatus(line.wait, 30, 10000);

    EXPECT_EQ(reply, "\x02"
                     "0131072");
}

TEST(RiceviSXStatus, CancelledBeforeTheStarReturnsWhatCameAtOnce)
{
    SerialLine line;
    line.pump.At(10, [&] { line.port.Receive("stat"); });
    line.pump.At(500, [&] { line.cancel.raised = true; });

    const std::string reply = RiceviSXStatus(line.wait, 40, 30000);

    EXPECT_EQ(reply, "stat");
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output <02>", "500 Output <13>"));
    EXPECT_EQ(Elapsed(line), 500);
}

TEST(RiceviSXStatus, CancelledBeforeTheLineClearReturnsWhatCameAtOnce)
{
    SerialLine line;
    line.pump.At(10, [&] { line.port.Receive("status*"); });
    line.pump.At(500, [&] { line.cancel.raised = true; });

    const std::string reply = RiceviSXStatus(line.wait, 40, 30000);

    EXPECT_EQ(reply, "status*");
    EXPECT_EQ(Elapsed(line), 500);
    EXPECT_TRUE(line.cancel.raised);
}

TEST(RiceviSXStatus, CancelledWhileA11IsCountedReturnsWhatCameAtOnce)
{
    SerialLine line;
    line.pump.At(10, [&] { line.port.Receive("stat"); });
    line.pump.At(500, [&] { line.cancel.raised = true; });

    const std::string reply = RiceviSXStatus(line.wait, 11, 30000);

    EXPECT_EQ(reply, "stat");
    EXPECT_EQ(Elapsed(line), 500);
}

TEST(RiceviSXStatus, LeavesThePortReadingAllThatIsThere)
{
    SerialLine line;
    line.port.SetInputLen(5);
    line.port.Answer(kStatusRequest, "status*\x13");

    static_cast<void>(RiceviSXStatus(line.wait, 40, 30000));

    EXPECT_EQ(line.port.InputLen(), 0);
}

TEST(RiceviSXStatus, ThrowsWhenThePortIsLostBeforeTheStar)
{
    SerialLine line;
    line.pump.At(10, [&] { line.port.Receive("status"); });
    line.pump.At(15, [&] { line.port.Lose(); });

    EXPECT_THAT([&] { static_cast<void>(RiceviSXStatus(line.wait, 40, 30000)); }, Throws<PortError>());

    EXPECT_EQ(line.port.InputLen(), 0);
    EXPECT_EQ(Elapsed(line), 15);
}

TEST(RiceviSXStatus, KeepsTheReplyWhenThePortIsLostAfterTheStar)
{
    SerialLine line;
    line.pump.At(10, [&] { line.port.Receive("status*"); });
    line.pump.At(15, [&] { line.port.Lose(); });

    EXPECT_EQ(RiceviSXStatus(line.wait, 40, 30000), "status*");

    EXPECT_EQ(line.port.InputLen(), 0);
    EXPECT_EQ(Elapsed(line), 15);
}

// All characters are received, and most of them are not yet taken.
TEST(RiceviSXStatus, KeepsTheReplyWhenThePortIsLostWithTheStar)
{
    SerialLine line;
    line.pump.At(10, [&] {
        line.port.Receive("status*\x13");
        line.port.Lose();
    });

    EXPECT_EQ(RiceviSXStatus(line.wait, 40, 30000), "status*");
}

TEST(RiceviSXStatus, KeepsTheReplyWhenThePortIsLostAfterTheLineClear)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "status*");
    line.pump.At(10, [&] {
        line.port.Receive("\x13");
        line.port.Lose();
    });

    EXPECT_EQ(RiceviSXStatus(line.wait, 30, 30000), "status*\x13");
}

TEST(RiceviSXStatus, KeepsAnA11sReplyWhenThePortIsLostAfterAll20Characters)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "abcdefghijklmnopqr");
    line.pump.At(10, [&] {
        line.port.Receive("st");
        line.port.Lose();
    });

    EXPECT_EQ(RiceviSXStatus(line.wait, 11, 30000), "abcdefghijklmnopqrst");
}

TEST(RiceviSXStatus, ThrowsWhenAnA11sPortIsLostAfter18Characters)
{
    SerialLine line;
    line.port.Answer(kStatusRequest, "abcdefghijklmnop*r");
    line.pump.At(10, [&] { line.port.Lose(); });

    EXPECT_THAT([&] { static_cast<void>(RiceviSXStatus(line.wait, 11, 30000)); }, Throws<PortError>());
}

TEST(RiceviSXStatus, StaysSmallWhenTheDeviceNeverStops)
{
    SerialLine line;
    line.pump.SetPassMs(3);
    line.port.Pour('x');

    const std::string reply = RiceviSXStatus(line.wait, 40, 200'000);

    EXPECT_EQ(reply, std::string(65'536 + 2, 'x')); // what is kept, and the character read at the end
    EXPECT_EQ(Elapsed(line), 2 * 200'004);          // each wait's last pass begins at 200 001
}

TEST(ImpostaDataOra, PausesAfterEachDigit)
{
    SerialLine line;

    ImpostaDataOra(line.port, line.clock, "09:05", "31/12/26");

    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 Output <0F>", "0 Output 0", "20 Output 9", "40 Output 0", "60 Output 5",
                            "80 Output 3", "100 Output 1", "120 Output 1", "140 Output 2", "160 Output 2",
                            "180 Output 6", "200 WaitUntilSent 1000"));
    EXPECT_THAT(line.clock.Sleeps(), SizeIs(10));
    EXPECT_THAT(line.clock.Sleeps(), Each(20));
    EXPECT_EQ(line.pump.MayRest().size(), 0U) << "no events are handled";
}

TEST(ImpostaDataOra, PassesThePortsErrorOn)
{
    SerialLine line;
    line.port.Lose();

    EXPECT_THAT([&] { ImpostaDataOra(line.port, line.clock, "09:05", "31/12/26"); }, Throws<PortError>());

    EXPECT_EQ(line.port.Sent(), "");
}

} // namespace

} // namespace corvrec
