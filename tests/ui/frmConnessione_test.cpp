#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/serial_line.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/buffer/frmConnessione.h"
#include "ui/widgets/texts.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <functional>
#include <initializer_list>

namespace corvrec
{

namespace
{

constexpr auto kNoConnection = "Impossibile connettersi. Il modem non risponde";
constexpr auto kNoDisconnection = "Impossibile disconnettersi. Il modem non risponde";

// The dialog over an open fake port.
struct Fixture {
    UnansweredBoxes unansweredBoxes;
    SerialLine line;
    frmConnessione dialog{line.wait, {.resetString = "z", .initString = "", .number = "0123", .pulse = true}};

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
    QProgressBar& Bar() { return SiteWindow::Part<QProgressBar>(dialog, "barAttivita"); }
    QString Status() { return Shown(SiteWindow::Part<QLabel>(dialog, "lblStato")); }

    QStringList Journal() const
    {
        QStringList journal;
        for (const std::string& entry : line.port.Journal())
            journal.append(QString::fromStdString(entry));
        return journal;
    }
};

using CancelWay = std::function<void(Fixture&)>;

void AddWaysToCancel()
{
    QTest::addColumn<CancelWay>("cancel");
    QTest::newRow("button") << CancelWay([](Fixture& f) { QTest::mouseClick(&f.Button(), Qt::LeftButton); });
    QTest::newRow("Escape") << CancelWay([](Fixture& f) { QTest::keyClick(&f.Button(), Qt::Key_Escape); });
    QTest::newRow("space") << CancelWay([](Fixture& f) { QTest::keyClick(&f.Button(), Qt::Key_Space); });
    QTest::newRow("Enter") << CancelWay([](Fixture& f) { QTest::keyClick(&f.Button(), Qt::Key_Return); });
    QTest::newRow("frame") << CancelWay([](Fixture& f) { f.dialog.close(); });
}

void ExpectMessage(MessageProbe& message, const QString& text, const QString& title)
{
    QCOMPARE(message.text(), text);
    QCOMPARE(message.title(), title);
    QCOMPARE(message.icon(), QMessageBox::Warning);
    QCOMPARE(message.buttons(), QStringList({"OK"}));
}

} // namespace

class frmConnessione_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

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

    static void connects()
    {
        Fixture window;
        window.line.pump.At(10, [&] { window.line.port.Receive("ok"); });
        window.line.pump.At(20, [&] { window.line.port.Receive("OK"); });
        window.line.pump.At(30, [&] { window.line.port.Receive("\r\nCONNECT"); });

        window.Run(1);

        QCOMPARE(window.Journal(),
                 QStringList({"0 ClearInput", "0 Output ATz<0D>", "10 ClearInput", "10 Output AT<0D>",
                              "20 ClearInput", "20 Output ATDP0123<0D>"}));
        QVERIFY(!window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel());
        QVERIFY(!window.dialog.isVisible());
    }

    static void disconnects()
    {
        Fixture window;
        window.line.pump.At(1000, [&] { window.line.port.Receive("OK"); });
        window.line.pump.At(1500, [&] { window.line.port.Receive("OK"); });

        window.Run(0);

        QCOMPARE(window.Journal(), QStringList({"0 Output +++", "1000 ClearInput", "1000 Output ATH<0D>"}));
        QVERIFY(!window.dialog.ErrModem());
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
        QCOMPARE(window.Journal(), QStringList());
        QCOMPARE(window.Status(), "");
        QVERIFY(!window.dialog.ErrModem());
    }

    static void statusNamesTheAction_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("status");
        QTest::newRow("connect") << 1 << "Connessione in corso..";
        QTest::newRow("disconnect") << 0 << "Disconnessione in corso..";
    }

    static void statusNamesTheAction()
    {
        QFETCH(const int, action);
        QFETCH(const QString, status);
        Fixture window;
        QString shown;
        bool isVisible = false;
        window.line.pump.At(100, [&] {
            shown = window.Status();
            isVisible = window.dialog.isVisible();
        });
        MessageProbe message(Qt::Key_Return);

        window.Run(action);

        QCOMPARE(shown, status);
        QVERIFY(isVisible);
    }

    static void oneDialogServesManyActions()
    {
        Fixture window;
        window.line.port.Answer("+++", "OK");
        window.line.port.Answer("ATH\r", "OK");
        {
            MessageProbe message(Qt::Key_Return);
            window.Run(1); // the modem does not answer
            QVERIFY(window.dialog.ErrModem());
        }

        window.Run(0);

        QVERIFY(!window.dialog.ErrModem());
        QCOMPARE(window.Journal().last(), "3001 Output ATH<0D>");
    }

    static void buttonHasTheFocus()
    {
        Fixture window;
        const QWidget* focused = nullptr;
        window.line.pump.At(10, [&] {
            focused = window.dialog.focusWidget();
            window.dialog.SetCancel(true);
        });

        window.Run(1);

        QCOMPARE(focused, &window.Button());
    }

    static void barMovesWhileItWaits()
    {
        Fixture window;
        bool isMoving = false;
        window.line.pump.At(10, [&] {
            isMoving = QTest::qWaitFor([&] { return window.Bar().value() == 2; }, kPatienceMs);
            window.dialog.SetCancel(true);
        });

        window.Run(1);

        QVERIFY(isMoving);
    }

    static void silenceIsReportedAtEachStep_data()
    {
        QTest::addColumn<int>("answers");
        QTest::addColumn<QString>("last");
        QTest::newRow("reset") << 0 << "3001 ClearInput";
        QTest::newRow("initialisation") << 1 << "3001 ClearInput";
        QTest::newRow("call") << 2 << "120001 ClearInput";
    }

    static void silenceIsReportedAtEachStep()
    {
        QFETCH(const int, answers);
        QFETCH(const QString, last);
        Fixture window;
        if (answers >= 1)
            window.line.port.Answer("ATz\r", "OK");
        if (answers >= 2)
            window.line.port.Answer("AT\r", "OK");
        MessageProbe message(Qt::Key_Return, [&] { QVERIFY(window.dialog.isVisible()); });

        window.Run(1);

        ExpectMessage(message, kNoConnection, "Connessione");
        QCOMPARE(window.Journal().last(), last);
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.isVisible());
        QVERIFY(window.line.port.IsOpen());
    }

    static void silenceOfADisconnectionIsReported()
    {
        Fixture window;
        MessageProbe message(Qt::Key_Return);

        window.Run(0);

        ExpectMessage(message, kNoDisconnection, "Disconnessione");
        QCOMPARE(window.line.port.Sent(), "+++");
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.isVisible());
        QVERIFY(window.line.port.IsOpen());
    }

    static void inputDuringAMessageIsDiscarded()
    {
        Fixture window;
        MessageProbe message(Qt::Key_Return, [&] { window.line.port.Receive("OK"); });

        window.Run(1);

        QCOMPARE(window.line.port.Waiting(), "");
    }

    static void lostPortCountsAsSilence_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("title");
        QTest::newRow("connect") << 1 << kNoConnection << "Connessione";
        QTest::newRow("disconnect") << 0 << kNoDisconnection << "Disconnessione";
    }

    static void lostPortCountsAsSilence()
    {
        QFETCH(const int, action);
        QFETCH(const QString, text);
        QFETCH(const QString, title);
        Fixture window;
        window.line.pump.At(400, [&] { window.line.port.Lose(); });
        MessageProbe message(Qt::Key_Return);

        window.Run(action);

        ExpectMessage(message, text, title);
        QCOMPARE(window.Journal().last(), "400 ClearInput");
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.isVisible());
    }

    static void portLostWhileItIsCancelledLeavesNoFlag()
    {
        Fixture window;
        window.line.pump.At(400, [&] {
            QTest::mouseClick(&window.Button(), Qt::LeftButton);
            window.line.port.Lose();
        });
        MessageProbe message(Qt::Key_Return);

        window.Run(1);

        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel()); // otherwise the next request would end as cancelled
    }

    static void cancellingACallShowsNothing_data() { AddWaysToCancel(); }

    static void cancellingACallShowsNothing()
    {
        QFETCH(const CancelWay, cancel);
        Fixture window;
        window.line.port.Answer("ATz\r", "OK");
        window.line.port.Answer("AT\r", "OK");
        window.line.pump.At(60000, [&] { cancel(window); });

        window.Run(1);

        QCOMPARE(window.Journal().mid(5), QStringList({"0 Output ATDP0123<0D>", "60000 ClearInput"}));
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel());
        QVERIFY(!window.dialog.isVisible());
        QVERIFY(window.line.port.IsOpen());
    }

    static void dialogStaysUntilTheWaitHasEnded()
    {
        Fixture window;
        bool isVisible = false;
        bool isCancelled = false;
        window.line.pump.At(60, [&] {
            window.dialog.close();
            isVisible = window.dialog.isVisible();
            isCancelled = window.dialog.Cancel();
        });

        window.Run(1);

        QVERIFY(isVisible);
        QVERIFY(isCancelled);
        QVERIFY(!window.dialog.isVisible());
    }

    static void cancellingADisconnectionIsReported()
    {
        Fixture window;
        window.line.pump.At(60, [&] { QTest::mouseClick(&window.Button(), Qt::LeftButton); });
        MessageProbe message(Qt::Key_Return);

        window.Run(0);

        ExpectMessage(message, kNoDisconnection, "Disconnessione");
        QCOMPARE(window.line.port.Sent(), "+++");
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel());
    }

    // Cancelled after the dialog is shown and before the action starts.
    static void cancelBeforeTheFirstWaitCounts()
    {
        Fixture window;
        window.dialog.SetCancel(true);

        window.Run(1);

        QCOMPARE(window.Journal(),
                 QStringList({"0 ClearInput", "0 Output ATz<0D>", "0 ClearInput", "0 ClearInput"}));
        QVERIFY(window.dialog.ErrModem());
        QVERIFY(!window.dialog.Cancel());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmConnessione_test> registered;
#include "frmConnessione_test.moc"
