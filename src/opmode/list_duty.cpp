#include "opmode/list_duty.h"

namespace ktr {

namespace {

constexpr int turnsBetweenAlarms = 5;

} // namespace

ListDuty::ListDuty(const ListParts &parts, WatchAlarms &watchAlarms, Leases &leases)
    : m_parts(parts), m_watchAlarms(watchAlarms), m_leases(leases), m_queries(parts.record.path())
{
    m_leases.want(name());
}

ListDuty::~ListDuty()
{
    m_leases.note(name(), {});
}

void ListDuty::turned()
{
    if (isHeld()) {
        lookAtStations();
        if (m_turns++ % turnsBetweenAlarms == 0) {
            lookForAlarms();
        }
        return;
    }
    if (std::exchange(m_turns, 0) != 0) {
        m_queries.withdraw(this);
        m_watchAlarms.setUnkeptTrouble({});
        m_isTold = false;
        m_parts.alarms.letGo(std::exchange(m_takenOver, {}));
    }
}

/// What goes with the duty is the time, by the server's clock, at which all stations had a keeper. So the
/// first one that is there after a while in which nobody was knows it, too.
void ListDuty::lookAtStations()
{
    const Leases::Overview &overview = m_leases.overview();
    const qint64 noted = m_leases.noted(name()).toLongLong();
    const qint64 since = noted == 0 ? overview.now : noted;
    const bool isLong = overview.now - since > longestUnkeptMs;
    if (overview.unkept > 0) {
        if (isLong && !std::exchange(m_isTold, true)) {
            m_watchAlarms.setUnkeptTrouble(tr("Stations of the list have no keeper"));
        }
        m_leases.note(name(), QString::number(since));
        return;
    }
    if (std::exchange(m_isTold, false)) {
        m_watchAlarms.setUnkeptTrouble({});
    } else if (isLong) {
        m_watchAlarms.tellUnwatched(since, overview.now, tr("Stations had no keeper"));
    }
    m_leases.note(name(), QString::number(overview.now));
}

void ListDuty::lookForAlarms()
{
    using Found = std::pair<Status, QList<AlarmRow>>;
    m_queries.ask(
        this,
        [](RecordReader &reader) {
            Found found(Status::done(), {});
            found.first = reader.alarmsOfGoneKeepers([&](const AlarmRow &alarm) { found.second += alarm; });
            return found;
        },
        [this](const Found &found) {
            if (found.first && isHeld()) {
                take(found.second);
            }
        });
}

/// None is taken a second time: what was read may be older than what was done here since.
void ListDuty::take(const QList<AlarmRow> &found)
{
    QList<AlarmRow> fresh;
    QSet<qint64> back = m_takenOver; // of keepers that are there again
    for (const AlarmRow &alarm : found) {
        back.remove(alarm.id);
        if (!m_takenOver.contains(alarm.id)) {
            m_takenOver += alarm.id;
            fresh += alarm;
        }
    }
    m_takenOver -= back;
    if (!back.isEmpty()) {
        m_parts.alarms.letGo(back);
    }
    if (fresh.isEmpty()) {
        return;
    }
    m_parts.alarms.takeOver(fresh);
    for (const AlarmRow &alarm : std::as_const(fresh)) {
        m_parts.alarms.end(alarm.id, m_parts.moment(), tr("the keeper that told it is gone"));
    }
}

} // namespace ktr
