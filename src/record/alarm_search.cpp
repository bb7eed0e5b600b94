#include "record/read_rows.h"
#include "record/record_reader.h"
#include "record/record_search.h"

namespace ktr {

using namespace Qt::StringLiterals;

AlarmPage RecordReader::findAlarms(const AlarmFilter &filter, const std::optional<RecordKey> &after,
                                   int limit)
{
    AlarmPage page;
    page.status = open();
    if (!page.status) {
        return page;
    }
    const SqlDialect &sql = m_database.sql();
    Conditions where;
    if (!filter.stations.isEmpty()) {
        where.addNumbers(sql, u"station"_s, filter.stations);
    }
    if (filter.state != AlarmFilter::State::Any) {
        where.add(u"(acknowledged IS NULL OR over IS NULL)"_s, {}); // the condition of the index
    }
    if (filter.state == AlarmFilter::State::Unacknowledged) {
        where.add(u"acknowledged IS NULL"_s, {});
    }
    if (filter.state == AlarmFilter::State::NotOver) {
        where.add(u"over IS NULL"_s, {});
    }
    if (filter.leastUrgent < 3) {
        where.add(u"priority <= ?"_s, {filter.leastUrgent});
    }
    if (!filter.acknowledgedBy.isEmpty()) {
        where.add(u"acknowledged_by = ?"_s, {filter.acknowledgedBy});
    }
    if (!filter.text.isEmpty()) {
        const Containing text(sql, filter.text);
        where.add(u'(' + text.of(u"text"_s) + u" OR "_s + text.of(u"comment"_s) + u')',
                  text.bound() + text.bound());
    }
    if (after) {
        where.add(u"(first, id) < (?, ?)"_s, {after->at, after->id});
    }
    qint64 from = beginOf(filter.from);
    qint64 to = endOf(filter.to);
    const auto look = [&](qint64 low, qint64 high) {
        page.status =
            each(u"SELECT "_s + alarmColumns + u" FROM alarm WHERE first >= ? AND first < ? AND "_s +
                     where.all() + u" ORDER BY first DESC, id DESC LIMIT ?"_s,
                 QVariantList{low, high} + where.values + QVariantList{limit - page.rows.size()},
                 [&](const QSqlQuery &row) {
                     page.rows += alarmOf(row);
                     return true;
                 });
        return page.status && page.rows.size() < limit;
    };
    std::optional<qint64> stopped;
    if (filter.text.isEmpty() && filter.acknowledgedBy.isEmpty() && filter.leastUrgent == 3) {
        look(from, to); // an index leads there
    } else {
        page.status = each(
            u"SELECT coalesce((SELECT min(first) FROM alarm), 0), coalesce((SELECT max(first) FROM alarm), 0)"_s,
            {}, [&](const QSqlQuery &row) {
                from = std::max(from, row.value(0).toLongLong());
                to = std::min(
                    to,
                    (after ? std::min(after->at, row.value(1).toLongLong()) : row.value(1).toLongLong()) + 1);
                return true;
            });
        if (page.status) {
            stopped = lookThrough(from, to, aDay, look);
        }
    }
    if (page.rows.size() == limit) {
        page.next = RecordKey{page.rows.last().first, page.rows.last().id};
    } else if (stopped) {
        page.next = RecordKey{*stopped, 0};
    }
    return page;
}

} // namespace ktr
