// The real port and what it asks of the system: which device it opens, and who else uses it.
#include "comm/qt_serial_port.h"
#include "comm/serial_device.h"
#include "tools/lab/pty.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace corvrec
{

namespace
{

constexpr int kPort = 2;
constexpr const char* kVariable = "CORVREC_COM2";

// Directories for lock files that a system may have.
constexpr std::array kLockDirectories{"/var/lock", "/run/lock", "/tmp", "/var/tmp"};

// The editor's port on a pseudo-terminal whose other side is the test.
struct Line {
    explicit Line(std::string settings = "9600,N,8,1", int handshaking = 0)
    {
        qputenv(kVariable, pty->Name().c_str());
        port.Configure({.commPort = kPort, .settings = std::move(settings), .handshaking = handshaking});
    }
    ~Line() { qunsetenv(kVariable); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    // Waits for so many bytes from the editor; what there is after a while otherwise.
    std::string Read(std::size_t count)
    {
        std::string bytes;
        static_cast<void>(QTest::qWaitFor([&] {
            bytes += pty->Read();
            return bytes.size() >= count;
        }));
        return bytes;
    }

    std::unique_ptr<lab::Pty> pty = std::make_unique<lab::Pty>();
    QtSerialPort port;
};

bool Throws(const std::function<void()>& call)
{
    try {
        call();
    } catch (const PortError&) {
        return true;
    }
    return false;
}

// A lock file for a device, removed at the end. The device's name is below /dev.
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

// Another process, until the end of its input.
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

} // namespace

class serial_device_test : public QObject
{
    Q_OBJECT

private slots:
    static void deviceComesFromTheEnvironmentFirst();
    static void deviceIsTheSystemsPortOtherwise();
    static void noDeviceHasANumberBelowOne();
    static void linkIsLockedAsTheDeviceItLeadsTo();

    static void lockOfALivingProcessKeepsThePortClosed_data();
    static void lockOfALivingProcessKeepsThePortClosed();
    static void lockOfTheDeviceKeepsItsLinkClosed();
    static void lockOfNobodyIsIgnored_data();
    static void lockOfNobodyIsIgnored();
    static void onlyAFileIsALock();
};

void serial_device_test::deviceComesFromTheEnvironmentFirst()
{
    qputenv("CORVREC_COM7", "/dev/pts/somewhere");

    QCOMPARE(PortDevice(7), "/dev/pts/somewhere");

    qunsetenv("CORVREC_COM7");
}

void serial_device_test::deviceIsTheSystemsPortOtherwise()
{
    qputenv("CORVREC_COM7", "");
    const QString linked = "/dev/corvrec-com7"; // this machine's own, if it has one

    QCOMPARE(PortDevice(7), QFileInfo::exists(linked) ? linked : "/dev/ttyS6");

    qunsetenv("CORVREC_COM7");
}

void serial_device_test::noDeviceHasANumberBelowOne()
{
    qputenv("CORVREC_COM0", "/dev/pts/somewhere");

    QCOMPARE(PortDevice(0), "");
    QCOMPARE(PortDevice(-1), "");

    qunsetenv("CORVREC_COM0");
}

void serial_device_test::linkIsLockedAsTheDeviceItLeadsTo()
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
}

void serial_device_test::lockOfALivingProcessKeepsThePortClosed_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("form");

    for (const char* const directory : kLockDirectories) {
        for (const char* const form : {"text", "text without a line feed", "text with a name", "binary"})
            QTest::addRow("%s, %s", directory, form) << directory << form;
    }
}

void serial_device_test::lockOfALivingProcessKeepsThePortClosed()
{
    QFETCH(QString, directory);
    QFETCH(QString, form);
    if (!QFileInfo(directory).isDir() || !QFileInfo(directory).isWritable())
        QSKIP("no such directory here");
    Line line;
    Process other;
    QByteArray content = form == "binary" ? AsBinary(other.Id()) : AsText(other.Id());
    if (form == "text without a line feed")
        content.chop(1);
    if (form == "text with a name")
        content = QByteArray::number(other.Id()).rightJustified(10) + " minicom root\n";
    const LockFile lock(directory, line.pty->Name(), content);

    QVERIFY(Throws([&line] { line.port.Open(); }));
    QVERIFY(!line.port.IsOpen());
    QCOMPARE(lock.Content(), content);

    other.End();
    QVERIFY(!Throws([&line] { line.port.Open(); }));
    line.port.Close(); // with the lock that is now its own
}

void serial_device_test::lockOfTheDeviceKeepsItsLinkClosed()
{
    Line line;
    const QTemporaryDir directory;
    const QString link = directory.filePath("corvrec-com2");
    QVERIFY(QFile::link(QString::fromStdString(line.pty->Name()), link));
    qputenv(kVariable, link.toUtf8());
    // Living always, and of another user unless the test runs as root.
    const LockFile lock("/tmp", line.pty->Name(), AsText(1));

    QVERIFY(Throws([&line] { line.port.Open(); }));
}

void serial_device_test::lockOfNobodyIsIgnored_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QByteArray>("content");

    const pid_t dead = Process().End();
    for (const char* const directory : kLockDirectories) {
        const auto add = [directory](const char* name, const QByteArray& content) {
            QTest::addRow("%s, %s", directory, name) << directory << content;
        };
        add("dead process as text", AsText(dead));
        add("dead process in binary", AsBinary(dead));
        add("this process", AsText(getpid())); // of a time before
        add("garbage", "no number\n");
        add("number and garbage", "1x\n");
        add("no process", AsText(0));
        add("every process", AsText(-1));
        add("every process in binary", AsBinary(-1));
        add("more than a number", "99999999999999999999\n");
        add("an empty line and more", "\n1\n");
    }
}

void serial_device_test::lockOfNobodyIsIgnored()
{
    QFETCH(QString, directory);
    QFETCH(QByteArray, content);
    if (!QFileInfo(directory).isDir() || !QFileInfo(directory).isWritable())
        QSKIP("no such directory here");
    Line line;
    const LockFile lock(directory, line.pty->Name(), content);

    QVERIFY(!Throws([&line] { line.port.Open(); }));

    line.port.Close(); // with the lock that is now its own
}

void serial_device_test::onlyAFileIsALock()
{
    Line line;
    const QString name = "/tmp/LCK.." + QString::fromStdString(line.pty->Name()).mid(5).replace('/', '_');
    QVERIFY(QDir().mkdir(name));

    const bool isLocked = IsLocked(QString::fromStdString(line.pty->Name()));

    QVERIFY(QDir().rmdir(name));
    QVERIFY(!isLocked);
}

} // namespace corvrec

QTEST_GUILESS_MAIN(corvrec::serial_device_test)
#include "serial_device_test.moc"
