#include "core/file/ini_text.h"

#include "core/file/code_page.h"
#include "core/file/ini_index.h"

#include <algorithm>
#include <utility>

namespace corvrec
{

using namespace ini;

namespace
{

constexpr std::string_view kUtf16Mark = "\xFF\xFE";

// Windows' profile functions count the length of a value in 16 bits: longer ones lose whole multiples of
// this.
constexpr std::size_t kValueLengths = 65536;

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

IniText::IniText(std::string bytes)
    : bytes_(std::move(bytes))
    , isUtf16_(bytes_.starts_with(kUtf16Mark))
{
    if (isUtf16_)
        narrowed_ = Cp1252FromUtf16(std::string_view(bytes_).substr(kUtf16Mark.size()));
}

IniText::~IniText() = default;
IniText::IniText(IniText&& other) noexcept = default;

ini::Text IniText::Text() const
{
    if (!isUtf16_)
        return {.units = bytes_, .wide = {}};
    return {.units = narrowed_, .wide = std::string_view(bytes_).substr(kUtf16Mark.size())};
}

ini::Index& IniText::Places()
{
    if (!index_)
        index_ = std::make_unique<ini::Index>(Text());
    return *index_;
}

std::string IniText::Read(std::string_view section, std::string_view key, std::string_view fallback,
                          std::size_t size)
{
    const ini::Text text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    const auto line = place ? Places().FindKey(text, *place, NameParameter(key)) : std::nullopt;
    if (!line)
        return FallbackText(fallback, size);
    const std::string_view units = Slice(text.units, Places().SpanOf(text, *place));
    const std::string_view value = WithoutQuotes(Slice(units, TextOf(units, line->value)));
    return std::string(Cut(value.substr(0, value.size() % kValueLengths), size));
}

std::string IniText::Keys(std::string_view section, std::string_view fallback, std::size_t size)
{
    const ini::Text text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    if (!place)
        return FallbackText(fallback, size);
    const std::string_view units = Slice(text.units, Places().SpanOf(text, *place));
    const std::size_t length = size < 2 ? 0 : size - 2;
    bool hasName = false;
    std::string keys;
    for (const Entry& line : Places().KeysOf(text, *place).lines) {
        const std::string_view name = Slice(units, KeyName(units, line.begin));
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
    const ini::Text text = Text();
    const auto place = Places().FindSection(text, NameParameter(section));
    if (!place)
        return NewSection(NameParameter(section), newLine);
    const auto found = Places().FindKey(text, *place, NameParameter(key));
    if (!found)
        return NewLine(*place, newLine);

    const std::size_t begin = Places().SpanOf(text, *place).begin;
    const Span raw{begin + found->value.begin, begin + found->value.end};
    if (Slice(text.units, raw) == newValue && text.IsExact(raw))
        return Edit{};
    const bool isUnfinished = found->end == found->value.end;
    return EditAt(raw.begin, raw.end, std::string(newValue).append(isUnfinished ? kLineEnd : ""));
}

std::optional<Edit> IniText::EraseKey(std::string_view section, std::string_view key)
{
    if (!IsContinuable())
        return std::nullopt;
    const ini::Text text = Text();
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
    const ini::Text text = Text();
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
        narrowed_.replace(removed.begin, removed.end - removed.begin, Cp1252FromUtf16(edit.inserted));
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
    return isUtf16_ ? Utf16FromCp1252(blanks) : blanks;
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
            .inserted = Utf16FromCp1252(inserted)};
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
    const ini::Text text = Text();
    const Span span = Places().SpanOf(text, section);
    const Entries& keys = Places().KeysOf(text, section).lines;
    const Line last = LineAt(Slice(text.units, span), keys.empty() ? 0 : keys.back().begin); // or the header
    const std::size_t end = span.begin + last.end;
    return EditAt(end, end, std::string(last.end == last.textEnd ? kLineEnd : "").append(line));
}

} // namespace corvrec
