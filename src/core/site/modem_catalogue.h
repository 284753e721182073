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

// An entry of the modem catalogue.
struct ModemModel {
    std::string name;       // UTF-8
    std::string initString; // UTF-8
};

// Splits a line, in UTF-8, at its first "=": the name before it, the initialisation string after it. A line
// without "=" is all initialisation string and has an empty name.
ModemModel ParseCatalogueLine(std::string_view line);

// The models in a catalogue of less than 4 GiB: one per line, in code page 1252. Lines end with CR LF, LF or
// CR. Even an empty line is a model, so only the bytes and the places of the lines are stored.
class ModemModels
{
public:
    explicit ModemModels(std::string bytes = {});

    [[nodiscard]] std::size_t Count() const { return begins_.size(); }
    // The model of a line, counted from 0. Throws std::out_of_range.
    [[nodiscard]] ModemModel At(std::size_t line) const;

private:
    std::string bytes_;
    std::vector<std::uint32_t> begins_; // where each line begins
};

// The modem catalogue. Deliberate: its file stays open as long as the object lives, so that other programs
// see it in use while the editor runs.
class ModemCatalogue
{
public:
    // The most bytes that are read. The rest is ignored, including the line that does not end within them.
    static constexpr std::size_t mostBytes = std::size_t{1024} * 1024;

    // A missing or unreadable file gives an empty catalogue, not an error.
    explicit ModemCatalogue(const std::filesystem::path& file);

    [[nodiscard]] const ModemModels& Models() const { return models_; }

private:
    std::ifstream file_;
    ModemModels models_;
};

} // namespace corvrec
