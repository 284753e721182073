#pragma once

#include "core/device/parity_marks.h"
#include "core/device/serial_port.h"

#include <QSerialPort>

#include <deque>

namespace corvrec
{

// A real serial port; which device it is, see PortDevice. A device that goes away closes it: every use then
// throws PortError until it is opened again.
class QtSerialPort final : public SerialPort
{
public:
    QtSerialPort();
    ~QtSerialPort() override;
    QtSerialPort(const QtSerialPort&) = delete;
    QtSerialPort& operator=(const QtSerialPort&) = delete;

    void Configure(const LineSettings& line) override;
    void Open() override;
    [[nodiscard]] bool IsOpen() const override;
    void Close() noexcept override;
    [[nodiscard]] int InputLen() const noexcept override { return inputLen_; }
    void SetInputLen(int characters) noexcept override { inputLen_ = characters; }
    int InBufferCount() override;
    std::string Input() override;
    [[nodiscard]] bool CDHolding() const override;
    void Output(std::string_view bytes) override;
    void WaitUntilSent(int timeOutMs) override;
    void ClearInput() override;
    void ClearOutput() override;

private:
    void NoteError(QSerialPort::SerialPortError error);
    void CheckUsable() const;
    void CloseDevice() noexcept;
    void Fill();
    void Take();
    void SendRest() noexcept;

    LineSettings line_;
    // pinoutSignals() of an open port is a question, but not a const member.
    mutable QSerialPort port_;
    // Without NULs; at most kBufferSize, and of a device that has gone also what Qt held.
    std::deque<char> received_;
    ParityMarks marks_;
    bool isMarked_ = false;
    int inputLen_ = 0;
    bool isSending_ = false;
    bool isLost_ = false;
};

} // namespace corvrec
