#include "record/writer_connection.h"

#include "record/record_sql.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

using namespace Qt::StringLiterals;

Status WriterConnection::open(const QString &path)
{
    if (m_database.isOpen()) {
        if (!m_database.isMoved()) {
            return Status::done();
        }
        m_isBroken = true; // it has all that was written, and stays open
        return m_database.fail(
            QCoreApplication::translate("Record", "was removed, or replaced by another file"));
    }
    Status opened = m_database.open(path, RecordDatabase::Use::Write);
    if (opened) {
        opened = m_database.isServer() ? beginBatches()
                                       : m_database.execute(settingStatement(QStringLiteral("'open', '1'")));
        m_writing.emplace(m_database, m_again);
    }
    if (!opened) {
        m_isBroken =
            m_isBroken || m_database.isDamaged() || !(m_database.isServer() || QFileInfo::exists(path));
        close();
    }
    return opened;
}

OpenedRecord WriterConnection::mend(const QString &path)
{
    m_writing.reset();
    OpenedRecord found = repairRecord(path, m_database);
    m_isBroken = !found.status;
    return found;
}

void WriterConnection::close()
{
    m_writing.reset();
    m_database.close();
}

/// Writers of long ago are forgotten; what they may have left in a spool is not that old.
Status WriterConnection::beginBatches()
{
    return m_database.execute(u"DELETE FROM writer WHERE at < now() - interval '1 year'"_s);
}

/// Notes that the batch is there with this transaction, unless it is there. Whoever is about to commit it
/// over another connection is waited for.
bool WriterConnection::claim(const RowBatch &batch, bool &isThere)
{
    QSqlQuery *query = m_database.carriedOut(
        u"INSERT INTO writer(name, batch) VALUES(?, ?) ON CONFLICT(name) DO UPDATE SET"
        " batch = excluded.batch, at = now() WHERE writer.batch < excluded.batch RETURNING batch"_s,
        {batch.writer, batch.number});
    if (query == nullptr) {
        return false;
    }
    isThere = !query->next();
    query->finish();
    return true;
}

/// Whether a keeper may have lost stations since it heard what it writes: it stood still, or had to wait.
bool WriterConnection::isOld(const RowBatch &batch)
{
    constexpr qint64 freshMs = 5'000; // less than a lease holds
    const qint64 oldest = QDateTime::currentMSecsSinceEpoch() - freshMs;
    return batch.keeper != 0 && std::ranges::any_of(batch.rows, [oldest](const RecordRow &row) {
               const auto *event = std::get_if<EventRow>(&row);
               return event != nullptr && event->at < oldest;
           });
}

Status WriterConnection::write(const RowBatch &batch)
{
    bool isThere = false;
    if (!m_database.begin() || (m_database.isServer() && !claim(batch, isThere))) {
        return refused(); // and what was not known before is not known now
    }
    m_isUnsure = false;
    if (isThere) {
        m_database.rollBack();
        return Status::done();
    }
    const bool isLate = m_database.isServer() && isOld(batch);
    std::vector<RecordRow> late;
    if ((isLate && !lateRows(batch, late)) || !m_writing->write(isLate ? late : batch.rows)) {
        return refused();
    }
    if (!m_database.commit()) {
        m_isUnsure = m_database.isServer();
        return refused();
    }
    if (std::exchange(m_again, false)) {
        m_writing.emplace(m_database);
    }
    return Status::done();
}

/// The number of the last batch of a writer that is there; no other connection adds one until the end of the
/// transaction.
bool WriterConnection::lastOf(const QString &writer, qint64 &number)
{
    if (m_database.carriedOut(u"INSERT INTO writer(name, batch) VALUES(?, 0) ON CONFLICT(name) DO NOTHING"_s,
                              {writer}) == nullptr) {
        return false;
    }
    QSqlQuery *query =
        m_database.carriedOut(u"SELECT batch FROM writer WHERE name = ? FOR UPDATE"_s, {writer});
    if (query == nullptr) {
        return false;
    }
    number = query->next() ? query->value(0).toLongLong() : 0;
    query->finish();
    return true;
}

/// The stations among a batch's that have been another keeper's since, or may have been; no other takes one
/// until the end of the transaction.
bool WriterConnection::othersAmong(const RowBatch &batch, OthersStations &others)
{
    const QSet<qint64> told = batch.keeper == 0 ? QSet<qint64>() : stationsOf(batch.rows);
    if (told.isEmpty()) {
        return true;
    }
    QSqlQuery query(m_database.handle());
    query.setForwardOnly(true);
    if (!query.prepare(u"SELECT id, keeper, listed FROM station WHERE id IN "_s + listOf(told) +
                       u" FOR UPDATE"_s) ||
        !m_database.run(query)) {
        return false;
    }
    while (query.next()) {
        if (query.value(1).isNull() || query.value(1).toLongLong() != batch.keeper) {
            others.all += query.value(0).toLongLong();
            if (query.value(2).toInt() == 0) {
                others.gone += query.value(0).toLongLong();
            }
        }
    }
    return m_database.wasReadToItsEnd(query);
}

/// What is to be written of a batch that comes late. A text that another keeper had handed over to this one,
/// which could not tell that any more, may have been taken by a third.
bool WriterConnection::lateRows(const RowBatch &batch, std::vector<RecordRow> &rows)
{
    OthersStations others;
    if (!othersAmong(batch, others)) {
        return false;
    }
    rows = withoutStates(batch.rows, others);
    bool isDone = true;
    std::erase_if(rows, [&](const RecordRow &row) {
        const auto *request = std::get_if<RequestRow>(&row);
        const std::optional<HeardText> heard = request != nullptr ? HeardText::of(*request) : std::nullopt;
        if (!heard || !isDone) {
            return false;
        }
        QSqlQuery *query = m_database.carriedOut(
            u"SELECT 1 FROM event WHERE station = ? AND at = ? AND kind = ? AND text = ? LIMIT 1"_s,
            {heard->station, heard->at, static_cast<int>(EventKind::Notification), heard->text});
        isDone = query != nullptr;
        const bool isKnown = isDone && query->next();
        if (isDone) {
            query->finish();
        }
        return isKnown;
    });
    return isDone;
}

/// As one transaction; without its commit.
bool WriterConnection::writeLate(const std::vector<RowSpool::Kept> &kept)
{
    const RowBatch &last = kept.back().batch;
    qint64 known = 0;
    if (!lastOf(last.writer, known)) {
        return false;
    }
    for (const RowSpool::Kept &each : kept) {
        std::vector<RecordRow> rows;
        if (each.batch.number > known && (!lateRows(each.batch, rows) || !m_writing->write(rows))) {
            return false;
        }
    }
    return known >= last.number ||
           m_database.carriedOut(u"UPDATE writer SET batch = ?, at = now() WHERE name = ?"_s,
                                 {last.number, last.writer}) != nullptr;
}

Status WriterConnection::handOver(const QString &path, RowSpool &spool, HandedOver &handedOver)
{
    constexpr int mostRows = 1'000;
    std::vector<RowSpool::Kept> kept;
    Status done = spool.oldest(mostRows, kept);
    if (done && !kept.empty()) {
        done = open(path);
    }
    if (!done || kept.empty()) {
        return done;
    }
    if (!kept.front().isReadable) {
        handedOver = {0, 0, kept.front().rows,
                      QCoreApplication::translate("RowSpool", "of another version of the program")};
        done = spool.keepUnreadable(kept.front());
    } else if (!m_database.begin() || !writeLate(kept) || !m_database.commit()) {
        if (!m_database.isRowRefused()) {
            return refused();
        }
        undo();
        kept.resize(1); // the one with the row is found in its turn
        done = writeEach(kept.front().batch, spool, handedOver);
    }
    if (done) {
        done = spool.remove(kept);
    }
    for (const RowSpool::Kept &each : kept) {
        handedOver.rows += done ? each.rows : 0;
        handedOver.at = each.batch.at;
    }
    return done;
}

/// What the server will not have is in the spool before the rest of the batch is there.
Status WriterConnection::writeEach(const RowBatch &batch, RowSpool &spool, HandedOver &handedOver)
{
    qint64 known = 0;
    std::vector<RowSpool::Refused> refusedRows;
    if (!m_database.begin() || !lastOf(batch.writer, known)) {
        return refused();
    }
    if (known >= batch.number) {
        m_database.rollBack();
        return Status::done();
    }
    RowBatch late = batch;
    if (!lateRows(batch, late.rows) || !m_database.execute(u"SET CONSTRAINTS ALL IMMEDIATE"_s) ||
        !tryEach(late.rows, refusedRows)) {
        return refused();
    }
    if (Status kept = spool.keepRefused(late, refusedRows); !kept) {
        undo();
        return kept;
    }
    if (m_database.carriedOut(u"UPDATE writer SET batch = ?, at = now() WHERE name = ?"_s,
                              {batch.number, batch.writer}) == nullptr ||
        !m_database.commit()) {
        return refused();
    }
    if (!refusedRows.empty()) {
        handedOver.refused = static_cast<qint64>(refusedRows.size());
        handedOver.why = refusedRows.back().why;
    }
    return Status::done();
}

bool WriterConnection::tryEach(const std::vector<RecordRow> &rows, std::vector<RowSpool::Refused> &refused)
{
    int place = 0;
    for (const RecordRow &row : rows) {
        if (!m_database.execute(u"SAVEPOINT one"_s)) {
            return false;
        }
        if (m_writing->write(row)) {
            if (!m_database.execute(u"RELEASE SAVEPOINT one"_s)) {
                return false;
            }
        } else if (m_database.isRowRefused()) {
            refused.push_back({place, m_database.failure().message()});
            m_writing.emplace(m_database);
            if (!m_database.execute(u"ROLLBACK TO SAVEPOINT one"_s)) {
                return false;
            }
        } else {
            return false;
        }
        ++place;
    }
    return true;
}

/// Of what was begun nothing holds, and nothing that was gathered is sent.
void WriterConnection::undo()
{
    m_database.rollBack();
    m_writing.emplace(m_database);
}

bool WriterConnection::step(const QString &path, const std::optional<Retention> &retention, Status &done)
{
    if (retention) {
        m_background.setRetention(*retention);
    }
    done = open(path);
    if (!done) {
        return true;
    }
    const bool hasMore = m_background.step(m_database, done);
    if (!done) {
        (void)refused();
    }
    return hasMore;
}

/// The next try begins with a new connection: after an error of the disk this one may not know what stands
/// there.
Status WriterConnection::refused()
{
    Status failure = m_database.failure();
    m_isBroken = m_isBroken || m_database.isDamaged();
    m_database.rollBack();
    close();
    m_again = true;
    return failure;
}

void WriterConnection::end(const QString &writer)
{
    if (m_database.isOpen()) {
        (void)m_database.execute(m_database.isServer() ? u"DELETE FROM writer WHERE name = '%1'"_s.arg(writer)
                                                       : settingStatement(u"'open', '0'"_s));
    }
}

} // namespace ktr
