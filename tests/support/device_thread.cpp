#include "tests/support/device_thread.h"

#include "tests/support/patience.h"
#include "tools/lab/line_device.h"
#include "tools/lab/options.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <mutex>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace corvrec
{

// What the device has received, shared by its thread and the test's.
struct DeviceThread::Heard {
    std::mutex mutex;
    std::condition_variable grown;
    std::string bytes;
};

namespace
{

// Gives its answers one after the other, each to one burst of bytes, and then the last one forever.
class Answers final : public lab::LineDevice
{
public:
    explicit Answers(std::vector<std::string> answers)
        : answers_(std::move(answers))
    {
    }

    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        if (bytes.empty())
            return;
        unsent_ += answers_.at(next_);
        next_ = std::min(next_ + 1, answers_.size() - 1);
    }
    std::string Send(std::int64_t /*nowMs*/) override { return std::exchange(unsent_, {}); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override { unsent_.clear(); }
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::vector<std::string> answers_;
    std::size_t next_ = 0;
    std::string unsent_;
};

class Mirror final : public lab::LineDevice
{
public:
    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override { unsent_ += bytes; }
    std::string Send(std::int64_t /*nowMs*/) override { return std::exchange(unsent_, {}); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return std::nullopt; }
    void Disconnect() override { unsent_.clear(); }
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    std::string unsent_;
};

// Sends NULs endlessly after the first received byte.
class NulFlood final : public lab::LineDevice
{
public:
    void Receive(std::string_view bytes, std::int64_t /*nowMs*/) override
    {
        isAsked_ = isAsked_ || !bytes.empty();
    }
    std::string Send(std::int64_t /*nowMs*/) override
    {
        return isAsked_ ? std::string(4096, '\0') : std::string();
    }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override
    {
        return isAsked_ ? std::optional<std::int64_t>(0) : std::nullopt;
    }
    void Disconnect() override { isAsked_ = false; }
    [[nodiscard]] bool IsGone() const override { return false; }

private:
    bool isAsked_ = false;
};

// The bytes of a hexadecimal text; "-" is an empty one.
std::string BytesOf(const std::string& hexadecimal)
{
    std::string bytes;
    for (std::size_t at = 0; at + 1 < hexadecimal.size(); at += 2) {
        unsigned code = 0;
        std::from_chars(&hexadecimal.at(at), &hexadecimal.at(at) + 2, code, 16);
        bytes += static_cast<char>(code);
    }
    return bytes;
}

std::unique_ptr<lab::LineDevice> MakeDevice(const std::string& description)
{
    std::istringstream words(description);
    std::string kind;
    words >> kind;
    std::vector<std::string> rest;
    for (std::string word; words >> std::quoted(word);)
        rest.push_back(word);
    if (kind == "mirror")
        return std::make_unique<Mirror>();
    if (kind == "nuls")
        return std::make_unique<NulFlood>();
    if (kind == "answers") {
        std::ranges::transform(rest, rest.begin(), BytesOf);
        return std::make_unique<Answers>(rest);
    }
    if (kind != "lab")
        throw std::invalid_argument("no such device: " + description);
    std::vector<const char*> arguments(rest.size());
    std::ranges::transform(rest, arguments.begin(), &std::string::c_str);
    // A moment in 2026; only "--clock now" needs it.
    const auto now = std::chrono::sys_days{std::chrono::year{2026} / 11 / 21};
    return lab::MakeDevice(lab::ParseOptions(arguments, now).devices.front(), lab::NowMs());
}

// Passes everything on to a device, and what it receives to a listener too.
template <class Listener>
class Overheard final : public lab::LineDevice
{
public:
    Overheard(std::unique_ptr<lab::LineDevice> device, Listener listener)
        : device_(std::move(device))
        , listener_(std::move(listener))
    {
    }

    void Receive(std::string_view bytes, std::int64_t nowMs) override
    {
        device_->Receive(bytes, nowMs);
        listener_(bytes);
    }
    std::string Send(std::int64_t nowMs) override { return device_->Send(nowMs); }
    [[nodiscard]] std::optional<std::int64_t> NextSendMs() const override { return device_->NextSendMs(); }
    void Disconnect() override { device_->Disconnect(); }
    [[nodiscard]] bool IsGone() const override { return device_->IsGone(); }

private:
    std::unique_ptr<lab::LineDevice> device_;
    Listener listener_;
};

} // namespace

DeviceThread::DeviceThread(const std::string& description)
    : heard_(std::make_shared<Heard>())
    , stop_(eventfd(0, EFD_CLOEXEC))
{
    const auto listener = [heard = heard_](std::string_view bytes) {
        const std::lock_guard lock(heard->mutex);
        heard->bytes += bytes;
        heard->grown.notify_all();
    };
    ports_.emplace_back(1, std::make_unique<Overheard<decltype(listener)>>(MakeDevice(description), listener),
                        trace_);
    ReadAgain();
}

DeviceThread::~DeviceThread()
{
    StopReading();
    close(stop_);
}

void DeviceThread::StopReading()
{
    if (!thread_.joinable())
        return;
    if (eventfd_write(stop_, 1) != 0)
        std::abort();
    thread_.join();
    eventfd_t value = 0;
    eventfd_read(stop_, &value);
}

void DeviceThread::ReadAgain()
{
    if (!thread_.joinable())
        thread_ = std::thread([this] { lab::Serve(ports_, stop_); });
}

std::string DeviceThread::Received(std::size_t count)
{
    std::unique_lock lock(heard_->mutex);
    heard_->grown.wait_for(lock, kPatience, [this, count] { return heard_->bytes.size() >= count; });
    return heard_->bytes;
}

} // namespace corvrec
