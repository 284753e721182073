#include "core/device/line_settings.h"

#include <gtest/gtest.h>

namespace corvrec
{

namespace
{

TEST(LineSettingsText, WithoutAParityItsPlaceIsEmpty)
{
    EXPECT_EQ(LineSettingsText("9600", -1, "8", "1"), "9600,,8,1");
}

} // namespace

} // namespace corvrec
