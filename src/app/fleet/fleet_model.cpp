#include "app/fleet/fleet_model.h"

#include "link/conversation_log.h"
#include "look/palettes.h"
#include "transmissions/transmission_texts.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace ktr {

FleetModel::FleetModel(std::vector<FleetRow> rows, QObject *parent)
    : QAbstractTableModel(parent), m_rows(std::move(rows))
{}

void FleetModel::change(int row, const std::function<void(FleetRow &)> &change)
{
    change(m_rows[static_cast<std::size_t>(row)]);
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void FleetModel::setChangesOnly(bool changesOnly)
{
    m_changesOnly = changesOnly;
    refresh();
}

void FleetModel::refresh()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}

void FleetModel::tick(const QList<int> &rows, bool on)
{
    if (m_isLocked) {
        return;
    }
    for (const int row : rows) {
        change(row, [on](FleetRow &each) { each.isTicked = on; });
    }
    Q_EMIT ticksChanged();
}

QList<int> FleetModel::ticked(const std::function<bool(const FleetRow &)> &wanted) const
{
    QList<int> found;
    for (int row = 0; row < rowCount(); ++row) {
        if (at(row).isTicked && (!wanted || wanted(at(row)))) {
            found += row;
        }
    }
    return found;
}

int FleetModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int FleetModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString FleetModel::planOf(const FleetRow &row) const
{
    if (!row.isUsable()) {
        return row.entry.file.isEmpty() ? row.noFile : row.entry.trouble;
    }
    QString plan;
    if (m_changesOnly && row.look.changes) {
        plan = tr("%1 of %2 commands").arg(*row.look.changes).arg(row.look.commands);
    } else if (m_changesOnly && !row.isLooked) {
        plan = QStringLiteral("…");
    } else {
        plan = m_changesOnly ? tr("all %1 commands: nothing is proved").arg(row.look.commands)
                             : tr("all %1 commands").arg(row.look.commands);
    }
    if (row.entry.station != row.station.name) {
        plan += tr("; identifier \"%1\"").arg(shortText(logText(row.entry.station)));
    }
    return row.look.problems == 0 ? plan : plan + tr("; problems: %1").arg(row.look.problems);
}

QString FleetModel::outcomeOf(const FleetRow &row) const
{
    switch (row.state) {
    case FleetRow::State::Waiting:
        return tr("waits");
    case FleetRow::State::Running:
        return row.step == 0 ? tr("begins") : tr("step %1 of %2").arg(row.step).arg(steps::last);
    case FleetRow::State::Ended:
        return row.outcome;
    case FleetRow::State::Idle:
        break;
    }
    return {};
}

QString FleetModel::textOf(const FleetRow &row, int column) const
{
    switch (column) {
    case StationColumn:
        return row.station.name;
    case AddressColumn:
        return row.station.address;
    case FileColumn:
        return QFileInfo(row.entry.file).fileName();
    case PlanColumn:
        return planOf(row);
    default:
        return outcomeOf(row);
    }
}

QVariant FleetModel::colourOf(const FleetRow &row, int column) const
{
    const QPalette palette = QGuiApplication::palette();
    if (column == PlanColumn && !row.isUsable()) {
        return row.isTicked ? alarmText(palette) : palette.color(QPalette::Disabled, QPalette::Text);
    }
    if (column == PlanColumn && (row.look.problems > 0 || row.entry.station != row.station.name)) {
        return doubtText(palette);
    }
    if (column == OutcomeColumn && row.isIn(FleetRow::State::Ended)) {
        return row.result.isWhole() ? wellText(palette) : alarmText(palette);
    }
    return {};
}

QVariant FleetModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const FleetRow &row = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(row, index.column());
    case Qt::ToolTipRole:
        return index.column() == FileColumn ? row.entry.file : textOf(row, index.column());
    case Qt::CheckStateRole:
        return index.column() == StationColumn ? QVariant(row.isTicked ? Qt::Checked : Qt::Unchecked)
                                               : QVariant();
    case Qt::ForegroundRole:
        return colourOf(row, index.column());
    default:
        return {};
    }
}

bool FleetModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != StationColumn || m_isLocked) {
        return false;
    }
    tick({index.row()}, value.value<Qt::CheckState>() == Qt::Checked);
    return true;
}

Qt::ItemFlags FleetModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == StationColumn && !m_isLocked ? usual | Qt::ItemIsUserCheckable : usual;
}

QVariant FleetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
        return {};
    }
    const QStringList titles{tr("Station"), tr("Address"), tr("File"), tr("Will be sent"), tr("Outcome")};
    return titles.value(section);
}

} // namespace ktr
