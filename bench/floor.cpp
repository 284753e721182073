#include "bench/stores.h"

#include <cstring>
#include <fcntl.h>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>

namespace corvrec
{

namespace
{

std::size_t ReadWhole(int descriptor, std::string& bytes)
{
    struct stat status {
    };
    if (fstat(descriptor, &status) != 0)
        throw std::runtime_error("fstat");
    bytes.resize(static_cast<std::size_t>(status.st_size));
    const ssize_t count = pread(descriptor, bytes.data(), bytes.size(), 0);
    if (count != status.st_size)
        throw std::runtime_error("pread");
    return bytes.size();
}

} // namespace

struct Floor::Impl {
    explicit Impl(const SitesFile& file)
        : path(file.Path())
        , section("[" + file.Code() + "]")
    {
        begin = file.Bytes().find(section);
        end = file.Bytes().find("\r\n[", begin) + 2;
        siteLine = file.Bytes().find(file.Code() + "=");
        for (const auto& [key, value] : kSiteKeys)
            table[std::string(key)] = value;
    }

    // Opens, reads, writes what is given from the place on, closes.
    void Rewrite(std::size_t from, const std::function<void(std::string&)>& change)
    {
        const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC);
        ReadWhole(descriptor, bytes);
        const std::size_t before = bytes.size();
        change(bytes);
        const ssize_t count =
            pwrite(descriptor, bytes.data() + from, bytes.size() - from, static_cast<off_t>(from));
        if (count < 0 ||
            (bytes.size() < before && ftruncate(descriptor, static_cast<off_t>(bytes.size())) != 0))
            throw std::runtime_error("write");
        close(descriptor);
    }

    std::string path;
    std::string section;
    std::string bytes;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t siteLine = 0;
    std::unordered_map<std::string, std::string> table;
};

Floor::Floor(const SitesFile& file)
    : impl_(std::make_unique<Impl>(file))
{
}

Floor::~Floor() = default;

// The pass looks at the first byte of each line, as a search for sections has to.
std::size_t Floor::List()
{
    const int descriptor = open(impl_->path.c_str(), O_RDONLY | O_CLOEXEC);
    std::string bytes;
    ReadWhole(descriptor, bytes);
    close(descriptor);
    std::size_t sections = 0;
    const char* const end = bytes.data() + bytes.size();
    for (const char* line = bytes.data(); line < end;) {
        sections += *line == '[' ? 1 : 0;
        const void* const lineEnd = std::memchr(line, '\n', static_cast<std::size_t>(end - line));
        line = lineEnd == nullptr ? end : static_cast<const char*>(lineEnd) + 1;
    }
    return sections;
}

std::string Floor::Read(const std::string& /*section*/, const char* key)
{
    return List() == 0 ? std::string() : impl_->table[key];
}

std::string Floor::ReadAgain(const std::string& /*section*/, const char* key)
{
    struct stat status {
    };
    if (stat(impl_->path.c_str(), &status) != 0)
        throw std::runtime_error("stat");
    return impl_->table[key];
}

// One byte more or less in each line, as a save of ours.
void Floor::Save(const std::string& /*code*/, int round)
{
    const auto moveFrom = [this, round](std::size_t from) {
        impl_->Rewrite(from, [round, from](std::string& bytes) {
            if (round % 2 == 0)
                bytes.erase(from, 1);
            else
                bytes.insert(from, 1, '0');
        });
    };
    moveFrom(impl_->siteLine + impl_->section.size() - 1);
    const std::size_t line = (impl_->end - impl_->begin) / kSiteKeys.size();
    for (std::size_t key = 0; key < kSiteKeys.size(); ++key)
        moveFrom(impl_->begin + impl_->section.size() + 2 + key * line);
    moveFrom(std::strlen("[General]\r\nCom=COM1\r\nLog="));
}

void Floor::DeleteSection(const std::string& /*section*/)
{
    impl_->Rewrite(impl_->begin,
                   [this](std::string& bytes) { bytes.erase(impl_->begin, impl_->end - impl_->begin); });
}

} // namespace corvrec
