#include "tools/lab/simulated_modem.h"

#include "core/file/letter_case.h"

#include <utility>

namespace corvrec::lab
{

namespace
{

constexpr std::string_view kAttention = "AT";
constexpr std::string_view kConnect = "CONNECT";
constexpr char kEscape = '+';
constexpr std::size_t kEscapes = 3;

// Longer than any command; what comes after it is dropped.
constexpr std::size_t kLongestLine = 1024;

} // namespace

SimulatedModem::SimulatedModem(std::unique_ptr<LineDevice> device, ModemBehaviour behaviour)
    : device_(std::move(device))
    , behaviour_(std::move(behaviour))
{
}

void SimulatedModem::Receive(std::string_view bytes, std::int64_t nowMs)
{
    if (behaviour_.silent)
        return;
    for (const char byte : bytes) {
        if (state_ == State::dialling) {
            state_ = State::command;
            Report("NO CARRIER");
        }
        if (state_ == State::online)
            ReceiveData(byte, nowMs);
        else
            ReceiveCommand(byte, nowMs);
    }
}

std::string SimulatedModem::Send(std::int64_t nowMs)
{
    if (state_ == State::dialling && !behaviour_.dialAnswer.empty() &&
        nowMs >= dialledMs_ + behaviour_.dialDelayMs) {
        isConnected_ = behaviour_.dialAnswer.starts_with(kConnect);
        state_ = isConnected_ ? State::online : State::command;
        Report(behaviour_.dialAnswer);
    }
    if (state_ == State::online) {
        out_ += device_->Send(nowMs);
        if (device_->IsGone()) {
            HangUp();
            Report("NO CARRIER");
        }
    }
    return std::exchange(out_, {});
}

std::optional<std::int64_t> SimulatedModem::NextSendMs() const
{
    if (!out_.empty())
        return 0;
    if (state_ == State::online)
        return device_->NextSendMs();
    if (state_ == State::dialling && !behaviour_.dialAnswer.empty())
        return dialledMs_ + behaviour_.dialDelayMs;
    return std::nullopt;
}

void SimulatedModem::Disconnect()
{
    HangUp();
    line_.clear();
    out_.clear();
}

void SimulatedModem::ReceiveCommand(char byte, std::int64_t nowMs)
{
    if (behaviour_.echo)
        out_ += byte;
    if (byte == '\r')
        Obey(std::exchange(line_, {}), nowMs);
    else if (byte != '\n' && line_.size() < kLongestLine)
        line_ += static_cast<char>(Folded(byte));
}

void SimulatedModem::ReceiveData(char byte, std::int64_t nowMs)
{
    // A "+" is held back until it is clear whether three in a row come; otherwise the device gets it.
    if (byte != kEscape) {
        device_->Receive(std::string(std::exchange(escapes_, 0), kEscape) + byte, nowMs);
    } else if (++escapes_ == kEscapes) {
        escapes_ = 0;
        state_ = State::command;
        Report("OK");
    }
}

void SimulatedModem::Obey(std::string_view line, std::int64_t nowMs)
{
    if (!line.starts_with(kAttention)) // noise, which a modem ignores
        return;
    const char command = line.size() > kAttention.size() ? line[kAttention.size()] : '\0';
    switch (command) {
    case 'D':
        HangUp();
        state_ = State::dialling;
        dialledMs_ = nowMs;
        return;
    case 'O':
        if (isConnected_)
            state_ = State::online;
        Report(isConnected_ ? kConnect : "NO CARRIER");
        return;
    case 'H':
    case 'Z':
        HangUp();
        break;
    default:
        break;
    }
    Report("OK");
}

void SimulatedModem::HangUp()
{
    device_->Disconnect();
    state_ = State::command;
    isConnected_ = false;
    escapes_ = 0;
}

void SimulatedModem::Report(std::string_view result)
{
    out_.append("\r\n").append(result).append("\r\n");
}

} // namespace corvrec::lab
