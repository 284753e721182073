// The clock button of the buffer window.
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QTest>

#include <cstdint>
#include <vector>

namespace corvrec
{

namespace
{

constexpr auto kApplication = "Configurazione Corvane Recorder";

const QStringList kAllButtons{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"};
const QStringList kBothWindows{"frmSX", "frmConnessione"};

} // namespace

class frmSX_clock_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void sendsTheDigitsWithTheirPauses()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setText("31/12/26");
        window.Field("mskOra").setText("09:05");

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Journal(),
                 QStringList({"0 Close", "0 Open", "0 Output <0F>", "0 Output 0", "20 Output 9",
                              "40 Output 0", "60 Output 5", "80 Output 3", "100 Output 1", "120 Output 1",
                              "140 Output 2", "160 Output 2", "180 Output 6", "200 WaitUntilSent 1000",
                              "200 ClearInput", "200 ClearOutput"}));
        QCOMPARE(window.Time().Sleeps(), std::vector<std::int64_t>(10, 20));
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void sendsWhatWasTyped()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setFocus();
        QTest::keyClicks(&window.Field("mskData"), "280227"); // replaces the selection

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), "\x0F"
                                       "1020280227");
    }

    static void leavesThePortOpen()
    {
        BufferWindow window;
        window.Open();
        window.Click("cmdImpostaDataOra");
        QVERIFY(window.Port().IsOpen());
        window.Port().ForgetJournal();

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Journal().first(), "200 Output <0F>");
    }

    static void wrongDatesAreRefused_data()
    {
        QTest::addColumn<QString>("date");
        for (const char* const date :
             {"31/02/26", "29/02/27", "00/01/26", "13/13/26", "__/__/__", "1_/03/26"})
            QTest::newRow(date) << date;
    }

    static void wrongDatesAreRefused()
    {
        QFETCH(const QString, date);
        BufferWindow window;
        window.Open();
        window.Field("mskData").setText(date);
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(message.text(), "La data inserita non e' valida.");
        QCOMPARE(message.title(), kApplication);
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(window.Focus(), "mskData");
        QCOMPARE(window.Field("mskData").text(), date);
        QCOMPARE(window.Journal(), QStringList());
    }

    static void wrongDateIsReplacedByTyping_data()
    {
        QTest::addColumn<bool>("byMnemonic");
        QTest::newRow("the button had the focus") << false;
        QTest::newRow("the date had the focus") << true;
    }

    static void wrongDateIsReplacedByTyping()
    {
        QFETCH(const bool, byMnemonic);
        BufferWindow window;
        window.Open();
        window.Field("mskData").setFocus();
        QTest::keyClicks(&window.Field("mskData"), "3102");
        MessageProbe message(Qt::Key_Return);
        if (byMnemonic)
            QTest::keyClick(&window.Field("mskData"), Qt::Key_I, Qt::AltModifier);
        else
            window.Click("cmdImpostaDataOra");
        QCOMPARE(message.text(), "La data inserita non e' valida.");
        BringToFront(window.Window());
        QCOMPARE(window.Field("mskData").selectedText(), "31/02/__");

        QTest::keyClicks(&window.Field("mskData"), "280227");

        QCOMPARE(window.Field("mskData").text(), "28/02/27");
    }

    static void wrongTimesAreRefused_data()
    {
        QTest::addColumn<QString>("time");
        for (const char* const time : {"24:00", "10:60", "__:__", "10:2_"})
            QTest::newRow(time) << time;
    }

    static void wrongTimesAreRefused()
    {
        QFETCH(const QString, time);
        BufferWindow window;
        window.Open();
        window.Field("mskOra").setText(time);
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(message.text(), "L' ora inserita non e' valida.");
        QCOMPARE(message.title(), kApplication);
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(window.Focus(), "mskOra");
        QCOMPARE(window.Field("mskOra").text(), time);
        QCOMPARE(window.Journal(), QStringList());
    }

    static void dateIsCheckedFirst()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setText("31/02/26");
        window.Field("mskOra").setText("24:00");
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(message.text(), "La data inserita non e' valida.");
    }

    static void portThatCannotBeOpenedIsReported_data()
    {
        QTest::addColumn<Reached>("reached");
        QTest::newRow("direct") << Reached::direct;
        QTest::newRow("by modem") << Reached::byModem;
    }

    // Unlike the status, which reports nothing. Nothing is dialled either.
    static void portThatCannotBeOpenedIsReported()
    {
        QFETCH(const Reached, reached);
        BufferWindow window(reached);
        window.Open();
        window.Port().RefuseOpen(true);
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(message.text(), "Impossibile aprire Com2");
        QCOMPARE(message.title(), "Errore");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(window.Journal(), QStringList({"0 Close", "0 Open"}));
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void portLostMeanwhileIsReported()
    {
        BufferWindow window;
        window.Open();
        window.Time().SetDuringSleep([&window] { window.Port().Lose(); });
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(message.text(), "Impossibile aprire Com2");
        QCOMPARE(window.Port().Sent(), "\x0F"
                                       "1");
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void nextPressTriesToOpenAgain()
    {
        BufferWindow window;
        window.Open();
        window.Port().RefuseOpen(true);
        {
            MessageProbe message(Qt::Key_Return);
            window.Click("cmdImpostaDataOra");
        }
        window.Port().RefuseOpen(false);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), "\x0F"
                                       "1020030326");
    }

    static void dialsFirst()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.Open();

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), "AT&F\rATX3\rATDT0123\r\x0F"
                                       "1020030326");
        QCOMPARE(window.Journal().mid(0, 3), QStringList({"0 Close", "0 Open", "0 ClearInput"}));
        QCOMPARE(window.Journal().last(), "200 ClearOutput");
        QVERIFY(!window.Dialog().isVisible());
    }

    static void buttonsStayEnabledWhileItDials()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(100, [&] {
            QCOMPARE(window.Enabled(), kAllButtons);
            QCOMPARE(window.Busy(), kBothWindows);
            window.ModemConnects();
            window.Port().Receive("OK");
        });

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), "AT&F\rATX3\rATDT0123\r\x0F"
                                       "1020030326");
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void secondRequestMeanwhileIsRefused()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(100, [&] {
            window.Click("cmdStato");
            window.Click("cmdImpostaDataOra");
            QCOMPARE(window.Port().Sent(), "AT&F\r");
            window.ModemConnects();
            window.Port().Receive("OK");
        });

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), "AT&F\rATX3\rATDT0123\r\x0F"
                                       "1020030326");
    }

    static void usesTheLinkOfAStatus()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.DeviceReplies("status*");
        window.Open();
        window.Click("cmdStato");
        window.Port().ForgetJournal();

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Journal().first(), "0 Output <0F>");
    }

    static void lostCarrierIsDialledAgain()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.Open();
        window.Click("cmdImpostaDataOra");
        window.Port().ForgetJournal();
        window.ModemConnects();
        window.Port().SetCarrier(false);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Journal().mid(0, 4),
                 QStringList({"200 Close", "200 Open", "200 ClearInput", "200 Output AT&F<0D>"}));
        QCOMPARE(window.Journal().last(), "400 ClearOutput");
    }

    static void silentModemIsReportedAndNothingIsSent()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdImpostaDataOra");

        QCOMPARE(message.text(), "Impossibile connettersi. Il modem non risponde");
        QCOMPARE(message.title(), "Connessione");
        QCOMPARE(window.Port().Sent(), "AT&F\r");
        QVERIFY(!window.Port().IsOpen());
        QCOMPARE(window.Busy(), QStringList());
    }

    static void cancelledCallSendsNothing()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(700, [&] { QTest::keyClick(window.Dialog().focusWidget(), Qt::Key_Escape); });

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), "AT&F\r");
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(window.Window().isVisible());
        QVERIFY(!window.Dialog().Cancel());
        QCOMPARE(window.Busy(), QStringList());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_clock_test> registered;
#include "frmSX_clock_test.moc"
