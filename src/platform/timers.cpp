#include "platform/timers.h"

#include <QTimer>

namespace ktr {

namespace {

class EventLoopTimer : public OneShotTimer
{
public:
    EventLoopTimer()
    {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            const auto fired = m_fired; // it may start this timer again, or destroy it
            fired();
        });
    }

    void start(Milliseconds wait, std::function<void()> fired) override
    {
        m_fired = std::move(fired);
        m_timer.start(wait);
    }
    void stop() override { m_timer.stop(); }
    bool isRunning() const override { return m_timer.isActive(); }

private:
    QTimer m_timer;
    std::function<void()> m_fired;
};

} // namespace

std::unique_ptr<OneShotTimer> EventLoopTimers::create()
{
    return std::make_unique<EventLoopTimer>();
}

} // namespace ktr
