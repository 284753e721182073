#include "core/device/buffer_device.h"

#include "core/clock.h"
#include "core/device/modComExtension.h"
#include "core/device/serial_port.h"
#include "core/site/code_tables.h"
#include "core/site/conversions.h"

#include <cassert>

namespace corvrec
{

namespace
{

// ASCII control characters that the device takes as commands.
constexpr std::string_view kStatusRequest = "\x02"; // STX
constexpr std::string_view kClockSet = "\x0F";      // SI
constexpr std::string_view kLineClear = "\x13";     // DC3

constexpr std::string_view kEndOfStatus = "*";

// The reply of a 1.1 holds raw bytes and so has no end mark: its bytes are counted.
constexpr int kCounted = 18;
constexpr int kCountedAfterLineClear = 2;

// Whether every field has arrived, even if the device disappeared before it answered the line clear.
bool HasAllFields(std::string_view reply, bool counted)
{
    return counted ? reply.size() >= kCounted + kCountedAfterLineClear
                   : reply.find(kEndOfStatus) != std::string_view::npos;
}

} // namespace

BufferModel BufferModelOf(int deviceRow)
{
    switch (deviceRow) {
    case device::stratobox20:
    case device::stratobox30:
        return {.number = model::stratobox30, .settableClock = true};
    case device::stratoboxBuffer:
        return {.number = model::stratoboxBuffer, .settableClock = true};
    default:
        return {.number = model::stratobox11, .settableClock = false};
    }
}

void SXAzzeraLinea(ReplyWait& wait, int timeOutMs)
{
    SerialPort& port = wait.Port();
    port.ClearInput();
    port.Output(kLineClear);
    wait.ForText(timeOutMs, kLineClear); // result ignored on purpose: the request is sent in any case
    port.ClearInput();
}

std::string RiceviSXStatus(ReplyWait& wait, int modelNumber, int timeOutMs)
{
    SerialPort& port = wait.Port();
    const bool counted = modelNumber == model::stratobox11;
    std::string reply;
    const InputLenScope oneByOne(port, 1, 0);

    // Results of the waits are ignored on purpose: whatever has arrived is decoded.
    try {
        port.Output(kStatusRequest);
        if (counted)
            wait.ForCount(timeOutMs, kCounted, reply);
        else
            wait.ForText(timeOutMs, kEndOfStatus, reply);

        port.Output(kLineClear);
        if (counted)
            wait.ForCount(timeOutMs, kCountedAfterLineClear, reply);
        else
            wait.ForText(timeOutMs, kLineClear, reply);

        reply += port.Input();
    } catch (const PortError&) {
        if (!HasAllFields(reply, counted))
            throw;
    }
    return reply;
}

void ImpostaDataOra(SerialPort& port, Clock& clock, std::string_view time, std::string_view date)
{
    assert(IsTime(time) && IsDate(date));
    std::string body;
    for (const std::string_view part :
         {time.substr(0, 2), time.substr(3), date.substr(0, 2), date.substr(3, 2), date.substr(6)})
        body += part;

    port.Output(kClockSet);
    for (const char c : body) {
        port.Output({&c, 1});
        clock.Sleep(kClockPauseMs);
    }
    // At 300 baud a character takes longer than its pause, and the caller then discards what is not sent.
    port.WaitUntilSent(kClockSendTimeOutMs);
}

} // namespace corvrec
