#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

struct ModemModel {
    std::string name;       // UTF-8
    std::string initString; // UTF-8
};

// The line's name before the first "=" and its string after it, in UTF-8 as the line is. A line without "="
// has an empty name and is all string.
ModemModel ParseCatalogueLine(std::string_view line);

// The models of a catalogue's content, less than 4 GiB: one a line in code page 1252; lines end with CR LF,
// LF or CR. Only the bytes and the places of the lines are kept, since each empty line is a model too.
class ModemModels
{
public:
    explicit ModemModels(std::string bytes = {});

    [[nodiscard]] std::size_t Count() const { return begins_.size(); }
    // Counted from 0. Throws std::out_of_range.
    [[nodiscard]] ModemModel At(std::size_t line) const;

private:
    std::string bytes_;
    std::vector<std::uint32_t> begins_; // of the lines
};

// The modem catalogue. Its file stays open until the object goes: other programs of the platform see it in
// use for as long as the editor runs.
class ModemCatalogue
{
public:
    // Bytes of the file that are read. The rest is left out, and so is the line that does not end within
    // them.
    static constexpr std::size_t mostBytes = std::size_t{1024} * 1024;

    // A missing or unreadable file gives no model and no error.
    explicit ModemCatalogue(const std::filesystem::path& file);

    [[nodiscard]] const ModemModels& Models() const { return models_; }

private:
    std::ifstream file_;
    ModemModels models_;
};

} // namespace corvrec
