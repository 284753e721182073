#pragma once

#include "tests/support/vectors.h"

#include <QTest>

namespace corvrec
{

// The parts of a text between its "|".
inline QStringList Parts(const char* joined)
{
    return QString(joined).split('|', Qt::SkipEmptyParts);
}

// Gives a test one row for each case, in the column "given" and named by the case's first member, `name`.
template <class Cases>
void AddCases(const Cases& cases)
{
    QTest::addColumn<std::decay_t<decltype(*std::begin(cases))>>("given");
    for (const auto& each : cases)
        QTest::newRow(each.name) << each;
}

// The same for the vectors of one conversion, each a QJsonObject named by its own text.
inline void AddVectors(const char* list)
{
    QTest::addColumn<QJsonObject>("given");
    for (const QJsonValue vector : Vectors(list))
        QTest::newRow(QJsonDocument(vector.toObject()).toJson(QJsonDocument::Compact)) << vector.toObject();
}

} // namespace corvrec
