#include "core/device/parity_marks.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>

namespace corvrec
{

namespace
{

using namespace std::string_view_literals;

std::string Decoded(std::string_view bytes)
{
    return ParityMarks().Decode(bytes);
}

TEST(ParityMarks, LeaveOtherCharactersUnchanged)
{
    std::string bytes;
    for (int code = 0; code < 0xFF; ++code)
        bytes += static_cast<char>(code);

    EXPECT_EQ(Decoded(bytes), bytes);
}

TEST(ParityMarks, AreDecoded)
{
    for (const auto& [bytes, characters] : {
             std::pair{"a\xFF\0xy"sv, "a?y"sv},
             std::pair{"\xFF\0\xFF\xFF\0*"sv, "??"sv},          // the damaged character may be FF itself
             std::pair{"a\xFF\xFFx"sv, "a\xFFx"sv},             // one FF
             std::pair{"\xFF\xFF\xFF\xFF\0"sv, "\xFF\xFF\0"sv}, // two FF and a NUL, no mark
             std::pair{"x\xFF\0\0y"sv, "xy"sv},                 // a break
         })
        EXPECT_EQ(Decoded(bytes), characters);
}

TEST(ParityMarks, MayBeSplitAnywhere)
{
    constexpr std::string_view kBytes = "a\xFF\0b\xFF\xFF\xFF\0\0c\xFF\0\xFF"sv;
    for (std::size_t first = 0; first <= kBytes.size(); ++first) {
        for (std::size_t second = first; second <= kBytes.size(); ++second) {
            ParityMarks marks;
            std::string characters = marks.Decode(kBytes.substr(0, first));
            characters += marks.Decode(kBytes.substr(first, second - first));
            characters += marks.Decode(kBytes.substr(second));
            EXPECT_EQ(characters, "a?\xFF"
                                  "c?")
                << first << ", " << second;
        }
    }
}

TEST(ParityMarks, ForgetAnUnfinishedMarkOnReset)
{
    ParityMarks marks;
    EXPECT_EQ(marks.Decode("\xFF\0"sv), "");

    marks.Reset();

    EXPECT_EQ(marks.Decode("a"), "a");
}

} // namespace

} // namespace corvrec
