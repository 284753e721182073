#include "core/device/buffer_device.h"
#include "core/device/buffer_status.h"
#include "core/device/line_settings.h"
#include "core/device/modem_session.h"
#include "core/site/conversions.h"
#include "tests/support/json_cases.h"
#include "tests/support/serial_line.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

// The lists of tests/data/conversions.json for the device logic; the README.md there explains their fields.
namespace corvrec
{

namespace
{

// The bytes of hexadecimal text such as "41 54 0d".
std::string BytesOf(const Json& one, const char* field)
{
    const std::string hex = TextOf(one, field);
    std::string bytes;
    for (std::size_t at = 0; at < hex.size(); at += 3)
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

// A moment such as "2026-11-21T10:20:30".
DateTime MomentOf(const Json& one)
{
    const std::string iso = TextOf(one, "now");
    const auto part = [&](std::size_t at, std::size_t width) { return std::stoi(iso.substr(at, width)); };
    return {.year = part(0, 4),
            .month = part(5, 2),
            .day = part(8, 2),
            .hour = part(11, 2),
            .minute = part(14, 2),
            .second = part(17, 2)};
}

// The names of the labels, indexed by StatusField.
constexpr std::array<const char*, kStatusFields> kLabels{
    "lblMemoria",    "lblCondizione", "lblRiempimento", "lblRipetizioni", "lblUltimoscarico",
    "lblUltimiDati", "lblGuasto",     "lblModello",     "lblFirmware",    "lblData",
    "lblOra",        "lblSelezione",  "lblStampante",   "lblModem"};

void ExpectLabels(const Json& one, BufferModel model)
{
    const DateTime now = one.contains("now") ? MomentOf(one) : DateTime{};
    const BufferStatus status = StatusOf(model, BytesOf(one, "hex"), {.now = now, .text = ExpectedText});
    for (std::size_t field = 0; field < kStatusFields; ++field)
        EXPECT_EQ(status.at(field), one.at("out").at(kLabels.at(field)).get<std::string>())
            << kLabels.at(field);
}

TEST(CommVectors, CommandLine)
{
    ForEachCase("command_line",
                [](const Json& one) { EXPECT_EQ(CommandLine(TextOf(one, "in")), BytesOf(one, "out_hex")); });
}

TEST(CommVectors, DialLine)
{
    ForEachCase("dial_line", [](const Json& one) {
        EXPECT_EQ(DialLine(TextOf(one, "number"), one.at("pulse").get<bool>()), BytesOf(one, "out_hex"));
    });
}

TEST(CommVectors, SettingsString)
{
    ForEachCase("settings_string", [](const Json& one) {
        const std::string settings = LineSettingsText(TextOf(one, "baud"), one.at("parity_row").get<int>(),
                                                      TextOf(one, "data"), TextOf(one, "stop"));

        EXPECT_EQ(settings, TextOf(one, "out"));
    });
    EXPECT_EQ(LineSettingsText("9600", -1, "8", "1"), "9600,,8,1"); // no parity chosen
}

TEST(CommVectors, Handshaking)
{
    ForEachCase("handshaking", [](const Json& one) {
        EXPECT_EQ(Handshaking(one.at("local").get<bool>(), one.at("handshake_row").get<int>()),
                  one.at("out").get<int>());
    });
}

TEST(CommVectors, BufferModel)
{
    ForEachCase("buffer_model", [](const Json& one) {
        const DeviceRow& device = DeviceOf(one.at("device_row").get<int>());

        EXPECT_EQ(static_cast<int>(device.model), one.at("out").get<int>());
        EXPECT_EQ(device.settableClock, one.at("clock_enabled").get<bool>());
    });
}

TEST(CommVectors, ClockCommand)
{
    ForEachCase("clock_command", [](const Json& one) {
        SerialLine line;

        ImpostaDataOra(line.port, line.clock, TextOf(one, "time"), TextOf(one, "date"));

        EXPECT_EQ(line.port.Sent(), BytesOf(one, "out_hex"));
    });
}

TEST(CommVectors, NowMinusDays)
{
    ForEachCase("now_minus_days", [](const Json& one) {
        EXPECT_EQ(NowMinusDays(MomentOf(one), LeadingNumber(TextOf(one, "field"))), TextOf(one, "out"));
    });
}

TEST(CommVectors, Replies)
{
    ForEachCase("reply_30", [](const Json& one) { ExpectLabels(one, BufferModel::stratobox30); });
    ForEachCase("reply_40", [](const Json& one) { ExpectLabels(one, BufferModel::stratoboxBuffer); });
    ForEachCase("reply_11", [](const Json& one) { ExpectLabels(one, BufferModel::stratobox11); });
}

// Each wait ends at the case's moment: by a character, by a cancel, or because its time is up.
TEST(CommVectors, WaitResult)
{
    ForEachCase("wait_result", [](const Json& one) {
        const auto elapsed = one.at("elapsed").get<std::int64_t>();
        const auto timeOutMs = one.at("timeout").get<int>();
        const bool cancel = one.at("cancel").get<bool>();
        SerialLine line;
        line.pump.At(elapsed, [&] {     // a pass that sets the clock to that moment,
            line.pump.At(elapsed, [&] { // and one that begins at it
                line.cancel.raised = cancel;
                line.port.Receive("a");
            });
        });
        std::string buffer;

        const Wait result = line.wait.ForCount(timeOutMs, 1, buffer);

        EXPECT_EQ(static_cast<int>(result), one.at("out").get<int>());
    });
}

} // namespace

} // namespace corvrec
