#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace corvrec
{

using MakeTest = std::function<std::unique_ptr<QObject>()>;

// The test classes of the program, by name without namespace.
void RegisterTest(const QByteArray& className, MakeTest make);
[[nodiscard]] QByteArrayList RegisteredTests();

// A new object of the class with this name; nullptr when there is none.
[[nodiscard]] std::unique_ptr<QObject> MakeRegisteredTest(const QByteArray& name);

// Registers a QtTest class with the program: a static object of this type is at the end of the class's file.
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
