#pragma once

#include "core/text_ids.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QString>

class QCoreApplication;

namespace corvrec
{

// Installs the string table and Qt's own translations in the user's language if there is a table for it,
// otherwise in Italian. Texts that the user's table lacks come from the Italian one. Also sets the default
// locale to the table's language. To be called once, before the first window. qtFolder: the folder of Qt's
// own translations.
void InstallTexts(QCoreApplication& application, const QLocale& user = QLocale::system(),
                  const QString& qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath));

// The text with this id. A test makes sure that every id used in code is in the table.
QString Text(TextId id);

// The text with this number; a null string when the table lacks it.
QString FindText(int id);

// The number before the first ";" of a localisation tag such as "501;" or "801;2". 0, the number of no text,
// when the tag does not begin with a number and ";".
int TagId(const QString& tag);

} // namespace corvrec
