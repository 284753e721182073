#pragma once

#include <QChar>
#include <QString>

#include <string>
#include <string_view>

namespace corvrec
{

// Code page 1252 as a table, beside the one under test. "?" for a character that the page lacks.
std::string PageBytes(const QString& text);
QString PageText(std::string_view bytes);
bool InPage(QChar character);

} // namespace corvrec
