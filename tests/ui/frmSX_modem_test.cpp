// The status button of the buffer window, for a device reached by modem.
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

constexpr auto kNoModem = "Impossibile connettersi. Il modem non risponde";

const QStringList kAllButtons{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"};
const QStringList kBothWindows{"frmSX", "frmConnessione"};

constexpr std::string_view kReply = "\x02"
                                    "0262144*";

} // namespace

class frmSX_modem_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void dialsAndThenAsks()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.DeviceReplies(kReply);
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Journal(),
                 QStringList({"0 Close", "0 Open",                                 //
                              "0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput", //
                              "0 Output ATX3<0D>", "0 ClearInput",                 //
                              "0 Output ATDT0123<0D>",                             //
                              "0 ClearInput", "0 Output <13>", "0 ClearInput",     //
                              "0 Output <02>", "0 Output <13>", "0 ClearInput", "0 ClearOutput"}));
        QCOMPARE(window.Shows("lblMemoria"), "0262144");
        QVERIFY(!window.Dialog().isVisible());
        QVERIFY(!window.Dialog().ErrModem());
        QVERIFY(window.Port().IsOpen());
    }

    static void silentDeviceHasAShorterTimeByModem()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.Open();
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(window.Journal().mid(8),
                 QStringList({"0 ClearInput", "0 Output <13>", "30001 ClearInput", "30001 Output <02>",
                              "40002 Output <13>", "50003 ClearInput", "50003 ClearOutput"}));
        QCOMPARE(message.text(), "Impossibile ricevere lo stato del buffer. Verificare che il buffer sia "
                                 "collegato correttamente.");
        QVERIFY(window.Port().IsOpen());
    }

    static void buttonsAndPointerWhileItDials()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(100, [&] {
            QVERIFY(window.Dialog().isVisible());
            QVERIFY(window.Dialog().isModal());
            QCOMPARE(window.Enabled(), QStringList());
            QCOMPARE(window.Busy(), kBothWindows);
            window.ModemConnects();
            window.DeviceReplies(kReply);
            window.Port().Receive("OK");
        });

        window.Click("cmdStato");

        QCOMPARE(window.Shows("lblMemoria"), "0262144");
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void secondPressUsesTheHeldLink()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.DeviceReplies(kReply);
        window.Open();
        window.Click("cmdStato");
        window.Port().ForgetJournal();
        window.DeviceReplies("\x02"
                             "0262145*");

        window.Click("cmdStato");

        QCOMPARE(window.Journal(),
                 QStringList({"0 ClearInput", "0 Output <13>", "0 ClearInput", "0 Output <02>",
                              "0 Output <13>", "0 ClearInput", "0 ClearOutput"}));
        QCOMPARE(window.Shows("lblMemoria"), "0262145");
    }

    static void lostCarrierIsDialledAgain()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.DeviceReplies(kReply);
        window.Open();
        window.Click("cmdStato");
        window.Port().ForgetJournal();
        window.ModemConnects();
        window.DeviceReplies("\x02"
                             "0262145*");
        window.Port().SetCarrier(false);

        window.Click("cmdStato");

        QCOMPARE(window.Journal().mid(0, 8),
                 QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output AT&F<0D>", "0 ClearInput",
                              "0 Output ATX3<0D>", "0 ClearInput", "0 Output ATDT0123<0D>"}));
        QCOMPARE(window.Shows("lblMemoria"), "0262145");
    }

    static void silentModemIsReported()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        MessageProbe message(Qt::Key_Return); // only one: the request is skipped

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoModem);
        QCOMPARE(message.title(), "Connessione");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(window.Port().Sent(), "AT&F\r");
        QCOMPARE(window.Journal().mid(window.Journal().size() - 3),
                 QStringList({"3001 Close", "3001 ClearInput", "3001 ClearOutput"}));
        QVERIFY(!window.Port().IsOpen());
        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void refusedCallIsReported()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Port().Answer("AT&F\r", "OK");
        window.Port().Answer("ATX3\r", "OK");
        window.Port().Answer("ATDT0123\r", "BUSY\r\n");
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoModem);
        QCOMPARE(window.Port().Sent(), "AT&F\rATX3\rATDT0123\r");
        QCOMPARE(window.Journal().last(), "120001 ClearOutput");
    }

    static void portThatCannotBeOpenedIsASilentModem()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Port().RefuseOpen(true);
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoModem);
        QCOMPARE(message.title(), "Connessione");
        QCOMPARE(window.Port().Sent(), "");
        QCOMPARE(window.Journal().last(), "0 ClearOutput"); // at once
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void lostPortIsASilentModem()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(500, [&] { window.Port().Lose(); });
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoModem);
        QCOMPARE(window.Journal().last(), "500 ClearOutput");
        QVERIFY(window.Dialog().ErrModem());
    }

    static void nextPressAfterAFailureDialsAgain()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        {
            MessageProbe message(Qt::Key_Return);
            window.Click("cmdStato");
        }
        window.Port().ForgetJournal();
        window.Script().At(3100, [&] {
            QVERIFY(!window.Dialog().ErrModem());
            window.Port().Receive("OK");
        });
        window.Port().Answer("ATX3\r", "OK");
        window.Port().Answer("ATDT0123\r", "CONNECT");
        window.DeviceReplies(kReply);

        window.Click("cmdStato");

        QCOMPARE(window.Journal().mid(0, 4),
                 QStringList({"3001 Close", "3001 Open", "3001 ClearInput", "3001 Output AT&F<0D>"}));
        QCOMPARE(window.Shows("lblMemoria"), "0262144");
    }

    static void cancelledCallShowsNothing()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(700, [&] {
            QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.Dialog(), "cmdAnnulla"), Qt::LeftButton);
        });

        window.Click("cmdStato");

        QCOMPARE(window.Journal(),
                 QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output AT&F<0D>", "700 ClearInput",
                              "700 ClearInput", "700 Close", "700 ClearInput", "700 ClearOutput"}));
        QVERIFY(!window.Dialog().isVisible());
        QVERIFY(window.Dialog().ErrModem());
        QVERIFY(!window.Dialog().Cancel());
        QVERIFY(window.Window().isVisible());
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void cancelledCallDoesNotAffectTheNext()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(700, [&] { window.Dialog().SetCancel(true); });
        window.Click("cmdStato");
        window.ModemConnects();
        window.DeviceReplies(kReply);

        window.Click("cmdStato");

        QCOMPARE(window.Shows("lblMemoria"), "0262144");
        QVERIFY(!window.Dialog().ErrModem());
    }

    static void lineLostDuringTheRequestIsAnEmptyReply()
    {
        BufferWindow window(Reached::byModem);
        window.ModemConnects();
        window.Open();
        window.Script().At(500, [&] { window.Port().Lose(); });
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), "Impossibile ricevere lo stato del buffer. Verificare che il buffer sia "
                                 "collegato correttamente.");
        QCOMPARE(window.Enabled(), kAllButtons);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_modem_test> registered;
#include "frmSX_modem_test.moc"
