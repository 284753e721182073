#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace corvrec
{

// The folder that a file field names: its text up to the last separator; nothing when it names none. A text
// that begins with "/" has "/" as its separator, any other "\".
std::optional<QString> FolderOf(const QString& text);

// Lets the user choose a file, which need not exist. Starts in the field's folder when that holds a file,
// else in ownDirectory. Gives the full path with the system's separators; nothing when cancelled.
std::optional<QString> ChooseFile(QWidget* parent, const QString& fieldText, const QString& ownDirectory);

} // namespace corvrec
