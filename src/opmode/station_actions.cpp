#include "opmode/station_actions.h"

#include "config/address.h"
#include "link/udp_pair.h"
#include "opmode/keeping/list_replay.h"

namespace ktr {

namespace {

/// Addresses that name the same module are the same text.
QString comparable(const QString &hostAddress)
{
    static const QString port = u':' + QString::number(UdpPair::modulePort);
    const QString address = hostAddress.trimmed().toLower();
    return withoutLeadingZeros(address.endsWith(port) ? address.chopped(port.size()) : address);
}

/// What is shown and searched for of a station's attributes.
QString summaryOf(const StationAttributes &attributes)
{
    QStringList parts{attributes.online ? QStringLiteral("online") : QStringLiteral("offline")};
    if (attributes.exclusiveMode) {
        parts += QStringLiteral("exclusive");
    }
    if (!attributes.hostAddress.isEmpty()) {
        parts += attributes.hostAddress;
    }
    return parts.join(QLatin1String(", "));
}

} // namespace

QString allValuesCommand()
{
    return QStringLiteral("A*");
}

StationActions::StationActions(const ListParts &parts, WatchAlarms &watchAlarms, QObject *parent)
    : QObject(parent), m_parts(parts), m_watchAlarms(watchAlarms)
{}

StationRow StationActions::rowOf(const QString &kennung) const
{
    return {m_parts.record.number(kennung), m_parts.tree.find(kennung).data(Qt::EditRole).toString(), true,
            toJson(attributes(kennung))};
}

void StationActions::keep(const QString &kennung, ListRecord::By by)
{
    const StationRow row = rowOf(kennung);
    m_parts.record.add(row);
    m_parts.record.add(EventKind::Attributes, kennung, m_parts.moment(), summaryOf(attributes(kennung)), by,
                       row.attributes);
}

void StationActions::begin(const QString &kennung, const StationAttributes &attributes)
{
    m_parts.stations.addStation(kennung, attributes.hostAddress);
    m_parts.scheduler.setSchedule(kennung, attributes.schedule);
    cStation &created = *m_parts.stations.Item(kennung);
    created.setExclusiveMode(attributes.exclusiveMode);
    if (m_watchAlarms.needsPuk(m_parts.record.number(kennung))) {
        cStation::Seen before; // that it is over is to be told, too
        before.csq = created.csq();
        before.pukNeeded = true;
        created.show(before);
    }
    if (attributes.online) {
        created.connectStation();
    }
}

void StationActions::goOn(const QString &kennung)
{
    cStation &station = *m_parts.stations.Item(kennung);
    if (station.online() && station.exclusiveMode()) {
        station.send(allValuesCommand());
    }
    m_parts.scheduler.switchToPresentState(station);
}

QString StationActions::nameFor(const QString &wanted)
{
    const QString name = QString::fromStdString(storedText(wanted)).trimmed();
    return name.contains(u'/') ? QString() : name;
}

QString StationActions::add(const QString &name, const QString &hostAddress, bool online)
{
    const QString wanted = nameFor(name);
    if (wanted.isEmpty()) {
        return {};
    }
    QString kennung = m_parts.tree.freeName(wanted);
    if (!m_parts.stations.addStation(kennung, hostAddress)) {
        return {};
    }
    m_parts.record.addStation(kennung);
    const StationRow row = rowOf(kennung);
    m_parts.record.add(row);
    m_parts.record.add(EventKind::StationAdded, kennung, m_parts.moment(), kennung, ListRecord::By::Operator,
                       row.attributes);
    if (online) {
        setOnline(kennung, true);
    }
    return kennung;
}

void StationActions::remove(const QString &kennung)
{
    takeOut(kennung);
    m_parts.tree.remove(m_parts.tree.find(kennung));
    m_parts.record.removeStation(kennung);
}

void StationActions::takeOut(const QString &kennung)
{
    m_parts.stations.Remove(kennung);
    m_parts.scheduler.remove(kennung);
    m_parts.trends.remove(kennung);
    m_lent.remove(kennung);
    StationRow row = rowOf(kennung);
    row.listed = false;
    m_watchAlarms.handOver(row.id); // the book ends them below, with the others
    m_parts.record.add(row);
    m_parts.record.add(EventKind::StationRemoved, kennung, m_parts.moment(), row.name,
                       ListRecord::By::Operator);
    m_parts.alarms.forget(row.id, m_parts.moment());
}

void StationActions::bringBack(const QString &kennung, const StationAttributes &attributes,
                               const cStation::Seen &seen)
{
    begin(kennung, attributes);
    m_parts.stations.Item(kennung)->resume(seen);
    const StationRow row = rowOf(kennung);
    m_parts.record.add(row);
    m_parts.record.add(EventKind::StationAdded, kennung, m_parts.moment(), row.name, ListRecord::By::Operator,
                       row.attributes);
    keepLiveness(*m_parts.stations.Item(kennung));
    goOn(kennung);
    Q_EMIT changed(kennung);
}

/// For who looks on, and for how long it may be silent: what did not change is not told by itself.
void StationActions::keepLiveness(const cStation &station)
{
    using Liveness = cStation::Liveness;
    if (station.liveness() == Liveness::Unknown) {
        return;
    }
    const bool isSilent = station.liveness() == Liveness::Silent;
    m_parts.record.add(isSilent ? EventKind::Silent : EventKind::Alive, station.kennung(), m_parts.moment(),
                       station.hostAddress(), ListRecord::By::Program);
    if (isSilent) {
        m_watchAlarms.onStationChanged(m_parts.record.number(station.kennung()), StationChange::Silent, {});
    }
}

void StationActions::keepName(const QString &kennung, const QString &before)
{
    const StationRow row = rowOf(kennung);
    m_parts.record.add(row);
    m_parts.record.add(EventKind::StationRenamed, kennung, m_parts.moment(), row.name,
                       ListRecord::By::Operator, renamingDetail(before));
}

void StationActions::setHostAddress(const QString &kennung, const QString &hostAddress)
{
    cStation *station = m_parts.stations.Item(kennung);
    if (station == nullptr || station->hostAddress() == hostAddress) {
        return;
    }
    station->setHostAddress(hostAddress);
    if (station->online()) { // what the old address said last is no word of the new one
        letGo(*station);
        station->connectStation();
    }
    keep(kennung);
    Q_EMIT changed(kennung);
}

void StationActions::setOnline(const QString &kennung, bool online)
{
    cStation *station = m_parts.stations.Item(kennung);
    if (station == nullptr) {
        return;
    }
    m_lent.remove(kennung);
    if (online) {
        station->connectStation();
    } else {
        letGo(*station);
    }
    keep(kennung);
    Q_EMIT changed(kennung);
}

/// What it has said by now is still heard.
void StationActions::letGo(cStation &station)
{
    station.handleWaiting();
    station.disconnect();
    m_watchAlarms.letGo(m_parts.record.number(station.kennung()));
}

void StationActions::setAllOnline(bool online)
{
    m_parts.stations.forEach([&](cStation &station) {
        if (station.online() != online || isLent(station.kennung())) {
            setOnline(station.kennung(), online);
        }
    });
}

void StationActions::setExclusive(const QString &kennung, bool exclusive)
{
    if (cStation *station = m_parts.stations.Item(kennung)) {
        station->setExclusiveMode(exclusive);
        keep(kennung);
        Q_EMIT changed(kennung);
    }
}

void StationActions::setSchedule(const QString &kennung, const ExclusiveSchedule &schedule)
{
    if (cStation *station = m_parts.stations.Item(kennung)) {
        m_parts.scheduler.setSchedule(kennung, schedule);
        m_parts.scheduler.switchToPresentState(*station);
        keep(kennung);
        Q_EMIT changed(kennung);
    }
}

StationAttributes StationActions::attributes(const QString &kennung) const
{
    const cStation *station = m_parts.stations.Item(kennung);
    return station == nullptr
               ? StationAttributes()
               : StationAttributes{station->exclusiveMode(), m_parts.scheduler.schedule(kennung),
                                   station->hostAddress(), station->online() || isLent(kennung)};
}

bool StationActions::requestValues(const QString &kennung)
{
    cStation *station = m_parts.stations.Item(kennung);
    return station != nullptr && station->send(allValuesCommand());
}

QString StationActions::stationAt(const QString &hostAddress) const
{
    const QString wanted = comparable(hostAddress);
    QString found;
    m_parts.stations.forEach([&](const cStation &station) {
        if (found.isEmpty() && station.online() && comparable(station.hostAddress()) == wanted) {
            found = station.kennung();
        }
    });
    return found;
}

void StationActions::lend(const QString &kennung)
{
    cStation *station = m_parts.stations.Item(kennung);
    if (station != nullptr && station->online()) {
        letGo(*station);
        m_lent.insert(kennung);
        Q_EMIT changed(kennung);
    }
}

void StationActions::takeBack()
{
    for (const QString &kennung : std::exchange(m_lent, {})) {
        setOnline(kennung, true);
    }
}

void StationActions::takeBack(const QString &kennung)
{
    if (m_lent.remove(kennung)) {
        setOnline(kennung, true);
    }
}

} // namespace ktr
