#include "tools/lab/buffer_line.h"
#include "tools/lab/simulated_modem.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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
        : modem(std::make_unique<BufferLine>(SimulatedBuffer(BufferModel::stratobox30, kClock, 0), faults),
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

// What is sent, and what comes back, in turn.
using Dialogue = std::vector<std::string_view>;

void Expect(const ModemBehaviour& behaviour, const Dialogue& dialogue)
{
    Line line(behaviour);
    for (std::size_t i = 0; i < dialogue.size(); i += 2)
        EXPECT_EQ(line.Exchange(dialogue[i]), dialogue[i + 1]) << dialogue[i];
    EXPECT_EQ(line.modem.NextSendMs(), std::nullopt);
}

TEST(SimulatedModem, AnswersCommands)
{
    // In any case, with any end; what is no command is ignored.
    Expect({}, {"AT&F\r", kOk, "atx3s0=0&m5\r", kOk, "AT\r\n", kOk, "AT",   "",  "&F",    "",
                "\r",     kOk, "\x13\x02\r",    "",  "\r",     "",  "AT\r", kOk, "ATO\r", kNoCarrier});
    // Only commands are echoed.
    Expect({.echo = true, .dialDelayMs = 0},
           {"atZ\r", "atZ\r\r\nOK\r\n", "ATDT1\r", "ATDT1\r\r\nCONNECT 9600\r\n", "\x13", "\x13"});
    Expect({.silent = true}, {"AT\rATDT1\r", ""});
    Expect({.dialAnswer = "BUSY", .dialDelayMs = 0}, {"ATDT0123\r", "\r\nBUSY\r\n", "\x13\rAT\r", kOk});
    Expect({.dialAnswer = "", .dialDelayMs = 0}, {"ATDT0123\r", ""});
    // Connected, data passes both ways, and AT is no longer a command.
    Expect({.dialDelayMs = 0},
           {"ATDT0123\r", kConnected, "\x13", "\x13", "AT\r", "", "+++", kOk, "ATO\r", "\r\nCONNECT\r\n",
            "\x13", "\x13", "+++", kOk, "ATH\r", kOk, "ATO\r", kNoCarrier});
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

TEST(SimulatedModem, StopsDiallingAtTheNextByte)
{
    Line line({.dialDelayMs = 1000});
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("AT&F\r", 500), std::string(kNoCarrier) + kOk);
    EXPECT_EQ(line.modem.Send(2000), "");
    EXPECT_FALSE(line.modem.IsConnected());
}

TEST(SimulatedModem, PassesDataOnWhenItIsDue)
{
    Line line({.dialDelayMs = 0}, {.pauseMs = 10});
    line.Exchange("ATDT0123\r");

    EXPECT_EQ(line.Exchange("\x02", 100), "\x02");
    EXPECT_EQ(line.modem.NextSendMs(), 110);
    EXPECT_EQ(line.modem.Send(110), "0");
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

    EXPECT_TRUE(line.modem.IsConnected());
    line.modem.Disconnect();
    EXPECT_FALSE(line.modem.IsConnected());
    EXPECT_EQ(line.Exchange("ATDT01"), "");
    line.modem.Disconnect(); // forgets half a command

    EXPECT_EQ(line.Exchange("AT&F\r"), kOk);
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
