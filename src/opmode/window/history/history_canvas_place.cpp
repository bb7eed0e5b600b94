#include "opmode/window/history/history_canvas.h"

// The place under the mouse, or that the keys went to.

namespace ktr {

void HistoryPlot::Canvas::pointAt(const QPointF &position)
{
    QCPAxisRect *rect =
        m_lanes->visible() && m_lanes->rect().contains(position.toPoint()) ? m_lanes : m_values;
    if (!rect->visible() || !rect->rect().contains(position.toPoint())) {
        pointAway();
        return;
    }
    constexpr double reach = 60; // pixels
    const double moment = rect->axis(QCPAxis::atBottom)->pixelToCoord(position.x());
    const double height = rect->axis(QCPAxis::atLeft)->pixelToCoord(position.y());
    Place best{0, moment, rect == m_values ? height : qQNaN()};
    double bestDistance = reach * reach;
    for (const auto &[channel, curve] : m_curves) {
        if (!curve.isShown || curve.isSteps != (rect == m_lanes) || curve.graph->data()->isEmpty()) {
            continue;
        }
        const auto points = curve.graph->data();
        auto point = points->findBegin(moment);
        for (int neighbour = 0; neighbour < 2 && point != points->constEnd(); ++neighbour, ++point) {
            const bool holds = curve.isSteps && point->key <= moment; // a step lasts until the next
            if (curve.isSteps && !holds) {
                break;
            }
            const double across = holds ? 0 : curve.graph->keyAxis()->coordToPixel(point->key) - position.x();
            const double shown = curve.isSteps ? 0.5 : point->value;
            const double up = curve.graph->valueAxis()->coordToPixel(shown) - position.y();
            const double distance = across * across + up * up;
            if (distance <= bestDistance) {
                bestDistance = distance;
                best = {channel, point->key, point->value};
            }
        }
    }
    show(best);
}

void HistoryPlot::Canvas::pointAway()
{
    show(std::nullopt);
}

void HistoryPlot::Canvas::step(int direction)
{
    const double from = m_place ? m_place->time : direction > 0 ? time().lower : time().upper;
    std::optional<Place> next;
    for (const auto &[channel, curve] : m_curves) {
        const auto points = curve.graph->data();
        if (!curve.isShown || points->isEmpty()) {
            continue;
        }
        // A whole second: times are whole, and one moment may have several values.
        auto point = points->findBegin(direction > 0 ? from + 1 : from, false);
        if (direction < 0 && point == points->constBegin()) {
            continue;
        }
        point -= direction < 0 ? 1 : 0;
        if (point != points->constEnd() &&
            (!next || (direction > 0 ? point->key < next->time : point->key > next->time))) {
            next = {channel, point->key, point->value};
        }
    }
    if (next) {
        if (!time().contains(next->time)) {
            setTime(time() + (next->time - time().center()));
        }
        show(next);
    }
}

void HistoryPlot::Canvas::show(const std::optional<Place> &place)
{
    if (!place && !m_place) {
        return;
    }
    m_place = place;
    for (QCPItemStraightLine *cursor : {m_cursorInValues, m_cursorInLanes}) {
        cursor->setVisible(place && cursor->clipAxisRect()->visible());
        if (place) {
            cursor->point1->setCoords(place->time, 0);
            cursor->point2->setCoords(place->time, 1);
        }
    }
    m_mark->setVisible(place && place->channel > 0);
    if (place && place->channel > 0) {
        QCPGraph *graph = m_curves.at(place->channel).graph;
        m_mark->setClipAxisRect(graph->keyAxis()->axisRect());
        m_mark->setGraph(nullptr); // a moment may have several values, so the place is not left to the graph
        m_mark->position->setType(QCPItemPosition::ptPlotCoords);
        m_mark->position->setAxes(graph->keyAxis(), graph->valueAxis());
        m_mark->position->setCoords(place->time, place->value);
        m_mark->setPen(QPen(graph->pen().color(), 2));
    }
    if (isVisible()) {
        layer(QStringLiteral("overlay"))->replot();
    }
    m_told();
}

} // namespace ktr
