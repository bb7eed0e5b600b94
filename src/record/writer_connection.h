#pragma once

#include "record/background_work.h"
#include "record/heard_text.h"
#include "record/record_file.h"
#include "record/row_batch.h"
#include "record/row_spool.h"
#include "record/row_writing.h"

#include <optional>

namespace ktr {

/// What the thread of a RecordWriter writes with. It is used, and its connection ended, there.
class WriterConnection
{
public:
    /// Does nothing where it is open; a file that was removed or replaced meanwhile is a failure.
    Status open(const QString &path);
    void close();
    /// As RecordDatabase::giveUp(), on any thread.
    void giveUp() { m_database.giveUp(); }
    /// One commit. After a failure the next try has a new connection; a server is to be given the same batch
    /// again then, since it may have it: the connection may have been lost while it was committed.
    Status write(const RowBatch &batch);
    /// Whether it may be there although the last one failed.
    bool isUnsure() const { return m_isUnsure; }
    /// Gives a server what waits longest in a spool, and removes it from there.
    struct HandedOver
    {
        qint64 rows = 0;    ///< that the spool has no more
        qint64 at = 0;      ///< when the last of them came
        qint64 refused = 0; ///< of these, rows that the server will not have: the spool keeps them aside
        QString why{};      ///< of the last of them
    };
    Status handOver(const QString &path, RowSpool &spool, HandedOver &handedOver);

    /// A step of what has time; gives whether there is more.
    bool step(const QString &path, const std::optional<Retention> &retention, Status &done);

    /// The record is to be mended.
    bool isBroken() const { return m_isBroken; }
    OpenedRecord mend(const QString &path);

    /// Says that nothing is missing of what a writer of this name wrote.
    void end(const QString &writer);

private:
    Status beginBatches();
    bool claim(const RowBatch &batch, bool &isThere);
    bool lastOf(const QString &writer, qint64 &number);
    static bool isOld(const RowBatch &batch);
    bool othersAmong(const RowBatch &batch, OthersStations &others);
    bool lateRows(const RowBatch &batch, std::vector<RecordRow> &rows);
    bool writeLate(const std::vector<RowSpool::Kept> &kept);
    Status writeEach(const RowBatch &batch, RowSpool &spool, HandedOver &handedOver);
    bool tryEach(const std::vector<RecordRow> &rows, std::vector<RowSpool::Refused> &refused);
    void undo();
    Status refused();

    RecordDatabase m_database;
    std::optional<RowWriting> m_writing;
    bool m_again = false; ///< a commit failed
    bool m_isBroken = false;
    bool m_isUnsure = false;
    BackgroundWork m_background;
};

} // namespace ktr
