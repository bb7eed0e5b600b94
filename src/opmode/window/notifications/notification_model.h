#pragma once

#include "opmode/window/notifications/notification_cells.h"
#include "opmode/window/notifications/notification_changes.h"

#include <QAbstractTableModel>

#include <functional>
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
    using enum NotificationCells::Column;

    NotificationModel(const StationTree &tree, Timers &timers, const QLocale &locale,
                      QObject *parent = nullptr);

    void choose(const NotificationChoice &choice);
    const NotificationChoice &choice() const { return m_choice; }
    /// Takes over what changed in the tree now.
    void update();
    /// The same, but for what moves rows while they are to stay in place: that waits until they need not.
    void updateInPlace();
    /// When rows are to stay in place. What a row tells is up to date meanwhile, too.
    void setHold(std::function<bool()> isHeld) { m_isHeld = std::move(isHeld); }

    /// The node of a row in the tree.
    QModelIndex entry(int row) const;
    /// The row of a notification, -1 when it is not listed.
    int rowOf(const QModelIndex &entry) const;
    /// Those that are listed and not acknowledged.
    QModelIndexList unacknowledged() const;
    int unacknowledgedCount() const;
    bool isUnacknowledged(int row) const;

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

    void fill();
    void reset();
    void showStationsAnew();
    bool updateListed(QSet<Id> &noted);
    void showAnew();
    bool dropRows(const std::vector<bool> &gone);
    Rows sortedAgain(const Rows &rows) const;
    void reorder(const Rows &before, Rows sorted);
    void insertNew(Rows rows);

    const StationTree &m_tree;
    NotificationCells m_cells;
    NotificationChanges *m_changes;
    NotificationChoice m_choice;
    std::function<bool()> m_isHeld = [] { return false; };
    bool m_newestFirst = true;
    Rows m_rows;
};

} // namespace ktr
