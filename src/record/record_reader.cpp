#include "record/record_reader.h"

#include "record/record_sql.h"
#include "record/schema.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <limits>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 anHour = 3'600'000;
constexpr qint64 aDay = 24 * anHour;
constexpr qint64 farthestTime = std::numeric_limits<qint64>::max();
// What has no index is searched in parts of so many events, and so many milliseconds at a time.
constexpr qint64 numbersOfAPart = 20'000;
constexpr qint64 longestSearch = 60;
constexpr qsizetype fewStations = 200;

const QString eventColumns = u"id, at, station, kind, event.text, detail, operator, alarm"_s;
const QString alarmColumns =
    u"id, station, kind, text, priority, first, last, count, recipients, acknowledged,"
    " acknowledged_by, comment, over, over_why, shelved_until, shelved_by, shelved_why"_s;

EventRow eventOf(const QSqlQuery &query)
{
    return {query.value(0).toLongLong(), query.value(1).toLongLong(),
            query.value(2).toLongLong(), static_cast<EventKind>(query.value(3).toInt()),
            query.value(4).toString(),   query.value(5).toString(),
            query.value(6).toString(),   query.value(7).toLongLong()};
}

AlarmRow alarmOf(const QSqlQuery &query)
{
    AlarmRow row;
    row.id = query.value(0).toLongLong();
    row.station = query.value(1).toLongLong();
    row.kind = static_cast<AlarmKind>(query.value(2).toInt());
    row.text = query.value(3).toString();
    row.priority = query.value(4).toInt();
    row.first = query.value(5).toLongLong();
    row.last = query.value(6).toLongLong();
    row.count = query.value(7).toLongLong();
    for (const auto &name : QJsonDocument::fromJson(query.value(8).toString().toUtf8()).array()) {
        row.recipients += name.toString();
    }
    row.acknowledged = query.value(9).toLongLong();
    row.acknowledgedBy = query.value(10).toString();
    row.comment = query.value(11).toString();
    row.over = query.value(12).toLongLong();
    row.overWhy = query.value(13).toString();
    row.shelvedUntil = query.value(14).toLongLong();
    row.shelvedBy = query.value(15).toString();
    row.shelvedWhy = query.value(16).toString();
    return row;
}

/// The conditions of a statement and what is bound in them.
struct Conditions
{
    QStringList texts;
    QVariantList values{};

    void add(const QString &condition, const QVariantList &bound)
    {
        texts += condition;
        values += bound;
    }
    QString all() const { return texts.isEmpty() ? u"1"_s : texts.join(u" AND "_s); }
};

/// Numbers of which there may be many are bound as one value, so that the statement is always the same.
const QString anArray = u"(SELECT value FROM json_each(?))"_s;

QString arrayOf(const QList<qint64> &numbers)
{
    return u'[' + listOf(numbers).mid(1).chopped(1) + u']';
}

/// The pattern of LIKE for a text that is contained.
QString containing(QString text)
{
    text.replace(u'\\', u"\\\\"_s).replace(u'%', u"\\%"_s).replace(u'_', u"\\_"_s);
    return u'%' + text + u'%';
}

/// All but the stations.
Conditions conditionsOf(const EventFilter &filter)
{
    Conditions where;
    if (filter.from != 0) {
        where.add(u"at >= ?"_s, {filter.from});
    }
    if (filter.to != 0) {
        where.add(u"at < ?"_s, {filter.to});
    }
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
        where.add(u"kind IN "_s + listOf(searchableKinds()), {});
        where.add(u"event.text LIKE ? ESCAPE '\\'"_s, {containing(filter.text)});
    }
    return where;
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

} // namespace

Status RecordReader::open()
{
    if (m_database.isOpen()) {
        return Status::done();
    }
    Status opened = m_database.open(m_path, RecordDatabase::Use::Read);
    if (!opened) {
        return opened;
    }
    const int schema = schemaOf(m_database);
    if (schema == newestSchema()) {
        return Status::done();
    }
    Status failed =
        schema < 0 ? m_database.failure()
                   : m_database.fail(QCoreApplication::translate("Record", "has tables of another version"));
    m_database.close();
    return failed;
}

Status RecordReader::each(const QString &statement, const QVariantList &values,
                          const std::function<bool(const QSqlQuery &)> &take)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    QSqlQuery *query = m_database.prepared(statement);
    if (query == nullptr) {
        return m_database.failure();
    }
    for (int place = 0; place < values.size(); ++place) {
        query->bindValue(place, values[place]);
    }
    if (!m_database.run(*query)) {
        return m_database.failure();
    }
    bool goesOn = true;
    while (goesOn && query->next()) {
        goesOn = take(*query);
    }
    const bool isWhole = !goesOn || m_database.wasReadToItsEnd(*query);
    query->finish(); // or the writer could not cut back its log
    return isWhole ? Status::done() : m_database.failure();
}

Status RecordReader::stations(const std::function<void(const StationRow &)> &take)
{
    return each(u"SELECT id, name, listed, attributes FROM station ORDER BY id"_s, {},
                [&](const QSqlQuery &row) {
                    take({row.value(0).toLongLong(), row.value(1).toString(), row.value(2).toBool(),
                          row.value(3).toString()});
                    return true;
                });
}

Status RecordReader::lastListFile(const QString &checksum, std::optional<qint64> &upto)
{
    upto.reset();
    const QString which = checksum.isEmpty() ? QString() : u" WHERE checksum = ?"_s;
    const QVariantList values = checksum.isEmpty() ? QVariantList() : QVariantList{checksum};
    return each(u"SELECT upto FROM list_file"_s + which + u" ORDER BY id DESC LIMIT 1"_s, values,
                [&](const QSqlQuery &row) {
                    upto = row.value(0).toLongLong();
                    return true;
                });
}

Status RecordReader::eventsAfter(qint64 id, const std::function<bool(const EventRow &)> &take)
{
    return each(u"SELECT "_s + eventColumns + u" FROM event WHERE id > ? ORDER BY id"_s, {id},
                [&](const QSqlQuery &row) { return take(eventOf(row)); });
}

Status RecordReader::notifications(const std::function<void(const NotificationRow &)> &take)
{
    return each(u"SELECT station, entry, first, last, count, raised, acknowledged, listed FROM notification"
                " ORDER BY station, entry"_s,
                {}, [&](const QSqlQuery &row) {
                    take({row.value(0).toLongLong(), row.value(1).toString(), row.value(2).toLongLong(),
                          row.value(3).toLongLong(), row.value(4).toLongLong(), row.value(5).toLongLong(),
                          row.value(6).toLongLong(), row.value(7).toBool()});
                    return true;
                });
}

Status RecordReader::openAlarms(const std::function<void(const AlarmRow &)> &take)
{
    return each(u"SELECT "_s + alarmColumns +
                    u" FROM alarm WHERE acknowledged IS NULL OR over IS NULL ORDER BY first, id"_s,
                {}, [&](const QSqlQuery &row) {
                    take(alarmOf(row));
                    return true;
                });
}

Status RecordReader::alarmsChangedAfter(qint64 change,
                                        const std::function<void(const AlarmRow &, qint64 change)> &take)
{
    return each(u"SELECT "_s + alarmColumns + u", changed FROM alarm WHERE changed > ? ORDER BY changed"_s,
                {change}, [&](const QSqlQuery &row) {
                    take(alarmOf(row), row.value(17).toLongLong());
                    return true;
                });
}

Status RecordReader::lastAlarmChange(qint64 &change)
{
    change = 0;
    return each(u"SELECT max(changed) FROM alarm"_s, {}, [&](const QSqlQuery &row) {
        change = row.value(0).toLongLong();
        return true;
    });
}

Status RecordReader::statesOfRun(const QList<EventKind> &kinds,
                                 const std::function<void(const EventRow &)> &take)
{
    const QString rare = u" FROM event INDEXED BY event_rare WHERE kind >= 10 AND "_s;
    return each(
        u"SELECT "_s + eventColumns + u" FROM event WHERE id IN (SELECT max(id)"_s + rare + u"kind IN "_s +
            listOf(kinds) + u" AND id > (SELECT coalesce(max(id), 0)"_s + rare +
            u"kind = %1) GROUP BY station, kind) ORDER BY id"_s.arg(static_cast<int>(EventKind::Started)),
        {}, [&](const QSqlQuery &row) {
            take(eventOf(row));
            return true;
        });
}

Status RecordReader::beginSnapshot()
{
    const Status opened = open();
    return opened ? m_database.execute(u"BEGIN"_s) : opened;
}

void RecordReader::endSnapshot()
{
    m_database.rollBack();
}

Status RecordReader::setting(const QString &name, std::optional<QString> &value)
{
    value.reset();
    return each(u"SELECT value FROM setting WHERE name = ?"_s, {name}, [&](const QSqlQuery &row) {
        value = row.value(0).toString();
        return true;
    });
}

Status RecordReader::settings(QHash<QString, QString> &values)
{
    values.clear();
    return each(u"SELECT name, value FROM setting"_s, {}, [&](const QSqlQuery &row) {
        values.insert(row.value(0).toString(), row.value(1).toString());
        return true;
    });
}

Status RecordReader::openRequests(qint64 id, const std::function<void(const RequestRow &)> &take)
{
    return each(u"SELECT id, at, operator, what, detail FROM request WHERE taken IS NULL AND id > ? "
                "ORDER BY id"_s,
                {id}, [&](const QSqlQuery &row) {
                    take({row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toString(),
                          row.value(3).toString(), row.value(4).toString()});
                    return true;
                });
}

Status RecordReader::answerOf(qint64 request, std::optional<QString> &result)
{
    result.reset();
    return each(u"SELECT result FROM request WHERE id = ? AND taken IS NOT NULL"_s, {request},
                [&](const QSqlQuery &row) {
                    result = row.value(0).toString();
                    return true;
                });
}

EventPage RecordReader::findEvents(const EventFilter &filter, const std::optional<RecordKey> &after,
                                   int limit)
{
    return filter.text.isEmpty() ? eventsByTime(filter, after, limit) : eventsByText(filter, after, limit);
}

EventPage RecordReader::eventsByTime(const EventFilter &filter, const std::optional<RecordKey> &after,
                                     int limit)
{
    EventPage page;
    Conditions where = conditionsOf(filter);
    if (after) {
        where.add(u"(at, id) < (?, ?)"_s, {after->at, after->id});
    }
    // The rows of each station are in order by themselves; of many stations most of all rows are wanted
    // anyway.
    const bool isMerged = !filter.stations.isEmpty() && filter.stations.size() <= fewStations;
    if (!filter.stations.isEmpty() && !isMerged) {
        where.add(u"station IN "_s + anArray, {arrayOf(filter.stations)});
    }
    if (!filter.kinds.isEmpty() &&
        std::ranges::all_of(filter.kinds, [](EventKind kind) { return kind >= EventKind::Alive; })) {
        where.add(u"kind >= 10"_s, {}); // the condition of the index
    }
    const QString order = u" ORDER BY at DESC, id DESC LIMIT ?"_s;
    const auto takeRow = [&](const QSqlQuery &row) {
        page.rows += eventOf(row);
        return true;
    };
    if (!isMerged) {
        page.status = each(u"SELECT "_s + eventColumns + u" FROM event WHERE "_s + where.all() + order,
                           where.values + QVariantList{limit}, takeRow);
    } else {
        // First where they stand, which the index tells alone.
        QList<std::pair<qint64, qint64>> keys;
        for (const qint64 station : filter.stations) {
            page.status =
                each(u"SELECT at, id FROM event WHERE "_s + where.all() + u" AND station = ?"_s + order,
                     where.values + QVariantList{station, limit}, [&](const QSqlQuery &row) {
                         keys.append({row.value(0).toLongLong(), row.value(1).toLongLong()});
                         return true;
                     });
            if (!page.status) {
                return page;
            }
        }
        std::ranges::sort(keys, std::greater());
        QList<qint64> ids;
        for (const auto &[at, id] : keys.mid(0, limit)) {
            ids += id;
        }
        page.status = each(u"SELECT "_s + eventColumns + u" FROM event WHERE id IN "_s + anArray + order,
                           {arrayOf(ids), limit}, takeRow);
    }
    if (page.rows.size() == limit) {
        page.next = RecordKey{page.rows.last().at, page.rows.last().id};
    }
    return page;
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

/// By their numbers, in which the index has them.
EventPage RecordReader::eventsByText(const EventFilter &filter, const std::optional<RecordKey> &after,
                                     int limit)
{
    EventPage page;
    qint64 low = 0;  // the numbers that are looked at: above this one
    qint64 high = 0; // and up to this one
    qint64 indexed = 0;
    page.status = each(u"SELECT coalesce(max(id), 0), coalesce("_s + searchableUpto + u", 0) FROM event"_s,
                       {}, [&](const QSqlQuery &row) {
                           high = row.value(0).toLongLong();
                           indexed = row.value(1).toLongLong();
                           return true;
                       });
    if (page.status && (filter.from != 0 || filter.to != 0)) {
        page.status =
            each(u"SELECT coalesce(min(id), 1), coalesce(max(id), 0) FROM event WHERE at >= ? AND at < ?"_s,
                 {filter.from, filter.to == 0 ? farthestTime : filter.to}, [&](const QSqlQuery &row) {
                     low = row.value(0).toLongLong() - 1;
                     high = row.value(1).toLongLong();
                     return true;
                 });
    }
    bool isFew = false; // all rows of these stations can be gone through
    if (page.status && !filter.stations.isEmpty() && filter.stations.size() <= fewStations) {
        constexpr qint64 few = 20'000;
        page.status = each(u"SELECT count(*) FROM (SELECT 1 FROM event WHERE station IN "_s + anArray +
                               u" LIMIT %1)"_s.arg(few),
                           {arrayOf(filter.stations)}, [&](const QSqlQuery &row) {
                               isFew = row.value(0).toLongLong() < few;
                               return true;
                           });
    }
    if (isFew) {
        return eventsByTime(filter, after, limit);
    }
    if (after) {
        high = std::min(high, after->id - 1);
    }
    const QStringList trigrams = trigramsOf(filter.text);
    Conditions where = conditionsOf(filter);
    if (!filter.stations.isEmpty()) {
        where.add(u"station IN "_s + anArray, {arrayOf(filter.stations)});
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
    };
    QElapsedTimer time;
    time.start();
    if (!page.status) {
        return page;
    }
    // What the index does not hold, part by part: who asked sees soon what there is, and asks on.
    const qint64 unindexedAbove = trigrams.isEmpty() ? low : std::max(low, indexed);
    while (page.status && page.rows.size() < limit && high > unindexedAbove) {
        const qint64 above = std::max(unindexedAbove, high - numbersOfAPart);
        search(u"event NOT INDEXED"_s, u"id"_s, above, high);
        high = above;
        if (time.elapsed() > longestSearch && page.rows.size() < limit && high > low) {
            page.next = RecordKey{0, high + 1};
            return page;
        }
    }
    if (page.status && page.rows.size() < limit && high > low) {
        QString match;
        page.status = matchOf(trigrams, high, match);
        if (page.status) {
            search(u"event_text CROSS JOIN event ON event.id = event_text.rowid"_s, u"event_text.rowid"_s,
                   low, high, match);
        }
    }
    if (page.rows.size() == limit) {
        page.next = RecordKey{page.rows.last().at, page.rows.last().id};
    }
    return page;
}

AlarmPage RecordReader::findAlarms(const AlarmFilter &filter, const std::optional<RecordKey> &after,
                                   int limit)
{
    AlarmPage page;
    Conditions where;
    if (filter.from != 0) {
        where.add(u"first >= ?"_s, {filter.from});
    }
    if (filter.to != 0) {
        where.add(u"first < ?"_s, {filter.to});
    }
    if (!filter.stations.isEmpty()) {
        where.add(u"station IN "_s + anArray, {arrayOf(filter.stations)});
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
        const QString pattern = containing(filter.text);
        where.add(u"(text LIKE ? ESCAPE '\\' OR comment LIKE ? ESCAPE '\\')"_s, {pattern, pattern});
    }
    if (after) {
        where.add(u"(first, id) < (?, ?)"_s, {after->at, after->id});
    }
    page.status = each(u"SELECT "_s + alarmColumns + u" FROM alarm WHERE "_s + where.all() +
                           u" ORDER BY first DESC, id DESC LIMIT ?"_s,
                       where.values + QVariantList{limit}, [&](const QSqlQuery &row) {
                           page.rows += alarmOf(row);
                           return true;
                       });
    if (page.rows.size() == limit) {
        page.next = RecordKey{page.rows.last().first, page.rows.last().id};
    }
    return page;
}

Status RecordReader::operators(QStringList &names)
{
    // From one name to the next in their index, however much each has done.
    return each(u"WITH RECURSIVE one(name) AS (SELECT min(operator) FROM event WHERE operator IS NOT NULL"
                " UNION ALL SELECT (SELECT min(operator) FROM event WHERE operator > one.name) FROM one"
                " WHERE one.name IS NOT NULL) SELECT name FROM one WHERE name IS NOT NULL"_s,
                {}, [&](const QSqlQuery &row) {
                    names += row.value(0).toString();
                    return true;
                });
}

Status RecordReader::history(qint64 station, int channel, qint64 from, qint64 to,
                             const std::function<void(const HistoryRow &)> &take)
{
    return each(
        u"SELECT at, first, second FROM history WHERE station = ? AND channel = ? AND at >= ? AND at < ?"
        " ORDER BY at"_s,
        {station, channel, from, to}, [&](const QSqlQuery &row) {
            take({station, channel, row.value(0).toLongLong(), row.value(1).toString(),
                  row.value(2).toString()});
            return true;
        });
}

Status RecordReader::curve(qint64 station, int channel, qint64 from, qint64 to, HistoryLevel level,
                           const std::function<void(const HistoryPoint &)> &take)
{
    // A text without a digit is no number, and no 0 either. Some modules write a comma.
    const auto number = [](const QString &column) -> QString {
        return u"CASE WHEN "_s + column + u" GLOB '*[0-9]*' THEN CAST(replace("_s + column +
               u", ',', '.') AS REAL) END"_s;
    };
    const auto rangeOf = [](const QSqlQuery &row, int place) -> std::optional<HistoryPoint::Range> {
        if (row.isNull(place)) {
            return std::nullopt;
        }
        return HistoryPoint::Range{row.value(place).toDouble(), row.value(place + 1).toDouble(),
                                   row.value(place + 2).toDouble()};
    };
    const qint64 span = level == HistoryLevel::Day ? aDay : level == HistoryLevel::Hour ? anHour : 1;
    return each(
        u"SELECT at - at % ? AS beginning, count(*), min(a), avg(a), max(a), min(b), avg(b), max(b) FROM"
        " (SELECT at, "_s +
            number(u"first"_s) + u" AS a, "_s + number(u"second"_s) +
            u" AS b FROM history WHERE station = ? AND channel = ? AND at >= ? AND at < ?)"
            " GROUP BY beginning ORDER BY beginning"_s,
        {span, station, channel, from, to}, [&](const QSqlQuery &row) {
            take({row.value(0).toLongLong(), row.value(1).toLongLong(), rangeOf(row, 2), rangeOf(row, 5)});
            return true;
        });
}

Status RecordReader::values(qint64 station, int channel, qint64 from, qint64 to,
                            const std::function<void(const ValueRow &)> &take)
{
    return each(u"SELECT at, value FROM value WHERE station = ? AND channel = ? AND at >= ? AND at < ?"
                " ORDER BY at"_s,
                {station, channel, from, to}, [&](const QSqlQuery &row) {
                    take({station, channel, row.value(0).toLongLong(), row.value(1).toString()});
                    return true;
                });
}

Status RecordReader::size(qint64 &bytes)
{
    return each(u"SELECT page_count * page_size FROM pragma_page_count(), pragma_page_size()"_s, {},
                [&](const QSqlQuery &row) {
                    bytes = row.value(0).toLongLong();
                    return true;
                });
}

Status RecordReader::count(const QString &table, qint64 &rows)
{
    return each(u"SELECT count(*) FROM "_s + table, {}, [&](const QSqlQuery &row) {
        rows = row.value(0).toLongLong();
        return true;
    });
}

qint64 RecordReader::dataVersion()
{
    qint64 version = 0;
    const Status read = each(u"PRAGMA data_version"_s, {}, [&](const QSqlQuery &row) {
        version = row.value(0).toLongLong();
        return true;
    });
    return read ? version : 0;
}

} // namespace ktr
