#include "core/clock.h"
#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/running_lab.h"
#include "tools/lab/buffer_line.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/buffer/qt_serial_port.h"

#include <QTemporaryFile>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <system_error>
#include <utility>

namespace corvrec
{

namespace
{

constexpr int kPort = 2;

LineSettings Settings(int port = kPort, const std::string& settings = "9600,N,8,1", int handshaking = 0)
{
    return {.commPort = port, .settings = settings, .handshaking = handshaking};
}

// Counts passes: a port that rests for a whole wait needs as many passes as there are events.
class CountingPump final : public EventPump
{
public:
    explicit CountingPump(EventPump& pump)
        : pump_(pump)
    {
    }

    void Process(std::optional<std::int64_t> deadlineTick) override
    {
        ++passes_;
        pump_.Process(deadlineTick);
    }

    [[nodiscard]] int Passes() const { return passes_; }

private:
    EventPump& pump_;
    int passes_ = 0;
};

// A device, the real port to it, which is open, and everything that a wait needs.
struct Line {
    explicit Line(std::unique_ptr<lab::LineDevice> device, const LineSettings& settings = Settings())
        : lab(std::move(device), kPort)
    {
        port.Configure(settings);
        port.Open();
    }

    RunningLab lab;
    QtSerialPort port;
    SystemClock clock;
    QtEventPump pump{clock};
    CountingPump counted{pump};
    CancelFlag cancel;
    ReplyWait wait{port, clock, counted, cancel};
};

std::unique_ptr<lab::LineDevice> Mirror()
{
    return std::make_unique<Answering>([](std::string_view bytes) { return std::string(bytes); });
}

// Answers the first bytes with a text, and the next ones with nothing.
std::unique_ptr<lab::LineDevice> Answer(std::string text)
{
    return std::make_unique<Answering>(
        [text = std::move(text)](std::string_view) mutable { return std::exchange(text, {}); });
}

std::unique_ptr<lab::LineDevice> Buffer(const lab::Faults& faults)
{
    const auto clock = std::chrono::sys_days{std::chrono::year{2026} / 11 / 21};
    return std::make_unique<lab::BufferLine>(lab::SimulatedBuffer(BufferModel::stratobox30, clock, 0),
                                             faults);
}

// Fulfils the promise after this many bytes, whatever the port's thread is doing. Answers the first ones.
std::unique_ptr<lab::LineDevice> Listener(std::size_t count, std::promise<std::string>& heard,
                                          std::string answer = {})
{
    return std::make_unique<Answering>(
        [count, answer, bytes = std::string(), promise = &heard](std::string_view received) mutable {
            bytes += received;
            if (promise != nullptr && bytes.size() >= count)
                std::exchange(promise, nullptr)->set_value(bytes);
            return std::exchange(answer, {});
        });
}

// Sends NULs endlessly after the first received byte.
class NulFlood final : public lab::LineDevice
{
public:
    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        isAsked_ = isAsked_ || !bytes.empty();
    }
    std::string Send(std::int64_t /*nowMs*/) override
    {
        return isAsked_ ? std::string(4096, '\0') : std::string();
    }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override
    {
        return isAsked_ ? std::optional<std::int64_t>(0) : std::nullopt;
    }
    void Disconnect() override { isAsked_ = false; }
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    bool isAsked_ = false;
};

// The promised bytes, or none when they do not arrive.
std::string Heard(std::promise<std::string>& promise)
{
    std::future<std::string> heard = promise.get_future();
    return heard.wait_for(kPatience) == std::future_status::ready ? heard.get() : std::string();
}

// Polls until this many bytes have arrived, without handling events. Returns the number after a while in any
// case.
int CountOf(SerialPort& port, int count)
{
    const SystemClock clock;
    const std::int64_t start = clock.TickMs();
    while (port.InBufferCount() < count && clock.TickMs() - start < kPatienceMs) {
    }
    return port.InBufferCount();
}

// The bytes that the system still holds for the port. Polling makes it deliver what it holds back.
int BytesWithTheSystem()
{
    const std::string device = qgetenv("CORVREC_COM2").toStdString();
    for (const auto& each : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // the list contains the directory's own descriptor
        if (std::filesystem::read_symlink(each.path(), gone) != device)
            continue;
        pollfd state{.fd = std::stoi(each.path().filename()), .events = POLLIN, .revents = 0};
        int count = 0;
        if (poll(&state, 1, 0) >= 0 && ioctl(state.fd, FIONREAD, &count) == 0)
            return count;
    }
    return -1;
}

bool Throws(const std::function<void()>& call)
{
    try {
        call();
    } catch (const PortError&) {
        return true;
    }
    return false;
}

std::string EveryByte(unsigned first)
{
    std::string bytes;
    for (unsigned code = first; code <= 0xFF; ++code)
        bytes += static_cast<char>(code);
    return bytes;
}

} // namespace

class qt_serial_port_test : public QObject
{
    Q_OBJECT

private slots:
    static void refusesToOpen_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("settings");

        QTest::newRow("no number") << "" << 0 << "9600,N,8,1";
        QTest::newRow("no device") << "/dev/corvrec-none" << kPort << "9600,N,8,1";
        QTest::newRow("no terminal") << "/dev/null" << kPort << "9600,N,8,1";
        for (const char* const settings :
             {",N,8,1", "9600,,8,1", "9600,X,8,1", "9600,N,,1", "9600,N,9,1", "9600,N,8,", "9600,N,8", ""})
            QTest::addRow("settings \"%s\"", settings) << "lab" << kPort << settings;
    }

    static void refusesToOpen()
    {
        QFETCH(const QString, device);
        QFETCH(const int, port);
        QFETCH(const QString, settings);
        const RunningLab lab(Mirror(), kPort);
        if (device != "lab")
            qputenv("CORVREC_COM2", device.toUtf8());
        QtSerialPort refused;
        refused.Configure(Settings(port, settings.toStdString()));

        QVERIFY(Throws([&refused] { refused.Open(); }));
        QVERIFY(!refused.IsOpen());
        QVERIFY(Throws([&refused] { refused.InBufferCount(); }));
    }

    static void opensExclusivelyAndAgain()
    {
        Line line(Mirror());
        QtSerialPort second;
        second.Configure(Settings());
        line.port.Output("left");
        QCOMPARE(CountOf(line.port, 4), 4);

        QVERIFY(Throws([&second] { second.Open(); }));
        QVERIFY(!second.IsOpen());
        QVERIFY(Throws([&line] { line.port.Open(); }));
        QVERIFY(line.port.IsOpen());

        line.port.Close();
        QVERIFY(!line.port.IsOpen());
        second.Open();
        second.Output("new");
        QCOMPARE(CountOf(second, 3), 3);
        QCOMPARE(second.Input(), "new");
        second.Close();
        line.port.Open();
        line.port.Output("again");
        QCOMPARE(CountOf(line.port, 5), 5);
        QCOMPARE(line.port.Input(), "again");
    }

    static void opensWithSettingsThatAPseudoTerminalLacks()
    {
        for (const char* const settings :
             {"9600,N,8,1", "4800,E,7,1", "2400,O,7,2", "115200,N,8,1", "300,M,8,1", "1200,S,5,1.5"}) {
            for (const int handshaking : {0, 1, 2}) {
                Line line(Mirror(), Settings(kPort, settings, handshaking));

                QVERIFY(line.port.IsOpen());
                line.port.Output("A");
                QCOMPARE(CountOf(line.port, 1), 1);
                QCOMPARE(line.port.Input(), "A");
            }
        }
    }

    static void closedPortThrows()
    {
        QtSerialPort port;

        QVERIFY(Throws([&port] { port.InBufferCount(); }));
        QVERIFY(Throws([&port] { port.Input(); }));
        QVERIFY(Throws([&port] { port.Output("x"); }));
        QVERIFY(Throws([&port] { port.WaitUntilSent(50); }));
        QVERIFY(!Throws([&port] {
            port.ClearInput();
            port.ClearOutput();
            port.Close();
        }));
        QVERIFY(!port.CDHolding());
    }

    // Without handling events.
    static void everyByteExceptNulIsEchoed()
    {
        Line line(Mirror());

        line.port.Output(EveryByte(0));

        QCOMPARE(CountOf(line.port, 255), 255);
        QCOMPARE(line.port.Input(), EveryByte(1));
        QVERIFY(!line.port.CDHolding());
        QVERIFY(line.port.IsOpen()); // the failing query does not close the port
    }

    static void takesOneByOneOrAll()
    {
        Line line(Answer("reply"));
        line.port.Output("?");
        QCOMPARE(CountOf(line.port, 5), 5);

        line.port.SetInputLen(1);
        QCOMPARE(line.port.Input(), "r");
        QCOMPARE(line.port.InBufferCount(), 4);
        line.port.SetInputLen(0);
        QCOMPARE(line.port.Input(), "eply");
        QCOMPARE(line.port.Input(), "");
    }

    static void nulsDoNotCountAsInput()
    {
        Line line(Answer(std::string(3000, '\0') + std::string("x\0\0y", 4)));
        line.port.Output("?");

        QCOMPARE(CountOf(line.port, 2), 2);
        QCOMPARE(line.port.Input(), "xy");
    }

    static void holdsNoMoreThanItsBuffer()
    {
        std::string sent;
        for (int i = 0; i < 5000; ++i)
            sent += static_cast<char>('0' + i % 10);
        Line line(Answer(sent));
        line.port.Output("?");
        QCOMPARE(CountOf(line.port, 1024), 1024);

        QTest::qWait(50); // handling events does not read more
        QCOMPARE(line.port.InBufferCount(), 1024);

        std::string received;
        QVERIFY(QTest::qWaitFor(
            [&] {
                received += line.port.Input();
                return received.size() >= sent.size();
            },
            kPatienceMs));
        QCOMPARE(received, sent);
    }

    static void clearsEveryBuffer()
    {
        Line line(Answer(std::string(3000, 'x')));
        line.port.Output("?");
        QCOMPARE(CountOf(line.port, 1024), 1024);
        // 1024 are in our buffer, 1024 in Qt's, the rest in the system.
        QVERIFY(QTest::qWaitFor([] { return BytesWithTheSystem() >= 3000 - 2 * 1024; }, kPatienceMs));

        line.port.ClearInput();

        QCOMPARE(line.port.InBufferCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(line.port.InBufferCount(), 0);
    }

    static void sendsWithoutHandlingEvents()
    {
        std::promise<std::string> heard;
        Line line(Listener(7, heard));

        line.port.Output("at once");

        QCOMPARE(Heard(heard), "at once");
    }

    static void sendsBeforeItCloses()
    {
        const std::string text(100'000, 'x'); // more than the system accepts at once
        std::promise<std::string> heard;
        Line line(Listener(text.size(), heard));

        line.port.Output(text);
        line.port.Close();

        QCOMPARE(Heard(heard).size(), text.size());
    }

    static void softwareHandshakeSwallowsItsCharacters()
    {
        Line line(Answer("\x11"
                         "a\x13"
                         "b"
                         "\x11"),
                  Settings(kPort, "9600,N,8,1", 1));
        line.port.Output("?");

        QCOMPARE(CountOf(line.port, 2), 2);
        QCOMPARE(line.port.Input(), "ab");
    }

    // Output that the device has stopped is not lost either.
    static void closingFreesAStoppedLine()
    {
        std::promise<std::string> heard;
        Line line(Listener(4, heard, "x\x13"), Settings(kPort, "9600,N,8,1", 1));
        line.port.Output("?");
        QCOMPARE(CountOf(line.port, 1), 1); // the XOFF has arrived too
        line.port.Output("+++");
        QVERIFY(line.port.IsOpen());

        line.port.Close();

        QCOMPARE(Heard(heard), "?+++");
    }

    static void receivesAByteAfterAClearedFlood()
    {
        // More than any buffer holds, and then one letter each time.
        Line line(std::make_unique<Answering>([length = std::size_t{3000}](std::string_view) mutable {
            return std::string(std::exchange(length, 1), 'x');
        }));
        line.port.Output("?");
        // Until nothing more arrives because Qt's own buffer is full.
        for (std::int64_t quiet = 0; quiet < line.clock.TickMs();) {
            quiet = line.clock.TickMs() + 50;
            line.pump.Process(quiet);
        }
        line.port.ClearInput();
        line.port.Output("?");

        const std::int64_t deadline = line.clock.TickMs() + 60'000;
        std::string reply;
        QCOMPARE(line.wait.ForCount(60'000, 1, reply), Wait::success);

        QVERIFY(line.clock.TickMs() < deadline); // the byte ended the rest
    }

    static void restsWhileNothingOrNulsCome()
    {
        for (const std::string& answer : {std::string(), std::string(500, '\0')}) {
            Line line(Answer(answer));
            line.port.Output("?");

            std::string reply;
            QCOMPARE(line.wait.ForCount(500, 1, reply), Wait::timeOut);

            QCOMPARE(reply, "");
            QVERIFY2(line.counted.Passes() <= (answer.empty() ? 5 : 10),
                     qPrintable(QString::number(line.counted.Passes())));
        }
    }

    static void endlessNulsEndInATimeOut()
    {
        Line line(std::make_unique<NulFlood>());
        line.port.Output("?");

        std::string reply;
        QCOMPARE(line.wait.ForCount(500, 1, reply), Wait::timeOut);

        QCOMPARE(reply, "");
    }

    static void floodIsBounded()
    {
        Line line(Buffer({.endless = true}));
        line.port.Output("\x13");

        std::string reply;
        const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;
        do { // once, unless a busy machine delivers too little
            QCOMPARE(line.wait.ForText(1000, "*", reply, 2000), Wait::timeOut);
        } while (reply.size() < 2001 && line.clock.TickMs() < deadline);

        QCOMPARE(reply.size(), std::size_t{2001});
        QVERIFY(line.port.InBufferCount() <= 1024);
        line.port.Close();
    }

    static void cancelOrUnpluggingEndsAWait()
    {
        for (const bool isUnplugged : {false, true}) {
            Line line(Answer(""));
            QTimer::singleShot(50, QCoreApplication::instance(), [&] {
                line.cancel.raised = !isUnplugged;
                if (isUnplugged)
                    line.lab.Unplug();
            });
            const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;
            Wait result = Wait::success;

            QCOMPARE(Throws([&] { result = line.wait.ForText(kPatienceMs, "\x13"); }), isUnplugged);

            QCOMPARE(result, isUnplugged ? Wait::success : Wait::cancelled);
            QVERIFY(line.clock.TickMs() < deadline);
            QVERIFY2(line.counted.Passes() <= 10, qPrintable(QString::number(line.counted.Passes())));
            QCOMPARE(line.port.InputLen(), 0);
            QCOMPARE(line.port.IsOpen(), !isUnplugged);
        }
    }

    static void unpluggedDeviceThrowsEverywhere()
    {
        Line line(Mirror());

        line.lab.Unplug();
        QVERIFY(QTest::qWaitFor([&line] { return !line.port.IsOpen(); }, kPatienceMs));

        QVERIFY(Throws([&line] { line.port.InBufferCount(); }));
        QVERIFY(Throws([&line] { line.port.Input(); }));
        QVERIFY(Throws([&line] { line.port.Output("x"); }));
        QVERIFY(!line.port.CDHolding());
        line.port.ClearInput();
        line.port.ClearOutput();
        QVERIFY(Throws([&line] { line.port.Open(); })); // nothing is plugged in

        const RunningLab other(Mirror(), kPort);
        line.port.Open();
        QCoreApplication::processEvents(); // events of the earlier loss do not close it again
        line.port.Output("back");
        QCOMPARE(CountOf(line.port, 4), 4);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::qt_serial_port_test> registered;
#include "qt_serial_port_test.moc"
