#include "tests/support/lab_world.h"

#include <array>
#include <chrono>

namespace corvrec
{

namespace
{

using namespace std::chrono_literals;

// Indexed by lab::Model.
constexpr std::array<const char*, 4> kDeviceCodes{"STX11", "STX20", "STX30", "STX40"};

} // namespace

lab::DeviceOptions LabDevice(lab::Model model)
{
    return {.model = model, .clock = std::chrono::sys_days{2026y / 11 / 21} + 18h + 3min};
}

std::string SiteLines(const lab::DeviceOptions& device)
{
    std::string lines = "Dispositivo=";
    lines.append(kDeviceCodes.at(static_cast<std::size_t>(device.model))).append("\r\n");
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
