#pragma once

#include "opmode/lists/station_import.h"

#include <QAbstractTableModel>

namespace ktr {

/// A list of stations as it was read, each line with what is to be said about it.
class StationListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Address, Remark, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void show(StationImport list);
    const StationImport &list() const { return m_list; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    StationImport m_list;
};

} // namespace ktr
