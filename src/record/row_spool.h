#pragma once

#include "record/record_database.h"
#include "record/row_batch.h"

#include <memory>

namespace ktr {

/// A file of this machine in which rows wait for a server that does not take them, batch by batch in their
/// order: an SQLite database, and what is in it is on the disk. It is opened by each thread that uses it.
///
///     batch    id (the order), writer, number, keeper, at, rows (how many), form (see rowForm())
///     refused  writer, number, place (of the row in its batch), at, why, form: what the server will not have
class RowSpool
{
public:
    /// About so many bytes are kept; what comes beyond is refused.
    static constexpr qint64 mostBytes = qint64{1} << 30;

    explicit RowSpool(QString path, qint64 most = mostBytes) : m_path(std::move(path)), m_most(most) {}

    const QString &path() const { return m_path; }
    /// Makes it where there is none. One that is damaged is kept aside, which `remark` tells.
    Status open(QString *remark = nullptr);
    void close() { m_database.close(); }
    /// Takes over the batches of another spool, which nobody else may use, and removes that.
    Status adopt(const QString &other);

    struct Content
    {
        qint64 rows = 0;
        qint64 since = 0; ///< when the oldest of them came; 0 where there are none
        qint64 refused = 0;
    };
    Status look(Content &content);

    /// In one commit. A batch that is there already stays.
    Status append(const std::vector<std::shared_ptr<const RowBatch>> &batches);

    struct Kept
    {
        qint64 id = 0;
        qint64 rows = 0;
        RowBatch batch{};
        bool isReadable = true; ///< or of a newer version of the program
    };
    /// The oldest ones: those that follow one another of one writer and one keeper, up to about so many rows.
    Status oldest(int mostRows, std::vector<Kept> &kept);
    /// What the server has.
    Status remove(const std::vector<Kept> &kept);
    /// Rows that the server will not have, by their places in a batch.
    struct Refused
    {
        int place = 0;
        QString why{};
    };
    Status keepRefused(const RowBatch &batch, const std::vector<Refused> &refused);
    /// A batch that cannot be read here is kept among them as it is.
    Status keepUnreadable(const Kept &kept);

    /// Removes the file, unless there is something in it. Gives whether it is gone.
    bool removeEmpty();

private:
    Status make();
    Status undo();
    qint64 bytes();

    QString m_path;
    qint64 m_most;
    RecordDatabase m_database;
};

} // namespace ktr
