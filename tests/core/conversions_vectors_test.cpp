#include "core/site/conversions.h"
#include "core/site/modem_catalogue.h"
#include "core/site/site_keys.h"
#include "core/site/site_list.h"
#include "tests/support/json_cases.h"
#include "tests/support/sample_site.h"
#include "tests/support/settings_file.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <string>
#include <vector>

// The lists of tests/data/conversions.json for src/core/site; the README.md there explains their fields.
namespace corvrec
{

namespace
{

ScheduleKind KindOf(const Json& one)
{
    return static_cast<ScheduleKind>(one.at("kind").get<int>());
}

TEST(ConversionVectors, Val)
{
    ForEachCase("val", [](const Json& one) {
        EXPECT_EQ(LeadingNumber(TextOf(one, "in")), one.at("out").get<double>());
    });
}

TEST(ConversionVectors, Whole16)
{
    ForEachCase("whole16", [](const Json& one) {
        EXPECT_EQ(Whole16(LeadingNumber(TextOf(one, "in"))), one.at("out").get<int>());
    });
}

TEST(ConversionVectors, Whole32)
{
    ForEachCase("whole32", [](const Json& one) {
        EXPECT_EQ(LeadingWhole(TextOf(one, "in")), one.at("out").get<std::int64_t>());
    });
}

TEST(ConversionVectors, RoundHalfEven)
{
    ForEachCase("round_half_even", [](const Json& one) {
        EXPECT_EQ(Whole32(one.at("in").get<double>()), one.at("out").get<std::int64_t>());
    });
}

TEST(ConversionVectors, NumberWithLeadingBlank)
{
    ForEachCase("number_with_leading_blank", [](const Json& one) {
        EXPECT_EQ(SignedText(one.at("in").get<std::int64_t>()), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, Format00)
{
    ForEachCase("format_00", [](const Json& one) {
        EXPECT_EQ(TwoDigits(one.at("in").get<double>()), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, FormatPercent)
{
    ForEachCase("format_percent", [](const Json& one) {
        EXPECT_EQ(PercentText(one.at("in").get<double>()), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, Trim)
{
    ForEachCase("trim",
                [](const Json& one) { EXPECT_EQ(TrimBlanks(TextOf(one, "in")), TextOf(one, "out")); });
}

TEST(ConversionVectors, SplitKeys)
{
    ForEachCase("split_keys", [](const Json& one) {
        EXPECT_EQ(SplitKeys(TextOf(one, "in")), one.at("out").get<std::vector<std::string>>());
    });
}

TEST(ConversionVectors, FlagFromText)
{
    ForEachCase("flag_from_text",
                [](const Json& one) { EXPECT_EQ(IsOne(TextOf(one, "in")), one.at("out").get<bool>()); });
}

TEST(ConversionVectors, ScheduleKindFromText)
{
    ForEachCase("schedule_kind_from_text", [](const Json& one) {
        EXPECT_EQ(static_cast<int>(ScheduleKindOf(TextOf(one, "in"))), one.at("index").get<int>());
    });
}

TEST(ConversionVectors, ScheduleKindOfTheSiteList)
{
    // The texts of the four kinds are consecutive in the string table; 0 means an empty cell.
    constexpr int kFirstKindText = 10724;
    ForEachCase("schedule_kind_from_text", [](const Json& one) {
        SettingsFile file("[Siti]\r\nUFF=Ufficio\r\n[UFF]\r\nRicorrenza=" + TextOf(one, "in") + "\r\n");

        const auto kind = ListSites(*file).at(0).schedule;

        EXPECT_EQ(kind ? kFirstKindText + static_cast<int>(*kind) : 0, one.at("list_text_id").get<int>());
    });
}

TEST(ConversionVectors, WeekdayMask)
{
    ForEachCase("weekday_mask", [](const Json& one) {
        SettingsFile file;
        int mask = 0;
        for (const auto row : one.at("rows").get<std::vector<std::size_t>>())
            mask += kWeekdayRows.at(row);
        SiteRecord site = SampleSite();
        site.schedule = ScheduleKind::weekly;
        site.weekdays = mask;

        SaveSite(*file, "UFF", "Ufficio", site, {.year = 2026, .month = 3, .day = 3});

        EXPECT_EQ(mask, one.at("out").get<int>());
        EXPECT_EQ(file.Line("UFF", "Ricorrenza"), "Ricorrenza=" + TextOf(one, "stored"));
    });
}

TEST(ConversionVectors, WeekdayRowsFromMask)
{
    ForEachCase("weekday_rows_from_mask", [](const Json& one) {
        SettingsFile file("[UFF]\r\nRicorrenza= " + std::to_string(one.at("mask").get<int>()) + "\r\n");
        SiteRecord site;

        LoadSite(*file, "UFF", site);

        auto rows = one.at("before").get<std::set<std::size_t>>(); // marks are only added
        for (std::size_t row = 0; row < kWeekdayRows.size(); ++row) {
            if ((site.weekdays.value() & kWeekdayRows.at(row)) != 0)
                rows.insert(row);
        }
        EXPECT_EQ(rows, one.at("out").get<std::set<std::size_t>>());
    });
}

TEST(ConversionVectors, HourMinuteFromSeconds)
{
    ForEachCase("hour_minute_from_seconds", [](const Json& one) {
        EXPECT_EQ(IntervalText(ScheduleKind::hourly, TextOf(one, "in")), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, DaysFromSeconds)
{
    ForEachCase("days_from_seconds", [](const Json& one) {
        EXPECT_EQ(IntervalText(ScheduleKind::daily, TextOf(one, "in")), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, WeeksFromSeconds)
{
    ForEachCase("weeks_from_seconds", [](const Json& one) {
        EXPECT_EQ(IntervalText(ScheduleKind::weekly, TextOf(one, "in")), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, FormatSeconds)
{
    ForEachCase("format_seconds", [](const Json& one) {
        EXPECT_EQ(StoredInterval(KindOf(one), TextOf(one, "field")), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, StartTimeLoad)
{
    ForEachCase("start_time_load", [](const Json& one) {
        const StartTime start = ReadStartTime(TextOf(one, "in"));

        EXPECT_EQ(start.field, TextOf(one, "field"));
        EXPECT_EQ(start.marked, one.at("p").get<bool>());
    });
}

TEST(ConversionVectors, StartTimeSave)
{
    ForEachCase("start_time_save", [](const Json& one) {
        const std::string date = TextOf(one, "date"); // yyyy-mm-dd
        const DateTime today{
            .year = std::stoi(date.substr(0, 4)),
            .month = std::stoi(date.substr(5, 2)),
            .day = std::stoi(date.substr(8, 2)),
        };

        EXPECT_EQ(StoredStartTime(KindOf(one), TextOf(one, "field"), today, one.at("p").get<bool>()),
                  TextOf(one, "out"));
    });
}

TEST(ConversionVectors, IsTime)
{
    ForEachCase("is_time",
                [](const Json& one) { EXPECT_EQ(IsTime(TextOf(one, "in")), one.at("out").get<bool>()); });
}

TEST(ConversionVectors, IsDate)
{
    ForEachCase("is_date",
                [](const Json& one) { EXPECT_EQ(IsDate(TextOf(one, "in")), one.at("out").get<bool>()); });
}

TEST(ConversionVectors, ControlCharLoad)
{
    ForEachCase("control_char_load", [](const Json& one) {
        std::optional<FlowCharacter> expected;
        if (!one.contains("skip"))
            expected = FlowCharacter{.control = one.at("box").get<bool>(), .text = TextOf(one, "field")};

        EXPECT_EQ(ReadFlowCharacter(TextOf(one, "in")), expected);
    });
}

TEST(ConversionVectors, ControlCharSave)
{
    ForEachCase("control_char_save", [](const Json& one) {
        const FlowCharacter character{.control = one.at("box").get<bool>(), .text = TextOf(one, "field")};
        std::optional<std::string> expected;
        if (!one.contains("error"))
            expected = TextOf(one, "out");

        EXPECT_EQ(StoredFlowCharacter(character), expected);
    });
}

TEST(ConversionVectors, AtPrefix)
{
    ForEachCase("at_prefix",
                [](const Json& one) { EXPECT_EQ(WithAtPrefix(TextOf(one, "in")), TextOf(one, "out")); });
}

TEST(ConversionVectors, PhoneLoad)
{
    ForEachCase("phone_load", [](const Json& one) {
        const DialNumber dial = ReadDialNumber(TextOf(one, "in"));

        EXPECT_EQ(dial.tone, one.at("tone").get<bool>());
        EXPECT_EQ(dial.number, TextOf(one, "number"));
    });
}

TEST(ConversionVectors, PhonePrefix)
{
    ForEachCase("phone_prefix", [](const Json& one) {
        const DialNumber dial{.tone = one.at("tone").get<bool>(), .number = TextOf(one, "number")};

        EXPECT_EQ(StoredDialNumber(dial), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, CatalogueLine)
{
    ForEachCase("catalogue_line", [](const Json& one) {
        const ModemModel model = ParseCatalogueLine(TextOf(one, "line"));

        EXPECT_EQ(model.name, TextOf(one, "name"));
        EXPECT_EQ(model.initString, TextOf(one, "string"));
    });
}

TEST(ConversionVectors, AlertLoad)
{
    ForEachCase("alert_load", [](const Json& one) {
        const Alert alert = ReadAlert(TextOf(one, "in"));

        EXPECT_EQ(alert.on, one.at("ticked").get<bool>());
        EXPECT_EQ(alert.limit, one.contains("field") ? std::optional(TextOf(one, "field")) : std::nullopt);
    });
}

TEST(ConversionVectors, AlertSave)
{
    ForEachCase("alert_save", [](const Json& one) {
        const Alert alert{.on = one.at("ticked").get<bool>(), .limit = TextOf(one, "field")};

        EXPECT_EQ(StoredAlert(alert), TextOf(one, "out"));
    });
}

TEST(ConversionVectors, FileCollision)
{
    ForEachCase("file_collision", [](const Json& one) {
        std::string bytes;
        std::vector<SiteRow> rows;
        for (const Json& site : one.at("sites")) {
            bytes += "[" + TextOf(site, "code") + "]\r\n";
            for (const char* const key : {"Dati", "Dati2", "Storico"})
                bytes += std::string(key) + "=" + TextOf(site, key) + "\r\n";
            rows.push_back(
                {.name = TextOf(site, "name"), .code = TextOf(site, "code"), .enabled = 0, .schedule = ""});
        }
        SettingsFile file(bytes);
        const SiteFiles files{.data = TextOf(one, "data"),
                              .exchange = TextOf(one, "exchange"),
                              .history = TextOf(one, "history")};

        const std::optional<int> row = FindCollision(*file, rows, files, TextOf(one, "own_code"));

        EXPECT_EQ(row.value_or(-1), one.at("row").get<int>());
    });
}

} // namespace

} // namespace corvrec
