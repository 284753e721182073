// The real port and the system: which device it opens, who else uses it, and how the line is set. Most tests
// hold the other side of a pseudo-terminal themselves, where they see the settings of the editor's side.
#include "core/clock.h"
#include "core/device/buffer_device.h"
#include "tests/support/registered_test.h"
#include "tests/support/running_lab.h"
#include "tests/support/throws.h"
#include "tools/lab/pty.h"
#include "ui/buffer/qt_serial_port.h"
#include "ui/buffer/serial_device.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace corvrec
{

namespace
{

using namespace std::string_view_literals;

constexpr int kPort = 2;
constexpr const char* kVariable = "CORVREC_COM2";

// Lock directories that a system may have.
constexpr std::array kLockDirectories{"/var/lock", "/run/lock", "/tmp", "/var/tmp"};

termios Settings(const lab::Pty& pty)
{
    termios settings{};
    if (tcgetattr(pty.Line(), &settings) != 0)
        qFatal("no settings");
    return settings;
}

void SetSettings(const lab::Pty& pty, const termios& settings)
{
    if (tcsetattr(pty.Line(), TCSANOW, &settings) != 0)
        qFatal("the settings cannot be changed");
}

// As if an earlier user of the port wanted DTR to stay up when it is closed.
void KeepDtr(const lab::Pty& pty)
{
    termios settings = Settings(pty);
    settings.c_cflag &= ~static_cast<tcflag_t>(HUPCL);
    SetSettings(pty, settings);
}

// Lets the other side send marks itself: FF is no longer doubled.
void SendMarks(const lab::Pty& pty)
{
    termios settings = Settings(pty);
    settings.c_iflag &= ~static_cast<tcflag_t>(PARMRK);
    SetSettings(pty, settings);
}

bool HangsUp(const lab::Pty& pty)
{
    return (Settings(pty).c_cflag & HUPCL) != 0;
}

// The editor's port on a pseudo-terminal whose other side belongs to the test.
struct Line {
    explicit Line(std::string settings = "9600,N,8,1", int handshaking = 0)
    {
        qputenv(kVariable, pty->Name().c_str());
        port.Configure({.commPort = kPort, .settings = std::move(settings), .handshaking = handshaking});
    }
    ~Line() { qunsetenv(kVariable); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    // Waits for this many bytes from the editor; returns what has arrived after a while in any case.
    std::string Read(std::size_t count)
    {
        std::string bytes;
        static_cast<void>(QTest::qWaitFor([&] {
            bytes += pty->Read();
            return bytes.size() >= count;
        }));
        return bytes;
    }

    // Waits for this many characters from the other side, without handling events.
    std::string Input(std::size_t count)
    {
        const SystemClock clock;
        const std::int64_t deadline = clock.TickMs() + 5000;
        std::string characters;
        while (characters.size() < count && clock.TickMs() < deadline)
            characters += port.Input();
        return characters;
    }

    std::unique_ptr<lab::Pty> pty = std::make_unique<lab::Pty>();
    QtSerialPort port;
};

// A lock file for a device below /dev, removed at the end.
class LockFile
{
public:
    LockFile(const QString& directory, const std::string& device, const QByteArray& content)
        : file_(directory + "/LCK.." + QString::fromStdString(device).mid(5).replace('/', '_'))
    {
        if (!file_.open(QIODevice::WriteOnly) || file_.write(content) != content.size())
            qFatal("no lock file");
        file_.close();
    }
    ~LockFile() { file_.remove(); }
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    [[nodiscard]] QByteArray Content() const
    {
        QFile file(file_.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QFile file_;
};

// Another process, which runs until its input ends.
class Process
{
public:
    Process()
    {
        process_.start("cat", {});
        if (!process_.waitForStarted())
            qFatal("no process");
        id_ = static_cast<pid_t>(process_.processId());
    }
    ~Process() { End(); }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t End()
    {
        process_.closeWriteChannel();
        process_.waitForFinished();
        return id_;
    }

    [[nodiscard]] pid_t Id() const { return id_; }

private:
    QProcess process_;
    pid_t id_ = 0;
};

QByteArray AsText(pid_t process)
{
    return QByteArray::number(process).rightJustified(10) + '\n';
}

QByteArray AsBinary(pid_t process)
{
    QByteArray bytes(sizeof process, '\0');
    std::memcpy(bytes.data(), &process, sizeof process);
    return bytes;
}

// Stops the output with its answer to the first byte, and lets it continue after some time.
class PausingDevice final : public lab::LineDevice
{
public:
    void Receive(std::string_view bytes, std::int64_t nowMs) override
    {
        if (bytes.empty())
            return;
        if (!goOnMs_)
            goOnMs_ = nowMs + 100;
    }
    std::string Send(std::int64_t nowMs) override
    {
        std::string bytes = goOnMs_ && !std::exchange(hasStopped_, true) ? "x\x13" : "";
        if (goOnMs_ && nowMs >= *goOnMs_ && !std::exchange(goesOn_, true))
            bytes += '\x11';
        return bytes;
    }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override
    {
        return goesOn_ ? std::nullopt : goOnMs_;
    }
    void Disconnect() override {}
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    bool hasStopped_ = false;
    std::optional<std::int64_t> goOnMs_;
    bool goesOn_ = false;
};

} // namespace

class serial_device_test : public QObject
{
    Q_OBJECT

    static inline std::optional<Process> otherProcess;

private slots:
    static void initTestCase() { otherProcess.emplace(); }
    static void cleanupTestCase() { otherProcess.reset(); }

    static void deviceComesFromTheEnvironmentFirst()
    {
        const QString linked = "/dev/corvrec-com7"; // only if this machine has one
        qputenv("CORVREC_COM7", "/dev/pts/somewhere");
        qputenv("CORVREC_COM0", "/dev/pts/somewhere");

        QCOMPARE(PortDevice(7), "/dev/pts/somewhere");
        QCOMPARE(PortDevice(0), ""); // no device has a number below 1
        QCOMPARE(PortDevice(-1), "");
        qputenv("CORVREC_COM7", "");
        QCOMPARE(PortDevice(7), QFileInfo::exists(linked) ? linked : "/dev/ttyS6");

        qunsetenv("CORVREC_COM7");
        qunsetenv("CORVREC_COM0");
    }

    static void linkIsLockedAsTheDeviceItLeadsTo()
    {
        Line line;
        const QTemporaryDir directory;
        const QString link = directory.filePath("corvrec-com2");
        QVERIFY(QFile::link(QString::fromStdString(line.pty->Name()), link));
        qputenv(kVariable, link.toUtf8());
        const QString lock = "LCK.." + QString::fromStdString(line.pty->Name()).mid(5).replace('/', '_');
        const auto isLocked = [&lock] {
            return std::ranges::any_of(kLockDirectories, [&lock](const char* each) {
                return QFileInfo::exists(QString(each) + '/' + lock);
            });
        };

        line.port.Open();
        QVERIFY(isLocked());
        line.port.Output("x");
        QCOMPARE(line.Read(1), "x");

        line.port.Close();
        QVERIFY(!isLocked());

        // Process 1 is always alive, and belongs to another user unless the test runs as root.
        const LockFile other("/tmp", line.pty->Name(), AsText(1));
        QVERIFY(Throws([&line] { line.port.Open(); }));
    }

    static void onlyALivingProcessLocks_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("locked");

        const pid_t living = otherProcess->Id();
        const pid_t dead = Process().End();
        for (const char* const directory : kLockDirectories) {
            const auto add = [directory](const char* name, const QByteArray& content, bool locked = false) {
                QTest::addRow("%s, %s", directory, name) << directory << content << locked;
            };
            add("text", AsText(living), true);
            add("text without a line feed", AsText(living).chopped(1), true);
            add("text with a name", AsText(living).chopped(1) + " minicom root\n", true);
            add("binary", AsBinary(living), true);
            add("dead process as text", AsText(dead));
            add("dead process in binary", AsBinary(dead));
            add("this process", AsText(getpid())); // left by an earlier process with the same number
            add("garbage", "no number\n");
            add("number and garbage", "1x\n");
            add("no process", AsText(0));
            add("every process", AsText(-1));
            add("every process in binary", AsBinary(-1));
            add("more than a number", "99999999999999999999\n");
            add("an empty line and more", "\n1\n");
        }
    }

    static void onlyALivingProcessLocks()
    {
        QFETCH(const QString, directory);
        QFETCH(const QByteArray, content);
        QFETCH(const bool, locked);
        if (!QFileInfo(directory).isDir() || !QFileInfo(directory).isWritable())
            QSKIP("no such directory here");
        Line line;
        const LockFile lock(directory, line.pty->Name(), content);

        QCOMPARE(Throws([&line] { line.port.Open(); }), locked);

        QCOMPARE(line.port.IsOpen(), !locked);
        if (locked)
            QCOMPARE(lock.Content(), content);
        line.port.Close(); // and removes the lock, if it now owns it
    }

    static void onlyAFileIsALock()
    {
        Line line;
        const QString name = "/tmp/LCK.." + QString::fromStdString(line.pty->Name()).mid(5).replace('/', '_');
        QVERIFY(QDir().mkdir(name));

        const bool isLocked = IsLocked(QString::fromStdString(line.pty->Name()));

        QVERIFY(QDir().rmdir(name));
        QVERIFY(!isLocked);
    }

    static void closingHangsUpAndRestoresTheRest()
    {
        Line line("4800,E,8,1", 1);
        KeepDtr(*line.pty);
        termios before = Settings(*line.pty);

        line.port.Open();
        QVERIFY(HangsUp(*line.pty)); // so that the end of the process hangs up too
        line.port.Close();

        before.c_cflag |= HUPCL;
        const termios after = Settings(*line.pty);
        QCOMPARE(after.c_iflag, before.c_iflag);
        QCOMPARE(after.c_oflag, before.c_oflag);
        QCOMPARE(after.c_cflag, before.c_cflag);
        QCOMPARE(after.c_lflag, before.c_lflag);
    }

    static void parityErrorsAreMarkedWhereThereIsAParity()
    {
        for (const auto& [settings, marked] :
             {std::pair{"9600,N,8,1", false}, std::pair{"4800,E,7,1", true}, std::pair{"2400,O,7,2", true},
              std::pair{"300,M,8,1", true}, std::pair{"1200,S,8,1", true}}) {
            Line line(settings);

            line.port.Open();

            constexpr tcflag_t kMarks = INPCK | PARMRK;
            QCOMPARE(Settings(*line.pty).c_iflag & kMarks, marked ? kMarks : 0);
            QVERIFY(!marked || (Settings(*line.pty).c_iflag & (IGNPAR | ISTRIP)) == 0);
        }
    }

    // The system sends each FF twice, so that it is not taken for a mark.
    static void everyByteArrivesOnALineWithParity()
    {
        Line line("9600,E,8,1");
        line.port.Open();
        std::string bytes;
        for (int code = 1; code <= 0xFF; ++code)
            bytes += static_cast<char>(code);

        QCOMPARE(line.pty->Write(bytes), bytes.size());

        QCOMPARE(line.Input(bytes.size()), bytes);
    }

    // A pseudo-terminal has no parity and marks nothing. With the doubling of FF switched off, the test can
    // send what a line with parity errors would deliver.
    static void damagedCharacterIsAQuestionMark()
    {
        constexpr std::string_view kMarked = "a\xFF\0bc\xFF\0\0\xFF\xFF\xFF\0\xFFz"sv;
        for (const std::size_t portion : {kMarked.size(), std::size_t{1}}) {
            Line line("9600,E,8,1");
            line.port.Open();
            SendMarks(*line.pty);

            std::string characters;
            for (std::size_t at = 0; at < kMarked.size(); at += portion) {
                QCOMPARE(line.pty->Write(kMarked.substr(at, portion)), portion);
                QVERIFY(QTest::qWaitFor([&] {
                    characters += line.port.Input();
                    return !line.pty->HasUnread();
                }));
            }
            const std::string expected = "a?c\xFF?z";
            if (characters.size() < expected.size())
                characters += line.Input(expected.size() - characters.size());

            QCOMPARE(characters, expected);
        }
    }

    static void clearingForgetsAnUnfinishedMark()
    {
        Line line("9600,E,8,1");
        line.port.Open();
        SendMarks(*line.pty);
        line.pty->Write("a\xFF\0"sv);
        QVERIFY(QTest::qWaitFor([&line] { return line.port.InBufferCount() > 0 && !line.pty->HasUnread(); }));
        QCOMPARE(line.port.Input(), "a");
        QCOMPARE(line.port.InBufferCount(), 0); // the unfinished mark has been read

        line.port.ClearInput();
        line.pty->Write("b");

        QCOMPARE(line.Input(1), "b");
    }

    static void outputResumesOnlyAtXon()
    {
        Line line("9600,N,8,1", 1);
        line.port.Open();
        constexpr tcflag_t kHandshake = IXON | IXOFF | IXANY;
        QCOMPARE(Settings(*line.pty).c_iflag & kHandshake, tcflag_t{IXON | IXOFF});
        line.pty->Write("a\x13"
                        "b");
        QCOMPARE(line.Input(2), "ab");

        line.port.Output("+++");
        QTest::qWait(50); // with IXANY it would be sent at once
        QCOMPARE(line.pty->Read(), "");

        line.pty->Write("\x11");
        QCOMPARE(line.Read(3), "+++");
    }

    static void outputThatIsWaitedForIsNotCleared()
    {
        RunningLab lab(std::make_unique<PausingDevice>(), kPort);
        QtSerialPort port;
        port.Configure({.commPort = kPort, .settings = "9600,N,8,1", .handshaking = 1});
        port.Open();
        port.Output("?");
        QVERIFY(QTest::qWaitFor([&port] { return port.InBufferCount() > 0; })); // the XOFF has arrived too
        port.Output("0905311226");

        port.WaitUntilSent(60'000);
        port.ClearOutput();
        port.Close();

        lab.Unplug();
        QCOMPARE(lab.Received(), "?0905311226");
    }

    // The output that is held back is then discarded.
    static void stoppedLineEndsTheWait()
    {
        Line line("9600,N,8,1", 1);
        line.port.Open();
        line.pty->Write("a\x13");
        QCOMPARE(line.Input(1), "a");
        line.port.Output("+++");

        line.port.WaitUntilSent(50);
        QVERIFY(line.port.IsOpen());
        line.port.ClearOutput();

        line.pty->Write("\x11");
        line.port.Output("on");
        QCOMPARE(line.Read(2), "on");
    }

    // The reader is so slow that the system still holds the command when the buffers are cleared.
    static void clockCommandReachesASlowReaderWhole()
    {
        const std::string before(8000, 'x');
        Line line;
        line.port.Open();
        line.port.Output(before);
        SystemClock clock;

        ImpostaDataOra(line.port, clock, "09:05", "31/12/26");
        line.port.ClearInput();
        line.port.ClearOutput();

        const std::string command = "\x0F"
                                    "0905311226";
        QCOMPARE(line.Read(before.size() + command.size()), before + command);
    }

    static void inputOfALostDeviceStaysReadable()
    {
        Line line;
        line.port.Open();
        line.pty->Write("whole reply");
        QVERIFY(QTest::qWaitFor([&line] { return !line.pty->HasUnread(); })); // Qt has read it
        line.port.SetInputLen(1);
        QCOMPARE(line.port.Input(), "w");

        line.pty.reset();
        QVERIFY(QTest::qWaitFor([&line] { return !line.port.IsOpen(); }));

        QCOMPARE(line.port.Input(), "h");
        QCoreApplication::processEvents(); // the port closes
        QVERIFY(Throws([&line] { line.port.Output("x"); }));
        QCOMPARE(line.port.InBufferCount(), 9);
        line.port.SetInputLen(0);
        QCOMPARE(line.port.Input(), "ole reply");
        QVERIFY(Throws([&line] { line.port.InBufferCount(); }));
        QVERIFY(Throws([&line] { line.port.Input(); }));
    }

    static void clearingDiscardsTheInputOfALostDevice()
    {
        Line line;
        line.port.Open();
        line.pty->Write("reply");
        QVERIFY(QTest::qWaitFor([&line] { return !line.pty->HasUnread(); }));
        line.pty.reset();
        QVERIFY(QTest::qWaitFor([&line] { return !line.port.IsOpen(); }));

        line.port.ClearInput();
        QCoreApplication::processEvents();

        QVERIFY(Throws([&line] { line.port.InBufferCount(); }));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::serial_device_test> registered;
#include "serial_device_test.moc"
