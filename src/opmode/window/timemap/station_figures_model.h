#pragma once

#include "opmode/timemap/time_map.h"

#include <QAbstractTableModel>

namespace ktr {

/// Stations that had alarms, or were not heard, in a time, in the order of the answer.
class StationFiguresModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Station, Amount, Now }; ///< how it is now is told of silence alone

    using QAbstractTableModel::QAbstractTableModel;

    /// `lengthMs`: of the time.
    void show(TimeMapTopic topic, const QList<StationFigures> &stations, qint64 lengthMs);
    const StationFigures &station(int row) const { return m_stations.at(row); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString amountText(const StationFigures &station) const;
    static QString nowText(const StationFigures &station);

    TimeMapTopic m_topic = TimeMapTopic::Alarms;
    QList<StationFigures> m_stations;
    qint64 m_length = 0;
};

} // namespace ktr
