#include "core/device/modem_session.h"

#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "core/device/serial_port.h"
#include "core/file/code_page.h"
#include "core/site/conversions.h"

namespace corvrec
{

namespace
{

constexpr char kCarriageReturn = '\r';
constexpr std::string_view kDone = "OK";
constexpr std::string_view kConnected = "CONNECT";
// The Hayes escape. Deliberate: sent without the guard pauses around it, as older editors do.
constexpr std::string_view kEscape = "+++";
constexpr std::string_view kHangUp = "ATH\r";

// Whether the byte arrives as a control character on a line with seven data bits, which drops the eighth.
bool IsControl(char byte)
{
    constexpr int kSevenBits = 0x7F;
    constexpr int kDelete = 0x7F;
    const int sent = byte & kSevenBits;
    return sent < ' ' || sent == kDelete;
}

// A field's text as the modem gets it.
std::string OneLine(std::string_view field)
{
    std::string bytes = Cp1252FromUtf8(field);
    std::erase_if(bytes, IsControl);
    return bytes;
}

// Sends a command and waits for its OK. Other input is discarded, so that the next step sees only its own.
Wait Command(ReplyWait& wait, std::string_view line)
{
    wait.Port().Output(line);
    const Wait result = wait.ForText(kModemCommandTimeOutMs, kDone);
    wait.Port().ClearInput();
    return result;
}

Wait Dial(ReplyWait& wait, std::string_view line)
{
    wait.Port().Output(line);
    std::string received;
    return wait.ForText(kDialTimeOutMs, kConnected, received);
}

Wait Dialogue(ReplyWait& wait, const ModemSettings& modem)
{
    wait.Port().ClearInput();
    Wait result = Command(wait, CommandLine(modem.resetString));
    if (result == Wait::success)
        result = Command(wait, CommandLine(modem.initString));
    if (result == Wait::success)
        result = Dial(wait, DialLine(modem.number, modem.pulse));
    return result;
}

} // namespace

std::string CommandLine(std::string_view command)
{
    return WithAtPrefix(OneLine(command)) + kCarriageReturn;
}

std::string DialLine(std::string_view number, bool pulse)
{
    return OneLine(StoredDialNumber({.tone = !pulse, .number = std::string(number)})) + kCarriageReturn;
}

Connection InitModem(ReplyWait& wait, const ModemSettings& modem)
{
    const Wait result = Dialogue(wait, modem);
    if (result == Wait::success)
        return Connection::connected;
    wait.Port().ClearInput();
    if (result == Wait::timeOut)
        return Connection::noReply;
    wait.Cancel().raised = false;
    return Connection::cancelled;
}

bool CloseModem(ReplyWait& wait)
{
    SerialPort& port = wait.Port();
    port.Output(kEscape);
    Wait result = wait.ForText(kEscapeTimeOutMs, kDone);
    port.ClearInput();
    if (result == Wait::success) {
        port.Output(kHangUp);
        result = wait.ForText(kHangUpTimeOutMs, kDone);
    }
    if (result == Wait::cancelled)
        wait.Cancel().raised = false;
    return result == Wait::success;
}

} // namespace corvrec
