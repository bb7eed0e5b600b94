#include "record/row_spool.h"

#include "platform/files.h"
#include "record/record_sql.h"
#include "record/row_form.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <algorithm>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

QStringList spoolFiles(const QString &path)
{
    return {path + u"-wal"_s, path + u"-shm"_s, path};
}

} // namespace

Status RowSpool::open(QString *remark)
{
    if (m_database.isOpen()) {
        return Status::done();
    }
    Status made = make();
    if (!made && m_database.isDamaged()) {
        m_database.close();
        QString aside;
        if (Status kept = keepAside(spoolFiles(m_path), &aside); !kept) {
            return kept;
        }
        if (remark != nullptr) {
            *remark = QCoreApplication::translate("RowSpool", "%1: is damaged; it is kept as %2")
                          .arg(m_path, aside);
        }
        made = make();
    }
    if (!made) {
        m_database.close();
    }
    return made;
}

Status RowSpool::make()
{
    Status made = m_database.open(m_path, RecordDatabase::Use::Create);
    if (made) {
        made = m_database.useLog();
    }
    if (made) {
        made = m_database.execute(
            {u"CREATE TABLE IF NOT EXISTS batch(id INTEGER PRIMARY KEY, writer TEXT NOT NULL,"
             " number INTEGER NOT NULL, keeper INTEGER NOT NULL, at INTEGER NOT NULL,"
             " rows INTEGER NOT NULL, form BLOB NOT NULL, UNIQUE(writer, number))"_s,
             u"CREATE TABLE IF NOT EXISTS refused(writer TEXT NOT NULL, number INTEGER NOT NULL,"
             " place INTEGER NOT NULL, at INTEGER NOT NULL, why TEXT NOT NULL, form BLOB NOT NULL,"
             " PRIMARY KEY(writer, number, place))"_s});
    }
    if (Content content; made) { // damage shows when it is read
        made = look(content);
    }
    return made;
}

Status RowSpool::undo()
{
    Status failure = m_database.failure();
    m_database.rollBack();
    m_database.close(); // the next try has a new connection
    return failure;
}

Status RowSpool::adopt(const QString &other)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    {
        RowSpool left(other); // one that is damaged is kept aside
        if (Status opened = left.open(); !opened) {
            return opened;
        }
    }
    const QString path = QString(other).replace(u'\'', u"''"_s);
    Status taken = m_database.execute(u"ATTACH DATABASE '%1' AS adopted"_s.arg(path));
    if (!taken) {
        return taken;
    }
    taken = m_database.execute(
        {u"BEGIN IMMEDIATE"_s,
         u"INSERT OR IGNORE INTO main.batch(writer, number, keeper, at, rows, form)"
         " SELECT writer, number, keeper, at, rows, form FROM adopted.batch ORDER BY id"_s,
         u"INSERT OR IGNORE INTO main.refused SELECT * FROM adopted.refused"_s, u"COMMIT"_s});
    if (!taken) {
        return undo();
    }
    taken = m_database.execute(u"DETACH DATABASE adopted"_s);
    if (taken) {
        for (const QString &file : spoolFiles(other)) {
            QFile::remove(file);
        }
    }
    return taken;
}

Status RowSpool::look(Content &content)
{
    const auto row = [this](const QString &statement) -> QSqlQuery * {
        QSqlQuery *query = m_database.carriedOut(statement, {});
        return query != nullptr && query->next() ? query : nullptr;
    };
    QSqlQuery *query = row(u"SELECT coalesce(sum(rows), 0), coalesce(min(at), 0) FROM batch"_s);
    if (query == nullptr) {
        return undo();
    }
    content.rows = query->value(0).toLongLong();
    content.since = query->value(1).toLongLong();
    query->finish();
    query = row(u"SELECT count(*) FROM refused"_s);
    if (query == nullptr) {
        return undo();
    }
    content.refused = query->value(0).toLongLong();
    query->finish();
    return Status::done();
}

/// Of the pages in use.
qint64 RowSpool::bytes()
{
    qint64 numbers[3] = {};
    int place = 0;
    for (const QString &name : {u"page_count"_s, u"freelist_count"_s, u"page_size"_s}) {
        QSqlQuery *query = m_database.carriedOut(u"PRAGMA "_s + name, {});
        if (query != nullptr && query->next()) {
            numbers[place] = query->value(0).toLongLong();
            query->finish();
        }
        ++place;
    }
    return (numbers[0] - numbers[1]) * numbers[2];
}

Status RowSpool::append(const std::vector<std::shared_ptr<const RowBatch>> &batches)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    if (bytes() >= m_most) {
        return m_database.fail(QCoreApplication::translate("RowSpool", "holds as much as it may"));
    }
    bool isDone = m_database.begin();
    for (const auto &batch : batches) {
        isDone = isDone && m_database.carriedOut(
                               u"INSERT OR IGNORE INTO batch(writer, number, keeper, at, rows,"
                               " form) VALUES(?, ?, ?, ?, ?, ?)"_s,
                               {batch->writer, batch->number, batch->keeper, batch->at,
                                static_cast<qint64>(batch->rows.size()), rowForm(batch->rows)}) != nullptr;
    }
    return isDone && m_database.commit() ? Status::done() : undo();
}

Status RowSpool::oldest(int mostRows, std::vector<Kept> &kept)
{
    if (Status opened = open(); !opened) {
        return opened;
    }
    QSqlQuery *query = m_database.carriedOut(
        u"SELECT id, writer, number, keeper, at, rows, form FROM batch ORDER BY id LIMIT ?"_s, {mostRows});
    if (query == nullptr) {
        return undo();
    }
    qint64 rows = 0;
    while (rows < mostRows && query->next()) {
        Kept next{query->value(0).toLongLong(),
                  query->value(5).toLongLong(),
                  {query->value(1).toString(), query->value(2).toLongLong(), query->value(3).toLongLong(),
                   query->value(4).toLongLong()}};
        if (!kept.empty() && (kept.back().batch.writer != next.batch.writer ||
                              kept.back().batch.keeper != next.batch.keeper || !kept.back().isReadable)) {
            break;
        }
        next.isReadable = readRowForm(query->value(6).toByteArray(), next.batch.rows);
        if (!next.isReadable && !kept.empty()) {
            break;
        }
        rows += next.rows;
        kept.push_back(std::move(next));
    }
    const bool isRead = m_database.wasReadToItsEnd(*query);
    query->finish();
    return isRead ? Status::done() : undo();
}

Status RowSpool::remove(const std::vector<Kept> &kept)
{
    bool isDone = m_database.begin();
    for (const Kept &batch : kept) {
        isDone = isDone && m_database.carriedOut(u"DELETE FROM batch WHERE id = ?"_s, {batch.id}) != nullptr;
    }
    return isDone && m_database.commit() ? Status::done() : undo();
}

Status RowSpool::keepRefused(const RowBatch &batch, const std::vector<Refused> &refused)
{
    bool isDone = m_database.begin();
    for (const Refused &row : refused) {
        isDone =
            isDone && m_database.carriedOut(
                          u"INSERT OR REPLACE INTO refused(writer, number, place, at, why, form)"
                          " VALUES(?, ?, ?, ?, ?, ?)"_s,
                          {batch.writer, batch.number, row.place, QDateTime::currentMSecsSinceEpoch(),
                           row.why, rowForm({batch.rows[static_cast<std::size_t>(row.place)]})}) != nullptr;
    }
    return isDone && m_database.commit() ? Status::done() : undo();
}

Status RowSpool::keepUnreadable(const Kept &kept)
{
    const bool isDone =
        m_database.begin() &&
        m_database.carriedOut(u"INSERT OR REPLACE INTO refused(writer, number, place, at, why, form)"
                              " SELECT writer, number, -1, at, ?, form FROM batch WHERE id = ?"_s,
                              {u"of another version of the program"_s, kept.id}) != nullptr &&
        m_database.commit();
    return isDone ? Status::done() : undo();
}

bool RowSpool::removeEmpty()
{
    Content content;
    if (!m_database.isOpen() || !look(content) || content.rows != 0 || content.refused != 0) {
        return false;
    }
    m_database.close();
    return std::ranges::all_of(
        spoolFiles(m_path), [](const QString &file) { return !QFile::exists(file) || QFile::remove(file); });
}

} // namespace ktr
