#include "core/file/ini_grammar.h"

#include <algorithm>

namespace corvrec::ini
{

namespace
{

Span Trimmed(std::string_view units, Span span)
{
    while (span.begin < span.end && IsBlank(units[span.begin]))
        ++span.begin;
    while (span.begin < span.end && IsBlank(units[span.end - 1]))
        --span.end;
    return span;
}

} // namespace

bool Text::IsExact(Span span) const
{
    if (wide.empty())
        return true;
    for (std::size_t i = span.begin; i < span.end; ++i) {
        if (units[i] == '?' && wide.substr(2 * i, 2) != std::string_view("?\0", 2))
            return false;
    }
    return true;
}

Span TextOf(std::string_view units, Span span)
{
    const Span text = Trimmed(units, span);
    const std::size_t nul = Slice(units, text).find('\0');
    return nul == std::string_view::npos ? text : Trimmed(units, {text.begin, text.begin + nul});
}

Line LineAt(std::string_view units, std::size_t begin)
{
    std::size_t textEnd = begin;
    while (textEnd < units.size() && !IsLineEnd(units[textEnd]))
        ++textEnd;
    const std::string_view rest = units.substr(textEnd);
    const std::size_t endLength = rest.starts_with(kLineEnd) ? 2 : std::min<std::size_t>(rest.size(), 1);
    return {.begin = begin, .textEnd = textEnd, .end = textEnd + endLength};
}

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

Span HeaderName(std::string_view units, std::size_t begin)
{
    const std::size_t nameBegin = units.find('[', begin) + 1;
    std::size_t nameEnd = nameBegin;
    while (nameEnd < units.size() && units[nameEnd] != ']' && !IsLineEnd(units[nameEnd]))
        ++nameEnd;
    return TextOf(units, {nameBegin, nameEnd});
}

KeyLine KeyLineOf(std::string_view units, const Line& line)
{
    const std::size_t equals = units.find('=', line.begin);
    return {.begin = line.begin,
            .name = TextOf(units, {line.begin, equals}),
            .value = {equals + 1, line.textEnd},
            .end = line.end};
}

Span KeyName(std::string_view units, std::size_t begin)
{
    return TextOf(units, {begin, units.find('=', begin)});
}

} // namespace corvrec::ini
