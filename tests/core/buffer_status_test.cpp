#include "core/device/buffer_status.h"
#include "tests/support/string_table.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

namespace
{

using namespace std::string_view_literals;

constexpr DateTime kNow{.year = 2026, .month = 11, .day = 21, .hour = 10, .minute = 20, .second = 30};
constexpr auto kNowShown = "21/11/2026 10:20:30";

using Decoder = BufferStatus (*)(std::string_view);

std::string Shown(const Field& field)
{
    return ShownText(field, kNow, ExpectedText);
}

// A whole reply and the model that sends it.
struct Sample {
    Decoder decode;
    std::string_view reply;
};

// What a label shows by the number of characters received: the entry with the highest length up to that
// number.
using Growth = std::map<std::size_t, std::string>;

struct SampleField {
    const char* name;
    Sample sample;
    Field BufferStatus::*field;
    Growth growth;
};

void PrintTo(const SampleField& sample, std::ostream* out)
{
    *out << sample.name;
}

class CutReply : public testing::TestWithParam<SampleField>
{
};

TEST_P(CutReply, ShowsWhatHasCome)
{
    const auto& [name, sample, field, growth] = GetParam();
    for (std::size_t length = 0; length <= sample.reply.size(); ++length) {
        // A buffer of its own, so that a sanitizer sees a read beyond its end.
        const std::string cut(sample.reply.substr(0, length));
        const BufferStatus status = sample.decode(cut);

        const std::string shown = Shown(status.*field);

        EXPECT_EQ(shown, std::prev(growth.upper_bound(length))->second) << name << " at " << length;
    }
}

template <class Param>
std::string NameOf(const testing::TestParamInfo<Param>& info)
{
    return info.param.name;
}

// The position of each part's first character.
constexpr Sample k30{Sx30Status,
                     "\x02"      // 1
                     "0262144"   // 2
                     "##"        // 9
                     "087"       // 11
                     "#"         // 14
                     "M"         // 15
                     "012"       // 16
                     "345"       // 19
                     "L"         // 22
                     "4"         // 23
                     "F3.1"      // 24
                     "050725"    // 28
                     "2359"      // 34
                     "*\x13"sv}; // 38

INSTANTIATE_TEST_SUITE_P(
    Sx30, CutReply,
    testing::Values(
        SampleField{"lblMemoria",
                    k30,
                    &BufferStatus::memoria,
                    {{0, ""},
                     {2, "0"},
                     {3, "02"},
                     {4, "026"},
                     {5, "0262"},
                     {6, "02621"},
                     {7, "026214"},
                     {8, "0262144"}}},
        SampleField{
            "lblRiempimento", k30, &BufferStatus::riempimento, {{0, ""}, {11, "0"}, {12, "08"}, {13, "087"}}},
        SampleField{"lblCondizione", k30, &BufferStatus::condizione, {{0, "Errore"}, {15, "Parziale"}}},
        SampleField{
            "lblUltimoscarico",
            k30,
            &BufferStatus::ultimoscarico,
            {{0, kNowShown}, {16, kNowShown}, {17, "20/11/2026 10:20:30"}, {18, "09/11/2026 10:20:30"}}},
        SampleField{"lblUltimiDati",
                    k30,
                    &BufferStatus::ultimiDati,
                    {{0, kNowShown},
                     {19, "18/11/2026 10:20:30"},
                     {20, "18/10/2026 10:20:30"},
                     {21, "11/12/2025 10:20:30"}}},
        SampleField{"lblGuasto", k30, &BufferStatus::guasto, {{0, "Nessuno"}, {22, "Batteria"}}},
        SampleField{"lblModello", k30, &BufferStatus::modello, {{0, "Std (16)"}, {23, "Std (96)"}}},
        SampleField{"lblFirmware",
                    k30,
                    &BufferStatus::firmware,
                    {{0, ""}, {24, "F"}, {25, "F3"}, {26, "F3."}, {27, "F3.1"}}},
        SampleField{"lblData",
                    k30,
                    &BufferStatus::data,
                    {{0, "//"},
                     {28, "0//"},
                     {29, "05//"},
                     {30, "05/0/"},
                     {31, "05/07/"},
                     {32, "05/07/2"},
                     {33, "05/07/25"}}},
        SampleField{"lblOra",
                    k30,
                    &BufferStatus::ora,
                    {{0, ":"}, {34, "2:"}, {35, "23:"}, {36, "23:5"}, {37, "23:59"}}},
        SampleField{"lblRipetizioni", k30, &BufferStatus::ripetizioni, {{0, "N/A"}}},
        SampleField{"lblSelezione", k30, &BufferStatus::selezione, {{0, "N/A"}}},
        SampleField{"lblStampante", k30, &BufferStatus::stampante, {{0, "N/A"}}},
        SampleField{"lblModem", k30, &BufferStatus::modem, {{0, "N/A"}}}),
    NameOf<SampleField>);

// The position of each part's first character.
constexpr Sample k40{Sx40Status,
                     "\x02"      // 1
                     "0524288"   // 2
                     " 87.125"   // 9
                     "P"         // 16
                     "001"       // 17
                     "010"       // 20
                     "R"         // 23
                     "#"         // 24
                     "2.05"      // 25
                     "290224"    // 29
                     "0007"      // 35
                     "0"         // 39
                     "0"         // 40
                     "*\x13"sv}; // 41

INSTANTIATE_TEST_SUITE_P(
    Sx40, CutReply,
    testing::Values(
        SampleField{"lblMemoria",
                    k40,
                    &BufferStatus::memoria,
                    {{0, ""},
                     {2, "0"},
                     {3, "05"},
                     {4, "052"},
                     {5, "0524"},
                     {6, "05242"},
                     {7, "052428"},
                     {8, "0524288"}}},
        SampleField{"lblRiempimento",
                    k40,
                    &BufferStatus::riempimento,
                    {{0, ","}, {10, "8,"}, {11, "87,"}, {13, "87,1"}, {14, "87,12"}, {15, "87,13"}}},
        SampleField{"lblCondizione", k40, &BufferStatus::condizione, {{0, "Errore"}, {16, "Totale"}}},
        SampleField{"lblUltimoscarico",
                    k40,
                    &BufferStatus::ultimoscarico,
                    {{0, kNowShown}, {19, "20/11/2026 10:20:30"}}},
        SampleField{"lblUltimiDati",
                    k40,
                    &BufferStatus::ultimiDati,
                    {{0, kNowShown}, {21, "20/11/2026 10:20:30"}, {22, "11/11/2026 10:20:30"}}},
        SampleField{"lblGuasto", k40, &BufferStatus::guasto, {{0, "Non rilevabili"}, {23, "Caduta 220 V"}}},
        SampleField{"lblFirmware",
                    k40,
                    &BufferStatus::firmware,
                    {{0, ""}, {25, "2"}, {26, "2."}, {27, "2.0"}, {28, "2.05"}}},
        SampleField{"lblData",
                    k40,
                    &BufferStatus::data,
                    {{0, "//"},
                     {29, "2//"},
                     {30, "29//"},
                     {31, "29/0/"},
                     {32, "29/02/"},
                     {33, "29/02/2"},
                     {34, "29/02/24"}}},
        SampleField{"lblOra",
                    k40,
                    &BufferStatus::ora,
                    {{0, ":"}, {35, "0:"}, {36, "00:"}, {37, "00:0"}, {38, "00:07"}}},
        SampleField{"lblModem", k40, &BufferStatus::modem, {{0, "Presente"}, {39, "Non presente"}}},
        SampleField{"lblStampante", k40, &BufferStatus::stampante, {{0, "Presente"}, {40, "Non presente"}}},
        SampleField{"lblRipetizioni", k40, &BufferStatus::ripetizioni, {{0, "N/A"}}},
        SampleField{"lblModello", k40, &BufferStatus::modello, {{0, "N/A"}}},
        SampleField{"lblSelezione", k40, &BufferStatus::selezione, {{0, "N/A"}}}),
    NameOf<SampleField>);

// The position of each part's first character.
constexpr Sample k11{Sx11Status,
                     "\x02"    // 1
                     "07"      // 2
                     "0065536" // 4
                     "##"      // 11
                     "045"     // 13
                     "#"       // 16
                     "\xFF"    // 17
                     "\x80"    // 18
                     "\t"      // 19
                     "5"       // 20
                     "x"sv};   // 21

INSTANTIATE_TEST_SUITE_P(
    Sx11, CutReply,
    testing::Values(
        SampleField{"lblRipetizioni", k11, &BufferStatus::ripetizioni, {{0, ""}, {2, "0"}, {3, "07"}}},
        SampleField{"lblMemoria",
                    k11,
                    &BufferStatus::memoria,
                    {{0, ""},
                     {4, "0"},
                     {5, "00"},
                     {6, "006"},
                     {7, "0065"},
                     {8, "00655"},
                     {9, "006553"},
                     {10, "0065536"}}},
        SampleField{
            "lblRiempimento", k11, &BufferStatus::riempimento, {{0, ""}, {13, "0"}, {14, "04"}, {15, "045"}}},
        SampleField{"lblCondizione", k11, &BufferStatus::condizione, {{0, "Errore"}, {17, "Totale"}}},
        SampleField{"lblUltimoscarico", k11, &BufferStatus::ultimoscarico, {{0, ""}, {18, "128"}}},
        SampleField{"lblUltimiDati", k11, &BufferStatus::ultimiDati, {{0, ""}, {19, "9"}}},
        SampleField{"lblGuasto", k11, &BufferStatus::guasto, {{0, "No"}, {20, "Sì"}}},
        SampleField{"lblSelezione", k11, &BufferStatus::selezione, {{0, "Non attivo"}}},
        SampleField{"lblStampante", k11, &BufferStatus::stampante, {{0, "Non attiva"}}},
        SampleField{"lblFirmware", k11, &BufferStatus::firmware, {{0, "01.10"}}},
        SampleField{"lblModello", k11, &BufferStatus::modello, {{0, "N/A"}}},
        SampleField{"lblData", k11, &BufferStatus::data, {{0, "N/A"}}},
        SampleField{"lblOra", k11, &BufferStatus::ora, {{0, "N/A"}}},
        SampleField{"lblModem", k11, &BufferStatus::modem, {{0, "N/A"}}}),
    NameOf<SampleField>);

// A field of one byte, and what each of the 256 values shows.
struct CodedField {
    const char* name;
    Sample sample;
    std::size_t position; // from 1
    Field BufferStatus::*field;
    std::map<char, std::string> shown;
    std::string other;
};

void PrintTo(const CodedField& coded, std::ostream* out)
{
    *out << coded.name;
}

class EveryByte : public testing::TestWithParam<CodedField>
{
};

TEST_P(EveryByte, ShowsItsText)
{
    const auto& [name, sample, position, field, texts, other] = GetParam();
    std::string reply(sample.reply);
    for (int code = 0; code < 256; ++code) {
        const auto byte = static_cast<char>(code);
        reply.at(position - 1) = byte;
        const BufferStatus status = sample.decode(reply);

        const std::string shown = Shown(status.*field);

        EXPECT_EQ(shown, texts.contains(byte) ? texts.at(byte) : other) << name << " of byte " << code;
    }
}

INSTANTIATE_TEST_SUITE_P(
    , EveryByte,
    testing::Values(
        CodedField{"Sx30Condition",
                   k30,
                   15,
                   &BufferStatus::condizione,
                   {{'V', "Nessuna"}, {'M', "Parziale"}, {'P', "Totale"}},
                   "Errore"},
        CodedField{"Sx30Fault",
                   k30,
                   22,
                   &BufferStatus::guasto,
                   {{'N', "Nessuno"}, {'R', "Caduta 220 V"}, {'L', "Batteria"}},
                   "Nessuno"},
        CodedField{"Sx30Version",
                   k30,
                   23,
                   &BufferStatus::modello,
                   {{'1', "Std (24)"},
                    {'2', "Std (48)"},
                    {'3', "Std (72)"},
                    {'4', "Std (96)"},
                    {'5', "Std (120)"},
                    {'6', "Standard"},
                    {'7', "Sat"},
                    {'8', "Sconosciuta"},
                    {'9', "Sconosciuta"}},
                   "Std (16)"},
        CodedField{"Sx40Condition",
                   k40,
                   16,
                   &BufferStatus::condizione,
                   {{'V', "Nessuna"}, {'M', "Parziale"}, {'P', "Totale"}},
                   "Errore"},
        CodedField{"Sx40Fault",
                   k40,
                   23,
                   &BufferStatus::guasto,
                   {{'N', "Nessuno"}, {'R', "Caduta 220 V"}, {'L', "Batteria"}},
                   "Non rilevabili"},
        CodedField{"Sx40Modem", k40, 39, &BufferStatus::modem, {{'0', "Non presente"}}, "Presente"},
        CodedField{"Sx40Printer", k40, 40, &BufferStatus::stampante, {{'0', "Non presente"}}, "Presente"},
        CodedField{"Sx11Condition",
                   k11,
                   17,
                   &BufferStatus::condizione,
                   {{'\0', "Nessuna"}, {'\x55', "Parziale"}, {'\xFF', "Totale"}},
                   "Errore"},
        CodedField{"Sx11Fault",
                   k11,
                   20,
                   &BufferStatus::guasto,
                   {{'1', "Sì"},
                    {'2', "Sì"},
                    {'3', "Sì"},
                    {'4', "Sì"},
                    {'5', "Sì"},
                    {'6', "Sì"},
                    {'7', "Sì"},
                    {'8', "Sì"},
                    {'9', "Sì"}},
                   "No"},
        CodedField{"Sx11Selector", k11, 20, &BufferStatus::selezione, {}, "Non attivo"},
        CodedField{"Sx11Printer", k11, 20, &BufferStatus::stampante, {}, "Non attiva"}),
    NameOf<CodedField>);

TEST(Sx11Status, ShowsTheHoursAsTheByteItself)
{
    std::string reply(k11.reply);
    for (int code = 0; code < 256; ++code) {
        reply[17] = static_cast<char>(code);
        reply[18] = static_cast<char>(255 - code);
        const BufferStatus status = Sx11Status(reply);

        EXPECT_EQ(Shown(status.ultimoscarico), std::to_string(code));
        EXPECT_EQ(Shown(status.ultimiDati), std::to_string(255 - code));
    }
}

TEST(Sx30Status, TakesTextsOutOfTheReplyItself)
{
    const BufferStatus status = Sx30Status(k30.reply);

    EXPECT_EQ(std::get<std::string_view>(status.memoria).data(), k30.reply.data() + 1);
    EXPECT_EQ(std::get<std::string_view>(status.firmware).data(), k30.reply.data() + 23);
}

TEST(Sx30Status, ShowsReceivedBytesInCodePage1252)
{
    std::string reply(k30.reply);
    reply.replace(23, 4, "\x80\xE8\x81?");
    reply.replace(27, 2, "\xB0\xB1");

    const BufferStatus status = Sx30Status(reply);

    EXPECT_EQ(Shown(status.firmware), "€è\xC2\x81?");
    EXPECT_EQ(Shown(status.data), "°±/07/25");
}

TEST(Sx40Status, TakesAPercentageThatIsNoNumberForZero)
{
    std::string reply(k40.reply);
    reply.replace(8, 7, "ERRORE!");

    EXPECT_EQ(Shown(Sx40Status(reply).riempimento), ",");
}

TEST(StatusOf, DecodesByTheModelsNumber)
{
    EXPECT_EQ(StatusOf(11, k11.reply), Sx11Status(k11.reply));
    EXPECT_EQ(StatusOf(20, k30.reply), Sx30Status(k30.reply));
    EXPECT_EQ(StatusOf(30, k30.reply), Sx30Status(k30.reply));
    EXPECT_EQ(StatusOf(40, k40.reply), Sx40Status(k40.reply));
}

TEST(StatusOf, IsNothingForAnyOtherNumber)
{
    for (const int modelNumber : {-1, 0, 10, 12, 21, 31, 41})
        EXPECT_EQ(StatusOf(modelNumber, k30.reply), std::nullopt) << modelNumber;
}

TEST(NowMinusDays, EndsWithTheYears100And9999)
{
    EXPECT_EQ(NowMinusDays(kNow, 703'781), "01/01/0100 10:20:30");
    EXPECT_EQ(NowMinusDays(kNow, 703'782), "");
    EXPECT_EQ(NowMinusDays(kNow, -2'912'118), "31/12/9999 10:20:30");
    EXPECT_EQ(NowMinusDays(kNow, -2'912'119), "");
}

TEST(NowMinusDays, IsEmptyHoweverFarAway)
{
    for (const double days : {4e6, 1e18, 1.7e308})
        for (const double sign : {1.0, -1.0})
            EXPECT_EQ(NowMinusDays(kNow, sign * days), "") << sign * days;
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
