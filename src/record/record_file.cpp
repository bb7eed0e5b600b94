#include "record/record_file.h"

#include "platform/files.h"
#include "record/salvage.h"
#include "record/schema.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// The number that a statement gives; 0 for none.
Status readNumber(RecordDatabase &database, const QString &statement, qint64 &number)
{
    QSqlQuery *query = database.prepared(statement);
    if (query == nullptr || !database.run(*query)) {
        return database.failure();
    }
    number = query->next() ? query->value(0).toLongLong() : 0;
    query->finish();
    return Status::done();
}

/// Of the file's structure, not of what the rows say; false with damage, or a failure.
bool isSound(RecordDatabase &database)
{
    QSqlQuery *query = database.prepared(u"PRAGMA quick_check(1)"_s);
    const bool isTold = query != nullptr && database.run(*query) && query->next();
    const bool isSound = isTold && query->value(0).toString() == u"ok"_s;
    if (query != nullptr) {
        query->finish();
    }
    if (isTold && !isSound) {
        database.failAsDamaged();
    }
    return isSound;
}

/// Where a new record is made from a damaged one.
QString salvagePath(const QString &path)
{
    const QFileInfo file(path);
    return file.absolutePath() + u"/."_s + file.fileName() + u".saved"_s;
}

/// All files that a database has.
QStringList filesOf(const QString &path)
{
    return {path + u"-shm"_s, path + u"-wal"_s, path};
}

/// Brings a record to the newest tables and reads its numbers.
void prepareRecord(RecordDatabase &database, OpenedRecord &result)
{
    if (result.status) {
        result.status = bringForward(database);
    }
    qint64 open = 0;
    const std::pair<QString, qint64 *> numbers[] = {
        {u"SELECT count(*) FROM setting WHERE name = 'open' AND value = '1'"_s, &open},
        {u"SELECT max(coalesce((SELECT max(id) FROM event), 0), coalesce((SELECT max(upto) FROM list_file), 0))"_s,
         &result.lastEvent},
        {u"SELECT max(id) FROM alarm"_s, &result.lastAlarm},
    };
    for (const auto &[statement, number] : numbers) {
        if (result.status) {
            result.status = readNumber(database, statement, *number);
        }
    }
    result.endedBadly = open != 0;
    if (result.status && result.endedBadly && !isSound(database)) {
        result.status = database.failure();
    }
}

/// A killed program leaves the whole of the old record or of the new one, or both.
void replaceDamaged(const QString &path, OpenedRecord &result)
{
    const QString fresh = salvagePath(path);
    const Salvaged salvaged = salvage(path, fresh);
    result.status = salvaged.status;
    if (result.status) {
        result.status = keepAside(filesOf(path), &result.keptAside);
    }
    if (result.status && !QFile::rename(fresh, path)) {
        result.status =
            fileFailure(path, QCoreApplication::translate("Record", "the new record could not be put there"));
    }
    result.saved = salvaged.rows;
    result.lost = salvaged.lost;
}

} // namespace

OpenedRecord openRecord(const QString &path)
{
    OpenedRecord result;
    const QString fresh = salvagePath(path);
    if (QFileInfo::exists(path)) {
        for (const QString &file : filesOf(fresh)) { // of a program that was killed
            QFile::remove(file);
        }
    } else if (QFileInfo::exists(fresh)) { // the damaged one had been kept aside already
        QFile::rename(fresh, path);
    }
    result.isNew = !QFileInfo::exists(path);
    RecordDatabase database;
    result.status = database.open(path, RecordDatabase::Use::Create);
    prepareRecord(database, result);
    if (!result.status && database.isDamaged()) {
        const bool endedBadly = result.endedBadly;
        database.close();
        replaceDamaged(path, result);
        if (result.status) {
            result.status = database.open(path, RecordDatabase::Use::Write);
            prepareRecord(database, result);
            result.endedBadly = endedBadly;
        }
    }
    return result;
}

} // namespace ktr
