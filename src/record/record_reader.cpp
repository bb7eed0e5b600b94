#include "record/record_reader.h"

#include "record/read_rows.h"
#include "record/record_file.h"
#include "record/record_sql.h"
#include "record/schema.h"

#include <QCoreApplication>

#include <algorithm>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// As many places for values as these, as a statement has them behind IN.
QString placesFor(const auto &values)
{
    return u" IN ("_s + QStringList(values.size(), u"?"_s).join(u',') + u')';
}

/// Whether a user, the value of an expression, is an administrator of the record: a member of that role, or
/// who made the tables.
QString administers(const QString &login)
{
    return u"EXISTS (SELECT 1 FROM pg_roles WHERE rolname = "_s + login +
           u" AND (pg_has_role(oid, 'ktrconfig_administrator', 'MEMBER') OR pg_has_role(oid,"
           " (SELECT relowner FROM pg_class WHERE pg_class.oid = 'request'::regclass), 'MEMBER')))"_s;
}

} // namespace

Status RecordReader::open()
{
    if (m_database.isOpen() && !m_database.isLost()) {
        return Status::done();
    }
    Status opened = m_database.open(m_path, RecordDatabase::Use::Read);
    if (!opened) {
        return opened;
    }
    const int schema = schemaOf(m_database);
    if (schema == newestSchema(m_database)) {
        return Status::done();
    }
    Status failed = schema < 0 ? m_database.failure() : m_database.fail(reasonAgainst(schema));
    m_database.close();
    return failed;
}

/// Why tables of such a version cannot be read; 0: none are seen.
QString RecordReader::reasonAgainst(int schema)
{
    if (schema > newestSchema(m_database)) {
        return QCoreApplication::translate("Record",
                                           "was written by a newer version of the program (tables %1; "
                                           "this version knows them up to %2)")
            .arg(schema)
            .arg(newestSchema(m_database));
    }
    if (!m_database.isServer()) {
        return QCoreApplication::translate("Record", "has tables of another version");
    }
    if (schema > 0) {
        return QCoreApplication::translate("Record",
                                           "has tables of an older version; \"ktrcli record init\" brings "
                                           "them forward");
    }
    QSqlQuery query(m_database.handle()); // what may not be used is not listed among the tables
    const bool isThere =
        query.exec(u"SELECT 1 FROM pg_namespace WHERE nspname = 'ktrconfig'"_s) && query.next();
    query.finish();
    return isThere
               ? QCoreApplication::translate("Record", "may not be read by this user of the database")
               : QCoreApplication::translate("Record", "has no tables; \"ktrcli record init\" makes them");
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
    return stationsIn({}, {}, take);
}

Status RecordReader::stationsIn(const QString &where, const QVariantList &values,
                                const std::function<void(const StationRow &)> &take)
{
    return each(u"SELECT id, name, listed, attributes FROM station"_s + where + u" ORDER BY id"_s, values,
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
    return notificationsIn({}, {}, take);
}

Status RecordReader::notificationsIn(const QString &where, const QVariantList &values,
                                     const std::function<void(const NotificationRow &)> &take)
{
    return each(u"SELECT station, entry, first, last, count, raised, acknowledged, listed FROM notification"
                " WHERE listed = 1"_s +
                    where + u" ORDER BY station, entry"_s,
                values, [&](const QSqlQuery &row) {
                    take({row.value(0).toLongLong(), row.value(1).toString(), row.value(2).toLongLong(),
                          row.value(3).toLongLong(), row.value(4).toLongLong(), row.value(5).toLongLong(),
                          row.value(6).toLongLong(), row.value(7).toBool()});
                    return true;
                });
}

Status RecordReader::openAlarms(const std::function<void(const AlarmRow &)> &take)
{
    return openAlarmsIn({}, {}, take);
}

Status RecordReader::openAlarmsIn(const QString &where, const QVariantList &values,
                                  const std::function<void(const AlarmRow &)> &take)
{
    return each(u"SELECT "_s + alarmColumns + u" FROM alarm WHERE (acknowledged IS NULL OR over IS NULL)"_s +
                    where + u" ORDER BY first, id"_s,
                values, [&](const QSqlQuery &row) {
                    take(alarmOf(row));
                    return true;
                });
}

Status RecordReader::keepersWith(const QString &count, QList<KeeperRow> &keepers)
{
    keepers.clear();
    return each(u"SELECT name, floor(extract(epoch FROM since) * 1000)::bigint,"
                " floor(extract(epoch FROM leased_until - clock_timestamp()) * 1000)::bigint, "_s +
                    count + u" FROM keeper WHERE leased_until > clock_timestamp() ORDER BY id"_s,
                {}, [&](const QSqlQuery &row) {
                    keepers += {row.value(0).toString(), row.value(1).toLongLong(), row.value(2).toLongLong(),
                                row.value(3).toLongLong()};
                    return true;
                });
}

Status RecordReader::keepers(QList<KeeperRow> &keepers)
{
    return keepersWith(u"0"_s, keepers); // counting goes through all stations
}

Status RecordReader::keepers(QList<KeeperRow> &keepers, qint64 &stations)
{
    const Status read =
        keepersWith(u"(SELECT count(*) FROM station WHERE keeper = keeper.id AND listed = 1)"_s, keepers);
    return read ? each(u"SELECT count(*) FROM station WHERE listed = 1"_s, {},
                       [&](const QSqlQuery &row) {
                           stations = row.value(0).toLongLong();
                           return true;
                       })
                : read;
}

Status RecordReader::duties(QList<DutyRow> &duties)
{
    duties.clear();
    return each(u"SELECT duty.name, keeper.name, duty.state FROM duty LEFT JOIN keeper ON"
                " keeper.id = duty.keeper AND keeper.leased_until > clock_timestamp() ORDER BY duty.name"_s,
                {}, [&](const QSqlQuery &row) {
                    duties += {row.value(0).toString(), row.value(1).toString(), row.value(2).toString()};
                    return true;
                });
}

Status RecordReader::alarmsOfGoneKeepers(const std::function<void(const AlarmRow &)> &take)
{
    return openAlarmsIn(
        u" AND station IS NULL AND NOT EXISTS (SELECT 1 FROM keeper WHERE"
        " keeper.block = alarm.id / %1 AND leased_until > clock_timestamp())"_s.arg(numbersOfABlock),
        {}, take);
}

Status RecordReader::rights(RecordRights &rights)
{
    rights = {};
    if (Status opened = open(); !opened || !m_database.isServer()) {
        return opened;
    }
    return each(u"SELECT has_column_privilege('request', 'what', 'INSERT'), "_s +
                    administers(u"current_user"_s),
                {}, [&](const QSqlQuery &row) {
                    rights = {row.value(0).toBool(), row.value(0).toBool() && row.value(1).toBool()};
                    return true;
                });
}

Status RecordReader::stateOf(const QList<qint64> &stations, const QStringList &settings,
                             RecordedStations &states)
{
    states = {};
    Status read = beginSnapshot();
    if (!read) {
        return read;
    }
    const SqlDialect &sql = m_database.sql();
    const QVariantList numbers{sql.arrayOf(stations)};
    const QString ofThese = u" AND station"_s + sql.oneOfNumbers;
    read = stationsIn(u" WHERE id"_s + sql.oneOfNumbers, numbers,
                      [&](const StationRow &row) { states.stations += row; });
    if (read) {
        read = notificationsIn(ofThese, numbers,
                               [&](const NotificationRow &row) { states.notifications += row; });
    }
    if (read) {
        read = openAlarmsIn(ofThese, numbers, [&](const AlarmRow &row) { states.alarms += row; });
    }
    if (read) {
        QStringList names;
        for (const QString &setting : settings) {
            for (const qint64 station : stations) {
                names += setting + u':' + QString::number(station);
            }
        }
        read = this->settings(names, states.settings);
    }
    endSnapshot();
    return read;
}

Status RecordReader::alarmsChangedAfter(qint64 change,
                                        const std::function<void(const AlarmRow &, qint64 change)> &take,
                                        qint64 most)
{
    return each(u"SELECT "_s + alarmColumns +
                    u", changed FROM alarm WHERE changed > ? ORDER BY changed LIMIT ?"_s,
                {change, most}, [&](const QSqlQuery &row) {
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

Status RecordReader::lastEvent(qint64 &id)
{
    id = 0;
    return each(u"SELECT max(id) FROM event"_s, {}, [&](const QSqlQuery &row) {
        id = row.value(0).toLongLong();
        return true;
    });
}

Status RecordReader::sortedEvents(std::optional<qint64> &upto)
{
    constexpr qint64 mostUnsorted = 5'000; // that are gone through each time
    upto.reset();
    return each(u"SELECT coalesce(max(id), 0), coalesce("_s + sortedUpto + u", 0) FROM event"_s, {},
                [&](const QSqlQuery &row) {
                    if (row.value(0).toLongLong() - row.value(1).toLongLong() <= mostUnsorted) {
                        upto = row.value(1).toLongLong();
                    }
                    return true;
                });
}

Status RecordReader::statesOfRun(const QList<EventKind> &kinds,
                                 const std::function<void(const EventRow &)> &take)
{
    std::optional<qint64> sorted;
    if (Status read = sortedEvents(sorted); !read) {
        return read;
    }
    const auto rowsOf = [&sorted, this](const QString &some) -> QString {
        const QString upto = u"coalesce("_s + sortedUpto + u", 0)"_s;
        const QString columns = u"SELECT id, station, kind FROM "_s;
        const QString wanted = u" kind IN "_s + some;
        return sorted ? QString(u'(' + columns + u"event_kind WHERE id <= "_s + upto + u" AND"_s + wanted +
                                u" UNION ALL "_s + columns + u"event"_s + m_database.sql().unindexed +
                                u" WHERE id > "_s + upto + u" AND"_s + wanted + u") AS wanted"_s)
                      : QString(u'(' + columns + u"event"_s + m_database.sql().rareIndex +
                                u" WHERE kind >= 10 AND"_s + wanted + u") AS wanted"_s);
    };
    return each(u"SELECT "_s + eventColumns + u" FROM event WHERE id IN (SELECT max(id) FROM "_s +
                    rowsOf(listOf(kinds)) + u" WHERE id > (SELECT coalesce(max(id), 0) FROM "_s +
                    rowsOf(listOf(QList{EventKind::Started})) + u") GROUP BY station, kind) ORDER BY id"_s,
                {}, [&](const QSqlQuery &row) {
                    take(eventOf(row));
                    return true;
                });
}

Status RecordReader::latestOf(const QList<EventKind> &kinds, int ofEach,
                              const std::function<void(const EventRow &)> &take)
{
    return each(
        u"SELECT "_s + eventColumns + u" FROM station CROSS JOIN (VALUES ("_s +
            listOf(kinds).mid(1).chopped(1).replace(u","_s, u"), ("_s) +
            u")) AS wanted(kind) CROSS JOIN LATERAL (SELECT * FROM event WHERE event.station = station.id"
            " AND event.kind = wanted.kind AND event.kind < 20 ORDER BY event.id DESC LIMIT ?) AS event"
            " WHERE station.listed = 1 ORDER BY event.id"_s,
        {ofEach}, [&](const QSqlQuery &row) {
            take(eventOf(row));
            return true;
        });
}

Status RecordReader::beginSnapshot()
{
    const Status opened = open();
    return opened ? m_database.execute(m_database.isServer()
                                           ? u"BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"_s
                                           : u"BEGIN"_s)
                  : opened;
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

Status RecordReader::settings(const QStringList &names, QHash<QString, QString> &values)
{
    values.clear();
    return each(u"SELECT name, value FROM setting WHERE name"_s + placesFor(names),
                QVariantList(names.cbegin(), names.cend()), [&](const QSqlQuery &row) {
                    values.insert(row.value(0).toString(), row.value(1).toString());
                    return true;
                });
}

Status RecordReader::openRequests(qint64 id, const std::function<void(const RequestRow &)> &take)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    constexpr int longestDetail = 1'000'000;
    constexpr int mostAtOnce = 1'000;
    const bool isServer = m_database.isServer();
    const QString columns =
        isServer ? u"id, at, left(operator, 200), left(what, 100),"
                   " CASE WHEN octet_length(detail) > %1 THEN '' ELSE detail END"_s.arg(longestDetail)
                 : u"id, at, operator, what, detail"_s;
    const QString asker = isServer
                              ? u", login, "_s + administers(u"login"_s) +
                                    u", floor(extract(epoch FROM clock_timestamp() - asked) * 1000)::bigint,"
                                    " EXISTS (SELECT 1 FROM pg_roles WHERE rolname = login"
                                    " AND has_table_privilege(oid, 'event', 'INSERT'))"_s
                              : QString();
    return each(
        u"SELECT "_s + columns + asker + u" FROM request WHERE taken IS NULL AND id > ? ORDER BY id"_s +
            (isServer ? u" LIMIT %1"_s.arg(mostAtOnce) : QString()),
        {id}, [&](const QSqlQuery &row) {
            RequestRow request{row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toString(),
                               row.value(3).toString(), row.value(4).toString()};
            if (!asker.isEmpty()) {
                request.login = row.value(5).toString();
                request.mayAdminister = row.value(6).toBool();
                request.age = row.value(7).toLongLong();
                request.mayKeep = row.value(8).toBool();
            }
            take(request);
            return true;
        });
}

Status RecordReader::answersOf(const QList<qint64> &requests, QHash<qint64, QString> &results)
{
    results.clear();
    if (requests.isEmpty()) {
        return Status::done();
    }
    return each(u"SELECT id, result FROM request WHERE taken IS NOT NULL AND id"_s + placesFor(requests),
                QVariantList(requests.cbegin(), requests.cend()), [&](const QSqlQuery &row) {
                    results.insert(row.value(0).toLongLong(), row.value(1).toString());
                    return true;
                });
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

Status RecordReader::size(qint64 &bytes)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    return each(m_database.isServer()
                    ? u"SELECT sum(pg_total_relation_size(oid)) FROM pg_class WHERE relkind IN ('r', 'm')"
                      " AND relnamespace = 'ktrconfig'::regnamespace"_s
                    : u"SELECT page_count * page_size FROM pragma_page_count(), pragma_page_size()"_s,
                {}, [&](const QSqlQuery &row) {
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
    if (!open()) {
        return 0;
    }
    const bool isServer = m_database.isServer();
    // A server's transactions that ended, and those that have not: another text after each commit.
    const Status read =
        each(isServer ? u"SELECT CAST(pg_current_snapshot() AS text)"_s : u"PRAGMA data_version"_s, {},
             [&](const QSqlQuery &row) {
                 version = isServer ? static_cast<qint64>(qHash(row.value(0).toString()) | 1)
                                    : row.value(0).toLongLong();
                 return true;
             });
    return read ? version : 0;
}

} // namespace ktr
