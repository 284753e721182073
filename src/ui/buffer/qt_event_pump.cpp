#include "ui/buffer/qt_event_pump.h"

#include "core/clock.h"

#include <QCoreApplication>
#include <QTimer>

namespace corvrec
{

void QtEventPump::Process(std::optional<std::int64_t> deadlineTick)
{
    // The clock is looked at once: a second look could find the deadline passed, and no timer would end the
    // rest.
    const std::int64_t leftMs = deadlineTick ? *deadlineTick - clock_.TickMs() : -1;
    if (leftMs < 0) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        return;
    }
    // A step beyond the deadline, so that the clock has passed it when the timer ends the rest. One call
    // only: an extra pass before it would swallow the event of a byte that has just come, and rest on.
    QTimer deadline;
    deadline.setTimerType(Qt::PreciseTimer);
    deadline.setSingleShot(true);
    deadline.start(static_cast<int>(leftMs + kTickStepMs));
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace corvrec
