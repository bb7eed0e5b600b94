#pragma once

#include "opmode/timemap/time_map.h"

#include <QWidget>

namespace ktr {

/// Says what the colours and signs of a map of time mean.
class TimeMapLegend : public QWidget
{
    Q_OBJECT

public:
    explicit TimeMapLegend(QWidget *parent = nullptr);

    /// `isOneStation`: the numbers are minutes, not stations.
    void show(TimeMapTopic topic, bool isOneStation);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Entry
    {
        QString text;
        QList<std::pair<int, int>> grounds; ///< priority and step; none: nobody listened
    };
    QList<Entry> entries() const;
    double widthOf(const Entry &entry) const;
    double paintEntry(QPainter &painter, const Entry &entry, QPointF at) const;

    TimeMapTopic m_topic = TimeMapTopic::Alarms;
    bool m_isOneStation = false;
};

} // namespace ktr
