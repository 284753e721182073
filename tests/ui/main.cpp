// All tests of src/ui and src/app in one program, so that it is linked only once. Each run executes one test
// class, so classes share no state and ctest runs them in parallel.
//
// Usage: ui_tests CLASS [options of QtTest...]
//
// CORVREC_SCREEN=WIDTHxHEIGHT in the environment gives the offscreen platform one screen of that size;
// CORVREC_SCREEN=two gives it two screens.

#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QApplication>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <vector>

namespace
{

constexpr auto kTwoScreens = CORVREC_TEST_DATA "/two_screens.json";

// The offscreen platform reads its screens from a file when the application starts.
void SetScreens(QTemporaryFile& file)
{
    const QByteArray screens = qgetenv("CORVREC_SCREEN");
    if (screens.isEmpty() || qgetenv("QT_QPA_PLATFORM") != "offscreen")
        return;
    QByteArray name = kTwoScreens;
    const QList<QByteArray> size = screens.split('x');
    if (size.size() == 2 && file.open()) {
        file.write(R"({"screens": [{"name": "only", "x": 0, "y": 0, "width": )" + size[0] +
                   R"(, "height": )" + size[1] + R"(, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
        file.close();
        name = file.fileName().toUtf8();
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + name);
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::puts(corvrec::RegisteredTests().join('\n').constData());
        return 2;
    }
    QTemporaryFile screens;
    SetScreens(screens);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qputenv("LC_ALL", "it_IT.UTF-8"); // whatever the machine's language is
    QApplication application(argc, argv);
    corvrec::InstallTexts(application);
    const auto test = corvrec::MakeRegisteredTest(argv[1]);
    if (!test) {
        std::fprintf(stderr, "No such test class: %s\n", argv[1]);
        return 2;
    }
    std::vector<char*> arguments(argv, argv + argc);
    arguments.erase(arguments.begin() + 1);
    return QTest::qExec(test.get(), static_cast<int>(arguments.size()), arguments.data());
}
