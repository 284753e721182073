#include "core/device/modem_session.h"
#include "core/device/serial_port.h"
#include "core/file/code_page.h"
#include "tests/support/serial_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace corvrec
{

namespace
{

using testing::ElementsAre;
using testing::Throws;

const ModemSettings kModem{.resetString = "&F", .initString = "X3", .number = "0123", .pulse = false};

// A line with 7 data bits sends only the low seven bits of each byte.
TEST(CommandLine, HoldsNoByteThatIsAControlCharacterInSevenBits)
{
    std::string everyByte;
    std::string sent = "AT";
    for (unsigned code = 0; code <= 0xFF; ++code) {
        const char byte = static_cast<char>(code);
        everyByte += Utf8FromCp1252({&byte, 1});
        if ((code >= 0x20 && code < 0x7F) || (code >= 0xA0 && code < 0xFF))
            sent += byte;
    }

    EXPECT_EQ(CommandLine(everyByte), sent + "\r");
    EXPECT_EQ(DialLine(everyByte, false), "ATDT" + sent.substr(2) + "\r");
}

TEST(CommandLine, HoldsNoSecondCommandOnSevenDataBits)
{
    EXPECT_EQ(CommandLine("Z\xC2\x8D"
                          "ATD0190"),
              "ATZATD0190\r"); // 8D becomes a carriage return
}

TEST(CommandLine, DropsLineEndsAndNuls)
{
    EXPECT_EQ(CommandLine(std::string("Z\rATD0190\n\0S0=1\r\n", 16)), "ATZATD0190S0=1\r");
}

TEST(CommandLine, JudgesThePrefixByWhatIsSent)
{
    EXPECT_EQ(CommandLine("\r\nA\nTZ"), "ATZ\r");
}

TEST(CommandLine, IsCodePage1252)
{
    EXPECT_EQ(CommandLine("\xC3\xA8\xC2\xA3\xE2\x86\x92"),
              "AT\xE8\xA3?\r"); // è, £, and an arrow, which the code page lacks
}

TEST(DialLine, DropsLineEndsAndNuls)
{
    EXPECT_EQ(DialLine(std::string("01\r2\n3\0\r", 8), false), "ATDT0123\r");
}

TEST(InitModem, ResetsInitialisesAndDials)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "\r\nOK\r\n");
    line.port.Answer("ATX3\r", "\r\nok\r\n");
    line.port.Answer("ATDT0123\r", "\r\nCONNECT 9600\r\n");

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::connected);
    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput", "0 Output ATX3<0D>",
                            "0 ClearInput", "0 Output ATDT0123<0D>"));
    EXPECT_EQ(line.port.Waiting(), " 9600\r\n") << "nothing is cleared after the connection";
}

TEST(InitModem, WaitsForEachAnswer)
{
    SerialLine line;
    line.pump.At(1000, [&] { line.port.Receive("OK\r\n"); });
    line.pump.At(3500, [&] { line.port.Receive("OK\r\n"); });
    line.pump.At(120'000, [&] { line.port.Receive("CONNECT\r\n"); });

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::connected);
    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "1000 ClearInput", "1000 Output ATX3<0D>",
                            "3500 ClearInput", "3500 Output ATDT0123<0D>"));
}

TEST(InitModem, DialsByPulse)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK");
    line.port.Answer("ATX3\r", "OK");
    line.port.Answer("ATDP0123\r", "CONNECT");

    const Connection result =
        InitModem(line.wait, {.resetString = "&F", .initString = "X3", .number = "0123", .pulse = true});

    EXPECT_EQ(result, Connection::connected);
    EXPECT_EQ(line.port.Sent(), "AT&F\rATX3\rATDP0123\r");
}

TEST(InitModem, TakesAnEchoOfTheCommandForTheAnswer)
{
    SerialLine line;
    line.port.Answer("ATBOOK\r", "ATBOOK\r");
    line.port.Answer("AT\r", "OK");
    line.port.Answer("ATDT\r", "CONNECT");

    const Connection result =
        InitModem(line.wait, {.resetString = "BOOK", .initString = "", .number = "", .pulse = false});

    EXPECT_EQ(result, Connection::connected);
}

TEST(InitModem, DoesNotTakeWhatCameBeforeForAnAnswer)
{
    SerialLine line;
    line.port.Receive("OK\r\nOK\r\nCONNECT\r\n");

    EXPECT_EQ(InitModem(line.wait, kModem), Connection::noReply);

    EXPECT_EQ(line.port.Sent(), "AT&F\r");
}

TEST(InitModem, DoesNotTakeTheRestOfTheResetsAnswerForTheNext)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK\r\nOK\r\n");

    EXPECT_EQ(InitModem(line.wait, kModem), Connection::noReply);

    EXPECT_EQ(line.port.Sent(), "AT&F\rATX3\r");
}

TEST(InitModem, StopsWhenTheResetIsNotAnswered)
{
    SerialLine line;

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::noReply);
    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "3001 ClearInput", "3001 ClearInput"));
}

TEST(InitModem, StopsWhenTheInitialisationIsNotAnswered)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK");
    line.port.Answer("ATX3\r", "ERROR\r\n");

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::noReply);
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput",
                                                 "0 Output ATX3<0D>", "3001 ClearInput", "3001 ClearInput"));
}

TEST(InitModem, TakesBusyForNoReplyOnceTheTimeIsUp)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK");
    line.port.Answer("ATX3\r", "OK");
    line.port.Answer("ATDT0123\r", "BUSY\r\n");

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::noReply);
    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput", "0 Output ATX3<0D>",
                            "0 ClearInput", "0 Output ATDT0123<0D>", "120001 ClearInput"));
}

TEST(InitModem, CancelledDuringTheResetStopsAtOnceAndLowersTheFlag)
{
    SerialLine line;
    line.pump.At(700, [&] { line.cancel.raised = true; });

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::cancelled);
    EXPECT_FALSE(line.cancel.raised);
    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "700 ClearInput", "700 ClearInput"));
}

TEST(InitModem, CancelledDuringTheInitialisationStopsAtOnceAndLowersTheFlag)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK");
    line.pump.At(700, [&] { line.cancel.raised = true; });

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::cancelled);
    EXPECT_FALSE(line.cancel.raised);
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput",
                                                 "0 Output ATX3<0D>", "700 ClearInput", "700 ClearInput"));
}

TEST(InitModem, CancelledDuringTheDiallingStopsAtOnceAndLowersTheFlag)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK");
    line.port.Answer("ATX3\r", "OK");
    line.pump.At(60'000, [&] {
        line.port.Receive("NO CARRIER");
        line.cancel.raised = true;
    });

    const Connection result = InitModem(line.wait, kModem);

    EXPECT_EQ(result, Connection::cancelled);
    EXPECT_FALSE(line.cancel.raised);
    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput", "0 Output ATX3<0D>",
                            "0 ClearInput", "0 Output ATDT0123<0D>", "60000 ClearInput"));
}

TEST(InitModem, PassesTheErrorOfAPortLostWhileDiallingOn)
{
    SerialLine line;
    line.port.Answer("AT&F\r", "OK");
    line.port.Answer("ATX3\r", "OK");
    line.pump.At(5000, [&] { line.port.Lose(); });

    EXPECT_THAT([&] { static_cast<void>(InitModem(line.wait, kModem)); }, Throws<PortError>());

    EXPECT_EQ(line.clock.TickMs(), FakeClock().TickMs() + 5000);
}

TEST(InitModem, ThrowsOnAClosedPort)
{
    SerialLine line;
    line.port.Close();

    EXPECT_THAT([&] { static_cast<void>(InitModem(line.wait, kModem)); }, Throws<PortError>());
}

TEST(CloseModem, EscapesAndHangsUp)
{
    SerialLine line;
    line.port.Answer("+++", "\r\nOK\r\n");
    line.port.Answer("ATH\r", "\r\nOK\r\n");

    EXPECT_TRUE(CloseModem(line.wait));

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output +++", "0 ClearInput", "0 Output ATH<0D>"));
}

TEST(CloseModem, TakesAnOkThatCameBeforeForTheFirstAnswerOnly)
{
    SerialLine line;
    line.port.Receive("OK\r\nOK\r\n");

    EXPECT_FALSE(CloseModem(line.wait));

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output +++", "0 ClearInput", "0 Output ATH<0D>"));
}

TEST(CloseModem, DoesNotHangUpWhenTheEscapeIsNotAnswered)
{
    SerialLine line;

    EXPECT_FALSE(CloseModem(line.wait));

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output +++", "10001 ClearInput"));
}

TEST(CloseModem, FailsWhenTheHangUpIsNotAnswered)
{
    SerialLine line;
    line.port.Answer("+++", "OK");

    EXPECT_FALSE(CloseModem(line.wait));

    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output +++", "0 ClearInput", "0 Output ATH<0D>"));
    EXPECT_EQ(line.clock.TickMs(), FakeClock().TickMs() + 6001);
}

TEST(CloseModem, CancelledDuringTheEscapeFailsAndLowersTheFlag)
{
    SerialLine line;
    line.pump.At(2000, [&] { line.cancel.raised = true; });

    EXPECT_FALSE(CloseModem(line.wait));

    EXPECT_FALSE(line.cancel.raised);
    EXPECT_THAT(line.port.Journal(), ElementsAre("0 Output +++", "2000 ClearInput"));
}

TEST(CloseModem, CancelledDuringTheHangUpFailsAndLowersTheFlag)
{
    SerialLine line;
    line.port.Answer("+++", "OK");
    line.pump.At(2000, [&] { line.cancel.raised = true; });

    EXPECT_FALSE(CloseModem(line.wait));

    EXPECT_FALSE(line.cancel.raised);
    EXPECT_EQ(line.clock.TickMs(), FakeClock().TickMs() + 2000);
}

TEST(CloseModem, PassesThePortsErrorOn)
{
    SerialLine line;
    line.pump.At(2000, [&] { line.port.Lose(); });

    EXPECT_THAT([&] { static_cast<void>(CloseModem(line.wait)); }, Throws<PortError>());
}

} // namespace

} // namespace corvrec
