#include "tests/support/readable_bytes.h"
#include "tools/lab/buffer_line.h"

#include <gtest/gtest.h>
#include <string>

namespace corvrec::lab
{

namespace
{

constexpr auto kClock = std::chrono::sys_days{std::chrono::year{2026} / 11 / 21};

BufferLine Line(const Faults& faults)
{
    return {SimulatedBuffer(BufferModel::stratobox30, kClock, 0), faults};
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
    EXPECT_EQ(line.Send(7), BytesOf("<02>0131072   12 M  5  1N63.052111260000*<13>"));
    EXPECT_EQ(line.NextSendMs(), std::nullopt);
    EXPECT_EQ(line.Send(8), "");
}

TEST(BufferLine, AppliesFaultsToAnswers)
{
    struct Spoilt {
        Faults faults;
        std::string_view received;
        const char* answer;
    };
    for (const Spoilt& each : {
             Spoilt{{.silence = true}, "\x13\x02\x13", ""},
             Spoilt{{.partial = 3}, "\x13\x02\x13", "<13><02>01<13>"},
             Spoilt{{.garbage = true, .partial = 3}, "\x13\x02", "<B6><A7><95><94>"},
             Spoilt{{.echo = true}, "x\x13y", "x<13><13>y"},
             Spoilt{{.nuls = true, .partial = 2}, "\x02", "<02><00>0<00>"},
             Spoilt{{.burst = true}, "\x02", "<02>0131072   12 M  5  1N63.052111260000*<13>"},
         }) {
        BufferLine line = Line(each.faults);

        EXPECT_EQ(Readable(Exchange(line, each.received)), each.answer);
        EXPECT_EQ(line.NextSendMs(), std::nullopt);
    }
}

TEST(BufferLine, SendsEndlesslyAfterTheFirstReceivedByte)
{
    BufferLine line = Line({.endless = true});
    EXPECT_EQ(line.Send(0), "");

    EXPECT_EQ(Exchange(line, "\x13"), "\x13" + std::string(1024, '#'));
    EXPECT_EQ(line.NextSendMs(), 0);
    EXPECT_EQ(line.Send(0), std::string(1024, '#'));

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

    EXPECT_EQ(line.Send(110), BytesOf("<02>0"));
    EXPECT_EQ(line.Send(120), "\x13");
}

TEST(BufferLine, BreaksAfterTheGivenNumberOfBytes)
{
    BufferLine line = Line({.dropAfter = 4});

    EXPECT_EQ(Exchange(line, "\x13"), "\x13");
    EXPECT_FALSE(line.IsGone());
    EXPECT_EQ(Exchange(line, "\x02"), BytesOf("<02>01"));
    EXPECT_TRUE(line.IsGone());
    EXPECT_EQ(Exchange(line, "\x13"), "");

    line.Disconnect(); // counts from each connection
    EXPECT_FALSE(line.IsGone());
    EXPECT_EQ(Exchange(line, "\x13"), "\x13");
}

} // namespace

} // namespace corvrec::lab
