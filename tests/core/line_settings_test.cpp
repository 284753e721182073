#include "core/device/line_settings.h"

#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace corvrec
{

namespace
{

class TextOfALine : public testing::TestWithParam<std::pair<const char*, LineFormat>>
{
};

TEST_P(TextOfALine, HasItsMeaning)
{
    EXPECT_EQ(FormatOf(GetParam().first), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    FormatOf, TextOfALine,
    testing::Values(std::pair("9600,N,8,1", LineFormat{9600, LineParity::none, 8, LineStopBits::one}),
                    std::pair("4800,E,7,2", LineFormat{4800, LineParity::even, 7, LineStopBits::two}),
                    std::pair("2400,O,7,1", LineFormat{2400, LineParity::odd, 7, LineStopBits::one}),
                    std::pair("1,M,6,1", LineFormat{1, LineParity::mark, 6, LineStopBits::one}),
                    std::pair("115200,S,5,1.5",
                              LineFormat{115200, LineParity::space, 5, LineStopBits::oneAndHalf})));

class TextOfNoLine : public testing::TestWithParam<const char*>
{
};

TEST_P(TextOfNoLine, HasNoMeaning)
{
    EXPECT_EQ(FormatOf(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(FormatOf, TextOfNoLine,
                         testing::Values("", ",N,8,1", "0,N,8,1", "-300,N,8,1", "+300,N,8,1", " 300,N,8,1",
                                         "300 ,N,8,1", "99999999999,N,8,1", "9600,,8,1", "9600,n,8,1",
                                         "9600,X,8,1", "9600,NN,8,1", "9600,N,,1", "9600,N,4,1", "9600,N,9,1",
                                         "9600,N,8.0,1", "9600,N,8,", "9600,N,8,1.0", "9600,N,8,3",
                                         "9600,N,8", "9600,N,8,1,", "9600,N,8,1,2", "9600;N;8;1"));

} // namespace

} // namespace corvrec
