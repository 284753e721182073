#include "tests/support/lab_world.h"

#include <chrono>

namespace corvrec
{

using namespace std::chrono_literals;

lab::DeviceOptions LabDevice(BufferModel model)
{
    return {.model = model, .clock = std::chrono::sys_days{2026y / 11 / 21} + 18h + 3min};
}

std::string SiteLines(const lab::DeviceOptions& device)
{
    std::string lines = "Dispositivo=STX" + std::to_string(static_cast<int>(device.model)) + "\r\n";
    if (device.modem)
        lines += "MODEM=1\r\nStringaReset=AT&F\r\nStringaModem=ATX3\r\nNumeroTel=ATDT0123\r\n";
    return lines;
}

LabWorld::LabWorld(const lab::DeviceOptions& device)
    : LabWorld(device, SiteLines(device))
{
}

LabWorld::LabWorld(const lab::DeviceOptions& device, const std::string& lines)
    : pump(clock, lab::MakeDevice(device, clock.TickMs()))
    , editor(clock, pump, lines)
{
}

std::string LabWorld::Sent(const std::function<void(frmSX&)>& visit)
{
    editor.Visit(visit);
    pump.Settle();
    return pump.Received();
}

} // namespace corvrec
