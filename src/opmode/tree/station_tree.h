#pragma once

#include "config/channels.h"
#include "link/datagram_loss.h"
#include "opmode/station/station_messages.h"
#include "opmode/tree/node_change.h"
#include "opmode/tree/station_nodes.h"
#include "opmode/tree/stored_node.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QSet>

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

/// All watched stations: a station at top level; its notifications, history and input values under it; their
/// entries under those. The key of a node is the names from its station down, joined by "/", such as
/// "Pump 1/meldung/+49170 --> M,1 fail"; a station's `kennung` ("Pump 1") keeps naming it for the whole run
/// when the user gives it another text.
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

    static constexpr std::int32_t normalColour = StationNodes::normalColour;
    static constexpr std::int32_t alarmColour = StationNodes::alarmColour;

    explicit StationTree(const StationCaptions &captions, QObject *parent = nullptr);

    /// The captions of the present language: new stations get them, and nodes that were called in another
    /// language that is known are shown with them. What they are called stays, and so does their file.
    void setCaptions(const StationCaptions &captions);
    const StationCaptions &captions() const { return m_captions; }
    /// Those of another language, which a file may hold.
    void knowCaptions(const StationCaptions &captions);

    /// Adds a station with its 3 fixed nodes and 18 input values. Not done, giving no index, when a node has
    /// that key, the name is empty or holds "/".
    QModelIndex addStation(const QString &kennung);
    /// Removes a node with all that is under it.
    void remove(const QModelIndex &index);
    /// Takes a station out of the tree, so that putBack() can bring it back to its place with all that is
    /// under it; drop() forgets it. putBack() gives no index where its name is another station's by now.
    NodeStore::Id setAside(const QModelIndex &station);
    QModelIndex putBack(NodeStore::Id station);
    void drop(NodeStore::Id station);
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
    Outcome apply(const QString &kennung, const StationMessage &message, const QDateTime &now);

    /// Carries out an acknowledgement (acknowledgementOf()) that is on the disk. An alarm that came again
    /// meanwhile stays red.
    void carryOut(const QList<NodeChange> &acknowledgement);
    /// Red notifications of all stations.
    int alarmCount() const { return m_nodes.alarms().total(); }
    const AlarmCounts &alarms() const { return m_nodes.alarms(); }

    void setStatus(const QString &kennung, const StationStatus &status);
    QModelIndex find(const QString &key) const;

    /// The stations are rows in this order from now on; those that it has not follow behind. Empty: in the
    /// order of the list, which files have in any case.
    void arrange(const std::vector<NodeStore::Id> &stations);

    /// A file is going to be written: what renamed stations are called in it names no other in this run, or
    /// the next one could not tell them apart.
    void keepNames();
    const NodeStore &nodes() const { return m_nodes.store(); }
    /// Of each notification of which more is known than that it is there.
    const QHash<NodeStore::Id, Arrival> &arrivals() const { return m_nodes.arrivals(); }
    /// The number of an index's node, for none that of the root.
    static NodeStore::Id idOf(const QModelIndex &index);

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
    /// The user gave a station another text.
    void stationRenamed(const QString &kennung, const QString &before);

private:
    using Id = NodeStore::Id;
    friend class StationTreeLoader;

    QModelIndex indexOf(Id id) const;
    const std::vector<Id> &rowsUnder(Id parent) const;
    int stationRow(Id station) const;
    void numberStations(std::size_t from);
    void leaveOrder(Id station);
    QString shownText(Id id) const;
    bool isFreeName(const QString &name, Id except = NodeStore::root) const;
    qint64 momentOf(const QDateTime &time);
    Outcome applyNotification(Id station, const NotificationMessage &message, const QDateTime &now);
    void applyValues(Id station, const InputValuesMessage &message, const QDateTime &now);
    Outcome applyHistory(Id station, const HistoryMessage &message);
    std::optional<Id> addEntry(Id branch, std::string_view name, const QString &text, std::int32_t colour,
                               qint64 now);
    /// Counts an arrival of a notification that is there.
    void countAgain(Id id, const NodeChange &repeated);
    void setText(Id id, const QString &text);
    /// Gives true when it had another colour.
    bool setColourOf(Id id, std::int32_t colour);
    /// Takes the alarm colour from a station and its notifications node when no notification is red.
    void clearAlarmColour(Id notifications);
    void showAlarmCount(Id notifications);
    void emitAlarmCount();
    void showChanged(Id id, const QList<int> &roles);
    QVariant arrivalData(Id id, int role) const;

    StationCaptions m_captions;
    QList<StationCaptions> m_knownCaptions;
    StationNodes m_nodes;
    std::vector<Id> m_order; ///< of the stations, where it is not the list's
    std::vector<int> m_rows; ///< of them in that, by node
    QHash<Id, StationStatus> m_statuses;
    int m_emittedAlarmCount = 0;
    QSet<Id> m_renamed;                    ///< stations that were given a text since their creation
    QHash<std::string, Id> m_namesInFiles; ///< of those
    std::tuple<Qt::TimeSpec, QDate, QTime> m_lastTime;
    qint64 m_lastMoment = 0;
    bool m_isCarryingOut = false; ///< counts of alarms are shown at the end of many changes
};

} // namespace ktr

Q_DECLARE_METATYPE(ktr::StationStatus)
