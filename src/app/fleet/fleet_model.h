#pragma once

#include "transmissions/fleet_list.h"
#include "transmissions/fleet_look.h"
#include "transmissions/fleet_results.h"

#include <QAbstractTableModel>

#include <functional>
#include <vector>

namespace ktr {

/// A station that may be transmitted to, with all that is known of it.
struct FleetRow
{
    enum class State { Idle, Waiting, Running, Ended };

    QString key; ///< in the tree of stations
    FleetStation station{};
    bool isTicked = false;
    QString noFile{};      ///< why it has none
    FleetEntry entry{};    ///< its configuration; without a file none
    StationLook look{};    ///< of that
    bool isLooked = false; ///< the memory was asked, too
    State state = State::Idle;
    int step = 0;         ///< while it runs
    QString outcome{};    ///< in words for the user
    FleetResult result{}; ///< where it has ended, now or in a run before

    bool isUsable() const { return !entry.file.isEmpty() && entry.trouble.isEmpty(); }
    bool isIn(State wanted) const { return state == wanted; }
    bool hasFailed() const { return state == State::Ended && !result.isWhole(); }
};

/// The stations that the window shows, a row each. Column 0 has a box to tick.
class FleetModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { StationColumn, AddressColumn, FileColumn, PlanColumn, OutcomeColumn, ColumnCount };

    explicit FleetModel(std::vector<FleetRow> rows, QObject *parent = nullptr);

    const std::vector<FleetRow> &rows() const { return m_rows; }
    const FleetRow &at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    /// Changes a row and shows it anew.
    void change(int row, const std::function<void(FleetRow &)> &change);
    /// Whether plans tell what changes only would send.
    void setChangesOnly(bool changesOnly);
    void tick(const QList<int> &rows, bool on);
    /// The rows that are ticked and that `wanted` is true for.
    QList<int> ticked(const std::function<bool(const FleetRow &)> &wanted = {}) const;
    /// Shows all texts anew.
    void refresh();

    /// While stations are transmitted to, nothing is ticked.
    void setLocked(bool isLocked) { m_isLocked = isLocked; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    void ticksChanged();

private:
    QString textOf(const FleetRow &row, int column) const;
    QString planOf(const FleetRow &row) const;
    QString outcomeOf(const FleetRow &row) const;
    QVariant colourOf(const FleetRow &row, int column) const;

    std::vector<FleetRow> m_rows;
    bool m_changesOnly = true;
    bool m_isLocked = false;
};

} // namespace ktr
