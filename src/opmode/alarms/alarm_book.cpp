#include "opmode/alarms/alarm_book.h"

#include "record/closed_by_removal.h"

#include <algorithm>
#include <utility>

namespace ktr {

AlarmBook::AlarmBook(std::function<qint64()> nextId, QObject *parent)
    : QObject(parent), m_nextId(std::move(nextId))
{
    if (!m_nextId) {
        m_nextId = [this] { return ++m_lastId; };
    }
}

void AlarmBook::setRules(const AlarmRules &rules)
{
    m_rules = rules;
    m_ends.clear();
    for (const auto &[id, alarm] : m_standing) {
        const QString end =
            alarm.kind == AlarmKind::Module && alarm.over == 0 ? m_rules.endOf(alarm.text) : QString();
        if (!end.isEmpty()) {
            m_ends.insert({alarm.station, end}, id);
        }
    }
}

void AlarmBook::load(const QList<AlarmRow> &standing, const QList<Shelf> &shelves)
{
    m_standing.clear();
    m_waiting.clear();
    m_ids.clear();
    m_begun.clear();
    m_ends.clear();
    m_arrivals.clear();
    m_shelves = shelves;
    takeOver(standing);
}

void AlarmBook::putQuietly(const QList<AlarmRow> &standing)
{
    const QSignalBlocker quiet(this);
    for (AlarmRow alarm : standing) {
        const Shelf *shelf = shelfOf(alarm);
        alarm.shelvedUntil = shelf == nullptr ? 0 : shelf->until; // else nothing would ever take it back
        put(std::move(alarm), Change::Other);
    }
}

void AlarmBook::takeOver(const QList<AlarmRow> &standing, const QList<Shelf> &shelves)
{
    m_shelves += shelves;
    putQuietly(standing);
    Q_EMIT reset();
}

void AlarmBook::handOver(const QSet<qint64> &stations)
{
    keepOnly([&](const AlarmRow &alarm) { return !stations.contains(alarm.station); },
             [&](const Shelf &shelf) { return !stations.contains(shelf.station); });
}

void AlarmBook::letGo(const QSet<qint64> &alarms)
{
    keepOnly([&](const AlarmRow &alarm) { return !alarms.contains(alarm.id); },
             [](const Shelf &) { return true; });
}

void AlarmBook::keepOnly(const std::function<bool(const AlarmRow &)> &stays,
                         const std::function<bool(const Shelf &)> &shelfStays)
{
    QList<AlarmRow> stay;
    for (const auto &[id, alarm] : m_standing) {
        if (stays(alarm)) {
            stay += alarm;
        }
    }
    const QHash<qint64, QHash<QString, qint64>> arrivals = std::exchange(m_arrivals, {});
    QList<Shelf> shelves = m_shelves;
    shelves.removeIf([&](const Shelf &shelf) { return !shelfStays(shelf); });
    load(stay, shelves);
    for (const AlarmRow &alarm : std::as_const(stay)) {
        if (const auto numbers = arrivals.constFind(alarm.id); numbers != arrivals.cend()) {
            m_arrivals.insert(alarm.id, *numbers);
        }
    }
}

void AlarmBook::follow(const AlarmRow &row)
{
    const AlarmRow *before = alarm(row.id);
    if (before == nullptr) {
        if (row.acknowledged == 0 || row.over == 0) {
            put(row, row.acknowledged == 0 ? Change::Came : Change::Other);
        }
    } else if (*before != row) {
        put(row, before->acknowledged == 0 && row.acknowledged != 0 ? Change::Acknowledged
                 : before->over == 0 && row.over != 0               ? Change::Over
                 : row.count > before->count                        ? Change::CameAgain
                                                                    : Change::Other);
    }
}

int AlarmBook::waitingCount(const QSet<qint64> &stations) const
{
    return static_cast<int>(std::ranges::count_if(
        m_waiting, [&](qint64 id) { return stations.contains(m_standing.at(id).station); }));
}

int AlarmBook::shelvedCount() const
{
    return static_cast<int>(std::ranges::count_if(m_standing, [this](const auto &entry) {
        return entry.second.acknowledged == 0 && isShelved(entry.second);
    }));
}

const AlarmRow *AlarmBook::alarm(qint64 id) const
{
    const auto found = m_standing.find(id);
    return found == m_standing.end() ? nullptr : &found->second;
}

const AlarmRow *AlarmBook::find(qint64 station, const QString &text) const
{
    return alarm(m_ids.value({station, text}));
}

qint64 AlarmBook::addNotification(qint64 station, const QString &number, const QString &text, qint64 at)
{
    const QList<qint64> over = m_ends.values({station, text.toLower()});
    for (const qint64 id : over) {
        finish(id, at, text);
    }
    const AlarmRule *rule = m_rules.of(text);
    if (rule == nullptr) {
        return 0;
    }
    if (const AlarmRow *before = find(station, text)) {
        if (before->acknowledged == 0) {
            AlarmRow alarm = *before;
            QHash<QString, qint64> &arrivals = m_arrivals[alarm.id];
            if (arrivals.isEmpty()) { // of an earlier run
                for (const QString &recipient : std::as_const(alarm.recipients)) {
                    arrivals[recipient] = alarm.count;
                }
            }
            const bool isNewRecipient = !alarm.recipients.contains(number);
            if (isNewRecipient) {
                alarm.recipients += number;
            }
            alarm.last = at;
            alarm.over = 0;
            alarm.overWhy.clear();
            const qint64 times = ++arrivals[number];
            const bool isAgain = times > alarm.count;
            alarm.count = std::max(alarm.count, times);
            const qint64 id = alarm.id;
            put(std::move(alarm), isAgain ? Change::CameAgain : Change::Other);
            return id;
        }
        finish(before->id, at, text);
    }
    AlarmRow alarm;
    alarm.station = station;
    alarm.kind = AlarmKind::Module;
    alarm.text = text;
    alarm.priority = static_cast<int>(rule->priority);
    alarm.first = alarm.last = at;
    alarm.count = 1;
    alarm.recipients = {number};
    const qint64 id = add(std::move(alarm));
    m_arrivals[id][number] = 1;
    return id;
}

qint64 AlarmBook::begin(AlarmKind kind, qint64 station, const QString &text, qint64 at,
                        AlarmPriority priority)
{
    if (const AlarmRow *before = this->alarm(m_begun.value({station, text}))) {
        const qint64 id = before->id;
        if (before->over != 0) { // not acknowledged, or it would stand no longer
            AlarmRow again = *before;
            again.last = at;
            ++again.count;
            again.over = 0;
            again.overWhy.clear();
            put(std::move(again), Change::CameAgain);
        }
        return id;
    }
    AlarmRow alarm;
    alarm.station = station;
    alarm.kind = kind;
    alarm.text = text;
    alarm.priority = static_cast<int>(priority);
    alarm.first = alarm.last = at;
    alarm.count = 1;
    return add(std::move(alarm));
}

qint64 AlarmBook::add(AlarmRow alarm)
{
    alarm.id = m_nextId();
    if (const Shelf *shelf = shelfOf(alarm); shelf != nullptr && shelf->until > alarm.first) {
        alarm.shelvedUntil = shelf->until;
        alarm.shelvedBy = shelf->by;
        alarm.shelvedWhy = shelf->why;
    }
    const qint64 id = alarm.id;
    put(std::move(alarm), Change::Came);
    return id;
}

/// The one place where an alarm changes: keeps what is found by station, text and end in step.
void AlarmBook::put(AlarmRow alarm, Change change)
{
    const qint64 id = alarm.id;
    const bool stands = alarm.acknowledged == 0 || alarm.over == 0;
    if (isWaiting(alarm)) {
        m_waiting.insert(id);
    } else {
        m_waiting.erase(id);
    }
    if (alarm.kind == AlarmKind::Module) {
        const Place place(alarm.station, alarm.text);
        const QString end = m_rules.endOf(alarm.text);
        const Place endPlace(alarm.station, end);
        m_ends.remove(endPlace, id);
        if (stands) {
            m_ids.insert(place, id);
            if (!end.isEmpty() && alarm.over == 0) {
                m_ends.insert(endPlace, id);
            }
        } else if (m_ids.value(place) == id) {
            m_ids.remove(place);
        }
    } else if (stands) {
        m_begun.insert({alarm.station, alarm.text}, id);
    } else {
        m_begun.remove({alarm.station, alarm.text});
    }
    if (stands) {
        m_standing.insert_or_assign(id, alarm);
    } else {
        m_standing.erase(id);
        m_arrivals.remove(id);
    }
    Q_EMIT changed(alarm, change);
}

void AlarmBook::finish(qint64 id, qint64 at, const QString &why)
{
    const AlarmRow *found = alarm(id);
    if (found != nullptr && found->over == 0) {
        AlarmRow over = *found;
        over.over = at;
        over.overWhy = why;
        put(std::move(over), Change::Over);
    }
}

void AlarmBook::acknowledge(const QList<qint64> &alarms, qint64 at, const QString &by)
{
    for (const qint64 id : alarms) {
        const AlarmRow *found = alarm(id);
        if (found != nullptr && found->acknowledged == 0) {
            AlarmRow acknowledged = *found;
            acknowledged.acknowledged = at;
            acknowledged.acknowledgedBy = by;
            put(std::move(acknowledged), Change::Acknowledged);
        }
    }
}

void AlarmBook::comment(qint64 id, const QString &text)
{
    if (const AlarmRow *found = alarm(id); found != nullptr && found->comment != text) {
        AlarmRow commented = *found;
        commented.comment = text;
        put(std::move(commented), Change::Other);
    }
}

const Shelf *AlarmBook::shelfOf(const AlarmRow &alarm) const
{
    const auto shelf = std::ranges::find_if(m_shelves, [&](const Shelf &candidate) {
        return candidate.station == alarm.station &&
               (candidate.text.isEmpty() || candidate.text == alarm.text);
    });
    return shelf == m_shelves.end() ? nullptr : &*shelf;
}

void AlarmBook::applyShelves(qint64 station)
{
    QList<AlarmRow> changed;
    for (const auto &[id, alarm] : m_standing) {
        const Shelf *shelf = alarm.station == station ? shelfOf(alarm) : nullptr;
        const qint64 until = shelf == nullptr ? 0 : shelf->until;
        if (alarm.station == station && alarm.shelvedUntil != until) {
            AlarmRow row = alarm;
            row.shelvedUntil = until;
            if (shelf != nullptr) { // who it was stays known afterwards
                row.shelvedBy = shelf->by;
                row.shelvedWhy = shelf->why;
            }
            changed += row;
        }
    }
    for (const AlarmRow &row : std::as_const(changed)) {
        put(row, isWaiting(row) ? Change::Returned : Change::Other);
    }
}

void AlarmBook::follow(const QList<Shelf> &shelves)
{
    if (m_shelves != shelves) {
        m_shelves = shelves;
        Q_EMIT shelvesChanged();
    }
}

void AlarmBook::shelve(const Shelf &shelf)
{
    m_shelves.removeIf(
        [&](const Shelf &old) { return old.station == shelf.station && old.text == shelf.text; });
    m_shelves += shelf;
    applyShelves(shelf.station);
    Q_EMIT shelvesChanged();
}

void AlarmBook::unshelve(qint64 station, const QString &text)
{
    const qsizetype removed = m_shelves.removeIf(
        [&](const Shelf &shelf) { return shelf.station == station && shelf.text == text; });
    if (removed > 0) {
        applyShelves(station);
        Q_EMIT shelvesChanged();
    }
}

qint64 AlarmBook::unshelveUntil(qint64 now)
{
    QList<Shelf> past;
    qint64 next = 0;
    for (const Shelf &shelf : std::as_const(m_shelves)) {
        if (shelf.until <= now) {
            past += shelf;
        } else {
            next = next == 0 ? shelf.until : std::min(next, shelf.until);
        }
    }
    for (const Shelf &shelf : std::as_const(past)) {
        unshelve(shelf.station, shelf.text);
    }
    return next;
}

void AlarmBook::forget(qint64 station, qint64 at)
{
    QList<qint64> alarms;
    for (const auto &[id, alarm] : m_standing) {
        if (alarm.station == station) {
            alarms += id;
        }
    }
    for (const qint64 id : alarms) {
        finish(id, at, tr("the station was removed"));
    }
    acknowledge(alarms, at, closedByRemoval());
    if (m_shelves.removeIf([&](const Shelf &shelf) { return shelf.station == station; }) > 0) {
        Q_EMIT shelvesChanged();
    }
}

void AlarmBook::putBack(const QList<AlarmRow> &alarms)
{
    putQuietly(alarms);
    m_isPutBackUntold = m_isPutBackUntold || !alarms.isEmpty();
}

void AlarmBook::tellPutBack()
{
    if (std::exchange(m_isPutBackUntold, false)) {
        Q_EMIT reset();
    }
}

} // namespace ktr
