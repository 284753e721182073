#pragma once

#include <QSerialPort>
#include <QString>

#include <utility>

// What a serial port needs from the system and QSerialPort does not do.
namespace corvrec
{

// The system's own: a descriptor, or a handle of Windows.
using PortHandle = decltype(std::declval<const QSerialPort&>().handle());

// The system's name for a port number: on Windows "COMn"; elsewhere, the first that there is of the
// environment variable CORVREC_COMn, the device /dev/corvrec-comn, the device /dev/ttyS(n-1). Empty for a
// number below 1.
QString PortDevice(int commPort);

// The device that a link leads to; any other name as it is. Other programs lock a device under its own name.
QString ResolvedDevice(const QString& name);

// Whether another living process has left a lock file for the device. Lock files of dead processes, and those
// without a process, are removed where that is allowed.
bool IsLocked(const QString& device);

// For an open port: closing it, or the end of the process, lowers DTR; output that XOFF has stopped goes on
// at XON alone; on a line with parity, characters with a parity error are marked or replaced by "?". Returns
// whether they are marked: ParityMarks reads the input then.
bool SetUpLine(PortHandle port, bool hasParity);

// Whether all that the system was given for sending has left.
bool HasSent(PortHandle port);

// Lowers DTR when a port is closed. Created before QSerialPort closes the port, destroyed after that:
// QSerialPort first restores the settings that it found, and those may keep DTR high.
class HangUpOnClose
{
public:
    explicit HangUpOnClose(PortHandle port) noexcept;
    ~HangUpOnClose();
    HangUpOnClose(const HangUpOnClose&) = delete;
    HangUpOnClose& operator=(const HangUpOnClose&) = delete;

private:
    PortHandle port_;
};

} // namespace corvrec
