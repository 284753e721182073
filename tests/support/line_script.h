#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

class FakePort;
class ScriptedPump;

// A port's journal in one text, its entries separated by " | ".
std::string Joined(const std::vector<std::string>& journal);

// Lets the port and the pump play a script such as
//
//     "<02>: status*<13> | 500: ! | 600: cancelled | 700: lost"
//
// As soon as the bytes before the colon are sent, or at the time in milliseconds, the port receives the bytes
// after it, the wait is cancelled, or the port disappears. Bytes are written as in readable_bytes.h.
void Play(std::string_view script, FakePort& port, ScriptedPump& pump, const std::function<void()>& cancel);

} // namespace corvrec
