#include "ui/buffer/win32_serial_port.h"

#include "ui/buffer/system_serial_port.h"

#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>
#include <array>

namespace corvrec
{

namespace
{

// The size of the receive buffer, as SerialPort promises.
constexpr std::size_t kBufferSize = 1024;
// The size of each of the driver's buffers, in bytes.
constexpr WORD kSystemBufferSize = 4096;
// How long closing waits for a line that accepts no byte, once with its handshake and once without.
constexpr int kSendBeforeCloseMs = 400;
// The most bytes that one write sends.
constexpr std::size_t kPortion = 256;
// How long a cancelled write may take to end.
constexpr DWORD kCancelMs = 400;
constexpr unsigned kPollMs = 5; // between two checks whether everything is sent

// ASCII: DC1 and DC3.
constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;

BYTE ParityOf(LineParity parity)
{
    switch (parity) {
    case LineParity::even:
        return EVENPARITY;
    case LineParity::odd:
        return ODDPARITY;
    case LineParity::mark:
        return MARKPARITY;
    case LineParity::space:
        return SPACEPARITY;
    case LineParity::none:
        break;
    }
    return NOPARITY;
}

BYTE StopBitsOf(LineStopBits stopBits)
{
    switch (stopBits) {
    case LineStopBits::oneAndHalf:
        return ONE5STOPBITS;
    case LineStopBits::two:
        return TWOSTOPBITS;
    case LineStopBits::one:
        break;
    }
    return ONESTOPBIT;
}

PortError SystemError(const char* what)
{
    return PortError(std::string(what) + ": error " + std::to_string(::GetLastError()));
}

COMSTAT StatusOf(HANDLE port)
{
    DWORD errors = 0;
    COMSTAT status{};
    ::ClearCommError(port, &errors, &status); // the status stays empty when the device has disappeared
    return status;
}

} // namespace

Win32SerialPort::Operation::Operation()
{
    overlapped_.hEvent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    notifier_.setHandle(overlapped_.hEvent);
    // The event stays set until the next operation; the notifier would report it at every pass. A report of
    // the operation before may come late: it must not end the watch over this one.
    QObject::connect(&notifier_, &QWinEventNotifier::activated, &notifier_, [this] {
        if (::WaitForSingleObject(overlapped_.hEvent, 0) == WAIT_OBJECT_0)
            notifier_.setEnabled(false);
    });
}

Win32SerialPort::Operation::~Operation()
{
    notifier_.setEnabled(false);
    ::CloseHandle(overlapped_.hEvent);
}

OVERLAPPED* Win32SerialPort::Operation::Begin()
{
    const HANDLE event = overlapped_.hEvent;
    overlapped_ = {};
    overlapped_.hEvent = event;
    ::ResetEvent(overlapped_.hEvent);
    return &overlapped_;
}

bool Win32SerialPort::Operation::Started(BOOL result)
{
    isUnderWay_ = result != 0 || ::GetLastError() == ERROR_IO_PENDING;
    return isUnderWay_;
}

Win32SerialPort::Operation::State Win32SerialPort::Operation::Take(HANDLE port, DWORD& bytes)
{
    if (!isUnderWay_)
        return State::none;
    const bool isDone = ::GetOverlappedResult(port, &overlapped_, &bytes, FALSE) != 0;
    if (!isDone && ::GetLastError() == ERROR_IO_INCOMPLETE)
        return State::underWay;
    isUnderWay_ = false;
    notifier_.setEnabled(false);
    return isDone ? State::done : State::failed;
}

bool Win32SerialPort::Operation::HasFailed(HANDLE port)
{
    DWORD bytes = 0;
    return isUnderWay_ && ::GetOverlappedResult(port, &overlapped_, &bytes, FALSE) == 0 &&
           ::GetLastError() != ERROR_IO_INCOMPLETE;
}

void Win32SerialPort::Operation::Cancel(HANDLE port)
{
    if (isUnderWay_)
        ::CancelIoEx(port, &overlapped_);
}

void Win32SerialPort::Operation::Wait(DWORD timeOutMs) const
{
    if (isUnderWay_)
        ::WaitForSingleObject(overlapped_.hEvent, timeOutMs);
}

Win32SerialPort::Win32SerialPort()
{
    // A loss is noticed even when nobody uses the port.
    QObject::connect(&read_.Notifier(), &QWinEventNotifier::activated, &read_.Notifier(), [this] {
        if (read_.HasFailed(port_))
            CloseDevice();
    });
    QObject::connect(&write_.Notifier(), &QWinEventNotifier::activated, &write_.Notifier(),
                     [this] { Send(); });
}

Win32SerialPort::~Win32SerialPort()
{
    Close();
}

void Win32SerialPort::Configure(const LineSettings& line)
{
    line_ = line;
}

void Win32SerialPort::Open()
{
    if (IsOpen())
        throw PortError("the port is open");
    received_.Clear();
    const auto format = FormatOf(line_.settings);
    if (line_.commPort < 1 || !format)
        throw PortError("no such port, or invalid line settings");
    // Ports above COM9 need the prefix. No sharing: the port is opened exclusively.
    const std::wstring device = L"\\\\.\\COM" + std::to_wstring(line_.commPort);
    port_ = ::CreateFileW(device.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                          FILE_FLAG_OVERLAPPED, nullptr);
    if (port_ == INVALID_HANDLE_VALUE)
        throw SystemError("the port does not open");
    try {
        SetUpLine(*format);
    } catch (const PortError&) {
        CloseDevice();
        throw;
    }
    StartReading();
    CheckUsable();
}

void Win32SerialPort::SetUpLine(const LineFormat& format) const
{
    ::SetupComm(port_, kSystemBufferSize, kSystemBufferSize); // a suggestion; the driver may refuse it
    DCB settings{};
    settings.DCBlength = sizeof settings;
    if (::GetCommState(port_, &settings) == 0)
        throw SystemError("not a serial port");
    const bool hasParity = format.parity != LineParity::none;
    settings.BaudRate = static_cast<DWORD>(format.baud);
    settings.ByteSize = static_cast<BYTE>(format.dataBits);
    settings.Parity = ParityOf(format.parity);
    settings.StopBits = StopBitsOf(format.stopBits);
    settings.fBinary = TRUE;
    settings.fNull = FALSE;
    settings.fAbortOnError = FALSE;
    // The driver replaces characters with a parity error.
    settings.fParity = hasParity ? TRUE : FALSE;
    settings.fErrorChar = hasParity ? TRUE : FALSE;
    settings.ErrorChar = '?';
    settings.fOutX = line_.handshaking == 1 ? TRUE : FALSE;
    settings.fInX = settings.fOutX;
    settings.fTXContinueOnXoff = TRUE;
    settings.XonChar = kXon;
    settings.XoffChar = kXoff;
    settings.XonLim = kSystemBufferSize / 4;
    settings.XoffLim = kSystemBufferSize / 4;
    settings.fOutxCtsFlow = line_.handshaking == 2 ? TRUE : FALSE;
    settings.fRtsControl = line_.handshaking == 2 ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
    settings.fOutxDsrFlow = FALSE;
    settings.fDsrSensitivity = FALSE;
    settings.fDtrControl = DTR_CONTROL_ENABLE;
    if (::SetCommState(port_, &settings) == 0)
        throw SystemError("the port does not support the line settings");
    // All zero: a read ends at its last byte, a write when everything is sent.
    COMMTIMEOUTS timeOuts{};
    if (::SetCommTimeouts(port_, &timeOuts) == 0)
        throw SystemError("the port has no time-outs");
    ::PurgeComm(port_, PURGE_RXCLEAR);   // received at another speed
    ::EscapeCommFunction(port_, SETDTR); // a pseudo-terminal has no such line; the error is ignored
}

bool Win32SerialPort::IsOpen() const
{
    return port_ != INVALID_HANDLE_VALUE;
}

void Win32SerialPort::Close() noexcept
{
    received_.Clear();
    // If the device has stopped us (XOFF, CTS) and never lets us go on, what is left is sent all the same.
    if (!SendRest() && line_.handshaking != 0) {
        IgnoreHandshake();
        SendRest();
    }
    CloseDevice();
}

void Win32SerialPort::IgnoreHandshake() const
{
    DCB settings{};
    settings.DCBlength = sizeof settings;
    if (::GetCommState(port_, &settings) == 0)
        return;
    settings.fOutX = FALSE;
    settings.fOutxCtsFlow = FALSE;
    ::SetCommState(port_, &settings);
    ::EscapeCommFunction(port_, SETXON);
}

void Win32SerialPort::CloseDevice() noexcept
{
    if (!IsOpen())
        return;
    // Only to abort a write: it also discards what the system has accepted and not sent yet.
    if (write_.IsUnderWay())
        ::PurgeComm(port_, PURGE_TXABORT | PURGE_TXCLEAR);
    DWORD bytes = 0;
    for (Operation* const operation : {&read_, &write_}) {
        operation->Cancel(port_);
        operation->Wait(INFINITE); // the system writes to its memory until then
        operation->Take(port_, bytes);
    }
    ::EscapeCommFunction(port_, CLRDTR); // hangs up a modem
    ::CloseHandle(port_);
    port_ = INVALID_HANDLE_VALUE;
    sending_.clear();
    unsent_.clear();
}

int Win32SerialPort::InBufferCount()
{
    if (received_.IsEmpty())
        Fill();
    if (received_.IsEmpty())
        CheckUsable();
    return received_.Count();
}

std::string Win32SerialPort::Input()
{
    InBufferCount(); // takes in what has arrived, or throws
    return received_.Take();
}

bool Win32SerialPort::CDHolding() const
{
    DWORD lines = 0;
    return IsOpen() && ::GetCommModemStatus(port_, &lines) != 0 && (lines & MS_RLSD_ON) != 0;
}

void Win32SerialPort::Output(std::string_view bytes)
{
    CheckUsable();
    unsent_ += bytes;
    Send();
    CheckUsable();
}

// One write at a time, since the system does not promise the order of several. In portions, whose ends show
// that the line still accepts bytes.
void Win32SerialPort::Send()
{
    while (IsOpen()) {
        DWORD bytes = 0;
        const Operation::State state = write_.Take(port_, bytes);
        if (state == Operation::State::underWay)
            return;
        if (state == Operation::State::failed) {
            CloseDevice();
            return;
        }
        sending_ = unsent_.substr(0, kPortion);
        unsent_.erase(0, sending_.size());
        if (sending_.empty())
            return;
        OVERLAPPED* const overlapped = write_.Begin();
        if (!write_.Started(::WriteFile(port_, sending_.data(), static_cast<DWORD>(sending_.size()), nullptr,
                                        overlapped))) {
            CloseDevice();
            return;
        }
        write_.Notifier().setEnabled(true);
    }
}

std::size_t Win32SerialPort::Unsent() const
{
    if (!IsOpen())
        return 0;
    return unsent_.size() + (write_.IsUnderWay() ? 1 : 0) + StatusOf(port_).cbOutQue;
}

void Win32SerialPort::SendFor(int timeOutMs)
{
    const QDeadlineTimer deadline(timeOutMs);
    Send();
    while (Unsent() > 0 && !deadline.hasExpired()) {
        if (write_.IsUnderWay())
            write_.Wait(static_cast<DWORD>(deadline.remainingTime()));
        else
            QThread::msleep(kPollMs); // no event reports that the driver has sent everything
        Send();
    }
}

bool Win32SerialPort::SendRest()
{
    Send();
    for (std::size_t left = Unsent(); left > 0;) {
        SendFor(kSendBeforeCloseMs);
        if (Unsent() >= left)
            return false;
        left = Unsent();
    }
    return true;
}

void Win32SerialPort::WaitUntilSent(int timeOutMs)
{
    CheckUsable();
    SendFor(std::max(timeOutMs, 0)); // a stopped line is no error
    CheckUsable();
}

void Win32SerialPort::ClearInput()
{
    received_.Clear();
    if (!IsOpen())
        return;
    ::PurgeComm(port_, PURGE_RXCLEAR);
    // The byte that has been read already.
    DWORD bytes = 0;
    switch (read_.Take(port_, bytes)) {
    case Operation::State::done:
        StartReading();
        break;
    case Operation::State::failed:
        CloseDevice();
        break;
    default:
        break;
    }
}

void Win32SerialPort::ClearOutput()
{
    unsent_.clear();
    Send(); // a write may be over
    // Only when output is pending: otherwise a pseudo-terminal would discard what its other side has not read
    // yet.
    if (Unsent() == 0)
        return;
    ::PurgeComm(port_, PURGE_TXABORT | PURGE_TXCLEAR);
    write_.Cancel(port_); // Wine's PurgeComm aborts nothing
    write_.Wait(kCancelMs);
    DWORD bytes = 0;
    write_.Take(port_, bytes); // an aborted write is no failure
}

void Win32SerialPort::CheckUsable() const
{
    if (!IsOpen())
        throw PortError("the port is closed or has disappeared");
}

void Win32SerialPort::StartReading()
{
    OVERLAPPED* const overlapped = read_.Begin();
    if (read_.Started(::ReadFile(port_, &first_, 1, nullptr, overlapped)))
        read_.Notifier().setEnabled(true);
    else
        CloseDevice();
}

// Takes what has arrived, up to the buffer's size. The rest stays in the system and is an event of its own.
// Only once: a device that sends nothing but NULs must not keep us here.
void Win32SerialPort::Fill()
{
    if (!IsOpen())
        return;
    DWORD count = 0;
    const Operation::State state = read_.Take(port_, count);
    if (state == Operation::State::underWay)
        return;
    // Only a line that has hung up ends a read without a byte.
    if (state != Operation::State::done || count == 0) {
        CloseDevice();
        return;
    }
    received_.Append({&first_, 1});
    ReadWaiting();
    StartReading();
}

// Reads the bytes that the system holds. Such a read ends at once.
void Win32SerialPort::ReadWaiting()
{
    std::array<char, kBufferSize - 1> bytes{};
    const DWORD waiting = std::min<DWORD>(StatusOf(port_).cbInQue, bytes.size());
    if (waiting == 0)
        return;
    OVERLAPPED* const overlapped = read_.Begin();
    if (!read_.Started(::ReadFile(port_, bytes.data(), waiting, nullptr, overlapped)))
        return; // a lost device: so will the next read be
    read_.Wait(INFINITE);
    DWORD count = 0;
    if (read_.Take(port_, count) == Operation::State::done)
        received_.Append({bytes.data(), count});
}

std::unique_ptr<SerialPort> MakeSerialPort()
{
    return std::make_unique<Win32SerialPort>();
}

} // namespace corvrec
