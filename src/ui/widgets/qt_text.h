#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace corvrec
{

// Converts between the windows' texts and the UTF-8 of the lower modules. No other code does.
inline QString ToQt(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline std::string ToStd(const QString& text)
{
    return text.toStdString();
}

} // namespace corvrec
