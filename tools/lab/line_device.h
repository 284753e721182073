#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec::lab
{

// The far end of a serial line. It deals with bytes and time, and has no descriptor. Times are milliseconds
// since an arbitrary moment, the same for all calls, and never run backwards.
class LineDevice
{
public:
    virtual ~LineDevice() = default;

    // Takes bytes that the editor has sent.
    virtual void Receive(std::string_view bytes, std::int64_t nowMs) = 0;

    // Returns the bytes due by now and forgets them; empty when there are none.
    virtual std::string Send(std::int64_t nowMs) = 0;

    // When Send will have bytes next, possibly in the past; nullopt: not before something is received.
    [[nodiscard]] virtual std::optional<std::int64_t> NextSendMs() const = 0;

    // The editor has closed its port, or the line has broken. Bytes not yet sent are lost.
    virtual void Disconnect() = 0;

    // Whether the device has been unplugged.
    [[nodiscard]] virtual bool IsGone() const = 0;
};

} // namespace corvrec::lab
