#pragma once

#include "config/channels.h"
#include "opmode/tree/alarm_counts.h"
#include "opmode/tree/node_change.h"
#include "opmode/tree/node_texts.h"

#include <array>

namespace ktr {

/// When a notification arrived, how often, and when it was acknowledged.
struct Arrival
{
    qint64 received = 0;     ///< the latest time, in milliseconds since 1970, UTC; 0 when not known
    qint64 acknowledged = 0; ///< 0 when it was not, or when that is not known
    int count = 1;           ///< of the same text
    qint64 raised = 0;       ///< when it became red last; 0 for never, or when that is not known
    bool operator==(const Arrival &) const = default;
};

/// What the station tree holds, without the model that views see: the nodes, when notifications arrived, and
/// how many of them are red. Each change keeps the three in step.
class StationNodes
{
public:
    using Id = NodeStore::Id;

    static constexpr std::int32_t normalColour = -2147483640; ///< the system's colour of window texts
    static constexpr std::int32_t alarmColour = 255;          ///< red: not acknowledged

    const NodeStore &store() const { return m_store; }
    const AlarmCounts &alarms() const { return m_alarms; }
    /// Of each notification of which more is known than that it is there.
    const QHash<Id, Arrival> &arrivals() const { return m_arrivals; }

    /// The texts that the fixed nodes of new stations get.
    void setCaptions(const StationCaptions &captions);
    /// Makes room for that many nodes, whose names and texts have about that many bytes, at once.
    void reserve(std::size_t nodes, std::size_t bytes) { m_store.reserve(nodes, bytes); }

    bool hasRoomForStation(std::string_view kennung) const;
    /// Adds a station with its 3 fixed nodes and 18 input values.
    std::optional<Id> addStation(std::string_view kennung);
    /// Adds another node, in the usual colour.
    std::optional<Id> add(const NodeStore::Place &place, std::string_view text)
    {
        return m_store.add(place, text, normalColour);
    }
    /// Adds a notification that arrived at a moment in milliseconds since 1970, or with none an entry of the
    /// history.
    std::optional<Id> addEntry(Id branch, std::string_view name, std::string_view text, std::int32_t colour,
                               qint64 moment);
    /// Removes a node with all that is under it, also a station that is set aside.
    void remove(Id id);
    /// As NodeStore has it.
    void setAside(Id station);
    bool putBack(Id station);

    bool setText(Id id, std::string_view text) { return m_store.setText(id, text); }
    /// Gives false when it has that colour already.
    bool setColour(Id id, std::int32_t colour);

    void setArrival(Id notification, const Arrival &arrival) { m_arrivals.insert(notification, arrival); }
    void setAcknowledged(Id notification, qint64 moment) { m_arrivals[notification].acknowledged = moment; }
    /// Takes count and times of a change that says that the notification came again.
    void countAgain(Id notification, const NodeChange &repeated);

private:
    void forgetNotifications(Id branch);

    NodeStore m_store;
    AlarmCounts m_alarms;
    QHash<Id, Arrival> m_arrivals;
    std::string m_notificationsText;
    std::string m_historyText;
    std::string m_inputValuesText;
    std::array<std::string, channelCount> m_inputValueTexts;
};

} // namespace ktr
