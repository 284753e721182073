#include "tests/core/ini_lines.h"

#include <algorithm>
#include <cctype>

namespace corvrec
{

namespace
{

constexpr std::string_view kMark = "\xFF\xFE";

// One byte for each UTF-16 character.
std::string Narrowed(std::string_view units)
{
    std::string text;
    for (std::size_t i = 0; i + 1 < units.size(); i += 2)
        text += units[i + 1] == '\0' ? units[i] : '?';
    return text;
}

std::string_view WithoutBlanks(std::string_view text, bool inFrontToo = true)
{
    constexpr std::string_view blanks(" \t\v\f\0\x1A", 6);
    const std::size_t begin = inFrontToo ? std::min(text.find_first_not_of(blanks), text.size()) : 0;
    const std::size_t end = text.find_last_not_of(blanks) + 1;
    return begin < end ? text.substr(begin, end - begin) : std::string_view();
}

// The position after the line that starts at begin, including its line end.
std::size_t NextLine(std::string_view text, std::size_t begin)
{
    const auto rest = text.substr(begin);
    const auto end = std::ranges::find_if(rest, [](char c) { return c == '\r' || c == '\n'; });
    if (end == rest.end())
        return text.size();
    const bool isPair = std::string_view(end, rest.end()).starts_with("\r\n");
    return begin + static_cast<std::size_t>(end - rest.begin()) + (isPair ? 2 : 1);
}

// section: the section that the line before it belongs to.
IniLine LineOf(std::string_view text, int section)
{
    const std::string_view line = WithoutBlanks(text.substr(0, text.find_first_of("\r\n")), false);
    const std::string_view shown = WithoutBlanks(line);
    if (shown.empty())
        return {.kind = IniLine::Kind::blank, .section = section, .name = {}, .value = {}, .bytes = {}};
    if (shown.front() == ';')
        return {.kind = IniLine::Kind::comment, .section = section, .name = {}, .value = {}, .bytes = {}};
    if (shown.front() == '[')
        return {.kind = IniLine::Kind::header,
                .section = section + 1,
                .name = InLowerCase(WithoutBlanks(shown.substr(1, shown.find(']') - 1))),
                .value = {},
                .bytes = {}};
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return {.kind = IniLine::Kind::bare, .section = section, .name = {}, .value = {}, .bytes = {}};
    return {.kind = IniLine::Kind::key,
            .section = section,
            .name = InLowerCase(WithoutBlanks(line.substr(0, equals))),
            .value = std::string(line.substr(equals + 1)),
            .bytes = {}};
}

} // namespace

std::string InLowerCase(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    return lower;
}

std::vector<IniLine> LinesOf(std::string_view bytes)
{
    const bool isWide = bytes.starts_with(kMark) && bytes.size() % 2 == 0;
    const std::size_t unit = isWide ? 2 : 1;
    if (isWide)
        bytes.remove_prefix(kMark.size());
    const std::string narrowed = isWide ? Narrowed(bytes) : std::string();
    const std::string_view text = isWide ? narrowed : bytes;

    std::vector<IniLine> lines;
    int section = -1;
    for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end) {
        end = NextLine(text, begin);
        lines.push_back(LineOf(text.substr(begin, end - begin), section));
        lines.back().bytes = bytes.substr(begin * unit, (end - begin) * unit);
        section = lines.back().section;
    }
    return lines;
}

int SectionOf(const std::vector<IniLine>& lines, std::string_view name)
{
    const std::string lower = InLowerCase(name);
    const auto header = std::ranges::find_if(
        lines, [&](const IniLine& line) { return line.kind == IniLine::Kind::header && line.name == lower; });
    return header == lines.end() ? -1 : header->section;
}

const IniLine* KeyOf(const std::vector<IniLine>& lines, std::string_view section, std::string_view key)
{
    const int number = SectionOf(lines, section);
    const std::string lower = InLowerCase(key);
    const auto found = std::ranges::find_if(lines, [&](const IniLine& line) {
        return number >= 0 && line.section == number && line.kind == IniLine::Kind::key && line.name == lower;
    });
    return found == lines.end() ? nullptr : &*found;
}

SiteView ViewOf(std::string_view bytes, std::string_view code)
{
    const std::vector<IniLine> lines = LinesOf(bytes);
    const int site = SectionOf(lines, code);
    const IniLine* const listed = KeyOf(lines, "siti", code);
    const IniLine* const log = KeyOf(lines, "general", "log");

    SiteView view;
    for (const IniLine& line : lines) {
        const bool isOfSite = site >= 0 && line.section == site;
        if (&line == listed)
            view.own["[siti]"] = line.value;
        else if (&line == log)
            view.own["[general]"] = line.value;
        else if (isOfSite && line.kind == IniLine::Kind::key)
            view.own.emplace(line.name, line.value);
        else if (isOfSite && line.kind == IniLine::Kind::bare)
            view.own["[]"] += line.bytes;
        else if (!isOfSite || line.kind != IniLine::Kind::header)
            view.foreign += line.bytes;
    }
    return view;
}

bool KeepsForeign(const SiteView& before, const SiteView& after)
{
    constexpr std::string_view blanks(" \r\n\0", 4);
    return after.foreign.starts_with(before.foreign) &&
           after.foreign.find_first_not_of(blanks, before.foreign.size()) == std::string::npos;
}

} // namespace corvrec
