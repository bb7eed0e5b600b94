#pragma once

#include "record/record_database.h"
#include "record/record_rows.h"

#include <deque>

namespace ktr {

/// What of a record may go because of its age; 0 keeps all. What an open alarm or the tables of a list that
/// is still to be taken up need stays in any case.
struct Retention
{
    qint64 values = 0; ///< input values before this time
    qint64 history = 0;
    qint64 alarms = 0; ///< that came before this time, and are acknowledged and over
    QList<std::pair<EventKind, qint64>> events{}; ///< of these kinds and before these times
};

/// The work on a record that has time: its index of texts, the order of its kinds, and thinning it out. Done
/// step by step, each a commit of a few milliseconds, between which rows are written.
class BackgroundWork
{
public:
    /// Takes the place of what was to be thinned out so far.
    void setRetention(const Retention &retention);

    /// Does a step of what there is to do. Gives whether there is more; a failure is the database's, and the
    /// step is done again.
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
