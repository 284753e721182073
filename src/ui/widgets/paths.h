#pragma once

#include <QString>

namespace corvrec
{

// File names of the recorder. Windows names use "\"; a name that begins with "/" is one of another system:
// its separator is "/", and its letters stay as they are.

// directory + separator + file, without doubling the separator. An empty directory is first replaced by
// ownDirectory, in the caller's variable.
QString JoinPath(const QString& file, QString& directory, const QString& ownDirectory);

// The letter right behind each separator upper-cased.
QString CapitaliseAfter(const QString& text, QChar separator);

// First letter of every word and of every path segment upper case, the rest lower case.
QString ProperCasePath(const QString& path);

// Letter by letter: the length never changes, "ß" stays.
QString UpperCase(const QString& text);

// Without blanks (U+0020 only) at both ends.
QString TrimBlanks(const QString& text);

} // namespace corvrec
