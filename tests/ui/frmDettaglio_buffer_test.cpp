// The editor's buffer button: which settings of the site the buffer window gets.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/fake_port.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/buffer/frmConnessione.h"
#include "ui/buffer/frmSX.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace corvrec
{

namespace
{

// The stored line of a site, and the settings that the port gets from it. A local site has no handshake.
struct Line {
    const char* name;
    const char* settings;
    int handshaking;
};

constexpr std::array<Line, 10> kLines{{
    {"Dispositivo=STX30|MODEM=0", "9600,N,8,1", 0},
    {"Dispositivo=STX30|MODEM=0|Baud=4800|Parita=E|BitDati=7|Stop=2", "4800,E,7,2", 0},
    {"Dispositivo=STX30|MODEM=0|Parita=O", "9600,O,8,1", 0},
    {"Dispositivo=STX30|MODEM=0|Handshake=XON", "9600,N,8,1", 0},
    {"Dispositivo=STX30|MODEM=0|Handshake=HDW", "9600,N,8,1", 0},
    {"Dispositivo=STX30|MODEM=1|Handshake=NONE", "9600,N,8,1", 0},
    {"Dispositivo=STX30|MODEM=1|Handshake=XON", "9600,N,8,1", 1},
    {"Dispositivo=STX30|MODEM=1|Handshake=HDW", "9600,N,8,1", 2},
    {"Dispositivo=STX40|MODEM=0|Baud=115200", "115200,N,8,1", 0},
    {"Dispositivo=STX11|MODEM=1|Handshake=HDW", "9600,N,8,1", 2},
}};

// A device, the model whose protocol it uses, and whether its clock can be set.
struct Model {
    const char* name;
    int number;
    bool clock;
};

constexpr std::array<Model, 4> kModels{{{"Dispositivo=STX11", 11, false},
                                        {"Dispositivo=STX20", 30, true},
                                        {"Dispositivo=STX30", 30, true},
                                        {"Dispositivo=STX40", 40, true}}};

// A site on Com3.
std::string SiteWith(const char* lines)
{
    return "[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM3\r\n[A]\r\n" + Parts(lines).join("\r\n").toStdString() +
           "\r\n";
}

// The editor with this site: lines separated by "|". Its next buffer window uses a fake port.
class Fixture
{
public:
    explicit Fixture(const char* lines)
        : editor_(SiteWith(lines))
        , port_(new FakePort(editor_.Time()))
    {
        editor_.NextPort(std::unique_ptr<SerialPort>(port_));
        editor_.Open();
    }

    // Opens the buffer window, runs the visit and closes the window, which destroys the port.
    void Visit(const std::function<void(frmSX&)>& visit)
    {
        const ModalVisit<frmSX> visitor([&visit](frmSX& window) {
            QTimer::singleShot(kPatience, &window, [&window] {
                QTest::qFail("the visit did not end", __FILE__, __LINE__);
                window.reject();
            });
            visit(window);
            window.reject();
        });
        editor_.Click("cmdSX");
    }

    EditorWindow& Editor() { return editor_; }
    FakePort& Port() { return *port_; } // until the end of the visit

private:
    EditorWindow editor_;
    FakePort* port_;
};

void Press(frmSX& window, const char* button)
{
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(window, button), Qt::LeftButton);
}

} // namespace

class frmDettaglio_buffer_test : public QObject
{
    Q_OBJECT

private slots:
    static void portAndLineOfTheSite_data() { AddCases(kLines); }
    static void portAndLineOfTheSite()
    {
        QFETCH(const Line, given);
        Fixture site(given.name);

        site.Visit([&](frmSX& window) {
            QCOMPARE(site.Port().Line()->commPort, 3);
            QCOMPARE(QString::fromStdString(site.Port().Line()->settings), given.settings);
            QCOMPARE(site.Port().Line()->handshaking, given.handshaking);
            QCOMPARE(window.Modem(), QString(given.name).contains("MODEM=1"));
        });
    }

    static void lineFollowsTheEditorNotTheFile()
    {
        Fixture site("Dispositivo=STX30|MODEM=0|Baud=4800|Handshake=HDW");
        site.Editor().Pick("cboVelocita", 0);
        site.Editor().Click("optRemoto");

        site.Visit([&](frmSX& window) {
            QCOMPARE(QString::fromStdString(site.Port().Line()->settings),
                     site.Editor().Shows("cboVelocita") + ",N,8,1");
            QVERIFY(site.Editor().Shows("cboVelocita") != "4800");
            QCOMPARE(site.Port().Line()->handshaking, 2);
            QVERIFY(window.Modem());
        });
    }

    static void modelAndClockOfEachDevice_data() { AddCases(kModels); }
    static void modelAndClockOfEachDevice()
    {
        QFETCH(const Model, given);
        Fixture site(given.name);

        site.Visit([&](frmSX& window) {
            QVERIFY(window.isModal());
            QVERIFY(!site.Port().IsOpen());
            QCOMPARE(static_cast<int>(window.ModelloSX()), given.number);
            QCOMPARE(SiteWindow::Part<QPushButton>(window, "cmdImpostaDataOra").isEnabled(), given.clock);
            QVERIFY(SiteWindow::Part<QPushButton>(window, "cmdStato").isEnabled());
            QVERIFY(SiteWindow::Part<QPushButton>(window, "cmdChiudi").isEnabled());
        });
        QCOMPARE(site.Editor().Focus(), "cmdSX");
    }

    // Uses the site's modem settings and the device's own line settings.
    static void remoteSiteIsDialledAndHungUp()
    {
        Fixture site("Dispositivo=STX40|MODEM=1|StringaModem=ATX3|StringaReset=AT&F|NumeroTel=ATDP0123");
        FakePort& port = site.Port();
        port.Answer("AT&F\r", "OK");
        port.Answer("ATX3\r", "OK");
        port.Answer("ATDP0123\r", "CONNECT");
        port.Answer("\x13", "\x13");
        port.Answer("\x02", "\x02"
                            "0131072*\x13");
        port.Answer("+++", "OK");
        port.Answer("ATH\r", "OK");

        site.Visit([&](frmSX& window) {
            Press(window, "cmdStato");
            QCOMPARE(Shown(SiteWindow::Part<QWidget>(window, "lblMemoria")), "0131072");
            QCOMPARE(port.Sent(), "AT&F\rATX3\rATDP0123\r\x13\x02\x13");

            Press(window, "cmdChiudi");
            QCOMPARE(port.Sent(), "AT&F\rATX3\rATDP0123\r\x13\x02\x13+++ATH\r");
            QVERIFY(!port.IsOpen());
        });
    }

    static void buttonCanBePressedAgain()
    {
        Fixture site("Dispositivo=STX30");
        site.Visit([](frmSX&) {});
        auto* const second = new FakePort(site.Editor().Time());
        site.Editor().NextPort(std::unique_ptr<SerialPort>(second));

        site.Visit([&](frmSX& window) {
            Press(window, "cmdImpostaDataOra");
            // 21 November 2026, 18:03
            QCOMPARE(second->Sent(), "\x0F"
                                     "1803211126");
        });
    }

    // The fake clock does not move in the program's own event loop, so only the key can end these waits.
    static void escapeEndsARequest()
    {
        Fixture site("Dispositivo=STX30");

        site.Visit([&](frmSX& window) {
            QTimer::singleShot(0, &window,
                               [&window] { QTest::keyClick(window.focusWidget(), Qt::Key_Escape); });

            Press(window, "cmdStato");

            QVERIFY(!window.isVisible());
            QVERIFY(!site.Port().IsOpen());
            QCOMPARE(site.Port().Sent(), "\x13");
        });
    }

    static void annullaEndsACall()
    {
        Fixture site("Dispositivo=STX30|MODEM=1|StringaReset=Z");

        site.Visit([&](frmSX& window) {
            const ModalVisit<frmConnessione> visitor([](frmConnessione& dialog) {
                QTest::mouseClick(&SiteWindow::Part<QPushButton>(dialog, "cmdAnnulla"), Qt::LeftButton);
            });

            Press(window, "cmdStato");

            QVERIFY(window.isVisible());
            QVERIFY(!site.Port().IsOpen());
            QCOMPARE(site.Port().Sent(), "ATZ\r");
        });
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_buffer_test> registered;
#include "frmDettaglio_buffer_test.moc"
