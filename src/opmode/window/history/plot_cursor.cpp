#include "opmode/window/history/plot_cursor.h"

#include "look/palettes.h"

namespace ktr {

PlotCursor::PlotCursor(const std::array<QCPAxisRect *, 2> &parts)
    : m_lines{new QCPItemStraightLine(parts[0]->parentPlot()),
              new QCPItemStraightLine(parts[1]->parentPlot())},
      m_ring(new QCPItemTracer(parts[0]->parentPlot()))
{
    for (std::size_t i = 0; i < parts.size(); ++i) {
        m_lines[i]->setClipAxisRect(parts[i]);
        for (QCPItemPosition *point : {m_lines[i]->point1, m_lines[i]->point2}) {
            point->setAxes(parts[i]->axis(QCPAxis::atBottom), parts[i]->axis(QCPAxis::atLeft));
            point->setAxisRect(parts[i]);
            point->setTypeX(QCPItemPosition::ptPlotCoords);
            point->setTypeY(QCPItemPosition::ptAxisRectRatio);
        }
    }
    m_ring->setStyle(QCPItemTracer::tsCircle);
    m_ring->setSize(9);
    // A moment may have several values, so the place is not left to the graph.
    m_ring->position->setType(QCPItemPosition::ptPlotCoords);
    for (QCPAbstractItem *item : std::initializer_list<QCPAbstractItem *>{m_lines[0], m_lines[1], m_ring}) {
        item->setLayer(QStringLiteral("overlay")); // drawn without the curves
        item->setSelectable(false);
        item->setVisible(false);
    }
}

void PlotCursor::show(const std::optional<PlotPlace> &place, QCPGraph *graph)
{
    m_place = place;
    for (QCPItemStraightLine *line : m_lines) {
        line->setVisible(place && line->clipAxisRect()->visible());
        if (place) {
            line->point1->setCoords(place->time, 0);
            line->point2->setCoords(place->time, 1);
        }
    }
    m_ring->setVisible(graph != nullptr);
    if (graph != nullptr) {
        m_ring->setClipAxisRect(graph->keyAxis()->axisRect());
        m_ring->position->setAxes(graph->keyAxis(), graph->valueAxis());
        m_ring->position->setCoords(place->time, place->value);
        m_ring->setPen(QPen(graph->pen().color(), 2));
    }
}

void PlotCursor::applyLook(const QPalette &palette)
{
    for (QCPItemStraightLine *line : m_lines) {
        line->setPen(QPen(accent(palette), 1, Qt::DashLine));
    }
    m_ring->setBrush(cardColour(palette));
}

} // namespace ktr
