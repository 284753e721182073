#pragma once

#include "tools/lab/laboratory.h"
#include "tools/lab/trace.h"

#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace corvrec
{

// A device on a pseudo-terminal of its own, served by a thread, so that it answers whatever the editor is
// doing. PluggedDevice explains the descriptions. Destroying it pulls the cable.
class DeviceThread
{
public:
    explicit DeviceThread(const std::string& description);
    ~DeviceThread();
    DeviceThread(const DeviceThread&) = delete;
    DeviceThread& operator=(const DeviceThread&) = delete;

    // The path of the pseudo-terminal.
    [[nodiscard]] const std::string& Name() const { return ports_.front().Name(); }

    // See PluggedDevice.
    void StopReading();
    void ReadAgain();
    std::string Received(std::size_t count);

private:
    struct Heard;

    std::shared_ptr<Heard> heard_;
    lab::Trace trace_{nullptr, 0};
    std::vector<lab::LabPort> ports_;
    int stop_; // an event descriptor
    std::thread thread_;
};

} // namespace corvrec
