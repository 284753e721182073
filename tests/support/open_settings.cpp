#include "tests/support/settings_file.h"

namespace corvrec
{

std::unique_ptr<ProfileFile> OpenSettings(const std::filesystem::path& file)
{
    return OpenProfileFile(file);
}

} // namespace corvrec
