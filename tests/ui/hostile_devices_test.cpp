// Devices that misbehave, and users who leave at any moment.
#include "tests/support/buffer_window.h"
#include "tests/support/heap.h"
#include "tests/support/lab_world.h"
#include "tests/support/message_log.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample.h"
#include "tests/support/site_window.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

Q_DECLARE_METATYPE(corvrec::lab::DeviceOptions)
Q_DECLARE_METATYPE(std::function<bool(corvrec::LabWorld&)>)

namespace corvrec
{

namespace
{

// The waits of a status, a call and a hang-up. Each may last its time-out plus a step of the tick, and starts
// with a pass that must not rest.
constexpr std::array kDirectWaitsMs{30000, 30000, 30000};
constexpr std::array kModemWaitsMs{3000, 3000, 120000, 30000, 10000, 10000, 3000, 3000, 120000, 10000, 6000};

template <std::size_t Count>
std::int64_t Longest(const std::array<int, Count>& waitsMs)
{
    std::int64_t sum = 0;
    for (const int each : waitsMs)
        sum += each + 2 * kTickStepMs;
    return sum;
}

std::int64_t LongestVisitMs(const lab::DeviceOptions& device)
{
    constexpr std::int64_t kClockCommandMs = 200;
    return kClockCommandMs + (device.modem ? Longest(kModemWaitsMs) : Longest(kDirectWaitsMs));
}

// The limit for passes of the event loop: one for each byte and each rest, and a few for each wait and each
// window.
std::size_t MostPasses(const LabPump& pump, std::int64_t passedMs)
{
    constexpr std::size_t kOthers = 60;
    return 2 * pump.Sent() + static_cast<std::size_t>(passedMs / LabPump::kLongestRestMs) + kOthers;
}

// What must hold for every visit, whatever happens in it.
void Visit(LabWorld& world, const lab::DeviceOptions& device)
{
    MessageLog boxes;
    const std::int64_t start = world.clock.TickMs();
    world.editor.Visit(UseAndLeave);
    const std::int64_t passedMs = world.clock.TickMs() - start;
    QVERIFY2(passedMs <= LongestVisitMs(device), qPrintable(QString::number(passedMs)));
    QVERIFY2(world.pump.Passes() <= MostPasses(world.pump, passedMs),
             qPrintable(QString("%1 passes, %2 bytes").arg(world.pump.Passes()).arg(world.pump.Sent())));
    QVERIFY(!world.pump.IsHeld());
}

// An action during a request. Returns whether there was anything to act on.
using Act = std::function<bool(LabWorld&)>;

bool PullTheCable(LabWorld& world)
{
    world.pump.Unplug();
    return true;
}

bool CancelTheCall(LabWorld& /*world*/)
{
    frmConnessione& dialog = ModemDialog(*OpenWindow());
    if (!dialog.isVisible())
        return false;
    Click(dialog, "cmdAnnulla");
    return true;
}

bool PressEscape(LabWorld& /*world*/)
{
    frmConnessione& dialog = ModemDialog(*OpenWindow());
    QTest::keyClick(dialog.isVisible() ? static_cast<QWidget*>(&dialog) : OpenWindow(), Qt::Key_Escape);
    return true;
}

// At log-off the window closes even while the modem dialog is open.
bool LogOff(LabWorld& /*world*/)
{
    BufferWindow::LogOff();
    return true;
}

// One case in n is run. Neither n divides the length of a part that repeats in a dialogue.
const std::size_t kSteps = SampleOrAll<std::size_t>(13, 29, 1);
const std::size_t kLengths = SampleOrAll<std::size_t>(5, 11, 1);

std::vector<DeviceRow> Stratoboxes()
{
    std::vector<DeviceRow> rows;
    std::ranges::copy_if(kDevices, std::back_inserter(rows),
                         [](const DeviceRow& row) { return row.kind != DeviceKind::exchange; });
    return rows;
}

lab::DeviceOptions ByModem(lab::DeviceOptions device)
{
    device.modem = lab::ModemBehaviour{.echo = true, .dialDelayMs = 20};
    return device;
}

} // namespace

class hostile_devices_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase()
    {
        qInfo("1 in %zu steps of a dialogue, 1 in %zu lengths of a reply", kSteps, kLengths);
    }

    static void anythingAtEveryStep_data()
    {
        QTest::addColumn<lab::DeviceOptions>("device");
        QTest::addColumn<Act>("act");
        const std::vector<std::pair<const char*, lab::DeviceOptions>> devices{
            {"1.1", LabDevice(BufferModel::stratobox11)},
            {"Buffer", LabDevice(BufferModel::stratoboxBuffer)},
            {"1.1 by modem", ByModem(LabDevice(BufferModel::stratobox11))},
            {"3.0 by modem", ByModem(LabDevice())},
        };
        const std::vector<std::pair<const char*, Act>> acts{
            {"unplugged", PullTheCable}, {"left", PressEscape}, {"logged off", LogOff}};
        for (const auto& [deviceName, device] : devices) {
            for (const auto& [actName, act] : acts)
                QTest::addRow("%s, %s", deviceName, actName) << device << act;
            if (device.modem) // only a call can be cancelled
                QTest::addRow("%s, cancelled", deviceName) << device << Act(CancelTheCall);
        }
    }

    static void anythingAtEveryStep()
    {
        QFETCH(lab::DeviceOptions, device);
        QFETCH(Act, act);

        bool happened = true;
        std::size_t acts = 0;
        for (std::size_t pass = 0; happened && !QTest::currentTestFailed(); pass += kSteps) {
            happened = false;
            LabWorld world(device);
            world.pump.AtPass(pass, [&] {
                happened = true;
                acts += act(world) ? 1 : 0;
            });
            Visit(world, device);
        }
        QVERIFY(acts > 0);
    }

    static void everyFault_data()
    {
        QTest::addColumn<lab::DeviceOptions>("device");
        using lab::Faults;
        const std::vector<std::pair<const char*, Faults>> faults{
            {"silence", {.silence = true}},
            {"garbage", {.garbage = true}},
            {"echo", {.echo = true}},
            {"NULs", {.nuls = true}},
            {"endless", {.endless = true}},
            {"slow", {.pauseMs = 900}},
            {"garbage with NULs and echo", {.garbage = true, .echo = true, .nuls = true}},
            {"endless after a break", {.endless = true, .dropAfter = 3000}},
        };
        for (const DeviceRow& row : Stratoboxes()) {
            for (const auto& [name, fault] : faults) {
                lab::DeviceOptions device = LabDevice(row.model);
                device.faults = fault;
                QTest::addRow("%s, %s", row.shown.data(), name) << device;
                QTest::addRow("%s by modem, %s", row.shown.data(), name) << ByModem(device);
            }
        }
    }

    static void everyFault()
    {
        QFETCH(lab::DeviceOptions, device);
        LabWorld world(device);

        Visit(world, device);
    }

    static void repliesCutAtEveryLength_data()
    {
        QTest::addColumn<BufferModel>("model");
        QTest::addColumn<bool>("burst");
        QTest::addColumn<int>("pauseMs");
        for (const DeviceRow& row : Stratoboxes()) {
            QTest::addRow("%s in one burst", row.shown.data()) << row.model << true << 0;
            QTest::addRow("%s byte by byte", row.shown.data()) << row.model << false << 40;
        }
    }

    // The shown total memory is the received part of it.
    static void repliesCutAtEveryLength()
    {
        QFETCH(const BufferModel, model);
        QFETCH(bool, burst);
        QFETCH(int, pauseMs);
        constexpr std::size_t kLongestReply = 42;
        const bool isCounted = model == BufferModel::stratobox11;
        const std::string head = isCounted ? "\x02"
                                             "011234567"
                                           : "\x02"
                                             "1234567";
        const std::size_t memory = isCounted ? 3 : 1; // position of the field

        for (std::size_t length = 1; length <= kLongestReply && !QTest::currentTestFailed();
             length += kLengths) {
            lab::DeviceOptions device = LabDevice(model);
            device.fields = {{"memory", "1234567"}};
            device.faults.burst = burst;
            device.faults.pauseMs = pauseMs;
            device.faults.partial = length;
            // The answer to the line clear follows the received part: the last two bytes of a 1.1, otherwise
            // the same byte.
            const std::string came = head.substr(0, length) + (isCounted && !burst ? std::string("\x01"
                                                                                                 "0")
                                                                                         .substr(0, length)
                                                                                   : "\x13");
            const std::string shown =
                length >= head.size() ? "1234567" : came.substr(std::min(memory, came.size()), 7);

            LabWorld world(device);
            MessageLog boxes;
            world.editor.Visit([&shown](frmSX& window) {
                Click(window, "cmdStato");
                QCOMPARE(SiteWindow::Part<QLabel>(window, "lblMemoria").text().toStdString(), shown);
            });
            QCOMPARE(boxes.Texts(), QStringList());
            QVERIFY(!world.pump.IsHeld());
        }
    }

    static void endlessOutputDoesNotFillMemory_data()
    {
        QTest::addColumn<lab::DeviceOptions>("device");
        QTest::newRow("counted") << LabDevice(BufferModel::stratobox11);
        QTest::newRow("with an end mark") << LabDevice(BufferModel::stratoboxBuffer);
        QTest::newRow("by modem") << ByModem(LabDevice());
    }

    static void endlessOutputDoesNotFillMemory()
    {
        QFETCH(lab::DeviceOptions, device);
        device.faults.endless = true;
        device.faults.silence = true; // so that no answer in between ends a wait
        LabWorld world(device);
        MessageLog boxes;
        // 200: a hundred thousand bytes in each wait
        world.pump.SetPassesPerStep(SampleOrAll<std::size_t>(40, 40, 200));
        std::size_t early = 0;
        std::size_t late = 0;

        world.editor.Visit([&](frmSX& window) {
            world.pump.AtPass(4000, [&early] { early = AllocatedBytes(); });
            world.pump.AtPass(SampleOrAll<std::size_t>(20000, 20000, 100000),
                              [&late] { late = AllocatedBytes(); });
            Click(window, "cmdStato");
            QVERIFY(window.isVisible());
        });

        constexpr std::size_t kSlack = 32768; // Qt's own buffers and events
        QVERIFY(early > 0 && late > 0);
        QVERIFY2(late <= early + kSlack, qPrintable(QString("%1 bytes, then %2").arg(early).arg(late)));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::hostile_devices_test> registered;
#include "hostile_devices_test.moc"
