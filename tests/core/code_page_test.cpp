#include "core/file/code_page.h"

#include <gtest/gtest.h>
#include <string>

namespace corvrec
{

namespace
{

using namespace std::string_literals;

std::string AllBytes()
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

TEST(CodePage, EveryByteSurvivesARoundTrip)
{
    const std::string bytes = AllBytes();

    EXPECT_EQ(Cp1252FromUtf8(Utf8FromCp1252(bytes)), bytes);
}

TEST(CodePage, Bytes80To9fAreThePagesOwnCharacters)
{
    const std::string bytes = AllBytes().substr(0x80, 0x20);

    EXPECT_EQ(Utf8FromCp1252(bytes), "€\xC2\x81‚ƒ„…†‡ˆ‰Š‹Œ\xC2\x8DŽ\xC2\x8F"
                                     "\xC2\x90‘’“”•–—˜™š›œ\xC2\x9DžŸ");
}

TEST(CodePage, BytesFromA0AreLatin1)
{
    const std::string bytes = AllBytes().substr(0xE0, 0x20);

    EXPECT_EQ(Utf8FromCp1252(bytes), "àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ");
    EXPECT_EQ(Utf8FromCp1252("\xA0\xBF\xC0\xDF"), "\xC2\xA0¿Àß");
}

TEST(CodePage, AsciiAndItsControlCharactersStay)
{
    const std::string ascii = AllBytes().substr(0, 0x80);

    EXPECT_EQ(Utf8FromCp1252(ascii), ascii);
    EXPECT_EQ(Cp1252FromUtf8(ascii), ascii);
}

TEST(CodePage, ACharacterOutsideThePageBecomesOneQuestionMark)
{
    EXPECT_EQ(Cp1252FromUtf8("aЖb"), "a?b");
    EXPECT_EQ(Cp1252FromUtf8("aāb"), "a?b");
    EXPECT_EQ(Cp1252FromUtf8("a漢b"), "a?b");
    EXPECT_EQ(Cp1252FromUtf8("a😀b"), "a?b");
    EXPECT_EQ(Cp1252FromUtf8("a\xEF\xBF\xBD"
                             "b"),
              "a?b");
}

TEST(CodePage, ACharacterWithTheNumberOfAnAssignedByteIsOutsideThePage)
{
    EXPECT_EQ(Cp1252FromUtf8("\xC2\x80"), "?"); // U+0080; the byte 80 is the euro sign
    EXPECT_EQ(Cp1252FromUtf8("\xC2\x9F"), "?");
}

TEST(CodePage, ABrokenPieceOfUtf8BecomesAQuestionMark)
{
    EXPECT_EQ(Cp1252FromUtf8("a\xC3"), "a?");
    EXPECT_EQ(Cp1252FromUtf8("a\xE2\x82z"), "a?z");
    EXPECT_EQ(Cp1252FromUtf8("\xC3\xC3\xA0"), "?\xE0");
    EXPECT_EQ(Cp1252FromUtf8("a\x80z"), "a?z"); // a continuation alone
    EXPECT_EQ(Cp1252FromUtf8("\xBF\xBF"), "??");
    EXPECT_EQ(Cp1252FromUtf8("\xC0\x8D"), "?"); // overlong
    EXPECT_EQ(Cp1252FromUtf8("\xE0\x80\x80"), "?");
    EXPECT_EQ(Cp1252FromUtf8("\xF0\x80\x80\xA9"), "?");
    EXPECT_EQ(Cp1252FromUtf8("\xED\xA0\x80"), "?");     // a surrogate
    EXPECT_EQ(Cp1252FromUtf8("\xF7\xBF\xBF\xBF"), "?"); // beyond Unicode
    EXPECT_EQ(Cp1252FromUtf8("\xFF"
                             "a"),
              "?a");
}

TEST(CodePage, NulIsACharacterLikeOthers)
{
    EXPECT_EQ(Cp1252FromUtf8("a\0b"s), "a\0b"s);
    EXPECT_EQ(Utf8FromCp1252("a\0b"s), "a\0b"s);
}

TEST(CodePage, EmptyTextStaysEmpty)
{
    EXPECT_EQ(Cp1252FromUtf8(""), "");
    EXPECT_EQ(Utf8FromCp1252(""), "");
}

} // namespace

} // namespace corvrec
