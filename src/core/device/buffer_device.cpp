#include "core/device/buffer_device.h"

#include "core/clock.h"
#include "core/device/buffer_status.h"
#include "core/device/modComExtension.h"
#include "core/device/serial_port.h"
#include "core/site/conversions.h"

#include <cassert>
#include <iterator>

namespace corvrec
{

namespace
{

// Whether every field has arrived, even if the device disappeared before it answered the line clear.
bool HasAllFields(std::string_view reply, const ReplyLayout& layout)
{
    if (layout.counted == 0)
        return reply.find(kEndOfStatus) != std::string_view::npos;
    return std::ssize(reply) >= layout.counted + layout.countedAfterLineClear;
}

} // namespace

void SXAzzeraLinea(ReplyWait& wait, int timeOutMs)
{
    SerialPort& port = wait.Port();
    port.ClearInput();
    port.Output(kLineClear);
    wait.ForText(timeOutMs, kLineClear); // result ignored on purpose: the request is sent in any case
    port.ClearInput();
}

std::string RiceviSXStatus(ReplyWait& wait, BufferModel model, int timeOutMs)
{
    SerialPort& port = wait.Port();
    const ReplyLayout& layout = LayoutOf(model);
    std::string reply;
    const InputLenScope oneByOne(port, 1, 0);

    // Results of the waits are ignored on purpose: whatever has arrived is decoded.
    try {
        port.Output(kStatusRequest);
        if (layout.counted != 0)
            wait.ForCount(timeOutMs, layout.counted, reply);
        else
            wait.ForText(timeOutMs, kEndOfStatus, reply);

        port.Output(kLineClear);
        if (layout.counted != 0)
            wait.ForCount(timeOutMs, layout.countedAfterLineClear, reply);
        else
            wait.ForText(timeOutMs, kLineClear, reply);

        reply += port.Input();
    } catch (const PortError&) {
        if (!HasAllFields(reply, layout))
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
