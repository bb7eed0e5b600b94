#include "record/transmission_table.h"

#include "platform/file_lock.h"
#include "platform/files.h"
#include "record/bound_values.h"
#include "record/damage_told.h"
#include "record/record_address.h"
#include "record/record_file.h"
#include "record/schema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <array>
#include <chrono>
#include <thread>
#include <utility>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr std::array verdictWords = {
    std::pair{TransmissionVerdict::NotEnded, "not ended"},
    std::pair{TransmissionVerdict::Whole, "whole"},
    std::pair{TransmissionVerdict::Unknown, "not known"},
    std::pair{TransmissionVerdict::InPart, "in part"},
    std::pair{TransmissionVerdict::BrokenOff, "broken off"},
    std::pair{TransmissionVerdict::Alone, "single command"},
};

constexpr std::array outcomeWords = {
    std::pair{StepOutcome::Sent, "sent"},
    std::pair{StepOutcome::Confirmed, "confirmed"},
    std::pair{StepOutcome::Refused, "refused"},
    std::pair{StepOutcome::Failed, "failed"},
    std::pair{StepOutcome::Unconfirmed, "unconfirmed"},
};

template <class Words, class Value> QString wordIn(const Words &words, Value value)
{
    for (const auto &[each, word] : words) {
        if (each == value) {
            return QLatin1String(word);
        }
    }
    return {};
}

/// The first one for a word that is not known.
template <class Words> auto valueIn(const Words &words, const QString &word)
{
    for (const auto &[each, text] : words) {
        if (word == QLatin1String(text)) {
            return each;
        }
    }
    return words.front().first;
}

QVariant text(const QString &text)
{
    return bound(withoutNul(text));
}

const QString fields =
    u"begun, ended, user_name, operator, file, line, station, version_before, version_sent, program,"
    " first_step, answers, verdict, last_step, resume_step, based_on, has_pin"_s;

QVariantList valuesOf(const TransmissionRow &row, bool isServer)
{
    return {row.begun,
            numberOrNull(row.ended),
            text(row.user),
            textOrNull(withoutNul(row.operatorName)),
            text(row.file),
            text(row.line),
            text(row.station),
            row.versionBefore ? text(*row.versionBefore) : QVariant(),
            text(row.versionSent),
            text(row.program),
            row.firstStep,
            row.answers ? 1 : 0,
            wordOf(row.verdict),
            row.lastStep ? QVariant(*row.lastStep) : QVariant(),
            row.resumeStep ? QVariant(*row.resumeStep) : QVariant(),
            numberOrNull(row.basedOn),
            row.hasPin ? 1 : 0,
            text(isServer ? withoutPinElement(row.configuration) : row.configuration)};
}

TransmissionRow rowFrom(const QSqlQuery &query, bool whole)
{
    TransmissionRow row;
    int place = 0;
    const auto next = [&] { return query.value(place++); };
    row.id = next().toLongLong();
    row.uid = next().toString();
    row.begun = next().toLongLong();
    row.ended = next().toLongLong();
    row.user = next().toString();
    row.operatorName = next().toString();
    row.file = next().toString();
    row.line = next().toString();
    row.station = next().toString();
    if (const QVariant before = next(); !before.isNull()) {
        row.versionBefore = before.toString();
    }
    row.versionSent = next().toString();
    row.program = next().toString();
    row.firstStep = next().toInt();
    row.answers = next().toBool();
    row.verdict = valueIn(verdictWords, next().toString());
    if (const QVariant step = next(); !step.isNull()) {
        row.lastStep = step.toInt();
    }
    if (const QVariant step = next(); !step.isNull()) {
        row.resumeStep = step.toInt();
    }
    row.basedOn = next().toLongLong();
    row.hasPin = next().toBool();
    if (whole) {
        row.configuration = next().toString();
    }
    return row;
}

QString selection(bool whole)
{
    return u"SELECT id, uid, "_s + fields + (whole ? u", configuration"_s : QString()) +
           u" FROM transmission"_s;
}

} // namespace

QString wordOf(TransmissionVerdict verdict)
{
    return wordIn(verdictWords, verdict);
}

QString wordOf(StepOutcome outcome)
{
    return wordIn(outcomeWords, outcome);
}

QString withoutPinElement(QString configuration)
{
    static const QRegularExpression pin(u"<PIN>[^<]*</PIN>"_s);
    return configuration.replace(pin, u"<PIN></PIN>"_s);
}

// Writing

Status TransmissionTable::rolledBack()
{
    Status why = m_database.failure();
    m_database.rollBack();
    return why;
}

bool TransmissionTable::update(const TransmissionRow &row, bool &isThere)
{
    QString changes = fields + u", configuration"_s;
    changes.replace(u","_s, u" = ?,"_s);
    QSqlQuery *query =
        m_database.carriedOut(u"UPDATE transmission SET "_s + changes + u" = ? WHERE uid = ?"_s,
                              valuesOf(row, m_database.isServer()) + QVariantList{row.uid});
    isThere = query != nullptr && query->numRowsAffected() > 0;
    return query != nullptr;
}

bool TransmissionTable::insert(TransmissionRow &row)
{
    const QVariantList values = QVariantList{row.uid} + valuesOf(row, m_database.isServer());
    const QString places = QStringList(values.size(), u"?"_s).join(u", "_s);
    return m_database.carriedOut(u"INSERT INTO transmission(uid, "_s + fields +
                                     u", configuration) VALUES("_s + places + u')',
                                 values) != nullptr;
}

bool TransmissionTable::writeSteps(qint64 transmission, const QList<TransmissionStepRow> &steps)
{
    for (const TransmissionStepRow &step : steps) {
        if (m_database.carriedOut(
                u"INSERT INTO transmission_step(transmission, step, command, outcome, attempts, at)"
                " VALUES(?, ?, ?, ?, ?, ?) ON CONFLICT(transmission, step) DO UPDATE SET"
                " command = excluded.command, outcome = excluded.outcome, attempts = excluded.attempts,"
                " at = excluded.at"_s,
                {transmission, step.step, text(step.command), wordOf(step.outcome), step.attempts,
                 step.at}) == nullptr) {
            return false;
        }
    }
    return true;
}

Status TransmissionTable::write(TransmissionRow &row, const QList<TransmissionStepRow> &steps)
{
    bool isThere = false;
    if (!m_database.begin() || !update(row, isThere) || (!isThere && !insert(row))) {
        return rolledBack();
    }
    QSqlQuery *number = m_database.carriedOut(u"SELECT id FROM transmission WHERE uid = ?"_s, {row.uid});
    if (number == nullptr || !number->next()) {
        return rolledBack();
    }
    const qint64 id = number->value(0).toLongLong();
    number->finish();
    if (!writeSteps(id, steps) || !m_database.commit()) {
        return rolledBack();
    }
    row.id = id;
    return Status::done();
}

Status TransmissionTable::thin(qint64 before, qint64 &removed)
{
    const QString old =
        u" (SELECT id FROM transmission WHERE begun < ? AND id NOT IN (SELECT id FROM (SELECT id,"
        " row_number() OVER (PARTITION BY station ORDER BY begun DESC, id DESC) AS place FROM transmission"
        " WHERE verdict = 'whole' AND last_step = "_s +
        QString::number(TransmissionRow::closingStep) + u") AS newest WHERE place = 1))"_s;
    // A whole one that stays proves nothing once it is forgotten that its module may have been changed since.
    const QString forgotten =
        u"UPDATE transmission SET based_on = "_s + QString::number(TransmissionRow::onNothingKnown) +
        u" WHERE begun < ? AND verdict = 'whole' AND EXISTS (SELECT 1 FROM transmission AS later"
        " WHERE later.begun < ? AND later.begun >= transmission.begun AND later.id <> transmission.id"
        " AND (coalesce(later.last_step, 0) > 0 OR later.verdict = 'not ended')"
        " AND (later.verdict <> 'whole' OR later.based_on = "_s +
        QString::number(TransmissionRow::onNothingKnown) + u"))"_s;
    removed = 0;
    if (!m_database.begin() || m_database.carriedOut(forgotten, {before, before}) == nullptr ||
        m_database.carriedOut(u"DELETE FROM transmission_step WHERE transmission IN"_s + old, {before}) ==
            nullptr) {
        return rolledBack();
    }
    QSqlQuery *query = m_database.carriedOut(u"DELETE FROM transmission WHERE id IN"_s + old, {before});
    const qint64 count = query != nullptr ? query->numRowsAffected() : 0;
    if (query == nullptr || !m_database.commit()) {
        return rolledBack();
    }
    removed = count;
    return Status::done();
}

// Reading

Status TransmissionTable::find(const TransmissionFilter &filter,
                               const std::function<void(const TransmissionRow &)> &take, bool whole)
{
    QStringList conditions;
    QVariantList values;
    const auto want = [&](bool isWanted, const QString &condition, const QVariant &value) {
        if (isWanted) {
            conditions += condition;
            values += value;
        }
    };
    want(!filter.station.isEmpty(), u"station = ?"_s, filter.station);
    want(filter.since != 0, u"begun >= ?"_s, filter.since);
    want(!filter.line.isEmpty(), u"line = ?"_s, filter.line);
    want(filter.versionSent.has_value(), u"version_sent = ?"_s, text(filter.versionSent.value_or(QString())));
    QString statement = selection(whole);
    if (!conditions.isEmpty()) {
        statement += u" WHERE "_s + conditions.join(u" AND "_s);
    }
    statement += u" ORDER BY begun DESC, id DESC"_s;
    if (filter.limit != 0) {
        statement += u" LIMIT ?"_s;
        values += filter.limit;
    }
    QSqlQuery *query = m_database.carriedOut(statement, values);
    if (query == nullptr) {
        return m_database.failure();
    }
    while (query->next()) {
        take(rowFrom(*query, whole));
    }
    const bool isRead = m_database.wasReadToItsEnd(*query);
    query->finish();
    return isRead ? Status::done() : m_database.failure();
}

Status TransmissionTable::read(qint64 id, std::optional<TransmissionRow> &row,
                               QList<TransmissionStepRow> &steps)
{
    row.reset();
    steps.clear();
    QSqlQuery *query = m_database.carriedOut(selection(true) + u" WHERE id = ?"_s, {id});
    if (query == nullptr) {
        return m_database.failure();
    }
    if (query->next()) {
        row = rowFrom(*query, true);
    }
    bool isRead = m_database.wasReadToItsEnd(*query);
    query->finish();
    if (isRead && row) {
        query = m_database.carriedOut(u"SELECT step, command, outcome, attempts, at FROM transmission_step"
                                      " WHERE transmission = ? ORDER BY step"_s,
                                      {id});
        if (query == nullptr) {
            return m_database.failure();
        }
        while (query->next()) {
            steps.append({query->value(0).toInt(), query->value(1).toString(),
                          valueIn(outcomeWords, query->value(2).toString()), query->value(3).toInt(),
                          query->value(4).toLongLong()});
        }
        isRead = m_database.wasReadToItsEnd(*query);
        query->finish();
    }
    return isRead ? Status::done() : m_database.failure();
}

// Opening

namespace {

constexpr std::chrono::seconds longestWait{5};
constexpr std::chrono::milliseconds pause{20};

/// Whoever mends or makes the file has it alone.
void waitForLock(FileLock &lock, const QString &path)
{
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (lock.take(path) == FileLock::Outcome::Held && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(pause);
    }
}

/// Opens a file that is there, sound and of the newest tables.
Status openReady(RecordDatabase &database, const QString &path)
{
    Status opened = database.open(path, RecordDatabase::Use::Write);
    if (opened && schemaOf(database) != newestSchema(database)) {
        opened = Status::failed(path);
    }
    return opened;
}

Status openOwnFile(RecordDatabase &database, const QString &path, QStringList *told)
{
    if (QFileInfo::exists(path) && openReady(database, path)) {
        return Status::done();
    }
    database.close();
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        return fileFailure(path, QCoreApplication::translate("Record", "its folder cannot be made"));
    }
    FileLock lock;
    waitForLock(lock, path + u".lock"_s);
    const OpenedRecord record = openRecord(path);
    if (told != nullptr) {
        *told += damageTold(path, record);
    }
    if (!record.status) {
        return record.status;
    }
    return database.open(path, RecordDatabase::Use::Write);
}

} // namespace

Status mendForTransmissions(RecordDatabase &database, const QString &record, QStringList &told)
{
    if (isServerAddress(record)) {
        return database.failure();
    }
    FileLock lock;
    waitForLock(lock, record + u".lock"_s);
    const OpenedRecord mended = repairRecord(record, database);
    told += damageTold(record, mended);
    return mended.status;
}

Status openForTransmissions(RecordDatabase &database, const QString &record, QStringList *told)
{
    if (!isServerAddress(record)) {
        return openOwnFile(database, record, told);
    }
    Status opened = database.open(record, RecordDatabase::Use::Write);
    if (opened) {
        const int schema = schemaOf(database);
        if (schema < 0) {
            opened = database.failure();
        } else if (schema < newestSchema(database)) {
            opened = database.fail(QCoreApplication::translate(
                "Record", "has no tables for transmissions yet; \"ktrcli record init\" makes them"));
        } else {
            opened = bringForward(database); // refuses newer ones
        }
    }
    return opened;
}

} // namespace ktr
