#pragma once

#include "core/device/parity_marks.h"
#include "core/device/receive_buffer.h"
#include "core/device/serial_port.h"

#include <QSerialPort>

namespace corvrec
{

// A real serial port; PortDevice says which device it is. When the device disappears the port counts as
// closed: every use throws PortError until the port is opened again.
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
    [[nodiscard]] int InputLen() const noexcept override { return received_.InputLen(); }
    void SetInputLen(int characters) noexcept override { received_.SetInputLen(characters); }
    int InBufferCount() override;
    std::string Input() override;
    [[nodiscard]] bool CDHolding() const override;
    void Output(std::string_view bytes) override;
    void WaitUntilSent(int timeOutMs) override;
    void ClearInput() override;
    void ClearOutput() override;

private:
    // Marks the port as lost when the error means that its device has disappeared.
    void NoteError(QSerialPort::SerialPortError error);

    // Throws PortError when the port is closed or lost.
    void CheckUsable() const;
    void CloseDevice() noexcept;
    void Fill();

    // Moves up to one buffer of input from Qt to received_.
    void Take();
    void SendRest() noexcept;

    LineSettings line_;
    // Mutable because pinoutSignals(), although a query, is not const.
    mutable QSerialPort port_;
    // At most kBufferSize characters, but for a lost device also everything that Qt held.
    ReceiveBuffer received_;
    ParityMarks marks_;
    bool isMarked_ = false;  // the system marks parity errors: marks_ decodes the input
    bool isSending_ = false; // a resource error now means a stopped line, not a lost device
    bool isLost_ = false;    // the device has disappeared; closed soon, outside Qt's signal
};

} // namespace corvrec
