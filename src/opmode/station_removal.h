#pragma once

#include "opmode/station_actions.h"

#include <deque>

namespace ktr {

/// Takes stations out of the list in such a way that those of the last removal can be brought back, with
/// their settings, entries, alarms and places. What the record says of them it keeps in any case.
class StationRemoval
{
    Q_DECLARE_TR_FUNCTIONS(StationRemoval)

public:
    /// All must outlive it.
    StationRemoval(const ListParts &parts, StationActions &actions, WatchAlarms &watchAlarms)
        : m_parts(parts), m_actions(actions), m_watchAlarms(watchAlarms)
    {}

    /// Another removal: what went before cannot be brought back any more.
    void begin() { forget(); }
    /// Nothing is done for a key that no station has.
    void remove(const QString &kennung);
    /// How many stations can be brought back.
    int count() const { return static_cast<int>(m_removed.size()); }
    /// How many alarms waited for somebody that their removal closed.
    int closedAlarms() const;
    /// Their keys, in the order in which restoreNext() brings them back.
    QStringList stations() const;
    /// Brings back the first one that was removed; false where another station has its name by now, and then
    /// it waits behind the others.
    bool restoreNext();
    /// To be called when all that can be are back.
    void settle();
    /// Nothing is to be brought back any more.
    void forget();

private:
    struct Removed
    {
        NodeStore::Id node = NodeStore::root;
        QString kennung{};
        qint64 number = 0; ///< in the record
        StationAttributes attributes{};
        cStation::Seen seen{};
        ValueTrends::Kept trends{};
        QList<AlarmRow> alarms{};
        QList<Shelf> shelves{};
        int waiting = 0; ///< of the alarms
    };

    void putBackAlarms(const Removed &removed);

    ListParts m_parts;
    StationActions &m_actions;
    WatchAlarms &m_watchAlarms;
    std::deque<Removed> m_removed;
};

} // namespace ktr
