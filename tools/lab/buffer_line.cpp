#include "tools/lab/buffer_line.h"

#include <algorithm>
#include <utility>

namespace corvrec::lab
{

namespace
{

// XOR turns every ASCII character into a byte that is not ASCII, so that garbage never looks like an answer.
constexpr unsigned char kDamage = 0xA5;

// What "endless" sends, and how much at a time.
constexpr char kFloodByte = '#';
constexpr std::size_t kFloodPortion = 1024;

} // namespace

BufferLine::BufferLine(SimulatedBuffer device, const Faults& faults)
    : device_(std::move(device))
    , faults_(faults)
{
    device_.SetBurst(faults.burst);
}

void BufferLine::Receive(std::string_view bytes, std::int64_t nowMs)
{
    for (const char byte : bytes) {
        if (faults_.echo)
            Queue({&byte, 1}, nowMs);
        Queue(WithFaults(device_.Answer(byte, nowMs)), nowMs);
    }
    isFlooding_ = isFlooding_ || (faults_.endless && !bytes.empty());
}

std::string BufferLine::Send(std::int64_t nowMs)
{
    std::string bytes;
    while (!due_.empty() && due_.front().atMs <= nowMs) {
        bytes += due_.front().bytes;
        due_.pop_front();
    }
    if (isFlooding_)
        bytes.append(kFloodPortion, kFloodByte);
    // Cut at the byte where the line breaks; IsGone reports the break afterwards.
    if (faults_.dropAfter)
        bytes.resize(std::min(bytes.size(), *faults_.dropAfter - std::min(*faults_.dropAfter, sent_)));
    sent_ += bytes.size();
    return bytes;
}

std::optional<std::int64_t> BufferLine::NextSendMs() const
{
    if (isFlooding_)
        return 0;
    if (due_.empty())
        return std::nullopt;
    return due_.front().atMs;
}

void BufferLine::Disconnect()
{
    due_.clear();
    sent_ = 0;
    isFlooding_ = false;
}

bool BufferLine::IsGone() const
{
    return faults_.dropAfter && sent_ >= *faults_.dropAfter;
}

std::string BufferLine::WithFaults(std::string answer) const
{
    if (faults_.silence)
        return {};
    if (faults_.partial)
        answer.resize(std::min(answer.size(), *faults_.partial));
    std::string spoilt;
    for (const char byte : answer) {
        const auto code = static_cast<unsigned char>(byte);
        spoilt += faults_.garbage ? static_cast<char>(code ^ kDamage) : byte;
        if (faults_.nuls)
            spoilt += '\0';
    }
    return spoilt;
}

void BufferLine::Queue(std::string_view bytes, std::int64_t nowMs)
{
    if (faults_.pauseMs == 0 && !bytes.empty()) {
        due_.push_back({nowMs, std::string(bytes)});
        return;
    }
    for (const char byte : bytes) {
        const std::int64_t atMs = due_.empty() ? nowMs : std::max(nowMs, due_.back().atMs + faults_.pauseMs);
        due_.push_back({atMs, {byte}});
    }
}

} // namespace corvrec::lab
