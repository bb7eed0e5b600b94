#include "transmissions/fleet_transmission.h"

#include <utility>

namespace ktr {

FleetTransmission::FleetTransmission(const StationTransmission::Means &means, int atOnce, QObject *parent)
    : QObject(parent), m_means(means), m_atOnce(atOnce)
{}

void FleetTransmission::add(int index, StationOrder order)
{
    m_waiting.push_back({index, std::move(order)});
}

void FleetTransmission::start()
{
    // Whoever listens hears of the end in the event loop, even when nothing can begin.
    QMetaObject::invokeMethod(
        this, [this] { fill(); }, Qt::QueuedConnection);
}

void FleetTransmission::cancel(const QString &why)
{
    m_waiting.clear();
    for (StationTransmission *station : std::vector(m_running)) {
        station->cancel(why);
    }
}

void FleetTransmission::fill()
{
    if (std::exchange(m_isFilling, true)) {
        return;
    }
    while (!m_waiting.empty() && static_cast<int>(m_running.size()) < m_atOnce) {
        Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        Q_EMIT stationBegins(next.index);
        auto *station = new StationTransmission(m_means, std::move(next.order), this);
        m_running.push_back(station);
        connect(station, &StationTransmission::ended, this,
                [this, index = next.index, station] { takeEnd(index, station); });
        connect(station, &StationTransmission::handedOver, this,
                [this, index = next.index](int step) { Q_EMIT stationHandedOver(index, step); });
        station->start(); // may end at once
    }
    m_isFilling = false;
    if (m_running.empty() && m_waiting.empty() && !std::exchange(m_hasEnded, true)) {
        Q_EMIT ended();
    }
}

void FleetTransmission::takeEnd(int index, StationTransmission *station)
{
    std::erase(m_running, station);
    Q_EMIT stationEnded(index, station->outcome());
    station->deleteLater(); // it is what called
    QMetaObject::invokeMethod(
        this, [this] { fill(); }, Qt::QueuedConnection);
}

} // namespace ktr
