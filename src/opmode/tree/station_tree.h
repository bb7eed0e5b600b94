#pragma once

#include "config/channels.h"
#include "link/udp_pair.h"
#include "opmode/station/station_messages.h"
#include "opmode/tree/node_change.h"
#include "opmode/tree/node_element.h"
#include "opmode/tree/node_store.h"
#include "opmode/tree/node_texts.h"
#include "opmode/tree/parent_cache.h"
#include "opmode/tree/saved_keys.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QSet>

#include <array>
#include <functional>
#include <optional>
#include <tuple>

namespace ktr {

/// How a station is, for the eyes.
struct StationStatus
{
    enum class Line { Offline, Connecting, Alive, Silent };
    Line line = Line::Offline;
    bool exclusive = false;
    bool pukNeeded = false;
    std::optional<DatagramLoss> loss; ///< of what the module sends
    bool operator==(const StationStatus &) const = default;
};

/// When a notification arrived, how often, and when it was acknowledged.
struct Arrival
{
    qint64 received = 0;     ///< the latest time, in milliseconds since 1970, UTC; 0 when not known
    qint64 acknowledged = 0; ///< 0 when it was not, or when that is not known
    int count = 1;           ///< of the same text
    qint64 raised = 0;       ///< when it became red last; 0 for never, or when that is not known
    bool operator==(const Arrival &) const = default;
};

/// All watched stations: a station at top level; its notifications, history and input values under it; their
/// entries under those. The key of a node is the names from its station down, joined by "/"; a station's
/// `kennung` keeps naming it for the whole run when the user gives it another text.
class StationTree : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        KeyRole = Qt::UserRole,
        KindRole,
        ColourRole,
        StatusRole,
        AlarmCountRole, ///< of a station and its notifications node: how many are red
        ReceivedRole,   ///< of a notification, as in Arrival: qint64
        CountRole,      ///< int
        AcknowledgedRole,
        RaisedRole
    };

    static constexpr std::int32_t normalColour = -2147483640; ///< the system's colour of window texts
    static constexpr std::int32_t alarmColour = 255;          ///< red: not acknowledged

    explicit StationTree(const StationCaptions &captions, QObject *parent = nullptr);

    /// The captions of the present language: new stations get them, and nodes that were called in another
    /// language that is known are shown with them. What they are called stays, and so does their file.
    void setCaptions(const StationCaptions &captions);
    /// Those of another language, which a file may hold.
    void knowCaptions(const StationCaptions &captions);

    /// Adds a station with its 3 fixed nodes and 18 input values. Not done, giving no index, when a node has
    /// that key, the name is empty or holds "/".
    QModelIndex addStation(const QString &kennung);
    /// Removes a node with all that is under it.
    void remove(const QModelIndex &index);
    /// The base name, or the first of "base (1)", "base (2)", ... that no station has as key or text.
    QString freeName(const QString &base) const;

    /// What a message changed.
    struct Outcome
    {
        QModelIndex entry;  ///< the last entry that it made, or the notification that came again
        bool alarm = false; ///< to be shown to the user at once
        QString unusable;   ///< what of it could not be understood
    };
    /// An identical notification is counted at the entry that is there; an alarm that was acknowledged
    /// becomes red again. An alarm colours its station and its notifications node as well.
    Outcome take(const QString &kennung, const StationMessage &message, const QDateTime &now);

    /// What acknowledging changes, without carrying it out: the red ones of these notifications, or all under
    /// a notifications node or a station, and the nodes above when none stays red.
    QList<NodeChange> acknowledgement(const QModelIndexList &entries, const QDateTime &now) const;
    /// Carries out an acknowledgement that is in the journal; the observer is not told. An alarm that came
    /// again meanwhile stays red.
    void carryOut(const QList<NodeChange> &acknowledgement);
    /// Red notifications of all stations.
    int alarmCount() const { return m_alarmCount; }

    void setStatus(const QString &kennung, const StationStatus &status);
    /// Any signed 32-bit number; a notification that loses the alarm colour is acknowledged, at a time that
    /// is not known.
    void setColour(const QModelIndex &index, std::int32_t colour);

    QModelIndex find(const QString &key) const;

    /// All nodes are going to be written as they are now, with the texts of stations as their keys.
    void beginSaving();
    /// The journal goes on from the file that was begun last.
    void endSaving() { m_savedKeys.endSaving(); }
    const SavedKeys &savedKeys() const { return m_savedKeys; }

    /// Filling the tree from a file. Nothing of it is told as a change; views see it at its end.
    void beginLoading();
    void endLoading();
    /// Takes a node of a file: a station, the text of a node that is there, or a new entry. Gives false when
    /// it has no place.
    bool load(const NodeElement &element);
    bool load(std::string_view key, std::string_view text, std::int32_t colour);
    /// Makes room for that many nodes, whose names and texts have about that many bytes, at once.
    void reserve(std::size_t nodes, std::size_t bytes) { m_nodes.reserve(nodes, bytes); }
    /// Gives a notification that was loaded its times. Gives false when there is none of this key.
    bool loadArrival(std::string_view key, const Arrival &arrival);
    /// Carries a change of an earlier run out again. Gives false when it does not fit. Of a station's
    /// attributes it tells whether there is that station.
    bool replay(const NodeChange &change);

    /// Told of each change, after it.
    void setObserver(std::function<void(const NodeChange &)> changed) { m_changed = std::move(changed); }
    const NodeStore &nodes() const { return m_nodes; }
    /// Of each notification of which more is known than that it is there.
    const QHash<NodeStore::Id, Arrival> &arrivals() const { return m_arrivals; }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    /// The text as it is to be read is the display role's, on one line; as it is kept it is the edit role's.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Gives a station another text; not an empty one, one with "/" or one that another station has.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

Q_SIGNALS:
    void alarmCountChanged();

private:
    using Id = NodeStore::Id;

    Id idOf(const QModelIndex &index) const;
    QModelIndex indexOf(Id id) const;
    QString shownText(Id id) const;
    bool isFreeName(const QString &name, Id except = NodeStore::root) const;
    std::optional<Id> addBranch(std::string_view kennung);
    qint64 momentOf(const QDateTime &time);
    Outcome takeNotification(Id station, const NotificationMessage &message, const QDateTime &now);
    void takeValues(Id station, const InputValuesMessage &message, const QDateTime &now);
    Outcome takeHistory(Id station, const HistoryMessage &message);
    std::optional<Id> addEntry(Id branch, std::string_view name, const QString &text, std::int32_t colour,
                               qint64 now);
    /// Counts an arrival of a notification that is there.
    void repeat(Id id, const NodeChange &change);
    void setText(Id id, const QString &text, qint64 now);
    /// Gives true when it had another colour.
    bool colour(Id id, std::int32_t colour);
    void colourAndTell(Id id, std::int32_t colour, qint64 now);
    /// Takes the alarm colour from a station and its notifications node when no notification is red.
    void calm(Id notifications);
    void countAlarm(Id id, int by);
    void showAlarmCount(Id notifications);
    void tellAlarmCount();
    void forget(Id id);
    void tell(NodeChange::What what, Id id, qint64 now = 0, int count = 0);
    void showChanged(Id id, const QList<int> &roles);
    QVariant arrivalData(Id id, int role) const;

    StationCaptions m_captions;
    QList<StationCaptions> m_knownCaptions;
    std::array<std::string, channelCount> m_unknownValues; ///< the texts of a new station's input values
    NodeStore m_nodes;
    QHash<Id, StationStatus> m_statuses;
    QHash<Id, int> m_alarms; ///< of a notifications node: its entries in the alarm colour
    int m_alarmCount = 0;    ///< all of them
    int m_toldAlarmCount = 0;
    QHash<Id, Arrival> m_arrivals;
    SavedKeys m_savedKeys; ///< of the stations that were given a text since their creation
    std::function<void(const NodeChange &)> m_changed;
    NodeChange m_told{}; ///< kept for the room of its texts
    std::tuple<Qt::TimeSpec, QDate, QTime> m_lastTime;
    qint64 m_lastMoment = 0;
    // While loading.
    struct Announced
    {
        const char *key = nullptr;
        NodeStore::Place place{};
    };
    std::optional<NodeStore::Place> rememberedPlace(std::string_view key) const;
    bool load(const NodeStore::Place &place, std::string_view text, std::int32_t colour);
    void forgetParents();
    ParentCache m_parents;
    std::array<Announced, nodesAhead> m_announced; ///< a ring
    std::size_t m_nextAnnounced = 0;
    bool m_loading = false;
    bool m_gathering = false; ///< counts of alarms are shown at the end of many changes
};

} // namespace ktr

Q_DECLARE_METATYPE(ktr::StationStatus)
