#include "core/device/buffer_device.h"
#include "core/device/serial_port.h"
#include "tests/support/serial_line.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

using testing::ElementsAre;
using testing::Throws;
using enum BufferModel;

TEST(SXAzzeraLinea, ClearsAroundTheDevicesAnswer)
{
    for (const auto& [script, last] : {
             std::pair{"50: garbage<13>more", "50 ClearInput"},
             std::pair{"", "30001 ClearInput"},
             std::pair{"50: cancelled", "50 ClearInput"},
         }) {
        SerialLine line(script);
        line.port.Receive("\x13\x13"); // what came before is no answer

        SXAzzeraLinea(line.wait, 30000);

        EXPECT_THAT(line.port.Journal(), ElementsAre("0 ClearInput", "0 Output <13>", last));
        EXPECT_EQ(line.port.Waiting(), "");
    }
}

TEST(SXAzzeraLinea, PassesThePortsErrorOn)
{
    SerialLine line("50: lost");

    EXPECT_THAT([&] { SXAzzeraLinea(line.wait, 30000); }, Throws<PortError>());
}

// A status request with time-outs of 30 s.
struct Request {
    const char* name;
    BufferModel model;
    const char* script;
    const char* reply; // "error" when the port's error passes on
    int lineClearMs;   // after the first part; -1: none is sent
    int endMs;
    const char* waiting = ""; // input that is not read
};

constexpr auto kAnswers = "10: <02>status* | <13>: then<13>";

TEST(RiceviSXStatus, CollectsTheReply)
{
    for (const Request& request : {

             Request{"Model20", stratobox20, kAnswers, "<02>status*then<13>", 10, 10},
             Request{"Model30", stratobox30, kAnswers, "<02>status*then<13>", 10, 10},
             Request{"Model40", stratoboxBuffer, kAnswers, "<02>status*then<13>", 10, 10},
             Request{"LineClearWithTheStar", stratoboxBuffer, "<02>: status*<13>", "status*<13>", 0, 0},
             Request{"LineClearBeforeTheStar", stratoboxBuffer, "<02>: <13>status*", "<13>status*", 0, 0},
             Request{"OneMore", stratobox30, "<02>: status* | 10: <13>!?", "status*<13>!", 0, 10, "?"},
             // The wait consumes the line clear before its first pass, and checks it only after it has taken
             // the next character.
             Request{"TwoMore", stratobox30, "<02>: status* | <13>: <13>!?.", "status*<13>!?", 0, 0, "."},
             Request{"Counted18And2And1", stratobox11, "<02>: abc*efghijklmno<13>qr | 70: stuv",
                     "abc*efghijklmno<13>qrstu", 0, 70, "v"},
             Request{"CountedShort", stratobox11, "<02>: abcdefghijklmnop*r", "abcdefghijklmnop*r", 0, 30001},
             Request{"Silent11", stratobox11, "", "", 30001, 60002},
             Request{"Silent20", stratobox20, "", "", 30001, 60002},
             Request{"Silent30", stratobox30, "", "", 30001, 60002},
             Request{"Silent40", stratoboxBuffer, "", "", 30001, 60002},
             Request{"Partial", stratobox30, "10: stat", "stat", 30001, 60002},
             Request{"CancelledBeforeTheStar", stratoboxBuffer, "10: stat | 500: cancelled", "stat", 500,
                     500},
             Request{"CancelledAfterIt", stratoboxBuffer, "10: status* | 500: cancelled", "status*", 10, 500},
             Request{"CancelledWhileCounted", stratobox11, "10: stat | 500: cancelled", "stat", 500, 500},
             Request{"LostBeforeTheStar", stratoboxBuffer, "10: status | 15: lost", "error", -1, 15},
             Request{"LostAfterTheStar", stratoboxBuffer, "10: status* | 15: lost", "status*", 10, 15},
             // All characters are received, and most of them are not yet taken.
             Request{"LostWithTheStar", stratoboxBuffer, "10: status*<13> | 10: lost", "status*", -1, 10,
                     "<13>"},
             Request{"LostWithTheLineClear", stratobox30, "<02>: status* | 10: <13> | 10: lost",
                     "status*<13>", 0, 10},
             Request{"LostAfterAll20", stratobox11, "<02>: abcdefghijklmnop*r | 10: st | 10: lost",
                     "abcdefghijklmnop*rst", 0, 10},
             Request{"LostAfter18", stratobox11, "<02>: abcdefghijklmnop*r | 10: lost", "error", 0, 10},
         }) {
        SCOPED_TRACE(request.name);
        SerialLine line(request.script);
        line.port.SetInputLen(5);

        std::string reply = "error";
        try {
            reply = RiceviSXStatus(line.wait, request.model, 30000);
        } catch (const PortError&) {
        }

        EXPECT_EQ(reply, BytesOf(request.reply));
        EXPECT_EQ(line.Elapsed(), request.endMs);
        std::vector<std::string> journal{"0 Output <02>"};
        if (request.lineClearMs >= 0)
            journal.push_back(std::to_string(request.lineClearMs) + " Output <13>");
        EXPECT_EQ(line.port.Journal(), journal);
        EXPECT_EQ(line.port.Waiting(), BytesOf(request.waiting));
        EXPECT_EQ(line.port.InputLen(), 0);
    }
}

TEST(RiceviSXStatus, StaysSmallWhenTheDeviceNeverStops)
{
    SerialLine line;
    line.pump.SetPassMs(3);
    line.port.Pour('x');

    const std::string reply = RiceviSXStatus(line.wait, stratoboxBuffer, 200'000);

    EXPECT_EQ(reply, std::string(65'536 + 2, 'x')); // what is kept, and the character read at the end
    EXPECT_EQ(line.Elapsed(), 2 * 200'004);         // each wait's last pass begins at 200 001
}

TEST(ImpostaDataOra, PausesAfterEachDigit)
{
    SerialLine line;

    ImpostaDataOra(line.port, line.clock, "09:05", "31/12/26");

    EXPECT_THAT(line.port.Journal(),
                ElementsAre("0 Output <0F>", "0 Output 0", "20 Output 9", "40 Output 0", "60 Output 5",
                            "80 Output 3", "100 Output 1", "120 Output 1", "140 Output 2", "160 Output 2",
                            "180 Output 6", "200 WaitUntilSent 1000"));
    EXPECT_EQ(line.clock.Sleeps(), std::vector<std::int64_t>(10, 20));
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
