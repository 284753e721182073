#pragma once

#include <QChar>
#include <QString>

#include <string>
#include <string_view>

namespace corvrec
{

// Code page 1252 as a table, independent of the code under test. "?" for a character outside the page.
std::string PageBytes(const QString& text);
QString PageText(std::string_view bytes);
bool InPage(QChar character);

} // namespace corvrec
