#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// The lines of a settings file, parsed independently of the code under test. Names of sections and keys are
// in lower case (ASCII), without surrounding blanks.
struct IniLine {
    enum class Kind { blank, comment, header, key, bare };

    Kind kind = Kind::blank;
    int section = -1;       // number of the header above; -1 before the first
    std::string name;       // of a header or a key
    std::string value;      // of a key, without trailing blanks
    std::string_view bytes; // as in the file, including the line end
};

// The bytes must outlive the lines. UTF-16 is recognised by its byte order mark, which belongs to no line; a
// character beyond one byte reads as "?" in a name or value.
std::vector<IniLine> LinesOf(std::string_view bytes);

// The first section with that name, or -1.
int SectionOf(const std::vector<IniLine>& lines, std::string_view name);

// The section's first key with that name, or nullptr.
const IniLine* KeyOf(const std::vector<IniLine>& lines, std::string_view section, std::string_view key);

// The file from the point of view of saving or removing one site.
struct SiteView {
    // The site's keys; under "[siti]" and "[general]" its line and the log's line there; under "[]" the
    // site's lines that are not keys.
    std::map<std::string, std::string> own;
    // All other lines except the site's header, joined, including comments and blank lines of the site's
    // section.
    std::string foreign;
};

SiteView ViewOf(std::string_view bytes, std::string_view code);

// Whether the foreign lines are the same to the byte, ignoring blanks and line ends at the very end.
bool KeepsForeign(const SiteView& before, const SiteView& after);

std::string InLowerCase(std::string_view text);

} // namespace corvrec
