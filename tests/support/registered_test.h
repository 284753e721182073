#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <memory>

namespace corvrec
{

using MakeTest = std::function<std::unique_ptr<QObject>()>;

// The test classes of the program, by name without namespace. Filled before main, in any order.
inline std::map<QByteArray, MakeTest>& RegisteredTests()
{
    static std::map<QByteArray, MakeTest> tests;
    return tests;
}

// Registers a QtTest class with the program, by a static object of this type at the end of the class's file.
template <class Test>
class RegisteredTest
{
public:
    RegisteredTest()
    {
        const QByteArray name = Test::staticMetaObject.className();
        RegisteredTests()[name.mid(name.lastIndexOf(':') + 1)] = [] { return std::make_unique<Test>(); };
    }
};

} // namespace corvrec
