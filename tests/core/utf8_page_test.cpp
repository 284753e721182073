// A process whose manifest sets the code page to UTF-8, as Windows can be set system-wide.

#include "tests/support/settings_file.h"

#include <gtest/gtest.h>
#include <string>
#include <windows.h>

namespace corvrec
{

namespace
{

const std::string kSettings = "[Siti]\r\nMI=Citt\xE0\r\n[MI]\r\nOgni=1\r\n"; // code page 1252

TEST(Utf8Page, IsThatOfThisProcess)
{
    EXPECT_EQ(::GetACP(), static_cast<UINT>(CP_UTF8));
}

TEST(Utf8Page, SpoilsNoByteOfTheSettings)
{
    SettingsFile file(kSettings);

    EXPECT_FALSE(file->Write("Siti", "RO", "Citt\xE0"));
    EXPECT_FALSE(file->DeleteKey("MI", "Ogni"));
    EXPECT_FALSE(file->DeleteSection("MI"));
    file->Flush();

    EXPECT_EQ(file.Bytes(), kSettings);
}

TEST(Utf8Page, ReadsTheFallback)
{
    SettingsFile file(kSettings);

    EXPECT_EQ(file->Read("Siti", "MI", "none", 100), "none");
    EXPECT_EQ(file->Keys("Siti", "none", 100), "none");
}

} // namespace

} // namespace corvrec
