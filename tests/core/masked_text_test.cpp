#include "core/masked_text.h"
#include "tests/support/json_cases.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace corvrec
{

namespace
{

// For ASCII only.
std::u32string Wide(std::string_view text)
{
    return {text.begin(), text.end()};
}

std::string Narrow(std::u32string_view text)
{
    return {text.begin(), text.end()};
}

MaskedText Masked(std::string_view mask, std::string_view text)
{
    MaskedText masked;
    masked.SetMask(Wide(mask));
    EXPECT_TRUE(masked.SetText(Wide(text)));
    return masked;
}

struct Edit {
    const char* mask;
    const char* before;
    std::size_t start;
    std::size_t length;
    const char* inserted;
    bool changes;
    const char* after;
    std::size_t caret;
};

constexpr auto kEdits = std::to_array<Edit>({
    // typing overwrites without shifting; a digit at a literal is put after it
    {"##:##", "08:30", 1, 0, "9", true, "09:30", 3},
    {"##:##", "__:__", 2, 0, "7", true, "__:7_", 4},
    // a literal leads to the next group
    {"##:##", "8_:__", 1, 0, ":", true, "8_:__", 3},
    {"##:##", "8_:__", 2, 0, ":", true, "8_:__", 3},
    // other characters are refused and keep the selected places
    {"##:##", "08:30", 0, 5, "a", false, "08:30", 0},
    {"##:##", "08:30", 0, 5, "/", false, "08:30", 0},
    {"##:##", "08:30", 0, 5, "#", false, "08:30", 0},
    {"##:##", "08:30", 0, 5, "_", false, "08:30", 0},
    {"##:##", "08:30", 0, 5, " ", false, "08:30", 0},
    // deleting leaves the places empty
    {"##/##/##", "31/12/26", 0, 1, "", true, "_1/12/26", 0},
    {"##/##/##", "_1/12/26", 1, 4, "", true, "__/__/26", 1},
    // pasting fills from group to group
    {"##:##", "__:__", 0, 8, "12:34", true, "12:34", 5},
    {"##:##", "__:__", 0, 8, "1234", true, "12:34", 5},
    {"##:##", "__:__", 0, 8, "1:5", true, "1_:5_", 4},
    {"##:##", "__:__", 0, 8, "__:30", true, "__:30", 5},
    {"##:##", "__:__", 0, 8, "12:34:56", true, "12:34", 5},
    {"##:##", "__:__", 0, 8, "ore 12:34\r\n", true, "12:34", 5},
    {"##:##", "__:__", 0, 8, "12.34", true, "12:34", 5},
    {"##/##/##", "__/__/__", 0, 8, "31/12/26", true, "31/12/26", 8},
    {"##/##/##", "__/__/__", 0, 8, "31//26", true, "31/__/26", 8},
    {"##/##/##", "__/__/__", 0, 8, "1/2/26", true, "1_/2_/26", 8},
    {"##/##/##", "__/__/__", 0, 8, "__/__/26", true, "__/__/26", 8},
    {"##/##/##", "__/__/__", 0, 8, "/12/26", true, "__/12/26", 8},
    // ranges beyond the text are clipped
    {"##:##", "08:30", 3, 2000, "4", true, "08:4_", 4},
    {"##:##", "08:30", 2000, 2000, "4", false, "08:30", 5},
    // without a mask any text is kept
    {"", "due giorni", 4, 6, "mesi", true, "due mesi", 8},
});

TEST(MaskedText, ReplacesARange)
{
    for (const auto& [mask, before, start, length, inserted, changes, after, caret] : kEdits) {
        SCOPED_TRACE(std::string(before) + " <- " + inserted);
        MaskedText masked = Masked(mask, before);
        EXPECT_EQ(masked.Replace(start, length, Wide(inserted)), changes);
        EXPECT_EQ(Narrow(masked.Text()), after);
        EXPECT_EQ(masked.Caret(), caret);
    }
    ForEachCase("mask_replace_selection", [](const Json& one) {
        MaskedText masked = Masked(TextOf(one, "mask"), TextOf(one, "text"));
        masked.Replace(one.at("start"), one.at("length"), Wide(TextOf(one, "insert")));
        EXPECT_EQ(Narrow(masked.Text()), TextOf(one, "out"));
        EXPECT_EQ(masked.Caret(), one.at("caret").get<std::size_t>());
    });
}

TEST(MaskedText, AcceptsWhatFitsTheMask)
{
    ForEachCase("mask_accepts_text", [](const Json& one) {
        MaskedText masked;
        masked.SetMask(Wide(TextOf(one, "mask")));
        EXPECT_EQ(masked.Accepts(Wide(TextOf(one, "text"))), one.at("out").get<bool>());
    });
}

TEST(MaskedText, ATextThatDoesNotFitChangesNothing)
{
    MaskedText masked = Masked("##:##", "08:30");

    EXPECT_FALSE(masked.SetText(U"8:30"));
    EXPECT_FALSE(masked.SetText(U"\u0663\u0663:\u0663\u0663")); // digits of another script
    EXPECT_FALSE(masked.Replace(0, 0, U"\u0663"));

    EXPECT_EQ(Narrow(masked.Text()), "08:30");
}

TEST(MaskedText, ANewMaskEmptiesTheText)
{
    MaskedText masked = Masked("##:##", "08:30");

    masked.SetMask(U"##/##/##");
    EXPECT_EQ(Narrow(masked.Text()), "__/__/__");
    masked.SetMask(U"");
    EXPECT_EQ(masked.Text(), U"");
}

TEST(MaskedText, TypedKeysFillThePlacesWithOrWithoutTheLiterals)
{
    for (const std::u32string_view keys : {U"31/12/26", U"311226"}) {
        MaskedText masked = Masked("##/##/##", "__/__/__");

        for (const char32_t key : keys)
            masked.Replace(masked.Caret(), 0, std::u32string(1, key));

        EXPECT_EQ(Narrow(masked.Text()), "31/12/26");
        EXPECT_EQ(masked.Caret(), 8U);
    }
}

TEST(MaskedText, BackspaceAndDeleteStartAtTheNearestPlace)
{
    const MaskedText masked = Masked("##:##", "08:30");
    struct Caret {
        std::size_t at;
        std::size_t forBackspace;
        std::size_t forDelete;
    };
    for (const auto& [at, forBackspace, forDelete] :
         {Caret{0, 0, 0}, Caret{1, 1, 1}, Caret{2, 2, 3}, Caret{3, 2, 3}, Caret{4, 4, 4}, Caret{5, 5, 5},
          Caret{99, 5, 5}}) {
        EXPECT_EQ(masked.CaretForBackspace(at), forBackspace) << at;
        EXPECT_EQ(masked.CaretForDelete(at), forDelete) << at;
    }
}

TEST(MaskedText, AnySequenceOfEditsLeavesATextThatFits)
{
    const std::u32string keys = U"0123456789:/_#a ";
    std::mt19937 random(20261121); // a fixed seed: the same edits each time
    for (const std::u32string_view mask : {U"##:##", U"##/##/##", U"#", U":#:", U"::"}) {
        MaskedText masked;
        masked.SetMask(mask);
        for (int edit = 0; edit < 20'000; ++edit) {
            std::u32string inserted;
            for (auto length = random() % 5; length > 0; --length)
                inserted += keys.at(random() % keys.size());

            masked.Replace(random() % 11, random() % 11, inserted);

            ASSERT_TRUE(masked.Accepts(masked.Text()));
            ASSERT_LE(masked.Caret(), masked.Text().size());
        }
    }
}

} // namespace

} // namespace corvrec
