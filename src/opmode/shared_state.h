#pragma once

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

/// Who shares the stations of the record, in words. Empty: nobody does; nothing: that is not known.
std::optional<QString> keepersOf(RecordReader &reader);

} // namespace ktr
