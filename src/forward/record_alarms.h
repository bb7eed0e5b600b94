#pragma once

#include "opmode/alarms/alarm_book.h"
#include "record/record_queries.h"

namespace ktr {

/// The alarms of a list that several keepers share, as the record has them: each keeper knows its own alone.
class RecordAlarms
{
public:
    explicit RecordAlarms(const QString &path) : m_queries(path) {}

    /// Takes what changed; to be called now and then.
    void look();
    /// Whether those that stand are known.
    bool isKnown() const { return m_change.has_value(); }
    AlarmBook &book() { return m_book; }
    QString stationName(qint64 station) const { return m_names.value(station); }

private:
    struct Found
    {
        Status status = Status::done();
        QList<AlarmRow> alarms{};
        QHash<qint64, QString> names{};
        qint64 change = 0;
    };
    static Found standing(RecordReader &reader);
    static Found changed(RecordReader &reader, qint64 change);
    void take(const Found &found);

    AlarmBook m_book;
    QHash<qint64, QString> m_names;
    std::optional<qint64> m_change; ///< the last one that was taken
    RecordQueries m_queries;
};

} // namespace ktr
