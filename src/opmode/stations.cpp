#include "opmode/stations.h"

namespace ktr {

cStations::cStations(StationTree &tree, MLiteTimer &timers, LineFactory createLine, QObject *parent)
    : QObject(parent), m_tree(tree), m_timers(timers), m_createLine(std::move(createLine))
{}

cStations::~cStations()
{
    while (!m_list.empty()) {
        Remove(m_list.back()->station.kennung());
    }
}

bool cStations::addStation(const QString &kennung, const QString &hostAddress)
{
    if (m_byKey.contains(kennung) ||
        (!m_tree.find(kennung).isValid() && !m_tree.addStation(kennung).isValid())) {
        return false;
    }
    m_list.push_back(std::make_unique<Member>(kennung, m_createLine(), m_timers, *this));
    m_list.back()->station.setHostAddress(hostAddress);
    m_byKey.insert(kennung, std::prev(m_list.end()));
    return true;
}

cStation *cStations::Item(const QString &key) const
{
    const auto found = m_byKey.constFind(key);
    return found == m_byKey.constEnd() ? nullptr : &(**found)->station;
}

void cStations::Remove(const QString &key)
{
    if (cStation *station = Item(key)) {
        station->disconnect(); // it may say something more
    }
    const auto found = m_byKey.constFind(key);
    if (found == m_byKey.constEnd()) {
        return;
    }
    m_removed.splice(m_removed.end(), m_list, *found);
    m_byKey.erase(found);
    QMetaObject::invokeMethod(
        this, [this] { m_removed.clear(); }, Qt::QueuedConnection);
}

void cStations::station_message(const QString &kennung, const QString &text)
{
    Q_EMIT message(kennung, text);
}

void cStations::stationChanged(const QString &kennung, StationChange what)
{
    Q_EMIT changed(kennung, what);
}

void cStations::stationTrouble(const QString &kennung, const QString &text)
{
    Q_EMIT trouble(kennung, text);
}

} // namespace ktr
