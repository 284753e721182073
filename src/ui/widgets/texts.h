#pragma once

#include "core/text_ids.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QString>

class QCoreApplication;

namespace corvrec
{

// Makes the string table and Qt's own translations answer in the user's language where there is a table for
// it, else in Italian; a text that the user's table lacks comes from the Italian one. Also sets the default
// locale, to the table's language. Once, before the first window. qtFolder: where Qt's own translations are.
void InstallTexts(QCoreApplication& application, const QLocale& user = QLocale::system(),
                  const QString& qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath));

// The string table's text. Ids that code names are always there (a test sees to it).
QString Text(TextId id);

// The text of any number; a null string when the table lacks it.
QString FindText(int id);

// The number in front of the first ";" of a localisation tag such as "501;" or "801;2". 0, which stands for
// no text, when the tag has no ";" behind a number.
int TagId(const QString& tag);

} // namespace corvrec
