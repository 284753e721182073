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

// A device without faults, whose clock starts at 18:03 on 21 November 2026.
lab::DeviceOptions LabDevice(BufferModel model = BufferModel::stratobox30);

// The lines of its site's section: the device's code, and the modem's values ("AT&F", "ATX3", number 0123 by
// tones) when it has one.
std::string SiteLines(const lab::DeviceOptions& device);

// An editor and its device on a clock that the test moves. The time of day is 10:20:30 on 3 March 2026.
struct LabWorld {
    explicit LabWorld(const lab::DeviceOptions& device);
    LabWorld(const lab::DeviceOptions& device, const std::string& lines);

    // Everything that the device has received by the time the window has closed.
    std::string Sent(const std::function<void(frmSX&)>& visit);

    FakeClock clock;
    LabPump pump;
    BufferSession editor;
};

} // namespace corvrec
