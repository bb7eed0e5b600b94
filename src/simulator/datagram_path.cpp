#include "simulator/datagram_path.h"

#include <utility>

namespace ktr {

DatagramPath::DatagramPath(Timers &timers, const DatagramFaults &faults,
                           std::function<void(const QByteArray &)> arrive)
    : m_faults(faults), m_arrive(std::move(arrive)), m_late(timers.create()), m_random(faults.seed)
{}

void DatagramPath::send(const QByteArray &datagram)
{
    if (happens(m_faults.lost)) {
        return;
    }
    if (!m_held && happens(m_faults.overtaken)) {
        m_held = datagram;
        m_late->start(longestDelay, [this] { release(); });
        return;
    }
    m_arrive(datagram);
    if (happens(m_faults.doubled)) {
        m_arrive(datagram);
    }
    release();
}

void DatagramPath::release()
{
    m_late->stop();
    if (const auto held = std::exchange(m_held, std::nullopt)) {
        m_arrive(*held);
    }
}

} // namespace ktr
