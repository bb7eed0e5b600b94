#pragma once

#include "record/record_database.h"
#include "record/record_rows.h"

#include <deque>

namespace ktr {

/// Before which times a record may be thinned out; 0 keeps everything. Events of an open alarm stay in any
/// case, and those that the newest list file does not hold yet.
struct Retention
{
    qint64 values = 0; ///< input values before this time
    qint64 history = 0;
    qint64 alarms = 0; ///< that came before this time, and are acknowledged and over
    QList<std::pair<EventKind, qint64>> events{}; ///< of these kinds and before these times
};

/// Work on a record that can wait: indexing texts, putting kinds in order and removing what is old. It is
/// done in steps, each a commit of a few milliseconds, so that rows can be written in between.
class BackgroundWork
{
public:
    /// Replaces what was still to be removed.
    void setRetention(const Retention &retention);

    /// Does one step and returns whether there are more. After a failure the same step is tried again.
    bool step(RecordDatabase &database, Status &status);

private:
    struct Table
    {
        QString name;
        qint64 before = 0;
        int kind = 0;      ///< of events
        QVariantList at{}; ///< the key behind which the next step begins
    };

    bool indexTexts(RecordDatabase &database, bool &hasMore);
    bool sortKinds(RecordDatabase &database, bool &hasMore);
    bool thinOut(RecordDatabase &database, Table &table, bool &hasMore);
    bool thinEvents(RecordDatabase &database, Table &table, bool &hasMore);
    bool thinAlarms(RecordDatabase &database, Table &table, bool &hasMore);
    bool thinChannels(RecordDatabase &database, Table &table, bool &hasMore);

    std::deque<Table> m_thinning;
};

} // namespace ktr
