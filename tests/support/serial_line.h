#pragma once

#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/scripted_pump.h"

namespace corvrec
{

// An open port and everything that a wait needs, at time 0 of the journal and the script.
struct SerialLine {
    SerialLine()
    {
        port.Open();
        port.ForgetJournal();
    }

    FakeClock clock;
    FakePort port{clock};
    ScriptedPump pump{clock};
    CancelFlag cancel;
    ReplyWait wait{port, clock, pump, cancel};
};

} // namespace corvrec
