#include "opmode/window/imported_stations_model.h"

#include "look/palettes.h"

#include <QGuiApplication>
#include <QPalette>

namespace ktr {

void ImportedStationsModel::show(StationImport list)
{
    beginResetModel();
    m_list = std::move(list);
    endResetModel();
}

int ImportedStationsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_list.lines.size());
}

int ImportedStationsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ImportedStationsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const StationImportLine &station = m_list.lines[index.row()];
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        return index.column() == Name      ? station.name
               : index.column() == Address ? station.address
                                           : station.remark;
    }
    if (role == Qt::ForegroundRole && !station.isUsable) {
        const QPalette palette = QGuiApplication::palette();
        return index.column() == Remark ? alarmText(palette)
                                        : palette.color(QPalette::Disabled, QPalette::Text);
    }
    return {};
}

QVariant ImportedStationsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole) {
        return {};
    }
    if (orientation == Qt::Vertical) {
        return m_list.lines[section].line;
    }
    return section == Name ? tr("Name") : section == Address ? tr("Address") : tr("Remark");
}

} // namespace ktr
