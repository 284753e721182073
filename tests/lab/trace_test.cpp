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
    trace.Bytes(12, Direction::toEditor, std::string("A~ \x7F\xFF\r\0", 7), 3601000);
    trace.Bytes(1, Direction::toEditor, "", 3601000); // nothing to write

    EXPECT_EQ(output.str(), "    0.000 COM1 opened\n"
                            "    0.024 COM1 < 13 02  ..\n"
                            " 3600.000 COM12 > 41 7E 20 7F FF 0D 00  A~ ....\n");
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
