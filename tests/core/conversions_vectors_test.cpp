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

std::optional<std::string> TextIf(bool isThere, const Json& one, const char* field)
{
    return isThere ? std::optional(TextOf(one, field)) : std::nullopt;
}

DateTime DateOf(const std::string& date) // yyyy-mm-dd
{
    return {.year = std::stoi(date.substr(0, 4)),
            .month = std::stoi(date.substr(5, 2)),
            .day = std::stoi(date.substr(8, 2))};
}

// A list, the result of the conversion for one of its cases, and the expected result. Both as JSON.
struct Conversion {
    const char* list;
    Json (*result)(const Json& one);
    Json (*expected)(const Json& one) = [](const Json& one) { return one.at("out"); };
};

const std::vector<Conversion> kConversions{
    {"val", [](const Json& one) { return Json(LeadingNumber(TextOf(one, "in"))); },
     [](const Json& one) { return Json(one.at("out").get<double>()); }},
    {"whole16", [](const Json& one) { return Json(Whole16(LeadingNumber(TextOf(one, "in")))); }},
    {"whole32", [](const Json& one) { return Json(LeadingWhole(TextOf(one, "in"))); }},
    {"round_half_even", [](const Json& one) { return Json(Whole32(one.at("in").get<double>())); }},
    {"number_with_leading_blank",
     [](const Json& one) { return Json(SignedText(one.at("in").get<std::int64_t>())); }},
    {"format_00", [](const Json& one) { return Json(TwoDigits(one.at("in").get<double>())); }},
    {"format_percent", [](const Json& one) { return Json(PercentText(one.at("in").get<double>())); }},
    {"trim", [](const Json& one) { return Json(TrimBlanks(TextOf(one, "in"))); }},
    {"split_keys", [](const Json& one) { return Json(SplitKeys(TextOf(one, "in"))); }},
    {"flag_from_text", [](const Json& one) { return Json(IsOne(TextOf(one, "in"))); }},
    {"schedule_kind_from_text",
     [](const Json& one) { return Json(static_cast<int>(ScheduleKindOf(TextOf(one, "in")))); },
     [](const Json& one) { return one.at("index"); }},
    {"hour_minute_from_seconds",
     [](const Json& one) { return Json(IntervalText(ScheduleKind::hourly, TextOf(one, "in"))); }},
    {"days_from_seconds",
     [](const Json& one) { return Json(IntervalText(ScheduleKind::daily, TextOf(one, "in"))); }},
    {"weeks_from_seconds",
     [](const Json& one) { return Json(IntervalText(ScheduleKind::weekly, TextOf(one, "in"))); }},
    {"format_seconds",
     [](const Json& one) { return Json(StoredInterval(KindOf(one), TextOf(one, "field"))); }},
    {"start_time_load",
     [](const Json& one) {
         const StartTime start = ReadStartTime(TextOf(one, "in"));
         return Json({start.field, start.marked});
     },
     [](const Json& one) {
         return Json({one.at("field"), one.at("p")});
     }},
    {"start_time_save",
     [](const Json& one) {
         return Json(StoredStartTime(KindOf(one), TextOf(one, "field"), DateOf(TextOf(one, "date")),
                                     one.at("p").get<bool>()));
     }},
    {"is_time", [](const Json& one) { return Json(IsTime(TextOf(one, "in"))); }},
    {"is_date", [](const Json& one) { return Json(IsDate(TextOf(one, "in"))); }},
    {"at_prefix", [](const Json& one) { return Json(WithAtPrefix(TextOf(one, "in"))); }},
    {"phone_load",
     [](const Json& one) {
         const DialNumber dial = ReadDialNumber(TextOf(one, "in"));
         return Json({dial.tone, dial.number});
     },
     [](const Json& one) {
         return Json({one.at("tone"), one.at("number")});
     }},
    {"phone_prefix",
     [](const Json& one) {
         return Json(StoredDialNumber({.tone = one.at("tone").get<bool>(), .number = TextOf(one, "number")}));
     }},
    {"catalogue_line",
     [](const Json& one) {
         const ModemModel model = ParseCatalogueLine(TextOf(one, "line"));
         return Json({model.name, model.initString});
     },
     [](const Json& one) {
         return Json({one.at("name"), one.at("string")});
     }},
    {"alert_save",
     [](const Json& one) {
         return Json(StoredAlert({.on = one.at("ticked").get<bool>(), .limit = TextOf(one, "field")}));
     }},
};

TEST(ConversionVectors, GiveTheListedResults)
{
    for (const Conversion& conversion : kConversions) {
        SCOPED_TRACE(conversion.list);
        ForEachCase(conversion.list,
                    [&](const Json& one) { EXPECT_EQ(conversion.result(one), conversion.expected(one)); });
    }
}

TEST(ConversionVectors, MayHaveNoResult)
{
    ForEachCase("control_char_load", [](const Json& one) {
        const auto character = ReadFlowCharacter(TextOf(one, "in"));

        ASSERT_EQ(character.has_value(), !one.contains("skip"));
        EXPECT_TRUE(!character ||
                    *character == (FlowCharacter{one.at("box").get<bool>(), TextOf(one, "field")}));
    });
    ForEachCase("control_char_save", [](const Json& one) {
        const FlowCharacter character{.control = one.at("box").get<bool>(), .text = TextOf(one, "field")};

        EXPECT_EQ(StoredFlowCharacter(character), TextIf(!one.contains("error"), one, "out"));
    });
    ForEachCase("alert_load", [](const Json& one) {
        const Alert alert = ReadAlert(TextOf(one, "in"));

        EXPECT_EQ(alert.on, one.at("ticked").get<bool>());
        EXPECT_EQ(alert.limit, TextIf(one.contains("field"), one, "field"));
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

TEST(ConversionVectors, FileCollision)
{
    ForEachCase("file_collision", [](const Json& one) {
        std::string bytes;
        std::vector<SiteRow> rows;
        for (const Json& site : one.at("sites")) {
            bytes += "[" + TextOf(site, "code") + "]\r\n";
            for (const char* const key : {"Dati", "Dati2", "Storico"})
                bytes += std::string(key) + "=" + TextOf(site, key) + "\r\n";
            rows.push_back({.name = TextOf(site, "name"),
                            .code = TextOf(site, "code"),
                            .enabled = 0,
                            .schedule = std::nullopt});
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
