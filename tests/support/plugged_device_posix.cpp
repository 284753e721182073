#include "tests/support/device_thread.h"
#include "tests/support/plugged_device.h"

#include <QByteArray>

namespace corvrec
{

class PluggedDevice::Partner : public DeviceThread
{
public:
    using DeviceThread::DeviceThread;
};

PluggedDevice::PluggedDevice(const std::string& description)
    : partner_(std::make_unique<Partner>(description))
{
    qputenv("CORVREC_COM2", partner_->Name().c_str());
}

PluggedDevice::~PluggedDevice()
{
    qunsetenv("CORVREC_COM2");
}

void PluggedDevice::Unplug()
{
    partner_.reset();
}

void PluggedDevice::StopReading()
{
    partner_->StopReading();
}

void PluggedDevice::ReadAgain()
{
    partner_->ReadAgain();
}

std::string PluggedDevice::Received(std::size_t count)
{
    return partner_->Received(count);
}

} // namespace corvrec
