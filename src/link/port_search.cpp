#include "link/port_search.h"

namespace ktr {

PortSearch::PortSearch(Transport &transport, Timers &timers, std::function<QStringList()> ports,
                       QObject *parent)
    : QObject(parent), m_transport(transport), m_timer(timers.create()), m_ports(std::move(ports))
{
    connect(&m_transport, &Transport::lost, this, [this] { m_port.clear(); });
}

void PortSearch::start()
{
    m_running = true;
    m_ticks = 0;
    m_lastTried.clear();
    m_refusals.clear();
    leavePort();
    tick();
}

void PortSearch::stop()
{
    m_running = false;
    m_timer->stop();
}

void PortSearch::tick()
{
    const QStringList ports = m_ports();
    const bool unplugged = !ports.contains(m_port);
    const bool heardLongEnough = ++m_ticksOnPort >= ticksPerPort && ports.size() > 1;
    if (unplugged || heardLongEnough) {
        leavePort();
        openNext(ports);
    }
    if (!m_running) {
        return;
    }
    if (++m_ticks >= longestSearch) {
        stop();
        leavePort();
        Q_EMIT gaveUp();
        return;
    }
    m_timer->start(tickInterval, [this] { tick(); });
}

void PortSearch::leavePort()
{
    if (!m_port.isEmpty()) {
        m_transport.close();
        m_port.clear();
    }
}

/// Tries the ports after the one tried last, each once, and stays at the first that opens.
void PortSearch::openNext(const QStringList &ports)
{
    const qsizetype after = ports.indexOf(m_lastTried) + 1;
    for (qsizetype i = 0; i < ports.size(); ++i) {
        const QString &port = ports[(after + i) % ports.size()];
        m_lastTried = port;
        if (const Status status = m_transport.open(port); !status) {
            if (!m_refusals.contains(status.message())) {
                m_refusals += status.message();
                Q_EMIT refused(status.message());
            }
            continue;
        }
        m_refusals.removeIf([&port](const QString &reason) { return reason.startsWith(port + u':'); });
        m_port = port;
        m_ticksOnPort = 0;
        Q_EMIT opened(port);
        return;
    }
}

} // namespace ktr
