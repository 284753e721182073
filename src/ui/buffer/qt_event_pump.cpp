#include "ui/buffer/qt_event_pump.h"

#include "core/clock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>

namespace corvrec
{

namespace
{

#ifdef Q_OS_WIN
// Ends the rest of a pass in which an event was handled. Qt's dispatcher for Windows first handles what is
// posted, such as timers, and then rests all the same. A wake-up keeps it from resting. An interruption would
// too, but it would also keep the next pass from handling keys and mouse buttons.
class RestEnder final : public QObject
{
public:
    RestEnder() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* /*event*/) override
    {
        QAbstractEventDispatcher::instance()->wakeUp();
        return false;
    }
};
#else
struct RestEnder {
};
#endif

} // namespace

void QtEventPump::Process(std::optional<std::int64_t> deadlineTick)
{
    // The clock is read once: a second reading could find the deadline passed, and then no timer would end
    // the wait.
    const std::int64_t leftMs = deadlineTick ? *deadlineTick - clock_.TickMs() : -1;
    if (leftMs < 0) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        return;
    }
    // The timer fires one clock step after the deadline, so that the clock has passed it by then.
    // Deliberately one call: an extra pass before it would swallow the event of a byte that has just arrived,
    // and then block.
    QTimer deadline;
    deadline.setTimerType(Qt::PreciseTimer);
    deadline.setSingleShot(true);
    deadline.start(static_cast<int>(leftMs + kTickStepMs));
    [[maybe_unused]] const RestEnder restEnder;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace corvrec
