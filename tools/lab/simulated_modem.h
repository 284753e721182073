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

// How the modem behaves. A member initialiser is the option's default.
struct ModemBehaviour {
    bool echo = false;   // commands are sent back
    bool silent = false; // answers nothing, as if switched off
    // The answer to dialling, after the delay. A text that begins with CONNECT makes the connection. An empty
    // text means that no answer ever comes.
    std::string dialAnswer = "CONNECT 9600";
    std::int64_t dialDelayMs = 1000;

    bool operator==(const ModemBehaviour&) const = default;
};

// A Hayes modem, with any device at the far end of its telephone line. Commands are lines that begin with AT
// and end in a carriage return. ATD… dials, ATH and ATZ hang up, ATO returns to the connection; all others
// are just answered with OK. "+++" switches from the connection to command mode; it needs no pauses around
// it. A byte that arrives while dialling ends the dialling with NO CARRIER. A line that breaks ends the
// connection with the same result.
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

    // Passes a byte on to the device, or recognises "+++".
    void ReceiveData(char byte, std::int64_t nowMs);
    void Obey(std::string_view line, std::int64_t nowMs);
    void HangUp();

    // Queues a result, such as OK, for the editor.
    void Report(std::string_view result);

    std::unique_ptr<LineDevice> device_;
    ModemBehaviour behaviour_;
    State state_ = State::command;
    bool isConnected_ = false; // also in command mode after "+++"
    std::string line_;         // the command so far, in upper case
    std::size_t escapes_ = 0;  // number of "+" held back, since they may become "+++"
    std::int64_t dialledMs_ = 0;
    std::string out_;
};

} // namespace corvrec::lab
