// The buffer window with the real port and every device of the laboratory, in time that the test moves. What
// each byte does is tested without a window, what the window does without a device.
#include "tests/support/buffer_window.h"
#include "tests/support/lab_world.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "tools/lab/options.h"

#include <QLabel>
#include <QTest>

#include <string>
#include <vector>

Q_DECLARE_METATYPE(corvrec::BufferModel)
Q_DECLARE_METATYPE(corvrec::lab::DeviceOptions)

namespace corvrec
{

namespace
{

const std::string kRequest = "\x13\x02\x13";

QString Shows(frmSX& window, const char* label)
{
    return SiteWindow::Part<QLabel>(window, label).text();
}

lab::DeviceOptions ByModem(const lab::ModemBehaviour& modem)
{
    lab::DeviceOptions device = LabDevice();
    device.modem = modem;
    return device;
}

} // namespace

class frmSX_lab_test : public QObject
{
    Q_OBJECT

private slots:
    static void everyModelIsShown_data()
    {
        QTest::addColumn<BufferModel>("model");
        QTest::addColumn<QString>("shown");
        QTest::newRow("1.1") << BufferModel::stratobox11
                             << "0032768|Parziale| 12|01|5|1|No|N/A|01.10|N/A|N/A|Non attivo|Non attiva|N/A";
        constexpr auto k30 =
            "0131072|Parziale| 12|N/A|26/02/2026 10:20:30|02/03/2026 10:20:30|Nessuno|Standard|3.05|"
            "21/11/26|18:03|N/A|N/A|N/A";
        QTest::newRow("2.0") << BufferModel::stratobox20 << k30;
        QTest::newRow("3.0") << BufferModel::stratobox30 << k30;
        QTest::newRow("Buffer")
            << BufferModel::stratoboxBuffer
            << "0524288|Parziale|12,5|N/A|26/02/2026 10:20:30|02/03/2026 10:20:30|Nessuno|N/A|4.10|"
               "21/11/26|18:03|N/A|Presente|Non presente";
    }

    // At once, in one burst, at 300 baud and with long pauses.
    static void everyModelIsShown()
    {
        QFETCH(const BufferModel, model);
        QFETCH(const QString, shown);
        for (const lab::Faults& pace : {lab::Faults{}, lab::Faults{.burst = true}, lab::Faults{.pauseMs = 33},
                                        lab::Faults{.pauseMs = 700}}) {
            lab::DeviceOptions device = LabDevice(model);
            device.faults = pace;
            LabWorld world(device);

            const std::string sent = world.Sent([&shown](frmSX& window) {
                QCOMPARE(ShownValues(window), QStringList(14, ""));
                Click(window, "cmdStato");
                QCOMPARE(ShownValues(window).join('|'), shown);
            });

            QCOMPARE(sent, kRequest);
            QVERIFY(!world.pump.IsHeld());
        }
    }

    static void clockIsSetThroughAPortThatStaysOpen()
    {
        LabWorld world(LabDevice(BufferModel::stratoboxBuffer));

        const std::string sent = world.Sent([&world](frmSX& window) {
            QVERIFY(!world.pump.IsHeld());
            SetClock(window);
            QCOMPARE(world.clock.Sleeps(), std::vector<std::int64_t>(10, 20));
            QVERIFY(world.pump.IsHeld());
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblData"), "31/12/26");
            QCOMPARE(Shows(window, "lblOra"), "09:05");
            QVERIFY(world.pump.IsHeld());
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!world.pump.IsHeld());
        });

        QCOMPARE(sent, "\x0F"
                       "0905311226" +
                           kRequest);
    }

    static void modemIsDialledForEachRequest_data()
    {
        QTest::addColumn<bool>("echo");
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QByteArray>("dialogue");
        QTest::newRow("echo") << true
                              << QByteArray(
                                     "StringaReset=AT&F\r\nStringaModem=ATX3\r\nNumeroTel=ATDT0123\r\n")
                              << QByteArray("AT&F\rATX3\rATDT0123\r");
        QTest::newRow("pulses") << false
                                << QByteArray(
                                       "StringaReset=Z\r\nStringaModem=\r\nNumeroTel=ATDP0,0123W45\r\n")
                                << QByteArray("ATZ\rAT\rATDP0,0123W45\r");
    }

    // A pseudo-terminal has no carrier, so each request closes the port, opens it and dials again.
    static void modemIsDialledForEachRequest()
    {
        QFETCH(const bool, echo);
        QFETCH(const QByteArray, settings);
        QFETCH(const QByteArray, dialogue);
        LabWorld world(ByModem({.echo = echo}),
                       SiteLines(LabDevice()) + "MODEM=1\r\n" + settings.toStdString());

        const std::string sent = world.Sent([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblMemoria"), "0131072");
            Click(window, "cmdImpostaDataOra");
        });

        const std::string dialled = dialogue.toStdString();
        QCOMPARE(sent, dialled + kRequest + dialled + "\x0F" + "1020030326" + "+++ATH\r");
        QVERIFY(!world.pump.IsHeld());
    }

    static void missingPortIsReported()
    {
        for (const lab::DeviceOptions& device : {LabDevice(), ByModem({})}) {
            LabWorld world(device);
            world.pump.Unplug();

            world.editor.Visit([&device](frmSX& window) {
                MessageProbe status(Qt::Key_Return);
                Click(window, "cmdStato");
                QCOMPARE(status.title(), device.modem ? "Connessione" : "Errore");
                MessageProbe clock(Qt::Key_Return);
                Click(window, "cmdImpostaDataOra");
                QCOMPARE(clock.text(), "Impossibile aprire Com2");
            });

            QCOMPARE(world.pump.Received(), "");
        }
    }

    static void unplugAfterACompleteReplyKeepsTheReply()
    {
        constexpr std::size_t kUpToTheStar = 1 + 38; // including the answer to the first line clear
        for (const std::size_t bytes : {kUpToTheStar, kUpToTheStar + 1}) {
            for (const bool burst : {false, true}) {
                lab::DeviceOptions device = LabDevice();
                device.faults.dropAfter = bytes;
                device.faults.burst = burst;

                LabWorld(device).editor.Visit([](frmSX& window) {
                    Click(window, "cmdStato");
                    QCOMPARE(Shows(window, "lblMemoria"), "0131072");
                    QCOMPARE(Shows(window, "lblOra"), "18:03");
                });
            }
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_lab_test> registered;
#include "frmSX_lab_test.moc"
