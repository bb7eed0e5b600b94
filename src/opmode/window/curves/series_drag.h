#pragma once

#include "opmode/curves/curve_series.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QPoint>

#include <functional>

class QAbstractItemView;
class QMouseEvent;

namespace ktr {

class StationTreeView;

/// Lets the inputs that rows of a view stand for be dragged out of it.
class SeriesDrag : public QObject
{
public:
    /// What a row stands for; empty for nothing.
    using SeriesOf = std::function<QList<SeriesId>(const QModelIndex &index)>;
    /// `dragging` is told when a drag begins and when it is over.
    SeriesDrag(QAbstractItemView &view, SeriesOf seriesOf, std::function<void(bool)> dragging = {});

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool press(const QMouseEvent &mouse);
    void drag();

    QAbstractItemView &m_view;
    SeriesOf m_seriesOf;
    std::function<void(bool)> m_dragging;
    QPoint m_pressedAt;
    QList<SeriesId> m_pressed;
    QPersistentModelIndex m_held; ///< pressed among several that are chosen
};

/// The inputs that a node of the tree of stations stands for: itself, or the usual ones of its station.
QList<SeriesId> seriesOfNode(const OperationalMode &mode, const QModelIndex &node);
/// Those of the stations that are chosen in the tree, or of its current node.
QList<SeriesId> seriesOfChosen(const OperationalMode &mode, const StationTreeView &tree);

} // namespace ktr
