#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace corvrec
{

// A device at the other end of the editor's port COM2, which answers whatever the editor is doing. One at a
// time. On Windows the program line_partner simulates it, which therefore must have started the test.
//
// Descriptions:
//
//   mirror       sends everything back
//   Answers(…)   see below
//   nuls         sends NULs without end after the first received byte
//   lab OPTION…  a device of the laboratory, with the options of corvrec-lab, in quotes if they have blanks
class PluggedDevice
{
public:
    static constexpr int kPort = 2;

    explicit PluggedDevice(const std::string& description);
    ~PluggedDevice();
    PluggedDevice(const PluggedDevice&) = delete;
    PluggedDevice& operator=(const PluggedDevice&) = delete;

    // Pulls the cable. Afterwards nothing else may be called.
    void Unplug();

    // The device accepts no more bytes, and sends none, until ReadAgain.
    void StopReading();
    void ReadAgain();

    // Waits until the device has received at least this many bytes. Returns all that it has received, fewer
    // bytes when no more have come for a while.
    std::string Received(std::size_t count);

private:
    class Partner;

    std::unique_ptr<Partner> partner_;
};

// A device that gives these answers, each to one burst of bytes, and then the last one forever.
std::string Answers(const std::vector<std::string>& answers);

} // namespace corvrec
