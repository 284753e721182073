#include "tools/lab/buffer_line.h"
#include "tools/lab/simulated_modem.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace corvrec::lab
{

namespace
{

constexpr auto kClock = std::chrono::sys_days{std::chrono::year{2026} / 11 / 21};
constexpr const char* kOk = "\r\nOK\r\n";
constexpr const char* kConnected = "\r\nCONNECT 9600\r\n";
constexpr const char* kNoCarrier = "\r\nNO CARRIER\r\n";

// A modem connected to a 3.0.
struct Line {
    explicit Line(const ModemBehaviour& behaviour = {.dialDelayMs = 0}, const Faults& faults = {})
        : modem(std::make_unique<BufferLine>(SimulatedBuffer(Model::stratobox30, kClock, 0), faults),
                behaviour)
    {
    }

    std::string Exchange(std::string_view bytes, std::int64_t nowMs = 0)
    {
        modem.Receive(bytes, nowMs);
        return modem.Send(nowMs);
    }

    SimulatedModem modem;
};

TEST(SimulatedModem, AnswersCommandsOfAnyCase)
{
    Line line;

    EXPECT_EQ(line.Exchange("AT&F\r"), kOk);
    EXPECT_EQ(line.Exchange("atx3s0=0&m5\r"), kOk);
    EXPECT_EQ(line.Exchange("AT\r\n"), kOk);
    EXPECT_EQ(line.modem.NextSendMs(), std::nullopt);
}

TEST(SimulatedModem, WaitsForTheEndOfACommand)
{
    Line line;

    EXPECT_EQ(line.Exchange("AT"), "");
    EXPECT_EQ(line.Exchange("&F"), "");
    EXPECT_EQ(line.Exchange("\r"), kOk);
}

TEST(SimulatedModem, IgnoresWhatIsNoCommand)
{
    Line line;

    EXPECT_EQ(line.Exchange("\x13\x02\r"), "");
    EXPECT_EQ(line.Exchange("\r"), "");
    EXPECT_EQ(line.Exchange("AT\r"), kOk);
}

TEST(SimulatedModem, EchoesCommandsOnly)
{
    Line line({.echo = true, .dialDelayMs = 0});

    EXPECT_EQ(line.Exchange("atZ\r"), std::string("atZ\r") + kOk);
    EXPECT_EQ(line.Exchange("ATDT1\r"), std::string("ATDT1\r") + kConnected);
    EXPECT_EQ(line.Exchange("\x13"), "\x13") << "only the device's answer";
}

TEST(SimulatedModem, SaysNothingWhenSwitchedOff)
{
    Line line({.silent = true});

    EXPECT_EQ(line.Exchange("AT\rATDT1\r", 5000), "");
    EXPECT_EQ(line.modem.NextSendMs(), std::nullopt);
}

TEST(SimulatedModem, ConnectsAfterTheDelay)
{
    Line line({.dialDelayMs = 1500});

    EXPECT_EQ(line.Exchange("ATDP0123\r", 100), "");
    EXPECT_EQ(line.modem.NextSendMs(), 1600);
    EXPECT_EQ(line.modem.Send(1599), "");
    EXPECT_FALSE(line.modem.IsConnected());
    EXPECT_EQ(line.modem.Send(1600), kConnected);
    EXPECT_TRUE(line.modem.IsConnected());
    EXPECT_EQ(line.modem.NextSendMs(), std::nullopt);
}

TEST(SimulatedModem, StaysAtCommandsWhenTheCallFails)
{
    for (const std::string answer : {"BUSY", "NO CARRIER", "NO ANSWER"}) {
        Line line({.dialAnswer = answer, .dialDelayMs = 0});
        EXPECT_EQ(line.Exchange("ATDT0123\r"), "\r\n" + answer + "\r\n");
        EXPECT_FALSE(line.modem.IsConnected());
        EXPECT_EQ(line.Exchange("AT\r"), kOk);
    }
}

TEST(SimulatedModem, DialsForEverWithoutAnAnswer)
{
    Line line({.dialAnswer = "", .dialDelayMs = 0});

    EXPECT_EQ(line.Exchange("ATDT0123\r"), "");
    EXPECT_EQ(line.modem.NextSendMs(), std::nullopt);
    EXPECT_EQ(line.modem.Send(1'000'000), "");
}

TEST(SimulatedModem, StopsDiallingAtTheNextByte)
{
    Line line({.dialDelayMs = 1000});
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("AT&F\r", 500), std::string(kNoCarrier) + kOk);
    EXPECT_EQ(line.modem.Send(2000), "");
    EXPECT_FALSE(line.modem.IsConnected());
}

TEST(SimulatedModem, PassesDataOnBothWays)
{
    Line line;
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("\x13"), "\x13");
    EXPECT_EQ(line.Exchange("\x02").size(), 38U);
    EXPECT_EQ(line.Exchange("AT\r"), "") << "no longer a command";
}

TEST(SimulatedModem, PassesDataOnWhenItIsDue)
{
    Line line({.dialDelayMs = 0}, {.pauseMs = 10});
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("\x02", 100), "\x02");
    EXPECT_EQ(line.modem.NextSendMs(), 110);
    EXPECT_EQ(line.modem.Send(110), "0");
}

TEST(SimulatedModem, HangsUpAfterTheEscape)
{
    Line line;
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("+++"), kOk);
    EXPECT_TRUE(line.modem.IsConnected());
    EXPECT_EQ(line.Exchange("ATH\r"), kOk);
    EXPECT_FALSE(line.modem.IsConnected());
}

TEST(SimulatedModem, ReturnsToTheConnection)
{
    Line line;
    line.Exchange("ATDT0123\r");
    line.Exchange("+++");

    EXPECT_EQ(line.Exchange("ATO\r"), "\r\nCONNECT\r\n");
    EXPECT_EQ(line.Exchange("\x13"), "\x13");
}

TEST(SimulatedModem, HasNoConnectionToReturnTo)
{
    Line line;

    EXPECT_EQ(line.Exchange("ATO\r"), kNoCarrier);
    EXPECT_EQ(line.Exchange("AT\r"), kOk);
}

TEST(SimulatedModem, TakesThreeSuccessivePlusSignsAsTheEscape)
{
    Line line({.dialDelayMs = 0}, {.echo = true});
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("++x+"), "++x");
    EXPECT_EQ(line.Exchange("y"), "+y");
    EXPECT_EQ(line.Exchange("+"), "");
    EXPECT_EQ(line.Exchange("++"), kOk);
}

TEST(SimulatedModem, HangsUpWhenThePortIsClosed)
{
    Line line;
    line.Exchange("ATDT0123\r");

    line.modem.Disconnect();

    EXPECT_FALSE(line.modem.IsConnected());
    EXPECT_EQ(line.Exchange("AT&F\r"), kOk);
}

TEST(SimulatedModem, ForgetsHalfACommandWhenThePortIsClosed)
{
    Line line;
    line.Exchange("ATDT01");

    line.modem.Disconnect();

    EXPECT_EQ(line.Exchange("AT\r"), kOk);
}

TEST(SimulatedModem, ReportsABrokenLine)
{
    Line line({.dialDelayMs = 0}, {.dropAfter = 3});
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("\x02"), "\x02"
                                     "01\r\nNO CARRIER\r\n");
    EXPECT_FALSE(line.modem.IsConnected());
    EXPECT_FALSE(line.modem.IsGone());
    EXPECT_EQ(line.Exchange("ATDT0123\r"), kConnected) << "it can be dialled again";
    EXPECT_EQ(line.Exchange("\x13"), "\x13");
}

} // namespace

} // namespace corvrec::lab
