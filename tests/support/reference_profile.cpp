#include "tests/support/reference_profile.h"

#include <algorithm>

namespace corvrec
{

namespace
{

constexpr std::string_view kLineEnd = "\r\n";

bool IsBlank(char c)
{
    return static_cast<unsigned char>(c) <= 0x20;
}

std::string Trimmed(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return std::string(text);
}

// Requested names lose only spaces: a tab stays, and such a name is never found.
std::string WithoutSpaces(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return std::string(text);
}

char Upper(char c)
{
    switch (const auto byte = static_cast<unsigned char>(c)) {
    case 0x9A:
    case 0x9C:
    case 0x9E:
        return static_cast<char>(byte - 0x10);
    case 0xFF:
        return '\x9F';
    case 0xF7:
        return c;
    default:
        return (byte >= 'a' && byte <= 'z') || byte >= 0xE0 ? static_cast<char>(byte - 0x20) : c;
    }
}

std::string Folded(std::string text)
{
    std::ranges::transform(text, text.begin(), Upper);
    return text;
}

std::string Unquoted(const std::string& value)
{
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace

ReferenceProfile::ReferenceProfile(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t end = bytes.find(kLineEnd);
        lines_.push_back(LineOf(std::string(bytes.substr(0, end))));
        bytes.remove_prefix(end + kLineEnd.size());
    }
}

ReferenceProfile::Line ReferenceProfile::LineOf(std::string text)
{
    const std::string trimmed = Trimmed(text);
    Line line{.text = std::move(text), .kind = Kind::bare, .name = {}, .folded = {}};
    const std::size_t equals = trimmed.find('=');
    if (trimmed.empty()) {
        line.kind = Kind::blank;
    } else if (trimmed.front() == '[') {
        line.kind = Kind::header;
        line.name = Trimmed(trimmed.substr(1, trimmed.find(']') - 1));
    } else if (trimmed.front() == ';') {
        line.kind = Kind::comment;
    } else if (equals != std::string::npos) {
        line.kind = Kind::key;
        line.name = Trimmed(trimmed.substr(0, equals));
    }
    line.folded = Folded(line.name);
    return line;
}

std::optional<std::string> ReferenceProfile::Read(std::string_view section, std::string_view key,
                                                  std::size_t size) const
{
    const Index header = Header(section);
    const Index line = header == lines_.size() ? header : Key(header, key);
    if (line == lines_.size())
        return std::nullopt;
    const std::string& text = lines_[line].text;
    return Unquoted(Trimmed(text.substr(text.find('=') + 1))).substr(0, size - 1);
}

std::vector<std::string> ReferenceProfile::Keys(std::string_view section, std::size_t size) const
{
    std::vector<std::string> names;
    const Index header = Header(section);
    if (header == lines_.size())
        return names;
    std::size_t room = size - 2;
    const Index behind = Behind(header);
    for (Index i = header + 1; i < behind; ++i) {
        if (lines_[i].kind != Kind::key || lines_[i].name.empty())
            continue;
        if (lines_[i].name.size() + 1 > room)
            break;
        room -= lines_[i].name.size() + 1;
        names.push_back(lines_[i].name);
    }
    return names;
}

void ReferenceProfile::Write(std::string_view section, std::string_view key, std::string_view value)
{
    const Index header = Header(section);
    if (header == lines_.size())
        lines_.push_back(LineOf("[" + WithoutSpaces(section) + "]"));
    const Index found = Key(header, key);
    if (found < lines_.size()) {
        std::string& text = lines_[found].text;
        text = text.substr(0, text.find('=') + 1).append(value);
        return;
    }
    Index front = header;
    const Index behind = Behind(header);
    for (Index i = header + 1; i < behind; ++i)
        front = lines_[i].kind == Kind::key ? i : front;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(front) + 1,
                  LineOf(WithoutSpaces(key).append("=").append(value)));
}

void ReferenceProfile::DeleteKey(std::string_view section, std::string_view key)
{
    const Index header = Header(section);
    const Index found = header == lines_.size() ? header : Key(header, key);
    if (found < lines_.size())
        lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(found));
}

void ReferenceProfile::DeleteSection(std::string_view section)
{
    const Index header = Header(section);
    if (header == lines_.size())
        return;
    const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(header);
    const auto behind = lines_.begin() + static_cast<std::ptrdiff_t>(Behind(header));
    const auto goes = [](const Line& line) { return line.kind != Kind::comment && line.kind != Kind::blank; };
    lines_.erase(std::remove_if(first, behind, goes), behind);
}

std::string ReferenceProfile::Bytes() const
{
    std::string bytes;
    for (const Line& line : lines_)
        bytes.append(line.text).append(kLineEnd);
    return bytes;
}

ReferenceProfile::Index ReferenceProfile::Header(std::string_view section) const
{
    const std::string wanted = Folded(WithoutSpaces(section));
    const auto found = std::ranges::find_if(
        lines_, [&](const Line& line) { return line.kind == Kind::header && line.folded == wanted; });
    return static_cast<Index>(found - lines_.begin());
}

ReferenceProfile::Index ReferenceProfile::Behind(Index header) const
{
    Index behind = header + 1;
    while (behind < lines_.size() && lines_[behind].kind != Kind::header)
        ++behind;
    return behind;
}

ReferenceProfile::Index ReferenceProfile::Key(Index header, std::string_view key) const
{
    const std::string wanted = Folded(WithoutSpaces(key));
    const Index behind = Behind(header);
    for (Index i = header + 1; i < behind; ++i) {
        if (lines_[i].kind == Kind::key && lines_[i].folded == wanted)
            return i;
    }
    return lines_.size();
}

} // namespace corvrec
