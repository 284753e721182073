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

// The real port and everything that a wait over it needs.
struct RealLine {
    explicit RealLine(const LineSettings& settings = Settings()) { port.Configure(settings); }

    QtSerialPort port;
    SystemClock clock;
    QtEventPump pump{clock};
    CountingPump counted{pump};
    CancelFlag cancel;
    ReplyWait wait{port, clock, counted, cancel};
};

// Echoes what it receives.
class Mirror final : public lab::LineDevice
{
public:
    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override { bytes_ += bytes; }
    std::string Send(std::int64_t /*nowMs*/) override { return std::exchange(bytes_, {}); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override { bytes_.clear(); }
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::string bytes_;
};

// Answers the first byte with more than any buffer holds, and every other one with one letter.
class Flooder final : public lab::LineDevice
{
public:
    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        if (!bytes.empty())
            answer_ = std::exchange(length_, 1);
    }
    std::string Send(std::int64_t /*nowMs*/) override
    {
        std::string bytes;
        bytes.resize(std::exchange(answer_, 0), 'x');
        return bytes;
    }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override {}
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::size_t length_ = 3000;
    std::size_t answer_ = 0;
};

// Fulfils the promise after this many bytes, whatever the port's thread is doing.
class Listener final : public lab::LineDevice
{
public:
    Listener(std::size_t count, std::promise<std::string>& heard)
        : count_(count)
        , heard_(&heard)
    {
    }

    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        bytes_ += bytes;
        if (heard_ != nullptr && bytes_.size() >= count_)
            std::exchange(heard_, nullptr)->set_value(bytes_);
    }
    std::string Send(std::int64_t /*nowMs*/) override { return {}; }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override {}
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::size_t count_;
    std::promise<std::string>* heard_;
    std::string bytes_;
};

// Answers the first byte with a letter and XOFF, and never sends XON. Fulfils the promise after four bytes.
class Stopper final : public lab::LineDevice
{
public:
    explicit Stopper(std::promise<std::string>& heard)
        : listener_(4, heard)
    {
    }

    void Receive(std::string_view bytes, std::int64_t nowMs) override
    {
        listener_.Receive(bytes, nowMs);
        answer_.Receive(bytes, nowMs);
    }
    std::string Send(std::int64_t nowMs) override { return answer_.Send(nowMs); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override {}
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    Listener listener_;
    OneAnswer answer_{"x\x13"};
};

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

std::unique_ptr<lab::LineDevice> Answer(const std::string& text)
{
    return std::make_unique<OneAnswer>(text);
}

std::unique_ptr<lab::LineDevice> Buffer(const lab::Faults& faults)
{
    const auto clock = std::chrono::sys_days{std::chrono::year{2026} / 11 / 21};
    return std::make_unique<lab::BufferLine>(lab::SimulatedBuffer(lab::Model::stratobox30, clock, 0), faults);
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
        QTest::newRow("no speed") << "lab" << kPort << ",N,8,1";
        QTest::newRow("no parity") << "lab" << kPort << "9600,,8,1";
        QTest::newRow("unknown parity") << "lab" << kPort << "9600,X,8,1";
        QTest::newRow("no data bits") << "lab" << kPort << "9600,N,,1";
        QTest::newRow("too many data bits") << "lab" << kPort << "9600,N,9,1";
        QTest::newRow("no stop bits") << "lab" << kPort << "9600,N,8,";
        QTest::newRow("too few parts") << "lab" << kPort << "9600,N,8";
        QTest::newRow("nothing") << "lab" << kPort << "";
    }

    static void refusesToOpen()
    {
        QFETCH(QString, device);
        QFETCH(int, port);
        QFETCH(QString, settings);
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        if (device != "lab")
            qputenv("CORVREC_COM2", device.toUtf8());
        QtSerialPort refused;
        refused.Configure(Settings(port, settings.toStdString()));

        QVERIFY(Throws([&refused] { refused.Open(); }));
        QVERIFY(!refused.IsOpen());
        QVERIFY(Throws([&refused] { refused.InBufferCount(); }));
    }

    static void opensExclusively()
    {
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        QtSerialPort first;
        first.Configure(Settings());
        QtSerialPort second;
        second.Configure(Settings());

        first.Open();
        QVERIFY(Throws([&second] { second.Open(); }));
        QVERIFY(!second.IsOpen());

        first.Close();
        second.Open();
        QVERIFY(second.IsOpen());
    }

    static void opensWithSettingsThatAPseudoTerminalLacks_data()
    {
        QTest::addColumn<QString>("settings");
        QTest::addColumn<int>("handshaking");

        for (const char* const settings :
             {"9600,N,8,1", "4800,E,7,1", "2400,O,7,2", "115200,N,8,1", "300,M,8,1", "1200,S,5,1.5"}) {
            for (const int handshaking : {0, 1, 2})
                QTest::addRow("%s handshaking %d", settings, handshaking) << settings << handshaking;
        }
    }

    static void opensWithSettingsThatAPseudoTerminalLacks()
    {
        QFETCH(QString, settings);
        QFETCH(int, handshaking);
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        QtSerialPort port;
        port.Configure(Settings(kPort, settings.toStdString(), handshaking));

        port.Open();

        QVERIFY(port.IsOpen());
        port.Output("A");
        QCOMPARE(CountOf(port, 1), 1);
        QCOMPARE(port.Input(), "A");
    }

    static void opensAgainAfterClosing()
    {
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("left");
        QCOMPARE(CountOf(port, 4), 4);

        port.Close();
        QVERIFY(!port.IsOpen());
        port.Open();

        port.Output("new");
        QCOMPARE(CountOf(port, 3), 3);
        QCOMPARE(port.Input(), "new");
    }

    static void refusesToOpenTwice()
    {
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();

        QVERIFY(Throws([&port] { port.Open(); }));

        QVERIFY(port.IsOpen());
    }

    static void closedPortThrows()
    {
        QtSerialPort port;

        QVERIFY(Throws([&port] { port.InBufferCount(); }));
        QVERIFY(Throws([&port] { port.Input(); }));
        QVERIFY(Throws([&port] { port.Output("x"); }));
    }

    static void closedPortIsClearedInSilence()
    {
        QtSerialPort port;

        QVERIFY(!Throws([&port] {
            port.ClearInput();
            port.ClearOutput();
            port.Close();
        }));
        QVERIFY(!port.CDHolding());
    }

    static void everyByteExceptNulIsEchoed()
    {
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();

        port.Output(EveryByte(0));

        QCOMPARE(CountOf(port, 255), 255);
        QCOMPARE(port.Input(), EveryByte(1));
    }

    static void countsWithoutHandlingEvents()
    {
        const RunningLab lab(Answer("reply"), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("?");

        QCOMPARE(CountOf(port, 5), 5);
    }

    static void takesOneByOneOrAll()
    {
        const RunningLab lab(Answer("reply"), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("?");
        QCOMPARE(CountOf(port, 5), 5);

        port.SetInputLen(1);
        QCOMPARE(port.Input(), "r");
        QCOMPARE(port.InBufferCount(), 4);
        port.SetInputLen(0);
        QCOMPARE(port.Input(), "eply");
        QCOMPARE(port.Input(), "");
    }

    static void dropsNuls()
    {
        const RunningLab lab(Answer(std::string("\0r\0\0ep\0ly\0", 10)), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("?");

        QCOMPARE(CountOf(port, 5), 5);
        QCOMPARE(port.Input(), "reply");
    }

    static void nulsDoNotCountAsInput()
    {
        const RunningLab lab(Answer(std::string(3000, '\0') + "x"), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("?");

        QCOMPARE(CountOf(port, 1), 1);
        QCOMPARE(port.Input(), "x");
    }

    static void holdsNoMoreThanItsBuffer()
    {
        std::string sent;
        for (int i = 0; i < 5000; ++i)
            sent += static_cast<char>('0' + i % 10);
        const RunningLab lab(Answer(sent), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("?");
        QCOMPARE(CountOf(port, 1024), 1024);

        QTest::qWait(50); // handling events does not read more
        QCOMPARE(port.InBufferCount(), 1024);

        std::string received;
        QVERIFY(QTest::qWaitFor(
            [&] {
                received += port.Input();
                return received.size() >= sent.size();
            },
            kPatienceMs));
        QCOMPARE(received, sent);
    }

    static void clearsEveryBuffer()
    {
        const RunningLab lab(Answer(std::string(3000, 'x')), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();
        port.Output("?");
        QCOMPARE(CountOf(port, 1024), 1024);
        // 1024 are in our buffer, 1024 in Qt's, the rest in the system.
        QVERIFY(QTest::qWaitFor([] { return BytesWithTheSystem() >= 3000 - 2 * 1024; }, kPatienceMs));

        port.ClearInput();

        QCOMPARE(port.InBufferCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(port.InBufferCount(), 0);
    }

    static void sendsWithoutHandlingEvents()
    {
        std::promise<std::string> heard;
        const RunningLab lab(std::make_unique<Listener>(7, heard), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();

        port.Output("at once");

        QCOMPARE(Heard(heard), "at once");
    }

    static void sendsBeforeItCloses()
    {
        const std::string text(100'000, 'x'); // more than the system accepts at once
        std::promise<std::string> heard;
        const RunningLab lab(std::make_unique<Listener>(text.size(), heard), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();

        port.Output(text);
        port.Close();

        QCOMPARE(Heard(heard).size(), text.size());
    }

    static void carrierIsNotHeld()
    {
        const RunningLab lab(std::make_unique<Mirror>(), kPort);
        QtSerialPort port;
        port.Configure(Settings());
        port.Open();

        QVERIFY(!port.CDHolding());
        QVERIFY(port.IsOpen()); // the failing query does not close the port
    }

    static void softwareHandshakeSwallowsItsCharacters()
    {
        const RunningLab lab(Answer("\x11"
                                    "a\x13"
                                    "b"
                                    "\x11"),
                             kPort);
        QtSerialPort port;
        port.Configure(Settings(kPort, "9600,N,8,1", 1));
        port.Open();
        port.Output("?");

        QCOMPARE(CountOf(port, 2), 2);
        QCOMPARE(port.Input(), "ab");
    }

    // Output that the device has stopped is not lost either.
    static void closingFreesAStoppedLine()
    {
        std::promise<std::string> heard;
        const RunningLab lab(std::make_unique<Stopper>(heard), kPort);
        QtSerialPort port;
        port.Configure(Settings(kPort, "9600,N,8,1", 1));
        port.Open();
        port.Output("?");
        QCOMPARE(CountOf(port, 1), 1); // the XOFF has arrived too
        port.Output("+++");
        QVERIFY(port.IsOpen());

        port.Close();

        QCOMPARE(Heard(heard), "?+++");
    }

    static void receivesAByteAfterAClearedFlood()
    {
        const RunningLab lab(std::make_unique<Flooder>(), kPort);
        RealLine line;
        line.port.Open();
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

    static void restsWhileNothingComes()
    {
        const RunningLab lab(Buffer({.silence = true}), kPort);
        RealLine line;
        line.port.Open();
        line.port.Output("\x13");

        QCOMPARE(line.wait.ForText(500, "\x13"), Wait::timeOut);

        QVERIFY2(line.counted.Passes() <= 5, qPrintable(QString::number(line.counted.Passes())));
    }

    static void restsWhileNulsCome()
    {
        const RunningLab lab(Answer(std::string(500, '\0')), kPort);
        RealLine line;
        line.port.Open();
        line.port.Output("?");

        std::string reply;
        QCOMPARE(line.wait.ForCount(500, 1, reply), Wait::timeOut);

        QCOMPARE(reply, "");
        QVERIFY2(line.counted.Passes() <= 10, qPrintable(QString::number(line.counted.Passes())));
    }

    static void endlessNulsEndInATimeOut()
    {
        const RunningLab lab(std::make_unique<NulFlood>(), kPort);
        RealLine line;
        line.port.Open();
        line.port.Output("?");

        std::string reply;
        QCOMPARE(line.wait.ForCount(500, 1, reply), Wait::timeOut);

        QCOMPARE(reply, "");
    }

    static void cancelEndsTheRest()
    {
        const RunningLab lab(Buffer({.silence = true}), kPort);
        RealLine line;
        line.port.Open();
        QTimer::singleShot(50, QCoreApplication::instance(), [&line] { line.cancel.raised = true; });

        const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;
        QCOMPARE(line.wait.ForText(kPatienceMs, "\x13"), Wait::cancelled);

        QVERIFY(line.clock.TickMs() < deadline);
    }

    static void floodIsBounded()
    {
        const RunningLab lab(Buffer({.endless = true}), kPort);
        RealLine line;
        line.port.Open();
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

    static void unpluggedDeviceEndsAWait()
    {
        RunningLab lab(Buffer({.silence = true}), kPort);
        RealLine line;
        line.port.Open();
        QTimer::singleShot(50, QCoreApplication::instance(), [&lab] { lab.Unplug(); });

        const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;
        QVERIFY(Throws([&line] { line.wait.ForText(kPatienceMs, "\x13"); }));

        QVERIFY(line.clock.TickMs() < deadline);
        QVERIFY2(line.counted.Passes() <= 10, qPrintable(QString::number(line.counted.Passes())));
        QCOMPARE(line.port.InputLen(), 0);
        QVERIFY(!line.port.IsOpen());
    }

    static void unpluggedDeviceThrowsEverywhere()
    {
        RunningLab lab(std::make_unique<Mirror>(), kPort);
        RealLine line;
        line.port.Open();

        lab.Unplug();
        QVERIFY(QTest::qWaitFor([&line] { return !line.port.IsOpen(); }, kPatienceMs));

        QVERIFY(Throws([&line] { line.port.InBufferCount(); }));
        QVERIFY(Throws([&line] { line.port.Input(); }));
        QVERIFY(Throws([&line] { line.port.Output("x"); }));
        QVERIFY(!line.port.CDHolding());
        line.port.ClearInput();
        line.port.ClearOutput();
        QVERIFY(Throws([&line] { line.port.Open(); })); // nothing is plugged in
    }

    static void unpluggedPortOpensAnotherDevice()
    {
        RealLine line;
        {
            RunningLab lab(std::make_unique<Mirror>(), kPort);
            line.port.Open();
            lab.Unplug();
            QVERIFY(Throws([&line] {
                std::string reply;
                line.wait.ForCount(60'000, 1, reply);
            }));
        }

        const RunningLab other(std::make_unique<Mirror>(), kPort);
        line.port.Open();
        QCoreApplication::processEvents(); // events of the earlier loss do not close it again

        line.port.Output("back");
        QCOMPARE(CountOf(line.port, 4), 4);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::qt_serial_port_test> registered;
#include "qt_serial_port_test.moc"
