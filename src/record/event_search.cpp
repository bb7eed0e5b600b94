#include "record/read_rows.h"
#include "record/record_reader.h"
#include "record/record_search.h"

#include <algorithm>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 numbersOfAPart = 20'000;
constexpr qsizetype fewStations = 200;

/// All but times and stations.
Conditions conditionsOf(const SqlDialect &sql, const EventFilter &filter)
{
    Conditions where;
    if (!filter.kinds.isEmpty()) {
        where.add(u"kind IN "_s + listOf(filter.kinds), {});
    }
    if (!filter.operatorName.isEmpty()) {
        where.add(u"operator = ?"_s, {filter.operatorName});
    }
    if (filter.ofAlarms) {
        where.add(u"alarm IS NOT NULL"_s, {});
    }
    if (!filter.text.isEmpty()) {
        if (!searchesAllKinds(filter)) {
            where.add(u"kind IN "_s + listOf(searchableKinds()), {});
        }
        const Containing text(sql, filter.text);
        where.add(text.of(u"event.text"_s), text.bound());
    }
    return where;
}

bool areFew(const QList<qint64> &stations)
{
    return !stations.isEmpty() && stations.size() <= fewStations;
}

/// All parts of three characters, which the index knows. Empty: the text is too short for it.
QStringList trigramsOf(const QString &text)
{
    constexpr qsizetype enough = 64;
    const QList<uint> characters = text.toUcs4();
    QStringList parts;
    for (qsizetype i = 0; i + 3 <= characters.size() && parts.size() < enough; ++i) {
        const QList<uint> three = characters.mid(i, 3);
        if (!three.contains(0)) {
            parts += QString::fromUcs4(reinterpret_cast<const char32_t *>(three.constData()), three.size());
        }
    }
    parts.removeDuplicates();
    return parts;
}

bool isSearchable(EventKind kind)
{
    return searchableKinds().contains(kind);
}

} // namespace

bool searchesAllKinds(const EventFilter &filter)
{
    const bool areOthersAlone = !filter.kinds.isEmpty() && std::ranges::none_of(filter.kinds, isSearchable);
    return areOthersAlone || (!filter.stations.isEmpty() && filter.from != 0);
}

bool passesOverKinds(const EventFilter &filter)
{
    const bool areAllSearchable = !filter.kinds.isEmpty() && std::ranges::all_of(filter.kinds, isSearchable);
    return !filter.text.isEmpty() && !areAllSearchable && !searchesAllKinds(filter);
}

EventPage RecordReader::findEvents(const EventFilter &filter, const std::optional<RecordKey> &after,
                                   int limit)
{
    if (Status opened = open(); !opened) {
        return {opened, {}, std::nullopt};
    }
    return filter.text.isEmpty() || searchesAllKinds(filter) ? eventsByTime(filter, after, limit)
                                                             : eventsByText(filter, after, limit);
}

/// How events are found in the order of their times: of some kinds, by the order of each, of few stations by
/// the index of each, or of all.
struct RecordReader::EventOrder
{
    enum class By { Time, Station, Kind };

    By by = By::Time;
    qint64 sorted = 0;       ///< up to which event the kinds are in order
    QList<qint64> each{};    ///< the stations or kinds
    bool leadsThere = false; ///< all that is found is wanted
};

Status RecordReader::orderOf(const EventFilter &filter, EventOrder &order)
{
    const bool isOfKinds = !filter.kinds.isEmpty() || filter.ofAlarms;
    if (isOfKinds && filter.operatorName.isEmpty() && filter.text.isEmpty()) {
        std::optional<qint64> sorted;
        if (Status read = sortedEvents(sorted); !read) {
            return read;
        }
        if (sorted) {
            order.by = EventOrder::By::Kind;
            order.sorted = *sorted;
            if (filter.ofAlarms) {
                order.each = {0};
            } else {
                for (const EventKind kind : filter.kinds) {
                    order.each += static_cast<qint64>(kind);
                }
            }
            order.leadsThere = filter.stations.isEmpty() && !(filter.ofAlarms && !filter.kinds.isEmpty());
            return Status::done();
        }
    }
    if (areFew(filter.stations)) {
        order.by = EventOrder::By::Station;
        order.each = filter.stations;
    }
    const bool isOthersToo = isOfKinds || !filter.text.isEmpty();
    order.leadsThere = !isOthersToo && (filter.operatorName.isEmpty() ? filter.stations.size() <= fewStations
                                                                      : filter.stations.isEmpty());
    return Status::done();
}

EventPage RecordReader::eventsByTime(const EventFilter &filter, const std::optional<RecordKey> &after,
                                     int limit)
{
    EventPage page;
    EventOrder order;
    page.status = orderOf(filter, order);
    qint64 from = beginOf(filter.from);
    qint64 to = after ? std::min(endOf(filter.to), after->at + 1) : endOf(filter.to);
    const auto lookIn = [&](qint64 low, qint64 high) {
        page.status = look(filter, order, after, {low, high}, limit - page.rows.size(), page.rows);
        return page.status && page.rows.size() < limit;
    };
    std::optional<qint64> stopped;
    if (page.status && order.leadsThere) {
        lookIn(from, to);
    } else if (page.status) {
        page.status = each(
            u"SELECT coalesce((SELECT min(at) FROM event), 0), coalesce((SELECT max(at) FROM event), 0)"_s,
            {}, [&](const QSqlQuery &row) {
                from = std::max(from, row.value(0).toLongLong());
                to = std::min(to, row.value(1).toLongLong() + 1);
                return true;
            });
        if (page.status) {
            stopped = lookThrough(from, to, anHour, lookIn);
        }
    }
    if (page.rows.size() == limit) {
        page.next = RecordKey{page.rows.last().at, page.rows.last().id};
    } else if (stopped) {
        page.next = RecordKey{*stopped, 0};
    }
    return page;
}

/// The newest rows of a time, behind those that are there.
Status RecordReader::look(const EventFilter &filter, const EventOrder &order,
                          const std::optional<RecordKey> &after, std::pair<qint64, qint64> times,
                          qsizetype limit, QList<EventRow> &rows)
{
    const QString newest = u" ORDER BY at DESC, id DESC LIMIT ?"_s;
    const auto inTime = [&](const QString &table) {
        Conditions where;
        where.add(table + u".at >= ? AND "_s + table + u".at < ?"_s, {times.first, times.second});
        if (after) {
            where.add(u'(' + table + u".at, "_s + table + u".id) < (?, ?)"_s, {after->at, after->id});
        }
        return where;
    };
    Conditions where = inTime(u"event"_s);
    const Conditions others = conditionsOf(m_database.sql(), filter);
    where.add(others.all(), others.values);
    if (order.by != EventOrder::By::Station && !filter.stations.isEmpty()) {
        where.addNumbers(m_database.sql(), u"event.station"_s, filter.stations);
    }
    const auto takeRow = [&rows](const QSqlQuery &row) {
        rows += eventOf(row);
        return true;
    };
    if (order.by == EventOrder::By::Time) {
        const bool areRare = !filter.kinds.isEmpty() && std::ranges::all_of(filter.kinds, [](EventKind kind) {
            return kind >= EventKind::Alive;
        });
        return each(u"SELECT "_s + eventColumns + u" FROM event WHERE "_s + where.all() +
                        (areRare ? u" AND kind >= 10"_s : QString()) + newest, // the condition of an index
                    where.values + QVariantList{limit}, takeRow);
    }
    // First where they stand, which the index tells alone.
    QList<std::pair<qint64, qint64>> keys;
    const auto takeKey = [&keys](const QSqlQuery &row) {
        keys.append({row.value(0).toLongLong(), row.value(1).toLongLong()});
        return true;
    };
    Status read = Status::done();
    if (order.by == EventOrder::By::Station) {
        for (qsizetype i = 0; read && i < order.each.size(); ++i) {
            read = each(u"SELECT at, id FROM event WHERE "_s + where.all() + u" AND station = ?"_s + newest,
                        where.values + QVariantList{order.each[i], limit}, takeKey);
        }
    } else {
        Conditions inOrder = inTime(u"event_kind"_s);
        inOrder.add(u"event_kind.id <= ?"_s, {order.sorted});
        if (!filter.stations.isEmpty()) {
            inOrder.addNumbers(m_database.sql(), u"event_kind.station"_s, filter.stations);
        }
        const bool mustLookAtAll = filter.ofAlarms && !filter.kinds.isEmpty();
        if (mustLookAtAll) {
            inOrder.add(u"event.kind IN "_s + listOf(filter.kinds), {});
        }
        for (qsizetype i = 0; read && i < order.each.size(); ++i) {
            read =
                each(u"SELECT event_kind.at, event_kind.id FROM event_kind"_s +
                         (mustLookAtAll ? m_database.sql().inThisOrder + u"event USING(id)"_s : QString()) +
                         u" WHERE event_kind.kind = ? AND "_s + inOrder.all() +
                         u" ORDER BY event_kind.at DESC, event_kind.id DESC LIMIT ?"_s,
                     QVariantList{order.each[i]} + inOrder.values + QVariantList{limit}, takeKey);
        }
        if (read) {
            read = each(u"SELECT at, id FROM event"_s + m_database.sql().unindexed + u" WHERE id > ? AND "_s +
                            where.all() + newest,
                        QVariantList{order.sorted} + where.values + QVariantList{limit}, takeKey);
        }
    }
    std::ranges::sort(keys, std::greater());
    QList<qint64> ids;
    for (const auto &[at, id] : keys.mid(0, limit)) {
        ids += id;
    }
    return read && !ids.isEmpty() ? each(u"SELECT "_s + eventColumns + u" FROM event WHERE id"_s +
                                             m_database.sql().oneOfNumbers + newest,
                                         {m_database.sql().arrayOf(ids), limit}, takeRow)
                                  : read;
}

/// What the index is asked for: those of a text's parts that are rare, going by the latest texts. It goes
/// through all events that have any of them; what else has them is told apart afterwards.
Status RecordReader::matchOf(const QStringList &trigrams, qint64 upTo, QString &match)
{
    constexpr qsizetype enough = 4;
    QList<std::pair<int, QString>> parts;
    for (const QString &trigram : trigrams) {
        parts.append({0, trigram});
    }
    Status read = Status::done();
    if (parts.size() > enough) {
        read = each(u"SELECT text FROM event WHERE id <= ? AND id > ? AND kind IN "_s +
                        listOf(searchableKinds()) + u" ORDER BY id DESC LIMIT 300"_s,
                    {upTo, upTo - numbersOfAPart}, [&](const QSqlQuery &row) {
                        const QString text = row.value(0).toString();
                        for (auto &[count, part] : parts) {
                            count += text.contains(part, Qt::CaseInsensitive) ? 1 : 0;
                        }
                        return true;
                    });
        std::ranges::stable_sort(parts, {}, &std::pair<int, QString>::first);
    }
    QStringList quoted;
    for (const auto &[count, part] : parts.mid(0, enough)) {
        quoted += u'"' + QString(part).replace(u'"', u"\"\""_s) + u'"';
    }
    match = quoted.join(u" AND "_s);
    return read;
}

/// The numbers among which those with a text must be, above one and up to another one, the highest first.
Status RecordReader::rangesOf(const EventFilter &filter, QList<std::pair<qint64, qint64>> &ranges)
{
    const bool isOfATime = filter.from != 0 || filter.to != 0;
    std::optional<qint64> sorted;
    qint64 last = 0;
    Status read = each(u"SELECT coalesce(max(id), 0) FROM event"_s, {}, [&](const QSqlQuery &row) {
        last = row.value(0).toLongLong();
        return true;
    });
    if (read && isOfATime) {
        read = sortedEvents(sorted);
    }
    if (!read || !isOfATime) {
        ranges = {{0, last}};
        return read;
    }
    if (sorted && last > *sorted) { // what is not in order yet may belong to it
        ranges += {*sorted, last};
    }
    const QString source =
        sorted ? u"event_kind WHERE kind IN "_s + listOf(searchableKinds()) + u" AND "_s : u"event WHERE "_s;
    return each(
        u"SELECT coalesce(min(id), 1), coalesce(max(id), 0) FROM "_s + source + u"at >= ? AND at < ?"_s,
        {beginOf(filter.from), endOf(filter.to)}, [&](const QSqlQuery &row) {
            ranges +=
                {row.value(0).toLongLong() - 1, std::min(row.value(1).toLongLong(), sorted.value_or(last))};
            return true;
        });
}

/// By their numbers, in which the index has them.
EventPage RecordReader::eventsByText(const EventFilter &filter, const std::optional<RecordKey> &after,
                                     int limit)
{
    EventPage page;
    QList<std::pair<qint64, qint64>> ranges;
    qint64 indexed = 0;
    page.status = each(u"SELECT coalesce("_s + searchableUpto + u", 0)"_s, {}, [&](const QSqlQuery &row) {
        indexed = row.value(0).toLongLong();
        return true;
    });
    if (page.status) {
        page.status = rangesOf(filter, ranges);
    }
    bool isFew = false; // all rows of these stations can be gone through
    if (page.status && areFew(filter.stations)) {
        constexpr qint64 few = 20'000;
        page.status = each(u"SELECT count(*) FROM (SELECT 1 FROM event WHERE station"_s +
                               m_database.sql().oneOfNumbers + u" LIMIT %1) AS those"_s.arg(few),
                           {m_database.sql().arrayOf(filter.stations)}, [&](const QSqlQuery &row) {
                               isFew = row.value(0).toLongLong() < few;
                               return true;
                           });
    }
    if (isFew) {
        return eventsByTime(filter, after, limit);
    }
    const QStringList trigrams = trigramsOf(filter.text);
    Conditions where = conditionsOf(m_database.sql(), filter);
    if (filter.from != 0 || filter.to != 0) {
        where.add(u"at >= ? AND at < ?"_s, {beginOf(filter.from), endOf(filter.to)});
    }
    if (!filter.stations.isEmpty()) {
        where.addNumbers(m_database.sql(), u"station"_s, filter.stations);
    }
    const auto search = [&](const QString &source, const QString &number, qint64 above, qint64 upTo,
                            const QString &match = {}) {
        QVariantList bound{above, upTo};
        if (!match.isEmpty()) {
            bound.prepend(match);
        }
        page.status =
            each(u"SELECT "_s + eventColumns + u" FROM "_s + source + u" WHERE "_s +
                     (match.isEmpty() ? QString() : u"event_text MATCH ? AND "_s) + number + u" > ? AND "_s +
                     number + u" <= ? AND "_s + where.all() + u" ORDER BY "_s + number + u" DESC LIMIT ?"_s,
                 bound + where.values + QVariantList{limit - page.rows.size()}, [&](const QSqlQuery &row) {
                     page.rows += eventOf(row);
                     return true;
                 });
        return page.status && page.rows.size() < limit;
    };
    if (!page.status) {
        return page;
    }
    std::optional<qint64> stopped;
    const auto isSoughtOn = [&] { return page.status && !stopped && page.rows.size() < limit; };
    for (auto [low, high] : std::as_const(ranges)) {
        high = after ? std::min(high, after->id - 1) : high;
        // What the index does not hold, then what it holds: who asked sees soon what there is, and asks on.
        const qint64 unindexedAbove = trigrams.isEmpty() ? low : std::max(low, indexed);
        if (isSoughtOn()) {
            stopped = lookThrough(unindexedAbove, high, numbersOfAPart, [&](qint64 above, qint64 upTo) {
                return search(u"event"_s + m_database.sql().unindexed, u"id"_s, above, upTo);
            });
        }
        high = std::min(high, unindexedAbove);
        if (isSoughtOn() && high > low && m_database.isServer()) { // which has an index of its own
            search(u"event"_s, u"id"_s, low, high);
        } else if (isSoughtOn() && high > low) {
            QString match;
            page.status = matchOf(trigrams, high, match);
            if (page.status) {
                stopped = lookThrough(low, high, 5 * numbersOfAPart, [&](qint64 above, qint64 upTo) {
                    return search(u"event_text CROSS JOIN event ON event.id = event_text.rowid"_s,
                                  u"event_text.rowid"_s, above, upTo, match);
                });
            }
        }
    }
    if (page.rows.size() == limit) {
        page.next = RecordKey{page.rows.last().at, page.rows.last().id};
    } else if (stopped && page.status) {
        page.next = RecordKey{0, *stopped + 1};
    }
    return page;
}

} // namespace ktr
