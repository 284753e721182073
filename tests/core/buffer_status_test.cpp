#include "core/device/buffer_status.h"
#include "tests/support/json_cases.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// Whole replies and their labels are in tests/data/conversions.json: see comm_vectors_test.cpp.
namespace corvrec
{

namespace
{

using namespace std::string_view_literals;
using enum StatusField;

constexpr StatusContext kContext{
    .now = {.year = 2026, .month = 11, .day = 21, .hour = 10, .minute = 20, .second = 30},
    .text = ExpectedText,
};

// A model's reply, and the letter of the field that each of its bytes belongs to.
struct Sample {
    BufferModel model;
    std::string_view reply;
    std::string_view places;
};

// Indexed by StatusField.
constexpr auto kLetters = "mu%rDdfvwGtspM"sv;

constexpr Sample k11{.model = BufferModel::stratobox11,
                     .reply = "\x02"
                              "070065536##045#\xFF\x80\t5x"sv,
                     .places = "-rrmmmmmmm--%%%-uDdf-"};
constexpr Sample k30{.model = BufferModel::stratobox30,
                     .reply = "\x02"
                              "0262144##087#M012345L4F3.10507252359*\x13"sv,
                     .places = "-mmmmmmm--%%%-uDDDdddfvwwwwGGGGGGtttt--"};
constexpr Sample k40{.model = BufferModel::stratoboxBuffer,
                     .reply = "\x02"
                              "0524288 87.125P001010R#2.05290224000700*\x13"sv,
                     .places = "-mmmmmmm%%%%%%%uDDDdddf-wwwwGGGGGGttttMp--"};

std::string Shown(const Sample& sample, std::string_view reply, StatusField field)
{
    return StatusOf(sample.model, reply, kContext).at(static_cast<std::size_t>(field));
}

class Layout : public testing::TestWithParam<Sample>
{
};

TEST(StatusOf, IsTestedForEveryDevice)
{
    for (const DeviceRow& device : kDevices)
        EXPECT_TRUE(device.model == k11.model || device.model == k30.model || device.model == k40.model);
}

TEST_P(Layout, EachByteBelongsToOneField)
{
    const Sample& sample = GetParam();
    ASSERT_EQ(sample.reply.size(), sample.places.size());
    const BufferStatus whole = StatusOf(sample.model, sample.reply, kContext);
    std::string places;
    for (std::size_t at = 0; at < sample.reply.size(); ++at) {
        std::set<char> changed;
        for (int code = 0; code < 256; ++code) {
            std::string reply(sample.reply);
            reply[at] = static_cast<char>(code);
            const BufferStatus status = StatusOf(sample.model, reply, kContext);
            for (std::size_t field = 0; field < kStatusFields; ++field) {
                if (status.at(field) != whole.at(field))
                    changed.insert(kLetters[field]);
            }
        }
        ASSERT_LE(changed.size(), 1U) << "position " << at + 1;
        places += changed.empty() ? '-' : *changed.begin();
    }
    EXPECT_EQ(places, sample.places);
}

TEST_P(Layout, AShortReplyShowsWhatHasArrived)
{
    const Sample& sample = GetParam();
    const BufferStatus whole = StatusOf(sample.model, sample.reply, kContext);
    const BufferStatus empty = StatusOf(sample.model, "", kContext);
    for (std::size_t length = 0; length <= sample.reply.size(); ++length) {
        // A buffer of its own, so that a sanitizer sees a read beyond its end.
        const std::string cut(sample.reply.substr(0, length));
        const BufferStatus status = StatusOf(sample.model, cut, kContext);
        for (std::size_t field = 0; field < kStatusFields; ++field) {
            const bool hasBegun = sample.places.substr(0, length).find(kLetters[field]) != std::string::npos;
            const bool isWhole = sample.places.substr(length).find(kLetters[field]) == std::string::npos;
            if (isWhole || !hasBegun) {
                EXPECT_EQ(status.at(field), (isWhole ? whole : empty).at(field))
                    << kLetters[field] << " at " << length;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, Layout, testing::Values(k11, k30, k40));

struct PartialField {
    Sample sample;
    StatusField field;
    std::size_t length;
    std::string shown;
};

TEST(StatusOf, CutsAFieldWhereTheReplyEnds)
{
    for (const PartialField& each : {
             PartialField{k30, memory, 3, "02"},
             PartialField{k30, percentUsed, 12, "08"},
             PartialField{k30, sinceDownload, 17, "20/11/2026 10:20:30"},
             PartialField{k30, sinceData, 20, "18/10/2026 10:20:30"},
             PartialField{k30, firmware, 26, "F3."},
             PartialField{k30, date, 28, "0//"},
             PartialField{k30, date, 30, "05/0/"},
             PartialField{k30, date, 32, "05/07/2"},
             PartialField{k30, time, 34, "2:"},
             PartialField{k30, time, 36, "23:5"},
             PartialField{k40, percentUsed, 11, "87,"},
             PartialField{k40, percentUsed, 14, "87,12"},
             PartialField{k40, sinceData, 21, "20/11/2026 10:20:30"},
             PartialField{k40, date, 31, "29/0/"},
             PartialField{k40, time, 35, "0:"},
             PartialField{k11, repetitions, 2, "0"},
             PartialField{k11, memory, 6, "006"},
         })
        EXPECT_EQ(Shown(each.sample, each.sample.reply.substr(0, each.length), each.field), each.shown);
}

// A field of one byte, and what each of the 256 values shows.
struct CodedField {
    Sample sample;
    std::size_t position; // from 1
    StatusField field;
    std::map<char, std::string> shown;
    std::string other;
};

// Each digit from 1 on shows the text at its place.
std::map<char, std::string> Digits(const std::vector<std::string>& texts)
{
    std::map<char, std::string> shown;
    for (char digit = '1'; const std::string& text : texts)
        shown.emplace(digit++, text);
    return shown;
}

// Every byte shows its code.
std::map<char, std::string> Codes()
{
    std::map<char, std::string> shown;
    for (int code = 0; code < 256; ++code)
        shown.emplace(static_cast<char>(code), std::to_string(code));
    return shown;
}

const std::map<char, std::string> kUsed{{'V', "Nessuna"}, {'M', "Parziale"}, {'P', "Totale"}};
const std::map<char, std::string> kUsedBytes{{'\0', "Nessuna"}, {'\x55', "Parziale"}, {'\xFF', "Totale"}};
const std::map<char, std::string> kFaults{{'N', "Nessuno"}, {'R', "Caduta 220 V"}, {'L', "Batteria"}};

TEST(StatusOf, ShowsEveryByteOfACodedField)
{
    for (const auto& [sample, position, field, texts, other] : {
             CodedField{k30, 15, usedMemory, kUsed, "Errore"},
             CodedField{k30, 22, faults, kFaults, "Nessuno"},
             CodedField{k30, 23, version,
                        Digits({"Std (24)", "Std (48)", "Std (72)", "Std (96)", "Std (120)", "Standard",
                                "Sat", "Sconosciuta", "Sconosciuta"}),
                        "Std (16)"},
             CodedField{k40, 16, usedMemory, kUsed, "Errore"},
             CodedField{k40, 23, faults, kFaults, "Non rilevabili"},
             CodedField{k40, 39, modem, {{'0', "Non presente"}}, "Presente"},
             CodedField{k40, 40, printer, {{'0', "Non presente"}}, "Presente"},
             CodedField{k11, 17, usedMemory, kUsedBytes, "Errore"},
             CodedField{k11, 18, sinceDownload, Codes(), ""},
             CodedField{k11, 19, sinceData, Codes(), ""},
             CodedField{k11, 20, faults, Digits(std::vector<std::string>(9, "Sì")), "No"},
             CodedField{k11, 20, selector, {}, "Non attivo"},
             CodedField{k11, 20, printer, {}, "Non attiva"},
         }) {
        std::string reply(sample.reply);
        for (int code = 0; code < 256; ++code) {
            const auto byte = static_cast<char>(code);
            reply.at(position - 1) = byte;

            EXPECT_EQ(Shown(sample, reply, field), texts.contains(byte) ? texts.at(byte) : other)
                << position << " of byte " << code;
        }
    }
}

TEST(StatusOf, ShowsReceivedBytesInCodePage1252)
{
    std::string reply(k30.reply);
    reply.replace(23, 4, "\x80\xE8\x81?");
    reply.replace(27, 2, "\xB0\xB1");

    EXPECT_EQ(Shown(k30, reply, firmware), "€è\xC2\x81?");
    EXPECT_EQ(Shown(k30, reply, date), "°±/07/25");
}

TEST(StatusOf, ReadsAPercentageThatIsNoNumberAsZero)
{
    std::string reply(k40.reply);
    reply.replace(8, 7, "ERRORE!");

    EXPECT_EQ(Shown(k40, reply, percentUsed), ",");
}

TEST(StatusOf, DecodesByTheModel)
{
    EXPECT_EQ(StatusOf(BufferModel::stratobox11, k11.reply, kContext), Sx11Status(k11.reply, kContext));
    EXPECT_EQ(StatusOf(BufferModel::stratobox20, k30.reply, kContext), Sx30Status(k30.reply, kContext));
    EXPECT_EQ(StatusOf(BufferModel::stratobox30, k30.reply, kContext), Sx30Status(k30.reply, kContext));
    EXPECT_EQ(StatusOf(BufferModel::stratoboxBuffer, k40.reply, kContext), Sx40Status(k40.reply, kContext));
}

TEST(NowMinusDays, EndsWithTheYears100And9999)
{
    EXPECT_EQ(NowMinusDays(kContext.now, 703'781), "01/01/0100 10:20:30");
    EXPECT_EQ(NowMinusDays(kContext.now, 703'782), "");
    EXPECT_EQ(NowMinusDays(kContext.now, -2'912'118), "31/12/9999 10:20:30");
    EXPECT_EQ(NowMinusDays(kContext.now, -2'912'119), "");
}

TEST(NowMinusDays, IsEmptyHoweverFarAway)
{
    for (const double days : {4e6, 1e18, 1.7e308})
        for (const double sign : {1.0, -1.0})
            EXPECT_EQ(NowMinusDays(kContext.now, sign * days), "") << sign * days;
}

TEST(NowMinusDays, OmitsOnlyExactlyMidnight)
{
    EXPECT_EQ(NowMinusDays({.year = 2024, .month = 3, .day = 1, .hour = 12, .minute = 0, .second = 0}, 0.5),
              "01/03/2024");
    EXPECT_EQ(NowMinusDays({.year = 2024, .month = 3, .day = 1, .hour = 0, .minute = 0, .second = 1}, 1),
              "29/02/2024 00:00:01");
}

} // namespace

} // namespace corvrec
