#include "record/closed_by_removal.h"
#include "record/record_reader.h"

#include <algorithm>

namespace ktr {

using namespace Qt::StringLiterals;

Status RecordReader::alarmFigures(qint64 from, qint64 to, qint64 now, AlarmFigures &figures)
{
    figures = {};
    constexpr qint64 aDay = 86'400'000;
    const QString came = u" FROM alarm WHERE first >= ? AND first < ?"_s;
    Status read = each(u"SELECT (first - ?) / CAST(? AS BIGINT) AS span, count(*)"_s + came +
                           u" GROUP BY span ORDER BY span"_s,
                       {from, AlarmFigures::spanMs, from, to}, [&](const QSqlQuery &row) {
                           figures.tenMinutes.append({from + row.value(0).toLongLong() * AlarmFigures::spanMs,
                                                      row.value(1).toLongLong()});
                           figures.came += figures.tenMinutes.last().count;
                           return true;
                       });
    if (read) {
        read = each(u"SELECT station, text, count(*) AS occurrences, sum(count)"_s + came +
                        u" GROUP BY station, text ORDER BY occurrences DESC, max(first) DESC LIMIT 10"_s,
                    {from, to}, [&](const QSqlQuery &row) {
                        figures.frequent.append({row.value(0).toLongLong(), row.value(1).toString(),
                                                 row.value(2).toLongLong(), row.value(3).toLongLong()});
                        return true;
                    });
    }
    QList<qint64> waited;
    if (read) {
        read = each(u"SELECT CASE WHEN acknowledged_by = ? THEN NULL ELSE acknowledged - first END,"
                    " coalesce(over, ?) - first"_s +
                        came,
                    {closedByRemoval(), now, from, to}, [&](const QSqlQuery &row) {
                        if (!row.isNull(0)) {
                            waited += std::max(qint64{0}, row.value(0).toLongLong());
                        }
                        figures.standing += row.value(1).toLongLong() > aDay ? 1 : 0;
                        return true;
                    });
    }
    if (read && !waited.isEmpty()) {
        std::ranges::sort(waited);
        const auto rank = [&waited](qsizetype percent) { // the least that so many are not above
            return waited.at((waited.size() * percent + 99) / 100 - 1);
        };
        figures.acknowledged = waited.size();
        figures.medianMs = rank(50);
        figures.ninetyMs = rank(90);
        figures.longestMs = waited.last();
    }
    return read;
}

Status RecordReader::begin(qint64 &at)
{
    at = 0;
    return each(u"SELECT coalesce(min(at), 0) FROM (SELECT min(at) AS at FROM event"
                " UNION ALL SELECT min(first) FROM alarm WHERE first > 0) AS begin"_s,
                {}, [&](const QSqlQuery &row) {
                    at = row.value(0).toLongLong();
                    return true;
                });
}

Status RecordReader::lastHeard(const QList<qint64> &stations, QHash<qint64, qint64> &times)
{
    Status read = Status::done();
    for (qsizetype i = 0; read && i < stations.size(); ++i) {
        read = each(u"SELECT at FROM event WHERE station = ? AND kind < 10 ORDER BY at DESC LIMIT 1"_s,
                    {stations.at(i)}, [&](const QSqlQuery &row) {
                        times.insert(stations.at(i), row.value(0).toLongLong());
                        return true;
                    });
    }
    return read;
}

Status RecordReader::lastOperatorChange(qint64 &at)
{
    at = 0;
    QStringList names;
    Status read = operators(names);
    QList<std::pair<qint64, QString>> last; // of each
    for (qsizetype i = 0; read && i < names.size(); ++i) {
        read =
            each(u"SELECT max(at) FROM event WHERE operator = ?"_s, {names.at(i)}, [&](const QSqlQuery &row) {
                last.append({row.value(0).toLongLong(), names.at(i)});
                return true;
            });
    }
    if (!read || last.size() < 2) {
        return read;
    }
    std::ranges::sort(last, std::greater());
    return each(u"SELECT min(at) FROM event WHERE operator = ? AND at > ?"_s, {last[0].second, last[1].first},
                [&](const QSqlQuery &row) {
                    at = row.value(0).toLongLong();
                    return true;
                });
}

} // namespace ktr
