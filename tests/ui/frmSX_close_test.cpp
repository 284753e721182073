// Leaving the buffer window: by its button, by Escape, by the frame, at the end of the session.
#include "tests/support/buffer_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QLabel>
#include <QTest>

namespace corvrec
{

namespace
{

constexpr auto kNoHangUp = "Impossibile disconnettersi. Il modem non risponde";
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

void AddWays(std::initializer_list<Way> ways)
{
    QTest::addColumn<Way>("way");
    for (const Way way : ways) {
        switch (way) {
        case Way::button:
            QTest::newRow("button") << way;
            break;
        case Way::escape:
            QTest::newRow("Escape") << way;
            break;
        case Way::frame:
            QTest::newRow("frame") << way;
            break;
        case Way::logOff:
            QTest::newRow("log off") << way;
            break;
        }
    }
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
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void unusedPortIsOnlyClosed_data()
    {
        AddWays({Way::button, Way::escape, Way::frame, Way::logOff});
    }

    static void unusedPortIsOnlyClosed()
    {
        QFETCH(const Way, way);
        BufferWindow window(Reached::byModem);

        window.Exec([&] { Leave(window, way); });

        QVERIFY(!window.Window().isVisible());
        QCOMPARE(window.Journal(), QStringList({"0 Close"})); // no effect on a closed port
    }

    static void directSiteClosesThePort_data()
    {
        AddWays({Way::button, Way::escape, Way::frame, Way::logOff});
    }

    static void directSiteClosesThePort()
    {
        QFETCH(const Way, way);
        BufferWindow window;
        window.DeviceReplies(kReply);

        window.Exec([&] {
            window.Click("cmdStato");
            window.Port().ForgetJournal();
            Leave(window, way);
        });

        QVERIFY(!window.Window().isVisible());
        QCOMPARE(window.Journal(), QStringList({"0 Close"}));
        QVERIFY(!window.Port().IsOpen());
    }

    static void remoteSiteHangsUpFirst_data()
    {
        AddWays({Way::button, Way::escape, Way::frame, Way::logOff});
    }

    static void remoteSiteHangsUpFirst()
    {
        QFETCH(const Way, way);
        BufferWindow window(Reached::byModem);
        window.ModemHangsUp();

        window.Exec([&] {
            Connect(window);
            Leave(window, way);
        });

        QVERIFY(!window.Window().isVisible());
        QCOMPARE(window.Journal(),
                 QStringList({"0 Output +++", "0 ClearInput", "0 Output ATH<0D>", "0 Close"}));
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(!window.Dialog().ErrModem());
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

        QCOMPARE(window.Journal(),
                 QStringList({"0 Output +++", "100 ClearInput", "100 Output ATH<0D>", "100 Close"}));
        QVERIFY(!window.Dialog().isVisible());
    }

    static void noDialogueOverAClosedPort()
    {
        BufferWindow window(Reached::byModem);

        window.Exec([&] {
            {
                MessageProbe message(Qt::Key_Return);
                window.Click("cmdStato"); // the modem does not answer
            }
            window.Port().ForgetJournal();
            window.Click("cmdChiudi");
        });

        QCOMPARE(window.Journal(), QStringList({"3001 Close"}));
        QVERIFY(!window.Window().isVisible());
    }

    static void lostPortIsNotHungUp()
    {
        BufferWindow window(Reached::byModem);

        window.Exec([&] {
            Connect(window);
            window.Port().Lose();
            window.Click("cmdChiudi");
        });

        QCOMPARE(window.Journal(), QStringList({"0 Close"}));
    }

    // The modem may still be in a call, although the carrier line does not show it.
    static void lostCarrierIsHungUpAnyway()
    {
        BufferWindow window(Reached::byModem);
        window.ModemHangsUp();

        window.Exec([&] {
            Connect(window);
            window.Port().SetCarrier(false);
            window.Click("cmdChiudi");
        });

        QCOMPARE(window.Journal(),
                 QStringList({"0 Output +++", "0 ClearInput", "0 Output ATH<0D>", "0 Close"}));
    }

    static void silentModemIsReportedAndThePortClosed()
    {
        BufferWindow window(Reached::byModem);
        MessageProbe message(Qt::Key_Return);

        window.Exec([&] {
            Connect(window);
            window.Click("cmdChiudi");
        });

        QCOMPARE(message.text(), kNoHangUp);
        QCOMPARE(message.title(), "Disconnessione");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(window.Journal(),
                 QStringList({"0 Output +++", "10001 ClearInput", "10001 ClearInput", "10001 Close"}));
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(!window.Window().isVisible());
    }

    static void modemThatOnlyEscapesIsReportedAndThePortClosed()
    {
        BufferWindow window(Reached::byModem);
        MessageProbe message(Qt::Key_Return);
        window.Port().Answer("+++", "OK");

        window.Exec([&] {
            Connect(window);
            window.Click("cmdChiudi");
        });

        QCOMPARE(message.text(), kNoHangUp);
        QCOMPARE(window.Journal(), QStringList({"0 Output +++", "0 ClearInput", "0 Output ATH<0D>",
                                                "6001 ClearInput", "6001 Close"}));
        QVERIFY(!window.Window().isVisible());
    }

    // Unlike a cancelled call, because the modem may still be in the call.
    static void cancelledHangUpIsReportedAndThePortClosed()
    {
        BufferWindow window(Reached::byModem);
        MessageProbe message(Qt::Key_Return);
        window.Script().At(300, [&] { QTest::keyClick(window.Dialog().focusWidget(), Qt::Key_Escape); });

        window.Exec([&] {
            Connect(window);
            window.Click("cmdChiudi");
        });

        QCOMPARE(message.text(), kNoHangUp);
        QCOMPARE(window.Journal().last(), "300 Close");
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(!window.Window().isVisible());
    }

    static void logOffEndsAHangUp()
    {
        BufferWindow window(Reached::byModem);
        MessageProbe message(Qt::Key_Return);
        window.Script().At(300, [] { BufferWindow::LogOff(); });

        window.Exec([&] {
            Connect(window);
            window.Click("cmdChiudi");
        });

        QCOMPARE(window.Journal().last(), "300 Close");
        QVERIFY(!window.Window().isVisible());
    }

    static void leavingEndsARequest_data()
    {
        AddWays({Way::escape, Way::frame, Way::logOff}); // the button is disabled
    }

    static void leavingEndsARequest()
    {
        QFETCH(const Way, way);
        BufferWindow window;
        window.Script().At(500, [&] {
            Leave(window, way);
            QVERIFY(window.Window().isVisible()); // nothing closes while the wait runs
            QVERIFY(window.Port().IsOpen());
        });

        window.Exec([&] { window.Click("cmdStato"); });

        QVERIFY(!window.Window().isVisible());
        QCOMPARE(window.Journal(),
                 QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output <13>", "500 ClearInput",
                              "500 ClearInput", "500 ClearOutput", "500 Close"}));
        QCOMPARE(window.Busy(), QStringList());
        QVERIFY(!window.Dialog().Cancel());
    }

    static void leavingEndsTheStatusWaitToo()
    {
        BufferWindow window;
        window.Port().Answer("\x13", "\x13");
        window.Script().At(500, [&] { window.Press(Qt::Key_Escape); });

        window.Exec([&] { window.Click("cmdStato"); });

        QVERIFY(!window.Window().isVisible());
        QCOMPARE(window.Journal().last(), "500 Close");
    }

    static void leavingDuringARequestByModemHangsUp()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.ModemHangsUp();
        window.Script().At(500, [&] { window.Press(Qt::Key_Escape); });

        window.Exec([&] { window.Click("cmdStato"); });

        QCOMPARE(window.Journal().mid(9),
                 QStringList({"0 Output <13>", "500 ClearInput", "500 ClearInput", "500 ClearOutput",
                              "500 Output +++", "500 ClearInput", "500 Output ATH<0D>", "500 Close"}));
        QVERIFY(!window.Window().isVisible());
        QVERIFY(!window.Dialog().ErrModem());
    }

    static void replyThatComesWhileLeavingIsNotShown()
    {
        BufferWindow window;
        window.Port().Answer("\x13", "\x13");
        window.Script().At(500, [&] {
            window.Press(Qt::Key_Escape);
            window.Port().Receive("\x02"
                                  "0262144*\x13");
        });

        window.Exec([&] { window.Click("cmdStato"); });

        QCOMPARE(window.Shows("lblMemoria"), "");
        QCOMPARE(window.Journal().last(), "500 Close");
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

    static void logOffEndsACall_data()
    {
        QTest::addColumn<QString>("button");
        QTest::newRow("status") << "cmdStato";
        QTest::newRow("clock") << "cmdImpostaDataOra";
    }

    static void logOffEndsACall()
    {
        QFETCH(const QString, button);
        BufferWindow window(Reached::byModem);
        window.Script().At(500, [] { BufferWindow::LogOff(); });

        window.Exec([&] { window.Click(qPrintable(button)); });

        QCOMPARE(window.Port().Sent(), "AT&F\r");
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(!window.Window().isVisible());
        QVERIFY(!window.Dialog().isVisible());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_close_test> registered;
#include "frmSX_close_test.moc"
