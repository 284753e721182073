#include "core/file/ini_text.h"

#include "core/file/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <iterator>
#include <unordered_map>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

// Windows' profile functions count the length of a value in 16 bits: longer ones lose whole multiples of
// this.
constexpr std::size_t kValueLengths = 65536;

unsigned char Number(char byte)
{
    return static_cast<unsigned char>(byte); // char may be signed
}

std::string Utf16FromBytes(std::string_view bytes)
{
    std::string wide;
    wide.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        const char32_t unit = CharacterFromCp1252(byte); // every character of the page is below U+10000
        wide += static_cast<char>(unit & 0xFF);
        wide += static_cast<char>(unit >> 8);
    }
    return wide;
}

std::string BytesFromUtf16(std::string_view wide)
{
    std::string bytes;
    bytes.reserve(wide.size() / 2);
    for (std::size_t i = 0; i + 1 < wide.size(); i += 2)
        bytes += Cp1252FromCharacter(Number(wide[i]) | static_cast<char32_t>(Number(wide[i + 1])) << 8);
    return bytes;
}

// Upper case as Windows folds it in code page 1252. Accents stay. DF, B5, 83 and D7 have no partner in the
// page.
constexpr std::array<unsigned char, 256> FoldTable()
{
    std::array<unsigned char, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        const bool isLower = (i >= 'a' && i <= 'z') || (i >= 0xE0 && i <= 0xFE && i != 0xF7);
        table.at(i) = static_cast<unsigned char>(isLower ? i - 0x20 : i);
    }
    table.at(0x9A) = 0x8A;
    table.at(0x9C) = 0x8C;
    table.at(0x9E) = 0x8E;
    table.at(0xFF) = 0x9F;
    return table;
}

constexpr std::array<unsigned char, 256> kFolded = FoldTable();

unsigned char Folded(char byte)
{
    return kFolded[Number(byte)];
}

bool IsSameName(std::string_view left, std::string_view right)
{
    return std::ranges::equal(left, right, {}, Folded, Folded);
}

// FNV-1a of the folded name (offset basis and prime of 64 bits). NameTable uses the upper bits; the
// multiplication at the end (Knuth's: 2^32 over the golden ratio) carries the last letters into them.
std::uint32_t HashOf(std::string_view name)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : name)
        hash = (hash ^ Folded(byte)) * 0x100000001B3;
    return static_cast<std::uint32_t>(hash ^ hash >> 32) * 0x9E3779B1U;
}

bool IsLineEnd(char unit)
{
    return unit == '\r' || unit == '\n';
}

// Includes NUL: a tail of zeros, as a crash leaves it, is a blank line.
bool IsBlank(char unit)
{
    return Number(unit) <= 0x20 && !IsLineEnd(unit);
}

// A range of units: bytes, or the 16-bit units after the mark.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

std::string_view Slice(std::string_view units, Span span)
{
    return units.substr(span.begin, span.end - span.begin);
}

Span Trimmed(std::string_view units, Span span)
{
    while (span.begin < span.end && IsBlank(units[span.begin]))
        ++span.begin;
    while (span.begin < span.end && IsBlank(units[span.end - 1]))
        --span.end;
    return span;
}

// The text of a name or value: without surrounding blanks, and only up to a NUL.
Span TextOf(std::string_view units, Span span)
{
    const Span text = Trimmed(units, span);
    const std::size_t nul = Slice(units, text).find('\0');
    return nul == std::string_view::npos ? text : Trimmed(units, {text.begin, text.begin + nul});
}

struct Line {
    std::size_t begin = 0;
    std::size_t textEnd = 0; // before the line end
    std::size_t end = 0;     // after the line end; equal to textEnd when the line has none
};

Line LineAt(std::string_view units, std::size_t begin)
{
    std::size_t textEnd = begin;
    while (textEnd < units.size() && !IsLineEnd(units[textEnd]))
        ++textEnd;
    const std::string_view rest = units.substr(textEnd);
    const std::size_t endLength = rest.starts_with(kLineEnd) ? 2 : std::min<std::size_t>(rest.size(), 1);
    return {.begin = begin, .textEnd = textEnd, .end = textEnd + endLength};
}

// A bare line has neither bracket nor "=": reads ignore it, and deleting its section deletes it.
enum class LineKind { blank, header, comment, key, bare };

LineKind KindOf(std::string_view units, const Line& line)
{
    const std::string_view text = Slice(units, Trimmed(units, {line.begin, line.textEnd}));
    if (text.empty())
        return LineKind::blank;
    if (text.front() == '[')
        return LineKind::header;
    if (text.front() == ';')
        return LineKind::comment;
    return text.find('=') == std::string_view::npos ? LineKind::bare : LineKind::key;
}

// Where a section or a key begins, and the hash of its name. Deliberately no more: a file may hold one every
// two bytes, and the index may take only a few times the room of the file. Everything else is read from the
// text.
struct Entry {
    std::uint32_t begin = 0;
    std::uint32_t hash = 0;
};

// In file order. Unlike a vector, a deque grows without a second copy of its contents.
using Entries = std::deque<Entry>;

// Upper bound for the number of different names among the entries of a text. Fewer than 600 names have no
// unit or one; any other entry takes at least four units with its line end.
std::size_t MostNames(std::size_t entries, std::size_t units)
{
    constexpr std::size_t shortNames = 600;
    return std::min(entries, shortNames + units / 4);
}

// Hash table with open addressing that finds the first of equal names. It holds no names, only indices into a
// list of entries.
class NameTable
{
public:
    void Reserve(std::size_t names)
    {
        slots_ = {}; // free the old ones before the new ones are made
        slots_.assign(4 + names + names / 2, 0);
    }

    [[nodiscard]] bool HasRoomFor(std::size_t names) const { return slots_.size() >= 4 + names + names / 3; }

    // isSame(index): whether an entry with the same hash has the same name.
    template <typename IsSame>
    void AddFirst(const Entries& entries, std::size_t index, IsSame isSame)
    {
        std::uint32_t& slot = slots_[PlaceOf(entries, entries[index].hash, isSame)];
        if (slot == 0)
            slot = static_cast<std::uint32_t>(index + 1);
    }

    template <typename IsSame>
    std::optional<std::size_t> Find(const Entries& entries, std::uint32_t hash, IsSame isSame) const
    {
        const std::uint32_t slot = slots_[PlaceOf(entries, hash, isSame)];
        return slot == 0 ? std::nullopt : std::optional<std::size_t>(slot - 1);
    }

private:
    // The slot that holds the name, or the free one where it belongs.
    template <typename IsSame>
    std::size_t PlaceOf(const Entries& entries, std::uint32_t hash, IsSame isSame) const
    {
        std::size_t place = static_cast<std::size_t>(std::uint64_t{hash} * slots_.size() >> 32);
        while (slots_[place] != 0 && !(entries[slots_[place] - 1].hash == hash && isSame(slots_[place] - 1)))
            place = place + 1 == slots_.size() ? 0 : place + 1;
        return place;
    }

    std::vector<std::uint32_t> slots_; // index + 1, or 0 for free; at least a quarter is always free
};

// A line with a key. Positions count from the beginning of the section.
struct KeyLine {
    std::size_t begin = 0;
    Span name;
    Span value; // after the '=', up to the line end
    std::size_t end = 0;
};

// The keys of a section. Positions count from the beginning of the section, so that they stay valid when the
// section moves.
struct KeyIndex {
    Entries lines;
    NameTable names;
};

Span Moved(Span span, std::size_t distance)
{
    return {span.begin + distance, span.end + distance};
}

std::uint32_t Narrow(std::size_t position)
{
    return static_cast<std::uint32_t>(position); // a text is smaller than 4 GiB
}

// The name in the header line that begins at `begin`: up to ']' or the end of the line.
Span HeaderName(std::string_view units, std::size_t begin)
{
    const std::size_t nameBegin = units.find('[', begin) + 1;
    std::size_t nameEnd = nameBegin;
    while (nameEnd < units.size() && units[nameEnd] != ']' && !IsLineEnd(units[nameEnd]))
        ++nameEnd;
    return TextOf(units, {nameBegin, nameEnd});
}

// Searches for brackets, which is much faster than walking over every line.
Entries ScanSections(std::string_view units, Span span)
{
    Entries found;
    const std::string_view part = units.substr(0, span.end);
    std::size_t bracket = part.find('[', span.begin);
    while (bracket != std::string_view::npos) {
        std::size_t begin = bracket;
        while (begin > span.begin && IsBlank(part[begin - 1]))
            --begin;
        if (begin == span.begin || IsLineEnd(part[begin - 1]))
            found.push_back({.begin = Narrow(begin), .hash = HashOf(Slice(part, HeaderName(part, begin)))});
        bracket = part.find('[', bracket + 1);
    }
    return found;
}

KeyLine KeyLineOf(std::string_view section, const Line& line)
{
    const std::size_t equals = section.find('=', line.begin);
    return {.begin = line.begin,
            .name = TextOf(section, {line.begin, equals}),
            .value = {equals + 1, line.textEnd},
            .end = line.end};
}

Span KeyName(std::string_view section, const Entry& line)
{
    return TextOf(section, {line.begin, section.find('=', line.begin)});
}

// Adds the key lines from `begin` on, the beginning of a line, to `lines`. `section` is the text from a
// header line to the next header.
void ScanKeys(std::string_view section, std::size_t begin, Entries& lines)
{
    for (Line line = LineAt(section, begin); line.begin < section.size(); line = LineAt(section, line.end)) {
        if (KindOf(section, line) != LineKind::key)
            continue;
        const Span name = KeyLineOf(section, line).name;
        lines.push_back({.begin = Narrow(line.begin), .hash = HashOf(Slice(section, name))});
    }
}

// A parameter of the profile functions ends at its first NUL.
std::string_view Parameter(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

std::string_view WithoutTrailingSpaces(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1); // npos + 1 is 0: nothing but spaces
}

// A name as a parameter loses its spaces but no other blanks: a tab stays, and then matches no name of the
// file.
std::string_view NameParameter(std::string_view text)
{
    const std::string_view name = WithoutTrailingSpaces(Parameter(text));
    return name.substr(std::min(name.find_first_not_of(' '), name.size()));
}

// What fits into a buffer of that size, less the closing NUL.
std::string_view Cut(std::string_view text, std::size_t size)
{
    return text.substr(0, size == 0 ? 0 : size - 1);
}

// The fallback as Windows returns it: without trailing spaces, cut to the buffer.
std::string FallbackText(std::string_view fallback, std::size_t size)
{
    return std::string(Cut(WithoutTrailingSpaces(Parameter(fallback)), size));
}

// Only one pair, and only when both ends have the same kind of quote.
std::string_view WithoutQuotes(std::string_view value)
{
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace

// The file's text with one byte per unit. For UTF-16 also the original bytes, two per unit.
struct IniText::View {
    std::string_view units;
    std::string_view wide;

    // Whether every character of the span has a byte in the page, so that no '?' stands for a missing one. A
    // name or value with a missing character equals no parameter.
    [[nodiscard]] bool IsExact(Span span) const
    {
        if (wide.empty())
            return true;
        for (std::size_t i = span.begin; i < span.end; ++i) {
            if (units[i] == '?' && wide.substr(2 * i, 2) != std::string_view("?\0", 2))
                return false;
        }
        return true;
    }
};

// Where sections and keys are. Every function is given the text that the index describes.
class IniText::Index
{
public:
    explicit Index(const View& text)
        : sections_(ScanSections(text.units, {0, text.units.size()}))
    {
        IndexNames(text);
    }

    [[nodiscard]] std::optional<std::size_t> FindSection(const View& text, std::string_view name) const
    {
        return names_.Find(sections_, HashOf(name), [&](std::size_t section) {
            return IsSameName(Slice(text.units, NameOf(text, section)), name);
        });
    }

    [[nodiscard]] Span SpanOf(const View& text, std::size_t section) const
    {
        const bool isLast = section + 1 == sections_.size();
        return {sections_[section].begin, isLast ? text.units.size() : sections_[section + 1].begin};
    }

    // The reference is valid until another section's keys are requested.
    const KeyIndex& KeysOf(const View& text, std::size_t section)
    {
        if (const auto known = keys_.find(section); known != keys_.end())
            return known->second;
        if (keys_.size() == kMostIndexed)
            keys_.clear();
        KeyIndex& keys = keys_[section];
        const Span span = SpanOf(text, section);
        ScanKeys(Slice(text.units, span), 0, keys.lines);
        AddNames(text, span, 0, keys);
        return keys;
    }

    std::optional<KeyLine> FindKey(const View& text, std::size_t section, std::string_view name)
    {
        const KeyIndex& keys = KeysOf(text, section);
        const std::string_view units = Slice(text.units, SpanOf(text, section));
        const auto found = keys.names.Find(keys.lines, HashOf(name), [&](std::size_t line) {
            return IsSameName(Slice(units, KeyName(units, keys.lines[line])), name);
        });
        if (!found)
            return std::nullopt;
        return KeyLineOf(units, LineAt(units, keys.lines[*found].begin));
    }

    // Follows a change of the text, in which `inserted` units have replaced the removed ones. Only the
    // sections that it touches are scanned again, including the one before the change: what is left may now
    // belong to that one.
    void Change(const View& text, Span removed, std::size_t inserted)
    {
        const auto isBefore = [](const Entry& section, std::size_t place) { return section.begin < place; };
        auto first = std::lower_bound(sections_.begin(), sections_.end(), removed.begin, isBefore);
        const auto last = std::lower_bound(first, sections_.end(), removed.end, isBefore);
        std::size_t begin = 0;
        if (first != sections_.begin())
            begin = (--first)->begin;
        for (auto section = last; section != sections_.end(); ++section)
            section->begin = Narrow(section->begin - removed.end + removed.begin + inserted);
        const std::size_t end = last == sections_.end() ? text.units.size() : last->begin;

        const Entries found = ScanSections(text.units, {begin, end});
        const auto number = static_cast<std::size_t>(first - sections_.begin());
        const bool isWithinOne = last - first == 1 && found.size() == 1 && first->begin == found[0].begin;
        if (const auto known = keys_.find(number); isWithinOne && known != keys_.end()) {
            ChangeKeys(text, {begin, end}, removed.begin - begin, known->second);
            return;
        }
        keys_.clear();
        if (std::ssize(found) == last - first) {
            std::ranges::copy(found, first); // an edit can add or remove headers, but never renames one
            return;
        }
        const auto place = sections_.erase(first, last);
        sections_.insert(place, found.begin(), found.end());
        IndexNames(text);
    }

private:
    // The most sections whose keys are held at a time, so that a walk over a large file does not collect them
    // all.
    static constexpr std::size_t kMostIndexed = 256;

    [[nodiscard]] Span NameOf(const View& text, std::size_t section) const
    {
        return HeaderName(text.units, sections_[section].begin);
    }

    void IndexNames(const View& text)
    {
        names_.Reserve(MostNames(sections_.size(), text.units.size()));
        for (std::size_t i = 0; i < sections_.size(); ++i) {
            if (!text.wide.empty() && !text.IsExact(NameOf(text, i)))
                continue;
            names_.AddFirst(sections_, i, [&](std::size_t other) {
                return IsSameName(Slice(text.units, NameOf(text, other)), Slice(text.units, NameOf(text, i)));
            });
        }
    }

    // Adds the names of the lines from `first` on; of all lines when the table has no room for the new ones.
    static void AddNames(const View& text, Span section, std::size_t first, KeyIndex& keys)
    {
        const std::string_view units = Slice(text.units, section);
        const std::size_t names = MostNames(keys.lines.size(), units.size());
        if (first == 0 || !keys.names.HasRoomFor(names)) {
            keys.names.Reserve(names);
            first = 0;
        }
        for (std::size_t i = first; i < keys.lines.size(); ++i) {
            if (!text.wide.empty() && !text.IsExact(Moved(KeyName(units, keys.lines[i]), section.begin)))
                continue;
            keys.names.AddFirst(keys.lines, i, [&](std::size_t other) {
                return IsSameName(Slice(units, KeyName(units, keys.lines[other])),
                                  Slice(units, KeyName(units, keys.lines[i])));
            });
        }
    }

    // Follows a change inside the section, `change` units after its beginning: a value, a new line or a
    // removed one. Scans again only what follows the change and the line before it, which may have got its
    // line end.
    static void ChangeKeys(const View& text, Span section, std::size_t change, KeyIndex& keys)
    {
        Entries& lines = keys.lines;
        const auto behind =
            std::upper_bound(lines.begin(), lines.end(), change,
                             [](std::size_t place, const Entry& line) { return place < line.begin; });
        const std::size_t had = lines.size();
        const bool isInLast = had > 0 && change >= lines.back().begin;
        // Start at the line before the last one that begins no later than the change.
        const auto first = behind - std::min<std::ptrdiff_t>(behind - lines.begin(), 2);
        const std::size_t begin = first == lines.begin() ? 0 : first->begin;
        lines.erase(first, lines.end());
        ScanKeys(Slice(text.units, section), begin, lines);

        // The name table stays valid when only a value changed, or when lines were added after the last name.
        const bool namesStand = lines.size() == had || (lines.size() > had && isInLast);
        AddNames(text, section, namesStand ? had : 0, keys);
    }

    Entries sections_; // the entries of the header lines
    NameTable names_;
    std::unordered_map<std::size_t, KeyIndex> keys_; // by index into sections_
};

IniText::IniText(std::string bytes)
    : bytes_(std::move(bytes))
    , isUtf16_(bytes_.starts_with(kUtf16Mark))
{
    if (isUtf16_)
        narrowed_ = BytesFromUtf16(std::string_view(bytes_).substr(kUtf16Mark.size()));
}

IniText::~IniText() = default;
IniText::IniText(IniText&& other) noexcept = default;
IniText& IniText::operator=(IniText&& other) noexcept = default;

IniText::View IniText::Text() const
{
    if (!isUtf16_)
        return {.units = bytes_, .wide = {}};
    return {.units = narrowed_, .wide = std::string_view(bytes_).substr(kUtf16Mark.size())};
}

IniText::Index& IniText::Places()
{
    if (!index_)
        index_ = std::make_unique<Index>(Text());
    return *index_;
}

std::string IniText::Read(std::string_view section, std::string_view key, std::string_view fallback,
                          std::size_t size)
{
    const View text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    const auto line = place ? Places().FindKey(text, *place, NameParameter(key)) : std::nullopt;
    if (!line)
        return FallbackText(fallback, size);
    const Span raw = Moved(line->value, Places().SpanOf(text, *place).begin);
    const std::string_view value = WithoutQuotes(Slice(text.units, TextOf(text.units, raw)));
    return std::string(Cut(value.substr(0, value.size() % kValueLengths), size));
}

std::string IniText::Keys(std::string_view section, std::string_view fallback, std::size_t size)
{
    const View text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    if (!place)
        return FallbackText(fallback, size);
    const std::string_view units = Slice(text.units, Places().SpanOf(text, *place));
    const std::size_t length = size < 2 ? 0 : size - 2;
    bool hasName = false;
    std::string keys;
    for (const Entry& line : Places().KeysOf(text, *place).lines) {
        const std::string_view name = Slice(units, KeyName(units, line));
        if (name.empty())
            continue;
        hasName = true;
        if (keys.size() >= length)
            break;
        keys.append(name).push_back('\0');
    }
    if (!hasName)
        return FallbackText(fallback, size);
    keys.resize(std::min(keys.size(), length));
    return keys;
}

std::optional<Edit> IniText::Put(std::string_view section, std::string_view key, std::string_view value)
{
    if (!IsContinuable())
        return std::nullopt;
    const std::string_view newValue = Parameter(value);
    const std::string newLine = std::string(NameParameter(key)).append("=").append(newValue).append(kLineEnd);
    const View text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    if (!place)
        return NewSection(NameParameter(section), newLine);
    const auto found = Places().FindKey(text, *place, NameParameter(key));
    if (!found)
        return NewLine(*place, newLine);

    const Span raw = Moved(found->value, Places().SpanOf(text, *place).begin);
    if (Slice(text.units, raw) == newValue && text.IsExact(raw))
        return Edit{};
    const bool isUnfinished = found->end == found->value.end;
    return EditAt(raw.begin, raw.end, std::string(newValue).append(isUnfinished ? kLineEnd : ""));
}

std::optional<Edit> IniText::EraseKey(std::string_view section, std::string_view key)
{
    if (!IsContinuable())
        return std::nullopt;
    const View text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    const auto found = place ? Places().FindKey(text, *place, NameParameter(key)) : std::nullopt;
    if (!found)
        return Edit{};
    const std::size_t begin = Places().SpanOf(text, *place).begin;
    return EditAt(begin + found->begin, begin + found->end, "");
}

std::optional<Edit> IniText::EraseSection(std::string_view section)
{
    if (!IsContinuable())
        return std::nullopt;
    const View text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    if (!place)
        return Edit{};

    const Span span = Places().SpanOf(text, *place);
    const std::string_view units = text.units.substr(0, span.end);
    // One edit for the whole section: up to its last line that is neither a comment nor blank, with the
    // comments and blank lines before that inserted again.
    Edit edit = EditAt(span.begin, span.begin, "");
    std::size_t removedEnd = span.begin;
    for (Line line = LineAt(units, span.begin); line.begin < span.end; line = LineAt(units, line.end)) {
        const LineKind kind = KindOf(units, line);
        if (kind == LineKind::comment || kind == LineKind::blank)
            continue;
        const Edit kept = EditAt(removedEnd, line.begin, "");
        edit.inserted.append(bytes_, kept.offset, kept.removed);
        removedEnd = line.end;
    }
    edit.removed = EditAt(span.begin, removedEnd, "").removed;
    return edit;
}

void IniText::Apply(const Edit& edit)
{
    if (edit.ChangesNothing())
        return;
    bytes_.replace(edit.offset, edit.removed, edit.inserted);
    Span removed{edit.offset, edit.offset + edit.removed};
    std::size_t inserted = edit.inserted.size();
    if (isUtf16_) {
        removed = {(removed.begin - kUtf16Mark.size()) / 2, (removed.end - kUtf16Mark.size()) / 2};
        inserted /= 2;
        narrowed_.replace(removed.begin, removed.end - removed.begin, BytesFromUtf16(edit.inserted));
    }
    if (index_)
        index_->Change(Text(), removed, inserted);
}

std::string IniText::Filler(std::size_t length) const
{
    const std::size_t units = isUtf16_ ? length / 2 : length;
    if (units == 0)
        return {};
    const std::string blanks = units == 1 ? "\n" : std::string(units - 2, ' ').append(kLineEnd);
    return isUtf16_ ? Utf16FromBytes(blanks) : blanks;
}

bool IniText::IsContinuable() const
{
    return !isUtf16_ || bytes_.size() % 2 == 0;
}

// The edit that replaces the units from begin to end by a text in code page 1252.
Edit IniText::EditAt(std::size_t begin, std::size_t end, std::string_view inserted) const
{
    if (!isUtf16_)
        return {.offset = begin, .removed = end - begin, .inserted = std::string(inserted)};
    return {.offset = kUtf16Mark.size() + 2 * begin,
            .removed = 2 * (end - begin),
            .inserted = Utf16FromBytes(inserted)};
}

Edit IniText::NewSection(std::string_view section, std::string_view line) const
{
    const std::string_view units = Text().units;
    // A lone UTF-16 mark counts as a line without an end.
    const bool isUnfinished = !bytes_.empty() && (units.empty() || !IsLineEnd(units.back()));
    std::string added(isUnfinished ? kLineEnd : "");
    added.append("[").append(section).append("]").append(kLineEnd).append(line);
    return EditAt(units.size(), units.size(), added);
}

// Inserts a line after the section's last key, before the comments and blank lines that may follow it.
Edit IniText::NewLine(std::size_t section, std::string_view line)
{
    const View text = Text();
    const Span span = Places().SpanOf(text, section);
    const Entries& keys = Places().KeysOf(text, section).lines;
    const Line last = LineAt(Slice(text.units, span), keys.empty() ? 0 : keys.back().begin); // or the header
    const std::size_t end = span.begin + last.end;
    return EditAt(end, end, std::string(last.end == last.textEnd ? kLineEnd : "").append(line));
}

} // namespace corvrec
