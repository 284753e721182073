#include "ui/buffer/qt_serial_port.h"

#include "ui/buffer/serial_device.h"
#include "ui/buffer/system_serial_port.h"
#include "ui/widgets/qt_text.h"

#include <QDeadlineTimer>
#include <QMetaObject>
#include <QThread>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace corvrec
{

namespace
{

// The size of the receive buffer, as SerialPort promises.
constexpr qint64 kBufferSize = 1024;
// How long closing waits for a line that accepts no byte.
constexpr int kSendBeforeCloseMs = 500;
constexpr unsigned kPollMs = 5; // between two checks whether everything is sent

QSerialPort::Parity ParityOf(LineParity parity)
{
    switch (parity) {
    case LineParity::even:
        return QSerialPort::EvenParity;
    case LineParity::odd:
        return QSerialPort::OddParity;
    case LineParity::mark:
        return QSerialPort::MarkParity;
    case LineParity::space:
        return QSerialPort::SpaceParity;
    case LineParity::none:
        break;
    }
    return QSerialPort::NoParity;
}

QSerialPort::StopBits StopBitsOf(LineStopBits stopBits)
{
    switch (stopBits) {
    case LineStopBits::oneAndHalf:
        return QSerialPort::OneAndHalfStop;
    case LineStopBits::two:
        return QSerialPort::TwoStop;
    case LineStopBits::one:
        break;
    }
    return QSerialPort::OneStop;
}

QSerialPort::FlowControl FlowControlOf(int handshaking)
{
    switch (handshaking) {
    case 1:
        return QSerialPort::SoftwareControl;
    case 2:
        return QSerialPort::HardwareControl;
    default:
        return QSerialPort::NoFlowControl;
    }
}

// Applies the settings text to the port. Before opening, so that a device that does not support all of it
// still opens. False when the text is not valid.
bool ApplySettings(QSerialPort& port, std::string_view settings)
{
    const auto format = FormatOf(settings);
    return format && port.setBaudRate(format->baud) && port.setParity(ParityOf(format->parity)) &&
           port.setDataBits(static_cast<QSerialPort::DataBits>(format->dataBits)) &&
           port.setStopBits(StopBitsOf(format->stopBits));
}

} // namespace

QtSerialPort::QtSerialPort()
{
    port_.setReadBufferSize(kBufferSize);
    QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                     [this](QSerialPort::SerialPortError error) { NoteError(error); });
}

QtSerialPort::~QtSerialPort()
{
    Close();
}

void QtSerialPort::Configure(const LineSettings& line)
{
    line_ = line;
}

void QtSerialPort::Open()
{
    if (IsOpen())
        throw PortError("the port is open");
    Close(); // a lost device may still be open in Qt
    const QString device = ResolvedDevice(PortDevice(line_.commPort));
    if (device.isEmpty() || !ApplySettings(port_, line_.settings))
        throw PortError("no such port, or invalid line settings");
    port_.setFlowControl(FlowControlOf(line_.handshaking));
    port_.setPortName(device);
    if (IsLocked(device))
        throw PortError("another program uses the port");
    if (!port_.open(QIODevice::ReadWrite))
        throw PortError(ToStd(port_.errorString()));
    isLost_ = false;
    isMarked_ = SetUpLine(port_.handle(), port_.parity() != QSerialPort::NoParity);
    marks_.Reset();
    port_.setDataTerminalReady(true); // a pseudo-terminal has no such line; the error is ignored
}

bool QtSerialPort::IsOpen() const
{
    return port_.isOpen() && !isLost_;
}

void QtSerialPort::Close() noexcept
{
    received_.Clear();
    CloseDevice();
}

void QtSerialPort::CloseDevice() noexcept
{
    if (!port_.isOpen())
        return;
    SendRest();
    // If the device has stopped us (XOFF, CTS) and never lets us go on, the system's close would block, for
    // half a minute by default.
    if (!isLost_)
        port_.setFlowControl(QSerialPort::NoFlowControl);
    SendRest();
    const HangUpOnClose hangUp(port_.handle());
    port_.close();
}

// Each wait sends a part; a line that accepts nothing ends the loop.
void QtSerialPort::SendRest() noexcept
{
    while (!isLost_ && port_.bytesToWrite() > 0 && port_.waitForBytesWritten(kSendBeforeCloseMs)) {
    }
}

int QtSerialPort::InBufferCount()
{
    if (received_.IsEmpty())
        Fill();
    if (received_.IsEmpty())
        CheckUsable();
    return received_.Count();
}

std::string QtSerialPort::Input()
{
    InBufferCount(); // takes in what has arrived, or throws
    return received_.Take();
}

bool QtSerialPort::CDHolding() const
{
    return IsOpen() && port_.pinoutSignals().testFlag(QSerialPort::DataCarrierDetectSignal);
}

void QtSerialPort::Output(std::string_view bytes)
{
    CheckUsable();
    isSending_ = true;
    const qint64 written = port_.write(bytes.data(), static_cast<qint64>(bytes.size()));
    port_.flush(); // otherwise nothing is sent before the next handling of events
    isSending_ = false;
    if (written < 0)
        throw PortError(ToStd(port_.errorString()));
}

void QtSerialPort::WaitUntilSent(int timeOutMs)
{
    CheckUsable();
    const QDeadlineTimer deadline(timeOutMs);
    isSending_ = true;
    while (port_.bytesToWrite() > 0 &&
           port_.waitForBytesWritten(static_cast<int>(deadline.remainingTime()))) {
    }
    isSending_ = false;
    while (IsOpen() && !HasSent(port_.handle()) && !deadline.hasExpired())
        QThread::msleep(kPollMs);
    CheckUsable();
}

void QtSerialPort::ClearInput()
{
    received_.Clear();
    marks_.Reset();
    if (IsOpen())
        port_.clear(QSerialPort::Input);
    if (port_.isOpen())
        port_.readAll(); // Qt stops listening when its buffer is full, until it is read
}

void QtSerialPort::ClearOutput()
{
    // Only when output is pending: otherwise a pseudo-terminal would discard what its other side has not read
    // yet.
    if (IsOpen() && (port_.bytesToWrite() > 0 || !HasSent(port_.handle())))
        port_.clear(QSerialPort::Output);
}

// After a hang-up the port would report a read error at every pass of the event loop. So it is closed, but
// not inside its own signal.
void QtSerialPort::NoteError(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::ResourceError:
        if (isSending_) // the other side has sent XOFF: the bytes wait for its XON
            return;
        break;
    case QSerialPort::ReadError:
    case QSerialPort::DeviceNotFoundError:
    case QSerialPort::PermissionError:
    case QSerialPort::NotOpenError:
        break;
    default:
        return;
    }
    isLost_ = true;
    QMetaObject::invokeMethod(
        &port_,
        [this] {
            if (!isLost_ || !port_.isOpen())
                return; // opened again or closed meanwhile
            Take();
            CloseDevice();
        },
        Qt::QueuedConnection);
}

void QtSerialPort::CheckUsable() const
{
    if (!IsOpen())
        throw PortError("the port is closed or has disappeared");
}

// Takes what Qt holds, otherwise what the kernel holds, up to the buffer's size. The rest stays there and is
// an event of its own. Only once: a device that sends nothing but NULs must not keep us here. From a lost
// device it takes what Qt still holds.
void QtSerialPort::Fill()
{
    // Input in the kernel counts too, even when no event has been handled since it arrived.
    if (port_.bytesAvailable() > 0 || (IsOpen() && port_.waitForReadyRead(0)))
        Take();
}

void QtSerialPort::Take()
{
    std::array<char, kBufferSize> bytes{};
    const qint64 count = std::max<qint64>(port_.read(bytes.data(), kBufferSize), 0);
    std::string characters(bytes.data(), static_cast<std::size_t>(count));
    if (isMarked_)
        characters = marks_.Decode(characters);
    received_.Append(characters);
}

std::unique_ptr<SerialPort> MakeSerialPort()
{
    return std::make_unique<QtSerialPort>();
}

} // namespace corvrec
