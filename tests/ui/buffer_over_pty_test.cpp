#include "core/device/buffer_device.h"
#include "core/device/buffer_status.h"
#include "core/device/modComExtension.h"
#include "core/device/modem_session.h"
#include "tests/support/fake_clock.h"
#include "tests/support/lab_pump.h"
#include "tests/support/registered_test.h"
#include "tools/lab/laboratory.h"
#include "tools/lab/options.h"
#include "ui/buffer/qt_serial_port.h"

#include <QTest>

#include <chrono>
#include <string>

Q_DECLARE_METATYPE(corvrec::lab::Model)

namespace corvrec
{

namespace
{

using namespace std::chrono_literals;

// Milliseconds on the clock that the test moves.
constexpr int kTimeOutMs = 3000;

const ModemSettings kModem{.resetString = "&F", .initString = "X3", .number = "0123", .pulse = false};
constexpr const char* kDialogue = "AT&F\rATX3\rATDT0123\r";

lab::DeviceOptions Device(lab::Model model)
{
    return {.model = model, .clock = std::chrono::sys_days{2026y / 11 / 21} + 18h + 3min};
}

lab::DeviceOptions BehindModem(const lab::ModemBehaviour& modem)
{
    lab::DeviceOptions device = Device(lab::Model::stratobox30);
    device.modem = modem;
    return device;
}

// A device of the laboratory and the real port to it, on a clock that the test moves.
struct Line {
    explicit Line(const lab::DeviceOptions& device)
        : pump(clock, lab::MakeDevice(device, clock.TickMs()))
    {
        port.Configure({.commPort = 2, .settings = "9600,N,8,1", .handshaking = 0});
        port.Open();
    }

    // Everything that the device has received.
    const std::string& Sent()
    {
        port.Close();
        pump.Settle();
        return pump.Received();
    }

    FakeClock clock;
    LabPump pump;
    QtSerialPort port;
    CancelFlag cancel;
    ReplyWait wait{port, clock, pump, cancel};
};

std::string TextOf(TextId id)
{
    return std::to_string(static_cast<int>(id)); // this test needs no string table
}

// The text of the field's label on 21 November 2026 at 18:03:00; string-table texts as their numbers.
QString Shown(const Field& field)
{
    const DateTime now{.year = 2026, .month = 11, .day = 21, .hour = 18, .minute = 3, .second = 0};
    return QString::fromStdString(ShownText(field, now, TextOf));
}

} // namespace

class buffer_over_pty_test : public QObject
{
    Q_OBJECT

private slots:
    static void lineIsCleared()
    {
        Line line(Device(lab::Model::stratobox30));

        SXAzzeraLinea(line.wait, kTimeOutMs);
        SXAzzeraLinea(line.wait, kTimeOutMs);

        QCOMPARE(line.port.InBufferCount(), 0);
        QCOMPARE(line.Sent(), "\x13\x13");
    }

    static void statusArrives_data()
    {
        QTest::addColumn<lab::Model>("model");
        QTest::addColumn<int>("number");
        QTest::addColumn<QByteArray>("reply");

        QTest::newRow("1.1") << lab::Model::stratobox11 << model::stratobox11
                             << QByteArray("\x02"
                                           "010032768   12 U\x05\x01"
                                           "0");
        QTest::newRow("2.0") << lab::Model::stratobox20 << model::stratobox20
                             << QByteArray("\x02"
                                           "0131072   12 M  5  1N63.052111261803*\x13");
        QTest::newRow("3.0") << lab::Model::stratobox30 << model::stratobox30
                             << QByteArray("\x02"
                                           "0131072   12 M  5  1N63.052111261803*\x13");
        QTest::newRow("Buffer") << lab::Model::stratoboxBuffer << model::stratoboxBuffer
                                << QByteArray("\x02"
                                              "0524288   12.5M  5  1N 4.10211126180301*\x13");
    }

    static void statusArrives()
    {
        QFETCH(lab::Model, model);
        QFETCH(int, number);
        QFETCH(QByteArray, reply);
        Line line(Device(model));

        SXAzzeraLinea(line.wait, kTimeOutMs);
        const std::string received = RiceviSXStatus(line.wait, number, kTimeOutMs);

        QCOMPARE(QByteArray::fromStdString(received), reply);
        QCOMPARE(line.Sent(), "\x13\x02\x13");
    }

    static void statusIsDecoded()
    {
        Line line(Device(lab::Model::stratoboxBuffer));

        const std::string reply = RiceviSXStatus(line.wait, model::stratoboxBuffer, kTimeOutMs);
        const BufferStatus status = Sx40Status(reply);

        QCOMPARE(Shown(status.memoria), "0524288");
        QCOMPARE(Shown(status.condizione), "10906"); // partly used
        QCOMPARE(Shown(status.riempimento), "12,5");
        QCOMPARE(Shown(status.ultimoscarico), "16/11/2026 18:03:00");
        QCOMPARE(Shown(status.ultimiDati), "20/11/2026 18:03:00");
        QCOMPARE(Shown(status.guasto), "10913"); // none
        QCOMPARE(Shown(status.firmware), "4.10");
        QCOMPARE(Shown(status.data), "21/11/26");
        QCOMPARE(Shown(status.ora), "18:03");
        QCOMPARE(Shown(status.modem), "10917");     // absent
        QCOMPARE(Shown(status.stampante), "10918"); // present
    }

    static void statusArrivesWhateverItsPace_data()
    {
        QTest::addColumn<int>("pauseMs");
        QTest::addColumn<bool>("burst");
        QTest::addColumn<bool>("nuls");
        QTest::addColumn<bool>("echo");

        QTest::newRow("byte by byte") << 5 << false << false << false;
        QTest::newRow("in a burst") << 0 << true << false << false;
        QTest::newRow("with NULs") << 0 << false << true << false;
        QTest::newRow("with NULs, byte by byte") << 3 << false << true << false;
        QTest::newRow("with an echo") << 0 << false << false << true;
    }

    static void statusArrivesWhateverItsPace()
    {
        QFETCH(int, pauseMs);
        QFETCH(bool, burst);
        QFETCH(bool, nuls);
        QFETCH(bool, echo);
        lab::DeviceOptions device = Device(lab::Model::stratobox30);
        device.faults = {.echo = echo, .nuls = nuls, .burst = burst, .pauseMs = pauseMs};
        Line line(device);

        SXAzzeraLinea(line.wait, kTimeOutMs);
        const std::string reply = RiceviSXStatus(line.wait, model::stratobox30, kTimeOutMs);

        const QByteArray expected = QByteArray(echo ? "\x02" : "") +
                                    "\x02"
                                    "0131072   12 M  5  1N63.052111261803*\x13";
        QCOMPARE(QByteArray::fromStdString(reply).left(expected.size()), expected);
    }

    // A 1.1 with empty memory sends a 0 byte, which the port drops, so the wait for the last byte times out.
    static void zeroByteOfAStatusIsMissing()
    {
        lab::DeviceOptions device = Device(lab::Model::stratobox11);
        device.fields = {{"used", "V"}};
        Line line(device);

        const std::string reply = RiceviSXStatus(line.wait, model::stratobox11, 200);

        QCOMPARE(QByteArray::fromStdString(reply), QByteArray("\x02"
                                                              "010032768   12 \x05\x01"
                                                              "0"));
    }

    static void partOfAStatusIsKept()
    {
        lab::DeviceOptions device = Device(lab::Model::stratobox30);
        device.faults.partial = 8;
        Line line(device);

        const std::string reply = RiceviSXStatus(line.wait, model::stratobox30, 200);

        QCOMPARE(QByteArray::fromStdString(reply), QByteArray("\x02"
                                                              "0131072\x13"));
    }

    static void garbageEndsNoWait()
    {
        lab::DeviceOptions device = Device(lab::Model::stratobox30);
        device.faults = {.garbage = true, .partial = 4};
        Line line(device);

        const std::string reply = RiceviSXStatus(line.wait, model::stratobox30, 200);

        QCOMPARE(QByteArray::fromStdString(reply), QByteArray("\xA7\x95\x94\x96\xB6"));
    }

    static void unpluggedDeviceEndsARequest()
    {
        lab::DeviceOptions device = Device(lab::Model::stratobox30);
        device.faults.dropAfter = 10;
        Line line(device);
        const std::int64_t start = line.clock.TickMs();
        bool isLost = false;

        try {
            QCOMPARE(RiceviSXStatus(line.wait, model::stratobox30, 60'000), "lost"); // throws
        } catch (const PortError&) {
            isLost = true;
        }

        QVERIFY(isLost);
        QVERIFY(line.clock.TickMs() - start < kTimeOutMs);
        QVERIFY(!line.port.IsOpen());
    }

    static void clockIsSet()
    {
        Line line(Device(lab::Model::stratobox30));

        ImpostaDataOra(line.port, line.clock, "09:05", "31/12/26");
        const std::string reply = RiceviSXStatus(line.wait, model::stratobox30, kTimeOutMs);

        const BufferStatus status = Sx30Status(reply);
        QCOMPARE(Shown(status.data), "31/12/26");
        QCOMPARE(Shown(status.ora), "09:05");
        QCOMPARE(line.Sent(), "\x0F"
                              "0905311226\x02\x13");
    }

    static void modemIsDialledAndHungUp()
    {
        Line line(BehindModem({.dialDelayMs = 50}));

        QCOMPARE(InitModem(line.wait, kModem), Connection::connected);
        QVERIFY(CloseModem(line.wait));

        QCOMPARE(line.Sent(), std::string(kDialogue) + "+++ATH\r");
    }

    static void modemThatEchoesIsDialled()
    {
        Line line(BehindModem({.echo = true, .dialDelayMs = 0}));

        QCOMPARE(InitModem(line.wait, kModem), Connection::connected);
        QVERIFY(CloseModem(line.wait));
    }

    static void statusArrivesByModem()
    {
        Line line(BehindModem({.dialDelayMs = 0}));

        QCOMPARE(InitModem(line.wait, kModem), Connection::connected);
        SXAzzeraLinea(line.wait, kTimeOutMs);
        const std::string reply = RiceviSXStatus(line.wait, model::stratobox30, kTimeOutMs);

        QCOMPARE(QByteArray::fromStdString(reply), QByteArray("\x02"
                                                              "0131072   12 M  5  1N63.052111261803*\x13"));
        QVERIFY(CloseModem(line.wait));
    }

    static void busyLineIsNoConnection()
    {
        Line line(BehindModem({.dialAnswer = "BUSY", .dialDelayMs = 0}));
        line.port.Output("ATDT0123\r");

        std::string reply;
        QCOMPARE(line.wait.ForText(300, "CONNECT", reply), Wait::timeOut);

        QCOMPARE(reply, "\r\nBUSY\r\n");
    }

    static void modemThatIsOffDoesNotReply()
    {
        Line line(BehindModem({.silent = true}));

        const std::int64_t start = line.clock.TickMs();
        QCOMPARE(InitModem(line.wait, kModem), Connection::noReply);

        QVERIFY(line.clock.TickMs() - start >= 3000);
        QCOMPARE(line.Sent(), "AT&F\r");
    }

    static void brokenConnectionGivesNoStatus()
    {
        lab::DeviceOptions device = BehindModem({.dialDelayMs = 0});
        device.faults.dropAfter = 1;
        Line line(device);
        QCOMPARE(InitModem(line.wait, kModem), Connection::connected);
        SXAzzeraLinea(line.wait, kTimeOutMs);
        line.pump.Settle();
        line.port.ClearInput(); // discards the modem's report of the break

        QCOMPARE(RiceviSXStatus(line.wait, model::stratobox30, 200), "");

        QVERIFY(line.port.IsOpen()); // the modem is still there
    }

    // Closing the port lowers DTR. The modem must accept commands when it is opened again.
    static void closedPortHangsUp()
    {
        Line line(BehindModem({.dialDelayMs = 0}));
        QCOMPARE(InitModem(line.wait, kModem), Connection::connected);

        line.port.Close();
        line.pump.Settle();
        line.port.Open();

        QCOMPARE(InitModem(line.wait, kModem), Connection::connected);
        QCOMPARE(line.Sent(), std::string(kDialogue) + kDialogue);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::buffer_over_pty_test> registered;
#include "buffer_over_pty_test.moc"
