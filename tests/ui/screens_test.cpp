// Each window on a screen of a given size: as large as it needs, completely on the screen, and with every
// control reachable. CORVREC_SCREEN sets the size, for example 1024x600, and CORVREC_FONT the size of letters
// in percent; on a real X server, the screen keeps its size.
#include "tests/support/all_windows.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/dialogs.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDebug>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

namespace corvrec
{

namespace
{

constexpr int kEnough = 560; // screen height at which every window fits

// The controls that a user reads or uses, without their containers.
QList<QWidget*> ControlsToSee(AllWindows& windows)
{
    QList<QWidget*> controls = windows.Controls();
    controls.removeIf([](const QWidget* each) {
        const bool isOne =
            qobject_cast<const QLabel*>(each) != nullptr ||
            (each->focusPolicy() != Qt::NoFocus && qobject_cast<const QScrollBar*>(each) == nullptr);
        const bool isPartOfAnother = qobject_cast<QAbstractItemView*>(each->parentWidget()) != nullptr ||
                                     qobject_cast<const QScrollArea*>(each) != nullptr ||
                                     qobject_cast<const QTabWidget*>(each) != nullptr;
        return !isOne || isPartOfAnother || !each->isVisible();
    });
    return controls;
}

// A label that wraps its text needs the height of the wrapped lines.
QSize Needed(const QWidget& control)
{
    const QSize least = control.minimumSizeHint().boundedTo(control.maximumSize());
    return control.hasHeightForWidth() ? QSize(least.width(), control.heightForWidth(control.width()))
                                       : least;
}

QScrollArea* ScrolledAround(const QWidget& control)
{
    for (QWidget* parent = control.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (auto* const area = qobject_cast<QScrollArea*>(parent); area != nullptr)
            return area;
    }
    return nullptr;
}

// Whether no surrounding widget clips the control.
bool IsWhole(const QWidget& control)
{
    return control.visibleRegion().boundingRect() == control.rect();
}

void CheckButtonsAreInView(AllWindows& windows)
{
    for (const auto* const button : windows.Controls<QPushButton>()) {
        if (QStringList{"OK", "Annulla", "cmdAnnulla", "cmdStato", "cmdChiudi"}.contains(
                button->objectName()))
            QVERIFY2(IsWhole(*button), qPrintable(button->objectName()));
    }
}

void CheckEveryControlCanBeSeen(AllWindows& windows)
{
    const QList<QWidget*> controls = ControlsToSee(windows);
    QVERIFY(!controls.isEmpty());
    for (QWidget* const control : controls) {
        QScrollArea* const area = ScrolledAround(*control);
        if (area != nullptr)
            area->ensureWidgetVisible(control, 0, 0);
        const QByteArray which = control->objectName().toUtf8();
        QVERIFY2(control->size().expandedTo(Needed(*control)) == control->size(), which);
        QVERIFY2(!control->visibleRegion().isEmpty(), which);
        QVERIFY2(IsWhole(*control) || area != nullptr, which);
    }
}

} // namespace

class screens_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase()
    {
        QFont font = QApplication::font();
        const int percent = qEnvironmentVariableIntValue("CORVREC_FONT");
        font.setPointSizeF(font.pointSizeF() * (percent == 0 ? 100 : percent) / 100);
        QApplication::setFont(font);
    }

    static void everyWindowFitsTheScreen_data() { AddWindows(); }
    static void everyWindowFitsTheScreen()
    {
        QFETCH(const WindowCase, tested);
        AllWindows windows(tested);
        const QWidget& window = windows.Tested();
        const QRect screen = window.screen()->availableGeometry();

        const auto isWithin = [&] { return screen.contains(window.frameGeometry()); };
        QVERIFY2(QTest::qWaitFor(isWithin), qPrintable(QDebug::toString(window.frameGeometry())));
        CheckButtonsAreInView(windows); // without scrolling
        CheckEveryControlCanBeSeen(windows);
        for (const auto* const area : windows.Controls<QAbstractScrollArea>()) {
            if (screen.height() >= kEnough)
                QCOMPARE(area->verticalScrollBar()->maximum() + area->horizontalScrollBar()->maximum(), 0);
        }
    }

    static void fieldsOfATimeOrANumberAreAsWideAsTheirContent()
    {
        struct Field {
            WindowCase tested;
            const char* name;
            const char* content;
            const char* much;
        };
        const WindowCase hourly{.window = "frmDettaglio", .page = 1, .site = Site::byModemEachHour};
        for (const auto& [tested, name, content, much] : {
                 Field{{.window = "frmDettaglio"}, "txtXon", "W", "WWWW"},
                 Field{{.window = "frmDettaglio"}, "txtXoff", "W", "WWWW"},
                 Field{hourly, "mskValore", "00:00", "00:00:00"},
                 Field{hourly, "mskOrario", "00:00", "00:00:00"},
                 Field{{.window = "frmFileAvanzate"}, "txtFile", "00000", "0000000000"},
                 Field{{.window = "frmFileAvanzate"}, "txtSpazio", "00000", "0000000000"},
                 Field{{.window = "frmModem"}, "txtTentImpor", "000", "0000000"},
                 Field{{.window = "frmSX"}, "mskData", "00/00/00", "00/00/0000"},
                 Field{{.window = "frmSX"}, "mskOra", "00:00", "00:00:00"},
             }) {
            AllWindows windows(tested);
            const auto& field = SiteWindow::Part<QLineEdit>(windows.Tested(), name);
            QVERIFY2(field.width() > field.fontMetrics().horizontalAdvance(content), name);
            QVERIFY2(field.width() < field.fontMetrics().horizontalAdvance(much), name);
        }
    }

    static void fieldThatGetsTheFocusComesIntoView()
    {
        AllWindows windows({.window = "frmModem"});

        for (const char* const name : {"txtStringaReset", "cboModem", "txtStringaReset"}) {
            auto& field = SiteWindow::Part<QWidget>(windows.Tested(), name);
            FocusField(field);
            QVERIFY2(IsWhole(field), name);
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::screens_test> registered;

#include "screens_test.moc"
