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

SimulatedBuffer Buffer(Model model)
{
    return {model, kStart, kStartMs};
}

TEST(SimulatedBuffer, IsNamedAsItsModel)
{
    EXPECT_EQ(ModelNamed("1.1"), Model::stratobox11);
    EXPECT_EQ(ModelNamed("2.0"), Model::stratobox20);
    EXPECT_EQ(ModelNamed("3.0"), Model::stratobox30);
    EXPECT_EQ(ModelNamed("Buffer"), Model::stratoboxBuffer);
    EXPECT_EQ(ModelNamed("buffer"), std::nullopt);
    EXPECT_EQ(ModelNamed(""), std::nullopt);
}

TEST(SimulatedBuffer, AnswersTheLineClearByTheSameByte)
{
    for (const Model model :
         {Model::stratobox11, Model::stratobox20, Model::stratobox30, Model::stratoboxBuffer}) {
        SimulatedBuffer device = Buffer(model);
        EXPECT_EQ(Answers(device, "\x13\x13"), "\x13\x13");
    }
}

TEST(SimulatedBuffer, IgnoresOtherBytes)
{
    SimulatedBuffer device = Buffer(Model::stratobox30);

    EXPECT_EQ(Answers(device, "AT&F\r\n*\x11 0905311226"), "");
}

TEST(SimulatedBuffer, SendsTheStatusOfA30UpToTheStar)
{
    SimulatedBuffer device = Buffer(Model::stratobox30);

    //                                   1 2     8  11  15 16 19 22-24  28    34
    EXPECT_EQ(Answers(device, "\x02"), "\x02"
                                       "0131072   12 M  5  1N63.052111261803*");
    EXPECT_EQ(Answers(device, "\x13"), "\x13");
}

TEST(SimulatedBuffer, SendsTheStatusOfA20AsA30)
{
    SimulatedBuffer device = Buffer(Model::stratobox20);
    SimulatedBuffer newer = Buffer(Model::stratobox30);

    EXPECT_EQ(Answers(device, "\x02"), Answers(newer, "\x02"));
}

TEST(SimulatedBuffer, SendsTheStatusOfABufferUpToTheStar)
{
    SimulatedBuffer device = Buffer(Model::stratoboxBuffer);

    EXPECT_EQ(Answers(device, "\x02"), "\x02"
                                       "0524288   12.5M  5  1N 4.10211126180301*");
    EXPECT_EQ(Answers(device, "\x13"), "\x13");
}

TEST(SimulatedBuffer, SendsTheStatusOfA11InTwoParts)
{
    SimulatedBuffer device = Buffer(Model::stratobox11);

    EXPECT_EQ(Answers(device, "\x02"), "\x02"
                                       "010032768   12 U\x05");
    EXPECT_EQ(Answers(device, "\x13"), "\x01"
                                       "0");
    EXPECT_EQ(Answers(device, "\x13"), "\x13") << "the rest is sent once";
}

TEST(SimulatedBuffer, PutsEveryFieldOfA30IntoItsPlace)
{
    SimulatedBuffer device = Buffer(Model::stratobox30);

    device.Set("memory", "1234567");
    device.Set("percent", "100");
    device.Set("used", "P");
    device.Set("download-hours", "24");
    device.Set("data-hours", "999");
    device.Set("faults", "R");
    device.Set("version", "7");
    device.Set("firmware", "1.2");

    EXPECT_EQ(Answers(device, "\x02"), "\x02"
                                       "1234567  100 P 24999R7 1.22111261803*");
}

TEST(SimulatedBuffer, PutsEveryFieldOfABufferIntoItsPlace)
{
    SimulatedBuffer device = Buffer(Model::stratoboxBuffer);

    device.Set("memory", "1234567");
    device.Set("percent", "1234.67");
    device.Set("used", "V");
    device.Set("download-hours", "24");
    device.Set("data-hours", "");
    device.Set("faults", "L");
    device.Set("firmware", "9999");
    device.Set("modem", "1");
    device.Set("printer", "0");

    EXPECT_EQ(Answers(device, "\x02"), "\x02"
                                       "12345671234.67V 24   L 9999211126180310*");
}

TEST(SimulatedBuffer, PutsEveryFieldOfA11IntoItsPlace)
{
    SimulatedBuffer device = Buffer(Model::stratobox11);

    device.Set("repetitions", "42");
    device.Set("memory", "1234567");
    device.Set("percent", "100");
    device.Set("used", "P");
    device.Set("download-hours", "255");
    device.Set("data-hours", "128");
    device.Set("faults", "9");

    EXPECT_EQ(Answers(device, "\x02\x13"), "\x02"
                                           "421234567  100 \xFF\xFF\x80"
                                           "9");
}

TEST(SimulatedBuffer, ReportsTheUsedMemoryOfA11AsAByte)
{
    SimulatedBuffer device = Buffer(Model::stratobox11);

    device.Set("used", "V");
    EXPECT_EQ(Answers(device, "\x02").at(16), '\0');
    device.Set("used", "M");
    EXPECT_EQ(Answers(device, "\x02").at(16), '\x55');
    device.Set("used", "P");
    EXPECT_EQ(Answers(device, "\x02").at(16), '\xFF');
    device.Set("used", "X");
    EXPECT_EQ(Answers(device, "\x02").at(16), 'X');
}

// The text of the error that Set throws; empty when it throws none.
std::string Refusal(Model model, std::string_view field, std::string_view value)
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
    EXPECT_EQ(Refusal(Model::stratobox30, "used", "VV"), "field used must be no longer than 1");
    EXPECT_EQ(Refusal(Model::stratobox11, "data-hours", "256"),
              "field data-hours must be a number from 0 to 255");
    EXPECT_EQ(Refusal(Model::stratobox11, "data-hours", "1h"),
              "field data-hours must be a number from 0 to 255");
    EXPECT_EQ(Refusal(Model::stratobox11, "data-hours", ""),
              "field data-hours must be a number from 0 to 255");
    EXPECT_EQ(Refusal(Model::stratobox11, "printer", "1"),
              "model 1.1 has no field printer, but repetitions, memory, percent, used, download-hours, "
              "data-hours, faults");
}

TEST(SimulatedBuffer, RunsItsClock)
{
    SimulatedBuffer device = Buffer(Model::stratobox30);

    EXPECT_EQ(device.Time(kStartMs + 999), kStart);
    EXPECT_EQ(device.Time(kStartMs + 1000), kStart + 1s);
    EXPECT_EQ(Answers(device, "\x02", kStartMs + 6 * std::int64_t{3'600'000}).substr(27), "2211260003*");
}

TEST(SimulatedBuffer, SetsItsClockAndRunsOn)
{
    SimulatedBuffer device = Buffer(Model::stratoboxBuffer);

    EXPECT_EQ(Answers(device,
                      "\x0F"
                      "0905311226",
                      8500),
              "");

    EXPECT_EQ(device.Time(8500), std::chrono::sys_days{2026y / 12 / 31} + 9h + 5min);
    EXPECT_EQ(Answers(device, "\x02", 8500 + 60'000).substr(28, 10), "3112260906");
}

TEST(SimulatedBuffer, TakesOnlyTheTenDigits)
{
    SimulatedBuffer device = Buffer(Model::stratoboxBuffer);

    Answers(device, "\x0F"
                    "09053112261234");

    EXPECT_EQ(device.Time(kStartMs), std::chrono::sys_days{2026y / 12 / 31} + 9h + 5min);
}

TEST(SimulatedBuffer, KeepsItsClockWhenThereIsNoSuchMoment)
{
    for (const std::string_view digits :
         {"2400211126", "0960211126", "0905310226", "0905001126", "0905211326"}) {
        SimulatedBuffer device = Buffer(Model::stratobox30);
        Answers(device, "\x0F" + std::string(digits));
        EXPECT_EQ(device.Time(kStartMs), kStart) << digits;
    }
}

TEST(SimulatedBuffer, ForgetsAnIncompleteClockCommand)
{
    SimulatedBuffer device = Buffer(Model::stratobox30);

    EXPECT_EQ(Answers(device, "\x0F"
                              "09053\x13"
                              "11226"),
              "\x13");

    EXPECT_EQ(device.Time(kStartMs), kStart);
}

TEST(SimulatedBuffer, HasNoClockInA11)
{
    SimulatedBuffer device = Buffer(Model::stratobox11);

    Answers(device, "\x0F"
                    "0905311226");

    EXPECT_EQ(device.Time(kStartMs), kStart);
}

TEST(SimulatedBuffer, SendsABurstWithoutWaiting)
{
    SimulatedBuffer device = Buffer(Model::stratobox30);
    device.SetBurst(true);

    EXPECT_EQ(Answers(device, "\x02").substr(37), "*\x13");
    EXPECT_EQ(Answers(device, "\x13"), "\x13");
}

TEST(SimulatedBuffer, SendsBothPartsOfA11InABurst)
{
    SimulatedBuffer device = Buffer(Model::stratobox11);
    device.SetBurst(true);

    EXPECT_EQ(Answers(device, "\x02").size(), 20U);
    EXPECT_EQ(Answers(device, "\x13"), "\x13");
}

} // namespace

} // namespace corvrec::lab
