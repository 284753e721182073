#pragma once

#include "tools/lab/line_device.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::lab
{

struct ModemBehaviour {
    bool echo = false;   // commands come back
    bool silent = false; // as one that is switched off
    // What dialling leads to, after the delay. A text that begins with CONNECT makes the connection; with an
    // empty one nothing ever comes.
    std::string dialAnswer = "CONNECT 9600";
    std::int64_t dialDelayMs = 1000;

    bool operator==(const ModemBehaviour&) const = default;
};

// A Hayes modem, and at the far end of its telephone line any device. Commands are lines that begin with AT
// and end in a carriage return: ATD… dials, ATH and ATZ hang up, ATO goes back to the connection, all others
// are just answered by OK. "+++" leads from the connection to the commands; no pauses are needed around it. A
// byte that comes while dialling ends that with NO CARRIER, and so does a line that breaks.
class SimulatedModem final : public LineDevice
{
public:
    SimulatedModem(std::unique_ptr<LineDevice> device, ModemBehaviour behaviour);

    void Receive(std::string_view bytes, std::int64_t nowMs) override;
    std::string Send(std::int64_t nowMs) override;
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override;

    // DTR falls: the modem hangs up.
    void Disconnect() override;

    // Never: the modem stays when its telephone line breaks.
    [[nodiscard]] bool IsGone() const override { return false; }

    [[nodiscard]] bool IsConnected() const { return isConnected_; }

private:
    enum class State { command, dialling, online };

    void ReceiveCommand(char byte, std::int64_t nowMs);
    void ReceiveData(char byte, std::int64_t nowMs);
    void Obey(std::string_view line, std::int64_t nowMs);
    void HangUp();
    void Tell(std::string_view result);

    std::unique_ptr<LineDevice> device_;
    ModemBehaviour behaviour_;
    State state_ = State::command;
    bool isConnected_ = false; // also while commands are taken after "+++"
    std::string line_;         // of a command, upper case, without its end
    std::size_t escapes_ = 0;  // "+" that came last and are held back
    std::int64_t dialledMs_ = 0;
    std::string out_;
};

} // namespace corvrec::lab
