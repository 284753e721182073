#pragma once

#include "core/device/event_pump.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/odd_texts.h"

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace corvrec
{

// A modem with a device at its other end, driven by chance: both answer as they should, send garbage or stay
// silent, refuse the port or disappear. Reports any command to the modem that is not exactly one line.
class ChanceDevice final : public FakePort
{
public:
    ChanceDevice(const Clock& clock, Chance& chance, std::function<void(QString)> report)
        : FakePort(clock)
        , chance_(chance)
        , report_(std::move(report))
    {
    }

    void Open() override
    {
        RefuseOpen(chance_.Percent(10));
        FakePort::Open();
        SetCarrier(chance_.Percent(50));
    }

    void Output(std::string_view bytes) override
    {
        FakePort::Output(bytes);
        const std::size_t end = bytes.find('\r');
        if ((end != std::string_view::npos && end + 1 != bytes.size()) ||
            bytes.find_first_of(std::string_view("\n\0", 2)) != std::string_view::npos)
            report_("more than one line to the modem: " +
                    QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size())));
        if (chance_.Percent(3))
            Lose();
        Receive(AnswerTo(bytes));
    }

private:
    std::string Garbage()
    {
        constexpr std::size_t kLongestReply = 250;
        std::string bytes(chance_.Below(kLongestReply), ' ');
        std::ranges::generate(bytes, [this] { return static_cast<char>(1 + chance_.Below(255)); });
        return bytes;
    }

    std::string AnswerTo(std::string_view bytes)
    {
        if (chance_.Percent(10))
            return {};
        if (chance_.Percent(10))
            return Garbage();
        if (bytes.starts_with("ATD"))
            return "CONNECT 2400\r\n";
        if (bytes == "\x13")
            return "\x13";
        if (bytes == "\x02")
            return "\x02" + Garbage() + "\x03\x13";
        return "OK\r\n";
    }

    Chance& chance_;
    std::function<void(QString)> report_;
};

// Handles the window system's events and advances the time of a wait in leaps, so that no wait takes real
// time.
class LeapingPump final : public EventPump
{
public:
    LeapingPump(FakeClock& clock, Chance& chance)
        : clock_(clock)
        , chance_(chance)
    {
    }

    void Process(std::optional<std::int64_t> deadlineTick) override
    {
        ++depth_;
        QCoreApplication::processEvents();
        --depth_;
        if (deadlineTick && chance_.Percent(50))
            clock_.Advance(std::max<std::int64_t>(*deadlineTick + 1 - clock_.TickMs(), 0));
        else
            clock_.Advance(static_cast<std::int64_t>(chance_.Below(300)));
    }

    // Whether a handler of the program is waiting for events.
    [[nodiscard]] bool IsInside() const { return depth_ > 0; }

private:
    FakeClock& clock_;
    Chance& chance_;
    int depth_ = 0;
};

} // namespace corvrec
