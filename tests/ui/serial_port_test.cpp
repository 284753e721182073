// The real port of each system. What only one system has is tested elsewhere.
#include "core/clock.h"
#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "tests/support/patience.h"
#include "tests/support/plugged_device.h"
#include "tests/support/registered_test.h"
#include "tests/support/throws.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/buffer/system_serial_port.h"

#include <QTest>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvrec
{

namespace
{

constexpr auto kMirror = "mirror";

LineSettings Settings(const std::string& settings = "9600,N,8,1", int handshaking = 0)
{
    return {.commPort = PluggedDevice::kPort, .settings = settings, .handshaking = handshaking};
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
    explicit Line(const std::string& description, const LineSettings& settings = Settings())
        : device(description)
    {
        port->Configure(settings);
        port->Open();
    }

    PluggedDevice device;
    std::unique_ptr<SerialPort> port = MakeSerialPort();
    SystemClock clock;
    QtEventPump pump{clock};
    CountingPump counted{pump};
    CancelFlag cancel;
    ReplyWait wait{*port, clock, counted, cancel};
};

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

std::string EveryByte(unsigned first)
{
    std::string bytes;
    for (unsigned code = first; code <= 0xFF; ++code)
        bytes += static_cast<char>(code);
    return bytes;
}

} // namespace

class serial_port_test : public QObject
{
    Q_OBJECT

private slots:
    static void refusesToOpen_data()
    {
        QTest::addColumn<bool>("isPlugged");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("settings");

        QTest::newRow("no number") << true << 0 << "9600,N,8,1";
        QTest::newRow("no device") << false << PluggedDevice::kPort << "9600,N,8,1";
        for (const char* const settings :
             {",N,8,1", "9600,,8,1", "9600,X,8,1", "9600,N,,1", "9600,N,9,1", "9600,N,8,", "9600,N,8", ""})
            QTest::addRow("settings \"%s\"", settings) << true << PluggedDevice::kPort << settings;
    }

    static void refusesToOpen()
    {
        QFETCH(const bool, isPlugged);
        QFETCH(const int, port);
        QFETCH(const QString, settings);
        PluggedDevice device(kMirror);
        if (!isPlugged)
            device.Unplug();
        const auto refused = MakeSerialPort();
        refused->Configure({.commPort = port, .settings = settings.toStdString(), .handshaking = 0});

        QVERIFY(Throws([&refused] { refused->Open(); }));
        QVERIFY(!refused->IsOpen());
        QVERIFY(Throws([&refused] { refused->InBufferCount(); }));
    }

    static void opensAgainWithoutOldInput()
    {
        Line line(kMirror);
        line.port->Output("left");
        QCOMPARE(CountOf(*line.port, 4), 4);

        QVERIFY(Throws([&line] { line.port->Open(); }));
        QVERIFY(line.port->IsOpen());
        line.port->Close();
        QVERIFY(!line.port->IsOpen());
        line.port->Open();

        QCOMPARE(line.port->InBufferCount(), 0);
        line.port->Output("again");
        QCOMPARE(CountOf(*line.port, 5), 5);
        QCOMPARE(line.port->Input(), "again");
    }

    static void opensWithSettingsThatAPseudoTerminalLacks()
    {
        for (const char* const settings :
             {"9600,N,8,1", "4800,E,7,1", "2400,O,7,2", "115200,N,8,1", "300,M,8,1", "1200,S,5,1.5"}) {
            for (const int handshaking : {0, 1, 2}) {
                Line line(kMirror, Settings(settings, handshaking));

                QVERIFY(line.port->IsOpen());
                line.port->Output("A");
                QCOMPARE(CountOf(*line.port, 1), 1);
                QCOMPARE(line.port->Input(), "A");
            }
        }
    }

    static void closedPortThrows()
    {
        const auto port = MakeSerialPort();

        QVERIFY(Throws([&port] { port->InBufferCount(); }));
        QVERIFY(Throws([&port] { port->Input(); }));
        QVERIFY(Throws([&port] { port->Output("x"); }));
        QVERIFY(Throws([&port] { port->WaitUntilSent(50); }));
        QVERIFY(!Throws([&port] {
            port->ClearInput();
            port->ClearOutput();
            port->Close();
        }));
        QVERIFY(!port->CDHolding());
    }

    // Without handling events. With parity too, where the system changes or marks damaged characters.
    static void everyByteExceptNulIsEchoed()
    {
        for (const char* const settings : {"9600,N,8,1", "9600,E,8,1"}) {
            Line line(kMirror, Settings(settings));

            line.port->Output(EveryByte(0));

            QCOMPARE(CountOf(*line.port, 255), 255);
            QCOMPARE(line.port->Input(), EveryByte(1));
            QCOMPARE(line.device.Received(256), EveryByte(0));
            QVERIFY(!line.port->CDHolding());
            QVERIFY(line.port->IsOpen()); // the failing query does not close the port
        }
    }

    static void takesOneByOneOrAll()
    {
        Line line(Answers({"reply", ""}));
        line.port->Output("?");
        QCOMPARE(CountOf(*line.port, 5), 5);

        line.port->SetInputLen(1);
        QCOMPARE(line.port->Input(), "r");
        QCOMPARE(line.port->InBufferCount(), 4);
        line.port->SetInputLen(0);
        QCOMPARE(line.port->Input(), "eply");
        QCOMPARE(line.port->Input(), "");
    }

    static void nulsDoNotCountAsInput()
    {
        Line line(Answers({std::string(3000, '\0') + std::string("x\0\0y", 4), ""}));
        line.port->Output("?");

        QCOMPARE(CountOf(*line.port, 2), 2);
        QCOMPARE(line.port->Input(), "xy");
    }

    static void holdsNoMoreThanItsBuffer()
    {
        std::string sent;
        for (int i = 0; i < 5000; ++i)
            sent += static_cast<char>('0' + i % 10);
        Line line(Answers({sent, ""}));
        line.port->Output("?");
        QCOMPARE(CountOf(*line.port, 1024), 1024);

        QTest::qWait(50); // handling events does not read more
        QCOMPARE(line.port->InBufferCount(), 1024);

        std::string received;
        QVERIFY(QTest::qWaitFor(
            [&] {
                received += line.port->Input();
                return received.size() >= sent.size();
            },
            kPatienceMs));
        QCOMPARE(received, sent);
    }

    static void clearsWhatHasArrived()
    {
        Line line(Answers({std::string(3000, 'x'), "y"}));
        line.port->Output("?");
        QCOMPARE(CountOf(*line.port, 1024), 1024);

        line.port->ClearInput();

        QCOMPARE(line.port->InBufferCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(line.port->InBufferCount(), 0);
        line.port->Output("?");
        QCOMPARE(CountOf(*line.port, 1), 1);
        QCOMPARE(line.port->Input(), "y");
    }

    static void sendsWithoutHandlingEvents()
    {
        Line line(Answers({""}));

        line.port->Output("at once");

        QCOMPARE(line.device.Received(7), "at once");
    }

    static void sendsBeforeItCloses()
    {
        const std::string text(100'000, 'x'); // more than the system accepts at once
        Line line(Answers({""}));

        line.port->Output(text);
        line.port->Close();

        QCOMPARE(line.device.Received(text.size()).size(), text.size());
    }

    // Nothing waits for a device that accepts nothing, except within the time-out.
    static void deviceThatDoesNotReadHoldsNothingUp()
    {
        const std::string text(200'000, 'x'); // more than the system accepts
        Line line(Answers({""}));
        line.device.StopReading();

        line.port->Output(text);
        line.port->Output("rest");
        line.port->WaitUntilSent(0);
        line.port->WaitUntilSent(60);
        QVERIFY(line.port->IsOpen());
        QCOMPARE(line.port->InBufferCount(), 0);

        line.device.ReadAgain();
        line.port->WaitUntilSent(kPatienceMs);
        QCOMPARE(line.device.Received(text.size() + 4), text + "rest");
    }

    static void clearedOutputIsNotSent()
    {
        const std::string text(200'000, 'x');
        Line line(Answers({""}));
        line.device.StopReading();
        line.port->Output(text);

        line.port->ClearOutput();
        line.device.ReadAgain();
        line.port->Output("END");
        line.port->WaitUntilSent(kPatienceMs);
        line.port->Close();

        const std::string received = line.device.Received(3);
        QVERIFY(received.size() < text.size());
        line.port->Open();
        line.port->Output("!");
        QVERIFY(QTest::qWaitFor([&] { return line.device.Received(0).ends_with("END!"); }, kPatienceMs));
    }

    static void closesALineThatAcceptsNothing()
    {
        Line line(Answers({""}));
        line.device.StopReading();
        line.port->Output(std::string(200'000, 'x'));

        line.port->Close();

        QVERIFY(!line.port->IsOpen());
        line.device.ReadAgain();
        line.port->Open();
        line.port->Output("!");
        QVERIFY(QTest::qWaitFor([&] { return line.device.Received(0).ends_with("!"); }, kPatienceMs));
    }

    static void softwareHandshakeSwallowsItsCharacters()
    {
        Line line(Answers({"\x11"
                           "a\x13"
                           "b"
                           "\x11",
                           ""}),
                  Settings("9600,N,8,1", 1));
        line.port->Output("?");

        QCOMPARE(CountOf(*line.port, 2), 2);
        QCOMPARE(line.port->Input(), "ab");
    }

    // Output that the device has stopped is not lost either.
    static void closingFreesAStoppedLine()
    {
        Line line(Answers({"x\x13", ""}), Settings("9600,N,8,1", 1));
        line.port->Output("?");
        QCOMPARE(CountOf(*line.port, 1), 1); // the XOFF has arrived too
        line.port->Output("+++");
        QVERIFY(line.port->IsOpen());

        line.port->Close();

        QCOMPARE(line.device.Received(4), "?+++");
    }

    static void receivesAByteAfterAClearedFlood()
    {
        // More than any buffer holds, and then one letter each time.
        Line line(Answers({std::string(3000, 'x'), "x"}));
        line.port->Output("?");
        // Until nothing more arrives because the port's buffers are full.
        for (std::int64_t quiet = 0; quiet < line.clock.TickMs();) {
            quiet = line.clock.TickMs() + 50;
            line.pump.Process(quiet);
        }
        line.port->ClearInput();
        line.port->Output("?");

        const std::int64_t deadline = line.clock.TickMs() + 60'000;
        std::string reply;
        QCOMPARE(line.wait.ForCount(60'000, 1, reply), Wait::success);

        QVERIFY(line.clock.TickMs() < deadline); // the byte ended the rest
    }

    // A byte ends a rest at once, in each of many requests.
    static void noReplyIsMissed()
    {
        constexpr int kRequests = 1000;
        Line line(kMirror);
        const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;

        for (int i = 0; i < kRequests; ++i) {
            line.port->Output("?");
            std::string reply;
            QCOMPARE(line.wait.ForCount(kPatienceMs, 1, reply), Wait::success);
            QCOMPARE(reply, "?");
        }

        QVERIFY(line.clock.TickMs() < deadline); // no rest lasted until its deadline
        // A byte, and an event or two that are left from the request before.
        QVERIFY2(line.counted.Passes() <= 4 * kRequests, qPrintable(QString::number(line.counted.Passes())));
    }

    static void restsWhileNothingOrNulsCome()
    {
        for (const std::string& answer : {std::string(), std::string(500, '\0')}) {
            Line line(Answers({answer, ""}));
            line.port->Output("?");

            std::string reply;
            QCOMPARE(line.wait.ForCount(500, 1, reply), Wait::timeOut);

            QCOMPARE(reply, "");
            QVERIFY2(line.counted.Passes() <= (answer.empty() ? 5 : 10),
                     qPrintable(QString::number(line.counted.Passes())));
        }
    }

    static void endlessNulsEndInATimeOut()
    {
        Line line("nuls");
        line.port->Output("?");

        std::string reply;
        QCOMPARE(line.wait.ForCount(500, 1, reply), Wait::timeOut);

        QCOMPARE(reply, "");
    }

    static void floodIsBounded()
    {
        Line line("lab --model 3.0 --fault endless");
        line.port->Output("\x13");

        std::string reply;
        const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;
        do { // once, unless a busy machine delivers too little
            QCOMPARE(line.wait.ForText(1000, "*", reply, 2000), Wait::timeOut);
        } while (reply.size() < 2001 && line.clock.TickMs() < deadline);

        QCOMPARE(reply.size(), std::size_t{2001});
        QVERIFY(line.port->InBufferCount() <= 1024);
        line.port->Close();
    }

    static void cancelOrUnpluggingEndsAWait()
    {
        for (const bool isUnplugged : {false, true}) {
            Line line(Answers({""}));
            QTimer::singleShot(50, QCoreApplication::instance(), [&] {
                line.cancel.raised = !isUnplugged;
                if (isUnplugged)
                    line.device.Unplug();
            });
            const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;
            Wait result = Wait::success;

            QCOMPARE(Throws([&] { result = line.wait.ForText(kPatienceMs, "\x13"); }), isUnplugged);

            QCOMPARE(result, isUnplugged ? Wait::success : Wait::cancelled);
            QVERIFY(line.clock.TickMs() < deadline);
            QVERIFY2(line.counted.Passes() <= 10, qPrintable(QString::number(line.counted.Passes())));
            QCOMPARE(line.port->InputLen(), 0);
            QCOMPARE(line.port->IsOpen(), !isUnplugged);
        }
    }

    static void unpluggedDeviceThrowsEverywhere()
    {
        Line line(kMirror);

        line.device.Unplug();
        QVERIFY(QTest::qWaitFor([&line] { return !line.port->IsOpen(); }, kPatienceMs));

        QVERIFY(Throws([&line] { line.port->InBufferCount(); }));
        QVERIFY(Throws([&line] { line.port->Input(); }));
        QVERIFY(Throws([&line] { line.port->Output("x"); }));
        QVERIFY(Throws([&line] { line.port->WaitUntilSent(50); }));
        QVERIFY(!line.port->CDHolding());
        line.port->ClearInput();
        line.port->ClearOutput();
        QVERIFY(Throws([&line] { line.port->Open(); })); // nothing is plugged in

        const PluggedDevice other(kMirror);
        line.port->Open();
        QCoreApplication::processEvents(); // events of the earlier loss do not close it again
        line.port->Output("back");
        QCOMPARE(CountOf(*line.port, 4), 4);
    }

    static void readingNoticesALostDevice()
    {
        Line line(Answers({""}));
        line.device.Unplug();
        const std::int64_t deadline = line.clock.TickMs() + kPatienceMs;

        bool isNoticed = false;
        while (!isNoticed && line.clock.TickMs() < deadline)
            isNoticed = Throws([&line] { line.port->InBufferCount(); }); // without handling events

        QVERIFY(isNoticed);
    }

    static void bytesOfALostDeviceAreStillRead()
    {
        Line line(Answers({"last", ""}));
        line.port->Output("?");
        QCOMPARE(CountOf(*line.port, 4), 4);

        line.device.Unplug();
        QVERIFY(QTest::qWaitFor([&line] { return !line.port->IsOpen(); }, kPatienceMs));

        QCOMPARE(line.port->InBufferCount(), 4);
        QCOMPARE(line.port->Input(), "last");
        QVERIFY(Throws([&line] { line.port->Input(); }));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::serial_port_test> registered;
#include "serial_port_test.moc"
