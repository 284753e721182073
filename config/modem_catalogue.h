#pragma once

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

// A catalogue's content: one model a line in code page 1252; lines end with CR LF, LF or CR.
std::vector<ModemModel> ParseCatalogue(std::string_view bytes);

// The modem catalogue. Its file stays open until the object goes: other programs of the platform see it in
// use for as long as the editor runs.
class ModemCatalogue
{
public:
    // A missing or unreadable file gives no model and no error.
    explicit ModemCatalogue(const std::filesystem::path& file);

    const std::vector<ModemModel>& Models() const { return models_; }

private:
    std::ifstream file_;
    std::vector<ModemModel> models_;
};

} // namespace corvrec
