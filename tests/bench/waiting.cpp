// The cost of waiting for a device: processor time while the device is silent, and the delay from the last
// byte of a reply to the return of the wait. Each is compared with a loop that never rests. Over a
// pseudo-terminal, with the real port.
#include "core/clock.h"
#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/buffer/qt_serial_port.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <pty.h>
#include <random>
#include <stdexcept>
#include <string>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace corvrec
{

namespace
{

// A reply as long as a Stratobox's.
constexpr std::string_view kReply = "0131072  045 V012003N6V1.22211126102000*";
constexpr std::string_view kRequest = "\x02";

class SpinningPump final : public EventPump
{
public:
    void Process(std::optional<std::int64_t> /*deadlineTick*/) override
    {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
};

// The device's side of a pseudo-terminal: answers each request after a pause and records the time.
class Device
{
public:
    Device()
    {
        termios raw{};
        cfmakeraw(&raw);
        std::array<char, 128> name{};
        if (openpty(&master_, &slave_, name.data(), &raw, nullptr) != 0)
            throw std::runtime_error("no pseudo-terminal");
        qputenv("CORVREC_COM1", name.data());
        thread_ = std::thread([this] { Answer(); });
    }

    ~Device()
    {
        // Any other byte than a request ends the thread.
        [[maybe_unused]] const auto count = write(slave_, "q", 1);
        thread_.join();
        close(slave_);
        close(master_);
    }

    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    std::chrono::steady_clock::time_point Written() const { return written_.load(); }

private:
    void Answer()
    {
        std::mt19937 random(1); // a fixed seed
        std::uniform_int_distribution<int> pauseUs(2000, 20000);
        char request = 0;
        while (read(master_, &request, 1) == 1 && request == kRequest.front()) {
            std::this_thread::sleep_for(std::chrono::microseconds(pauseUs(random)));
            // Taken before the write, since the wait may return before this thread continues.
            written_ = std::chrono::steady_clock::now();
            if (write(master_, kReply.data(), kReply.size()) < 0)
                return;
        }
    }

    int master_ = -1;
    int slave_ = -1;
    std::atomic<std::chrono::steady_clock::time_point> written_{};
    std::thread thread_;
};

double ProcessorMs()
{
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

struct Figures {
    double silentMs = 0; // processor time
    double medianMs = 0;
    double most95Ms = 0;
};

Figures Measure(EventPump& events, int silenceMs, int replies)
{
    Device device;
    SystemClock clock;
    QtSerialPort port;
    CancelFlag cancel;
    ReplyWait wait(port, clock, events, cancel);
    port.Configure({.commPort = 1, .settings = "9600,N,8,1", .handshaking = 0});
    port.Open();

    Figures figures;
    const double before = ProcessorMs();
    wait.ForText(silenceMs, "*");
    figures.silentMs = ProcessorMs() - before;

    std::vector<double> delaysMs;
    for (int i = 0; i < replies; ++i) {
        std::string reply;
        port.Output(kRequest);
        wait.ForText(30000, "*", reply);
        const auto delay = std::chrono::steady_clock::now() - device.Written();
        delaysMs.push_back(std::chrono::duration<double, std::milli>(delay).count());
    }
    std::ranges::sort(delaysMs);
    figures.medianMs = delaysMs.at(delaysMs.size() / 2);
    figures.most95Ms = delaysMs.at(delaysMs.size() * 95 / 100);
    return figures;
}

void Print(const char* name, const Figures& figures)
{
    std::printf("%-10s %14.2f %14.3f %14.3f\n", name, figures.silentMs, figures.medianMs, figures.most95Ms);
}

int Run(int silenceMs, int replies)
{
    SystemClock clock;
    QtEventPump resting(clock);
    SpinningPump spinning;
    std::printf("%d ms of silence, %d replies of %zu bytes; all figures in ms\n", silenceMs, replies,
                kReply.size());
    std::printf("%-10s %14s %14s %14s\n", "", "processor time", "median delay", "95 % below");
    Print("resting", Measure(resting, silenceMs, replies));
    Print("spinning", Measure(spinning, silenceMs, replies));
    return 0;
}

} // namespace

} // namespace corvrec

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOption({"silence", "Length of the wait for a silent device.", "ms", "10000"});
    options.addOption({"replies", "Replies to wait for.", "count", "300"});
    options.process(application);
    return corvrec::Run(options.value("silence").toInt(), std::max(1, options.value("replies").toInt()));
}
