#include "tests/support/settings_file.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <system_error>

namespace corvrec
{

namespace
{

std::filesystem::path NewDirectory()
{
    std::random_device random;
    for (;;) {
        auto directory = std::filesystem::temp_directory_path() /
                         ("corvrec-test-" + std::to_string(random()) + std::to_string(random()));
        if (std::filesystem::create_directory(directory))
            return directory;
    }
}

} // namespace

SettingsFile::SettingsFile(std::optional<std::string_view> bytes)
    : directory_(NewDirectory())
    , file_(OpenSettings(Path()))
{
    if (bytes)
        Rewrite(*bytes);
}

SettingsFile::~SettingsFile()
{
    // A directory that is left over harms no test.
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::string SettingsFile::Bytes() const
{
    std::ostringstream bytes;
    bytes << std::ifstream(Path(), std::ios::binary).rdbuf(); // in blocks, since this is called very often
    return bytes.str();
}

bool SettingsFile::Exists() const
{
    return std::filesystem::exists(Path());
}

std::string SettingsFile::Line(std::string_view section, std::string_view key) const
{
    const std::string bytes = Bytes();
    const std::string header = "[" + std::string(section) + "]";
    const std::string start = std::string(key) + "=";
    bool isInSection = false;
    std::size_t begin = 0;
    while (begin < bytes.size()) {
        const std::size_t end = std::min(bytes.find_first_of("\r\n", begin), bytes.size());
        std::string line = bytes.substr(begin, end - begin);
        if (isInSection && line.starts_with('['))
            return {};
        if (line == header)
            isInSection = true;
        if (isInSection && line.starts_with(start))
            return line;
        begin = end + 1;
    }
    return {};
}

void SettingsFile::Rewrite(std::string_view bytes) const
{
    std::ofstream file(Path(), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void SettingsFile::Remove() const
{
    std::filesystem::remove(Path());
}

} // namespace corvrec
