#include "opmode/station/lite_timer.h"

#include <QLoggingCategory>

#include <exception>

namespace ktr {

namespace {

Q_LOGGING_CATEGORY(trace, "ktr.litetimer", QtWarningMsg)

template <class Operation> void carryOn(const char *failure, const Operation &operation)
{
    try {
        operation();
    } catch (const std::exception &error) {
        qCDebug(trace) << failure << error.what();
    }
}

} // namespace

MLiteTimer::MLiteTimer(CallbackTimers &timers) : m_timers(timers)
{
    m_timers.onCallback([this](quint32 id) { TimerProc(id); });
}

MLiteTimer::~MLiteTimer()
{
    m_timers.onCallback([](quint32) {});
}

quint32 MLiteTimer::StartTimer(CLiteTimer &timer, qint32 interval, quint32 id)
{
    quint32 started = 0;
    if (id == 0 && interval > 0) {
        carryOn("StartTimer Error ", [&] {
            started = m_timers.set(Milliseconds(interval));
            if (started != 0) {
                m_registry.emplace(started, &timer);
            }
        });
    }
    return started == 0 ? id : started;
}

void MLiteTimer::StopTimer(quint32 &id)
{
    if (id != 0 && m_timers.kill(id)) {
        m_registry.erase(std::exchange(id, 0));
        if (m_registry.empty()) {
            m_registry = {}; // the memory of many timers is not kept
        }
    }
}

void MLiteTimer::TimerProc(quint32 id)
{
    if (const auto timer = m_registry.find(id); timer != m_registry.end()) {
        timer->second->TimerCallBack(id);
    }
}

void CLiteTimer::Enabled(bool blnEnabled)
{
    if (blnEnabled) {
        m_id = m_registry.StartTimer(*this, m_interval, m_id);
    } else {
        m_registry.StopTimer(m_id);
    }
}

void CLiteTimer::Interval(qint32 lngInterval)
{
    m_interval = std::max(lngInterval, 0);
    if (Enabled()) {
        m_registry.StopTimer(m_id);
        m_id = m_registry.StartTimer(*this, m_interval, m_id);
    }
}

void CLiteTimer::TimerCallBack(quint32 id)
{
    if (id == m_id && Timer) {
        const auto raised = Timer; // it may destroy this timer
        carryOn("TimerCallBack Error ", raised);
    }
}

} // namespace ktr
