#include "tests/support/plugged_device.h"

#include <QByteArray>

#include <windows.h>

namespace corvrec
{

// The connection to line_partner: COM1, a command and its answer at a time, each a line.
class PluggedDevice::Partner
{
public:
    Partner()
        : line_(::CreateFileW(L"\\\\.\\COM1", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                              nullptr))
    {
        COMMTIMEOUTS none{};
        if (::SetCommTimeouts(line_, &none) == 0)
            qFatal("COM1 does not lead to line_partner");
    }
    ~Partner() { ::CloseHandle(line_); }
    Partner(const Partner&) = delete;
    Partner& operator=(const Partner&) = delete;

    std::string Ask(const std::string& command)
    {
        const std::string sent = command + '\n';
        DWORD count = 0;
        if (::WriteFile(line_, sent.data(), static_cast<DWORD>(sent.size()), &count, nullptr) == 0)
            qFatal("line_partner does not listen");
        std::string answer;
        char next = 0;
        while (::ReadFile(line_, &next, 1, &count, nullptr) != 0 && count == 1 && next != '\n')
            answer += next;
        if (next != '\n')
            qFatal("line_partner does not answer");
        return answer;
    }

private:
    HANDLE line_;
};

PluggedDevice::PluggedDevice(const std::string& description)
    : partner_(std::make_unique<Partner>())
{
    partner_->Ask("plug " + description);
}

PluggedDevice::~PluggedDevice()
{
    Unplug();
}

void PluggedDevice::Unplug()
{
    partner_->Ask("unplug");
}

void PluggedDevice::StopReading()
{
    partner_->Ask("stop");
}

void PluggedDevice::ReadAgain()
{
    partner_->Ask("read");
}

std::string PluggedDevice::Received(std::size_t count)
{
    return QByteArray::fromHex(partner_->Ask("received " + std::to_string(count)).c_str()).toStdString();
}

} // namespace corvrec
