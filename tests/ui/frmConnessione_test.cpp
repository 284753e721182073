#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/serial_line.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/buffer/frmConnessione.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <string_view>

namespace corvrec
{

namespace
{

// The dialog over an open fake port.
struct Fixture {
    explicit Fixture(std::string_view script = {})
        : line(script)
    {
    }

    // The calls in the caller's order. The journal and the script start at time 0.
    void Run(int action)
    {
        dialog.SetErrModem(false);
        dialog.SetAzione(action);
        QTimer patience; // for a dialog that does not close
        QObject::connect(&patience, &QTimer::timeout, &dialog, [this] {
            QTest::qFail("the dialog did not close", __FILE__, __LINE__);
            dialog.hide();
        });
        patience.start(kPatience);
        dialog.exec();
    }

    QPushButton& Button() { return SiteWindow::Part<QPushButton>(dialog, "cmdAnnulla"); }
    QString Status() { return Shown(SiteWindow::Part<QLabel>(dialog, "lblStato")); }
    QString Log() const { return QString::fromStdString(Joined(line.port.Journal())); }

    UnansweredBoxes unansweredBoxes;
    SerialLine line;
    frmConnessione dialog{line.wait, {.resetString = "z", .initString = "", .number = "0123", .pulse = true}};
};

using CancelWay = std::function<void(Fixture&)>;

} // namespace

class frmConnessione_test : public QObject
{
    Q_OBJECT

private slots:
    static void captionsComeFromTheStringTable()
    {
        Fixture window;

        QCOMPARE(window.dialog.windowTitle(), "Connessione modem");
        QCOMPARE(window.dialog.property("tag").toString(), "601;");
        auto& caption = SiteWindow::Part<QLabel>(window.dialog, "Label1");
        QCOMPARE(caption.text(), "Stato:");
        QCOMPARE(caption.property("tag").toString(), "602;");
        QCOMPARE(window.Button().text(), "Annulla");
        QCOMPARE(window.Button().property("tag").toString(), "2;");
    }

    static void firstState()
    {
        SerialLine line;
        line.cancel.raised = true;

        frmConnessione dialog(line.wait, {});

        QVERIFY(!dialog.Cancel());
        QVERIFY(!dialog.ErrModem());
        QCOMPARE(dialog.Azione(), 0);
        QCOMPARE(Shown(SiteWindow::Part<QLabel>(dialog, "lblStato")), "");
        QVERIFY(SiteWindow::Part<QPushButton>(dialog, "cmdAnnulla").isEnabled());
        QVERIFY(line.port.Journal().empty());
    }

    static void actions_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("log");
        QTest::addColumn<bool>("done");
        const auto row = [](const char* name, int action, const char* script, const char* log,
                            bool done = false) {
            QTest::newRow(name) << action << QByteArray(script) << QString(log) << done;
        };
        row("connects", 1, "10: ok | 20: OK | 30: CONNECT",
            "0 ClearInput | 0 Output ATz<0D> | 10 ClearInput | 10 Output AT<0D> | 20 ClearInput | "
            "20 Output ATDP0123<0D>",
            true);
        row("disconnects", 0, "1000: OK | 1500: OK", "0 Output +++ | 1000 ClearInput | 1000 Output ATH<0D>",
            true);
        row("silence", 1, "",
            "0 ClearInput | 0 Output ATz<0D> | 3001 ClearInput | 3001 ClearInput | 3001 ClearInput");
        row("no disconnection", 0, "", "0 Output +++ | 10001 ClearInput | 10001 ClearInput");
        row("cancelled disconnection", 0, "60: cancelled", "0 Output +++ | 60 ClearInput | 60 ClearInput");
        row("lost in a call", 1, "400: lost", "0 ClearInput | 0 Output ATz<0D> | 400 ClearInput");
        row("lost in a disconnection", 0, "400: lost", "0 Output +++ | 400 ClearInput");
        // Otherwise the next request would end as cancelled.
        row("lost while it is cancelled", 1, "400: cancelled | 400: lost",
            "0 ClearInput | 0 Output ATz<0D> | 400 ClearInput");
    }

    static void actions()
    {
        QFETCH(const int, action);
        QFETCH(const QByteArray, script);
        QFETCH(const QString, log);
        QFETCH(const bool, done);
        Fixture window(script.toStdString());
        QString status;
        window.line.pump.At(5, [&] { status = window.dialog.isVisible() ? window.Status() : "hidden"; });
        std::optional<MessageProbe> message;
        if (!done) {
            message.emplace(Qt::Key_Return, [&] {
                QVERIFY(window.dialog.isVisible());
                window.line.port.Receive("OK"); // discarded: it answers nothing
            });
        }

        window.Run(action);

        QCOMPARE(window.Log(), log);
        if (!done) {
            QCOMPARE(message->text(), action == 1 ? "Impossibile connettersi. Il modem non risponde"
                                                  : "Impossibile disconnettersi. Il modem non risponde");
            QCOMPARE(message->title(), action == 1 ? "Connessione" : "Disconnessione");
            QCOMPARE(message->icon(), QMessageBox::Warning);
            QCOMPARE(message->buttons(), QStringList({"OK"}));
            QCOMPARE(window.line.port.Waiting(), "");
        }
        if (!status.isEmpty())
            QCOMPARE(status, action == 1 ? "Connessione in corso.." : "Disconnessione in corso..");
        QCOMPARE(window.dialog.ErrModem(), !done);
        QVERIFY(!window.dialog.Cancel());
        QVERIFY(!window.dialog.isVisible());
    }

    static void anyOtherActionDoesNothing()
    {
        Fixture window;
        window.dialog.SetAzione(2);

        window.dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window.dialog, kPatienceMs));
        QCoreApplication::processEvents(); // the action would start here

        QVERIFY(window.dialog.isVisible());
        QCOMPARE(window.Log(), "");
        QCOMPARE(window.Status(), "");
        QVERIFY(!window.dialog.ErrModem());
    }

    static void oneDialogServesManyActions()
    {
        Fixture window("+++: OK | ATH<0D>: OK");
        {
            MessageProbe message(Qt::Key_Return);
            window.Run(1); // the modem does not answer
            QVERIFY(window.dialog.ErrModem());
        }

        window.Run(0);

        QVERIFY(!window.dialog.ErrModem());
        QCOMPARE(window.line.port.Sent(), "ATz\r+++ATH\r");
    }

    static void barMovesAndTheButtonHasTheFocusWhileItWaits()
    {
        Fixture window;
        const auto& bar = SiteWindow::Part<QProgressBar>(window.dialog, "barAttivita");
        bool isMoving = false;
        const QWidget* focused = nullptr;
        window.line.pump.At(10, [&] {
            focused = window.dialog.focusWidget();
            isMoving = QTest::qWaitFor([&] { return bar.value() == 2; }, kPatienceMs);
            window.dialog.SetCancel(true);
        });

        window.Run(1);

        QVERIFY(isMoving);
        QCOMPARE(focused, &window.Button());
    }

    static void cancellingACallShowsNothing_data()
    {
        QTest::addColumn<CancelWay>("cancel");
        QTest::newRow("button") << CancelWay(
            [](Fixture& f) { QTest::mouseClick(&f.Button(), Qt::LeftButton); });
        QTest::newRow("Escape") << CancelWay(
            [](Fixture& f) { QTest::keyClick(&f.Button(), Qt::Key_Escape); });
        QTest::newRow("space") << CancelWay([](Fixture& f) { QTest::keyClick(&f.Button(), Qt::Key_Space); });
        QTest::newRow("Enter") << CancelWay([](Fixture& f) { QTest::keyClick(&f.Button(), Qt::Key_Return); });
        QTest::newRow("frame") << CancelWay([](Fixture& f) { f.dialog.close(); });
    }

    static void cancellingACallShowsNothing()
    {
        QFETCH(const CancelWay, cancel);
        Fixture window("ATz<0D>: OK | AT<0D>: OK");
        bool isVisible = false;
        window.line.pump.At(60000, [&] {
            cancel(window);
            isVisible = window.dialog.isVisible(); // until the wait has ended
            QVERIFY(window.dialog.Cancel());
        });

        window.Run(1);

        QVERIFY2(window.Log().endsWith("0 Output ATDP0123<0D> | 60000 ClearInput"), qPrintable(window.Log()));
        QVERIFY(isVisible);
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel());
        QVERIFY(!window.dialog.isVisible());
        QVERIFY(window.line.port.IsOpen());
    }

    // Cancelled after the dialog is shown and before the action starts.
    static void cancelBeforeTheFirstWaitCounts()
    {
        Fixture window;
        window.dialog.SetCancel(true);

        window.Run(1);

        QCOMPARE(window.Log(), "0 ClearInput | 0 Output ATz<0D> | 0 ClearInput | 0 ClearInput");
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmConnessione_test> registered;
#include "frmConnessione_test.moc"
