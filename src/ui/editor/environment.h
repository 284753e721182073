#pragma once

#include <filesystem>
#include <functional>
#include <memory>

namespace corvrec
{

class Clock;
class EventPump;
class ProfileFile;
class SerialPort;

// Everything that the editor uses from outside. The program fills it with the real things; a test with a
// temporary directory, a real file in it, and a clock that it sets.
struct Environment {
    std::filesystem::path directory; // the program's own: holds Corvrec.ini and modem.dat
    ProfileFile& settings;
    Clock& clock;
    EventPump& events;
    std::function<std::unique_ptr<SerialPort>()> makePort; // called for each buffer window
};

} // namespace corvrec
