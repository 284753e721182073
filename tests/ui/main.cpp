// All tests of src/ui and src/app in one program, so that it is linked only once. Each run executes one test
// class, so classes share no state and ctest runs them in parallel.
//
// Usage: ui_tests CLASS [options of QtTest...]
//
// CORVREC_SCREEN in the environment gives the offscreen platform screens of these sizes, each at "+X+Y" or at
// the origin: "1024x600", "1024x768 1601x901+1024+100".

#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <vector>

namespace
{

// The offscreen platform reads its screens from a file when the application starts.
void SetScreens(QTemporaryFile& file)
{
    static const QRegularExpression kScreen(R"((\d+)x(\d+)(?:\+(\d+)\+(\d+))?)");
    auto sizes = kScreen.globalMatch(qEnvironmentVariable("CORVREC_SCREEN"));
    if (!sizes.hasNext() || qgetenv("QT_QPA_PLATFORM") != "offscreen" || !file.open())
        return;
    QJsonArray screens;
    while (sizes.hasNext()) {
        const auto size = sizes.next();
        screens.append(QJsonObject{{"name", size.captured()},
                                   {"x", size.captured(3).toInt()},
                                   {"y", size.captured(4).toInt()},
                                   {"width", size.captured(1).toInt()},
                                   {"height", size.captured(2).toInt()},
                                   {"logicalDpi", 96},
                                   {"logicalBaseDpi", 96},
                                   {"dpr", 1}});
    }
    file.write(QJsonDocument(QJsonObject{{"screens", screens}}).toJson());
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFileInfo(file).fileName().toUtf8());
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        for (const auto& [name, make] : corvrec::RegisteredTests())
            std::puts(name.constData());
        return 2;
    }
    // In the current directory: a drive's colon would end the platform's options.
    QTemporaryFile screens("screens-XXXXXX");
    SetScreens(screens);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qputenv("LC_ALL", "it_IT.UTF-8"); // whatever the machine's language is
    QApplication application(argc, argv);
    corvrec::InstallTexts(application);
    const auto test = corvrec::RegisteredTests().find(argv[1]);
    if (test == corvrec::RegisteredTests().end()) {
        std::fprintf(stderr, "No such test class: %s\n", argv[1]);
        return 2;
    }
    std::vector<char*> arguments(argv, argv + argc);
    arguments.erase(arguments.begin() + 1);
    return QTest::qExec(test->second().get(), static_cast<int>(arguments.size()), arguments.data());
}
