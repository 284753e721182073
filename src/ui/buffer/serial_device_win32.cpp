#include "ui/buffer/serial_device.h"

#include <windows.h>

namespace corvrec
{

QString PortDevice(int commPort)
{
    return commPort < 1 ? QString() : QString("COM%1").arg(commPort);
}

QString ResolvedDevice(const QString& name)
{
    return name;
}

// Windows opens a port for one program only, without lock files.
bool IsLocked(const QString& /*device*/)
{
    return false;
}

// The system replaces characters with a parity error. Everything else is its default.
bool SetUpLine(PortHandle port, bool hasParity)
{
    DCB settings{};
    settings.DCBlength = sizeof settings;
    if (hasParity && GetCommState(port, &settings) != 0) {
        settings.fParity = TRUE;
        settings.fErrorChar = TRUE;
        settings.ErrorChar = '?';
        SetCommState(port, &settings);
    }
    return false;
}

bool HasSent(PortHandle port)
{
    DWORD errors = 0;
    COMSTAT status{};
    return ClearCommError(port, &errors, &status) == 0 || status.cbOutQue == 0;
}

HangUpOnClose::HangUpOnClose(PortHandle port) noexcept
    : port_(port)
{
}

// Closing a port lowers DTR, whatever its settings.
HangUpOnClose::~HangUpOnClose() = default;

} // namespace corvrec
