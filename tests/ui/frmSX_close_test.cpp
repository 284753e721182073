// Leaving the buffer window: by its button, by Escape, by the frame, at the end of the session.
#include "tests/support/buffer_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"

#include <QLabel>
#include <QTest>

namespace corvrec
{

namespace
{

constexpr std::string_view kReply = "\x02"
                                    "0262144*";

enum class Way { button, escape, frame, logOff };

void Leave(BufferWindow& window, Way way)
{
    switch (way) {
    case Way::button:
        window.Click("cmdChiudi");
        break;
    case Way::escape:
        window.Press(Qt::Key_Escape);
        break;
    case Way::frame:
        window.Window().close();
        break;
    case Way::logOff:
        BufferWindow::LogOff();
        break;
    }
}

void AddWays()
{
    QTest::addColumn<Way>("way");
    QTest::newRow("button") << Way::button;
    QTest::newRow("Escape") << Way::escape;
    QTest::newRow("frame") << Way::frame;
    QTest::newRow("log off") << Way::logOff;
}

// Connects to the remote site and starts a new journal.
void Connect(BufferWindow& window)
{
    window.ModemConnects();
    window.DeviceReplies(kReply);
    window.Click("cmdStato");
    window.Port().ForgetJournal();
}

} // namespace

class frmSX_close_test : public QObject
{
    Q_OBJECT

private slots:
    static void everyWayHangsUpAndCloses_data() { AddWays(); }

    static void everyWayHangsUpAndCloses()
    {
        QFETCH(const Way, way);
        BufferWindow unused(Reached::byModem);
        unused.Exec([&] { Leave(unused, way); });
        QCOMPARE(unused.Log(), "0 Close"); // no effect on a closed port

        BufferWindow direct;
        direct.DeviceReplies(kReply);
        direct.Exec([&] {
            direct.Click("cmdStato");
            direct.Port().ForgetJournal();
            Leave(direct, way);
        });
        QCOMPARE(direct.Log(), "0 Close");

        BufferWindow remote(Reached::byModem);
        remote.ModemHangsUp();
        remote.Exec([&] {
            Connect(remote);
            remote.Port().SetCarrier(false); // the modem may still be in a call
            Leave(remote, way);
        });
        QCOMPARE(remote.Log(), "0 Output +++ | 0 ClearInput | 0 Output ATH<0D> | 0 Close");
        QVERIFY(!remote.Dialog().ErrModem());

        for (BufferWindow* const window : {&unused, &direct, &remote}) {
            QVERIFY(!window->Window().isVisible());
            QVERIFY(!window->Port().IsOpen());
        }
    }

    static void hangingUpShowsTheModemDialog()
    {
        BufferWindow window(Reached::byModem);
        window.Script().At(100, [&] {
            QVERIFY(window.Dialog().isVisible());
            QVERIFY(window.Dialog().isModal());
            QCOMPARE(SiteWindow::Part<QLabel>(window.Dialog(), "lblStato").text(),
                     "Disconnessione in corso..");
            QVERIFY(window.Window().isVisible());
            QVERIFY(window.Port().IsOpen());
            window.Port().Answer("ATH\r", "OK");
            window.Port().Receive("OK");
        });

        window.Exec([&] {
            Connect(window);
            window.Click("cmdChiudi");
        });

        QCOMPARE(window.Log(), "0 Output +++ | 100 ClearInput | 100 Output ATH<0D> | 100 Close");
        QVERIFY(!window.Dialog().isVisible());
    }

    static void closedOrLostPortIsNotHungUp()
    {
        BufferWindow closed(Reached::byModem);
        closed.Exec([&] {
            closed.ClickAndRead("cmdStato"); // the modem does not answer
            closed.Port().ForgetJournal();
            closed.Click("cmdChiudi");
        });
        QCOMPARE(closed.Log(), "3001 Close");

        BufferWindow lost(Reached::byModem);
        lost.Exec([&] {
            Connect(lost);
            lost.Port().Lose();
            lost.Click("cmdChiudi");
        });
        QCOMPARE(lost.Log(), "0 Close");
        QVERIFY(!closed.Window().isVisible() && !lost.Window().isVisible());
    }

    static void failedHangUpIsReportedAndThePortClosed()
    {
        for (const bool isLoggedOff : {false, true}) {
            BufferWindow window(Reached::byModem);
            MessageProbe message(Qt::Key_Return);
            if (isLoggedOff)
                window.Script().At(300, [] { BufferWindow::LogOff(); });

            window.Exec([&] {
                Connect(window);
                window.Click("cmdChiudi");
            });

            QCOMPARE(message.text(), "Impossibile disconnettersi. Il modem non risponde");
            const QString end = isLoggedOff ? "300" : "10001";
            QCOMPARE(window.Log(),
                     "0 Output +++ | " + end + " ClearInput | " + end + " ClearInput | " + end + " Close");
            QVERIFY(!window.Port().IsOpen());
            QVERIFY(!window.Window().isVisible());
        }
    }

    static void leavingEndsARequest_data() { AddWays(); }

    static void leavingEndsARequest()
    {
        QFETCH(const Way, way);
        BufferWindow window;
        window.Script().At(500, [&] {
            Leave(window, way == Way::button ? Way::escape : way); // the button is disabled
            QVERIFY(window.Window().isVisible());                  // nothing closes while the wait runs
            QVERIFY(window.Port().IsOpen());
        });

        window.Exec([&] { window.Click("cmdStato"); });

        QVERIFY(!window.Window().isVisible());
        QCOMPARE(window.Log(), "0 Close | 0 Open | 0 ClearInput | 0 Output <13> | 500 ClearInput | "
                               "500 ClearInput | 500 ClearOutput | 500 Close");
        QCOMPARE(window.Busy(), QStringList());
        QVERIFY(!window.Dialog().Cancel());
    }

    // In the middle of the reply, whose rest comes at the same time and is not shown.
    static void leavingEndsTheStatusWaitToo()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.ModemHangsUp();
        window.Play("<13>: <13>");
        window.Script().At(500, [&] {
            window.Press(Qt::Key_Escape);
            window.Port().Receive("\x02"
                                  "0262144*\x13");
        });

        window.Exec([&] { window.Click("cmdStato"); });

        QCOMPARE(window.Shows("lblMemoria"), "");
        QVERIFY2(window.Log().endsWith("500 ClearOutput | 500 Output +++ | 500 ClearInput | "
                                       "500 Output ATH<0D> | 500 Close"),
                 qPrintable(window.Log()));
        QVERIFY(!window.Window().isVisible());
        QVERIFY(!window.Dialog().ErrModem());
    }

    static void logOffDuringAMessageClosesAfterIt()
    {
        BufferWindow window;
        bool isVisible = false;
        MessageProbe message(Qt::Key_Return, [&] {
            BufferWindow::LogOff();
            isVisible = window.Window().isVisible();
        });

        window.Exec([&] { window.Click("cmdStato"); }); // the device does not answer

        QVERIFY(isVisible);
        QVERIFY(!window.Window().isVisible());
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(!window.Dialog().Cancel());
    }

    static void logOffEndsACall()
    {
        for (const char* const button : {"cmdStato", "cmdImpostaDataOra"}) {
            BufferWindow window(Reached::byModem);
            window.Script().At(500, [] { BufferWindow::LogOff(); });

            window.Exec([&] { window.Click(button); });

            QCOMPARE(window.Port().Sent(), "AT&F\r");
            QVERIFY(!window.Port().IsOpen());
            QVERIFY(!window.Window().isVisible());
            QVERIFY(!window.Dialog().isVisible());
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_close_test> registered;
#include "frmSX_close_test.moc"
