#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace corvrec
{

using MakeTest = std::function<std::unique_ptr<QObject>()>;

// Classes of tests by name, without their namespace.
void RegisterTest(const QByteArray& className, MakeTest make);
[[nodiscard]] QByteArrayList RegisteredTests();

// A new object of the class; null when there is none of that name.
[[nodiscard]] std::unique_ptr<QObject> MakeRegisteredTest(const QByteArray& name);

// Makes a QtTest class known to the program of all such tests: a static object of this type at the end of its
// file.
template <class Test>
class RegisteredTest
{
public:
    RegisteredTest()
    {
        RegisterTest(Test::staticMetaObject.className(), [] { return std::make_unique<Test>(); });
    }
};

} // namespace corvrec
