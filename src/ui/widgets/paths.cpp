#include "ui/widgets/paths.h"

#include "core/file/code_page.h"
#include "ui/widgets/qt_text.h"

#include <algorithm>

namespace corvrec
{

namespace
{

constexpr QChar kSlash = u'/';
constexpr QChar kBackslash = u'\\';

bool IsForeign(const QString& path)
{
    return path.startsWith(kSlash);
}

bool InCodePage(QChar character)
{
    return character == u'?' || Cp1252FromUtf8(ToStd(QString(character))) != "?";
}

// A letter whose upper case the settings file cannot hold ("µ") stays as it is.
QChar Upper(QChar character)
{
    const QChar upper = character.toUpper();
    return InCodePage(upper) ? upper : character;
}

// Blank, tab, LF, VT, FF, CR and NUL. Dots and digits do not end a word.
bool EndsWord(QChar character)
{
    return character == u' ' || (character >= u'\t' && character <= u'\r') || character.isNull();
}

} // namespace

QString JoinPath(const QString& file, QString& directory, const QString& ownDirectory)
{
    if (directory.isEmpty())
        directory = ownDirectory;
    const QChar separator = IsForeign(directory) ? kSlash : kBackslash;
    return directory.endsWith(separator) ? directory + file : directory + separator + file;
}

QString CapitaliseAfter(const QString& text, QChar separator)
{
    QString capitalised = text;
    if (IsForeign(text))
        return capitalised;
    for (qsizetype position = 1; position < text.size(); ++position) {
        if (text.at(position - 1) == separator)
            capitalised[position] = Upper(text.at(position));
    }
    return capitalised;
}

QString ProperCasePath(const QString& path)
{
    if (IsForeign(path))
        return path;
    QString proper = path;
    bool startsWord = true;
    for (QChar& character : proper) {
        character = startsWord ? Upper(character) : character.toLower();
        startsWord = EndsWord(character) || character == kBackslash;
    }
    return proper;
}

QString UpperCase(const QString& text)
{
    QString upper = text;
    std::transform(text.begin(), text.end(), upper.begin(), Upper);
    return upper;
}

QString TrimBlanks(const QString& text)
{
    const auto isBlank = [](QChar character) { return character == u' '; };
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
    return first < last ? QString(first, last - first) : QString();
}

} // namespace corvrec
