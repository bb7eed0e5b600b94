#pragma once

#include "record/leases.h"
#include "record/record_reader.h"

namespace ktr {

/// All that whoever begins to look on shows of a server's record, as it was at one moment.
struct SharedState
{
    Status status = Status::done();
    RecordedStations stations{};
    QHash<QString, QString> settings{};
    /// What each station said and was last, in the order of their numbers.
    QList<EventRow> latest{};
    qint64 lastEvent = 0;
    qint64 lastEventAt = 0; ///< milliseconds since 1970, UTC
    qint64 lastAlarmChange = 0;
    QString keepers{}; ///< in words; empty: there is none
    RecordRights rights{};
};

SharedState readSharedState(RecordReader &reader);

/// Who shares the stations of a record.
struct Keepers
{
    QString names{};          ///< in words; empty: nobody does
    Milliseconds lastSign{0}; ///< so long ago one of them was heard of
};

/// Nothing: that is not known.
std::optional<Keepers> keepersOf(RecordReader &reader);

} // namespace ktr
