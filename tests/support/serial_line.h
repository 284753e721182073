#pragma once

#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/line_script.h"
#include "tests/support/readable_bytes.h"
#include "tests/support/scripted_pump.h"

#include <cstdint>
#include <string_view>

namespace corvrec
{

// An open port and everything that a wait needs, at time 0 of the journal and the script.
struct SerialLine {
    explicit SerialLine(std::string_view script = {})
    {
        port.Open();
        port.ForgetJournal();
        Play(script, port, pump, [this] { cancel.raised = true; });
    }

    // Milliseconds since the line was made.
    [[nodiscard]] std::int64_t Elapsed() const { return clock.TickMs() - FakeClock().TickMs(); }

    FakeClock clock;
    FakePort port{clock};
    ScriptedPump pump{clock};
    CancelFlag cancel;
    ReplyWait wait{port, clock, pump, cancel};
};

} // namespace corvrec
