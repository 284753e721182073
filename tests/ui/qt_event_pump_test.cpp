#include "core/clock.h"
#include "core/device/modComExtension.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/buffer/qt_event_pump.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cstdint>
#include <vector>

namespace corvrec
{

namespace
{

// Returns these ticks one after the other, and then the last one forever.
class TickList final : public Clock
{
public:
    explicit TickList(std::vector<std::int64_t> ticks)
        : ticks_(std::move(ticks))
    {
    }

    [[nodiscard]] DateTime Now() const override { return {}; }
    [[nodiscard]] std::int64_t TickMs() const override
    {
        return next_ + 1 < ticks_.size() ? ticks_.at(next_++) : ticks_.back();
    }
    void Sleep(std::int64_t /*ms*/) override {}

private:
    std::vector<std::int64_t> ticks_;
    mutable std::size_t next_ = 0;
};

} // namespace

class qt_event_pump_test : public QObject
{
    Q_OBJECT

private slots:
    static void passesTheDeadlineWhenNothingHappens()
    {
        const SystemClock clock;
        QtEventPump pump(clock);
        const std::int64_t deadline = clock.TickMs() + 100;

        int passes = 0;
        while (clock.TickMs() <= deadline) {
            pump.Process(deadline);
            ++passes;
        }

        QVERIFY2(passes <= 3, qPrintable(QString::number(passes)));
    }

    static void returnsAtAnEvent()
    {
        const SystemClock clock;
        QtEventPump pump(clock);
        QTimer event;
        event.setSingleShot(true);
        const QSignalSpy events(&event, &QTimer::timeout);
        event.start(20);

        const std::int64_t deadline = clock.TickMs() + kPatienceMs;
        while (events.isEmpty())
            pump.Process(deadline);

        QVERIFY(clock.TickMs() < deadline); // the event ended the rest
    }

    // A button of the modem dialog raises it in the same way: in the handler of an event.
    static void aCancelRaisedDuringAWaitEndsIt()
    {
        const SystemClock clock;
        QtEventPump pump(clock);
        FakeClock portClock;
        FakePort port(portClock);
        port.Open();
        CancelFlag cancel;
        ReplyWait wait(port, clock, pump, cancel);
        QTimer::singleShot(20, QCoreApplication::instance(), [&cancel] { cancel.raised = true; });
        const std::int64_t deadline = clock.TickMs() + kPatienceMs;

        QCOMPARE(wait.ForText(kPatienceMs, "OK"), Wait::cancelled);

        QVERIFY(clock.TickMs() < deadline); // the event ended the rest
    }

    static void handlesWhatIsPendingWithoutADeadline()
    {
        const SystemClock clock;
        QtEventPump pump(clock);
        bool isHandled = false;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&isHandled] { isHandled = true; }, Qt::QueuedConnection);

        pump.Process(std::nullopt);

        QVERIFY(isHandled);
    }

    // A busy machine may be elsewhere between two readings of the clock.
    static void doesNotRestOnADeadlineThatHasPassed()
    {
        for (const TickList& clock : {TickList({5000}), TickList({1000, 5000})}) {
            QtEventPump pump(clock);
            bool isWoken = false;
            QTimer other;
            QObject::connect(&other, &QTimer::timeout, &other, [&isWoken] { isWoken = true; });
            other.start(kPatience);

            pump.Process(1010);

            QVERIFY2(!isWoken, "only another event ended the rest");
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::qt_event_pump_test> registered;
#include "qt_event_pump_test.moc"
