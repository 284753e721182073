#include "core/device/modComExtension.h"

#include "core/clock.h"
#include "core/device/event_pump.h"
#include "core/device/serial_port.h"

#include <algorithm>
#include <cassert>

namespace corvrec
{

namespace
{

constexpr int kOneByOne = 1;

// ASCII is enough: no text with other letters is ever waited for.
char AsciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool Holds(std::string_view received, std::string_view text)
{
    const auto sameLetter = [](char a, char b) { return AsciiLower(a) == AsciiLower(b); };
    return std::search(received.begin(), received.end(), text.begin(), text.end(), sameLetter) !=
           received.end();
}

// Drops the middle of the buffer, so that it cannot grow without limit.
void KeepHeadAndTail(std::string& buffer, std::size_t head, std::size_t tail)
{
    if (buffer.size() > head + tail)
        buffer.erase(head, buffer.size() - head - tail);
}

} // namespace

Wait ReplyWait::ForCount(int timeOutMs, int count, std::string& buffer)
{
    const InputLenScope oneByOne(port_, kOneByOne, port_.InputLen());
    int received = 0;
    std::int64_t elapsed = 0;
    const std::int64_t start = clock_.TickMs();
    while (elapsed < timeOutMs && received != count && !cancel_.raised) {
        elapsed = clock_.TickMs() - start;
        events_.Process(RestDeadline(start + timeOutMs)); // other handlers run here; cancel_ may change
        if (port_.InBufferCount() >= 1) {
            buffer += port_.Input();
            ++received;
        }
    }
    return Result(elapsed, timeOutMs);
}

Wait ReplyWait::ForText(int timeOutMs, std::string_view text)
{
    std::string discarded;
    return ForText(timeOutMs, text, discarded, 0);
}

Wait ReplyWait::ForText(int timeOutMs, std::string_view text, std::string& buffer, std::size_t keptHead)
{
    assert(!text.empty());
    const InputLenScope oneByOne(port_, kOneByOne, port_.InputLen());
    if (port_.InBufferCount() >= 1)
        buffer += port_.Input();

    bool found = false;
    bool allSearched = false;
    std::size_t searchFrom = 0;
    std::int64_t elapsed = 0;
    const std::int64_t start = clock_.TickMs();
    while (elapsed < timeOutMs && !found && !cancel_.raised) {
        elapsed = clock_.TickMs() - start;
        // Deliberate order: first the events, then the search. The first pass must not block, because the
        // text may be in the buffer already.
        events_.Process(allSearched ? RestDeadline(start + timeOutMs) : std::nullopt);
        if (port_.InBufferCount() >= 1)
            buffer += port_.Input();
        found = Holds(std::string_view(buffer).substr(searchFrom), text);
        allSearched = true;
        // Not found, so the text can begin only in the last characters, as many as it has itself.
        KeepHeadAndTail(buffer, keptHead, text.size());
        searchFrom = buffer.size() - std::min(buffer.size(), text.size());
    }
    return Result(elapsed, timeOutMs);
}

// nullopt: do not block. A character is waiting and raises no further event, or the time is up and this is
// the last pass.
std::optional<std::int64_t> ReplyWait::RestDeadline(std::int64_t deadlineTick) const
{
    if (port_.InBufferCount() >= 1 || clock_.TickMs() >= deadlineTick)
        return std::nullopt;
    return deadlineTick;
}

Wait ReplyWait::Result(std::int64_t elapsed, int timeOutMs) const
{
    if (cancel_.raised)
        return Wait::cancelled;
    // Deliberately not ">=": see Wait.
    return elapsed > timeOutMs ? Wait::timeOut : Wait::success;
}

} // namespace corvrec
