#include "record/record_file.h"

#include "platform/files.h"
#include "record/record_address.h"
#include "record/record_care.h"
#include "record/record_reader.h"
#include "record/salvage.h"
#include "record/schema.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <optional>

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

QString hidden(const QString &path, const QString &end)
{
    const QFileInfo file(path);
    return file.absolutePath() + u"/."_s + file.fileName() + end;
}

/// Where a new record is made from a damaged one. It is whole once that is no longer in its place.
QString salvagePath(const QString &path)
{
    return hidden(path, u".saved"_s);
}

/// Where one that was removed is written again. It may not be whole.
QString copyPath(const QString &path)
{
    return hidden(path, u".again"_s);
}

/// All files that a database has. Without the first the others are of no use, and would harm another one.
QStringList filesOf(const QString &path)
{
    return {path, path + u"-wal"_s, path + u"-shm"_s};
}

void removeRecord(const QString &path)
{
    for (const QString &file : filesOf(path)) {
        QFile::remove(file);
    }
}

/// Gives the new name of the record itself, empty where there is none.
Status keepRecordAside(const QString &path, QString &name)
{
    const QStringList files = filesOf(path);
    name = QFileInfo::exists(path) ? asideName({files[1], files[2], path}) : QString();
    return keepAside(files);
}

/// Puts a record in its place.
Status moveRecord(const QString &fresh, const QString &path)
{
    return QFile::rename(fresh, path)
               ? Status::done()
               : fileFailure(path,
                             QCoreApplication::translate("Record", "the new record could not be put there"));
}

/// Brings a record to the newest tables and reads its numbers. Gives whether all of it was looked through.
bool prepareRecord(RecordDatabase &database, OpenedRecord &result, qint64 mostChecked)
{
    if (result.status) {
        result.status = bringForward(database);
    }
    qint64 open = 0;
    qint64 unchecked = 0;
    const std::pair<QString, qint64 *> numbers[] = {
        {u"SELECT count(*) FROM setting WHERE name = 'open' AND value = '1'"_s, &open},
        {u"SELECT count(*) FROM setting WHERE name = '"_s + uncheckedSetting() + u"' AND value = '1'"_s,
         &unchecked},
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
    const bool isDue = result.status && (open != 0 || unchecked != 0);
    result.isUnchecked = isDue && QFileInfo(database.path()).size() > mostChecked;
    if (!isDue || result.isUnchecked) {
        return false;
    }
    if (!isSound(database)) {
        result.status = database.failure();
    } else if (unchecked != 0) {
        result.status =
            database.execute(u"DELETE FROM setting WHERE name = '"_s + uncheckedSetting() + u'\'');
    }
    return true;
}

/// Whether what a start needs can be read: a file may be damaged after it was closed. What is damaged
/// elsewhere is found by who writes or reads it.
bool canBeTakenUp(const QString &path)
{
    RecordReader reader(path);
    std::optional<qint64> upto;
    QHash<QString, QString> settings;
    Status read = reader.settings(settings);
    const auto go = [&read](const auto &step) { read = read ? step() : read; };
    go([&] { return reader.lastListFile({}, upto); });
    go([&] { return reader.stations([](const StationRow &) {}); });
    go([&] { return reader.notifications([](const NotificationRow &) {}); });
    go([&] { return reader.openAlarms([](const AlarmRow &) {}); });
    if (upto) {
        go([&] { return reader.eventsAfter(*upto, [](const EventRow &) { return true; }); });
    }
    return read || !reader.foundDamage();
}

/// A killed program leaves the whole of the old record or of the new one, or both.
void putInPlace(const QString &fresh, const QString &path, OpenedRecord &result)
{
    if (result.status) {
        result.status = keepRecordAside(path, result.keptAside);
    }
    if (result.status) {
        result.status = moveRecord(fresh, path);
    }
}

void replaceDamaged(const QString &path, OpenedRecord &result)
{
    const QString fresh = salvagePath(path);
    const Salvaged salvaged = salvage(path, fresh);
    result.status = salvaged.status;
    putInPlace(fresh, path, result);
    result.saved = salvaged.rows;
    result.lost = salvaged.lost;
}

/// A log of changes that is left without its record would be taken for that of the next one.
void keepLogAside(const QString &path, OpenedRecord &result)
{
    const QStringList files = filesOf(path);
    if (QFileInfo(files[1]).size() == 0) { // or there is none
        removeRecord(path);
        return;
    }
    result.keptAside = asideName({files[0], files[2], files[1]});
    result.status = keepAside(files);
    result.lost +=
        QCoreApplication::translate("Record", "of a record that is gone, its last changes were there");
}

/// On a server there is nothing to be mended here, and nobody to be waited for.
OpenedRecord openOnServer(const QString &address)
{
    OpenedRecord result;
    RecordDatabase database;
    result.status = database.open(address, RecordDatabase::Use::Write);
    if (result.status && schemaOf(database) == 0) {
        result.status = database.fail(
            QCoreApplication::translate("Record", "has no tables yet; \"ktrcli record init\" makes them"));
    }
    if (result.status) {
        result.status = bringForward(database);
    }
    if (result.status) {
        result.status = readNumber(database, u"SELECT max(id) FROM event"_s, result.lastEvent);
    }
    if (result.status) {
        result.status = readNumber(database, u"SELECT nextval('number_block')"_s, result.lastAlarm);
        result.lastAlarm *= numbersOfABlock;
    }
    return result;
}

} // namespace

QString uncheckedSetting()
{
    return u"unchecked"_s;
}

OpenedRecord openRecord(const QString &path, qint64 mostChecked)
{
    if (isServerAddress(path)) {
        return openOnServer(path);
    }
    OpenedRecord result;
    const QString fresh = salvagePath(path);
    QFile::remove(copyPath(path));
    if (QFileInfo::exists(path)) {
        removeRecord(fresh); // of a program that was killed
    } else {
        keepLogAside(path, result);
        if (result.status && QFileInfo::exists(fresh)) { // the damaged one had been kept aside already
            result.status = moveRecord(fresh, path);
        }
        if (!result.status) {
            return result;
        }
    }
    result.isNew = !QFileInfo::exists(path);
    RecordDatabase database;
    result.status = database.open(path, RecordDatabase::Use::Create);
    const bool isLookedThrough = prepareRecord(database, result, mostChecked);
    const bool isToBeRead = result.status && !result.isNew && !isLookedThrough;
    if (isToBeRead ? !canBeTakenUp(path) : !result.status && database.isDamaged()) {
        const bool endedBadly = result.endedBadly;
        database.close();
        replaceDamaged(path, result);
        if (result.status) {
            result.status = database.open(path, RecordDatabase::Use::Write);
            (void)prepareRecord(database, result, mostChecked);
            result.endedBadly = endedBadly;
        }
    }
    return result;
}

OpenedRecord repairRecord(const QString &path, RecordDatabase &used)
{
    OpenedRecord result;
    if (used.isMoved()) {
        const QString copy = copyPath(path);
        QFile::remove(copy);
        result.status = copyRecord(used, copy);
        if (result.status) {
            used.close();
            putInPlace(copy, path, result);
            result.isPutBack = static_cast<bool>(result.status);
        }
        return result;
    }
    used.close();
    if (!QFileInfo::exists(path)) {
        return openRecord(path);
    }
    removeRecord(salvagePath(path));
    replaceDamaged(path, result);
    return result;
}

} // namespace ktr
