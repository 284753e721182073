#pragma once

#include "core/device/line_settings.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace corvrec
{

// A port that cannot be opened, is closed, or has gone. The text is for the developer; no window shows it.
class PortError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A serial port with a receive buffer of 1024 bytes. Bytes are characters of code page 1252; NULs never enter
// the buffer.
class SerialPort
{
public:
    virtual ~SerialPort() = default;

    // Only while closed. Bad settings are no error here: they make Open fail.
    virtual void Configure(const LineSettings& line) = 0;

    // Takes the port exclusively. Throws PortError when that fails. Only while closed.
    virtual void Open() = 0;
    [[nodiscard]] virtual bool IsOpen() const = 0;

    // What was sent leaves first. Closing a closed port does nothing.
    virtual void Close() noexcept = 0;

    // Characters that Input takes at most; 0, as at the start, stands for all.
    [[nodiscard]] virtual int InputLen() const noexcept = 0;
    virtual void SetInputLen(int characters) noexcept = 0;

    // Characters received and not yet taken. Throws PortError when the port is closed, or has gone and all
    // that came before is taken.
    virtual int InBufferCount() = 0;

    // Takes up to InputLen characters out of the receive buffer; empty when there are none. Throws PortError
    // as InBufferCount does.
    virtual std::string Input() = 0;

    // State of the carrier line; false when it is unknown.
    [[nodiscard]] virtual bool CDHolding() const = 0;

    // Starts to send at once and does not wait for the end. Throws PortError when the port is closed or has
    // gone.
    virtual void Output(std::string_view bytes) = 0;

    // Waits until all has left, no longer than the time-out, and handles no events. What a stopped line keeps
    // back is no error. Throws PortError when the port is closed or has gone.
    virtual void WaitUntilSent(int timeOutMs) = 0;

    // Throw away what was received and not taken, or is not sent yet. On a closed port they do nothing:
    // buttons clear the buffers after a failed connection, which has closed the port.
    virtual void ClearInput() = 0;
    virtual void ClearOutput() = 0;
};

// Sets the characters that Input takes, and on leaving, by an exception too, sets them anew.
class InputLenScope
{
public:
    InputLenScope(SerialPort& port, int inside, int afterwards) noexcept
        : port_(port)
        , afterwards_(afterwards)
    {
        port_.SetInputLen(inside);
    }
    InputLenScope(const InputLenScope&) = delete;
    InputLenScope& operator=(const InputLenScope&) = delete;
    ~InputLenScope() { port_.SetInputLen(afterwards_); }

private:
    SerialPort& port_;
    int afterwards_;
};

} // namespace corvrec
