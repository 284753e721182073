#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::lab
{

// What sits at the far end of a serial line. It knows bytes and time, and no descriptor. Times are
// milliseconds since an arbitrary moment, the same in all calls, and never run backwards.
class LineDevice
{
public:
    virtual ~LineDevice() = default;

    // These have come from the editor.
    virtual void Receive(std::string_view bytes, std::int64_t nowMs) = 0;

    // Takes what is due by now. Empty when nothing is.
    virtual std::string Send(std::int64_t nowMs) = 0;

    // When Send next has something, a moment that has passed included; nothing: not before something is
    // received.
    [[nodiscard]] virtual std::optional<std::int64_t> NextSendMs() const = 0;

    // The editor has closed its port, or the line between has gone. What was still to be sent is lost.
    virtual void Disconnect() = 0;

    // Whether the device has been unplugged.
    [[nodiscard]] virtual bool IsGone() const = 0;
};

} // namespace corvrec::lab
