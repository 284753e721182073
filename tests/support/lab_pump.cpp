#include "tests/support/lab_pump.h"

#include <QCoreApplication>

#include <algorithm>
#include <filesystem>
#include <poll.h>
#include <system_error>
#include <utility>

namespace corvrec
{

namespace
{

// The number of this process's open descriptors of the file.
std::ptrdiff_t OpenDescriptors(const std::string& file)
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::count_if(begin(descriptors), end(descriptors), [&file](const auto& descriptor) {
        std::error_code gone; // the list contains the directory's own descriptor
        return std::filesystem::read_symlink(descriptor.path(), gone).native().starts_with(file);
    });
}

// The time up to just after the moment, in steps of the real clock's tick.
std::int64_t StepsBeyond(std::int64_t nowMs, std::int64_t momentMs)
{
    return (std::max<std::int64_t>(momentMs - nowMs, 0) / kTickStepMs + 1) * kTickStepMs;
}

} // namespace

LabPump::LabPump(FakeClock& clock, std::unique_ptr<lab::LineDevice> device, int port)
    : clock_(clock)
    , variable_("CORVREC_COM" + QByteArray::number(port))
{
    line_.emplace(port, std::make_unique<RecordingDevice>(std::move(device), traffic_), trace_);
    name_ = line_->Name();
    qputenv(variable_, name_.c_str());
    clock_.SetDuringSleep([this] { Serve(); });
}

LabPump::~LabPump()
{
    clock_.SetDuringSleep({});
    qunsetenv(variable_);
}

void LabPump::Process(std::optional<std::int64_t> deadlineTick)
{
    const bool moved = Serve();
    QCoreApplication::processEvents();
    const auto [first, last] = actions_.equal_range(passes_);
    std::for_each(first, last, [](const auto& action) { action.second(); });
    ++passes_;

    if (!deadlineTick || moved || first != last) {
        if (passes_ % passesPerStep_ == 0)
            clock_.Advance(kTickStepMs);
        return;
    }
    const std::int64_t now = clock_.TickMs();
    const std::int64_t next = line_ ? line_->NextMs(now).value_or(*deadlineTick) : *deadlineTick;
    clock_.Advance(StepsBeyond(now, std::min({next, *deadlineTick, now + kLongestRestMs})));
}

void LabPump::AtPass(std::size_t pass, std::function<void()> action)
{
    actions_.emplace(pass, std::move(action));
}

void LabPump::Settle()
{
    Serve();
}

bool LabPump::IsHeld() const
{
    const bool isPlugged = line_ && !line_->IsUnplugged();
    return OpenDescriptors(name_) > (isPlugged ? 1 : 0); // the laboratory itself has one open
}

// Returns false when nothing moved and nothing is on its way: polling a pseudo-terminal makes the system
// deliver what it still holds back.
bool LabPump::Serve()
{
    if (!line_ || line_->IsUnplugged())
        return false;
    pollfd fromEditor{.fd = line_->Terminal().Line(), .events = POLLIN, .revents = 0};
    const bool received = poll(&fromEditor, 1, 0) > 0;
    line_->Serve(clock_.TickMs());
    return received || line_->IsUnplugged() || line_->Terminal().HasUnread();
}

} // namespace corvrec
