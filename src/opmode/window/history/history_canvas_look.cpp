#include "look/palettes.h"
#include "opmode/window/history/history_canvas.h"
#include "opmode/window/history/series_style.h"

namespace ktr {

void HistoryPlot::Canvas::colour(int channel, Curve &curve)
{
    const QColor colour = seriesColour(channel, palette());
    QPen pen(colour, 1.6, curve.isSteps ? Qt::SolidLine : seriesLine(channel));
    pen.setJoinStyle(Qt::RoundJoin);
    curve.graph->setPen(pen);
    QColor fill = colour;
    fill.setAlpha(45);
    curve.graph->setBrush(curve.isSteps ? QBrush(fill) : QBrush(Qt::NoBrush));
    curve.graph->setScatterStyle(curve.isSteps
                                     ? QCPScatterStyle(QCPScatterStyle::ssNone)
                                     : QCPScatterStyle(seriesMark(channel), QPen(colour, 1.5), colour, 6));
}

void HistoryPlot::Canvas::takeColours()
{
    const QColor text = palette().color(QPalette::WindowText);
    setBackground(cardColour(palette()));
    for (QCPAxisRect *rect : {m_values, m_lanes}) {
        for (const QCPAxis::AxisType side : {QCPAxis::atBottom, QCPAxis::atLeft, QCPAxis::atRight}) {
            QCPAxis *axis = rect->axis(side);
            axis->setBasePen(QPen(fieldBorder(palette())));
            axis->setTickPen(QPen(fieldBorder(palette())));
            axis->setSubTickPen(QPen(hairline(palette())));
            axis->setTickLabelColor(text);
            axis->setLabelColor(palette().color(QPalette::PlaceholderText));
            axis->setTickLabelFont(font());
            axis->setLabelFont(font());
            axis->grid()->setPen(QPen(hairline(palette())));
            axis->grid()->setZeroLinePen(QPen(hairline(palette())));
        }
    }
    for (QCPItemStraightLine *cursor : {m_cursorInValues, m_cursorInLanes}) {
        cursor->setPen(QPen(accent(palette()), 1, Qt::DashLine));
    }
    m_mark->setBrush(cardColour(palette()));
    for (auto &[channel, curve] : m_curves) {
        colour(channel, curve);
    }
    redraw();
}

} // namespace ktr
