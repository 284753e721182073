// The buffer window with every device of the laboratory, on a clock that the test moves.
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/lab_world.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "tests/support/site_window.h"
#include "tools/lab/options.h"
#include "ui/widgets/texts.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>
#include <string>
#include <utility>

Q_DECLARE_METATYPE(corvrec::lab::DeviceOptions)
Q_DECLARE_METATYPE(corvrec::lab::Model)

namespace corvrec
{

namespace
{

constexpr auto kNoStatus =
    "Impossibile ricevere lo stato del buffer. Verificare che il buffer sia collegato correttamente.";
constexpr auto kNoConnection = "Impossibile connettersi. Il modem non risponde";
constexpr auto kNoHangUp = "Impossibile disconnettersi. Il modem non risponde";

const QStringList kAllButtons{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"};
const QStringList kNoValues(14, "");

const std::string kRequest = "\x13\x02\x13";
const std::string kDialogue = "AT&F\rATX3\rATDT0123\r";
lab::DeviceOptions Behind(lab::ModemBehaviour modem)
{
    lab::DeviceOptions device = LabDevice();
    device.modem = std::move(modem);
    return device;
}

// Compares the times, with room for the steps of the tick.
void CompareMs(std::int64_t passed, std::int64_t expected)
{
    constexpr std::int64_t kSlack = 1500; // one step for each byte and each pass
    QVERIFY2(passed >= expected && passed <= expected + kSlack, qPrintable(QString::number(passed)));
}

} // namespace

class frmSX_lab_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void everyFieldIsShown_data()
    {
        QTest::addColumn<lab::Model>("model");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QStringList>("shown");

        const auto rows =
            [](lab::Model model, const char* name, const QStringList& initial,
               std::initializer_list<std::tuple<const char*, const char*, int, const char*>> fields) {
                QTest::newRow(name) << model << QString() << QString() << initial;
                for (const auto& [field, value, label, text] : fields) {
                    QStringList shown = initial;
                    shown[label] = text;
                    QTest::addRow("%s, %s %s", name, field, value)
                        << model << QString(field) << QString(value) << shown;
                }
            };
        // The labels in the order of the form.
        enum Label {
            memoria,
            condizione,
            riempimento,
            ripetizioni,
            ultimoscarico,
            ultimiDati,
            guasto,
            modello,
            firmware,
            data,
            ora,
            selezione,
            stampante,
            modem
        };

        rows(lab::Model::stratobox11, "1.1",
             {"0032768", "Parziale", " 12", "01", "5", "1", "No", "N/A", "01.10", "N/A", "N/A", "Non attivo",
              "Non attiva", "N/A"},
             {{"memory", "7", memoria, "      7"},
              {"used", "P", condizione, "Totale"},
              {"used", "\x01", condizione, "Errore"},
              {"percent", "100", riempimento, "100"},
              {"repetitions", "42", ripetizioni, "42"},
              {"download-hours", "255", ultimoscarico, "255"},
              {"data-hours", "128", ultimiDati, "128"},
              {"faults", "9", guasto, "Sì"},
              {"faults", "x", guasto, "No"}});

        const QStringList of30{"0131072",
                               "Parziale",
                               " 12",
                               "N/A",
                               "26/02/2026 10:20:30",
                               "02/03/2026 10:20:30",
                               "Nessuno",
                               "Standard",
                               "3.05",
                               "21/11/26",
                               "18:03",
                               "N/A",
                               "N/A",
                               "N/A"};
        for (const auto& [model, name] :
             {std::pair{lab::Model::stratobox20, "2.0"}, std::pair{lab::Model::stratobox30, "3.0"}}) {
            rows(model, name, of30,
                 {{"memory", "abc", memoria, "    abc"},
                  {"used", "V", condizione, "Nessuna"},
                  {"used", "P", condizione, "Totale"},
                  {"used", "X", condizione, "Errore"},
                  {"percent", "7", riempimento, "  7"},
                  {"download-hours", "0", ultimoscarico, "03/03/2026 10:20:30"},
                  {"download-hours", "365", ultimoscarico, "03/03/2025 10:20:30"},
                  {"data-hours", "x", ultimiDati, "03/03/2026 10:20:30"},
                  {"faults", "R", guasto, "Caduta 220 V"},
                  {"faults", "L", guasto, "Batteria"},
                  {"faults", "Q", guasto, "Nessuno"},
                  {"version", "0", modello, "Std (16)"},
                  {"version", "1", modello, "Std (24)"},
                  {"version", "2", modello, "Std (48)"},
                  {"version", "3", modello, "Std (72)"},
                  {"version", "4", modello, "Std (96)"},
                  {"version", "5", modello, "Std (120)"},
                  {"version", "7", modello, "Sat"},
                  {"version", "8", modello, "Sconosciuta"},
                  {"version", "A", modello, "Std (16)"},
                  {"firmware", "<b>", firmware, " <b>"}});
        }

        rows(lab::Model::stratoboxBuffer, "Buffer",
             {"0524288", "Parziale", "12,5", "N/A", "26/02/2026 10:20:30", "02/03/2026 10:20:30", "Nessuno",
              "N/A", "4.10", "21/11/26", "18:03", "N/A", "Presente", "Non presente"},
             {{"memory", "7", memoria, "      7"},
              {"used", "V", condizione, "Nessuna"},
              {"used", "P", condizione, "Totale"},
              {"used", "X", condizione, "Errore"},
              {"percent", "7", riempimento, "7,"},
              {"percent", "99.999", riempimento, "100,"},
              {"download-hours", "31", ultimoscarico, "31/01/2026 10:20:30"},
              {"data-hours", "0", ultimiDati, "03/03/2026 10:20:30"},
              {"faults", "R", guasto, "Caduta 220 V"},
              {"faults", "L", guasto, "Batteria"},
              {"faults", "Q", guasto, "Non rilevabili"},
              {"firmware", "9", firmware, "   9"},
              {"printer", "0", stampante, "Non presente"},
              {"modem", "x", modem, "Presente"}});
    }

    static void everyFieldIsShown()
    {
        QFETCH(lab::Model, model);
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(QStringList, shown);
        lab::DeviceOptions device = LabDevice(model);
        if (!field.isEmpty())
            device.fields = {{field.toStdString(), value.toStdString()}};
        LabWorld world(device);

        const std::string sent = world.Sent([&shown](frmSX& window) {
            QCOMPARE(ShownValues(window), kNoValues);
            Click(window, "cmdStato");
            QCOMPARE(ShownValues(window), shown);
        });

        QCOMPARE(sent, kRequest);
        QVERIFY(!world.pump.IsHeld());
    }

    static void statusArrivesAtAnyPace_data()
    {
        QTest::addColumn<lab::Model>("model");
        QTest::addColumn<bool>("burst");
        QTest::addColumn<int>("pauseMs");
        for (const auto& [model, name] :
             {std::pair{lab::Model::stratobox11, "1.1"}, std::pair{lab::Model::stratobox30, "3.0"},
              std::pair{lab::Model::stratoboxBuffer, "Buffer"}}) {
            QTest::addRow("%s in one burst", name) << model << true << 0;
            QTest::addRow("%s at 300 baud", name) << model << false << 33;
            QTest::addRow("%s with long pauses", name) << model << false << 700;
        }
    }

    static void statusArrivesAtAnyPace()
    {
        QFETCH(lab::Model, model);
        QFETCH(bool, burst);
        QFETCH(int, pauseMs);
        lab::DeviceOptions device = LabDevice(model);
        device.faults.burst = burst;
        device.faults.pauseMs = pauseMs;
        QStringList atOnce;
        LabWorld(LabDevice(model)).editor.Visit([&atOnce](frmSX& window) {
            Click(window, "cmdStato");
            atOnce = ShownValues(window);
        });

        LabWorld world(device);
        world.editor.Visit([&atOnce](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(ShownValues(window), atOnce);
        });
    }

    static void statusIsCutAtAnyLength_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QStringList>("shown");
        const QString today = "03/03/2026 10:20:30";
        const QString five = "26/02/2026 10:20:30";
        // The answer to the last line clear follows the received part. It is cut to the same length.
        QTest::newRow("1") << 1 << QStringList{"\x13",     "Errore", "",   "N/A", today, today, "Nessuno",
                                               "Std (16)", "",       "//", ":",   "N/A", "N/A", "N/A"};
        QTest::newRow("15") << 15
                            << QStringList{"0131072",  "Parziale", " 12", "N/A", today, today, "Nessuno",
                                           "Std (16)", "",         "//",  ":",   "N/A", "N/A", "N/A"};
        QTest::newRow("29") << 29 << QStringList{"0131072",  "Parziale", " 12",
                                                 "N/A",      five,       "02/03/2026 10:20:30",
                                                 "Nessuno",  "Standard", "3.05",
                                                 "21/\x13/", ":",        "N/A",
                                                 "N/A",      "N/A"};
    }

    static void statusIsCutAtAnyLength()
    {
        QFETCH(int, length);
        QFETCH(QStringList, shown);
        lab::DeviceOptions device = LabDevice();
        device.faults.partial = static_cast<std::size_t>(length);
        LabWorld world(device);
        const std::int64_t start = world.clock.TickMs();

        world.editor.Visit([&shown](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(ShownValues(window), shown);
        });

        CompareMs(world.clock.TickMs() - start, 30000); // only the end mark is missing
    }

    // NULs never reach the editor, so the wait for the last two characters is one short.
    static void zeroByteOfTheOldestModelIsLost()
    {
        lab::DeviceOptions device = LabDevice(lab::Model::stratobox11);
        device.fields = {{"used", "V"}};
        LabWorld world(device);
        const std::int64_t start = world.clock.TickMs();

        world.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblMemoria").text(), "0032768");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblCondizione").text(), "Errore");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblUltimoscarico").text(), "1");
        });

        CompareMs(world.clock.TickMs() - start, 30000);
    }

    static void bytesArriveDamaged()
    {
        lab::DeviceOptions device = LabDevice();
        device.faults.garbage = true;
        LabWorld world(device);
        const std::int64_t start = world.clock.TickMs();

        world.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblMemoria").text(), "•”–”•’—");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblCondizione").text(), "Errore");
        });

        CompareMs(world.clock.TickMs() - start, 90000);
    }

    static void nulsAreDropped()
    {
        lab::DeviceOptions device = LabDevice();
        device.faults.nuls = true;
        LabWorld world(device);

        world.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblMemoria").text(), "0131072");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblOra").text(), "18:03");
        });
    }

    // The echo of the request becomes part of the reply and shifts its fields.
    static void echoIsDecodedAsPartOfTheReply()
    {
        lab::DeviceOptions device = LabDevice();
        device.faults.echo = true;
        LabWorld world(device);

        world.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblMemoria").text(), "\x02"
                                                                            "013107");
        });
    }

    static void silentDeviceTakesAllTimeOuts_data()
    {
        QTest::addColumn<lab::DeviceOptions>("device");
        QTest::addColumn<int>("expectedMs");
        for (const auto& [model, name] :
             {std::pair{lab::Model::stratobox11, "1.1"}, std::pair{lab::Model::stratobox30, "3.0"},
              std::pair{lab::Model::stratoboxBuffer, "Buffer"}}) {
            lab::DeviceOptions device = LabDevice(model);
            device.faults.silence = true;
            QTest::addRow("%s", name) << device << 90000;
            device.modem = lab::ModemBehaviour{.dialDelayMs = 0};
            QTest::addRow("%s by modem", name) << device << 50000;
        }
    }

    static void silentDeviceTakesAllTimeOuts()
    {
        QFETCH(lab::DeviceOptions, device);
        QFETCH(int, expectedMs);
        LabWorld world(device);
        const std::int64_t start = world.clock.TickMs();

        world.editor.Visit([&](frmSX& window) {
            MessageProbe told(Qt::Key_Return, [&] { QCOMPARE(BusyWindows(window), QStringList()); });
            Click(window, "cmdStato");
            QCOMPARE(told.text(), kNoStatus);
            QCOMPARE(told.title(), "Errore");
            QCOMPARE(told.icon(), QMessageBox::Warning);
            QCOMPARE(ShownValues(window), kNoValues);
            QCOMPARE(EnabledButtons(window), kAllButtons);
            CompareMs(world.clock.TickMs() - start, expectedMs);
        });
    }

    static void valuesOutliveAFailure()
    {
        lab::DeviceOptions device = LabDevice();
        LabWorld world(device);

        world.editor.Visit([&world](frmSX& window) {
            Click(window, "cmdStato");
            const QStringList before = ShownValues(window);
            world.pump.Unplug();
            MessageProbe told(Qt::Key_Return);
            Click(window, "cmdStato");
            QCOMPARE(told.text(), kNoStatus);
            QCOMPARE(ShownValues(window), before);
        });
    }

    static void missingPort_data()
    {
        QTest::addColumn<lab::DeviceOptions>("device");
        QTest::addColumn<QString>("statusMessage");
        QTest::newRow("cable") << LabDevice() << kNoStatus;
        QTest::newRow("modem") << Behind({}) << kNoConnection;
    }

    static void missingPort()
    {
        QFETCH(lab::DeviceOptions, device);
        QFETCH(QString, statusMessage);
        LabWorld world(device);
        world.pump.Unplug();

        world.editor.Visit([&statusMessage](frmSX& window) {
            MessageProbe status(Qt::Key_Return);
            Click(window, "cmdStato");
            QCOMPARE(status.text(), statusMessage);
            QCOMPARE(EnabledButtons(window), kAllButtons);
            MessageProbe clock(Qt::Key_Return);
            Click(window, "cmdImpostaDataOra");
            QCOMPARE(clock.text(), "Impossibile aprire Com2");
            QCOMPARE(clock.title(), "Errore");
            QCOMPARE(clock.icon(), QMessageBox::Warning);
        });

        QCOMPARE(world.pump.Received(), "");
    }

    static void modemCommands_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<bool>("echo");
        QTest::addColumn<QString>("dialogue");
        const auto lines = [](const char* reset, const char* init, const char* number) {
            return QString("MODEM=1\r\nStringaReset=%1\r\nStringaModem=%2\r\nNumeroTel=%3\r\n")
                .arg(reset, init, number);
        };
        QTest::newRow("unchanged") << lines("AT&F", "ATX3", "ATDT0123") << false << "AT&F\rATX3\rATDT0123\r";
        QTest::newRow("echo") << lines("AT&F", "ATX3", "ATDT0123") << true << "AT&F\rATX3\rATDT0123\r";
        QTest::newRow("lower case") << lines("atz", "at", "ATDT0123") << false << "atz\rat\rATDT0123\r";
        QTest::newRow("without AT") << lines("Z", "&C1", "ATDT0123") << false << "ATZ\rAT&C1\rATDT0123\r";
        QTest::newRow("no initialisation") << lines("Z", "", "ATDT0123") << false << "ATZ\rAT\rATDT0123\r";
        QTest::newRow("pulses") << lines("Z", "X3", "ATDP0,0123W45") << false << "ATZ\rATX3\rATDP0,0123W45\r";
    }

    // A pseudo-terminal has no carrier, so each request closes the port, opens it and dials again.
    static void modemCommands()
    {
        QFETCH(QString, lines);
        QFETCH(bool, echo);
        QFETCH(QString, dialogue);
        LabWorld world(Behind({.echo = echo}), SiteLines(LabDevice()) + lines.toStdString());

        const std::string sent = world.Sent([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblMemoria").text(), "0131072");
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblOra").text(), "18:03");
        });

        const std::string each = dialogue.toStdString() + kRequest;
        QCOMPARE(sent, each + each + "+++ATH\r");
        QVERIFY(!world.pump.IsHeld());
    }

    static void failedCalls_data()
    {
        QTest::addColumn<lab::DeviceOptions>("device");
        QTest::addColumn<QString>("sent");
        QTest::addColumn<int>("expectedMs");
        const QString dialogue = QString::fromStdString(kDialogue);
        QTest::newRow("switched off") << Behind({.silent = true}) << "AT&F\r" << 3000;
        for (const char* const answer : {"BUSY", "NO CARRIER", "NO ANSWER", ""})
            QTest::addRow("answer \"%s\"", answer) << Behind({.dialAnswer = answer}) << dialogue << 120000;
        QTest::newRow("too late") << Behind({.dialDelayMs = 120100}) << dialogue << 120000;
    }

    static void failedCalls()
    {
        QFETCH(lab::DeviceOptions, device);
        QFETCH(QString, sent);
        QFETCH(int, expectedMs);
        LabWorld world(device);
        const std::int64_t start = world.clock.TickMs();

        const std::string received = world.Sent([&](frmSX& window) {
            MessageProbe told(Qt::Key_Return);
            Click(window, "cmdStato");
            QCOMPARE(told.text(), kNoConnection);
            QCOMPARE(told.title(), "Connessione");
            QCOMPARE(told.icon(), QMessageBox::Warning);
            CompareMs(world.clock.TickMs() - start, expectedMs);
            QCOMPARE(EnabledButtons(window), kAllButtons);
            QCOMPARE(BusyWindows(window), QStringList());
            QVERIFY(!world.pump.IsHeld());
        });

        QCOMPARE(QString::fromStdString(received), sent); // without a connection there is no hang-up
    }

    static void cancelledCallShowsNothing()
    {
        LabWorld world(Behind({.dialAnswer = "", .dialDelayMs = 0}));
        const std::int64_t start = world.clock.TickMs();

        world.editor.Visit([&world](frmSX& window) {
            frmConnessione& dialog = ModemDialog(window);
            world.pump.AtPass(25, [&] {
                QVERIFY(dialog.isVisible());
                QCOMPARE(SiteWindow::Part<QLabel>(dialog, "lblStato").text(), "Connessione in corso..");
                Click(dialog, "cmdAnnulla");
            });
            Click(window, "cmdStato");
            QVERIFY(!dialog.isVisible());
            QVERIFY(dialog.ErrModem());
            QVERIFY(!dialog.Cancel());
            QCOMPARE(EnabledButtons(window), kAllButtons);
        });

        QCOMPARE(world.pump.Received(), kDialogue);
        QVERIFY(world.clock.TickMs() - start < 120000);
    }

    static void modemLostAtTheHangUpIsReported()
    {
        LabWorld world(Behind({}));
        const std::int64_t start = world.clock.TickMs();

        MessageProbe told(Qt::Key_Return);
        world.editor.Visit([&world](frmSX& window) {
            Click(window, "cmdStato");
            world.pump.AtPass(world.pump.Passes(), [&world] { world.pump.Unplug(); });
        });

        QCOMPARE(told.text(), kNoHangUp);
        QCOMPARE(told.title(), "Disconnessione");
        QVERIFY(world.clock.TickMs() - start < 10000); // no wait on a lost port
        QVERIFY(!world.pump.IsHeld());
    }

    static void windowIsBusyDuringARequest()
    {
        LabWorld world(Behind({.dialDelayMs = 30000}));
        bool looked = false;

        world.editor.Visit([&](frmSX& window) {
            world.pump.AtPass(30, [&] {
                looked = true;
                QCOMPARE(EnabledButtons(window), QStringList());
                QCOMPARE(BusyWindows(window), (QStringList{"frmSX", "frmConnessione"}));
            });
            Click(window, "cmdStato");
            QVERIFY(looked);
            QCOMPARE(EnabledButtons(window), kAllButtons);
            QCOMPARE(BusyWindows(window), QStringList());
            QCOMPARE(window.focusWidget()->objectName(), "cmdStato");
        });
    }

    static void clockIsSet()
    {
        LabWorld world(LabDevice(lab::Model::stratoboxBuffer));

        const std::string sent = world.Sent([&world](frmSX& window) {
            Type(window, "mskOra", 0, "09");
            Type(window, "mskOra", 3, "05");
            Type(window, "mskData", 0, "31");
            Type(window, "mskData", 3, "12");
            Type(window, "mskData", 6, "26");
            Click(window, "cmdImpostaDataOra");
            QCOMPARE(world.clock.Sleeps(), std::vector<std::int64_t>(10, 20));
            Click(window, "cmdStato");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblData").text(), "31/12/26");
            QCOMPARE(SiteWindow::Part<QLabel>(window, "lblOra").text(), "09:05");
        });

        QCOMPARE(sent, "\x0F"
                       "0905311226" +
                           kRequest);
    }

    static void wrongMomentsAreRefused_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("digits");
        QTest::addColumn<QString>("message");
        QTest::newRow("31 February") << "mskData" << 0 << "31"
                                     << "La data inserita non e' valida.";
        QTest::newRow("month 13") << "mskData" << 3 << "13"
                                  << "La data inserita non e' valida.";
        QTest::newRow("24 hours") << "mskOra" << 0 << "24"
                                  << "L' ora inserita non e' valida.";
        QTest::newRow("60 minutes") << "mskOra" << 3 << "60"
                                    << "L' ora inserita non e' valida.";
    }

    static void wrongMomentsAreRefused()
    {
        QFETCH(QString, field);
        QFETCH(int, place);
        QFETCH(QString, digits);
        QFETCH(QString, message);
        LabWorld world(LabDevice());
        world.clock.SetNow({.year = 2026, .month = 2, .day = 21, .hour = 18, .minute = 3, .second = 0});

        const std::string sent = world.Sent([&](frmSX& window) {
            Type(window, qPrintable(field), place, qPrintable(digits));
            MessageProbe told(Qt::Key_Return);
            Click(window, "cmdImpostaDataOra");
            QCOMPARE(told.text(), message);
            QCOMPARE(told.icon(), QMessageBox::Warning);
            QCOMPARE(window.focusWidget()->objectName(), field);
        });

        QCOMPARE(sent, "");
    }

    static void clockIsSetByModem()
    {
        LabWorld world(Behind({}));

        const std::string sent = world.Sent([](frmSX& window) { Click(window, "cmdImpostaDataOra"); });

        QCOMPARE(sent, kDialogue + "\x0F" + "1020030326" + "+++ATH\r");
    }

    static void portStaysOpenBetweenRequests()
    {
        LabWorld world(LabDevice());

        world.editor.Visit([&world](frmSX& window) {
            QVERIFY(!world.pump.IsHeld());
            Click(window, "cmdStato");
            QVERIFY(world.pump.IsHeld());
            Click(window, "cmdImpostaDataOra");
            QVERIFY(world.pump.IsHeld());
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!world.pump.IsHeld());
        });
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_lab_test> registered;
#include "frmSX_lab_test.moc"
