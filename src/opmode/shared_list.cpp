#include "opmode/shared_list.h"

#include "opmode/alarm_actions.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/recorded_tree.h"
#include "platform/lasting_clock.h"

namespace ktr {

namespace {

constexpr Milliseconds readAgainDelay{1'000};
/// So many are read, and begun, at a time.
constexpr qsizetype mostAtOnce = 500;

constexpr Milliseconds awakePeriod{250};
constexpr Milliseconds longestStop{3'000};

} // namespace

SharedList::SharedList(const ListParts &parts, StationActions &stationActions, WatchAlarms &watchAlarms,
                       const QString &name, const Leases::Times &times, qint64 block, QObject *parent)
    : QObject(parent),
      m_parts(parts),
      m_stationActions(stationActions),
      m_watchAlarms(watchAlarms),
      m_awake(parts.timers.create()),
      m_again(parts.timers.create()),
      m_queries(parts.record.path()),
      m_leases(parts.record.path(), name, parts.timers,
               {[this](const QList<qint64> &stations) { gained(stations); },
                [this](const QList<qint64> &stations) { lost(stations); },
                [this](const QString &reason) { Q_EMIT trouble(reason); }, [this] { Q_EMIT turned(); },
                [this] { lapsed(); }, [this](const QList<qint64> &stations) { returned(stations); },
                [this] { return !m_parts.record.writer().isSpooling(); }},
               times, block)
{}

void SharedList::gained(const QList<qint64> &stations)
{
    m_parts.record.writer().setKeeper(m_leases.keeper());
    for (const qint64 station : stations) {
        const QString kennung = m_parts.record.kennung(station);
        if (kennung.isEmpty()) {
            m_wanted += station;
        } else { // it stayed, and what is known of it is newer than what the record has
            cStation &stayed = *m_parts.stations.Item(kennung);
            if (stayed.online()) {
                stayed.connectStation();
            }
            m_stationActions.goOn(kennung);
            Q_EMIT begun(kennung);
        }
    }
    read();
}

void SharedList::read()
{
    if (m_wanted.isEmpty() || m_queries.isWaitedFor(this)) {
        return;
    }
    if (m_parts.record.writer().isSpooling()) { // it may not have all of them yet
        m_again->start(readAgainDelay, [this] { read(); });
        return;
    }
    m_queries.ask(
        this,
        [next = m_wanted.values().mid(0, mostAtOnce)](RecordReader &reader) {
            Read read;
            read.asked = next;
            read.status = reader.stateOf(next, {AlarmActions::shelvesSetting}, read.states);
            return read;
        },
        [this](const Read &read) { take(read); });
}

void SharedList::take(const Read &read)
{
    if (!read.status) {
        Q_EMIT statusMessage(read.status.message());
        m_again->start(readAgainDelay, [this] { this->read(); });
        return;
    }
    RecordedStations states = read.states;
    states.stations.removeIf(
        [this](const StationRow &row) { return !m_wanted.contains(row.id); }); // lost meanwhile
    const QHash<qint64, QString> names = loadStations(m_parts.tree, states);
    QList<AlarmRow> alarms;
    for (const AlarmRow &alarm : read.states.alarms) {
        if (names.contains(alarm.station)) {
            alarms += alarm;
        }
    }
    QList<Shelf> shelves = AlarmActions::shelves(read.states.settings);
    shelves.removeIf([&](const Shelf &shelf) { return !names.contains(shelf.station); });
    m_parts.alarms.takeOver(alarms, shelves);
    m_watchAlarms.takeOver(alarms);
    for (const StationRow &row : read.states.stations) {
        if (names.contains(row.id)) {
            takeStation(row, names.value(row.id));
        }
    }
    m_wanted.subtract(QSet(read.asked.cbegin(), read.asked.cend()));
    Q_EMIT shareChanged(m_parts.stations.Count());
    this->read();
}

void SharedList::takeStation(const StationRow &row, const QString &kennung)
{
    m_parts.record.knowStation(row.id, kennung);
    m_stationActions.begin(kennung, stationAttributes(row.attributes));
    m_stationActions.goOn(kennung);
    Q_EMIT begun(kennung);
}

void SharedList::lost(const QList<qint64> &stations)
{
    if (isHeld()) { // what they have said by now is still heard, and answered
        for (const qint64 station : stations) {
            if (cStation *leaving = m_parts.stations.Item(m_parts.record.kennung(station))) {
                leaving->handleWaiting();
            }
        }
    }
    leave(stations);
    m_leaving.push_back({m_parts.record.writer().addedCount(), stations});
    m_parts.record.writer().flush();
    settled();
}

void SharedList::leave(const QList<qint64> &stations)
{
    QStringList leaving;
    for (const qint64 station : stations) {
        m_wanted.remove(station);
        if (const QString kennung = m_parts.record.kennung(station); !kennung.isEmpty()) {
            leaving += kennung;
        }
    }
    for (const QString &kennung : std::as_const(leaving)) {
        m_watchAlarms.handOver(m_parts.record.number(kennung));
        m_parts.stations.Remove(kennung);
        m_parts.scheduler.remove(kennung);
        m_parts.trends.remove(kennung);
        m_stationActions.forget(kennung);
        m_parts.tree.remove(m_parts.tree.find(kennung));
        m_parts.record.removeStation(kennung);
    }
    m_parts.alarms.handOver(QSet(stations.cbegin(), stations.cend()));
    Q_EMIT shareChanged(m_parts.stations.Count());
}

void SharedList::lapsed()
{
    m_wanted.clear();
    m_leaving.clear();
    m_isLapsed = true;
    m_lastAwake = lastingTime();
    Q_EMIT statusMessage(tr("The database is away for too long: modules that still talk to this keeper are "
                            "answered, none is asked"));
    stayAwake();
}

bool SharedList::mayAnswer() const
{
    return isHeld() || (m_isLapsed && lastingTime() - m_lastAwake < longestStop);
}

void SharedList::stayAwake()
{
    if (mayAnswer()) {
        m_lastAwake = lastingTime();
        m_awake->start(awakePeriod, [this] { stayAwake(); });
    } else {
        returned({});
    }
}

/// What others have by now, or had, leaves.
void SharedList::returned(const QList<qint64> &stations)
{
    m_awake->stop();
    if (!std::exchange(m_isLapsed, false)) {
        return;
    }
    QList<qint64> leaving = m_parts.record.names().keys();
    const QSet<qint64> stay(stations.cbegin(), stations.cend());
    leaving.removeIf([&stay](qint64 station) { return stay.contains(station); });
    if (!leaving.isEmpty()) {
        leave(leaving);
    }
}

void SharedList::settled()
{
    while (!m_leaving.empty() && m_leaving.front().rows <= m_parts.record.writer().inRecordCount()) {
        m_leases.released(m_leaving.front().stations);
        m_leaving.pop_front();
    }
}

} // namespace ktr
