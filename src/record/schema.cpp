#include "record/schema.h"

#include "record/record_rows.h"
#include "record/record_sql.h"

#include <QCoreApplication>

#include <limits>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// What was transmitted to modules, the same on both engines but for the types of numbers.
QStringList transmissionTables(const QString &id, const QString &number)
{
    return {
        u"CREATE TABLE transmission("_s + id +
            u", uid TEXT NOT NULL UNIQUE, begun %1 NOT NULL, ended %1, user_name TEXT NOT NULL, operator "
            u"TEXT,"
            " file TEXT NOT NULL, line TEXT NOT NULL, station TEXT NOT NULL, version_before TEXT,"
            " version_sent TEXT NOT NULL, program TEXT NOT NULL, first_step INTEGER NOT NULL,"
            " answers INTEGER NOT NULL, verdict TEXT NOT NULL, last_step INTEGER, resume_step INTEGER, "
            "based_on %1,"
            " has_pin INTEGER NOT NULL, configuration TEXT NOT NULL)"_s.arg(number),
        u"CREATE INDEX transmission_begun ON transmission(begun, id)"_s,
        u"CREATE INDEX transmission_station ON transmission(station, begun, id)"_s,
        u"CREATE INDEX transmission_version ON transmission(version_sent)"_s,
        u"CREATE TABLE transmission_step(transmission %1 NOT NULL, step INTEGER NOT NULL,"
        " command TEXT NOT NULL, outcome TEXT NOT NULL, attempts INTEGER NOT NULL, at %1 NOT NULL,"
        " PRIMARY KEY(transmission, step))"_s.arg(number),
    };
}

/// The steps from an empty file to the newest tables. One that was released is never changed: what is new
/// comes as another step.
const QList<QStringList> &fileSteps()
{
    static const QList<QStringList> all{
        {
            u"CREATE TABLE setting(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID"_s,
            u"CREATE TABLE station(id INTEGER PRIMARY KEY, name TEXT NOT NULL, listed INTEGER NOT NULL,"
            " attributes TEXT NOT NULL)"_s,
            u"CREATE TABLE event(id INTEGER PRIMARY KEY, at INTEGER NOT NULL, station INTEGER,"
            " kind INTEGER NOT NULL, text TEXT NOT NULL, detail TEXT, operator TEXT, alarm INTEGER)"_s,
            // Each ends with the id, by which rows of the same time are in order.
            u"CREATE INDEX event_at ON event(at)"_s,
            u"CREATE INDEX event_station ON event(station, at) WHERE station IS NOT NULL"_s,
            // Few are of these kinds, and few are an operator's.
            u"CREATE INDEX event_rare ON event(at) WHERE kind >= 10"_s,
            u"CREATE INDEX event_operator ON event(operator, at) WHERE operator IS NOT NULL"_s,
            u"CREATE INDEX event_alarm ON event(alarm) WHERE alarm IS NOT NULL"_s,
            u"CREATE VIRTUAL TABLE event_text USING fts5(text, content='event', content_rowid='id',"
            " tokenize='trigram', detail='none', columnsize=0)"_s,
            u"CREATE TABLE notification(station INTEGER NOT NULL, entry TEXT NOT NULL, first INTEGER NOT "
            u"NULL,"
            " last INTEGER NOT NULL, count INTEGER NOT NULL, raised INTEGER NOT NULL,"
            " acknowledged INTEGER NOT NULL, listed INTEGER NOT NULL, PRIMARY KEY(station, entry))"
            " WITHOUT ROWID"_s,
            u"CREATE TABLE alarm(id INTEGER PRIMARY KEY, station INTEGER, kind INTEGER NOT NULL,"
            " text TEXT NOT NULL, priority INTEGER NOT NULL, first INTEGER NOT NULL, last INTEGER NOT NULL,"
            " count INTEGER NOT NULL, recipients TEXT NOT NULL, acknowledged INTEGER, acknowledged_by TEXT,"
            " comment TEXT, over INTEGER, over_why TEXT, shelved_until INTEGER, shelved_by TEXT,"
            " shelved_why TEXT)"_s,
            u"CREATE INDEX alarm_first ON alarm(first)"_s,
            u"CREATE INDEX alarm_station ON alarm(station, first) WHERE station IS NOT NULL"_s,
            u"CREATE INDEX alarm_open ON alarm(first) WHERE acknowledged IS NULL OR over IS NULL"_s,
            u"CREATE TABLE history(station INTEGER NOT NULL, channel INTEGER NOT NULL, at INTEGER NOT NULL,"
            " first TEXT NOT NULL, second TEXT NOT NULL, PRIMARY KEY(station, channel, at, first)) WITHOUT ROWID"_s,
            u"CREATE TABLE value(station INTEGER NOT NULL, channel INTEGER NOT NULL, at INTEGER NOT NULL,"
            " value TEXT NOT NULL, PRIMARY KEY(station, channel, at)) WITHOUT ROWID"_s,
            u"CREATE TABLE list_file(id INTEGER PRIMARY KEY, checksum TEXT NOT NULL, upto INTEGER NOT NULL,"
            " written_at INTEGER NOT NULL)"_s,
            u"CREATE INDEX list_file_checksum ON list_file(checksum)"_s,
        },
        {
            // Who follows a record sees by this number which alarms are new or changed.
            u"ALTER TABLE alarm ADD COLUMN changed INTEGER NOT NULL DEFAULT 0"_s,
            u"CREATE INDEX alarm_changed ON alarm(changed)"_s,
            u"CREATE TABLE request(id INTEGER PRIMARY KEY AUTOINCREMENT, at INTEGER NOT NULL, operator TEXT,"
            " what TEXT NOT NULL, detail TEXT NOT NULL, taken INTEGER, result TEXT)"_s,
            u"CREATE INDEX request_new ON request(id) WHERE taken IS NULL"_s,
        },
        {
            // The order of each kind, and as kind 0 of what belongs to an alarm. A table that is filled
            // little by little behind the events: to make an index of millions of them would hold up the
            // writing.
            u"CREATE TABLE event_kind(kind INTEGER NOT NULL, at INTEGER NOT NULL, id INTEGER NOT NULL,"
            " station INTEGER, PRIMARY KEY(kind, at, id)) WITHOUT ROWID"_s,
            // What was removed from the list is soon most of it.
            u"CREATE INDEX notification_listed ON notification(station) WHERE listed = 1"_s,
        },
        transmissionTables(u"id INTEGER PRIMARY KEY AUTOINCREMENT"_s, u"INTEGER"_s),
    };
    return all;
}

/// The same of a server's database. The numbers of events and of changes are given there, in the order of the
/// commits; see RecordDatabase::beginNumbers().
const QList<QStringList> &serverSteps()
{
    static const QString endless =
        QString::number(std::numeric_limits<qint64>::max() / 2); // a bit may be added
    static const QList<QStringList> all{
        {
            u"CREATE EXTENSION IF NOT EXISTS pg_trgm SCHEMA ktrconfig"_s,
            u"CREATE TABLE setting(name text PRIMARY KEY, value text NOT NULL) WITH (fillfactor = 50)"_s,
            // There is nothing that comes into order later.
            u"INSERT INTO setting(name, value) VALUES('searchable', '%1'), ('sorted', '%1')"_s.arg(endless),
            // Each run of a keeper is one. It talks to the stations that are its own until its time is over.
            u"CREATE SEQUENCE keeper_number"_s,
            u"CREATE TABLE keeper(id bigint PRIMARY KEY DEFAULT nextval('keeper_number'), name text NOT NULL,"
            " since timestamptz NOT NULL DEFAULT now(), leased_until timestamptz NOT NULL)"
            " WITH (fillfactor = 50)"_s,
            u"CREATE TABLE station(id bigint PRIMARY KEY, name text NOT NULL, listed integer NOT NULL,"
            " attributes text NOT NULL, keeper bigint)"_s,
            u"CREATE INDEX station_keeper ON station(keeper) WHERE listed = 1"_s,
            u"CREATE SEQUENCE event_number"_s,
            u"CREATE TABLE event(id bigint PRIMARY KEY DEFAULT nextval('event_number'), at bigint NOT NULL,"
            " station bigint, kind integer NOT NULL, text text NOT NULL, detail text, operator text,"
            " alarm bigint)"_s,
            u"CREATE INDEX event_at ON event(at, id)"_s,
            u"CREATE INDEX event_station ON event(station, at, id) WHERE station IS NOT NULL"_s,
            u"CREATE INDEX event_of_kind ON event(kind, at, id)"_s,
            u"CREATE INDEX event_operator ON event(operator, at, id) WHERE operator IS NOT NULL"_s,
            u"CREATE INDEX event_alarm ON event(alarm) WHERE alarm IS NOT NULL"_s,
            u"CREATE INDEX event_of_alarms ON event(at, id) WHERE alarm IS NOT NULL"_s,
            u"CREATE INDEX event_text ON event USING gin (text gin_trgm_ops) WHERE kind IN "_s +
                listOf(searchableKinds()),
            u"CREATE VIEW event_kind AS SELECT kind, at, id, station FROM event"
            " UNION ALL SELECT 0, at, id, station FROM event WHERE alarm IS NOT NULL"_s,
            u"CREATE TABLE notification(station bigint NOT NULL, entry text NOT NULL, first bigint NOT NULL,"
            " last bigint NOT NULL, count bigint NOT NULL, raised bigint NOT NULL, acknowledged bigint NOT "
            "NULL,"
            " listed integer NOT NULL, PRIMARY KEY(station, entry)) WITH (fillfactor = 70)"_s,
            u"CREATE INDEX notification_listed ON notification(station) WHERE listed = 1"_s,
            u"CREATE SEQUENCE alarm_change"_s,
            // Each writer gives the numbers of a block, of which nobody else has any.
            u"CREATE SEQUENCE number_block"_s,
            u"CREATE TABLE alarm(id bigint PRIMARY KEY, station bigint, kind integer NOT NULL,"
            " text text NOT NULL, priority integer NOT NULL, first bigint NOT NULL, last bigint NOT NULL,"
            " count bigint NOT NULL, recipients text NOT NULL, acknowledged bigint, acknowledged_by text,"
            " comment text, over bigint, over_why text, shelved_until bigint, shelved_by text,"
            " shelved_why text, changed bigint NOT NULL DEFAULT nextval('alarm_change'))"
            " WITH (fillfactor = 70)"_s,
            u"CREATE INDEX alarm_first ON alarm(first, id)"_s,
            u"CREATE INDEX alarm_station ON alarm(station, first, id) WHERE station IS NOT NULL"_s,
            u"CREATE INDEX alarm_open ON alarm(first, id) WHERE acknowledged IS NULL OR over IS NULL"_s,
            u"CREATE INDEX alarm_changed ON alarm(changed)"_s,
            u"CREATE TABLE history(station bigint NOT NULL, channel integer NOT NULL, at bigint NOT NULL,"
            " first text NOT NULL, second text NOT NULL, PRIMARY KEY(station, channel, at, first))"
            " PARTITION BY RANGE (at)"_s,
            u"CREATE TABLE history_other PARTITION OF history DEFAULT"_s,
            u"CREATE TABLE value(station bigint NOT NULL, channel integer NOT NULL, at bigint NOT NULL,"
            " value text NOT NULL, PRIMARY KEY(station, channel, at)) PARTITION BY RANGE (at)"_s,
            u"CREATE TABLE value_other PARTITION OF value DEFAULT"_s,
            // Attaching a partition lets others read and write meanwhile, unlike making one in its place.
            u"CREATE FUNCTION add_month(parent text, moment bigint) RETURNS void LANGUAGE plpgsql"
            " SECURITY DEFINER SET search_path = ktrconfig, pg_temp AS $$"
            " DECLARE"
            "  month timestamp := date_trunc('month', to_timestamp(moment / 1000) AT TIME ZONE 'UTC');"
            "  part text := parent || to_char(month, '_YYYY_MM');"
            "  low bigint := extract(epoch FROM month)::bigint * 1000;"
            "  high bigint := extract(epoch FROM month + interval '1 month')::bigint * 1000;"
            " BEGIN"
            "  IF parent NOT IN ('history', 'value') THEN"
            "   RAISE EXCEPTION 'table \"%\" has no months', parent;"
            "  END IF;"
            "  PERFORM pg_advisory_xact_lock(4936786, hashtext(part));"
            "  IF to_regclass(part) IS NULL THEN"
            "   EXECUTE format('CREATE TABLE %I (LIKE %I INCLUDING ALL)', part, parent);"
            "   EXECUTE format('WITH moved AS (DELETE FROM %I WHERE at >= %s AND at < %s RETURNING *)"
            " INSERT INTO %I SELECT * FROM moved', parent || '_other', low, high, part);"
            "   EXECUTE format('ALTER TABLE %I ATTACH PARTITION %I FOR VALUES FROM (%s) TO (%s)',"
            " parent, part, low, high);"
            "  END IF;"
            " END $$"_s,
            // Months that are wholly before a moment go at once.
            u"CREATE FUNCTION drop_months(parent text, before bigint) RETURNS integer LANGUAGE plpgsql"
            " SECURITY DEFINER SET search_path = ktrconfig, pg_temp SET timezone = 'UTC' AS $$"
            " DECLARE"
            "  part text;"
            "  dropped integer := 0;"
            " BEGIN"
            "  IF parent NOT IN ('history', 'value') THEN"
            "   RAISE EXCEPTION 'table \"%\" has no months', parent;"
            "  END IF;"
            "  FOR part IN SELECT relname FROM pg_inherits JOIN pg_class ON pg_class.oid = inhrelid"
            "   WHERE inhparent = parent::regclass AND relname ~ '_[0-9]{4}_[0-9]{2}$'"
            "   AND extract(epoch FROM to_timestamp(right(relname, 7), 'YYYY_MM')"
            "    + interval '1 month')::bigint * 1000 <= before"
            "  LOOP"
            "   EXECUTE format('DROP TABLE %I', part);"
            "   dropped := dropped + 1;"
            "  END LOOP;"
            "  RETURN dropped;"
            " END $$"_s,
            u"REVOKE ALL ON FUNCTION add_month(text, bigint), drop_months(text, bigint) FROM PUBLIC"_s,
            u"CREATE TABLE list_file(id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, checksum text NOT "
            u"NULL,"
            " upto bigint NOT NULL, written_at bigint NOT NULL)"_s,
            u"CREATE INDEX list_file_checksum ON list_file(checksum)"_s,
            u"CREATE TABLE request(id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, at bigint NOT NULL,"
            " operator text, what text NOT NULL, detail text NOT NULL, taken bigint, result text)"_s,
            u"CREATE INDEX request_new ON request(id) WHERE taken IS NULL"_s,
            // What a writer committed last: it may not have heard of it when the connection was lost.
            u"CREATE TABLE writer(name text PRIMARY KEY, batch bigint NOT NULL,"
            " at timestamptz NOT NULL DEFAULT now())"_s,
        },
        {
            // What each station said and was last, for those who begin to look on.
            u"CREATE INDEX event_last ON event(station, kind, id) WHERE station IS NOT NULL AND kind < 20"_s,
            // Which user of the database asked; nobody can say otherwise.
            u"ALTER TABLE request ADD COLUMN login text NOT NULL DEFAULT session_user"_s,
            // As RecordReader reads values: what a text begins with, 0 where that is no number but there is
            // one in it.
            u"CREATE FUNCTION number_of(value text) RETURNS double precision LANGUAGE sql IMMUTABLE"
            " PARALLEL SAFE AS $$ SELECT CASE WHEN value ~ '[0-9]' THEN coalesce(substring("
            "regexp_replace(replace(btrim(value, E' \\t\\r\\n'), ',', '.'), '^\\+', '')"
            " FROM '^-?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?')::double precision, 0) END $$"_s,
            u"CREATE FUNCTION moment_of(milliseconds bigint) RETURNS timestamptz LANGUAGE sql IMMUTABLE"
            " PARALLEL SAFE AS $$ SELECT to_timestamp(nullif(milliseconds, 0) / 1000.0) $$"_s,
            // For tools that read the database: moments, names instead of numbers, and how long it took.
            u"CREATE VIEW alarm_story AS SELECT alarm.id, station.name AS station, alarm.kind, alarm.text,"
            " alarm.priority, ktrconfig.moment_of(alarm.first) AS came, ktrconfig.moment_of(alarm.last)"
            " AS came_last, alarm.count AS times, ktrconfig.moment_of(alarm.acknowledged) AS acknowledged,"
            " alarm.acknowledged_by, alarm.comment, ktrconfig.moment_of(alarm.over) AS over, alarm.over_why,"
            " ktrconfig.moment_of(alarm.shelved_until) AS shelved_until, alarm.shelved_by,"
            " ktrconfig.moment_of(alarm.acknowledged) - ktrconfig.moment_of(alarm.first) AS waited,"
            " ktrconfig.moment_of(alarm.over) - ktrconfig.moment_of(alarm.first) AS stood"
            " FROM alarm LEFT JOIN station ON station.id = alarm.station"_s,
            u"CREATE VIEW event_story AS SELECT event.id, ktrconfig.moment_of(event.at) AS at,"
            " station.name AS station, event.kind, event.text, event.detail, event.operator, event.alarm"
            " FROM event LEFT JOIN station ON station.id = event.station"_s,
            u"CREATE VIEW history_hourly AS SELECT station.name AS station, channel,"
            " date_trunc('hour', ktrconfig.moment_of(at), 'UTC') AS hour, count(*) AS records,"
            " min(ktrconfig.number_of(first)) AS first_least, avg(ktrconfig.number_of(first)) AS first_mean,"
            " max(ktrconfig.number_of(first)) AS first_most, min(ktrconfig.number_of(second)) AS "
            "second_least,"
            " avg(ktrconfig.number_of(second)) AS second_mean, max(ktrconfig.number_of(second)) AS "
            "second_most"
            " FROM history JOIN station ON station.id = history.station GROUP BY station.id, station.name,"
            " channel, date_trunc('hour', ktrconfig.moment_of(at), 'UTC')"_s,
            // Users become members of these. They are of the whole server, and may be there.
            u"DO $$ DECLARE role text; BEGIN FOREACH role IN ARRAY ARRAY['ktrconfig_viewer',"
            " 'ktrconfig_operator', 'ktrconfig_administrator', 'ktrconfig_keeper'] LOOP"
            " IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = role) THEN"
            " EXECUTE format('CREATE ROLE %I NOLOGIN', role); END IF; END LOOP; END $$"_s,
            u"GRANT ktrconfig_viewer TO ktrconfig_operator"_s,
            u"GRANT ktrconfig_operator TO ktrconfig_administrator"_s,
            u"GRANT USAGE ON SCHEMA ktrconfig TO ktrconfig_viewer, ktrconfig_keeper"_s,
            u"GRANT SELECT ON ALL TABLES IN SCHEMA ktrconfig TO ktrconfig_viewer"_s,
            // An operator asks; a keeper does what the operator may ask for, and writes down who it was.
            u"GRANT INSERT (at, operator, what, detail) ON request TO ktrconfig_operator"_s,
            u"GRANT USAGE ON SEQUENCE request_id_seq TO ktrconfig_operator"_s,
            u"GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA ktrconfig TO ktrconfig_keeper"_s,
            u"GRANT USAGE, SELECT ON ALL SEQUENCES IN SCHEMA ktrconfig TO ktrconfig_keeper"_s,
            u"GRANT EXECUTE ON FUNCTION add_month(text, bigint), drop_months(text, bigint)"
            " TO ktrconfig_keeper"_s,
        },
        {
            // What one keeper alone does at a time, and how far it has come.
            u"CREATE TABLE duty(name text PRIMARY KEY, keeper bigint, since timestamptz, state text NOT NULL"
            " DEFAULT '') WITH (fillfactor = 50)"_s,
            u"GRANT SELECT ON duty TO ktrconfig_viewer"_s,
            u"GRANT SELECT, INSERT, UPDATE, DELETE ON duty TO ktrconfig_keeper"_s,
            // Of which block the numbers of its alarms are.
            u"ALTER TABLE keeper ADD COLUMN block bigint"_s,
            // By one clock, whichever machine asks.
            u"ALTER TABLE request ADD COLUMN asked timestamptz NOT NULL DEFAULT clock_timestamp()"_s,
        },
        transmissionTables(u"id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY"_s, u"bigint"_s) +
            QStringList{
                // Which user of the database it was; nobody can say otherwise.
                u"ALTER TABLE transmission ADD COLUMN login text NOT NULL DEFAULT session_user"_s,
                u"GRANT SELECT ON transmission, transmission_step TO ktrconfig_viewer"_s,
                u"GRANT INSERT, UPDATE ON transmission, transmission_step TO ktrconfig_operator"_s,
                u"GRANT DELETE ON transmission, transmission_step TO ktrconfig_administrator"_s,
                u"GRANT SELECT, INSERT, UPDATE, DELETE ON transmission, transmission_step"
                " TO ktrconfig_keeper"_s,
            },
    };
    return all;
}

const QList<QStringList> &stepsOf(const RecordDatabase &database)
{
    return database.isServer() ? serverSteps() : fileSteps();
}

qint64 numberFrom(RecordDatabase &database, const QString &statement)
{
    QSqlQuery *query = database.prepared(statement);
    if (query == nullptr || !database.run(*query)) {
        return -1;
    }
    const qint64 number = query->next() ? query->value(0).toLongLong() : 0;
    query->finish();
    return number;
}

/// The step to a version, unless another program, which begins at the same time, has done it by now.
Status carryOut(RecordDatabase &database, int version)
{
    if (!database.begin()) {
        return database.failure();
    }
    // Nobody else makes them meanwhile. Any number will do that no other program takes.
    Status made =
        database.isServer() ? database.execute(u"SELECT pg_advisory_xact_lock(4936786)"_s) : Status::done();
    if (made && (!database.isServer() || schemaOf(database) < version)) {
        made = database.execute(stepsOf(database).at(version - 1));
        if (made) {
            made = database.execute(settingStatement(u"'schema', '%1'"_s.arg(version)));
        }
    }
    if (made && !database.commit()) {
        made = database.failure();
    }
    if (!made) {
        database.rollBack();
    }
    return made;
}

} // namespace

int newestSchema(const RecordDatabase &database)
{
    return static_cast<int>(stepsOf(database).size());
}

int schemaOf(RecordDatabase &database)
{
    const bool isServer = database.isServer();
    const QString tablesOf =
        isServer ? u"SELECT count(*) FROM information_schema.tables WHERE table_schema = 'ktrconfig'"_s
                 : u"SELECT count(*) FROM sqlite_master"_s;
    const qint64 tables = numberFrom(database, tablesOf);
    if (tables <= 0) {
        return static_cast<int>(tables);
    }
    const qint64 settings =
        numberFrom(database, tablesOf + (isServer ? u" AND table_name = 'setting'"_s
                                                  : u" WHERE type = 'table' AND name = 'setting'"_s));
    const qint64 version =
        settings == 1
            ? numberFrom(database, u"SELECT CAST(value AS INTEGER) FROM setting WHERE name = 'schema'"_s)
            : settings;
    if (settings >= 0 && version == 0) {
        (void)database.fail(QCoreApplication::translate("Record", "is a database of another program"));
    }
    return version <= 0 ? -1 : static_cast<int>(version);
}

Status makeTables(RecordDatabase &database)
{
    const Status made = database.execute(u"CREATE SCHEMA IF NOT EXISTS ktrconfig"_s);
    return made ? bringForward(database) : made;
}

Status bringForward(RecordDatabase &database)
{
    int version = schemaOf(database);
    if (version < 0) {
        return database.failure();
    }
    if (version > newestSchema(database)) {
        return database.fail(
            QCoreApplication::translate("Record", "was written by a newer version of the program (tables %1; "
                                                  "this version knows them up to %2)")
                .arg(version)
                .arg(newestSchema(database)));
    }
    Status made = database.useLog(); // not in a file that is refused
    while (made && version < newestSchema(database)) {
        made = carryOut(database, ++version);
    }
    return made;
}

} // namespace ktr
