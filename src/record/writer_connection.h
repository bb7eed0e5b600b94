#pragma once

#include "record/background_work.h"
#include "record/record_file.h"
#include "record/row_writing.h"

#include <optional>
#include <vector>

namespace ktr {

/// What the thread of a RecordWriter writes with. It is used, and its connection ended, there.
class WriterConnection
{
public:
    WriterConnection();

    /// Does nothing where it is open; a file that was removed or replaced meanwhile is a failure.
    Status open(const QString &path);
    void close();
    /// One commit. After a failure the next try has a new connection.
    Status write(const std::vector<RecordRow> &rows);
    /// The server may have the rows in hand: the connection was lost while it committed them. They are to be
    /// written before others.
    bool isUnsure() const { return m_isUnsure; }

    /// A step of what has time; gives whether there is more.
    bool step(const QString &path, const std::optional<Retention> &retention, Status &done);

    /// The record is to be mended.
    bool isBroken() const { return m_isBroken; }
    OpenedRecord mend(const QString &path);

    /// Says that nothing is missing.
    void end();

private:
    Status beginBatches();
    QString batchStatement() const;
    Status isThere(bool &isThere);
    Status refused();

    RecordDatabase m_database;
    std::optional<RowWriting> m_writing;
    bool m_again = false; ///< a commit failed
    bool m_isBroken = false;
    bool m_isUnsure = false;
    QString m_name; ///< of this writer on a server
    qint64 m_batch = 0;
    BackgroundWork m_background;
};

} // namespace ktr
