// The status button of the buffer window, for a device on a cable.
#include "tests/support/buffer_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include <string>

namespace corvrec
{

namespace
{

constexpr auto kNoStatus =
    "Impossibile ricevere lo stato del buffer. Verificare che il buffer sia collegato correttamente.";

const QStringList kAllButtons{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"};
const QStringList kBothWindows{"frmSX", "frmConnessione"};
const QStringList kNoValues(14, "");

constexpr std::string_view kReply30 = "\x02"    // 1
                                      "0262144" // 2, total memory
                                      "xx"      // 9
                                      "055"     // 11, % used
                                      "x"       // 14
                                      "M"       // 15, used
                                      "001"     // 16, last download
                                      "002"     // 19, last data
                                      "R"       // 22, faults
                                      "3"       // 23, version
                                      "0210"    // 24, firmware
                                      "211126"  // 28, date
                                      "1803"    // 34, time
                                      "*";      // 38

const QStringList kValues30{"0262144",
                            "Parziale",
                            "055",
                            "N/A",
                            "02/03/2026 10:20:30",
                            "01/03/2026 10:20:30",
                            "Caduta 220 V",
                            "Std (72)",
                            "0210",
                            "21/11/26",
                            "18:03",
                            "N/A",
                            "N/A",
                            "N/A"};

} // namespace

class frmSX_status_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void labelsOfEachModel_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<QByteArray>("end");
        QTest::addColumn<QStringList>("values");

        const QByteArray reply30 = QByteArray::fromStdString(std::string(kReply30));
        QTest::newRow("3.0") << 30 << reply30 << QByteArray("\x13") << kValues30;
        QTest::newRow("2.0") << 20 << reply30 << QByteArray("\x13") << kValues30;
        QTest::newRow("Buffer") << 40
                                << QByteArray("\x02"    // 1
                                              "0131072" // 2, total memory
                                              "  12.50" // 9, % used
                                              "P"       // 16, used
                                              "010"     // 17, last download
                                              "000"     // 20, last data
                                              "L"       // 23, faults
                                              "x"       // 24
                                              "0305"    // 25, firmware
                                              "010226"  // 29, date
                                              "0907"    // 35, time
                                              "1"       // 39, modem
                                              "0"       // 40, printer
                                              "*")
                                << QByteArray("\x13")
                                << QStringList({"0131072", "Totale", "12,5", "N/A", "21/02/2026 10:20:30",
                                                "03/03/2026 10:20:30", "Batteria", "N/A", "0305", "01/02/26",
                                                "09:07", "N/A", "Non presente", "Presente"});
        QTest::newRow("1.1") << 11
                             << QByteArray("\x02"    // 1
                                           "05"      // 2, repetitions
                                           "0065536" // 4, total memory
                                           "xx"      // 11
                                           "080"     // 13, % used
                                           "x"       // 16
                                           "\x55"    // 17, used
                                           "\xC8")   // 18, last download
                             << QByteArray("\x07"    // 19, last data
                                           "1")      // 20, faults, selector, printer
                             << QStringList({"0065536", "Parziale", "080", "05", "200", "7", "S\u00EC", "N/A",
                                             "01.10", "N/A", "N/A", "Non attivo", "Non attiva", "N/A"});
    }

    static void labelsOfEachModel()
    {
        QFETCH(const int, model);
        QFETCH(const QByteArray, status);
        QFETCH(const QByteArray, end);
        QFETCH(const QStringList, values);
        BufferWindow window(Reached::direct, model);
        window.Port().Answer("\x13", "\x13");
        window.Port().Answer("\x02", status.toStdString());
        window.Port().Answer("\x13", end.toStdString());
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Values(), values);
    }

    static void unknownModelShowsNothing()
    {
        BufferWindow window(Reached::direct, 99);
        window.DeviceReplies(kReply30);
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Values(), kNoValues);
        QCOMPARE(window.Enabled(), kAllButtons);
    }

    static void markupIsShownLiterally()
    {
        BufferWindow window;
        window.DeviceReplies("\x02<b>1</b*");
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Shows("lblMemoria"), "<b>1</b");
    }

    static void lineBreaksDoNotMakeTheWindowGrow()
    {
        BufferWindow window;
        window.DeviceReplies("\x02\r\n12\r\n3*");
        window.Open();
        const QSize before = window.Window().minimumSizeHint();

        window.Click("cmdStato");

        QCOMPARE(window.Shows("lblMemoria"), "  12  3");
        QCOMPARE(window.Window().minimumSizeHint().height(), before.height());
    }

    static void bytesAreShownInCodePage1252()
    {
        BufferWindow window;
        window.DeviceReplies("\x02\x80 \xEC\xFF   *");
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Shows("lblMemoria"), QString::fromUtf8("€ ìÿ   "));
    }

    static void bytesAndCallsInTheirOrder()
    {
        BufferWindow window;
        window.Open();
        window.Script().At(50, [&] { window.Port().Receive("garbage\x13"); });
        window.Script().At(70, [&] { window.Port().Receive(kReply30); });
        window.Script().At(90, [&] { window.Port().Receive("\x13"); });

        window.Click("cmdStato");

        QCOMPARE(window.Journal(),
                 QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output <13>", "50 ClearInput",
                              "50 Output <02>", "70 Output <13>", "90 ClearInput", "90 ClearOutput"}));
        QCOMPARE(window.Values(), kValues30);
        QVERIFY(window.Port().IsOpen());
    }

    static void oldestModelIsCounted()
    {
        BufferWindow window(Reached::direct, model::stratobox11);
        window.Open();
        window.Script().At(50, [&] { window.Port().Receive("\x13"); });
        window.Script().At(70, [&] {
            window.Port().Receive("\x02"
                                  "050065536**080*x");
        }); // 17 characters
        window.Script().At(80, [&] { window.Port().Receive("\x13\x05"); });
        window.Script().At(90, [&] { window.Port().Receive("0"); });

        window.Click("cmdStato");

        QCOMPARE(window.Journal(),
                 QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output <13>", "50 ClearInput",
                              "50 Output <02>", "80 Output <13>", "90 ClearInput", "90 ClearOutput"}));
    }

    static void silenceEndsAfterThreeTimeOuts()
    {
        BufferWindow window;
        window.Open();
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(window.Journal(), QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output <13>",
                                                "30001 ClearInput", "30001 Output <02>", "60002 Output <13>",
                                                "90003 ClearInput", "90003 ClearOutput"}));
        QCOMPARE(message.text(), kNoStatus);
        QVERIFY(window.Port().IsOpen());
    }

    static void buttonsAndPointerWhileItRuns()
    {
        BufferWindow window;
        window.Open();
        window.Script().At(10, [&] {
            QCOMPARE(window.Enabled(), QStringList());
            QCOMPARE(window.Busy(), kBothWindows);
            window.DeviceReplies(kReply30);
            window.Port().Receive("\x13");
        });

        window.Click("cmdStato");

        QCOMPARE(window.Values(), kValues30);
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
        QCOMPARE(window.Focus(), "cmdStato");
    }

    static void barMovesWhileTheDeviceIsSilent()
    {
        BufferWindow window;
        window.Open();
        auto& bar = SiteWindow::Part<QProgressBar>(window.Window(), "barAttivita");
        QVERIFY(!bar.isVisible());
        bool isMoving = false;
        window.Script().At(
            10, [&] { isMoving = bar.isVisible() && QTest::qWaitFor([&] { return bar.value() == 2; }); });
        MessageProbe message(Qt::Key_Return, [&] { QVERIFY(!bar.isVisible()); });

        window.Click("cmdStato");

        QVERIFY(isMoving);
        QVERIFY(!bar.isVisible());
        for (const auto* const timer : bar.findChildren<QTimer*>())
            QVERIFY(!timer->isActive());
    }

    static void barKeepsItsPlace()
    {
        BufferWindow window;
        window.Open();
        const auto& button = window.Button("cmdStato");
        const QRect before = button.geometry();
        const QSize windowBefore = window.Window().size();
        bool isVisible = false;
        QRect meanwhile;
        window.Script().At(10, [&] {
            QCoreApplication::processEvents(); // completes the layout
            isVisible = SiteWindow::Part<QProgressBar>(window.Window(), "barAttivita").isVisible();
            meanwhile = button.geometry();
            window.DeviceReplies(kReply30);
            window.Port().Receive("\x13");
        });

        window.Click("cmdStato");

        QVERIFY(isVisible);
        QCOMPARE(meanwhile, before);
        QCOMPARE(window.Window().size(), windowBefore);
    }

    static void secondPressMeanwhileDoesNothing()
    {
        BufferWindow window;
        window.Open();
        window.Script().At(10, [&] {
            for (const QString& button : kAllButtons)
                window.Click(qPrintable(button));
            QCOMPARE(window.Journal(), QStringList({"0 Close", "0 Open", "0 ClearInput", "0 Output <13>"}));
            window.Port().Answer("\x02", "status*\x13");
            window.Port().Receive("\x13");
        });

        window.Click("cmdStato");

        QCOMPARE(window.Port().Sent(), "\x13\x02\x13");
        QVERIFY(window.Window().isVisible());
    }

    static void secondRequestUsesTheOpenPort()
    {
        BufferWindow window;
        window.Open();
        window.DeviceReplies(kReply30);
        window.Click("cmdStato");
        window.Port().ForgetJournal();
        window.DeviceReplies("\x02"
                             "0262145*");

        window.Click("cmdStato");

        QCOMPARE(window.Journal(),
                 QStringList({"0 ClearInput", "0 Output <13>", "0 ClearInput", "0 Output <02>",
                              "0 Output <13>", "0 ClearInput", "0 ClearOutput"}));
        QCOMPARE(window.Shows("lblMemoria"), "0262145");
        QCOMPARE(window.Shows("lblFirmware"), "");
    }

    static void emptyReplyIsReportedAndKeepsTheValues()
    {
        BufferWindow window;
        window.Open();
        window.DeviceReplies(kReply30);
        window.Click("cmdStato");
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoStatus);
        QCOMPARE(message.title(), "Errore");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(window.Values(), kValues30);
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Focus(), "cmdStato");
    }

    static void pointerIsBackBeforeTheMessage()
    {
        BufferWindow window;
        window.Open();
        QStringList busy{"not looked at"};
        QStringList enabled = kAllButtons;
        MessageProbe message(Qt::Key_Return, [&] {
            busy = window.Busy();
            enabled = window.Enabled();
        });

        window.Click("cmdStato");

        QCOMPARE(busy, QStringList());
        QCOMPARE(enabled, QStringList());
        QCOMPARE(window.Enabled(), kAllButtons);
    }

    static void partOfAReplyIsShown()
    {
        BufferWindow window;
        window.Open();
        window.Port().Answer("\x13", "\x13");
        window.Port().Answer("\x02", "\x02"
                                     "026214");

        window.Click("cmdStato");

        // The missing fields show the texts for an unknown character or for the number 0.
        QCOMPARE(window.Values(),
                 QStringList({"026214", "Errore", "", "N/A", "03/03/2026 10:20:30", "03/03/2026 10:20:30",
                              "Nessuno", "Std (16)", "", "//", ":", "N/A", "N/A", "N/A"}));
        QCOMPARE(window.Journal().last(), "60002 ClearOutput");
    }

    static void portThatCannotBeOpenedIsAnEmptyReply()
    {
        BufferWindow window;
        window.Open();
        window.Port().RefuseOpen(true);
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoStatus);
        QCOMPARE(window.Port().Sent(), "");
        QCOMPARE(window.Journal().last(), "0 ClearOutput"); // at once
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Busy(), QStringList());
        QVERIFY(!window.Port().IsOpen());
    }

    static void nextPressTriesToOpenAgain()
    {
        BufferWindow window;
        window.Open();
        window.Port().RefuseOpen(true);
        {
            MessageProbe message(Qt::Key_Return);
            window.Click("cmdStato");
        }
        window.Port().RefuseOpen(false);
        window.DeviceReplies(kReply30);

        window.Click("cmdStato");

        QCOMPARE(window.Values(), kValues30);
    }

    static void lostPortIsAnEmptyReply()
    {
        BufferWindow window;
        window.Open();
        window.Port().Answer("\x13", "\x13");
        window.Port().Answer("\x02", "\x02"
                                     "026");
        window.Script().At(200, [&] { window.Port().Lose(); });
        MessageProbe message(Qt::Key_Return);

        window.Click("cmdStato");

        QCOMPARE(message.text(), kNoStatus);
        QCOMPARE(window.Values(), kNoValues);
        QCOMPARE(window.Journal().last(), "200 ClearOutput");
        QCOMPARE(window.Enabled(), kAllButtons);
        QCOMPARE(window.Port().InputLen(), 0);
    }

    static void nextPressOpensALostPort()
    {
        BufferWindow window;
        window.Open();
        window.Script().At(200, [&] { window.Port().Lose(); });
        {
            MessageProbe message(Qt::Key_Return);
            window.Click("cmdStato");
        }
        window.Port().ForgetJournal();
        window.DeviceReplies(kReply30);

        window.Click("cmdStato");

        QCOMPARE(window.Journal().mid(0, 2), QStringList({"200 Close", "200 Open"}));
        QCOMPARE(window.Values(), kValues30);
    }

    // Deliberate: a status enables all three buttons, whatever the state of the clock button was.
    static void clockButtonOfTheOldestModelComesBackEnabled()
    {
        BufferWindow window(Reached::direct, model::stratobox11);
        window.Window().EnableClock(false);
        window.DeviceReplies("123456789012345678");
        window.Open();

        window.Click("cmdStato");

        QCOMPARE(window.Enabled(), kAllButtons);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_status_test> registered;
#include "frmSX_status_test.moc"
