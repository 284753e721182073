// The editor's buffer button: what the buffer window is given of the site.
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/fake_port.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/buffer/frmConnessione.h"
#include "ui/buffer/frmSX.h"
#include "ui/widgets/texts.h"

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

// A site on Com3.
std::string SiteWith(const QString& lines)
{
    return ("[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM3\r\n[A]\r\n" + lines + "\r\n").toStdString();
}

// The editor with this site. Its next buffer window uses a fake port.
class Fixture
{
public:
    explicit Fixture(const QString& lines)
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
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void portAndLineOfTheSite_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<int>("handshaking");
        QTest::addColumn<bool>("modem");

        const QString local = "Dispositivo=STX30\r\nMODEM=0\r\n";
        const QString remote = "Dispositivo=STX30\r\nMODEM=1\r\n";
        QTest::newRow("local") << local << "9600,N,8,1" << 0 << false;
        QTest::newRow("local, all set") << local + "Baud=4800\r\nParita=E\r\nBitDati=7\r\nStop=2"
                                        << "4800,E,7,2" << 0 << false;
        QTest::newRow("local, odd") << local + "Parita=O"
                                    << "9600,O,8,1" << 0 << false;
        QTest::newRow("local never shakes hands: software") << local + "Handshake=XON"
                                                            << "9600,N,8,1" << 0 << false;
        QTest::newRow("local never shakes hands: hardware") << local + "Handshake=HDW"
                                                            << "9600,N,8,1" << 0 << false;
        QTest::newRow("remote without handshake") << remote + "Handshake=NONE"
                                                  << "9600,N,8,1" << 0 << true;
        QTest::newRow("remote, software") << remote + "Handshake=XON"
                                          << "9600,N,8,1" << 1 << true;
        QTest::newRow("remote, hardware") << remote + "Handshake=HDW"
                                          << "9600,N,8,1" << 2 << true;
        QTest::newRow("high speed") << QString("Dispositivo=STX40\r\nMODEM=0\r\nBaud=115200")
                                    << "115200,N,8,1" << 0 << false;
        QTest::newRow("1.1, remote") << QString("Dispositivo=STX11\r\nMODEM=1\r\nHandshake=HDW")
                                     << "9600,N,8,1" << 2 << true;
    }

    static void portAndLineOfTheSite()
    {
        QFETCH(const QString, lines);
        QFETCH(const QString, settings);
        QFETCH(const int, handshaking);
        QFETCH(const bool, modem);
        Fixture site(lines);

        site.Visit([&](frmSX& window) {
            QCOMPARE(site.Port().Line()->commPort, 3);
            QCOMPARE(QString::fromStdString(site.Port().Line()->settings), settings);
            QCOMPARE(site.Port().Line()->handshaking, handshaking);
            QCOMPARE(window.Modem(), modem);
        });
    }

    static void lineFollowsTheEditorNotTheFile()
    {
        Fixture site("Dispositivo=STX30\r\nMODEM=0\r\nBaud=4800\r\nHandshake=HDW");
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

    static void modelAndClockOfEachDevice_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("model");
        QTest::addColumn<bool>("clock");
        QTest::newRow("1.1") << "STX11" << 11 << false;
        QTest::newRow("2.0 is queried as a 3.0") << "STX20" << 30 << true;
        QTest::newRow("3.0") << "STX30" << 30 << true;
        QTest::newRow("Buffer") << "STX40" << 40 << true;
    }

    static void modelAndClockOfEachDevice()
    {
        QFETCH(const QString, device);
        QFETCH(const int, model);
        QFETCH(const bool, clock);
        Fixture site("Dispositivo=" + device);

        site.Visit([&](frmSX& window) {
            QCOMPARE(window.ModelloSX(), model);
            QCOMPARE(SiteWindow::Part<QPushButton>(window, "cmdImpostaDataOra").isEnabled(), clock);
            QVERIFY(SiteWindow::Part<QPushButton>(window, "cmdStato").isEnabled());
            QVERIFY(SiteWindow::Part<QPushButton>(window, "cmdChiudi").isEnabled());
        });
    }

    static void devicesWithoutABufferHaveNoButton_data()
    {
        QTest::addColumn<QString>("device");
        QTest::newRow("Pabx") << "COM";
        QTest::newRow("Buffer") << "BUFF";
    }

    static void devicesWithoutABufferHaveNoButton()
    {
        QFETCH(const QString, device);
        Fixture site("Dispositivo=" + device);

        QVERIFY(!IsEnabled(site.Editor().At<QPushButton>("cmdSX")));
    }

    static void windowIsModalAndOpensNothing()
    {
        Fixture site("Dispositivo=STX30");

        site.Visit([&](frmSX& window) {
            QVERIFY(window.isModal());
            QVERIFY(!site.Port().IsOpen());
        });
        QCOMPARE(site.Editor().Focus(), "cmdSX");
    }

    // Uses the site's modem settings and the device's own line settings.
    static void remoteSiteIsDialledAndHungUp()
    {
        Fixture site(
            "Dispositivo=STX40\r\nMODEM=1\r\nStringaModem=ATX3\r\nStringaReset=AT&F\r\nNumeroTel=ATDP0123");
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

    // The clock stands still in the program's own event loop, so only the key can end these waits.
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
        Fixture site("Dispositivo=STX30\r\nMODEM=1\r\nStringaReset=Z");

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
