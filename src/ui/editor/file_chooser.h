#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace corvrec
{

// The folder named in a file field: its text up to and including the last separator; nullopt when there is
// none. The separator is "/" in a text that begins with "/", otherwise "\".
std::optional<QString> FolderOf(const QString& text);

// Lets the user choose a file, which need not exist. Starts in the field's folder if that contains files,
// otherwise in ownDirectory. Returns the full path with the system's separators; nullopt when cancelled.
std::optional<QString> ChooseFile(QWidget* parent, const QString& fieldText, const QString& ownDirectory);

} // namespace corvrec
