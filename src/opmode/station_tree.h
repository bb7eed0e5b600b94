#pragma once

#include "lang/text_table.h"
#include "opmode/node_store.h"
#include "opmode/station_messages.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QSet>

#include <functional>

namespace ktr {

/// The texts of a station's fixed nodes in the language of the program.
struct StationCaptions
{
    QString notifications;
    QString history;
    QString inputValues;
};

StationCaptions stationCaptions(const TextTable &texts);

/// The caption of an input value, channel 1 to 18; the blanks at its end align the values.
QString channelCaption(int channel);

/// A text as nodes and their file hold it, UTF-8: without what no such file can hold, which are control
/// characters and halves of characters.
std::string storedText(const QString &text);

/// How a station is, for the eyes.
struct StationStatus
{
    enum class Line { Offline, Connecting, Alive, Silent };
    Line line = Line::Offline;
    bool exclusive = false;
    bool pukNeeded = false;
    bool operator==(const StationStatus &) const = default;
};

/// A change of the tree that is to outlive a crash. Input values are none: the module reports them again.
struct NodeChange
{
    enum class What : quint8 { Added = 1, Text, Colour, Removed };
    What what;
    std::string key;
    std::string text;        ///< of Added and Text
    std::int32_t colour = 0; ///< of Added and Colour
    bool operator==(const NodeChange &) const = default;
};

/// All watched stations: a station at top level; its notifications, history and input values under it; their
/// entries under those. The key of a node is the names from its station down, joined by "/"; a station's
/// `kennung` keeps naming it for the whole run when the user gives it another text.
class StationTree : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role { KeyRole = Qt::UserRole, KindRole, ColourRole, StatusRole, AlarmCountRole };

    static constexpr std::int32_t normalColour = -2147483640; ///< the system's colour of window texts
    static constexpr std::int32_t alarmColour = 255;          ///< red: not acknowledged

    explicit StationTree(StationCaptions captions, QObject *parent = nullptr);

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
        QModelIndex entry;  ///< the last entry that it made
        bool alarm = false; ///< to be shown to the user at once
        QString unusable;   ///< what of it could not be understood
    };
    Outcome take(const QString &kennung, const StationMessage &message, const QDateTime &now);

    void setStatus(const QString &kennung, const StationStatus &status);
    /// Any signed 32-bit number; a notification that loses the alarm colour is acknowledged.
    void setColour(const QModelIndex &index, std::int32_t colour);

    QModelIndex find(const QString &key) const;

    /// Filling the tree from a file. Nothing of it is told as a change; views see it at its end.
    void beginLoading();
    void endLoading();
    /// Takes a node of a file: a station, the text of a node that is there, or a new entry. Gives false when
    /// it has no place.
    bool load(std::string_view key, std::string_view text, std::int32_t colour);
    /// Carries a change of an earlier run out again. One that does not fit is passed over.
    void replay(const NodeChange &change);

    /// Told of each change, after it.
    void setObserver(std::function<void(const NodeChange &)> changed) { m_changed = std::move(changed); }
    const NodeStore &nodes() const { return m_nodes; }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Gives a station another text; not an empty one, one with "/" or one that another station has.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

private:
    using Id = NodeStore::Id;

    Id idOf(const QModelIndex &index) const;
    QModelIndex indexOf(Id id) const;
    bool isFreeName(const QString &name, Id except = NodeStore::root) const;
    std::optional<Id> addBranch(std::string_view kennung);
    std::optional<Id> addEntry(Id branch, const MessageEntry &entry, std::int32_t colour);
    void setText(Id id, const QString &text);
    void colour(Id id, std::int32_t colour);
    void countAlarm(Id id, int by);
    void removeNode(Id id);
    void tell(NodeChange::What what, Id id);

    StationCaptions m_captions;
    NodeStore m_nodes;
    QHash<Id, StationStatus> m_statuses;
    QHash<Id, int> m_alarms; ///< of a notifications node: its entries in the alarm colour
    QSet<Id> m_renamed;      ///< stations that were given a text since their creation
    std::function<void(const NodeChange &)> m_changed;
    bool m_loading = false;
};

} // namespace ktr

Q_DECLARE_METATYPE(ktr::StationStatus)
