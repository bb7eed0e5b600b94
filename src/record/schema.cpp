#include "record/schema.h"

#include <QCoreApplication>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// The steps from an empty file to the newest tables. One that was released is never changed: what is new
/// comes as another step.
const QList<QStringList> &steps()
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
    };
    return all;
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

Status carryOut(RecordDatabase &database, int version)
{
    QStringList statements = steps().at(version - 1);
    statements += u"INSERT OR REPLACE INTO setting(name, value) VALUES('schema', '%1')"_s.arg(version);
    if (!database.begin()) {
        return database.failure();
    }
    Status made = database.execute(statements);
    if (made && !database.commit()) {
        made = database.failure();
    }
    if (!made) {
        database.rollBack();
    }
    return made;
}

} // namespace

int newestSchema()
{
    return static_cast<int>(steps().size());
}

int schemaOf(RecordDatabase &database)
{
    const qint64 tables = numberFrom(database, u"SELECT count(*) FROM sqlite_master"_s);
    if (tables <= 0) {
        return static_cast<int>(tables);
    }
    const qint64 settings = numberFrom(
        database, u"SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = 'setting'"_s);
    const qint64 version =
        settings == 1
            ? numberFrom(database, u"SELECT CAST(value AS INTEGER) FROM setting WHERE name = 'schema'"_s)
            : settings;
    if (settings >= 0 && version == 0) {
        (void)database.fail(QCoreApplication::translate("Record", "is a database of another program"));
    }
    return version <= 0 ? -1 : static_cast<int>(version);
}

Status bringForward(RecordDatabase &database)
{
    int version = schemaOf(database);
    if (version < 0) {
        return database.failure();
    }
    if (version > newestSchema()) {
        return database.fail(
            QCoreApplication::translate("Record", "was written by a newer version of the program (tables %1; "
                                                  "this version knows them up to %2)")
                .arg(version)
                .arg(newestSchema()));
    }
    Status made = database.useLog(); // not in a file that is refused
    while (made && version < newestSchema()) {
        made = carryOut(database, ++version);
    }
    return made;
}

} // namespace ktr
