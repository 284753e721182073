#include "comm/serial_device.h"

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

// An open port is nobody else's.
bool IsLocked(const QString& /*device*/)
{
    return false;
}

} // namespace corvrec
