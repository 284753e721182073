#include "core/file/ini_text.h"
#include "tests/fuzz/text_profile.h"
#include "tests/support/reference_profile.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

// What the vectors of tests/data/profile leave out.
namespace corvrec
{

namespace
{

using namespace std::string_literals;
using namespace std::string_view_literals;

// UTF-16 little endian with a byte order mark. The character 2 becomes a capital omega, which the code page
// does not have; 80 to 9F do not occur here.
std::string Wide(std::string_view text)
{
    std::string wide = "\xFF\xFE";
    for (const char character : text)
        wide += character == '\x02' ? "\xA9\x03"s : std::string{character, '\0'};
    return wide;
}

// The code page's pairs of letters; every other byte is its own upper case.
char UpperOf(char byte)
{
    constexpr auto upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ\x8A\x8C\x8E\x9F"
                           "\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9\xCA\xCB\xCC\xCD\xCE\xCF"
                           "\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD8\xD9\xDA\xDB\xDC\xDD\xDE"sv;
    constexpr auto lower = "abcdefghijklmnopqrstuvwxyz\x9A\x9C\x9E\xFF"
                           "\xE0\xE1\xE2\xE3\xE4\xE5\xE6\xE7\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF"
                           "\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF8\xF9\xFA\xFB\xFC\xFD\xFE"sv;
    const std::size_t index = lower.find(byte);
    return index == std::string_view::npos ? byte : upper[index];
}

// All bytes that a name may contain.
std::string NameBytes()
{
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\r' && byte != '\n' && byte != ']')
            bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(IniText, NamesIgnoreTheCaseOfExactlyThePagesLetterPairs)
{
    for (const char inFile : NameBytes()) {
        IniText text("[x"s + inFile + "x]\nk=1\n");
        std::string found;
        std::string partners;
        for (const char asked : NameBytes()) {
            found += text.Read("x"s + asked + "x", "k", "", 100).empty() ? "" : std::string(1, asked);
            partners += UpperOf(asked) == UpperOf(inFile) ? std::string(1, asked) : "";
        }
        EXPECT_EQ(found, partners);
    }
}

TEST(IniText, FillerIsNeverRead)
{
    EXPECT_EQ(IniText("[A]").Filler(0), "");
    EXPECT_EQ(IniText("[A]").Filler(1), "\n");
    EXPECT_EQ(IniText("[A]").Filler(2), "\r\n");
    EXPECT_EQ(IniText("[A]").Filler(5), "   \r\n");
    EXPECT_EQ(IniText(Wide("[A]")).Filler(2), "\n\0"s);
    EXPECT_EQ(IniText(Wide("[A]")).Filler(6), " \0\r\0\n\0"s);
    EXPECT_EQ(IniText("[A]\nk=\"1\"" + IniText().Filler(7)).Read("A", "k", "none", 100), "1");
}

TEST(IniText, KeysAreFoundWhileTheirSectionGrowsAndShrinks)
{
    IniText text("[A]\r\n; nota\r\n[B]\r\nK7=altra\r\nfine=1"); // the last line has no end
    const auto key = [](int number) { return "K" + std::to_string(number); };
    for (const std::string_view section : {"A", "B"}) {
        for (int i = 0; i < 200; ++i)
            text.Apply(text.Put(section, key(i), std::to_string(i)).value());
    }
    for (int i = 0; i < 200; i += 5) {
        text.Apply(text.EraseKey("A", key(i)).value());
        text.Apply(text.Put("B", key(i), "un valore lungo").value());
    }

    for (int i = 0; i < 200; ++i) {
        const bool isFifth = i % 5 == 0;
        EXPECT_EQ(text.Read("A", key(i), "none", 100), isFifth ? "none" : std::to_string(i));
        EXPECT_EQ(text.Read("B", key(i), "none", 100), isFifth ? "un valore lungo" : std::to_string(i));
    }
    EXPECT_EQ(text.Read("B", "fine", "none", 100), "1");
}

TEST(IniText, AValueThatOnlyReadsLikeTheNewOneIsReplaced)
{
    IniText text(Wide("[A]\nk=\x02\n"));
    EXPECT_EQ(text.Read("A", "k", "none", 100), "?");

    text.Apply(text.Put("A", "k", "?").value());

    EXPECT_EQ(text.Bytes(), Wide("[A]\nk=?\n"));
    EXPECT_TRUE(text.Put("A", "k", "?").value().ChangesNothing());
}

TEST(IniText, EditsOfWholeLinesAreFollowed)
{
    IniText text("[A]\nk=1\n[B]\nk=2\n");
    text.Apply({.offset = 4, .removed = 0, .inserted = "j=0\n"}); // before the first question
    EXPECT_EQ(text.Read("A", "k", "none", 100) + text.Read("A", "j", "none", 100), "10");
    text.Apply({.offset = 0, .removed = 0, .inserted = "; nota\n"}); // moves the first header
    EXPECT_EQ(text.Read("A", "k", "none", 100) + text.Read("B", "k", "none", 100), "12");
    text.Apply({.offset = 15, .removed = 0, .inserted = "[C]\n"}); // divides the first section
    EXPECT_EQ(text.Read("A", "k", "none", 100) + text.Read("C", "k", "none", 100), "none1");
    text.Apply({.offset = 7, .removed = 12, .inserted = ""}); // removes two headers
    EXPECT_EQ(text.Bytes(), "; nota\nk=1\n[B]\nk=2\n");
    EXPECT_EQ(text.Read("C", "k", "none", 100) + text.Read("B", "k", "none", 100), "none2");
}

// Random files made of awkward pieces, and random edits. A fixed seed repeats the same cases in every run.
class RandomIniText : public testing::Test
{
protected:
    std::string_view Piece()
    {
        static constexpr std::array pieces = {
            "[a]"sv,   "[b]"sv,  "[B"sv,   " [c] x"sv, "[]"sv,   "[?]"sv,    "[\x02]"sv, "a=1"sv,
            "b = 2"sv, "A=3"sv,  "=4"sv,   ";a=5"sv,   "bare"sv, "\xE0=6"sv, "\xC0=7"sv, "\x02=8"sv,
            "?=9"sv,   "a"sv,    "["sv,    "]"sv,      "="sv,    ";"sv,      " "sv,      "\t"sv,
            "\0"sv,    R"(")"sv, "'"sv,    "?"sv,      "\x02"sv, "\v\f"sv,   "\x1A"sv,   "\r\n"sv,
            "\r\n"sv,  "\r\n"sv, "\r\n"sv, "\r"sv,     "\n"sv};
        return pieces.at(Below(pieces.size()));
    }

    std::string Pieces(std::size_t most)
    {
        std::string pieces;
        for (std::size_t count = Below(most + 1); count > 0; --count)
            pieces += Piece();
        return pieces;
    }

    std::string_view Name()
    {
        static constexpr std::array names = {"a"sv,    "B"sv,   "c"sv,   ""sv,    ";a"sv,
                                             "\xE0"sv, "a]b"sv, "[d]"sv, "\na"sv, "?"sv};
        return names.at(Below(names.size()));
    }

    // Makes the same random change in both, and expects the same result and the same bytes.
    void ChangeBoth(fuzz::TextProfile& file, ReferenceProfile& model)
    {
        const std::string_view section = Name();
        const std::string_view key = Name();
        const std::size_t choice = Below(8);
        const std::string value = Pieces(3);
        const auto change = [&](auto& changed) {
            return choice == 0   ? changed.DeleteSection(section)
                   : choice == 1 ? changed.DeleteKey(section, key)
                                 : changed.Write(section, key, value);
        };
        EXPECT_EQ(change(file), change(model));
        EXPECT_EQ(file.Bytes(), model.Bytes());
    }

    void ExpectSameAnswers(ProfileFile& file, const ReferenceProfile& model)
    {
        const std::size_t size = Below(30);
        for (const std::string_view section : {"a", "b", "c", "", "d", "\xC0", "a]b", "?"}) {
            EXPECT_EQ(file.Keys(section, "", size), model.Keys(section, size).value_or("")) << section;
            for (const std::string_view key : {"a", "b", "", "\xC0", ";a", "bare", "?"})
                EXPECT_EQ(file.Read(section, key, "", size), model.Read(section, key, size).value_or(""))
                    << section << " " << key;
        }
    }

    std::size_t Below(std::size_t limit) { return random_() % limit; }

private:
    std::mt19937 random_{20260303}; // NOLINT(cert-msc51-cpp): repeatable on purpose
};

TEST_F(RandomIniText, AnswersAndChangesLikeTheModel)
{
    for (int file = 0; file < 800; ++file) {
        const std::string pieces = Pieces(30);
        const std::string bytes =
            std::array{pieces, pieces, Wide(pieces), Wide(pieces), Wide(pieces) + "x"}.at(Below(5));
        SCOPED_TRACE(testing::PrintToString(bytes));
        fuzz::TextProfile text(bytes);
        ReferenceProfile model(bytes);
        for (int step = 0; step < 12; ++step) {
            ExpectSameAnswers(text, model);
            ChangeBoth(text, model);
            ASSERT_FALSE(HasFailure());
        }
    }
}

TEST_F(RandomIniText, FillerAtTheEndChangesNoAnswer)
{
    for (int file = 0; file < 500; ++file) {
        const std::string bytes = Pieces(20);
        SCOPED_TRACE(testing::PrintToString(bytes));
        fuzz::TextProfile filled(bytes + IniText(bytes).Filler(1 + Below(6)));
        ExpectSameAnswers(filled, ReferenceProfile(bytes));
        ASSERT_FALSE(HasFailure());
    }
}

} // namespace

} // namespace corvrec
