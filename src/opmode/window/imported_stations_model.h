#pragma once

#include "opmode/lists/station_import.h"

#include <QAbstractTableModel>

namespace ktr {

/// The stations of a list that is about to be added: each line as it was read, with a remark where something
/// is wrong with it. AddStationsDialog shows it as a preview.
class ImportedStationsModel : public QAbstractTableModel
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
