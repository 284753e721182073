// The status button of the buffer window, for a device on a cable and by modem.
#include "tests/support/buffer_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"

#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include <utility>

namespace corvrec
{

namespace
{

constexpr auto kNoStatus =
    "Errore: Impossibile ricevere lo stato del buffer. Verificare che il buffer sia collegato correttamente.";
constexpr auto kNoModem = "Connessione: Impossibile connettersi. Il modem non risponde";

const QStringList kAllButtons{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"};
const QStringList kBothWindows{"frmSX", "frmConnessione"};

constexpr std::string_view kReply30 = "\x02"
                                      "0262144xx055xM001002R302102111261803*";
constexpr auto kShown30 =
    "0262144|Parziale|055|N/A|02/03/2026 10:20:30|01/03/2026 10:20:30|Caduta 220 V|Std (72)|"
    "0210|21/11/26|18:03|N/A|N/A|N/A";
constexpr auto kNothing = "|||||||||||||";

} // namespace

class frmSX_status_test : public QObject
{
    Q_OBJECT

private slots:
    static void requests_data()
    {
        QTest::addColumn<Reached>("reached");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("log"); // how it ends
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* name, Reached reached, const QByteArray& script, const char* log,
                            const char* message, const char* shown = kNothing) {
            QTest::newRow(name) << reached << script << QString(log) << QString(message) << QString(shown);
        };
        constexpr auto direct = Reached::direct;
        constexpr auto byModem = Reached::byModem;
        const QByteArray reply = "<02>0262144xx055xM001002R302102111261803*";
        row("whole reply", direct, "50: garbage<13> | 70: " + reply + " | 90: <13>",
            "0 Close | 0 Open | 0 ClearInput | 0 Output <13> | 50 ClearInput | 50 Output <02> | "
            "70 Output <13> | 90 ClearInput | 90 ClearOutput",
            "", kShown30);
        row("silence", direct, "",
            "0 Close | 0 Open | 0 ClearInput | 0 Output <13> | 30001 ClearInput | 30001 Output <02> | "
            "60002 Output <13> | 90003 ClearInput | 90003 ClearOutput",
            kNoStatus);
        // The missing fields show the texts for an unknown character or for the number 0.
        row("part of a reply", direct, "<13>: <13> | <02>: <02>026214",
            "0 Output <02> | 30001 Output <13> | 60002 ClearInput | 60002 ClearOutput", "",
            "026214|Errore||N/A|03/03/2026 10:20:30|03/03/2026 10:20:30|Nessuno|Std (16)||//|:|N/A|N/A|N/A");
        row("lost port", direct, "<13>: <13> | <02>: <02>026 | 200: lost",
            "0 Output <02> | 200 ClearInput | 200 ClearOutput", kNoStatus);
        const QByteArray connects = "AT&F<0D>: OK | ATX3<0D>: OK | ATDT0123<0D>: CONNECT";
        row("whole reply by modem", byModem, connects + " | 50: garbage<13> | 70: " + reply + " | 90: <13>",
            "0 Close | 0 Open | 0 ClearInput | 0 Output AT&F<0D> | 0 ClearInput | 0 Output ATX3<0D> | "
            "0 ClearInput | 0 Output ATDT0123<0D> | 0 ClearInput | 0 Output <13> | 50 ClearInput | "
            "50 Output <02> | 70 Output <13> | 90 ClearInput | 90 ClearOutput",
            "", kShown30);
        row("silent modem", byModem, "",
            "0 Output AT&F<0D> | 3001 ClearInput | 3001 ClearInput | 3001 ClearInput | 3001 Close | "
            "3001 ClearInput | 3001 ClearOutput",
            kNoModem);
        row("lost port of a modem", byModem, "500: lost",
            "0 Output AT&F<0D> | 500 ClearInput | 500 Close | "
            "500 ClearInput | 500 ClearOutput",
            kNoModem);
        row("cancelled call", byModem, "700: cancelled",
            "0 Output AT&F<0D> | 700 ClearInput | 700 ClearInput | 700 Close | 700 ClearInput | "
            "700 ClearOutput",
            "");
        // On a screen the modem dialog is still closing when the next message opens.
        if (QGuiApplication::platformName() != "offscreen")
            return;
        row("silence by modem", byModem, connects,
            "0 Output <13> | 30001 ClearInput | 30001 Output <02> | 40002 Output <13> | 50003 ClearInput | "
            "50003 ClearOutput",
            kNoStatus);
        row("lost port by modem", byModem, connects + " | 500: lost",
            "0 Output <13> | 500 ClearInput | 500 ClearOutput", kNoStatus);
    }

    static void requests()
    {
        QFETCH(const Reached, reached);
        QFETCH(const QByteArray, script);
        QFETCH(const QString, log);
        QFETCH(const QString, message);
        QFETCH(const QString, shown);
        BufferWindow window(reached);
        window.Open();
        window.Play(script.toStdString());

        if (message.isEmpty())
            window.Click("cmdStato");
        else
            QCOMPARE(window.ClickAndRead("cmdStato"), message);

        QVERIFY2(window.Log().endsWith(log), qPrintable(window.Log()));
        QCOMPARE(window.Values().join('|'), shown);
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
        QCOMPARE(window.Focus(), "cmdStato");
        QCOMPARE(window.Port().InputLen(), 0);
        QVERIFY(window.Window().isVisible());
        QVERIFY(!window.Dialog().isVisible());
        QVERIFY(!window.Dialog().Cancel());
    }

    // On a cable it is a device that does not answer, by modem a modem that does not.
    static void portThatCannotBeOpenedIsReported()
    {
        for (const Reached reached : {Reached::direct, Reached::byModem}) {
            BufferWindow window(reached);
            window.Open();
            window.Port().RefuseOpen(true);

            QCOMPARE(window.ClickAndRead("cmdStato"), reached == Reached::direct ? kNoStatus : kNoModem);

            QCOMPARE(window.Port().Sent(), "");
            QCOMPARE(window.Journal().last(), "0 ClearOutput"); // at once
            QCOMPARE(window.Enabled(), kAllButtons);
            QVERIFY(!window.Port().IsOpen());
        }
    }

    static void secondRequests_data()
    {
        QTest::addColumn<Reached>("reached");
        QTest::addColumn<QByteArray>("first"); // empty: an answer
        QTest::addColumn<bool>("carrier");
        QTest::addColumn<QString>("log"); // how the second one begins
        constexpr auto kRequest =
            "0 ClearInput | 0 Output <13> | 0 ClearInput | 0 Output <02> | 0 Output <13>";
        QTest::newRow("open port") << Reached::direct << QByteArray() << false << kRequest;
        QTest::newRow("lost port") << Reached::direct << QByteArray("200: lost") << false
                                   << "200 Close | 200 Open";
        QTest::newRow("held link") << Reached::byModem << QByteArray() << true << kRequest;
        QTest::newRow("lost carrier") << Reached::byModem << QByteArray() << false
                                      << "0 Close | 0 Open | 0 ClearInput | 0 Output AT&F<0D>";
        QTest::newRow("failed call") << Reached::byModem << QByteArray("ATX3<0D>: OK") << true
                                     << "3001 Close | 3001 Open | 3001 ClearInput | 3001 Output AT&F<0D>";
        QTest::newRow("cancelled call") << Reached::byModem << QByteArray("700: cancelled") << true
                                        << "700 Close | 700 Open | 700 ClearInput | 700 Output AT&F<0D>";
    }

    static void secondRequests()
    {
        QFETCH(const Reached, reached);
        QFETCH(const QByteArray, first);
        QFETCH(const bool, carrier);
        QFETCH(const QString, log);
        BufferWindow window(reached);
        window.Open();
        if (first.isEmpty()) {
            window.ModemConnects();
            window.DeviceReplies(kReply30);
            window.Click("cmdStato");
            QCOMPARE(window.Values().join('|'), kShown30);
        } else {
            window.Play(first.toStdString());
            if (first.contains("cancelled"))
                window.Click("cmdStato");
            else
                window.ClickAndRead("cmdStato");
        }
        window.Port().ForgetJournal();
        window.ModemConnects();
        window.Port().SetCarrier(carrier);
        window.DeviceReplies("\x02"
                             "0262145*");

        window.Click("cmdStato");

        QVERIFY2(window.Log().startsWith(log), qPrintable(window.Log()));
        QCOMPARE(window.Shows("lblMemoria"), "0262145");
        QCOMPARE(window.Shows("lblFirmware"), "");
        QVERIFY(!window.Dialog().ErrModem());
    }

    static void windowIsBusyWhileItRuns()
    {
        for (const Reached reached : {Reached::direct, Reached::byModem}) {
            BufferWindow window(reached);
            window.Open();
            window.Script().At(10, [&] {
                QCOMPARE(window.Enabled(), QStringList());
                QCOMPARE(window.Busy(), kBothWindows);
                QCOMPARE(window.Dialog().isVisible() && window.Dialog().isModal(),
                         reached == Reached::byModem);
                for (const QString& button : kAllButtons)
                    window.Click(qPrintable(button)); // does nothing
                window.ModemConnects();
                window.DeviceReplies(kReply30);
                window.Port().Receive(reached == Reached::direct ? "\x13" : "OK");
            });

            window.Click("cmdStato");

            QCOMPARE(window.Values().join('|'), kShown30);
            QCOMPARE(window.Enabled(), kAllButtons);
            QCOMPARE(window.Busy(), QStringList());
        }
    }

    static void barMovesInItsPlaceWhileTheDeviceIsSilent()
    {
        BufferWindow window;
        window.Open();
        auto& bar = SiteWindow::Part<QProgressBar>(window.Window(), "barAttivita");
        QVERIFY(!bar.isVisible());
        const QRect button = window.Button("cmdStato").geometry();
        const QSize size = window.Window().size();
        bool isMoving = false;
        window.Script().At(10, [&] {
            isMoving = bar.isVisible() && QTest::qWaitFor([&] { return bar.value() == 2; });
            QCoreApplication::processEvents(); // completes the layout
            QCOMPARE(window.Button("cmdStato").geometry(), button);
        });
        MessageProbe message(Qt::Key_Return, [&] { QVERIFY(!bar.isVisible()); });

        window.Click("cmdStato");

        QVERIFY(isMoving);
        QVERIFY(!bar.isVisible());
        QCOMPARE(window.Window().size(), size);
        for (const auto* const timer : bar.findChildren<QTimer*>())
            QVERIFY(!timer->isActive());
    }

    static void emptyReplyKeepsTheValues()
    {
        BufferWindow window;
        window.Open();
        window.DeviceReplies(kReply30);
        window.Click("cmdStato");
        QStringList busy{"not looked at"};
        QStringList enabled = kAllButtons;
        MessageProbe message(Qt::Key_Return, [&] {
            busy = window.Busy();
            enabled = window.Enabled();
        });

        window.Click("cmdStato");

        QCOMPARE(window.Values().join('|'), kShown30);
        QCOMPARE(busy, QStringList()); // the pointer is back before the message, the buttons after it
        QCOMPARE(enabled, QStringList());
    }

    static void receivedTextIsShownAsText()
    {
        for (const auto& [reply, shown] : {
                 std::pair{"\x02<b>1</b*", "<b>1</b"},
                 std::pair{"\x02\r\n12\r\n3*", "  12  3"}, // a line break would make the window grow
                 std::pair{"\x02\x80 \xEC\xFF   *", "€ ìÿ   "},
             }) {
            BufferWindow window;
            window.DeviceReplies(reply);
            window.Open();
            const int height = window.Window().minimumSizeHint().height();

            window.Click("cmdStato");

            QCOMPARE(window.Shows("lblMemoria"), shown);
            QCOMPARE(window.Window().minimumSizeHint().height(), height);
        }
    }

    // Deliberate: a status enables all three buttons, whatever the state of the clock button was.
    static void oldestModelIsCountedAndEnablesItsClock()
    {
        BufferWindow window(Reached::direct, BufferModel::stratobox11);
        window.Window().EnableClock(false);
        window.Play("<13>: <13> | <02>: <02>050065536**080*U<C8> | 90: <07>1");
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Journal().last(), "90 ClearOutput");
        QCOMPARE(window.Values().join('|'),
                 "0065536|Parziale|080|05|200|7|Sì|N/A|01.10|N/A|N/A|Non attivo|Non attiva|N/A");
        QCOMPARE(window.Enabled(), kAllButtons);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_status_test> registered;
#include "frmSX_status_test.moc"
