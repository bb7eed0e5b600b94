#pragma once

#include "record/record_database.h"
#include "record/record_rows.h"

#include <QSet>

#include <vector>

namespace ktr {

/// Writes rows into an open record, by statements that are prepared once. The transaction is the caller's.
/// A server gives events their numbers itself, in the order of the commits; of the rows that are many it gets
/// hundreds with a statement, since each statement is a way there and back.
class RowWriting
{
public:
    /// `again`: a commit failed, but some of what it held may be in the file after all.
    explicit RowWriting(RecordDatabase &database, bool again = false)
        : m_database(database), m_isServer(database.isServer()), m_again(again)
    {}

    /// False after a failure, which the database tells.
    bool write(const RecordRow &row) { return add(row) && sendAll(); }
    bool write(const std::vector<RecordRow> &rows);

private:
    bool add(const RecordRow &row);
    bool put(const EventRow &row);
    bool put(const StationRow &row);
    bool put(const NotificationRow &row);
    bool put(const AlarmRow &row);
    bool put(const HistoryRow &row);
    bool put(const ValueRow &row);
    bool put(const ListFileRow &row);
    bool put(const SettingRow &row);
    bool put(const RequestRow &row);
    bool put(const RequestAnswerRow &row);
    template <class... Values>
    bool carryOut(std::size_t slot, const char *statement, const Values &...values);

    /// Rows of one table that a server is to get together, as JSON.
    struct Gathered
    {
        QString rows;
        int count = 0;
    };
    bool gather(std::size_t slot, const QString &row);
    bool send(std::size_t slot);
    bool sendAll();

    bool needMonth(const QString &table, qint64 at, QSet<qint64> &months);

    RecordDatabase &m_database;
    bool m_isServer;
    bool m_again;
    QSet<qint64> m_historyMonths; ///< that have a partition
    QSet<qint64> m_valueMonths;
    Gathered m_gathered[std::variant_size_v<RecordRow>];
    QSqlQuery *m_queries[std::variant_size_v<RecordRow>] = {};
};

} // namespace ktr
