// What only Linux's port has; serial_port_test has the rest.
#include "core/clock.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/running_lab.h"
#include "tests/support/throws.h"
#include "ui/buffer/qt_serial_port.h"

#include <QTest>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <system_error>
#include <utility>

namespace corvrec
{

namespace
{

LineSettings Settings()
{
    return {.commPort = 2, .settings = "9600,N,8,1", .handshaking = 0};
}

// Answers the first bytes with a text, and the next ones with nothing.
std::unique_ptr<lab::LineDevice> Answer(std::string text)
{
    return std::make_unique<Answering>(
        [text = std::move(text)](std::string_view) mutable { return std::exchange(text, {}); });
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

} // namespace

class qt_serial_port_test : public QObject
{
    Q_OBJECT

private slots:
    static void refusesWhatIsNoTerminal()
    {
        qputenv("CORVREC_COM2", "/dev/null");
        QtSerialPort port;
        port.Configure(Settings());

        QVERIFY(Throws([&port] { port.Open(); }));
        QVERIFY(!port.IsOpen());
        qunsetenv("CORVREC_COM2");
    }

    static void opensExclusively()
    {
        const RunningLab lab(Answer("new"), 2);
        QtSerialPort first;
        QtSerialPort second;
        first.Configure(Settings());
        second.Configure(Settings());
        first.Open();

        QVERIFY(Throws([&second] { second.Open(); }));
        QVERIFY(!second.IsOpen());
        QVERIFY(first.IsOpen());

        first.Close();
        second.Open();
        second.Output("?");
        QCOMPARE(CountOf(second, 3), 3);
    }

    static void clearsEveryBuffer()
    {
        const RunningLab lab(Answer(std::string(3000, 'x')), 2);
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
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::qt_serial_port_test> registered;
#include "qt_serial_port_test.moc"
