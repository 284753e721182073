#include "tools/lab/laboratory.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <poll.h>
#include <system_error>
#include <utility>

namespace corvrec::lab
{

namespace
{

// Interval between checks whether the editor has fetched the last bytes of a device that disappears.
constexpr std::int64_t kLastBytesMs = 5;

// The time-out for poll; -1 means none.
int TimeOut(const std::vector<LabPort>& ports, std::int64_t nowMs)
{
    std::optional<std::int64_t> next;
    for (const LabPort& port : ports) {
        const auto each = port.NextMs(nowMs);
        if (each && (!next || *each < *next))
            next = each;
    }
    if (!next)
        return -1;
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<std::int64_t>(*next - nowMs, 0, kMost));
}

std::vector<pollfd> Descriptors(const std::vector<LabPort>& ports, int stop)
{
    std::vector<pollfd> descriptors{{.fd = stop, .events = POLLIN, .revents = 0}};
    for (const LabPort& port : ports) {
        if (port.IsUnplugged())
            continue;
        const int events = port.WantsToWrite() ? POLLIN | POLLOUT : POLLIN;
        descriptors.push_back(
            {.fd = port.Terminal().Line(), .events = static_cast<short>(events), .revents = 0});
        descriptors.push_back({.fd = port.Terminal().Watch(), .events = POLLIN, .revents = 0});
    }
    return descriptors;
}

} // namespace

std::int64_t NowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

LabPort::LabPort(int number, std::unique_ptr<LineDevice> device, Trace& trace)
    : number_(number)
    , pty_(std::make_unique<Pty>())
    , name_(pty_->Name())
    , device_(std::move(device))
    , trace_(trace)
{
}

void LabPort::Serve(std::int64_t nowMs)
{
    if (IsUnplugged())
        return;
    FollowVisits(nowMs);
    const std::string received = pty_->Read();
    trace_.Bytes(number_, Direction::fromEditor, received, nowMs);
    device_->Receive(received, nowMs);
    SendWhatIsDue(nowMs);
    isGoing_ = isGoing_ || device_->IsGone();
    if (isGoing_ && unsent_.empty() && !pty_->HasUnread()) {
        pty_.reset();
        trace_.Event(number_, "unplugged", nowMs);
    }
}

std::optional<std::int64_t> LabPort::NextMs(std::int64_t nowMs) const
{
    if (IsUnplugged() || !unsent_.empty())
        return std::nullopt;
    if (isGoing_)
        return nowMs + kLastBytesMs;
    return device_->NextSendMs();
}

// To be called before reading: after its port was closed and opened again, a modem must take the next bytes
// for commands, not for data.
void LabPort::FollowVisits(std::int64_t nowMs)
{
    const Pty::Visits visits = pty_->TakeVisits();
    visitors_ += visits.opened - visits.closed;
    if (visits.closed > 0) {
        device_->Disconnect();
        unsent_.clear();
        trace_.Event(number_, "closed", nowMs);
    }
    if (visits.opened > 0 && visitors_ > 0)
        trace_.Event(number_, "opened", nowMs);
}

void LabPort::SendWhatIsDue(std::int64_t nowMs)
{
    if (unsent_.empty())
        unsent_ = device_->Send(nowMs);
    if (unsent_.empty())
        return;
    const std::size_t count = pty_->Write(unsent_);
    trace_.Bytes(number_, Direction::toEditor, std::string_view(unsent_).substr(0, count), nowMs);
    unsent_.erase(0, count);
}

void Serve(std::vector<LabPort>& ports, int stop)
{
    while (!std::ranges::all_of(ports, &LabPort::IsUnplugged)) {
        std::vector<pollfd> descriptors = Descriptors(ports, stop);
        if (poll(descriptors.data(), descriptors.size(), TimeOut(ports, NowMs())) < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "poll");
        // Bytes that arrived before the stop are still taken and traced.
        for (LabPort& port : ports)
            port.Serve(NowMs());
        if (descriptors.front().revents != 0)
            return;
    }
}

} // namespace corvrec::lab
