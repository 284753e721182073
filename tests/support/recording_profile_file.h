#pragma once

#include "core/file/profile_file.h"

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// An empty settings file that only records the requests, for what a real file cannot show: sizes of reads,
// and what follows a failure. All texts are bytes.
class RecordingProfileFile final : public ProfileFile
{
public:
    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override
    {
        reads.push_back(Note(section, key) + " " + std::to_string(size));
        return std::string(fallback);
    }

    std::string Keys(std::string_view section, std::string_view /*fallback*/, std::size_t size) override
    {
        reads.push_back(Note(section, "") + " " + std::to_string(size));
        return keys;
    }

    bool Write(std::string_view section, std::string_view key, std::string_view value) override
    {
        writes.push_back(Note(section, key) + "=" + std::string(value));
        return !failing.contains(key);
    }

    bool DeleteKey(std::string_view section, std::string_view key) override
    {
        writes.push_back("delete " + Note(section, key));
        return !failing.contains(key);
    }

    bool DeleteSection(std::string_view section) override
    {
        writes.push_back("delete " + Note(section, ""));
        return !failing.contains(section);
    }

    bool IsWritable() override { return true; }
    void Flush() override { writes.emplace_back("flush"); }

    std::set<std::string, std::less<>> failing; // keys and sections whose operations fail
    std::string keys;                           // returned by Keys
    std::vector<std::string> reads;             // "[section]key size"
    std::vector<std::string> writes;            // "[section]key=value", "delete [section]key", "flush"

private:
    static std::string Note(std::string_view section, std::string_view key)
    {
        return "[" + std::string(section) + "]" + std::string(key);
    }
};

} // namespace corvrec
