#pragma once

#include <QSerialPort>
#include <QString>

#include <utility>

// What a serial port needs from the system and QSerialPort does not offer. One implementation per system.
namespace corvrec
{

// The system's own handle: a file descriptor, or a Windows HANDLE.
using PortHandle = decltype(std::declval<const QSerialPort&>().handle());

// The system's name for a port number; empty for a number below 1. On Windows "COMn". Elsewhere the value of
// the environment variable CORVREC_COMn if there is one, otherwise the device /dev/corvrec-comn if it exists,
// otherwise /dev/ttyS(n-1).
QString PortDevice(int commPort);

// The device that a link leads to; any other name unchanged. Needed for IsLocked: other programs lock a
// device under its own name.
QString ResolvedDevice(const QString& name);

// Whether another running process has a lock file for the device. Lock files of processes that no longer run,
// and those without a process, are removed where permissions allow.
bool IsLocked(const QString& device);

// Makes the settings of an open port that QSerialPort lacks. Closing the port, or the end of the process,
// lowers DTR. Output stopped by XOFF resumes at XON only. With parity, characters with a parity error are
// marked or replaced by "?". Returns whether they are marked; then the input must go through ParityMarks.
bool SetUpLine(PortHandle port, bool hasParity);

// Whether everything given to the system for sending has left it.
bool HasSent(PortHandle port);

// Lowers DTR when a port is closed. To be created before QSerialPort closes the port and destroyed after:
// QSerialPort restores the settings that it found on opening, and those may keep DTR high.
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
