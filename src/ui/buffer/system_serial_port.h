#pragma once

#include "core/device/serial_port.h"

#include <memory>

namespace corvrec
{

// A serial port of this system: QtSerialPort, or Win32SerialPort.
std::unique_ptr<SerialPort> MakeSerialPort();

} // namespace corvrec
