#include "opmode/station/lite_timer.h"
#include "support/manual_timers.h"

#include <QTest>

#include <stdexcept>

using namespace ktr;

namespace {

/// A system that neither ends its timers nor has any left when it is told so.
struct StubbornTimers : CallbackTimers
{
    quint32 set(Milliseconds) override { return nextId; }
    bool kill(quint32) override { return kills; }
    quint32 nextId = 17;
    bool kills = false;
};

/// Counts the events of a timer as time passes.
struct Counted
{
    explicit Counted(MLiteTimer &registry, qint32 interval) : timer(registry)
    {
        timer.Interval(interval);
        timer.Timer = [this] { ++events; };
    }
    CLiteTimer timer;
    int events = 0;
};

} // namespace

class LiteTimerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_time = std::make_unique<test::ManualTimers>();
        m_timers = std::make_unique<QueuedCallbackTimers>(*m_time, [this] { return m_time->now(); });
        m_registry = std::make_unique<MLiteTimer>(*m_timers);
    }
    void cleanup()
    {
        QCOMPARE(m_registry->count(), 0U);
        m_registry.reset();
        m_timers.reset();
        m_time.reset();
    }

    void anIntervalBelowOneStopsAndStartsNothing()
    {
        Counted counted(*m_registry, 50);
        counted.timer.Enabled(true);
        counted.timer.Interval(-5);
        QVERIFY(!counted.timer.Enabled());
        QCOMPARE(counted.timer.Interval(), 0);
        counted.timer.Enabled(true);
        QVERIFY(!counted.timer.Enabled());
        counted.timer.Interval(50); // a stopped timer stays stopped
        QVERIFY(!counted.timer.Enabled());
        m_time->advance(Milliseconds{1000});
        QCOMPARE(counted.events, 0);
    }

    void onlyANewIntervalBeginsThePeriodAnew()
    {
        Counted counted(*m_registry, 100);
        counted.timer.Enabled(true);
        m_time->advance(Milliseconds{90});
        counted.timer.Enabled(true);
        m_time->advance(Milliseconds{10});
        QCOMPARE(counted.events, 1);
        m_time->advance(Milliseconds{90});
        counted.timer.Interval(100);
        m_time->advance(Milliseconds{90});
        QCOMPARE(counted.events, 1);
        m_time->advance(Milliseconds{110});
        QCOMPARE(counted.events, 3);
    }

    void timersFireWhenDueInTheOrderOfTheirStart()
    {
        QStringList order;
        std::vector<std::unique_ptr<CLiteTimer>> timers;
        for (const int interval : {200, 100, 100, 203}) {
            timers.push_back(std::make_unique<CLiteTimer>(*m_registry));
            timers.back()->Interval(interval);
            timers.back()->Timer = [&order, this, name = QString::number(timers.size())] {
                order += name + QLatin1Char('@') + QString::number(m_time->now().count());
            };
            timers.back()->Enabled(true);
        }
        m_time->advance(Milliseconds{210}); // one that is due beside the grid fires on it, never early
        QCOMPARE(order.join(' '), "2@100 3@100 1@200 2@200 3@200 4@210");
    }

    void aHandlerMayStopRestartAndDestroyTimers()
    {
        Counted stopped(*m_registry, 100);
        auto destroyed = std::make_unique<Counted>(*m_registry, 100);
        Counted restarted(*m_registry, 100);
        auto self = std::make_unique<CLiteTimer>(*m_registry);
        Counted started(*m_registry, 100);
        self->Interval(100);
        self->Timer = [&] {
            self.reset(); // first: the closure must outlive it
            stopped.timer.Enabled(false);
            destroyed.reset();
            restarted.timer.Enabled(false);
            restarted.timer.Enabled(true);
            started.timer.Enabled(true);
        };
        self->Enabled(true);
        stopped.timer.Enabled(true);
        destroyed->timer.Enabled(true);
        restarted.timer.Enabled(true);
        m_time->advance(Milliseconds{190});
        QCOMPARE(stopped.events + restarted.events + started.events, 0);
        m_time->advance(Milliseconds{10});
        QCOMPARE(stopped.events, 0);
        QCOMPARE(restarted.events, 1);
        QCOMPARE(started.events, 1);
    }

    void aHandlerThatFailsStopsNoOtherTimer()
    {
        Counted failing(*m_registry, 100);
        failing.timer.Timer = [&] {
            ++failing.events;
            throw std::runtime_error("lost");
        };
        Counted other(*m_registry, 100);
        failing.timer.Enabled(true);
        other.timer.Enabled(true);
        m_time->advance(Milliseconds{200});
        QCOMPARE(failing.events, 2);
        QCOMPARE(other.events, 2);
    }

    void missedTicksAreMadeUpForByOneInTheOldRhythm()
    {
        Milliseconds asleep{0};
        QueuedCallbackTimers timers(*m_time, [&] { return m_time->now() + asleep; });
        MLiteTimer registry(timers);
        Counted counted(registry, 100);
        counted.timer.Enabled(true);
        asleep = Milliseconds{1050};
        m_time->advance(Milliseconds{100});
        QCOMPARE(counted.events, 1); // at 1150, the next at 1200
        m_time->advance(Milliseconds{40});
        QCOMPARE(counted.events, 1);
        m_time->advance(Milliseconds{10});
        QCOMPARE(counted.events, 2);
    }

    void manyTimersEachKeepTheirInterval()
    {
        std::vector<std::unique_ptr<Counted>> many;
        for (int i = 0; i < 40'000; ++i) {
            many.push_back(std::make_unique<Counted>(*m_registry, 1000 + i % 20'000));
            many.back()->timer.Enabled(true);
        }
        m_time->advance(std::chrono::seconds{60});
        for (int i = 0; i < 40'000; ++i) {
            QCOMPARE(many[std::size_t(i)]->events, 60'000 / (1000 + i % 20'000));
        }
    }

    void theEventLoopDrivesThem()
    {
        EventLoopTimers loop;
        QueuedCallbackTimers timers(loop);
        MLiteTimer registry(timers);
        Counted often(registry, 1);
        Counted seldom(registry, 30);
        seldom.timer.Enabled(true);
        often.timer.Enabled(true); // its turn comes first: the loop is woken earlier
        QTRY_VERIFY(seldom.events >= 2);
        QVERIFY(often.events >= seldom.events);
    }

private:
    std::unique_ptr<test::ManualTimers> m_time;
    std::unique_ptr<QueuedCallbackTimers> m_timers;
    std::unique_ptr<MLiteTimer> m_registry;
};

QTEST_GUILESS_MAIN(LiteTimerTest)
#include "lite_timer_test.moc"
