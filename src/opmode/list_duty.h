#pragma once

#include "opmode/list_parts.h"
#include "opmode/watch_alarms.h"
#include "record/leases.h"
#include "record/record_queries.h"

namespace ktr {

/// What one of the keepers that share a list does for all of it, as long as it is its turn: it thins out the
/// record, tells that stations have no keeper, and takes over the alarms of keepers that are gone, which
/// would stand for ever.
class ListDuty
{
    Q_DECLARE_TR_FUNCTIONS(ListDuty)

public:
    /// Longer than it takes another keeper to follow.
    static constexpr qint64 longestUnkeptMs = 30'000;

    /// All must outlive it.
    ListDuty(const ListParts &parts, WatchAlarms &watchAlarms, Leases &leases);
    /// At an orderly end it counts as watched until whoever follows says otherwise.
    ~ListDuty();
    Q_DISABLE_COPY_MOVE(ListDuty)

    bool isHeld() const { return m_leases.has(name()); }
    /// To be called after each turn with the server.
    void turned();
    static QString name() { return QStringLiteral("list"); }

private:
    void lookAtStations();
    void lookForAlarms();
    void take(const QList<AlarmRow> &found);

    ListParts m_parts;
    WatchAlarms &m_watchAlarms;
    Leases &m_leases;
    bool m_isTold = false;    ///< that stations have no keeper
    int m_turns = 0;          ///< in which it was held
    QSet<qint64> m_takenOver; ///< alarms
    RecordQueries m_queries;
};

} // namespace ktr
