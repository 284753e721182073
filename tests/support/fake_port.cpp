#include "tests/support/fake_port.h"

#include "tests/support/readable_bytes.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace corvrec
{

namespace
{

constexpr int kBufferSize = 1024;

} // namespace

void FakePort::Configure(const LineSettings& line)
{
    Note("Configure");
    line_ = line;
}

void FakePort::Open()
{
    Note("Open");
    if (refuses_)
        throw PortError("refused");
    open_ = true;
    lost_ = false;
}

void FakePort::Close() noexcept
{
    Note("Close");
    open_ = false;
}

int FakePort::InBufferCount()
{
    MustWorkOrHold();
    return poured_ ? kBufferSize : static_cast<int>(received_.size());
}

std::string FakePort::Input()
{
    MustWorkOrHold();
    const std::size_t most = inputLen_ == 0 ? kBufferSize : static_cast<std::size_t>(inputLen_);
    std::string taken = poured_ ? std::string(most, *poured_) : received_.substr(0, most);
    if (poured_)
        return taken;
    received_.erase(0, taken.size());
    return taken;
}

void FakePort::Output(std::string_view bytes)
{
    MustWork();
    Note("Output " + Readable(bytes));
    sent_ += bytes;
    const auto answer = std::ranges::find(answers_, bytes, &std::pair<std::string, std::string>::first);
    if (answer == answers_.end())
        return;
    Receive(answer->second);
    answers_.erase(answer);
}

void FakePort::WaitUntilSent(int timeOutMs)
{
    MustWork();
    Note("WaitUntilSent " + std::to_string(timeOutMs));
}

void FakePort::ClearInput()
{
    Note("ClearInput");
    received_.clear();
}

void FakePort::ClearOutput()
{
    Note("ClearOutput");
}

void FakePort::Note(std::string_view call)
{
    journal_.push_back(std::to_string(clock_.TickMs() - start_) + " " + std::string(call));
}

// Input received before a loss can still be read.
void FakePort::MustWorkOrHold() const
{
    if (!lost_ || received_.empty())
        MustWork();
}

void FakePort::MustWork() const
{
    if (!open_ || lost_)
        throw PortError(lost_ ? "lost" : "closed");
}

} // namespace corvrec
