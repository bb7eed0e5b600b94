#pragma once

#include "opmode/tree/station_tree.h"
#include "platform/timers.h"

#include <QAbstractTableModel>
#include <QLocale>
#include <QSet>

#include <memory>
#include <vector>

namespace ktr {

/// Which notifications are listed.
struct NotificationChoice
{
    QString kennung;          ///< of one station; empty for none
    bool allStations = false; ///< in place of the one
    bool onlyUnacknowledged = false;
    QString filter; ///< to be found in text, number or name of the station
    bool operator==(const NotificationChoice &) const = default;
};

/// Notifications as rows, in the order of their arrival; of those whose time is not known, in the tree's
/// order. What changes in the tree is taken over together, a few times a second, and leaves choice and place
/// alone.
class NotificationModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Received, Station, Message, State, Count, Number, columns };

    static constexpr Milliseconds longestDelay{100};

    NotificationModel(const StationTree &tree, Timers &timers, const QLocale &locale,
                      QObject *parent = nullptr);
    ~NotificationModel() override;

    void choose(const NotificationChoice &choice);
    const NotificationChoice &choice() const { return m_choice; }
    /// Takes over what changed in the tree now.
    void update();

    /// The node of a row in the tree.
    QModelIndex entry(int row) const;
    /// The row of a notification, -1 when it is not listed.
    int rowOf(const QModelIndex &entry) const;
    /// Those that are listed and not acknowledged.
    QModelIndexList unacknowledged() const;
    int unacknowledgedCount() const;
    bool isUnacknowledged(int row) const;

    /// The state of one that was acknowledged at a time, in milliseconds since 1970, UTC.
    static QString acknowledgedAt(qint64 moment);

    /// The text for "not acknowledged".
    void setTexts(const QString &notAcknowledged);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order) override; ///< by `Received` only

Q_SIGNALS:
    /// Changes of the tree are about to be taken over, and have been.
    void aboutToUpdate();
    void updated();

private:
    using Id = NodeStore::Id;
    struct Row
    {
        qint64 received;
        Id id;
        auto operator<=>(const Row &) const = default;
    };
    using Rows = std::vector<Row>;

    bool isBefore(const Row &a, const Row &b) const { return m_newestFirst ? b < a : a < b; }
    std::optional<Id> station() const;
    bool isWanted(Id id) const;
    bool isInScope(Id id) const;
    Row rowFor(Id id) const;
    QString text(Id id, int column) const;
    QString stateText(Id id) const;
    std::optional<Id> idOf(const QModelIndex &entry) const;

    void fill();
    void reset();
    void takeInserted(const QModelIndex &parent, int first, int last);
    void takeChanged(const QModelIndex &from, const QModelIndex &to, const QList<int> &roles);
    void note(Id id);
    bool updateListed(QSet<Id> &noted);
    bool dropRows(const std::vector<bool> &gone);
    Rows sortedAgain(const Rows &rows) const;
    void reorder(const Rows &before, Rows sorted);
    void insertNew(Rows rows);

    const StationTree &m_tree;
    QLocale m_locale;
    QString m_notAcknowledged;
    NotificationChoice m_choice;
    bool m_newestFirst = true;
    Rows m_rows;
    QSet<Id> m_noted;          ///< new or changed since the last update
    bool m_isOldNoted = false; ///< what was there at the last update changed, or is gone
    Id m_seenEnd = 0;          ///< the end of the numbers of nodes at the last update
    std::unique_ptr<OneShotTimer> m_delay;
};

} // namespace ktr
