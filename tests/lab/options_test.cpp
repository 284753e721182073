#include "tools/lab/options.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvrec::lab
{

namespace
{

using namespace std::chrono_literals;
using testing::HasSubstr;

constexpr auto kNow = std::chrono::sys_days{2026y / 11 / 21} + 18h + 3min + 7s;

Options Parse(const std::vector<const char*>& arguments)
{
    return ParseOptions(arguments, kNow);
}

// The text of the thrown error; empty when there is none.
std::string Refusal(const std::vector<const char*>& arguments)
{
    try {
        for (const DeviceOptions& device : Parse(arguments).devices)
            MakeDevice(device, 0);
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

TEST(LabOptions, DefaultToABufferOnTheFirstPort)
{
    const Options options = Parse({});

    EXPECT_EQ(options, Options{});
    EXPECT_EQ(options.devices.size(), 1U);
    EXPECT_EQ(options.devices[0].port, 1);
    EXPECT_EQ(options.devices[0].model, BufferModel::stratoboxBuffer);
    EXPECT_EQ(options.devices[0].modem, std::nullopt);
    EXPECT_EQ(options.devices[0].clock, std::chrono::sys_days{2000y / 1 / 1});
}

TEST(LabOptions, DescribeADevice)
{
    const Options options =
        Parse({"--port", "2", "--model=3.0", "--field", "used=V", "--field=firmware=a=b"});

    const DeviceOptions expected{
        .port = 2, .model = BufferModel::stratobox30, .fields = {{"used", "V"}, {"firmware", "a=b"}}};
    EXPECT_EQ(options, Options{.devices = {expected}});
}

TEST(LabOptions, BeginADeviceWithEachFurtherPort)
{
    const Options options =
        Parse({"--model", "1.1", "--port", "3", "--fault", "echo", "--port", "4", "--modem"});

    const DeviceOptions first{.port = 3, .model = BufferModel::stratobox11, .faults = {.echo = true}};
    const DeviceOptions second{.port = 4, .modem = ModemBehaviour{}};
    EXPECT_EQ(options, (Options{.devices = {first, second}}));
}

TEST(LabOptions, NameTheFaults)
{
    const Options options = Parse({"--fault", "silence", "--fault", "partial=5", "--fault", "garbage",
                                   "--fault", "slow=20", "--fault", "burst", "--fault", "echo", "--fault",
                                   "endless", "--fault", "nuls", "--fault", "drop=7"});

    const Faults expected{.silence = true,
                          .garbage = true,
                          .echo = true,
                          .nuls = true,
                          .endless = true,
                          .burst = true,
                          .partial = 5,
                          .dropAfter = 7,
                          .pauseMs = 20};
    EXPECT_EQ(options.devices[0].faults, expected);
}

TEST(LabOptions, DescribeAModem)
{
    const Options options =
        Parse({"--modem-echo", "--modem-silent", "--dial-answer", "NO CARRIER", "--dial-delay", "0"});

    const ModemBehaviour expected{.echo = true, .silent = true, .dialAnswer = "NO CARRIER", .dialDelayMs = 0};
    EXPECT_EQ(options.devices[0].modem, expected);
}

TEST(LabOptions, SetTheClock)
{
    EXPECT_EQ(Parse({"--clock", "now"}).devices[0].clock, kNow);
    EXPECT_EQ(Parse({"--clock", "09:05 31/12/26"}).devices[0].clock,
              std::chrono::sys_days{2026y / 12 / 31} + 9h + 5min);
}

TEST(LabOptions, SayWhereTheTraceGoes)
{
    EXPECT_EQ(Parse({"--trace", "file"}).traceFile, "file");
    EXPECT_TRUE(Parse({"--quiet"}).quiet);
    EXPECT_TRUE(Parse({"--help"}).help);
    EXPECT_TRUE(Parse({"--version"}).version);
}

TEST(LabOptions, ReportWhatIsWrong)
{
    const std::vector<std::pair<std::vector<const char*>, const char*>> mistakes{
        {{"--modl", "3.0"}, "no option \"--modl\""},
        {{"file"}, "no option \"file\""},
        {{"--port"}, "--port needs a value"},
        {{"--quiet=1"}, "--quiet takes no value"},
        {{"--port", "0"}, "--port: \"0\" is not a whole number from 1 on"},
        {{"--port", "2x"}, "--port: \"2x\" is not a whole number from 1 on"},
        {{"--port", "1", "--port", "1"}, "--port: port 1 is taken already"},
        {{"--model", "4.0"}, "--model: no model \"4.0\", but 1.1, 2.0, 3.0, Buffer"},
        {{"--field", "used"}, "--field: \"used\" is not of the form name=value"},
        {{"--field", "used=XX"}, "field used must be no longer than 1"},
        {{"--field", "colour=1"},
         "model Buffer has no field colour, but memory, percent, used, download-hours, "
         "data-hours, faults, firmware, modem, printer"},
        {{"--fault", "fire"}, "--fault: no fault \"fire\""},
        {{"--fault", "echo=1"}, "--fault: echo takes no number"},
        {{"--fault", "drop"}, "--fault: \"\" is not a whole number from 1 on"},
        {{"--dial-delay", "-1"}, "--dial-delay: \"-1\" is not a whole number from 0 on"},
    };
    for (const auto& [arguments, text] : mistakes)
        EXPECT_EQ(Refusal(arguments), text);
    for (const char* const clock :
         {"", "9:05", "09:05", "09:05 31/02/26", "24:00 01/01/26", "09:05-01/01/26", "09:05 01/01/2026"})
        EXPECT_THAT(Refusal({"--clock", clock}), HasSubstr("is neither \"now\" nor of the form")) << clock;
}

// The file's text.
std::string Text(const char* file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(LabOptions, AreAllInTheHelpAndTheManual)
{
    std::string manual = Text(CORVREC_TEST_DATA "/../../tools/lab/corvrec-lab.1");
    std::erase(manual, '\\');
    for (const char* const option :
         {"--port", "--model", "--field", "--clock", "--fault", "--modem", "--modem-echo", "--modem-silent",
          "--dial-answer", "--dial-delay", "--trace", "--quiet", "--help", "--version"}) {
        EXPECT_THAT(std::string(Help()), HasSubstr(option));
        EXPECT_THAT(manual, HasSubstr(option));
    }
    for (const DeviceRow& device : kDevices) {
        if (device.kind == DeviceKind::exchange)
            continue;
        const std::string model(device.shown.substr(std::string_view("Stratobox ").size()));
        EXPECT_NE(ModelNamed(model), std::nullopt) << model;
        EXPECT_THAT(ModelNames(), HasSubstr(model));
        EXPECT_THAT(std::string(Help()), HasSubstr(model));
        EXPECT_THAT(manual, HasSubstr(model));
    }
}

} // namespace

} // namespace corvrec::lab
