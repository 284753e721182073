#include "tests/support/odd_texts.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <string_view>

namespace corvrec
{

namespace
{

using namespace std::string_view_literals;

// The pieces keep their NULs.
constexpr std::array kPieces{
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
    u"C:\\Dati\\b.txt"sv, u"\\"sv, u"/"sv, u"AT"sv, u"at&f"sv, u"ATDP"sv, u"+++"sv, u"<b>&amp;"sv, u"%1"sv,
    u"&"sv, u"[*]"sv};

// Lengths around the limits of the reads and far beyond them.
constexpr std::array<qsizetype, 7> kLongLengths{97, 98, 99, 100, 101, 255, 300};

QString Pieces(Chance& chance, std::size_t count)
{
    QString text;
    for (std::size_t i = 0; i < count; ++i)
        text += QStringView(chance.OneOf(kPieces));
    return text;
}

} // namespace

QString OddText(Chance& chance)
{
    QString text = Pieces(chance, chance.Below(8));
    if (chance.Percent(15)) {
        const qsizetype length = chance.OneOf(kLongLengths);
        while (text.size() < length)
            text += Pieces(chance, 8) + "lungo";
        text.truncate(length);
    }
    if (chance.Percent(10)) {
        const QChar quote = chance.Percent(50) ? u'"' : u'\'';
        text = quote + text + quote;
    }
    return text;
}

} // namespace corvrec
