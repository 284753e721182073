#pragma once

#include "core/device/receive_buffer.h"
#include "core/device/serial_port.h"

#include <QWinEventNotifier>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <windows.h>

namespace corvrec
{

// A real serial port on Windows: number n is COMn. When the device disappears the port closes itself: every
// use throws PortError until the port is opened again.
//
// An overlapped read of one byte is always under way while the port is open; its event ends a rest of the
// event loop. The bytes after it are read when somebody asks for them. Neither WaitCommEvent nor a read
// time-out is used, because Wine does not implement them.
class Win32SerialPort final : public SerialPort
{
public:
    Win32SerialPort();
    ~Win32SerialPort() override;
    Win32SerialPort(const Win32SerialPort&) = delete;
    Win32SerialPort& operator=(const Win32SerialPort&) = delete;
    Win32SerialPort(Win32SerialPort&&) = delete;
    Win32SerialPort& operator=(Win32SerialPort&&) = delete;

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
    // A read or a write that may be under way. Its address must not change, since the system writes to it.
    class Operation
    {
    public:
        Operation();
        ~Operation();
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        Operation(Operation&&) = delete;
        Operation& operator=(Operation&&) = delete;

        enum class State { none, underWay, done, failed };

        // Begin gives the argument for ReadFile or WriteFile, Started takes their result and returns whether
        // the operation has begun.
        OVERLAPPED* Begin();
        bool Started(BOOL result);

        // Done and failed are reported once. When done, bytes is the number of bytes transferred.
        State Take(HANDLE port, DWORD& bytes);
        [[nodiscard]] bool IsUnderWay() const { return isUnderWay_; } // until it is taken
        [[nodiscard]] bool HasFailed(HANDLE port);

        // Ends it early; the result must still be awaited and taken.
        void Cancel(HANDLE port);
        // Blocks until the operation is over, at most for the time-out.
        void Wait(DWORD timeOutMs) const;

        // Reports the end of the operation from the event loop, once it is enabled.
        QWinEventNotifier& Notifier() { return notifier_; }

    private:
        OVERLAPPED overlapped_{};
        bool isUnderWay_ = false;
        QWinEventNotifier notifier_;
    };

    // Throws PortError when the port is closed or lost.
    void CheckUsable() const;
    void SetUpLine(const LineFormat& format) const;
    void Fill();
    void StartReading();
    void ReadWaiting();

    // Starts sending what is left, unless a write is under way.
    void Send();
    // Not 0 while something is to be sent; not always the number of bytes.
    [[nodiscard]] std::size_t Unsent() const;
    // Blocks until everything is sent, at most for the time-out.
    void SendFor(int timeOutMs);
    // Blocks while the line accepts bytes. Returns whether everything is sent.
    bool SendRest();
    void IgnoreHandshake() const;

    // Closes the port at once. A lost one keeps what it has received.
    void CloseDevice() noexcept;

    LineSettings line_;
    HANDLE port_ = INVALID_HANDLE_VALUE;
    Operation read_;
    Operation write_;
    char first_ = 0;         // where read_ puts its byte
    std::string sending_;    // the bytes of write_
    std::string unsent_;     // the bytes after those
    ReceiveBuffer received_; // at most 1024 characters
};

} // namespace corvrec
