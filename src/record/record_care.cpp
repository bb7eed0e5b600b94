#include "record/record_care.h"

#include "platform/files.h"
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

Status backUpRecord(const QString &path, const QString &to)
{
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
    if (!QFileInfo::exists(path) && QFileInfo::exists(log)) {
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
    each(u"PRAGMA integrity_check"_s, [&](const QSqlQuery &row) {
        if (const QString said = row.value(0).toString(); said != u"ok"_s) {
            result.faults += said;
        }
    });
    result.schema = schemaOf(database);
    if (result.schema < 0) {
        result.faults += database.failure().message();
        return result;
    }
    QStringList tables;
    each(u"SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'event\\_%' ESCAPE '\\'"
         " AND name NOT LIKE 'sqlite%' ORDER BY name"_s,
         [&](const QSqlQuery &row) { tables += row.value(0).toString(); });
    for (const QString &table : tables) {
        each(u"SELECT count(*) FROM "_s + table, [&](const QSqlQuery &row) {
            result.rows.append({table, row.value(0).toLongLong()});
        });
    }
    return result;
}

} // namespace ktr
