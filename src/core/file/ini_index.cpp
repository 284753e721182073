#include "core/file/ini_index.h"

#include "core/file/letter_case.h"

#include <algorithm>

namespace corvrec::ini
{

namespace
{

// The most sections whose keys are held at a time, so that a walk over a large file does not collect them
// all.
constexpr std::size_t kMostIndexed = 256;

// Upper bound for the number of different names among the entries of a text. Fewer than 600 names are shorter
// than two units; any other entry takes at least four units with its line end.
std::size_t MostNames(std::size_t entries, std::size_t units)
{
    constexpr std::size_t shortNames = 600;
    return std::min(entries, shortNames + units / 4);
}

std::uint32_t Narrow(std::size_t position)
{
    return static_cast<std::uint32_t>(position); // a text is smaller than 4 GiB
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

Span Moved(Span span, std::size_t distance)
{
    return {span.begin + distance, span.end + distance};
}

// Adds the key lines from `begin` on, the beginning of a line, to `lines`. `section` is the text from a
// header line to the next header.
void ScanKeys(std::string_view section, std::size_t begin, Entries& lines)
{
    for (Line line = LineAt(section, begin); line.begin < section.size(); line = LineAt(section, line.end)) {
        if (KindOf(section, line) != LineKind::key)
            continue;
        const Span name = KeyName(section, line.begin);
        lines.push_back({.begin = Narrow(line.begin), .hash = HashOf(Slice(section, name))});
    }
}

// Adds the names of the lines from `first` on; of all lines when the table has no room for the new ones.
void AddNames(const Text& text, Span section, std::size_t first, KeyIndex& keys)
{
    const std::string_view units = Slice(text.units, section);
    const auto nameOf = [&](std::size_t line) { return KeyName(units, keys.lines[line].begin); };
    const std::size_t names = MostNames(keys.lines.size(), units.size());
    if (first == 0 || !keys.names.HasRoomFor(names)) {
        keys.names.Reserve(names);
        first = 0;
    }
    for (std::size_t i = first; i < keys.lines.size(); ++i) {
        if (!text.wide.empty() && !text.IsExact(Moved(nameOf(i), section.begin)))
            continue;
        keys.names.AddFirst(keys.lines, i, [&](std::size_t other) {
            return EqualIgnoringCase(Slice(units, nameOf(other)), Slice(units, nameOf(i)));
        });
    }
}

// Follows a change inside the section, `change` units after its beginning: a value, a new line or a
// removed one. Scans again only what follows the change and the line before it, which may have got its
// line end.
void ChangeKeys(const Text& text, Span section, std::size_t change, KeyIndex& keys)
{
    Entries& lines = keys.lines;
    const auto next =
        std::upper_bound(lines.begin(), lines.end(), change,
                         [](std::size_t place, const Entry& line) { return place < line.begin; });
    const std::size_t had = lines.size();
    const bool isInLast = had > 0 && change >= lines.back().begin;
    // Start at the line before the last one that begins no later than the change.
    const auto first = next - std::min<std::ptrdiff_t>(next - lines.begin(), 2);
    const std::size_t begin = first == lines.begin() ? 0 : first->begin;
    lines.erase(first, lines.end());
    ScanKeys(Slice(text.units, section), begin, lines);

    // The name table stays valid when only a value changed, or when lines were added after the last name.
    const bool namesStand = lines.size() == had || (lines.size() > had && isInLast);
    AddNames(text, section, namesStand ? had : 0, keys);
}

} // namespace

Index::Index(const Text& text)
    : sections_(ScanSections(text.units, {0, text.units.size()}))
{
    IndexNames(text);
}

std::optional<std::size_t> Index::FindSection(const Text& text, std::string_view name) const
{
    return names_.Find(sections_, HashOf(name),
                       [&](std::size_t section) { return EqualIgnoringCase(NameOf(text, section), name); });
}

Span Index::SpanOf(const Text& text, std::size_t section) const
{
    const bool isLast = section + 1 == sections_.size();
    return {sections_[section].begin, isLast ? text.units.size() : sections_[section + 1].begin};
}

const KeyIndex& Index::KeysOf(const Text& text, std::size_t section)
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

std::optional<KeyLine> Index::FindKey(const Text& text, std::size_t section, std::string_view name)
{
    const KeyIndex& keys = KeysOf(text, section);
    const std::string_view units = Slice(text.units, SpanOf(text, section));
    const auto found = keys.names.Find(keys.lines, HashOf(name), [&](std::size_t line) {
        return EqualIgnoringCase(Slice(units, KeyName(units, keys.lines[line].begin)), name);
    });
    if (!found)
        return std::nullopt;
    return KeyLineOf(units, LineAt(units, keys.lines[*found].begin));
}

void Index::Change(const Text& text, Span removed, std::size_t inserted)
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
    if (last - first == 1 && found.size() == 1 && first->begin == found[0].begin) {
        const auto known = keys_.find(static_cast<std::size_t>(first - sections_.begin()));
        if (known != keys_.end())
            ChangeKeys(text, {begin, end}, removed.begin - begin, known->second);
        return;
    }
    keys_.clear();
    const auto place = sections_.erase(first, last);
    sections_.insert(place, found.begin(), found.end());
    IndexNames(text);
}

std::string_view Index::NameOf(const Text& text, std::size_t section) const
{
    return Slice(text.units, HeaderName(text.units, sections_[section].begin));
}

void Index::IndexNames(const Text& text)
{
    names_.Reserve(MostNames(sections_.size(), text.units.size()));
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        if (!text.wide.empty() && !text.IsExact(HeaderName(text.units, sections_[i].begin)))
            continue;
        names_.AddFirst(sections_, i, [&](std::size_t other) {
            return EqualIgnoringCase(NameOf(text, other), NameOf(text, i));
        });
    }
}

} // namespace corvrec::ini
