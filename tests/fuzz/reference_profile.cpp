#include "tests/fuzz/reference_profile.h"

#include "core/file/code_page.h"

#include <algorithm>
#include <vector>

namespace corvrec::fuzz
{

namespace
{

constexpr std::string_view kMark = "\xFF\xFE";

enum class Kind { blank, header, comment, key, bare };

// Texts consist of characters: for a byte by the code page, for a UTF-16 unit its own number.
struct Line {
    Kind kind = Kind::blank;
    std::u16string_view whole; // with its line end
    std::u16string_view text;  // without its line end
    std::u16string_view name;  // of a header or key
    std::u16string_view value; // of a key: everything after the '='
};

std::u16string Widened(std::string_view bytes)
{
    std::u16string text(bytes.size(), u'\0');
    std::ranges::transform(bytes, text.begin(), [](char byte) {
        return static_cast<char16_t>(CharacterFromCp1252(byte)); // the code page has none above FFFF
    });
    return text;
}

std::string Narrowed(std::u16string_view text)
{
    std::string bytes(text.size(), '\0');
    std::ranges::transform(text, bytes.begin(), Cp1252FromCharacter);
    return bytes;
}

bool IsWide(std::string_view file)
{
    return file.starts_with(kMark);
}

bool IsWritable(std::string_view file)
{
    return !IsWide(file) || file.size() % 2 == 0;
}

std::u16string TextOf(std::string_view file)
{
    if (!IsWide(file))
        return Widened(file);
    std::u16string text;
    for (std::size_t i = kMark.size(); i + 1 < file.size(); i += 2) {
        const auto low = static_cast<unsigned char>(file[i]);
        const auto high = static_cast<unsigned char>(file[i + 1]);
        text += static_cast<char16_t>(low + 256 * high);
    }
    return text;
}

std::string FileOf(std::u16string_view text, bool isWide)
{
    if (!isWide)
        return Narrowed(text);
    std::string file(kMark);
    for (const char16_t character : text) {
        file += static_cast<char>(character % 256);
        file += static_cast<char>(character / 256);
    }
    return file;
}

bool EndsLine(char16_t character)
{
    return character == u'\r' || character == u'\n';
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

Line LineOf(std::u16string_view whole, std::u16string_view text)
{
    Line line{.whole = whole, .text = text, .name = {}, .value = {}};
    const std::u16string_view seen = Trimmed(text);
    if (seen.empty())
        return line;
    if (seen.front() == u'[') {
        line.kind = Kind::header;
        line.name = WithoutNul(seen.substr(1, seen.find(u']') - 1));
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

std::vector<Line> LinesOf(std::u16string_view text)
{
    std::vector<Line> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        std::size_t length = end;
        if (text.substr(end).starts_with(u"\r\n"))
            length += 2;
        else if (end < text.size())
            length += 1;
        lines.push_back(LineOf(text.substr(0, length), text.substr(0, end)));
        text.remove_prefix(length);
    }
    return lines;
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

std::u16string NameParameter(std::string_view text)
{
    text = Parameter(text);
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return Widened(text);
}

// The lines of a file, and the range of those of one section: [header, end).
struct Found {
    explicit Found(std::string_view file, std::string_view section)
        : text(TextOf(file))
        , lines(LinesOf(text))
        , name(NameParameter(section))
    {
        while (header < lines.size() && !(IsHeader(header) && IsSame(lines[header].name, name)))
            ++header;
        end = std::min(header + 1, lines.size());
        while (end < lines.size() && !IsHeader(end))
            ++end;
    }

    [[nodiscard]] bool IsHeader(std::size_t line) const { return lines[line].kind == Kind::header; }
    [[nodiscard]] bool Exists() const { return header < lines.size(); }

    // The key's line, or lines.size() when there is none.
    [[nodiscard]] std::size_t KeyLine(std::string_view key) const
    {
        const std::u16string wanted = NameParameter(key);
        for (std::size_t line = header; line < end; ++line) {
            if (lines[line].kind == Kind::key && IsSame(lines[line].name, wanted))
                return line;
        }
        return lines.size();
    }

    // All lines, with the text of one line replaced.
    [[nodiscard]] std::u16string With(std::size_t number, std::u16string_view words) const
    {
        std::u16string result;
        for (std::size_t line = 0; line < lines.size(); ++line)
            result += line == number ? words : lines[line].whole;
        return result;
    }

    std::u16string text;
    std::vector<Line> lines;
    std::u16string name;
    std::size_t header = 0;
    std::size_t end = 0;
};

// The same line, with a line end added when it has none.
std::u16string Ended(std::u16string_view whole)
{
    const bool isEnded = !whole.empty() && EndsLine(whole.back());
    return std::u16string(whole) + (isEnded ? u"" : u"\r\n");
}

} // namespace

std::string FallbackReference(std::string_view fallback, std::size_t size)
{
    fallback = Parameter(fallback);
    while (fallback.ends_with(' '))
        fallback.remove_suffix(1);
    return std::string(fallback.substr(0, size == 0 ? 0 : size - 1));
}

std::string ReadReference(std::string_view file, std::string_view section, std::string_view key,
                          std::string_view fallback, std::size_t size)
{
    if (size == 0)
        return {};
    const Found found(file, section);
    const std::size_t line = found.KeyLine(key);
    if (line == found.lines.size())
        return FallbackReference(fallback, size);
    std::string value = Narrowed(WithoutNul(found.lines[line].value));
    for (const char quote : {'"', '\''}) {
        if (value.size() >= 2 && value.front() == quote && value.back() == quote) {
            value = value.substr(1, value.size() - 2);
            break;
        }
    }
    return value.substr(0, std::min(value.size() % 65536, size - 1));
}

std::string KeysReference(std::string_view file, std::string_view section, std::string_view fallback,
                          std::size_t size)
{
    const Found found(file, section);
    std::string names;
    for (std::size_t line = found.header; line < found.end; ++line) {
        const Line& key = found.lines[line];
        if (key.kind == Kind::key && !key.name.empty())
            names += Narrowed(key.name) + '\0';
    }
    if (names.empty())
        return FallbackReference(fallback, size);
    return names.substr(0, size < 2 ? 0 : size - 2);
}

std::optional<std::string> WriteReference(std::string_view file, std::string_view section,
                                          std::string_view key, std::string_view value)
{
    if (!IsWritable(file))
        return std::nullopt;
    const Found found(file, section);
    const std::u16string newValue = Widened(Parameter(value));
    const std::u16string newLine = NameParameter(key) + u"=" + newValue + u"\r\n";

    if (!found.Exists()) {
        const std::u16string before = file.empty() ? u"" : Ended(found.text);
        return FileOf(before + u"[" + found.name + u"]\r\n" + newLine, IsWide(file));
    }
    if (const std::size_t line = found.KeyLine(key); line < found.lines.size()) {
        const auto [kind, whole, text, name, oldValue] = found.lines[line];
        if (oldValue == newValue)
            return std::string(file);
        const std::u16string_view start = text.substr(0, text.size() - oldValue.size());
        const std::u16string_view lineEnd = whole == text ? u"\r\n" : whole.substr(text.size());
        return FileOf(found.With(line, std::u16string(start) + newValue + std::u16string(lineEnd)),
                      IsWide(file));
    }
    std::size_t last = found.header;
    for (std::size_t line = found.header; line < found.end; ++line) {
        if (found.lines[line].kind == Kind::key)
            last = line;
    }
    return FileOf(found.With(last, Ended(found.lines[last].whole) + newLine), IsWide(file));
}

std::optional<std::string> DeleteKeyReference(std::string_view file, std::string_view section,
                                              std::string_view key)
{
    if (!IsWritable(file))
        return std::nullopt;
    const Found found(file, section);
    return FileOf(found.With(found.KeyLine(key), u""), IsWide(file));
}

std::optional<std::string> DeleteSectionReference(std::string_view file, std::string_view section)
{
    if (!IsWritable(file))
        return std::nullopt;
    const Found found(file, section);
    std::u16string left;
    for (std::size_t line = 0; line < found.lines.size(); ++line) {
        const Kind kind = found.lines[line].kind;
        const bool isInside = line >= found.header && line < found.end;
        if (!isInside || kind == Kind::comment || kind == Kind::blank)
            left += found.lines[line].whole;
    }
    return FileOf(left, IsWide(file));
}

std::vector<std::u16string> ForeignLinesReference(std::string_view file, std::string_view code)
{
    const std::u16string site = NameParameter(code);
    const std::u16string text = TextOf(file);
    std::vector<std::u16string> aside;
    std::u16string_view section;
    for (const Line& line : LinesOf(text)) {
        if (line.kind == Kind::header)
            section = line.name;
        const bool isKey = line.kind == Kind::key;
        const bool isRemark = line.kind == Kind::comment;
        const bool isTheSite = IsSame(section, site) && !section.empty() && !isRemark;
        const bool isListed = IsSame(section, u"Siti") && isKey && IsSame(line.name, site);
        const bool isLog = IsSame(section, u"General") && isKey && IsSame(line.name, u"Log");
        if (!isTheSite && !isListed && !isLog && line.kind != Kind::blank)
            aside.emplace_back(line.text);
    }
    return aside;
}

} // namespace corvrec::fuzz
