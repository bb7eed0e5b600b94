#include "opmode/window/timemap/station_figures_model.h"

#include "look/outside_texts.h"
#include "opmode/window/timemap/time_map_look.h"

#include <QDateTime>

namespace ktr {

void StationFiguresModel::show(TimeMapTopic topic, const QList<StationFigures> &stations, qint64 lengthMs)
{
    beginResetModel();
    m_topic = topic;
    m_stations = stations;
    m_length = lengthMs;
    endResetModel();
}

int StationFiguresModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_stations.size());
}

int StationFiguresModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_topic == TimeMapTopic::Alarms ? Now : Now + 1;
}

QString StationFiguresModel::amountText(const StationFigures &station) const
{
    if (m_topic == TimeMapTopic::Alarms) {
        return tr("%1, %2").arg(QString::number(station.alarms), priorityName(station.priority));
    }
    const QString time = station.unheardMs >= m_length ? tr("all the time") : durationText(station.unheardMs);
    return station.isOffline ? tr("%1, offline").arg(time) : time;
}

QString StationFiguresModel::nowText(const StationFigures &station)
{
    if (station.since == 0) {
        return tr("heard");
    }
    const QDateTime since = QDateTime::fromMSecsSinceEpoch(station.since);
    const bool isToday = since.date() == QDate::currentDate();
    const QString time = since.toString(isToday ? QStringLiteral("HH:mm") : QStringLiteral("dd.MM. HH:mm"));
    return station.isOfflineNow ? tr("offline since %1").arg(time) : tr("silent since %1").arg(time);
}

QVariant StationFiguresModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) {
        return {};
    }
    const StationFigures &station = m_stations.at(index.row());
    if (index.column() == Amount) {
        return amountText(station);
    }
    if (index.column() == Now) {
        return nowText(station);
    }
    return station.station == 0 ? tr("(no station)") : shortenedLine(station.name);
}

QVariant StationFiguresModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return section == Station                ? tr("Station")
           : section == Now                  ? tr("Now")
           : m_topic == TimeMapTopic::Alarms ? tr("Alarms")
                                             : tr("Not heard");
}

} // namespace ktr
