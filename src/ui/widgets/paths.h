#pragma once

#include <QString>

namespace corvrec
{

// File names of the recorder. Windows names have "\" as separator. A name that begins with "/" belongs to
// another system: its separator is "/", and its letters are never changed.

// directory + separator + file, without doubling the separator. An empty `directory` is first set to
// ownDirectory.
QString JoinPath(const QString& file, QString& directory, const QString& ownDirectory);

// The text with the letter directly after each separator in upper case.
QString CapitaliseAfter(const QString& text, QChar separator);

// The path with the first letter of every word and path segment in upper case, the rest in lower case.
QString ProperCasePath(const QString& path);

// Letter by letter, so the length never changes ("ß" stays). A letter whose upper case is not in code page
// 1252 stays too.
QString UpperCase(const QString& text);

// Without blanks at either end (U+0020 only).
QString TrimBlanks(const QString& text);

} // namespace corvrec
