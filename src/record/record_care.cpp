#include "record/record_care.h"

#include "platform/files.h"
#include "record/record_address.h"
#include "record/schema.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace ktr {

using namespace Qt::StringLiterals;

Status copyRecord(RecordDatabase &from, const QString &to)
{
    QFile copy;
    if (Status made = openOwnersFile(copy, to); !made) { // the library takes one that is empty
        return made;
    }
    QSqlQuery *query = from.prepared(u"VACUUM INTO ?"_s);
    if (query != nullptr) {
        query->bindValue(0, to);
    }
    if (query == nullptr || !from.run(*query)) {
        return from.failure();
    }
    return flushToDisk(copy.handle())
               ? Status::done()
               : fileFailure(to, QCoreApplication::translate("Record", "is not known to be on the disk"));
}

Status initRecord(const QString &address)
{
    RecordDatabase database;
    Status made = database.open(address, RecordDatabase::Use::Create);
    if (made && !database.isServer()) {
        made = database.fail(QCoreApplication::translate(
            "Record", "is no address of a database server; a record in a file is made when it is needed"));
    }
    return made ? makeTables(database) : made;
}

Status backUpRecord(const QString &path, const QString &to)
{
    if (isServerAddress(path)) {
        return fileFailure(
            path, QCoreApplication::translate(
                      "Record", "is backed up by the means of the database server (pg_dump, pg_basebackup)"));
    }
    if (QFileInfo::exists(to)) {
        return fileFailure(to, QCoreApplication::translate("Record", "is there already"));
    }
    RecordDatabase database;
    if (Status opened = database.open(path, RecordDatabase::Use::Read); !opened) {
        return opened;
    }
    const QFileInfo file(to);
    const QString begun = file.absolutePath() + u"/."_s + file.fileName() + u".begun"_s;
    QFile::remove(begun);
    Status status = copyRecord(database, begun);
    if (status && !QFile::rename(begun, to)) {
        status = Status::failed(QCoreApplication::translate("Record", "could not be put there"));
    }
    if (!status) {
        QFile::remove(begun);
        QString why = status.message();
        status = fileFailure(to, why.remove(begun + u": "_s));
    }
    return status;
}

RecordCheck checkRecord(const QString &path)
{
    RecordCheck result;
    RecordDatabase database;
    const QString log = path + u"-wal"_s;
    if (!isServerAddress(path) && !QFileInfo::exists(path) && QFileInfo::exists(log)) {
        result.status = fileFailure(
            path,
            QCoreApplication::translate("Record", "is gone; only its last changes are there: %1").arg(log));
        return result;
    }
    result.status = database.open(path, RecordDatabase::Use::Read);
    if (!result.status) {
        return result;
    }
    const auto each = [&](const QString &statement, const auto &take) {
        QSqlQuery *query = database.prepared(statement);
        if (query == nullptr || !database.run(*query)) {
            result.faults += database.failure().message();
            return;
        }
        while (query->next()) {
            take(*query);
        }
        if (!database.wasReadToItsEnd(*query)) {
            result.faults += database.failure().message();
        }
        query->finish();
    };
    if (!database.isServer()) { // which looks through its tables by itself (pg_amcheck)
        each(u"PRAGMA integrity_check"_s, [&](const QSqlQuery &row) {
            if (const QString said = row.value(0).toString(); said != u"ok"_s) {
                result.faults += said;
            }
        });
    }
    result.schema = schemaOf(database);
    result.newest = newestSchema(database);
    if (result.schema < 0) {
        result.faults += database.failure().message();
        return result;
    }
    QStringList tables;
    each(database.isServer() ? u"SELECT relname FROM pg_class WHERE relnamespace = 'ktrconfig'::regnamespace"
                               " AND relkind IN ('r', 'p') AND NOT relispartition ORDER BY relname"_s
                             : u"SELECT name FROM sqlite_master WHERE type = 'table' AND"
                               " name NOT LIKE 'event\\_%' ESCAPE '\\' AND name NOT LIKE 'sqlite%'"
                               " ORDER BY name"_s,
         [&](const QSqlQuery &row) { tables += row.value(0).toString(); });
    for (const QString &table : tables) {
        each(u"SELECT count(*) FROM "_s + table, [&](const QSqlQuery &row) {
            result.rows.append({table, row.value(0).toLongLong()});
        });
    }
    return result;
}

} // namespace ktr
