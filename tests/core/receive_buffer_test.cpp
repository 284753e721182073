#include "core/device/receive_buffer.h"

#include <gtest/gtest.h>
#include <string_view>

namespace corvrec
{

namespace
{

using namespace std::string_view_literals;

TEST(ReceiveBuffer, DropsNuls)
{
    ReceiveBuffer buffer;

    buffer.Append("\0a\0\0b"sv);
    buffer.Append("\0"sv);

    EXPECT_EQ(buffer.Count(), 2);
    EXPECT_EQ(buffer.Take(), "ab");
    EXPECT_TRUE(buffer.IsEmpty());
}

TEST(ReceiveBuffer, GivesUpToInputLenCharacters)
{
    ReceiveBuffer buffer;
    buffer.Append("abc");
    buffer.Append("def");

    buffer.SetInputLen(4);
    EXPECT_EQ(buffer.Take(), "abcd");
    EXPECT_EQ(buffer.Take(), "ef");
    EXPECT_EQ(buffer.Take(), "");

    buffer.Append("ghi");
    buffer.SetInputLen(0);
    EXPECT_EQ(buffer.Take(), "ghi");
}

TEST(ReceiveBuffer, KeepsInputLenWhenCleared)
{
    ReceiveBuffer buffer;
    buffer.SetInputLen(1);
    buffer.Append("ab");

    buffer.Clear();

    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(buffer.InputLen(), 1);
}

} // namespace

} // namespace corvrec
