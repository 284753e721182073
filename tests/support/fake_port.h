#pragma once

#include "core/clock.h"
#include "core/device/serial_port.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvrec
{

// A port whose device is the test. It keeps a journal of all operations on the line, each with its time in
// milliseconds since the port was made: "0 Output AT<0D>", "3001 ClearInput". Reading the input is not
// recorded.
class FakePort : public SerialPort
{
public:
    explicit FakePort(const Clock& clock)
        : clock_(clock)
        , start_(clock.TickMs())
    {
    }

    void Configure(const LineSettings& line) override;
    void Open() override;
    [[nodiscard]] bool IsOpen() const override { return open_ && !lost_; }
    void Close() noexcept override;
    [[nodiscard]] int InputLen() const noexcept override { return inputLen_; }
    void SetInputLen(int characters) noexcept override { inputLen_ = characters; }
    int InBufferCount() override;
    std::string Input() override;
    [[nodiscard]] bool CDHolding() const override { return carrier_; }
    void Output(std::string_view bytes) override;
    void WaitUntilSent(int timeOutMs) override;
    void ClearInput() override;
    void ClearOutput() override;

    // Adds bytes to the input.
    void Receive(std::string_view bytes) { received_ += bytes; }

    // Receives the reply as soon as these bytes are sent; each answer is given once.
    void Answer(std::string_view sent, std::string_view reply) { answers_.emplace_back(sent, reply); }

    // Supplies this byte endlessly from now on, regardless of flow control; nullopt stops it.
    void Pour(std::optional<char> byte) { poured_ = byte; }

    // The device disappears: the port counts as closed and throws until it is opened again. Input received
    // before can still be read.
    void Lose() { lost_ = true; }

    void RefuseOpen(bool refuse) { refuses_ = refuse; }
    void SetCarrier(bool carrier) { carrier_ = carrier; }

    [[nodiscard]] const std::vector<std::string>& Journal() const { return journal_; }
    void ForgetJournal() { journal_.clear(); }

    // Everything sent so far, joined.
    [[nodiscard]] const std::string& Sent() const { return sent_; }

    // Input that was neither read nor cleared.
    [[nodiscard]] const std::string& Waiting() const { return received_; }

    [[nodiscard]] const std::optional<LineSettings>& Line() const { return line_; }

private:
    void Note(std::string_view call);
    void MustWork() const;
    void MustWorkOrHold() const;

    const Clock& clock_;
    std::int64_t start_;
    bool open_ = false;
    bool lost_ = false;
    bool refuses_ = false;
    bool carrier_ = false;
    int inputLen_ = 0;
    std::optional<LineSettings> line_;
    std::optional<char> poured_;
    std::string received_;
    std::string sent_;
    std::vector<std::pair<std::string, std::string>> answers_;
    std::vector<std::string> journal_;
};

} // namespace corvrec
