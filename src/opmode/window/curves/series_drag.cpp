#include "opmode/window/curves/series_drag.h"

#include "opmode/operational_mode.h"
#include "opmode/window/station_tree_view.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>

#include <algorithm>

namespace ktr {

SeriesDrag::SeriesDrag(QAbstractItemView &view, SeriesOf seriesOf, std::function<void(bool)> dragging)
    : QObject(&view), m_view(view), m_seriesOf(std::move(seriesOf)), m_dragging(std::move(dragging))
{
    view.viewport()->installEventFilter(this);
}

bool SeriesDrag::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(*static_cast<const QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        m_pressed.clear();
        if (m_held.isValid()) { // it was a click
            m_view.selectionModel()->setCurrentIndex(std::exchange(m_held, QPersistentModelIndex()),
                                                     QItemSelectionModel::ClearAndSelect);
        }
        break;
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<const QMouseEvent *>(event);
        if (m_pressed.isEmpty() || !mouse->buttons().testFlag(Qt::LeftButton)) {
            break;
        }
        if ((mouse->position().toPoint() - m_pressedAt).manhattanLength() >=
            QApplication::startDragDistance()) {
            drag();
        }
        return true; // or the view would choose what is under the mouse
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

/// Where several are chosen a press on one of them does not let go of the others: they may be dragged.
bool SeriesDrag::press(const QMouseEvent &mouse)
{
    m_pressedAt = mouse.position().toPoint();
    m_held = QModelIndex();
    const QModelIndex pressed = m_view.indexAt(m_pressedAt);
    m_pressed = mouse.button() == Qt::LeftButton ? m_seriesOf(pressed) : QList<SeriesId>();
    const QModelIndexList chosen = m_view.selectionModel()->selectedIndexes();
    if (m_pressed.isEmpty() || mouse.modifiers() != Qt::NoModifier || chosen.size() < 2 ||
        !chosen.contains(pressed)) {
        return false;
    }
    constexpr qsizetype mostDragged = mostSeries; // each has at least one curve
    m_pressed.clear();
    for (const QModelIndex &each : chosen.first(qMin(mostDragged, chosen.size()))) {
        m_pressed += m_seriesOf(each);
    }
    m_held = pressed;
    return true;
}

void SeriesDrag::drag()
{
    m_held = QModelIndex();
    auto *drag = new QDrag(&m_view); // deletes itself
    auto *data = new QMimeData;
    data->setData(seriesMimeType, seriesToDrag(m_pressed));
    drag->setMimeData(data);
    m_pressed.clear();
    if (m_dragging) {
        m_dragging(true);
    }
    drag->exec(Qt::CopyAction);
    if (m_dragging) {
        m_dragging(false);
    }
}

QList<SeriesId> seriesOfNode(const OperationalMode &mode, const QModelIndex &node)
{
    const QString kennung = StationTreeView::stationOf(node).data(StationTree::KeyRole).toString();
    if (kennung.isEmpty()) {
        return {};
    }
    if (node.data(StationTree::KindRole).value<NodeKind>() == NodeKind::InputValue) {
        const int channel = node.row() + 1; // there is one for each, in their order
        return {{kennung, channel}};
    }
    return usualSeries(mode, kennung);
}

QList<SeriesId> seriesOfChosen(const OperationalMode &mode, const StationTreeView &tree)
{
    if (tree.chosenCount() < 2) {
        return seriesOfNode(mode, tree.currentIndex());
    }
    QList<SeriesId> series;
    const QStringList chosen = tree.chosenStations();
    for (const QString &kennung : chosen) {
        series += usualSeries(mode, kennung);
    }
    return series;
}

} // namespace ktr
