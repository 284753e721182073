#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// The lines of a settings file, taken apart here and not by the code under test. Names of sections and keys
// are in lower case (ASCII), and without the blanks around them.
struct IniLine {
    enum class Kind { blank, comment, header, key, bare };

    Kind kind = Kind::blank;
    int section = -1;       // counts the headers; -1: in front of the first one
    std::string name;       // of a header or a key
    std::string value;      // of a key, without the blanks behind it
    std::string_view bytes; // as in the file, line end included
};

// The bytes must outlive the lines. UTF-16 with a mark is taken for what it is: then a character beyond the
// single bytes is "?" in a name or value, and the mark is nobody's.
std::vector<IniLine> LinesOf(std::string_view bytes);

// The first section of that name; -1 when there is none.
int SectionOf(const std::vector<IniLine>& lines, std::string_view name);

// The section's first key of that name; none: null.
const IniLine* KeyOf(const std::vector<IniLine>& lines, std::string_view section, std::string_view key);

// The file as a save or a removal of one site sees it.
struct SiteView {
    // The site's keys, and as "[siti]" and "[general]" its line and the log's in those sections. As "[]" its
    // lines that are no keys.
    std::map<std::string, std::string> own;
    // All other lines but the site's header, as one: comments and blank lines of the site's section too.
    std::string foreign;
};

SiteView ViewOf(std::string_view bytes, std::string_view code);

// Whether the foreign lines are those of before: to the byte, but for blanks and line ends at the very end.
bool KeepsForeign(const SiteView& before, const SiteView& after);

std::string InLowerCase(std::string_view text);

} // namespace corvrec
