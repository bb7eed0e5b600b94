#include "record/writer_connection.h"

#include "record/record_sql.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QUuid>

namespace ktr {

WriterConnection::WriterConnection() : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces)) {}

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

/// Writers of long ago are forgotten.
Status WriterConnection::beginBatches()
{
    return m_database.execute(QStringLiteral("DELETE FROM writer WHERE at < now() - interval '30 days'"));
}

QString WriterConnection::batchStatement() const
{
    return QStringLiteral("INSERT INTO writer(name, batch) VALUES('%1', %2) ON CONFLICT(name)"
                          " DO UPDATE SET batch = greatest(writer.batch, excluded.batch), at = now()")
        .arg(m_name)
        .arg(m_batch);
}

/// Whether the server has what it may have. The lost connection may still be committing it; what has no
/// numbers may be written twice.
Status WriterConnection::isThere(bool &isThere)
{
    if (!m_database.begin() || !m_database.beginNumbers()) {
        return refused();
    }
    QSqlQuery *query =
        m_database.carriedOut(QStringLiteral("SELECT batch FROM writer WHERE name = ?"), {m_name});
    if (query == nullptr) {
        return refused();
    }
    isThere = query->next() && query->value(0).toLongLong() == m_batch;
    query->finish();
    m_database.rollBack();
    return Status::done();
}

Status WriterConnection::write(const std::vector<RecordRow> &rows)
{
    if (m_isUnsure) {
        bool isDone = false;
        if (Status found = isThere(isDone); !found || isDone) {
            m_isUnsure = !found;
            return found;
        }
        m_isUnsure = false;
    }
    ++m_batch;
    if (!m_database.begin() || (m_database.isServer() && !m_database.execute(batchStatement()))) {
        return refused();
    }
    if (!m_writing->write(rows)) {
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

void WriterConnection::end()
{
    if (m_database.isOpen()) {
        (void)m_database.execute(m_database.isServer()
                                     ? QStringLiteral("DELETE FROM writer WHERE name = '%1'").arg(m_name)
                                     : settingStatement(QStringLiteral("'open', '0'")));
    }
}

} // namespace ktr
