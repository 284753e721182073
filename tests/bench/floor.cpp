#include "tests/bench/stores.h"

#include <cstring>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>

namespace corvrec
{

namespace
{

std::size_t SizeOf(int descriptor)
{
    struct stat status {
    };
    if (fstat(descriptor, &status) != 0)
        throw std::runtime_error("fstat");
    return static_cast<std::size_t>(status.st_size);
}

void ReadWhole(int descriptor, std::span<char> bytes)
{
    if (pread(descriptor, bytes.data(), bytes.size(), 0) != std::ssize(bytes))
        throw std::runtime_error("pread");
}

// As if the value were already known, for any key.
std::string ValueOf(const char* key)
{
    static const std::unordered_map<std::string_view, std::string_view> table = [] {
        std::unordered_map<std::string_view, std::string_view> values;
        for (const auto& [name, value] : kSiteKeys)
            values[name] = value;
        return values;
    }();
    return std::string(table.at(key));
}

} // namespace

struct Floor::Impl {
    explicit Impl(const SitesFile& sites)
        : file(sites)
        , path(sites.Path())
    {
    }

    // Opens and reads the file, applies the change, writes from this offset on, closes.
    void Rewrite(std::size_t from, const std::function<void(std::string&)>& change)
    {
        const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC);
        bytes.resize(SizeOf(descriptor));
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

    const SitesFile& file;
    std::string path;
    std::string bytes; // the buffer is reused by each write
};

Floor::Floor(const SitesFile& file)
    : impl_(std::make_unique<Impl>(file))
{
}

Floor::~Floor() = default;

// The pass looks at the first byte of each line, as any search for sections must.
std::size_t Floor::List()
{
    const int descriptor = open(impl_->path.c_str(), O_RDONLY | O_CLOEXEC);
    const std::size_t size = SizeOf(descriptor);
    // NOLINTNEXTLINE(*-avoid-c-arrays): a container would be cleared first
    const auto bytes = std::make_unique_for_overwrite<char[]>(size);
    ReadWhole(descriptor, {bytes.get(), size});
    close(descriptor);
    std::size_t sections = 0;
    const char* const end = bytes.get() + size;
    for (const char* line = bytes.get(); line < end;) {
        sections += *line == '[' ? 1 : 0;
        const void* const lineEnd = std::memchr(line, '\n', static_cast<std::size_t>(end - line));
        line = lineEnd == nullptr ? end : static_cast<const char*>(lineEnd) + 1;
    }
    return sections;
}

std::string Floor::Read(const std::string& /*section*/, const char* key)
{
    return List() == 0 ? std::string() : ValueOf(key);
}

std::string Floor::ReadAgain(const std::string& /*section*/, const char* key)
{
    struct stat status {
    };
    if (stat(impl_->path.c_str(), &status) != 0)
        throw std::runtime_error("stat");
    return ValueOf(key);
}

// Adds or removes one byte in each line, as our save does.
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
    const SitesFile& file = impl_->file;
    moveFrom(file.SiteLine() + file.Code().size() + 1);
    const std::size_t firstKey = file.SectionBegin() + file.Code().size() + std::strlen("[]\r\n");
    const std::size_t line = (file.SectionEnd() - file.SectionBegin()) / kSiteKeys.size();
    for (std::size_t key = 0; key < kSiteKeys.size(); ++key)
        moveFrom(firstKey + key * line);
    moveFrom(std::strlen("[General]\r\nCom=COM1\r\nLog="));
}

void Floor::DeleteSection(const std::string& /*section*/)
{
    const std::size_t begin = impl_->file.SectionBegin();
    const std::size_t length = impl_->file.SectionEnd() - begin;
    impl_->Rewrite(begin, [begin, length](std::string& bytes) { bytes.erase(begin, length); });
}

} // namespace corvrec
