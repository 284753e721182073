#include "core/file/ini_text.h"

#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

namespace
{

using namespace std::string_literals;
using namespace std::string_view_literals;

// UTF-16 little endian with a byte order mark. Bytes keep their number; 80 to 9F, which would not, do not
// occur here.
std::string Wide(std::string_view text)
{
    std::string wide = "\xFF\xFE";
    for (const char character : text) {
        wide += character;
        wide += '\0';
    }
    return wide;
}

std::string Applied(std::string bytes, const std::optional<Edit>& edit)
{
    if (!edit)
        return "no edit";
    return bytes.replace(edit->offset, edit->removed, edit->inserted);
}

TEST(IniText, AValueIsReplacedFromTheEqualsSignToTheLineEnd)
{
    IniText text("[MI]\r\n Ogni = 3600 \r\nOra=08:00\r\n");

    const auto edit = text.Put("MI", "OGNI", " 62");

    EXPECT_EQ(edit, (Edit{.offset = 13, .removed = 6, .inserted = " 62"}));
}

TEST(IniText, AnEqualValueChangesNothing)
{
    IniText text("[MI]\r\nOgni= 62");

    EXPECT_EQ(text.Put("MI", "Ogni", " 62"), Edit{});
}

TEST(IniText, AValueThatDiffersInABlankIsWritten)
{
    IniText text("[MI]\r\nOgni= 62\r\n");

    EXPECT_EQ(text.Put("MI", "Ogni", "62"), (Edit{.offset = 11, .removed = 3, .inserted = "62"}));
}

TEST(IniText, ANewKeyFollowsTheLastKeyBeforeCommentsAndBlankLines)
{
    IniText text("[MI]\nA=1\n; note\n\n[NA]\n");

    EXPECT_EQ(text.Put("MI", "B", "2"), (Edit{.offset = 9, .removed = 0, .inserted = "B=2\r\n"}));
}

TEST(IniText, ANewSectionIsAppendedAfterALineEnd)
{
    IniText text("[MI]\r\nA=1");

    EXPECT_EQ(text.Put("NA", "B", "2"), (Edit{.offset = 9, .removed = 0, .inserted = "\r\n[NA]\r\nB=2\r\n"}));
}

TEST(IniText, ErasingASectionKeepsItsCommentsAndIsOneEdit)
{
    IniText text("[A]\r\nk=1\r\n[B]\r\n; one\r\nk=2\r\n\r\nbare\r\n; two\r\n[C]\r\n");

    EXPECT_EQ(text.EraseSection("b"), (Edit{.offset = 10, .removed = 25, .inserted = "; one\r\n\r\n"}));
}

TEST(IniText, ErasingWhatIsNotThereChangesNothing)
{
    IniText text("[A]\r\nk=1\r\n");

    EXPECT_EQ(text.EraseKey("A", "l"), Edit{});
    EXPECT_EQ(text.EraseKey("B", "k"), Edit{});
    EXPECT_EQ(text.EraseSection("B"), Edit{});
}

TEST(IniText, OnlyTheFirstSectionOfANameCounts)
{
    IniText text("[A]\nx=1\n[a]\ny=2\n");
    EXPECT_EQ(text.Read("A", "y", "none", 100), "none");

    text.Apply(text.EraseSection("A").value());

    EXPECT_EQ(text.Bytes(), "[a]\ny=2\n");
    EXPECT_EQ(text.Read("A", "y", "none", 100), "2");
}

TEST(IniText, LongValuesCountModulo65536)
{
    IniText text("[A]\nfull=" + std::string(65536, 'x') + "\nmore=" + std::string(65538, 'y') + "\n");

    EXPECT_EQ(text.Read("A", "full", "none", 100), "");
    EXPECT_EQ(text.Read("A", "more", "none", 100), "yy");
}

TEST(IniText, AHeaderIsFoundAfterEveryKindOfBlank)
{
    IniText text("x=0\r\n \t\v\f\x1A\0[A]\rk=1"s);

    EXPECT_EQ(text.Read("A", "k", "none", 100), "1");
}

TEST(IniText, ABracketInsideALineIsNoHeader)
{
    IniText text("[A]\nx=[B]\n;[B]\nname [B]\n[C[B]\n[B]\nk=1\n");

    EXPECT_EQ(text.Read("A", "x", "none", 100), "[B]");
    EXPECT_EQ(text.Read("B", "k", "none", 100), "1");
    EXPECT_EQ(text.Keys("C[B", "none", 100), "none");
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

TEST(IniText, KeysAreCutTwoBytesBeforeTheSize)
{
    IniText text("[Siti]\nROMA=1\nMI=2\n");

    EXPECT_EQ(text.Keys("Siti", "none", 10), "ROMA\0MI\0"s);
    EXPECT_EQ(text.Keys("Siti", "none", 9), "ROMA\0MI"s);
    EXPECT_EQ(text.Keys("Siti", "none", 7), "ROMA\0"s);
    EXPECT_EQ(text.Keys("Siti", "none", 2), "");
    EXPECT_EQ(text.Keys("Siti", "none", 0), "");
}

TEST(IniText, AFallbackLosesItsTrailingSpacesAndIsCut)
{
    IniText text;

    EXPECT_EQ(text.Read("A", "k", " none  ", 100), " none");
    EXPECT_EQ(text.Read("A", "k", "-CaVacca-", 5), "-CaV");
    EXPECT_EQ(text.Keys("A", "   ", 100), "");
    EXPECT_EQ(text.Read("A", "k", "none", 0), "");
}

TEST(IniText, Utf16IsReadAndContinuedAsUtf16)
{
    IniText text(Wide("[MI]\r\nOgni=1\r\n"));

    EXPECT_EQ(text.Read("MI", "ogni", "none", 100), "1");
    EXPECT_EQ(text.Put("MI", "Euro", "\x80"),
              (Edit{.offset = 30, .removed = 0, .inserted = "E\0u\0r\0o\0=\0\xAC\x20\r\0\n\0"s}));
}

TEST(IniText, AnUtf16CharacterOutsideThePageReadsAsAQuestionMarkButEqualsNone)
{
    const std::string omega = "\xA9\x03"; // capital omega
    const std::string file =
        Wide("[") + omega + Wide("]\nk=1\n[?]\nk=2\n").substr(2) + Wide("v=").substr(2) + omega;
    IniText text(file);

    EXPECT_EQ(text.Read("?", "k", "none", 100), "2");
    EXPECT_EQ(text.Read("?", "v", "none", 100), "?");
    EXPECT_EQ(Applied(file, text.Put("?", "v", "?")),
              file.substr(0, file.size() - 2) + Wide("?\r\n").substr(2));
}

TEST(IniText, AnUtf16KeyOutsideThePageIsListedButNeverFound)
{
    const std::string omega = "\xA9\x03";
    IniText text(Wide("[A]\n") + omega + Wide("=1\nk=2\n").substr(2));

    EXPECT_EQ(text.Keys("A", "none", 100), "?\0k\0"s);
    EXPECT_EQ(text.Read("A", "?", "none", 100), "none");
}

TEST(IniText, KeptUtf16LinesKeepTheirCharacters)
{
    const std::string omega = "\xA9\x03";
    const std::string comment = ";\0"s + omega + "\r\0\n\0"s;
    IniText text(Wide("[A]\r\n") + comment + Wide("k=1\r\n").substr(2));

    text.Apply(text.EraseSection("A").value());

    EXPECT_EQ(text.Bytes(), "\xFF\xFE" + comment);
}

TEST(IniText, Utf16OfOddLengthIsReadAndNeverChanged)
{
    IniText text(Wide("[A]\nk=1\n") + "x");

    EXPECT_EQ(text.Read("A", "k", "none", 100), "1");
    EXPECT_EQ(text.Put("A", "k", "2"), std::nullopt);
    EXPECT_EQ(text.EraseKey("A", "k"), std::nullopt);
    EXPECT_EQ(text.EraseSection("A"), std::nullopt);
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

TEST(IniText, AKeyInsideAWrittenValueIsFoundBeforeOneThatOnlyReadsLikeIt)
{
    // The second name holds a character outside the code page: it reads as '?' and matches no name.
    const std::string outside = "\x16\x04" + Wide("=5\r\n").substr(2);
    IniText text(Wide("[A]\r\nk=1\r\n") + outside);
    ASSERT_EQ(text.Read("A", "?", "none", 100), "none");

    text.Apply(text.Put("A", "k", "2\r\n?=9").value());
    EXPECT_EQ(text.Read("A", "?", "none", 100), "9");
    text.Apply(text.Put("A", "?", "8").value());

    EXPECT_EQ(text.Bytes(), Wide("[A]\r\nk=2\r\n?=8\r\n") + outside);
}

// Random files made of awkward pieces, and random edits. A fixed seed repeats the same cases in every run.
class RandomIniText : public testing::Test
{
protected:
    std::string_view Piece()
    {
        static constexpr std::array pieces = {"[a]"sv,    "[b]"sv,  "[B"sv, " [c] x"sv, "[]"sv,   "a=1"sv,
                                              "b = 2"sv,  "A=3"sv,  "=4"sv, ";a=5"sv,   "bare"sv, "\xE0=6"sv,
                                              "\xC0=7"sv, "a"sv,    "["sv,  "]"sv,      "="sv,    ";"sv,
                                              " "sv,      "\t"sv,   "\0"sv, R"(")"sv,   "'"sv,    "\r\n"sv,
                                              "\r\n"sv,   "\r\n"sv, "\r"sv, "\n"sv,     "\x1A"sv};
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
        static constexpr std::array names = {"a"sv,    "B"sv,   "c"sv,   ""sv,   ";a"sv,
                                             "\xE0"sv, "a]b"sv, "[d]"sv, "\na"sv};
        return names.at(Below(names.size()));
    }

    // Makes the same random change to both, which hold the same text, and returns the edit of the first.
    Edit ChangeBoth(IniText& first, IniText& second)
    {
        const std::string_view section = Name();
        const std::string_view key = Name();
        const std::size_t choice = Below(8);
        const std::string value = Pieces(3);
        Edit made;
        for (IniText* changed : {&second, &first}) {
            made = choice == 0   ? changed->EraseSection(section).value()
                   : choice == 1 ? changed->EraseKey(section, key).value()
                                 : changed->Put(section, key, value).value();
            changed->Apply(made);
        }
        return made;
    }

    std::size_t Below(std::size_t limit) { return random_() % limit; }

    IniText text;

private:
    std::mt19937 random_{20260303}; // NOLINT(cert-msc51-cpp): repeatable on purpose
};

// Every answer about the names in use, joined.
std::string AllAnswers(IniText& text)
{
    std::string answers;
    for (const std::string_view section : {"a", "b", "c", "", "d", "\xC0", "a]b"}) {
        answers += text.Keys(section, "none", 500) + "|";
        for (const std::string_view key : {"a", "b", "", "\xC0", ";a", "bare"})
            answers += text.Read(section, key, "none", 100) + "|";
    }
    return answers;
}

TEST_F(RandomIniText, AnswersLikeAFreshObjectAfterEveryEdit)
{
    for (int step = 0; step < 5000; ++step) {
        if (step % 12 == 0)
            text = IniText(Pieces(30));
        const std::string before = text.Bytes();
        AllAnswers(text); // so that it has an index to maintain
        IniText fresh(before);

        const Edit edit = ChangeBoth(text, fresh);

        ASSERT_EQ(text.Bytes(), Applied(before, edit));
        fresh = IniText(text.Bytes());
        ASSERT_EQ(AllAnswers(text), AllAnswers(fresh)) << testing::PrintToString(text.Bytes());
    }
}

TEST_F(RandomIniText, GivesTheSameTextInUtf16AsInSingleBytes)
{
    IniText wide;
    for (int step = 0; step < 5000; ++step) {
        if (step % 12 == 0) {
            text = IniText(";\n" + Pieces(30)); // never empty: a byte order mark alone is an unfinished line
            wide = IniText(Wide(text.Bytes()));
        }

        ChangeBoth(text, wide);

        ASSERT_EQ(wide.Bytes(), Wide(text.Bytes()));
        ASSERT_EQ(AllAnswers(wide), AllAnswers(text));
    }
}

TEST_F(RandomIniText, FillerAtTheEndChangesNoAnswer)
{
    for (int file = 0; file < 2000; ++file) {
        text = IniText(Pieces(20));
        IniText filled(text.Bytes() + text.Filler(1 + Below(6)));
        ASSERT_EQ(AllAnswers(filled), AllAnswers(text)) << testing::PrintToString(text.Bytes());
    }
}

} // namespace

} // namespace corvrec
