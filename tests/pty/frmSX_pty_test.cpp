#include "app/frmSiti.h"
#include "comm/frmSX.h"
#include "comm/qt_event_pump.h"
#include "comm/qt_serial_port.h"
#include "config/clock.h"
#include "editor/environment.h"
#include "editor/frmDettaglio.h"
#include "resources/texts.h"
#include "tests/pty/running_lab.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/settings_file.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"
#include "tools/lab/laboratory.h"
#include "tools/lab/options.h"
#include "widgets/mask_edit.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>
#include <string>

namespace corvrec
{

namespace
{

// One site with a 3.0 on COM2.
std::string Settings(const std::string& reached)
{
    const std::string section = "[A]\r\nDispositivo=STX30\r\nBaud=9600\r\nBitDati=8\r\nParita=N\r\nStop=1\r\n"
                                "Handshake=NONE\r\nRicorrenza=-1\r\nOgni= 3600\r\nOra=08:30 21/11/2026\r\n"
                                "StringaReset=AT&F\r\nStringaModem=ATX3\r\nNumeroTel=ATDT0123\r\n";
    return "[General]\r\nCom=COM2\r\n[Siti]\r\nA=Sito A\r\n" + section + reached + "\r\n";
}

lab::DeviceOptions Device()
{
    return {.model = lab::Model::stratobox30, .fields = {{"used", "P"}, {"memory", "1234567"}}};
}

void Click(QWidget& window, const char* button)
{
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(window, button), Qt::LeftButton);
}

// The whole editor at real time, since a device takes its time too, and the real port to a device of the
// laboratory.
class Session
{
public:
    Session(const lab::DeviceOptions& device, const std::string& reached)
        : lab_(lab::MakeDevice(device, lab::NowMs()))
        , settings_(Settings(reached))
        , list_(Environment{settings_.Directory(), *settings_, clock_, events_, makePort_})
    {
        QVERIFY(list_.Load());
        list_.LoadEditor();
        list_.RefreshGrid();
        list_.show();
    }

    // Acts in the buffer window of the site, reached through the editor; closes both.
    void Visit(const std::function<void(frmSX&)>& visit)
    {
        const ModalVisit<frmSX> inBuffer([&visit](frmSX& window) {
            visit(window);
            Click(window, "cmdChiudi");
        });
        const ModalVisit<frmDettaglio> inEditor([](frmDettaglio& editor) {
            Click(editor, "cmdSX");
            Click(editor, "Annulla");
        });
        Click(list_, "cmdProperties");
    }

    RunningLab& Lab() { return lab_; }

private:
    RunningLab lab_;
    SettingsFile settings_;
    SystemClock clock_;
    QtEventPump events_{clock_};
    std::function<std::unique_ptr<SerialPort>()> makePort_ = [] { return std::make_unique<QtSerialPort>(); };
    UnansweredBoxes unansweredBoxes_;
    frmSiti list_;
};

// Types two digits over those at the place.
void Type(frmSX& window, const char* field, int place, const char* digits)
{
    auto& edit = SiteWindow::Part<MaskEdit>(window, field);
    edit.setSelection(place, 2);
    edit.setSelText(digits);
}

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

    static void statusIsReadAndClockIsSet();
    static void statusIsReadByModem();
    static void unpluggedDeviceLeavesTheWindowUsable();
};

void frmSX_pty_test::statusIsReadAndClockIsSet()
{
    Session session(Device(), "MODEM=0");

    session.Visit([](frmSX& window) {
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

    session.Lab().Unplug();
    QCOMPARE(session.Lab().Received(), "\x13\x02\x13\x0F"
                                       "0905311226\x13\x02\x13");
}

// A pseudo-terminal has no carrier line: each request dials anew, after the port was closed and opened.
void frmSX_pty_test::statusIsReadByModem()
{
    lab::DeviceOptions device = Device();
    device.modem = lab::ModemBehaviour{.echo = true, .dialDelayMs = 20};
    Session session(device, "MODEM=1");

    session.Visit([](frmSX& window) {
        Click(window, "cmdStato");
        QCOMPARE(Shows(window, "lblMemoria"), "1234567");
        Click(window, "cmdStato");
        QCOMPARE(Shows(window, "lblMemoria"), "1234567");
    });

    session.Lab().Unplug();
    const std::string request = "AT&F\rATX3\rATDT0123\r\x13\x02\x13";
    QCOMPARE(session.Lab().Received(), request + request + "+++ATH\r");
}

void frmSX_pty_test::unpluggedDeviceLeavesTheWindowUsable()
{
    lab::DeviceOptions device = Device();
    device.faults.dropAfter = 11;
    Session session(device, "MODEM=0");

    session.Visit([](frmSX& window) {
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

} // namespace corvrec

QTEST_MAIN(corvrec::frmSX_pty_test)
#include "frmSX_pty_test.moc"
