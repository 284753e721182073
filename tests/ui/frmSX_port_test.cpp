// The buffer window with the real port of each system and devices that run in a time of their own, as for a
// user. frmSX_lab_test and hostile_devices_test try everything else in time that the test moves.
#include "core/clock.h"
#include "core/device/event_pump.h"
#include "tests/support/buffer_session.h"
#include "tests/support/buffer_window.h"
#include "tests/support/message_log.h"
#include "tests/support/message_probe.h"
#include "tests/support/plugged_device.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample.h"
#include "tests/support/site_window.h"
#include "ui/buffer/qt_event_pump.h"

#include <QApplication>
#include <QTest>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

Q_DECLARE_METATYPE(std::function<void(corvrec::PluggedDevice&)>)

namespace corvrec
{

namespace
{

const std::string kRequest = "\x13\x02\x13";
const std::string kCall = "AT&F\rATX3\rATDT0123\r";
const std::string kHangUp = "+++ATH\r";
constexpr auto kModem = "lab --model 3.0 --modem-echo --dial-delay 20";

// The system's tick, which can run faster so that a silence is shorter, and a fixed time of day.
class QuickClock final : public Clock
{
public:
    explicit QuickClock(int factor)
        : factor_(factor)
    {
    }

    [[nodiscard]] DateTime Now() const override
    {
        return {.year = 2026, .month = 3, .day = 3, .hour = 10, .minute = 20, .second = 30};
    }
    [[nodiscard]] std::int64_t TickMs() const override { return system_.TickMs() * factor_; }
    void Sleep(std::int64_t ms) override { system_.Sleep(ms); }

    // The tick of the system's clock by which this one has passed the tick.
    [[nodiscard]] std::int64_t SystemTick(std::int64_t tick) const { return tick / factor_; }
    [[nodiscard]] const SystemClock& System() const { return system_; }

private:
    int factor_;
    SystemClock system_;
};

// The real pump, and an action in one of its passes.
class ActingPump final : public EventPump
{
public:
    explicit ActingPump(const QuickClock& clock)
        : clock_(clock)
        , pump_(clock.System())
    {
    }

    // In the pass with this number, counted from 0.
    void AtPass(std::size_t pass, std::function<void()> action)
    {
        pass_ = pass;
        action_ = std::move(action);
    }

    void Process(std::optional<std::int64_t> deadlineTick) override
    {
        if (passes_++ == pass_ && action_)
            action_();
        pump_.Process(deadlineTick ? std::optional(clock_.SystemTick(*deadlineTick)) : std::nullopt);
    }

private:
    const QuickClock& clock_;
    QtEventPump pump_;
    std::size_t passes_ = 0;
    std::size_t pass_ = 0;
    std::function<void()> action_;
};

// A site's section for this device.
std::string SiteLines(const std::string& description)
{
    const std::vector<std::pair<const char*, const char*>> codes{
        {"1.1", "STX11"}, {"2.0", "STX20"}, {"3.0", "STX30"}, {"Buffer", "STX40"}};
    std::string lines;
    for (const auto& [model, code] : codes) {
        if (description.find(std::string("--model ") + model) != std::string::npos)
            lines = std::string("Dispositivo=") + code + "\r\n";
    }
    if (description.find("--modem") != std::string::npos)
        lines += "MODEM=1\r\nStringaReset=AT&F\r\nStringaModem=ATX3\r\nNumeroTel=ATDT0123\r\n";
    return lines;
}

// An editor and the device on its port.
struct Desk {
    explicit Desk(const std::string& description, int factor = 1)
        : device(description)
        , clock(factor)
        , editor(clock, pump, SiteLines(description))
    {
    }

    PluggedDevice device;
    QuickClock clock;
    ActingPump pump{clock};
    BufferSession editor;
};

using Act = std::function<void(PluggedDevice&)>;

void CancelTheCall(PluggedDevice& /*device*/)
{
    frmConnessione& dialog = ModemDialog(*OpenWindow());
    if (dialog.isVisible())
        Click(dialog, "cmdAnnulla");
}

void PressEscape(PluggedDevice& /*device*/)
{
    frmConnessione& dialog = ModemDialog(*OpenWindow());
    QTest::keyClick(dialog.isVisible() ? static_cast<QWidget*>(&dialog) : OpenWindow(), Qt::Key_Escape);
}

void LogOff(PluggedDevice& /*device*/)
{
    BufferWindow::LogOff();
}

void PullTheCable(PluggedDevice& device)
{
    device.Unplug();
}

} // namespace

class frmSX_port_test : public QObject
{
    Q_OBJECT

private slots:
    static void everyModelIsShown_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("shown");
        QTest::newRow("1.1") << "1.1"
                             << "0032768|Parziale| 12|01|5|1|No|N/A|01.10|N/A|N/A|Non attivo|Non attiva|N/A";
        constexpr auto k30 =
            "0131072|Parziale| 12|N/A|26/02/2026 10:20:30|02/03/2026 10:20:30|Nessuno|Standard|3.05|"
            "21/11/26|18:03|N/A|N/A|N/A";
        QTest::newRow("2.0") << "2.0" << k30;
        QTest::newRow("3.0") << "3.0" << k30;
        QTest::newRow("Buffer")
            << "Buffer"
            << "0524288|Parziale|12,5|N/A|26/02/2026 10:20:30|02/03/2026 10:20:30|Nessuno|N/A|4.10|"
               "21/11/26|18:03|N/A|Presente|Non presente";
    }

    // At once, in one burst and at 300 baud.
    static void everyModelIsShown()
    {
        QFETCH(const QString, model);
        QFETCH(const QString, shown);
        for (const char* const pace : {"", " --fault burst", " --fault slow=33"}) {
            Desk desk("lab --model " + model.toStdString() + R"( --clock "18:03 21/11/26")" + pace);

            desk.editor.Visit([&shown](frmSX& window) {
                Click(window, "cmdStato");
                QCOMPARE(ShownValues(window).join('|'), shown);
            });

            QCOMPARE(desk.device.Received(kRequest.size()), kRequest);
        }
    }

    static void clockIsSetAndRead()
    {
        Desk desk("lab --model Buffer");

        desk.editor.Visit([](frmSX& window) {
            SetClock(window);
            Click(window, "cmdStato");
            QCOMPARE(ShownValues(window).at(9), "31/12/26");
            QCOMPARE(ShownValues(window).at(10), "09:05");
        });

        const std::string sent = "\x0F"
                                 "0905311226" +
                                 kRequest;
        QCOMPARE(desk.device.Received(sent.size()), sent);
    }

    // A pseudo-terminal has no carrier, so each request dials again.
    static void modemIsDialledAndHungUp()
    {
        Desk desk(kModem);

        desk.editor.Visit([](frmSX& window) {
            SetClock(window);
            Click(window, "cmdStato");
            QCOMPARE(ShownValues(window).at(0), "0131072");
            QCOMPARE(ShownValues(window).at(9), "31/12/26");
            QCOMPARE(ShownValues(window).at(10), "09:05");
        });

        const std::string sent = kCall + "\x0F" + "0905311226" + kCall + kRequest + kHangUp;
        QCOMPARE(desk.device.Received(sent.size()), sent);
    }

    static void silenceIsReported()
    {
        for (const bool byModem : {false, true}) {
            Desk desk(byModem ? "lab --model 3.0 --modem-silent" : "lab --model 3.0 --fault silence", 100);

            desk.editor.Visit([byModem](frmSX& window) {
                MessageProbe message(Qt::Key_Return);
                Click(window, "cmdStato");
                QCOMPARE(message.title(), byModem ? "Connessione" : "Errore");
                QCOMPARE(ShownValues(window), QStringList(14, ""));
            });
        }
    }

    static void missingPortIsReported()
    {
        Desk desk("lab --model 3.0");
        desk.device.Unplug();

        desk.editor.Visit([](frmSX& window) {
            MessageProbe status(Qt::Key_Return);
            Click(window, "cmdStato");
            QCOMPARE(status.title(), "Errore");
            MessageProbe clock(Qt::Key_Return);
            Click(window, "cmdImpostaDataOra");
            QCOMPARE(clock.text(), "Impossibile aprire Com2");
        });
    }

    // The window works again with the next device on the port.
    static void devicePluggedInAgainIsRead()
    {
        Desk desk("lab --model 3.0");

        desk.editor.Visit([&desk](frmSX& window) {
            Click(window, "cmdStato");
            desk.device.Unplug();
            MessageProbe loss(Qt::Key_Return);
            Click(window, "cmdStato");
            QCOMPARE(loss.title(), "Errore");
            const PluggedDevice other("lab --model 3.0 --field memory=7654321");
            Click(window, "cmdStato");
            QCOMPARE(ShownValues(window).at(0), "7654321");
        });
    }

    static void floodsAndNoiseEnd_data()
    {
        QTest::addColumn<QString>("faults");
        for (const char* const faults : {"--fault endless", "--fault endless --fault silence", "--fault nuls",
                                         "--fault garbage --fault echo", "--fault endless --fault nuls"})
            QTest::newRow(faults) << faults;
    }

    static void floodsAndNoiseEnd()
    {
        QFETCH(const QString, faults);
        Desk desk("lab --model 3.0 " + faults.toStdString(), 100);
        const MessageLog boxes;

        desk.editor.Visit(UseAndLeave);
    }

    static void anythingAtEveryStep_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<Act>("act");
        const std::vector<std::pair<const char*, Act>> acts{
            {"left", PressEscape}, {"logged off", LogOff}, {"unplugged", PullTheCable}};
        for (const auto& [name, act] : acts) {
            QTest::addRow("direct, %s", name) << "lab --model Buffer" << act;
            QTest::addRow("by modem, %s", name) << kModem << act;
        }
        QTest::addRow("by modem, cancelled") << kModem << Act(CancelTheCall);
    }

    static void anythingAtEveryStep()
    {
        QFETCH(const QString, description);
        QFETCH(const Act, act);
        const auto steps = SampleOrAll<std::size_t>(17, 37, 1);

        bool happened = true;
        for (std::size_t pass = 0; happened && !QTest::currentTestFailed(); pass += steps) {
            happened = false;
            Desk desk(description.toStdString());
            const MessageLog boxes;
            desk.pump.AtPass(pass, [&] {
                happened = true;
                act(desk.device);
            });
            desk.editor.Visit(UseAndLeave);
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_port_test> registered;
#include "frmSX_port_test.moc"
