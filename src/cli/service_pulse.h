#pragma once

#include "link/io_thread.h"
#include "platform/timers.h"

#include <atomic>
#include <functional>
#include <memory>

namespace ktr::cli {

/// Tells the manager of services that the program is ready, that it is alive and how it stands; to be used in
/// the event loop, whose standstill ends the signs of life. They also end when the I/O thread or the record's
/// writer stands still, so that the manager starts the program anew.
class ServicePulse
{
public:
    /// So often it tells how the program stands where nobody waits for signs of life.
    static constexpr Milliseconds usualPeriod{10'000};
    /// A piece of work of the record's writer that takes longer hangs. A disk may take its time: what waits
    /// for it meanwhile would be lost by an end.
    static constexpr Milliseconds longestWork{300'000};

    struct Sources
    {
        std::function<quint64()> workInHand; ///< as RecordWriter's
        std::function<QString()> state;      ///< a short line
    };
    /// `io` and `timers` must outlive it.
    ServicePulse(Timers &timers, IoThread &io, Sources sources);

    /// The program has begun to do what it is for.
    void start();
    /// It is about to end.
    void stop();

private:
    void beat();
    bool isAlive();

    std::unique_ptr<OneShotTimer> m_timer;
    IoThread &m_io;
    Sources m_sources;
    Milliseconds m_watchdog;
    Milliseconds m_period;
    quint64 m_asked = 0;                              ///< how often the I/O thread was
    std::shared_ptr<std::atomic<quint64>> m_answered; ///< which of these it answered last
    quint64 m_work = 0;
    Milliseconds m_workTime{0}; ///< it has been in hand, counted in beats
    bool m_isAlive = true;
    QString m_told;
};

} // namespace ktr::cli
