#include "opmode/alarm_centre.h"

#include "opmode/tree/notifications.h"

namespace ktr {

AlarmCentre::AlarmCentre(const StationTree &tree, Timers &timers, QObject *parent)
    : QObject(parent), m_tree(tree), m_pause(timers.create()), m_soon(timers.create())
{
    connect(&tree, &StationTree::alarmCountChanged, this, &AlarmCentre::recount);
    connect(&tree, &StationTree::modelReset, this, &AlarmCentre::takeLoaded);
    connect(&tree, &StationTree::dataChanged, this,
            [this](const QModelIndex &from, const QModelIndex &, const QList<int> &roles) {
                if (!from.parent().isValid() && roles.contains(Qt::DisplayRole)) { // a station's name
                    recount();
                }
            });
    takeLoaded();
}

AlarmCentre::~AlarmCentre() = default;

void AlarmCentre::addAlarm(const QModelIndex &entry)
{
    ++m_arrived;
    if (!m_firstArrived.isValid()) {
        m_firstArrived = entry;
    }
    // One that was acknowledged and came again is the oldest no more; a clock put back makes others older.
    const qint64 raised = entry.data(StationTree::RaisedRole).toLongLong();
    if (m_first == entry ? raised != m_firstRaised : raised <= m_firstRaised) {
        m_first = QModelIndex();
    }
    m_latest = entry;
    m_soon->stop();
    update();
}

/// Many acknowledgements in one turn are told once; an alarm that is on its way here tells of it, too.
void AlarmCentre::recount()
{
    if (!m_pause->isRunning() && !m_soon->isRunning()) {
        m_soon->start(Milliseconds(0), [this] { update(); });
    }
    m_isStale = true;
}

/// What an earlier run left red is told like one alarm that arrives now.
void AlarmCentre::takeLoaded()
{
    search();
    m_arrived = m_tree.alarmCount();
    m_firstArrived = m_first;
    if (m_arrived > 0 || m_unacknowledged > 0) {
        update();
    }
}

void AlarmCentre::update()
{
    if (m_pause->isRunning()) {
        m_isStale = true;
    } else {
        tell();
    }
}

void AlarmCentre::tell()
{
    m_isStale = false;
    m_unacknowledged = m_tree.alarmCount();
    if (m_unacknowledged > 0 && (!isRed(m_first) || !isRed(m_latest))) {
        search();
    }
    m_pause->start(pauseBetweenNews, [this] {
        if (m_isStale) {
            tell();
        }
    });
    Q_EMIT changed();
    const int arrived = std::exchange(m_arrived, 0);
    const QPersistentModelIndex firstArrived = std::exchange(m_firstArrived, {});
    // What was acknowledged meanwhile is no news.
    if (arrived > 0 && m_unacknowledged > 0) {
        const auto latest = alarm(m_latest);
        const auto first = isRed(firstArrived) ? alarm(firstArrived) : latest;
        Q_EMIT attention({arrived, m_unacknowledged, first.value_or(Alarm()), latest.value_or(Alarm())});
    }
}

bool AlarmCentre::isRed(const QPersistentModelIndex &entry) const
{
    return entry.isValid() && entry.data(StationTree::ColourRole).toInt() == StationTree::alarmColour;
}

/// Those without a time were there before those with one.
void AlarmCentre::search()
{
    using Age = std::pair<qint64, NodeStore::Id>;
    std::optional<Age> oldest; // by when it became red
    std::optional<Age> newest; // by its latest arrival
    eachNotification(m_tree, [&](NodeStore::Id id) {
        if (isAlarm(m_tree, id)) {
            const Arrival arrival = m_tree.arrivals().value(id);
            const Age raised(arrival.raised, id);
            const Age received(arrival.received, id);
            oldest = std::min(oldest.value_or(raised), raised);
            newest = std::max(newest.value_or(received), received);
        }
    });
    m_firstRaised = oldest ? oldest->first : 0;
    m_first = oldest ? nodeIndex(m_tree, oldest->second) : QModelIndex();
    m_latest = newest ? nodeIndex(m_tree, newest->second) : QModelIndex();
}

std::optional<Alarm> AlarmCentre::alarm(const QModelIndex &entry) const
{
    const QModelIndex station = entry.parent().parent();
    if (m_unacknowledged == 0 || !station.isValid()) {
        return std::nullopt;
    }
    return Alarm{station.data(StationTree::KeyRole).toString(),
                 station.data().toString(),
                 splitNotification(entry.data().toString()).message,
                 entry.data(StationTree::ReceivedRole).toLongLong(),
                 entry.data(StationTree::RaisedRole).toLongLong(),
                 entry};
}

} // namespace ktr
