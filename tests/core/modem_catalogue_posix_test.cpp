#include "core/site/modem_catalogue.h"
#include "tests/support/settings_file.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <system_error>

namespace corvrec
{

namespace
{

// The number of this process's open descriptors of the file.
int DescriptorsOf(const std::filesystem::path& file)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // the iterator's own descriptor no longer exists
        if (std::filesystem::equivalent(entry.path(), file, gone))
            ++count;
    }
    return count;
}

TEST(CatalogueOnPosix, TheFileStaysOpenAsLongAsTheCatalogueLives)
{
    const SettingsFile settings; // only for its directory
    const std::filesystem::path file = settings.Directory() / "modem.dat";
    std::ofstream(file) << "A=1";
    {
        const ModemCatalogue catalogue(file);

        EXPECT_EQ(DescriptorsOf(file), 1);
    }
    EXPECT_EQ(DescriptorsOf(file), 0);
}

// Opening a FIFO for reading would wait for a writer that never comes.
TEST(CatalogueOnPosix, AFifoInItsPlaceDoesNotBlock)
{
    const SettingsFile settings;
    const std::filesystem::path file = settings.Directory() / "modem.dat";
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);

    EXPECT_TRUE(ModemCatalogue(file).Models().Count() == 0);
}

TEST(CatalogueOnPosix, ALinkIsFollowed)
{
    const SettingsFile settings;
    std::ofstream(settings.Directory() / "altro.dat") << "A=1";
    std::filesystem::create_symlink("altro.dat", settings.Directory() / "modem.dat");

    EXPECT_EQ(ModemCatalogue(settings.Directory() / "modem.dat").Models().Count(), 1U);
}

} // namespace

} // namespace corvrec
