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

// A port whose device is the test. It keeps a journal of what is done to the line, each entry with its time
// in milliseconds since the port was made: "0 Output AT<0D>", "3001 ClearInput". Looking at the input is not
// noted.
class FakePort final : public SerialPort
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

    // Bytes come in.
    void Receive(std::string_view bytes) { received_ += bytes; }

    // Bytes that come in the moment these are sent; each answer is given once.
    void Answer(std::string_view sent, std::string_view reply) { answers_.emplace_back(sent, reply); }

    // From now on the same byte without end; nothing stops it.
    void Pour(std::optional<char> byte) { poured_ = byte; }

    // The other side goes away: the port counts as closed and answers with errors, until it is opened anew.
    // What was received before can be taken.
    void Lose() { lost_ = true; }

    void RefuseOpen(bool refuse) { refuses_ = refuse; }
    void SetCarrier(bool carrier) { carrier_ = carrier; }

    [[nodiscard]] const std::vector<std::string>& Journal() const { return journal_; }
    void ForgetJournal() { journal_.clear(); }

    // What was sent, one after the other.
    [[nodiscard]] const std::string& Sent() const { return sent_; }

    // What was received and neither taken nor cleared.
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
