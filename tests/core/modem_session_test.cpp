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

TEST(CommandLine, JudgesThePrefixByWhatIsSent)
{
    EXPECT_EQ(CommandLine("\r\nA\nTZ"), "ATZ\r");
}

TEST(CommandLine, IsCodePage1252)
{
    EXPECT_EQ(CommandLine("\xC3\xA8\xC2\xA3\xE2\x86\x92"),
              "AT\xE8\xA3?\r"); // è, £, and an arrow, which the code page lacks
}

struct Session {
    const char* name;
    const char* script;
    Connection result;
    const char* journal;
    const char* waiting = ""; // input that is not read
};

constexpr auto kNoReply = Connection::noReply;
constexpr auto kCancelled = Connection::cancelled;

TEST(InitModem, FollowsTheDialogue)
{
    for (const Session& session : {

             // Nothing is cleared after the connection.
             Session{"Connected", "AT&F<0D>: OK | ATX3<0D>: <0D>ok<0D> | ATDT0123<0D>: CONNECT 9600",
                     Connection::connected,
                     "0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
                     "0 ClearInput | 0 Output ATDT0123<0D>",
                     " 9600"},
             Session{"Slow", "1000: OK | 3500: OK | 120000: CONNECT", Connection::connected,
                     "0 ClearInput | 0 Output AT&F<0D> | 1000 ClearInput | 1000 Output ATX3<0D> | "
                     "3500 ClearInput | 3500 Output ATDT0123<0D>"},
             Session{"EchoWithTheAnswer", "AT&F<0D>: ATBOOK | ATX3<0D>: OK | ATDT0123<0D>: CONNECT",
                     Connection::connected,
                     "0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
                     "0 ClearInput | 0 Output ATDT0123<0D>"},
             Session{"NoReset", "", kNoReply,
                     "0 ClearInput | 0 Output AT&F<0D> | 3001 ClearInput | 3001 ClearInput"},
             Session{"NoInitialisation", "AT&F<0D>: OK<0D>OK | ATX3<0D>: ERROR", kNoReply,
                     "0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
                     "3001 ClearInput | 3001 ClearInput"},
             Session{"Busy", "AT&F<0D>: OK | ATX3<0D>: OK | ATDT0123<0D>: BUSY", kNoReply,
                     "0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
                     "0 ClearInput | 0 Output ATDT0123<0D> | 120001 ClearInput"},
             Session{"CancelledReset", "700: cancelled", kCancelled,
                     "0 ClearInput | 0 Output AT&F<0D> | 700 ClearInput | 700 ClearInput"},
             Session{"CancelledInitialisation", "AT&F<0D>: OK | 700: cancelled", kCancelled,
                     "0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
                     "700 ClearInput | 700 ClearInput"},
             Session{"CancelledCall", "AT&F<0D>: OK | ATX3<0D>: OK | 60000: NO CARRIER | 60000: cancelled",
                     kCancelled,
                     "0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
                     "0 ClearInput | 0 Output ATDT0123<0D> | 60000 ClearInput"},
         }) {
        SCOPED_TRACE(session.name);
        SerialLine line(session.script);
        line.port.Receive("OK\r\nOK\r\nCONNECT\r\n"); // what came before is no answer

        EXPECT_EQ(InitModem(line.wait, kModem), session.result);

        EXPECT_EQ(Joined(line.port.Journal()), session.journal);
        EXPECT_EQ(line.port.Waiting(), session.waiting);
        EXPECT_FALSE(line.cancel.raised);
    }
}

TEST(InitModem, DialsByPulse)
{
    SerialLine line("ATZ<0D>: OK | AT<0D>: OK | ATDP0123<0D>: CONNECT");

    const Connection result =
        InitModem(line.wait, {.resetString = "Z", .initString = "", .number = "0123", .pulse = true});

    EXPECT_EQ(result, Connection::connected);
    EXPECT_EQ(line.port.Sent(), "ATZ\rAT\rATDP0123\r");
}

TEST(InitModem, PassesThePortsErrorOn)
{
    SerialLine line("AT&F<0D>: OK | ATX3<0D>: OK | 5000: lost");

    EXPECT_THAT([&] { static_cast<void>(InitModem(line.wait, kModem)); }, Throws<PortError>());

    EXPECT_EQ(line.Elapsed(), 5000);
}

struct HangUp {
    const char* script;
    bool hungUp;
    const char* journal;
    int endMs;
};

TEST(CloseModem, EscapesAndHangsUp)
{
    for (const HangUp& each : {
             HangUp{"+++: <0D>OK<0D>OK | ATH<0D>: OK", true, "0 Output +++ | 0 ClearInput | 0 Output ATH<0D>",
                    0},
             HangUp{"", false, "0 Output +++ | 10001 ClearInput", 10001},
             HangUp{"+++: OK<0D>OK", false, "0 Output +++ | 0 ClearInput | 0 Output ATH<0D>", 6001},
             HangUp{"2000: cancelled", false, "0 Output +++ | 2000 ClearInput", 2000},
             HangUp{"+++: OK | 2000: cancelled", false, "0 Output +++ | 0 ClearInput | 0 Output ATH<0D>",
                    2000},
         }) {
        SerialLine line(each.script);

        EXPECT_EQ(CloseModem(line.wait), each.hungUp) << each.script;

        EXPECT_EQ(Joined(line.port.Journal()), each.journal) << each.script;
        EXPECT_EQ(line.Elapsed(), each.endMs) << each.script;
        EXPECT_FALSE(line.cancel.raised) << each.script;
    }
}

TEST(CloseModem, MistakesAnEarlierOkForTheFirstAnswer)
{
    SerialLine line;
    line.port.Receive("OK\r\nOK\r\n");

    EXPECT_FALSE(CloseModem(line.wait));

    EXPECT_EQ(line.port.Sent(), "+++ATH\r");
}

TEST(CloseModem, PassesThePortsErrorOn)
{
    SerialLine line("2000: lost");

    EXPECT_THAT([&] { static_cast<void>(CloseModem(line.wait)); }, Throws<PortError>());
}

} // namespace

} // namespace corvrec
