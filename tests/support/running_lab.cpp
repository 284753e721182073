#include "tests/support/running_lab.h"

#include "tools/lab/laboratory.h"
#include "tools/lab/trace.h"

#include <cassert>
#include <fcntl.h>
#include <unistd.h>

namespace corvrec
{

RunningLab::RunningLab(std::unique_ptr<lab::LineDevice> device, int port)
    : variable_("CORVREC_COM" + QByteArray::number(port))
    , trace_(std::make_unique<lab::Trace>(nullptr, 0))
    , traffic_(std::make_unique<Traffic>())
{
    ports_.emplace_back(port, std::make_unique<RecordingDevice>(std::move(device), *traffic_), *trace_);
    qputenv(variable_, ports_.front().Name().c_str());
    if (pipe2(stop_.data(), O_CLOEXEC) != 0)
        qFatal("no pipe");
    thread_ = std::thread([this] { lab::Serve(ports_, stop_[0]); });
}

RunningLab::~RunningLab()
{
    Unplug();
    qunsetenv(variable_);
    close(stop_[0]);
    close(stop_[1]);
}

void RunningLab::Unplug()
{
    if (!thread_.joinable())
        return;
    if (write(stop_[1], "", 1) != 1)
        qFatal("the device cannot be stopped");
    thread_.join();
    ports_.clear();
}

const std::string& RunningLab::Received() const
{
    assert(ports_.empty());
    return traffic_->received;
}

} // namespace corvrec
