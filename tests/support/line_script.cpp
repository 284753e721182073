#include "tests/support/line_script.h"

#include "tests/support/fake_port.h"
#include "tests/support/readable_bytes.h"
#include "tests/support/scripted_pump.h"

#include <algorithm>
#include <cstddef>

namespace corvrec
{

namespace
{

// The text up to the separator, which is removed from the rest.
std::string_view Next(std::string_view& rest, std::string_view separator)
{
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view next = rest.substr(0, end);
    rest.remove_prefix(std::min(end + separator.size(), rest.size()));
    return next;
}

bool IsNumber(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

std::string Joined(const std::vector<std::string>& journal)
{
    std::string joined;
    for (const std::string& entry : journal)
        joined.append(joined.empty() ? "" : " | ").append(entry);
    return joined;
}

void Play(std::string_view script, FakePort& port, ScriptedPump& pump, const std::function<void()>& cancel)
{
    while (!script.empty()) {
        std::string_view what = Next(script, " | ");
        const std::string_view when = Next(what, ": ");
        const std::string bytes = BytesOf(what);
        if (!IsNumber(when))
            port.Answer(BytesOf(when), bytes);
        else if (what == "lost")
            pump.At(std::stoi(std::string(when)), [&port] { port.Lose(); });
        else if (what == "cancelled")
            pump.At(std::stoi(std::string(when)), cancel);
        else
            pump.At(std::stoi(std::string(when)), [&port, bytes] { port.Receive(bytes); });
    }
}

} // namespace corvrec
