#pragma once

#include "opmode/station/station.h"
#include "opmode/station_event.h"
#include "record/record_rows.h"

#include <QHash>

#include <optional>

namespace ktr {

/// What became of a station's connection, as it is told.
StationEvent stateEvent(const cStation &station, StationChange what, qint64 at);

/// Of the changes of stations' connections that are told again and again, those that the record needs: what
/// each station's state is, and when it became so.
class StationStates
{
public:
    void clear() { m_last.clear(); }
    /// The event for the record, with its kind, text and detail; nothing when it is no news.
    std::optional<EventRow> news(const cStation &station, StationChange what, const StationEvent &told);

private:
    QHash<std::pair<QString, int>, QString> m_last; ///< by key and kind
};

/// The kinds of events that tell a station's state.
const QList<EventKind> &stateKinds();
/// What such an event, or one of a message of a station, is told as; nothing for others.
std::optional<StationEvent> toldAs(const EventRow &event, const QString &kennung);
/// Takes an event into what is known of a station's state.
void takeState(cStation::Seen &seen, const EventRow &event);

} // namespace ktr
