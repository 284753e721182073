#pragma once

#include "core/device/line_settings.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace corvrec
{

// The port cannot be opened, is closed or has disappeared. The text is for developers; no window shows it.
class PortError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A serial port with a receive buffer of 1024 bytes. Bytes are characters of code page 1252. NULs are dropped
// and never enter the buffer.
class SerialPort
{
public:
    virtual ~SerialPort() = default;

    // Only while closed. Bad settings are not an error here: they make Open fail.
    virtual void Configure(const LineSettings& line) = 0;

    // Opens the port for exclusive use. Only while closed. Throws PortError.
    virtual void Open() = 0;
    [[nodiscard]] virtual bool IsOpen() const = 0;

    // Sends unsent output first. Closing a closed port does nothing.
    virtual void Close() noexcept = 0;

    // The most characters that one Input returns; 0, the initial value, means all.
    [[nodiscard]] virtual int InputLen() const noexcept = 0;
    virtual void SetInputLen(int characters) noexcept = 0;

    // Number of characters received and not yet read. Throws PortError when the port is closed, or has
    // disappeared and everything received before has been read.
    virtual int InBufferCount() = 0;

    // Removes up to InputLen characters from the receive buffer; empty when there are none. Throws PortError
    // as InBufferCount does.
    virtual std::string Input() = 0;

    // State of the carrier line (DCD); false when it is unknown.
    [[nodiscard]] virtual bool CDHolding() const = 0;

    // Starts sending and returns without waiting for the end. Throws PortError when the port is closed or has
    // disappeared.
    virtual void Output(std::string_view bytes) = 0;

    // Blocks until everything is sent, at most for the time-out; handles no events. Output held back by a
    // stopped line is not an error. Throws PortError when the port is closed or has disappeared.
    virtual void WaitUntilSent(int timeOutMs) = 0;

    // Discard received input that was not read, or output that is not sent yet. They do nothing on a closed
    // port: buttons clear the buffers after a failed connection, which has closed the port.
    virtual void ClearInput() = 0;
    virtual void ClearOutput() = 0;
};

// Sets InputLen to `inside` for its lifetime and to `afterwards` at the end, also by an exception.
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
