#pragma once

#include <QString>

// What a serial port needs from the system and QSerialPort does not do.
namespace corvrec
{

// The system's name for a port number: on Windows "COMn"; elsewhere, the first that there is of the
// environment variable CORVREC_COMn, the device /dev/corvrec-comn, the device /dev/ttyS(n-1). Empty for a
// number below 1.
QString PortDevice(int commPort);

// The device that a link leads to; any other name as it is. Other programs lock a device under its own name.
QString ResolvedDevice(const QString& name);

// Whether another living process has left a lock file for the device. Lock files of dead processes, and those
// without a process, are removed where that is allowed.
bool IsLocked(const QString& device);

} // namespace corvrec
