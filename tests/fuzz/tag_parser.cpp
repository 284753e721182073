// The number in a localisation tag, for any tag.
//
// Input: the tag in UTF-8.

#include "tests/fuzz/fuzzing.h"
#include "ui/widgets/texts.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace corvrec::fuzz
{

namespace
{

// The value of plain digits; fewer than 10 of them never exceed an int.
int ValueOf(const QString& digits)
{
    int value = 0;
    for (const QChar digit : digits)
        value = value * 10 + (digit.unicode() - u'0');
    return value;
}

bool IsPlainNumber(const QString& text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return !text.isEmpty() && text.size() < 10 && std::all_of(text.begin(), text.end(), isDigit);
}

void CheckTag(const QString& tag)
{
    const int id = TagId(tag);
    const QString number = tag.section(u';', 0, 0);
    if (!tag.contains(u';'))
        Check(id == 0, "a tag without a semicolon names no text");
    else if (IsPlainNumber(number))
        Check(id == ValueOf(number), "a tag names the text of its number");
    else if (id != 0)
        Check(number.contains(QString::number(id).remove(u'-')), "the number is in the tag");
    Check(TagId(tag + u';') == TagId(tag + QStringLiteral(";7")), "text after the semicolon is ignored");
    Check(!tag.contains(u';') || TagId(tag + u'7') == id, "text after the semicolon is ignored");
}

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto* const text = reinterpret_cast<const char*>(data); // bytes are characters here
    corvrec::fuzz::CheckTag(QString::fromUtf8(text, static_cast<qsizetype>(size)));
    return 0;
}
