#include "tests/ui/chance_device.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace corvrec
{

namespace
{

constexpr std::size_t kLongestReply = 250;

std::string Garbage(Chance& chance)
{
    std::string bytes(chance.Below(kLongestReply), ' ');
    std::ranges::generate(bytes, [&chance] { return static_cast<char>(1 + chance.Below(255)); });
    return bytes;
}

} // namespace

ChanceDevice::ChanceDevice(const Clock& clock, Chance& chance, std::function<void(QString)> report)
    : FakePort(clock)
    , chance_(chance)
    , report_(std::move(report))
{
}

void ChanceDevice::Open()
{
    RefuseOpen(chance_.Percent(10));
    FakePort::Open();
    SetCarrier(chance_.Percent(50));
}

void ChanceDevice::Output(std::string_view bytes)
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

std::string ChanceDevice::AnswerTo(std::string_view bytes)
{
    if (chance_.Percent(10))
        return {};
    if (chance_.Percent(10))
        return Garbage(chance_);
    if (bytes.starts_with("ATD"))
        return "CONNECT 2400\r\n";
    if (bytes == "\x13")
        return "\x13";
    if (bytes == "\x02")
        return "\x02" + Garbage(chance_) + "\x03\x13";
    return "OK\r\n";
}

void LeapingPump::Process(std::optional<std::int64_t> deadlineTick)
{
    ++depth_;
    QCoreApplication::processEvents();
    --depth_;
    if (deadlineTick && chance_.Percent(50))
        clock_.Advance(std::max<std::int64_t>(*deadlineTick + 1 - clock_.TickMs(), 0));
    else
        clock_.Advance(static_cast<std::int64_t>(chance_.Below(300)));
}

} // namespace corvrec
