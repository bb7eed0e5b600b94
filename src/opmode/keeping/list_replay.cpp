#include "opmode/keeping/list_replay.h"

#include "opmode/tree/acknowledgement.h"
#include "record/json_text.h"

namespace ktr {

namespace {

const QLatin1String addressMember("address");
const QLatin1String onlineMember("online");
const QLatin1String exclusiveMember("exclusive");
const QLatin1String dayOnMember("dayOn");
const QLatin1String hourOnMember("hourOn");
const QLatin1String dayOffMember("dayOff");
const QLatin1String hourOffMember("hourOff");

} // namespace

QString toJson(const StationAttributes &attributes)
{
    const QJsonObject members{
        {addressMember, attributes.hostAddress},     {onlineMember, attributes.online},
        {exclusiveMember, attributes.exclusiveMode}, {dayOnMember, attributes.schedule.dayOn},
        {hourOnMember, attributes.schedule.hourOn},  {dayOffMember, attributes.schedule.dayOff},
        {hourOffMember, attributes.schedule.hourOff}};
    return jsonText(members);
}

StationAttributes stationAttributes(const QString &json)
{
    const QJsonObject members = jsonOf(json).object();
    return {members[exclusiveMember].toBool(),
            {members[hourOnMember].toString(), members[dayOnMember].toInt(),
             members[hourOffMember].toString(), members[dayOffMember].toInt()},
            members[addressMember].toString(),
            members[onlineMember].toBool()};
}

ListReplay::~ListReplay()
{
    for (const NodeStore::Id station : std::as_const(m_removed)) {
        m_tree.drop(station);
    }
}

bool ListReplay::carryOut(const EventRow &event)
{
    const QString kennung = m_names.value(event.station);
    switch (event.kind) {
    case EventKind::Notification:
    case EventKind::Values:
    case EventKind::History:
        m_tree.apply(kennung, interpretStationMessage(event.text), QDateTime::fromMSecsSinceEpoch(event.at));
        return m_tree.find(kennung).isValid();
    case EventKind::StationAdded:
        return addStation(event);
    case EventKind::StationRemoved: {
        const QModelIndex station = m_tree.find(kennung);
        if (station.isValid()) {
            m_removed.insert(event.station, m_tree.setAside(station));
        }
        m_names.remove(event.station);
        m_attributes.remove(kennung);
        return !kennung.isEmpty();
    }
    case EventKind::StationRenamed:
        return m_tree.setData(m_tree.find(kennung), event.text);
    case EventKind::Attributes:
        m_attributes.insert(kennung, stationAttributes(event.detail));
        return !kennung.isEmpty();
    case EventKind::Acknowledged:
        return acknowledge(kennung, event);
    case EventKind::EntryRemoved:
        return removeEntry(kennung, event);
    default:
        return false;
    }
}

/// One that has the number of a removed one is that.
bool ListReplay::addStation(const EventRow &event)
{
    QModelIndex station;
    if (const auto removed = m_removed.constFind(event.station); removed != m_removed.cend()) {
        station = m_tree.putBack(*removed);
        if (station.isValid()) {
            m_removed.erase(removed);
        }
    }
    if (!station.isValid()) {
        station = m_tree.addStation(event.text);
    }
    if (!station.isValid()) {
        return false;
    }
    const QString kennung = station.data(StationTree::KeyRole).toString();
    m_names.insert(event.station, kennung);
    m_attributes.insert(kennung, stationAttributes(event.detail));
    return true;
}

bool ListReplay::acknowledge(const QString &kennung, const EventRow &event)
{
    const QModelIndex entry = m_tree.find(entryKey(kennung, branches::notifications, event.text));
    if (!entry.isValid()) {
        return false;
    }
    m_tree.carryOut(acknowledgementOf({entry}, m_tree, QDateTime::fromMSecsSinceEpoch(event.at)));
    return true;
}

bool ListReplay::removeEntry(const QString &kennung, const EventRow &event)
{
    const QModelIndex entry = m_tree.find(kennung + u'/' + event.text);
    m_tree.remove(entry);
    return entry.isValid();
}

} // namespace ktr
