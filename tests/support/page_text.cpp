#include "tests/support/page_text.h"

#include <QList>

namespace corvrec
{

namespace
{

// The characters of the bytes 80 to 9F; all other bytes have the number of their character.
constexpr QStringView kHighCharacters = u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ";

} // namespace

std::string PageBytes(const QString& text)
{
    std::string bytes;
    for (const char32_t character : text.toUcs4()) {
        const QChar narrow = character < 0x10000 ? QChar(static_cast<char16_t>(character)) : QChar();
        const qsizetype high = kHighCharacters.indexOf(narrow);
        if (high >= 0)
            bytes += static_cast<char>(0x80 + high);
        else
            bytes += character < 0x80 || (character >= 0xA0 && character <= 0xFF)
                         ? static_cast<char>(character)
                         : '?';
    }
    return bytes;
}

QString PageText(std::string_view bytes)
{
    QString text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += code >= 0x80 && code < 0xA0 ? kHighCharacters[code - 0x80] : QChar(code);
    }
    return text;
}

bool InPage(QChar character)
{
    return character == u'?' || PageBytes(QString(character)) != "?";
}

} // namespace corvrec
