#include "tests/support/readable_bytes.h"
#include "tools/lab/simulated_buffer.h"

#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corvrec::lab
{

namespace
{

using namespace std::chrono_literals;

constexpr std::int64_t kStartMs = 5000;
constexpr auto kStart = std::chrono::sys_days{2026y / 11 / 21} + 18h + 3min;

// Everything that the device sends for these bytes.
std::string Answers(SimulatedBuffer& device, std::string_view bytes, std::int64_t nowMs = kStartMs)
{
    std::string answers;
    for (const char byte : bytes)
        answers += device.Answer(byte, nowMs);
    return answers;
}

SimulatedBuffer Buffer(BufferModel model)
{
    return {model, kStart, kStartMs};
}

TEST(SimulatedBuffer, IsNamedAsItsModel)
{
    EXPECT_EQ(ModelNamed("1.1"), BufferModel::stratobox11);
    EXPECT_EQ(ModelNamed("2.0"), BufferModel::stratobox20);
    EXPECT_EQ(ModelNamed("3.0"), BufferModel::stratobox30);
    EXPECT_EQ(ModelNamed("Buffer"), BufferModel::stratoboxBuffer);
    EXPECT_EQ(ModelNamed("buffer"), std::nullopt);
    EXPECT_EQ(ModelNamed(""), std::nullopt);
}

struct Exchange {
    BufferModel model;
    std::string_view fields; // that are set
    const char* status;      // the answer to a request
    const char* end;         // and to the line clear after it
    bool isBurst = false;
};

TEST(SimulatedBuffer, SendsItsStatus)
{
    using enum BufferModel;
    for (const Exchange& each : {
             // Where the fields are:  1   2     8  11  15 16 19 22-24  28    34
             Exchange{stratobox20, "", "<02>0131072   12 M  5  1N63.052111261803*", "<13>"},
             Exchange{stratobox30, "", "<02>0131072   12 M  5  1N63.052111261803*", "<13>"},
             Exchange{stratoboxBuffer, "", "<02>0524288   12.5M  5  1N 4.10211126180301*", "<13>"},
             Exchange{stratobox11, "", "<02>010032768   12 U<05>", "<01>0"},
             Exchange{stratobox30,
                      "memory=1234567 percent=100 used=P download-hours=24 data-hours=999 faults=R version=7 "
                      "firmware=1.2 ",
                      "<02>1234567  100 P 24999R7 1.22111261803*", "<13>"},
             Exchange{
                 stratoboxBuffer,
                 "memory=1234567 percent=1234.67 used=V download-hours=24 data-hours= faults=L firmware=9999 "
                 "modem=1 printer=0 ",
                 "<02>12345671234.67V 24   L 9999211126180310*", "<13>"},
             Exchange{stratobox11,
                      "repetitions=42 memory=1234567 percent=100 used=P download-hours=255 data-hours=128 "
                      "faults=9 ",
                      "<02>421234567  100 <FF><FF>", "<80>9"},
             Exchange{stratobox11, "used=V ", "<02>010032768   12 <00><05>", "<01>0"},
             Exchange{stratobox11, "used=X ", "<02>010032768   12 X<05>", "<01>0"},
             // In a burst, the answer to the line clear in the middle comes with the status.
             Exchange{stratobox30, "", "<02>0131072   12 M  5  1N63.052111261803*<13>", "<13>", true},
             Exchange{stratobox11, "", "<02>010032768   12 U<05><01>0", "<13>", true},
         }) {
        SimulatedBuffer device = Buffer(each.model);
        for (std::string_view rest = each.fields; !rest.empty(); rest.remove_prefix(rest.find(' ') + 1)) {
            const std::string_view field = rest.substr(0, rest.find(' '));
            device.Set(field.substr(0, field.find('=')), field.substr(field.find('=') + 1));
        }
        device.SetBurst(each.isBurst);

        EXPECT_EQ(Answers(device, "\x13"), "\x13");
        EXPECT_EQ(Readable(Answers(device, "\x02")), each.status);
        EXPECT_EQ(Readable(Answers(device, "\x13")), each.end);
        EXPECT_EQ(Answers(device, "\x13"), "\x13") << "the rest is sent once";
        EXPECT_EQ(Answers(device, "AT&F\r\n*\x11 0905311226"), "") << "anything else is ignored";
    }
}

// The text of the error that Set throws; empty when it throws none.
std::string Refusal(BufferModel model, std::string_view field, std::string_view value)
{
    SimulatedBuffer device = Buffer(model);
    try {
        device.Set(field, value);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return {};
}

TEST(SimulatedBuffer, RefusesWhatDoesNotFit)
{
    EXPECT_EQ(Refusal(BufferModel::stratobox30, "used", "VV"), "field used must be no longer than 1");
    for (const char* const hours : {"256", "1h", ""})
        EXPECT_EQ(Refusal(BufferModel::stratobox11, "data-hours", hours),
                  "field data-hours must be a number from 0 to 255");
    EXPECT_EQ(Refusal(BufferModel::stratobox11, "printer", "1"),
              "model 1.1 has no field printer, but repetitions, memory, percent, used, download-hours, "
              "data-hours, faults");
}

TEST(SimulatedBuffer, RunsItsClock)
{
    SimulatedBuffer device = Buffer(BufferModel::stratobox30);

    EXPECT_EQ(device.Time(kStartMs + 999), kStart);
    EXPECT_EQ(device.Time(kStartMs + 1000), kStart + 1s);
    EXPECT_EQ(Answers(device, "\x02", kStartMs + 6 * std::int64_t{3'600'000}).substr(27), "2211260003*");
}

TEST(SimulatedBuffer, SetsItsClockAndRunsOn)
{
    SimulatedBuffer device = Buffer(BufferModel::stratoboxBuffer);

    // Only the ten digits count.
    EXPECT_EQ(Answers(device, BytesOf("<0F>09053112261234"), 8500), "");

    EXPECT_EQ(device.Time(8500), std::chrono::sys_days{2026y / 12 / 31} + 9h + 5min);
    EXPECT_EQ(Answers(device, "\x02", 8500 + 60'000).substr(28, 10), "3112260906");
}

TEST(SimulatedBuffer, KeepsItsClockWhenTheCommandIsInvalid)
{
    for (const std::string_view digits :
         {"2400211126", "0960211126", "0905310226", "0905001126", "0905211326", "09053<13>11226"}) {
        SimulatedBuffer device = Buffer(BufferModel::stratobox30);
        Answers(device, BytesOf("<0F>" + std::string(digits)));
        EXPECT_EQ(device.Time(kStartMs), kStart) << digits;
    }
    SimulatedBuffer withoutClock = Buffer(BufferModel::stratobox11);
    Answers(withoutClock, BytesOf("<0F>0905311226"));
    EXPECT_EQ(withoutClock.Time(kStartMs), kStart);
}

} // namespace

} // namespace corvrec::lab
