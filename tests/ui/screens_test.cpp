// Each window on a screen of a given size: as large as it needs, completely on the screen, and with every
// control reachable. CORVREC_SCREEN sets the size, for example 1024x600, and CORVREC_FONT the size of letters
// in percent; on a real X server, the screen keeps its size.
#include "core/site/code_tables.h"
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/registered_test.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/texts.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDebug>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryFile>
#include <QTest>

#include <memory>

namespace corvrec
{

namespace
{

constexpr int kEnough = 560; // screen height at which every window fits

// All windows, one of them opened.
struct Windows {
    explicit Windows(const QString& name, int page, int kind)
    {
        buffer.Dialog().SetAzione(-1); // neither connects nor hangs up
        if (name == "frmSX") {
            buffer.Open();
            window = &buffer.Window();
            return;
        }
        if (name == "frmConnessione") {
            window = &buffer.Dialog();
        } else if (name == "frmSiti") {
            window = &program.List();
        } else {
            program.Open();
            program.Choice("cboRicorrenza").setCurrentIndex(kind);
            program.At<QTabWidget>("tabSetup").setCurrentIndex(page);
            window = name == "frmDettaglio" ? &program.Editor() : program.Editor().findChild<QDialog*>(name);
        }
        window->show();
        BringToFront(*window);
        QCoreApplication::sendPostedEvents(); // completes the layouts
    }

    EditorWindow program{SettingsWith({"A", "B"})};
    BufferWindow buffer;
    QWidget* window = nullptr;
};

void AddWindows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("kind");
    QTest::newRow("site list") << "frmSiti" << 0 << 0;
    QTest::newRow("connection") << "frmDettaglio" << 0 << 0;
    QTest::newRow("schedule, continuous") << "frmDettaglio" << 1 << 0;
    QTest::newRow("schedule, hourly") << "frmDettaglio" << 1 << 1;
    QTest::newRow("schedule, daily") << "frmDettaglio" << 1 << 2;
    QTest::newRow("schedule, weekly") << "frmDettaglio" << 1 << 3;
    QTest::newRow("files") << "frmDettaglio" << 2 << 0;
    QTest::newRow("transformations") << "frmTrasfAvanzate" << 0 << 0;
    QTest::newRow("alerts") << "frmFileAvanzate" << 0 << 0;
    QTest::newRow("modem") << "frmModem" << 0 << 0;
    QTest::newRow("buffer status") << "frmSX" << 0 << 0;
    QTest::newRow("modem connection") << "frmConnessione" << 0 << 0;
}

// The controls that a user reads or uses, without their containers.
QList<QWidget*> ControlsOf(const QWidget& window)
{
    QList<QWidget*> controls;
    for (QWidget* const each : window.findChildren<QWidget*>()) {
        const bool isOne = qobject_cast<QLabel*>(each) != nullptr ||
                           (each->focusPolicy() != Qt::NoFocus && qobject_cast<QScrollBar*>(each) == nullptr);
        const bool isPartOfAnother = qobject_cast<QAbstractItemView*>(each->parentWidget()) != nullptr ||
                                     qobject_cast<QScrollArea*>(each) != nullptr ||
                                     qobject_cast<QTabWidget*>(each) != nullptr;
        if (isOne && !isPartOfAnother && each->window() == &window && each->isVisible())
            controls.append(each);
    }
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

} // namespace

class screens_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase()
    {
        InstallTexts(*QCoreApplication::instance());
        QFont font = QApplication::font();
        const int percent = qEnvironmentVariableIntValue("CORVREC_FONT");
        font.setPointSizeF(font.pointSizeF() * (percent == 0 ? 100 : percent) / 100);
        QApplication::setFont(font);
    }

    static void windowLiesWithinTheScreen_data() { AddWindows(); }
    static void windowLiesWithinTheScreen()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const int, kind);
        const Windows windows(name, page, kind);
        const QWidget& window = *windows.window;

        const auto isWithin = [&window] {
            return window.screen()->availableGeometry().contains(window.frameGeometry());
        };
        QVERIFY2(QTest::qWaitFor(isWithin), qPrintable(QDebug::toString(window.frameGeometry())));
    }

    static void everyControlIsWholeOrCanBeScrolledTo_data() { AddWindows(); }
    static void everyControlIsWholeOrCanBeScrolledTo()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const int, kind);
        const Windows windows(name, page, kind);

        const QList<QWidget*> controls = ControlsOf(*windows.window);
        QVERIFY(!controls.isEmpty());
        for (QWidget* const control : controls) {
            if (QScrollArea* const area = ScrolledAround(*control); area != nullptr)
                area->ensureWidgetVisible(control, 0, 0);
            const QByteArray which = control->objectName().toUtf8();
            const QSize needed = Needed(*control);
            QVERIFY2(control->width() >= needed.width(), which);
            QVERIFY2(control->height() >= needed.height(), which);
            QVERIFY2(!control->visibleRegion().isEmpty(), which);
            QVERIFY2(IsWhole(*control) || ScrolledAround(*control) != nullptr, which);
        }
    }

    // Without scrolling.
    static void buttonsAreInView_data() { AddWindows(); }
    static void buttonsAreInView()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const int, kind);
        const Windows windows(name, page, kind);

        for (const char* const button : {"OK", "Annulla", "cmdAnnulla", "cmdStato", "cmdChiudi"}) {
            for (const auto* const found : windows.window->findChildren<QWidget*>(button)) {
                if (found->window() == windows.window)
                    QVERIFY2(IsWhole(*found), button);
            }
        }
    }

    static void noScrollBarsWhereTheScreenHasTheRoom_data()
    {
        if (QGuiApplication::primaryScreen()->availableSize().height() < kEnough)
            QSKIP("the screen is too small for the largest window");
        AddWindows();
    }
    static void noScrollBarsWhereTheScreenHasTheRoom()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const int, kind);
        const Windows windows(name, page, kind);

        for (const auto* const area : windows.window->findChildren<QAbstractScrollArea*>()) {
            if (area->window() == windows.window) {
                QCOMPARE(area->verticalScrollBar()->maximum(), 0);
                QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
            }
        }
    }

    static void fieldsOfATimeOrANumberAreAsWideAsTheirContent_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("content");
        QTest::addColumn<QString>("much");
        QTest::newRow("txtXon") << "frmDettaglio" << 0 << "W"
                                << "WWWW";
        QTest::newRow("txtXoff") << "frmDettaglio" << 0 << "W"
                                 << "WWWW";
        QTest::newRow("mskValore") << "frmDettaglio" << 1 << "00:00"
                                   << "00:00:00";
        QTest::newRow("mskOrario") << "frmDettaglio" << 1 << "00:00"
                                   << "00:00:00";
        QTest::newRow("txtFile") << "frmFileAvanzate" << 0 << "00000"
                                 << "0000000000";
        QTest::newRow("txtSpazio") << "frmFileAvanzate" << 0 << "00000"
                                   << "0000000000";
        QTest::newRow("txtTentImpor") << "frmModem" << 0 << "000"
                                      << "0000000";
        QTest::newRow("mskData") << "frmSX" << 0 << "00/00/00"
                                 << "00/00/0000";
        QTest::newRow("mskOra") << "frmSX" << 0 << "00:00"
                                << "00:00:00";
    }
    static void fieldsOfATimeOrANumberAreAsWideAsTheirContent()
    {
        QFETCH(const QString, window);
        QFETCH(const int, page);
        QFETCH(const QString, content);
        QFETCH(const QString, much);
        const Windows windows(window, page, 1);

        const auto& field = SiteWindow::Part<QLineEdit>(*windows.window, QTest::currentDataTag());
        QVERIFY(field.width() > field.fontMetrics().horizontalAdvance(content));
        QVERIFY(field.width() < field.fontMetrics().horizontalAdvance(much));
    }

    static void fieldThatGetsTheFocusComesIntoView()
    {
        Windows windows("frmModem", 0, 0);

        for (const char* const name : {"txtStringaReset", "cboModem", "txtStringaReset"}) {
            auto& field = SiteWindow::Part<QWidget>(*windows.window, name);
            FocusField(field);
            QVERIFY2(IsWhole(field), name);
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::screens_test> registered;

#include "screens_test.moc"
