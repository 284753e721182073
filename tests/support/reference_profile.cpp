#include "tests/support/reference_profile.h"

#include "core/file/code_page.h"

#include <algorithm>
#include <utility>

namespace corvrec
{

namespace
{

constexpr std::string_view kMark = "\xFF\xFE";

std::u16string Widened(std::string_view bytes)
{
    std::u16string text(bytes.size(), u'\0');
    std::ranges::transform(bytes, text.begin(), [](char byte) {
        return static_cast<char16_t>(CharacterFromCp1252(byte)); // the code page has none above FFFF
    });
    return text;
}

std::u16string TextOfUnits(std::string_view bytes)
{
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        const auto high = static_cast<unsigned char>(bytes[i + 1]);
        text += static_cast<char16_t>(low + 256 * high);
    }
    return text;
}

std::string UnitsOfText(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t character : text) {
        bytes += static_cast<char>(character % 256);
        bytes += static_cast<char>(character / 256);
    }
    return bytes;
}

std::u16string_view Trimmed(std::u16string_view text)
{
    while (!text.empty() && text.front() <= u' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() <= u' ')
        text.remove_suffix(1);
    return text;
}

std::u16string_view WithoutNul(std::u16string_view text)
{
    text = Trimmed(text);
    return Trimmed(text.substr(0, text.find(u'\0')));
}

ReferenceProfile::Line LineOf(std::u16string_view text, std::u16string_view section)
{
    using Kind = ReferenceProfile::Kind;
    ReferenceProfile::Line line;
    line.text = text;
    line.section = section;
    const std::u16string_view seen = Trimmed(text);
    if (seen.empty())
        return line;
    if (seen.front() == u'[') {
        line.kind = Kind::header;
        line.section = WithoutNul(seen.substr(1, seen.find(u']') - 1));
    } else if (seen.front() == u';') {
        line.kind = Kind::comment;
    } else if (const std::size_t equals = text.find(u'='); equals != std::u16string_view::npos) {
        line.kind = Kind::key;
        line.name = WithoutNul(text.substr(0, equals));
        line.value = text.substr(equals + 1);
    } else {
        line.kind = Kind::bare;
    }
    return line;
}

char16_t Upper(char16_t character)
{
    if ((character >= u'a' && character <= u'z') ||
        (character >= 0xE0 && character <= 0xFE && character != 0xF7))
        return static_cast<char16_t>(character - 0x20);
    switch (character) {
    case 0x161: // s with caron
        return 0x160;
    case 0x153: // oe
        return 0x152;
    case 0x17E: // z with caron
        return 0x17D;
    case 0xFF: // y with diaeresis
        return 0x178;
    default:
        return character;
    }
}

bool IsSame(std::u16string_view left, std::u16string_view right)
{
    return std::ranges::equal(left, right, {}, Upper, Upper);
}

std::string_view Parameter(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

// Requested names lose only spaces: a tab stays, and such a name is never found.
std::u16string NameParameter(std::string_view text)
{
    text = Parameter(text);
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return Widened(text);
}

// The same line, with a line end added when it has none.
std::u16string Ended(const ReferenceProfile::Line& line)
{
    return std::u16string(line.text).append(line.end.empty() ? u"\r\n" : line.end);
}

} // namespace

ReferenceProfile::ReferenceProfile(std::string_view bytes)
    : isWide_(bytes.starts_with(kMark))
{
    if (!isWide_) {
        Parse(Widened(bytes));
        return;
    }
    Parse(TextOfUnits(bytes.substr(kMark.size())));
    rest_ = bytes.substr(bytes.size() - bytes.size() % 2);
}

void ReferenceProfile::Parse(std::u16string newText)
{
    text_ = std::move(newText);
    lines_.clear();
    std::u16string_view text = text_;
    std::u16string_view section;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(u"\r\n"), text.size());
        lines_.push_back(LineOf(text.substr(0, length), section));
        text.remove_prefix(length);
        const std::size_t endLength = text.starts_with(u"\r\n") ? 2 : std::min<std::size_t>(text.size(), 1);
        lines_.back().end = text.substr(0, endLength);
        text.remove_prefix(endLength);
        section = lines_.back().section;
    }
}

std::optional<std::string> ReferenceProfile::Read(std::string_view section, std::string_view key,
                                                  std::size_t size) const
{
    const Index line = Key(Header(section), key);
    if (line == lines_.size())
        return std::nullopt;
    std::string value = Narrowed(WithoutNul(lines_[line].value));
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    if (isQuoted)
        value = value.substr(1, value.size() - 2);
    return value.substr(0, size == 0 ? 0 : std::min(value.size() % 65536, size - 1));
}

std::optional<std::string> ReferenceProfile::Keys(std::string_view section, std::size_t size) const
{
    const Index header = Header(section);
    std::string names;
    for (Index line = header; line < End(header); ++line) {
        if (!lines_[line].name.empty())
            names += Narrowed(lines_[line].name) + '\0';
    }
    if (names.empty())
        return std::nullopt;
    return names.substr(0, size < 2 ? 0 : size - 2);
}

bool ReferenceProfile::Write(std::string_view section, std::string_view key, std::string_view value)
{
    if (!rest_.empty())
        return false;
    const std::u16string newValue = Widened(Parameter(value));
    const std::u16string newLine = NameParameter(key) + u"=" + newValue + u"\r\n";
    const Index header = Header(section);

    if (header == lines_.size()) {
        const bool isUnfinished = lines_.empty() ? isWide_ : lines_.back().end.empty();
        Parse(With(lines_.size(),
                   (isUnfinished ? u"\r\n[" : u"[") + NameParameter(section) + u"]\r\n" + newLine));
        return true;
    }
    if (const Index found = Key(header, key); found < lines_.size()) {
        Line line = lines_[found];
        if (line.value == newValue)
            return true;
        const std::u16string text = std::u16string(line.text.substr(0, line.text.find(u'=') + 1)) + newValue;
        line.text = text;
        Parse(With(found, Ended(line)));
        return true;
    }
    Index last = header;
    for (Index line = header; line < End(header); ++line)
        last = lines_[line].kind == Kind::key ? line : last;
    Parse(With(last, Ended(lines_[last]) + newLine));
    return true;
}

bool ReferenceProfile::DeleteKey(std::string_view section, std::string_view key)
{
    if (!rest_.empty())
        return false;
    if (const Index line = Key(Header(section), key); line < lines_.size())
        Parse(With(line, u""));
    return true;
}

bool ReferenceProfile::DeleteSection(std::string_view section)
{
    if (!rest_.empty())
        return false;
    const Index header = Header(section);
    const Index end = End(header);
    std::u16string left;
    for (Index line = 0; line < lines_.size(); ++line) {
        const Kind kind = lines_[line].kind;
        const bool isInside = line >= header && line < end;
        if (!isInside || kind == Kind::comment || kind == Kind::blank)
            left.append(lines_[line].text).append(lines_[line].end);
    }
    Parse(std::move(left));
    return true;
}

std::string ReferenceProfile::Bytes() const
{
    const std::u16string text = With(lines_.size(), u"");
    return isWide_ ? std::string(kMark) + UnitsOfText(text) + rest_ : Narrowed(text);
}

ReferenceProfile::Index ReferenceProfile::Header(std::string_view section) const
{
    const std::u16string wanted = NameParameter(section);
    const auto found = std::ranges::find_if(
        lines_, [&](const Line& line) { return line.kind == Kind::header && IsSame(line.section, wanted); });
    return static_cast<Index>(found - lines_.begin());
}

ReferenceProfile::Index ReferenceProfile::End(Index header) const
{
    Index end = std::min(header + 1, lines_.size());
    while (end < lines_.size() && lines_[end].kind != Kind::header)
        ++end;
    return end;
}

ReferenceProfile::Index ReferenceProfile::Key(Index header, std::string_view key) const
{
    const std::u16string wanted = NameParameter(key);
    for (Index line = header; line < End(header); ++line) {
        if (lines_[line].kind == Kind::key && IsSame(lines_[line].name, wanted))
            return line;
    }
    return lines_.size();
}

std::u16string ReferenceProfile::With(Index line, std::u16string_view replacement) const
{
    std::u16string text;
    text.reserve(text_.size() + replacement.size());
    for (Index i = 0; i < lines_.size(); ++i)
        text.append(i == line ? replacement : lines_[i].text).append(i == line ? u"" : lines_[i].end);
    if (line == lines_.size())
        text.append(replacement);
    return text;
}

bool IsOfSite(const ReferenceProfile::Line& line, std::string_view code)
{
    using Kind = ReferenceProfile::Kind;
    const std::u16string site = NameParameter(code);
    if (IsSame(line.section, site) && line.kind != Kind::comment && line.kind != Kind::blank)
        return true;
    const bool isListed = IsSame(line.section, u"Siti") && IsSame(line.name, site);
    const bool isLog = IsSame(line.section, u"General") && IsSame(line.name, u"Log");
    return line.kind == Kind::key && (isListed || isLog);
}

std::string Narrowed(std::u16string_view text)
{
    std::string bytes(text.size(), '\0');
    std::ranges::transform(text, bytes.begin(), Cp1252FromCharacter);
    return bytes;
}

} // namespace corvrec
