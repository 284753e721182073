#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace corvrec
{

// The cases of one conversion from tests/data/conversions.json. Ends the test when there are none.
inline QJsonArray Vectors(const char* list)
{
    QFile file(CORVREC_TEST_DATA "/conversions.json");
    QJsonArray cases = file.open(QIODevice::ReadOnly)
                           ? QJsonDocument::fromJson(file.readAll()).object().value(list).toArray()
                           : QJsonArray();
    if (cases.isEmpty())
        qFatal("no vectors %s", list);
    return cases;
}

} // namespace corvrec
