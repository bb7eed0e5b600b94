#include "record/record_reader.h"
#include "record/record_search.h"

#include <algorithm>
#include <iterator>

namespace ktr {

using namespace Qt::StringLiterals;

namespace {

/// The condition that a column is one of the stations; without any, none.
Conditions amongStations(const SqlDialect &sql, const QString &column, const QList<qint64> &stations)
{
    Conditions where;
    if (!stations.isEmpty()) {
        where.addNumbers(sql, column, stations);
    }
    return where;
}

bool isOfStation(EventKind kind)
{
    return kind != EventKind::Started && kind != EventKind::Stopped;
}

} // namespace

Status RecordReader::alarmSpans(const QList<qint64> &stations, qint64 from, qint64 to, qint64 partMs,
                                QList<AlarmSpan> &spans)
{
    spans.clear();
    if (Status opened = open(); !opened) {
        return opened;
    }
    const Conditions where = amongStations(m_database.sql(), u"station"_s, stations);
    return each(u"SELECT first / CAST(? AS BIGINT) AS part, count(*), min(priority) FROM alarm"
                " WHERE first >= ? AND first < ? AND "_s +
                    where.all() + u" GROUP BY part ORDER BY part"_s,
                QVariantList{partMs, from, to} + where.values, [&](const QSqlQuery &row) {
                    spans.append({row.value(0).toLongLong() * partMs, row.value(1).toLongLong(),
                                  row.value(2).toInt()});
                    return true;
                });
}

Status RecordReader::stationAlarms(const QList<qint64> &stations, qint64 from, qint64 to,
                                   QList<StationAlarms> &alarms)
{
    alarms.clear();
    if (Status opened = open(); !opened) {
        return opened;
    }
    const Conditions where = amongStations(m_database.sql(), u"station"_s, stations);
    return each(
        u"SELECT station, count(*), min(priority) FROM alarm WHERE first >= ? AND first < ? AND "_s +
            where.all() + u" GROUP BY station"_s,
        QVariantList{from, to} + where.values, [&](const QSqlQuery &row) {
            alarms.append({row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toInt()});
            return true;
        });
}

Status RecordReader::connections(const QList<qint64> &stations, qint64 from, qint64 to,
                                 const std::function<void(const ConnectionChange &)> &take)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    using enum EventKind;
    constexpr qint64 everything = std::numeric_limits<qint64>::min();
    QList<ConnectionChange> changes;
    Status read = lastSaid(stations, from, changes);
    if (read) { // few are of these kinds
        read = changesOfKinds({Attributes, Started, Stopped}, stations, {everything, from}, changes);
    }
    if (read) {
        read = changesOfKinds({Alive, Silent, Attributes, StationRemoved, Started, Stopped}, stations,
                              {from, to}, changes);
    }
    std::ranges::sort(changes, {},
                      [](const ConnectionChange &change) { return std::pair(change.at, change.id); });
    for (const ConnectionChange &change : std::as_const(changes)) {
        take(change);
    }
    return read;
}

Status RecordReader::watches(qint64 from, qint64 to,
                             const std::function<void(const ConnectionChange &)> &take)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    constexpr qint64 everything = std::numeric_limits<qint64>::min();
    QList<ConnectionChange> changes;
    // What was before `from` is needed, too; there are few of them.
    Status read = changesOfKinds({EventKind::Started, EventKind::Stopped}, {}, {everything, to}, changes);
    std::ranges::sort(changes, {},
                      [](const ConnectionChange &change) { return std::pair(change.at, change.id); });
    const auto last = std::ranges::lower_bound(changes, from, {}, &ConnectionChange::at);
    for (auto change = last == changes.begin() ? last : std::prev(last); change != changes.end(); ++change) {
        take(*change);
    }
    return read;
}

/// By the order of each kind, where there is one, which the index of it tells alone but for attributes.
Status RecordReader::changesOfKinds(const QList<EventKind> &kinds, const QList<qint64> &stations,
                                    std::pair<qint64, qint64> times, QList<ConnectionChange> &changes)
{
    std::optional<qint64> sorted;
    Status read = sortedEvents(sorted);
    const SqlDialect &sql = m_database.sql();
    const QVariantList bounds{times.first, times.second};
    // A server knows best whether those of these stations or those of these kinds are fewer.
    const bool areOfStations = m_database.isServer() && !stations.isEmpty();
    for (qsizetype i = 0; read && sorted && i < kinds.size(); ++i) {
        const EventKind kind = kinds.at(i);
        if (areOfStations && isOfStation(kind)) {
            continue;
        }
        const bool hasDetail = kind == EventKind::Attributes;
        const Conditions where =
            isOfStation(kind) ? amongStations(sql, u"event_kind.station"_s, stations) : Conditions();
        read = each(u"SELECT event_kind.at, event_kind.id, event_kind.station"_s +
                        (hasDetail ? u", event.detail"_s : QString()) + u" FROM event_kind"_s +
                        (hasDetail ? sql.inThisOrder + u"event USING(id)"_s : QString()) +
                        u" WHERE event_kind.kind = ? AND event_kind.at >= ? AND event_kind.at < ?"
                        " AND event_kind.id <= ? AND "_s +
                        where.all(),
                    QVariantList{static_cast<int>(kind)} + bounds + QVariantList{*sorted} + where.values,
                    [&](const QSqlQuery &row) {
                        changes.append({row.value(0).toLongLong(), row.value(1).toLongLong(),
                                        row.value(2).toLongLong(), kind,
                                        hasDetail ? row.value(3).toString() : QString()});
                        return true;
                    });
    }
    QList<EventKind> ofStations;
    std::ranges::copy_if(kinds, std::back_inserter(ofStations), isOfStation);
    if (read && areOfStations && !ofStations.isEmpty()) {
        const Conditions where = amongStations(sql, u"station"_s, stations);
        read = each(u"SELECT at, id, station, kind, detail FROM event WHERE kind IN "_s + listOf(ofStations) +
                        u" AND at >= ? AND at < ? AND "_s + where.all(),
                    bounds + where.values, [&](const QSqlQuery &row) {
                        changes.append(
                            {row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toLongLong(),
                             static_cast<EventKind>(row.value(3).toInt()), row.value(4).toString()});
                        return true;
                    });
    }
    if (!read || m_database.isServer()) { // where all is in order at once
        return read;
    }
    // What is not in order yet.
    const Conditions where = amongStations(sql, u"station"_s, stations);
    const QString ofNone = u"kind IN "_s + listOf(QList{EventKind::Started, EventKind::Stopped});
    const QString source = sorted ? sql.unindexed : sql.rareIndex;
    return each(u"SELECT at, id, station, kind, detail FROM event"_s + source +
                    u" WHERE kind >= 10 AND kind IN "_s + listOf(kinds) +
                    u" AND at >= ? AND at < ? AND id > ? AND ("_s + ofNone + u" OR "_s + where.all() + u')',
                bounds + QVariantList{sorted.value_or(0)} + where.values, [&](const QSqlQuery &row) {
                    changes.append({row.value(0).toLongLong(), row.value(1).toLongLong(),
                                    row.value(2).toLongLong(), static_cast<EventKind>(row.value(3).toInt()),
                                    row.value(4).toString()});
                    return true;
                });
}

/// Of each station the last event before a moment that tells whether it is heard.
Status RecordReader::lastSaid(const QList<qint64> &stations, qint64 before, QList<ConnectionChange> &changes)
{
    using enum EventKind;
    constexpr qint64 kindsRoom = 100; // the numbers of kinds are below
    const Conditions where = amongStations(m_database.sql(), u"station.id"_s, stations);
    const QString telling =
        listOf(QList{Notification, Values, History, OtherMessage, Alive, Silent, StationRemoved});
    return each(u"SELECT station.id, (SELECT at * 100 + kind FROM event WHERE event.station = station.id"
                " AND at < ? AND kind IN "_s +
                    telling + u" ORDER BY at DESC, event.id DESC LIMIT 1) FROM station WHERE "_s +
                    where.all(),
                QVariantList{before} + where.values, [&](const QSqlQuery &row) {
                    if (!row.isNull(1)) {
                        const qint64 packed = row.value(1).toLongLong();
                        changes.append({packed / kindsRoom,
                                        0,
                                        row.value(0).toLongLong(),
                                        static_cast<EventKind>(packed % kindsRoom),
                                        {}});
                    }
                    return true;
                });
}

} // namespace ktr
