#pragma once

#include "platform/callback_timers.h"

namespace ktr {

class CLiteTimer;

/// Which timer object each running callback timer belongs to. The objects are referred to, not owned, and
/// this must outlive them. What fails in here is traced under "ktr.litetimer" and goes no further.
class MLiteTimer
{
public:
    explicit MLiteTimer(CallbackTimers &timers);
    ~MLiteTimer();
    Q_DISABLE_COPY_MOVE(MLiteTimer)

    /// Starts a callback timer of `interval` ms (above 0) for an object whose id is 0, and gives the new id.
    /// Otherwise, or when the system has no more timers, it gives `id` as it is.
    quint32 StartTimer(CLiteTimer &timer, qint32 interval, quint32 id);

    /// Stops the timer and sets its id to 0; when the system refuses, both stay as they were.
    void StopTimer(quint32 &id);

    static bool TimerRunning(quint32 id) { return id != 0; }

    /// What the callback timers call.
    void TimerProc(quint32 id);

    /// How many timers run.
    std::size_t count() const { return m_registry.size(); }

private:
    CallbackTimers &m_timers;
    std::unordered_map<quint32, CLiteTimer *> m_registry;
};

/// A timer that raises `Timer` after each interval while it is enabled. It is no QObject: there may be tens
/// of thousands.
class CLiteTimer
{
public:
    explicit CLiteTimer(MLiteTimer &registry) : m_registry(registry) {}
    ~CLiteTimer() { m_registry.StopTimer(m_id); }
    Q_DISABLE_COPY_MOVE(CLiteTimer)

    /// Starts or stops it. Starting a running one changes nothing; with an interval of 0 it does not start.
    void Enabled(bool blnEnabled);
    bool Enabled() const { return MLiteTimer::TimerRunning(m_id); }

    /// In milliseconds, 1000 at first. Below 1 it becomes 0 and the timer stops; the period of a running
    /// timer begins anew.
    void Interval(qint32 lngInterval);
    qint32 Interval() const { return m_interval; }

    /// For the registry: raises `Timer` when `id` is this object's.
    void TimerCallBack(quint32 id);

    /// May change, start, stop or destroy this timer and any other.
    std::function<void()> Timer;

private:
    MLiteTimer &m_registry;
    qint32 m_interval = 1000;
    quint32 m_id = 0;
};

} // namespace ktr
