#include "tests/bench/sites_file.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace corvrec
{

namespace
{

// Five digits, so that all sections have the same size.
std::string SiteCode(int site)
{
    std::string digits = std::to_string(site);
    return "S" + std::string(5 - digits.size(), '0') + digits;
}

} // namespace

SitesFile::SitesFile(int sites)
    : code_(SiteCode(sites / 2))
{
    std::string directory = (std::filesystem::temp_directory_path() / "corvrec.XXXXXX").native();
    if (mkdtemp(directory.data()) == nullptr)
        throw std::runtime_error("no temporary directory");
    directory_ = directory;

    bytes_ = "[General]\r\nCom=COM1\r\nLog=Corvrec.log\r\n[Siti]\r\n";
    for (int site = 0; site < sites; ++site)
        bytes_ += SiteCode(site) + "=Sito " + std::to_string(site) + "\r\n";
    for (int site = 0; site < sites; ++site) {
        bytes_ += "[" + SiteCode(site) + "]\r\n";
        for (const auto& [key, value] : kSiteKeys)
            bytes_.append(key).append("=").append(value).append("\r\n");
    }
    siteLine_ = bytes_.find(code_ + "=");
    sectionBegin_ = bytes_.find("[" + code_ + "]");
    sectionEnd_ = bytes_.find("\r\n[", sectionBegin_) + 2;
    Restore();
    // Waits until the file's time is old enough to prove that the file has not changed.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

SitesFile::~SitesFile()
{
    std::filesystem::remove_all(directory_);
}

void SitesFile::Restore() const
{
    std::ofstream(Path(), std::ios::binary) << bytes_;
}

} // namespace corvrec
