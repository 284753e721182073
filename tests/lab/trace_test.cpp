#include "tools/lab/trace.h"

#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <string>

namespace corvrec::lab
{

namespace
{

TEST(Trace, WritesALineForEachBurst)
{
    std::ostringstream output;
    Trace trace(&output, 1000);

    trace.Event(1, "opened", 1000);
    trace.Bytes(1, Direction::fromEditor, "\x13\x02", 1024);
    trace.Bytes(12, Direction::toEditor, "A~ \x7F\xFF", 3601000);

    EXPECT_EQ(output.str(), "    0.000 COM1 opened\n"
                            "    0.024 COM1 < 13 02  ..\n"
                            " 3600.000 COM12 > 41 7E 20 7F FF  A~ ..\n");
}

TEST(Trace, WritesNulsAndLineEndsAsBytes)
{
    std::ostringstream output;
    Trace trace(&output, 0);

    trace.Bytes(1, Direction::toEditor, std::string("\r\n\0", 3), 0);

    EXPECT_EQ(output.str(), "    0.000 COM1 > 0D 0A 00  ...\n");
}

TEST(Trace, WritesNothingForNoBytes)
{
    std::ostringstream output;
    Trace trace(&output, 0);

    trace.Bytes(1, Direction::toEditor, "", 0);

    EXPECT_EQ(output.str(), "");
}

TEST(Trace, ReportsAFailedWrite)
{
    std::ostringstream output;
    output.setstate(std::ios::badbit); // a full disk
    Trace trace(&output, 0);

    EXPECT_THROW(trace.Event(1, "opened", 0), std::runtime_error);
}

} // namespace

} // namespace corvrec::lab
