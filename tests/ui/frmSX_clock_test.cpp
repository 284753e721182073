// The clock button of the buffer window.
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"

#include <QTest>

#include <cstdint>
#include <vector>

namespace corvrec
{

namespace
{

const QStringList kAllButtons{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"};
const QStringList kBothWindows{"frmSX", "frmConnessione"};

// The command for the window's first date and time.
const std::string kCommand = "\x0F"
                             "1020030326";
const std::string kCall = "AT&F\rATX3\rATDT0123\r";

} // namespace

class frmSX_clock_test : public QObject
{
    Q_OBJECT

private slots:
    static void sendsTheDigitsWithTheirPauses()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setFocus();
        QTest::keyClicks(&window.Field("mskData"), "311226"); // replaces the selection
        window.Field("mskOra").setText("09:05");

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Log(), "0 Close | 0 Open | 0 Output <0F> | 0 Output 0 | 20 Output 9 | 40 Output 0 | "
                               "60 Output 5 | 80 Output 3 | 100 Output 1 | 120 Output 1 | 140 Output 2 | "
                               "160 Output 2 | 180 Output 6 | 200 WaitUntilSent 1000 | 200 ClearInput | "
                               "200 ClearOutput");
        QCOMPARE(window.Time().Sleeps(), std::vector<std::int64_t>(10, 20));
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());

        window.Port().ForgetJournal();
        window.Click("cmdImpostaDataOra");
        QCOMPARE(window.Journal().first(), "200 Output <0F>"); // the port has stayed open
    }

    static void wrongMomentsAreRefused_data()
    {
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("time");
        for (const char* const date :
             {"31/02/26", "29/02/27", "00/01/26", "13/13/26", "__/__/__", "1_/03/26"})
            QTest::newRow(date) << date << "10:20";
        for (const char* const time : {"24:00", "10:60", "__:__", "10:2_"})
            QTest::newRow(time) << "03/03/26" << time;
        QTest::newRow("the date is checked first") << "31/02/26"
                                                   << "24:00";
    }

    static void wrongMomentsAreRefused()
    {
        QFETCH(const QString, date);
        QFETCH(const QString, time);
        const bool isDate = date != "03/03/26";
        BufferWindow window;
        window.Open();
        window.Field("mskData").setText(date);
        window.Field("mskOra").setText(time);

        QCOMPARE(window.ClickAndRead("cmdImpostaDataOra"),
                 isDate ? "Configurazione Corvane Recorder: La data inserita non e' valida."
                        : "Configurazione Corvane Recorder: L' ora inserita non e' valida.");

        QCOMPARE(window.Focus(), isDate ? "mskData" : "mskOra");
        QCOMPARE(window.Field("mskData").text(), date);
        QCOMPARE(window.Field("mskOra").text(), time);
        QCOMPARE(window.Journal(), QStringList());
    }

    // Whether the button or the date had the focus.
    static void wrongDateIsReplacedByTyping()
    {
        for (const bool byMnemonic : {false, true}) {
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
    }

    // Unlike the status, which reports nothing. Nothing is dialled either.
    static void portThatCannotBeOpenedIsReported()
    {
        for (const Reached reached : {Reached::direct, Reached::byModem}) {
            BufferWindow window(reached);
            window.Open();
            window.Port().RefuseOpen(true);

            QCOMPARE(window.ClickAndRead("cmdImpostaDataOra"), "Errore: Impossibile aprire Com2");

            QCOMPARE(window.Log(), "0 Close | 0 Open");
            QCOMPARE(window.Enabled(), kAllButtons);
            QCOMPARE(window.Busy(), QStringList());

            window.Port().RefuseOpen(false);
            window.ModemConnects();
            window.Click("cmdImpostaDataOra");
            QCOMPARE(window.Port().Sent(), reached == Reached::direct ? kCommand : kCall + kCommand);
        }
    }

    static void portLostMeanwhileIsReported()
    {
        BufferWindow window;
        window.Open();
        window.Time().SetDuringSleep([&window] { window.Port().Lose(); });

        QCOMPARE(window.ClickAndRead("cmdImpostaDataOra"), "Errore: Impossibile aprire Com2");

        QCOMPARE(window.Port().Sent(), "\x0F"
                                       "1");
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
    }

    static void buttonsStayEnabledWhileItDials()
    {
        BufferWindow window(Reached::byModem);
        window.Open();
        window.Script().At(100, [&] {
            QCOMPARE(window.Enabled(), kAllButtons);
            QCOMPARE(window.Busy(), kBothWindows);
            window.Click("cmdStato"); // do nothing
            window.Click("cmdImpostaDataOra");
            window.ModemConnects();
            window.Port().Receive("OK");
        });

        window.Click("cmdImpostaDataOra");

        QCOMPARE(window.Port().Sent(), kCall + kCommand);
        QCOMPARE(window.Journal().last(), "300 ClearOutput");
        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());

        window.Port().ForgetJournal();
        window.Click("cmdImpostaDataOra");
        QCOMPARE(window.Journal().first(), "300 Output <0F>"); // the link is still there
    }

    static void failedCallSendsNothing()
    {
        for (const bool isCancelled : {false, true}) {
            BufferWindow window(Reached::byModem);
            window.Open();
            if (isCancelled) {
                window.Play("700: cancelled");
                window.Click("cmdImpostaDataOra");
            } else {
                QCOMPARE(window.ClickAndRead("cmdImpostaDataOra"),
                         "Connessione: Impossibile connettersi. Il modem non risponde");
            }

            QCOMPARE(window.Port().Sent(), "AT&F\r");
            QVERIFY(!window.Port().IsOpen());
            QVERIFY(window.Window().isVisible());
            QVERIFY(!window.Dialog().Cancel());
            QCOMPARE(window.Busy(), QStringList());
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_clock_test> registered;
#include "frmSX_clock_test.moc"
