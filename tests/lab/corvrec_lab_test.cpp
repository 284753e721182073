#include "tests/support/patience.h"
#include "tests/support/readable_bytes.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace corvrec::lab
{

namespace
{

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

// Reads to the end of a line or of the stream; stops early when nothing comes for too long.
std::string ReadLine(int descriptor)
{
    std::string line;
    pollfd ready{.fd = descriptor, .events = POLLIN, .revents = 0};
    for (char c = 0; poll(&ready, 1, kPatienceMs) > 0 && read(descriptor, &c, 1) == 1;) {
        line += c;
        if (c == '\n')
            break;
    }
    return line;
}

// The program, with its standard output and standard error captured.
class Program
{
public:
    explicit Program(std::vector<std::string> arguments)
    {
        if (pipe2(output_.data(), O_CLOEXEC) != 0 || pipe2(errors_.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions{};
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, output_[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, errors_[1], STDERR_FILENO);
        arguments.insert(arguments.begin(), CORVREC_LAB);
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        const int result = posix_spawn(&pid_, CORVREC_LAB, &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(output_[1]);
        close(errors_[1]);
        if (result != 0)
            throw std::runtime_error("the program does not start");
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    ~Program()
    {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        close(output_[0]);
        close(errors_[0]);
    }

    std::string OutputLine() { return ReadLine(output_[0]); }
    std::string AllOutput() { return All(output_[0]); }
    std::string AllErrors() { return All(errors_[0]); }

    void Signal(int signal) const { kill(pid_, signal); }

    // Waits for the program's end. Returns its exit status, or minus the signal that ended it.
    int End()
    {
        int status = 0;
        waitpid(std::exchange(pid_, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    static std::string All(int descriptor)
    {
        std::string all;
        for (std::string line = ReadLine(descriptor); !line.empty(); line = ReadLine(descriptor))
            all += line;
        return all;
    }

    pid_t pid_ = 0;
    std::array<int, 2> output_{};
    std::array<int, 2> errors_{};
};

// The device announced in a line "CORVREC_COMn=…", opened as a serial port would be.
class Line
{
public:
    explicit Line(const std::string& announced)
        : descriptor_(open(Name(announced).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (descriptor_ < 0)
            throw std::runtime_error("cannot open what was announced: " + announced);
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    ~Line() { close(descriptor_); }

    [[nodiscard]] int Descriptor() const { return descriptor_; }

    void Send(const std::string& bytes) const
    {
        if (write(descriptor_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            throw std::runtime_error("cannot send");
    }

    [[nodiscard]] std::string Receive(std::size_t count) const
    {
        std::string bytes;
        pollfd ready{.fd = descriptor_, .events = POLLIN, .revents = 0};
        for (char c = 0;
             bytes.size() < count && poll(&ready, 1, kPatienceMs) > 0 && read(descriptor_, &c, 1) == 1;)
            bytes += c;
        return bytes;
    }

    // Whether the other end was closed.
    [[nodiscard]] bool IsHungUp() const
    {
        pollfd state{.fd = descriptor_, .events = 0, .revents = 0};
        return poll(&state, 1, kPatienceMs) > 0 && (state.revents & POLLHUP) != 0;
    }

private:
    static std::string Name(const std::string& announced)
    {
        return announced.substr(announced.find('=') + 1, announced.size() - announced.find('=') - 2);
    }

    int descriptor_;
};

TEST(CorvrecLab, IsRawFromTheStart)
{
    Program program({});
    const Line line(program.OutputLine());

    termios settings{};
    ASSERT_EQ(tcgetattr(line.Descriptor(), &settings), 0);

    EXPECT_EQ(settings.c_lflag & static_cast<tcflag_t>(ICANON | ECHO | ISIG), 0U);
    EXPECT_EQ(settings.c_oflag & static_cast<tcflag_t>(OPOST), 0U);
    EXPECT_EQ(settings.c_iflag & static_cast<tcflag_t>(ICRNL | IXON), 0U);
}

TEST(CorvrecLab, SimulatesEachDeviceOnItsOwnPort)
{
    Program program({"--port", "3", "--model", "1.1", "--port", "2", "--clock", "09:05 31/12/26"});
    const std::string announced = program.OutputLine();
    EXPECT_THAT(announced, MatchesRegex("CORVREC_COM3=/dev/pts/[0-9]+\n"));
    const Line first(announced);
    const Line second(program.OutputLine());

    first.Send("\x02");
    second.Send("\x02");

    EXPECT_EQ(Readable(first.Receive(18)), "<02>010032768   12 U<05>");
    EXPECT_EQ(Readable(second.Receive(41)), "<02>0524288   12.5M  5  1N 4.10311226090501*");
}

TEST(CorvrecLab, TracesToStandardOutput)
{
    Program program({});
    const Line line(program.OutputLine());

    line.Send("\x13");

    EXPECT_THAT(program.OutputLine(), MatchesRegex(" +[0-9]+\\.[0-9]+ COM1 opened\n"));
    EXPECT_THAT(program.OutputLine(), MatchesRegex(" +[0-9]+\\.[0-9]+ COM1 < 13  \\.\n"));
    EXPECT_THAT(program.OutputLine(), MatchesRegex(" +[0-9]+\\.[0-9]+ COM1 > 13  \\.\n"));
}

TEST(CorvrecLab, TracesIntoAFileOrNotAtAll)
{
    const std::filesystem::path file = testing::TempDir() + "corvrec_lab_trace_" + std::to_string(getpid());
    for (const bool isQuiet : {false, true}) {
        Program program(isQuiet ? std::vector<std::string>{"--quiet"}
                                : std::vector<std::string>{"--trace", file.string()});
        const Line line(program.OutputLine());
        line.Send("\x13");
        ASSERT_EQ(line.Receive(1), "\x13");

        program.Signal(SIGTERM);

        EXPECT_EQ(program.End(), 0);
        EXPECT_EQ(program.AllOutput(), "");
    }
    std::ifstream trace(file);
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(trace), {}), HasSubstr("COM1 < 13  .\n"));
    std::filesystem::remove(file);
}

TEST(CorvrecLab, HangsUpTheModemWhenThePortIsClosed)
{
    Program program({"--modem", "--dial-delay", "0"});
    const std::string announced = program.OutputLine();
    {
        const Line line(announced);
        line.Send("ATDT1\r");
        ASSERT_EQ(line.Receive(16), "\r\nCONNECT 9600\r\n");
    }

    const Line again(announced);
    again.Send("AT\r");

    EXPECT_EQ(again.Receive(6), "\r\nOK\r\n");
}

TEST(CorvrecLab, DiscardsTheRestOfTheLastConnection)
{
    Program program({});
    const std::string announced = program.OutputLine();
    {
        const Line line(announced);
        line.Send("\x02");
        ASSERT_EQ(line.Receive(1), "\x02"); // the other 40 have arrived too
    }
    // When the closing is traced, nothing of the first connection is left.
    std::string traced;
    do {
        traced = program.OutputLine();
    } while (!traced.empty() && traced.find("closed") == std::string::npos);

    const Line again(announced);
    again.Send("\x13");

    EXPECT_EQ(again.Receive(1), "\x13");
}

TEST(CorvrecLab, EndsWhenItsDeviceIsUnplugged)
{
    Program program({"--fault", "drop=1"});
    const Line line(program.OutputLine());

    line.Send("\x02");

    EXPECT_EQ(line.Receive(1), "\x02") << "the last byte is still delivered";
    EXPECT_TRUE(line.IsHungUp());
    EXPECT_EQ(program.End(), 0);
    EXPECT_THAT(program.AllOutput(), testing::EndsWith("COM1 unplugged\n"));
}

TEST(CorvrecLab, PausesADeviceThatNobodyReads)
{
    Program program({"--fault", "endless", "--quiet"});
    const Line line(program.OutputLine());

    line.Send("\x13");

    const std::size_t many = 300'000;
    EXPECT_EQ(line.Receive(many).size(), many);
}

TEST(CorvrecLab, EndsCleanlyOnASignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Program program({});
        const Line line(program.OutputLine());

        program.Signal(signal);

        EXPECT_EQ(program.End(), 0);
        EXPECT_TRUE(line.IsHungUp());
    }
}

TEST(CorvrecLab, PrintsInformationOrAnErrorAndEnds)
{
    struct Call {
        std::vector<std::string> arguments;
        std::string output; // how it begins
        std::string errors;
        int status;
    };
    constexpr auto kTryHelp = "\nTry corvrec-lab --help\n";
    for (const Call& call : {
             Call{{"--help"}, "Usage: corvrec-lab [OPTION]...\n", "", 0},
             Call{{"--version"}, "corvrec-lab " CORVREC_VERSION "\n", "", 0},
             Call{{"--port", "0"},
                  "",
                  std::string("corvrec-lab: --port: \"0\" is not a whole number from 1 on") + kTryHelp,
                  2},
             Call{{"--trace", "/nowhere/trace"},
                  "",
                  std::string("corvrec-lab: --trace: \"/nowhere/trace\" cannot be written") + kTryHelp,
                  2},
         }) {
        Program program(call.arguments);

        const std::string output = program.AllOutput();
        EXPECT_THAT(output, StartsWith(call.output));
        EXPECT_EQ(output.empty(), call.output.empty());
        EXPECT_EQ(program.AllErrors(), call.errors);
        EXPECT_EQ(program.End(), call.status);
    }
}

} // namespace

} // namespace corvrec::lab
