#include "tests/support/registered_test.h"

#include <QByteArray>
#include <QByteArrayList>

#include <map>
#include <utility>

namespace corvrec
{

namespace
{

std::map<QByteArray, MakeTest>& Tests()
{
    static std::map<QByteArray, MakeTest> tests; // filled before main, in any order
    return tests;
}

} // namespace

void RegisterTest(const QByteArray& className, MakeTest make)
{
    Tests()[className.mid(className.lastIndexOf(':') + 1)] = std::move(make);
}

QByteArrayList RegisteredTests()
{
    QByteArrayList names;
    for (const auto& [name, make] : Tests())
        names.append(name);
    return names;
}

std::unique_ptr<QObject> MakeRegisteredTest(const QByteArray& name)
{
    const auto found = Tests().find(name);
    return found == Tests().end() ? nullptr : found->second();
}

} // namespace corvrec
