#include "cli/service_pulse.h"

#include "cli/console.h"
#include "platform/service_manager.h"

#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include <utility>

namespace ktr::cli {

ServicePulse::ServicePulse(Timers &timers, IoThread &io, Sources sources)
    : m_timer(timers.create()),
      m_io(io),
      m_sources(std::move(sources)),
      m_watchdog(serviceWatchdogTime()),
      m_period(m_watchdog > Milliseconds(0) ? m_watchdog / 2 : usualPeriod),
      m_answered(std::make_shared<std::atomic<quint64>>(0))
{}

void ServicePulse::start()
{
    tellServiceManager("READY=1");
    beat();
}

void ServicePulse::stop()
{
    m_timer->stop();
    tellServiceManager("STOPPING=1");
}

void ServicePulse::beat()
{
    m_timer->start(m_period, [this] { beat(); });
    const QString state =
        m_sources.state().simplified(); // a line end would begin another word to the manager
    if (state != std::exchange(m_told, state)) {
        tellServiceManager("STATUS=" + state.toUtf8());
    }
    const bool wasAlive = std::exchange(m_isAlive, isAlive());
    if (m_isAlive && m_watchdog > Milliseconds(0)) {
        tellServiceManager("WATCHDOG=1");
    } else if (wasAlive && !m_isAlive) {
        complain(QStringLiteral("a thread stands still: the service manager gets no signs of life any more"));
    }
}

bool ServicePulse::isAlive()
{
    const bool hasAnswered = *m_answered == m_asked;
    if (hasAnswered) {
        asio::post(m_io.context(), [answered = m_answered, asked = ++m_asked] { *answered = asked; });
    }
    const quint64 work = m_sources.workInHand();
    m_workTime = work != 0 && work == m_work ? m_workTime + m_period : Milliseconds(0);
    m_work = work;
    return hasAnswered && m_workTime < longestWork;
}

} // namespace ktr::cli
