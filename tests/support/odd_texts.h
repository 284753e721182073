#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string_view>

namespace corvrec
{

// Random choices that a seed repeats on every machine; the standard library's distributions differ between
// implementations.
class Chance
{
public:
    explicit Chance(std::uint64_t seed)
        : engine_(seed)
    {
    }

    // 0 to count - 1.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }

    // True in this percentage of calls.
    bool Percent(std::size_t percent) { return Below(100) < percent; }

    template <class Range>
    const auto& OneOf(const Range& range)
    {
        const auto count = static_cast<std::size_t>(std::ssize(range));
        return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(count)));
    }

private:
    std::mt19937_64 engine_;
};

// A text that nobody types: the settings file's syntax characters, quotes, outer blanks, line breaks, NULs,
// control characters, letters inside and outside code page 1252, single surrogates, up to 300 characters.
inline QString OddText(Chance& chance)
{
    using namespace std::string_view_literals; // the pieces keep their NULs
    static constexpr std::array kPieces{
        // structure of the settings file
        u"="sv, u"["sv, u"]"sv, u";"sv, u"\""sv, u"'"sv, u"[x]"sv, u"x=y"sv, u"[Siti]"sv, u"[DUE]"sv, u";#"sv,
        u"\r\n[DUE]\r\nDati="sv, u"\nUNO="sv, u"-CaVacca-"sv,
        // blanks, line breaks, control characters
        u" "sv, u"  "sv, u"\t"sv, u"\r"sv, u"\n"sv, u"\r\n"sv, u"\0"sv, u"\v\f"sv, u"\x01"sv, u"\x1a"sv,
        u"\x7f"sv, u"\u00a0"sv, u"\u0085"sv, u"\u2028"sv, u"\u200b"sv,
        // letters inside and outside the code page, a surrogate pair, and single surrogates
        u"à"sv, u"È"sv, u"ß"sv, u"ÿ"sv, u"µ"sv, u"€"sv, u"Œ"sv, u"\u0081"sv, u"ő"sv, u"Ж"sv, u"漢"sv, u"ı"sv,
        u"e\u0301"sv, u"\U0001F600"sv, u"\xd83d"sv, u"\xde00"sv,
        // ordinary values
        u"Sede"sv, u"a"sv, u"Z"sv, u"0"sv, u"42"sv, u"08:30"sv, u":"sv, u"_"sv, u"-"sv, u","sv, u"."sv,
        u"C:\\Dati\\b.txt"sv, u"\\"sv, u"/"sv, u"AT"sv, u"at&f"sv, u"ATDP"sv, u"+++"sv, u"<b>&amp;"sv,
        u"%1"sv, u"&"sv, u"[*]"sv};
    // Lengths around the limits of the reads and far beyond them.
    static constexpr std::array<qsizetype, 7> kLongLengths{97, 98, 99, 100, 101, 255, 300};
    const auto pieces = [&chance](std::size_t count) {
        QString text;
        for (std::size_t i = 0; i < count; ++i)
            text += QStringView(chance.OneOf(kPieces));
        return text;
    };
    QString text = pieces(chance.Below(8));
    if (chance.Percent(15)) {
        const qsizetype length = chance.OneOf(kLongLengths);
        while (text.size() < length)
            text += pieces(8) + "lungo";
        text.truncate(length);
    }
    if (chance.Percent(10)) {
        const QChar quote = chance.Percent(50) ? u'"' : u'\'';
        text = quote + text + quote;
    }
    return text;
}

} // namespace corvrec
