#pragma once

#include "tests/support/buffer_session.h"
#include "tests/support/fake_clock.h"
#include "tests/support/lab_pump.h"
#include "tools/lab/options.h"
#include "ui/buffer/frmSX.h"

#include <functional>
#include <string>

namespace corvrec
{

// A device without faults; its clock stands at 18:03 on 21 November 2026.
lab::DeviceOptions LabDevice(lab::Model model = lab::Model::stratobox30);

// The lines of its site: the device's name, and a modem's when there is one before it ("AT&F", "ATX3", number
// 0123 by tones).
std::string SiteLines(const lab::DeviceOptions& device);

// An editor and its device in time that the test moves. The time of day is 10:20:30 on 3 March 2026.
struct LabWorld {
    explicit LabWorld(const lab::DeviceOptions& device);
    LabWorld(const lab::DeviceOptions& device, const std::string& lines);

    // What the device was sent by the time the window has gone.
    std::string Sent(const std::function<void(frmSX&)>& visit);

    FakeClock clock;
    LabPump pump;
    BufferSession editor;
};

} // namespace corvrec
