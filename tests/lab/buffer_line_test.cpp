#include "tools/lab/buffer_line.h"

#include <gtest/gtest.h>
#include <string>

namespace corvrec::lab
{

namespace
{

constexpr auto kClock = std::chrono::sys_days{std::chrono::year{2026} / 11 / 21};
constexpr const char* kStatus = "\x02"
                                "0131072   12 M  5  1N63.052111260000*";

BufferLine Line(const Faults& faults)
{
    return {SimulatedBuffer(Model::stratobox30, kClock, 0), faults};
}

std::string Exchange(BufferLine& line, std::string_view bytes)
{
    line.Receive(bytes, 0);
    return line.Send(0);
}

TEST(BufferLine, SendsAnAnswerAtOnce)
{
    BufferLine line = Line({});

    line.Receive("\x02\x13", 7);

    EXPECT_EQ(line.NextSendMs(), 7);
    EXPECT_EQ(line.Send(7), kStatus + std::string("\x13"));
    EXPECT_EQ(line.NextSendMs(), std::nullopt);
    EXPECT_EQ(line.Send(8), "");
}

TEST(BufferLine, IsSilent)
{
    BufferLine line = Line({.silence = true});

    EXPECT_EQ(Exchange(line, "\x13\x02\x13"), "");
    EXPECT_EQ(line.NextSendMs(), std::nullopt);
}

TEST(BufferLine, CutsEachAnswer)
{
    BufferLine line = Line({.partial = 3});

    EXPECT_EQ(Exchange(line, "\x13\x02\x13"), "\x13\x02"
                                              "01\x13");
}

TEST(BufferLine, DamagesEveryByte)
{
    BufferLine line = Line({.garbage = true, .partial = 3});

    EXPECT_EQ(Exchange(line, "\x13\x02"), "\xB6\xA7\x95\x94");
}

TEST(BufferLine, EchoesFirst)
{
    BufferLine line = Line({.echo = true});

    EXPECT_EQ(Exchange(line, "x\x13y"), "x\x13\x13y");
}

TEST(BufferLine, SendsANulAfterEachByte)
{
    BufferLine line = Line({.nuls = true, .partial = 2});

    EXPECT_EQ(Exchange(line, "\x02"), std::string("\x02\0"
                                                  "0\0",
                                                  4));
}

TEST(BufferLine, NeverEndsOnceItIsSpokenTo)
{
    BufferLine line = Line({.endless = true});
    EXPECT_EQ(line.Send(0), "");

    EXPECT_EQ(Exchange(line, "\x13"), "\x13" + std::string(1024, '#'));
    EXPECT_EQ(line.NextSendMs(), 0);
    EXPECT_EQ(line.Send(0), std::string(1024, '#'));
}

TEST(BufferLine, StopsWhenNobodyListens)
{
    BufferLine line = Line({.endless = true});
    Exchange(line, "\x13");

    line.Disconnect();

    EXPECT_EQ(line.NextSendMs(), std::nullopt);
    EXPECT_EQ(line.Send(0), "");
}

TEST(BufferLine, PausesBeforeEachByteButTheFirst)
{
    BufferLine line = Line({.partial = 3, .pauseMs = 10});

    line.Receive("\x02", 100);

    EXPECT_EQ(line.NextSendMs(), 100);
    EXPECT_EQ(line.Send(100), "\x02");
    EXPECT_EQ(line.NextSendMs(), 110);
    EXPECT_EQ(line.Send(109), "");
    EXPECT_EQ(line.Send(120), "01") << "overdue bytes arrive together";
    EXPECT_EQ(line.NextSendMs(), std::nullopt);
}

TEST(BufferLine, KeepsTheOrderOfSlowAnswers)
{
    BufferLine line = Line({.partial = 2, .pauseMs = 10});

    line.Receive("\x02\x13", 100);

    EXPECT_EQ(line.Send(110), "\x02"
                              "0");
    EXPECT_EQ(line.Send(120), "\x13");
}

TEST(BufferLine, SendsAStatusInABurst)
{
    BufferLine line = Line({.burst = true});

    EXPECT_EQ(Exchange(line, "\x02"), kStatus + std::string("\x13"));
}

TEST(BufferLine, BreaksAfterTheGivenNumberOfBytes)
{
    BufferLine line = Line({.dropAfter = 4});

    EXPECT_EQ(Exchange(line, "\x13"), "\x13");
    EXPECT_FALSE(line.IsGone());
    EXPECT_EQ(Exchange(line, "\x02"), "\x02"
                                      "01");
    EXPECT_TRUE(line.IsGone());
    EXPECT_EQ(Exchange(line, "\x13"), "");
}

TEST(BufferLine, CountsFromEachConnection)
{
    BufferLine line = Line({.dropAfter = 2});
    Exchange(line, "\x02");

    line.Disconnect();

    EXPECT_FALSE(line.IsGone());
    EXPECT_EQ(Exchange(line, "\x02"), "\x02"
                                      "0");
}

} // namespace

} // namespace corvrec::lab
