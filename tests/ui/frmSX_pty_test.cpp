// The buffer window in real time, as for a user.
#include "core/clock.h"
#include "tests/support/buffer_session.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "tests/support/running_lab.h"
#include "tests/support/site_window.h"
#include "tools/lab/laboratory.h"
#include "tools/lab/options.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/widgets/texts.h"

#include <QLabel>
#include <QTest>

namespace corvrec
{

namespace
{

lab::DeviceOptions Device()
{
    return {.model = lab::Model::stratobox30, .fields = {{"used", "P"}, {"memory", "1234567"}}};
}

// The editor in real time, since the device needs real time too.
struct Session {
    Session(const lab::DeviceOptions& device, std::string_view lines)
        : lab(lab::MakeDevice(device, lab::NowMs()))
        , editor(clock, events, lines)
    {
    }

    RunningLab lab;
    SystemClock clock;
    QtEventPump events{clock};
    BufferSession editor;
};

QString Shows(frmSX& window, const char* label)
{
    return SiteWindow::Part<QLabel>(window, label).text();
}

} // namespace

class frmSX_pty_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void statusIsReadAndClockIsSet()
    {
        Session session(Device(), "Dispositivo=STX30\r\n");

        session.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblMemoria"), "1234567");
            QCOMPARE(Shows(window, "lblCondizione"), "Totale");
            QCOMPARE(Shows(window, "lblRiempimento"), " 12");
            QCOMPARE(Shows(window, "lblRipetizioni"), "N/A");
            QCOMPARE(Shows(window, "lblGuasto"), "Nessuno");
            QCOMPARE(Shows(window, "lblModello"), "Standard");
            QCOMPARE(Shows(window, "lblFirmware"), "3.05");
            QCOMPARE(Shows(window, "lblData"), "01/01/00");
            QCOMPARE(Shows(window, "lblOra"), "00:00");
            QCOMPARE(Shows(window, "lblModem"), "N/A");

            Type(window, "mskOra", 0, "09");
            Type(window, "mskOra", 3, "05");
            Type(window, "mskData", 0, "31");
            Type(window, "mskData", 3, "12");
            Type(window, "mskData", 6, "26");
            Click(window, "cmdImpostaDataOra");
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblData"), "31/12/26");
            QCOMPARE(Shows(window, "lblOra"), "09:05");
        });

        session.lab.Unplug();
        QCOMPARE(session.lab.Received(), "\x13\x02\x13\x0F"
                                         "0905311226\x13\x02\x13");
    }

    // A pseudo-terminal has no carrier line, so each request closes the port, opens it and dials again.
    static void statusIsReadByModem()
    {
        lab::DeviceOptions device = Device();
        device.modem = lab::ModemBehaviour{.echo = true, .dialDelayMs = 20};
        Session session(device, "Dispositivo=STX30\r\nMODEM=1\r\n"
                                "StringaReset=AT&F\r\nStringaModem=ATX3\r\nNumeroTel=ATDT0123\r\n");

        session.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblMemoria"), "1234567");
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblMemoria"), "1234567");
        });

        session.lab.Unplug();
        const std::string request = "AT&F\rATX3\rATDT0123\r\x13\x02\x13";
        QCOMPARE(session.lab.Received(), request + request + "+++ATH\r");
    }

    static void unpluggedDeviceLeavesTheWindowUsable()
    {
        lab::DeviceOptions device = Device();
        device.faults.dropAfter = 11;
        Session session(device, "Dispositivo=STX30\r\n");

        session.editor.Visit([](frmSX& window) {
            MessageProbe lost(Qt::Key_Return);
            Click(window, "cmdStato");
            QCOMPARE(lost.text(),
                     "Impossibile ricevere lo stato del buffer. Verificare che il buffer sia collegato "
                     "correttamente.");
            MessageProbe gone(Qt::Key_Return);
            Click(window, "cmdImpostaDataOra");
            QCOMPARE(gone.text(), "Impossibile aprire Com2");
        });
    }

    static void unplugAfterAWholeReplyDoesNotCostIt_data()
    {
        QTest::addColumn<int>("bytes"); // including the answer to the first line clear
        QTest::addColumn<bool>("burst");
        constexpr int kUpToTheStar = 1 + 38;
        QTest::newRow("after the star") << kUpToTheStar << false;
        QTest::newRow("after the star, in one burst") << kUpToTheStar << true;
        QTest::newRow("after the line clear") << kUpToTheStar + 1 << false;
        QTest::newRow("after the line clear, in one burst") << kUpToTheStar + 1 << true;
    }

    static void unplugAfterAWholeReplyDoesNotCostIt()
    {
        QFETCH(int, bytes);
        QFETCH(bool, burst);
        lab::DeviceOptions device = Device();
        device.faults.dropAfter = static_cast<std::size_t>(bytes);
        device.faults.burst = burst;
        Session session(device, "Dispositivo=STX30\r\n");

        session.editor.Visit([](frmSX& window) {
            Click(window, "cmdStato");
            QCOMPARE(Shows(window, "lblMemoria"), "1234567");
            QCOMPARE(Shows(window, "lblOra"), "00:00");
        });
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_pty_test> registered;
#include "frmSX_pty_test.moc"
