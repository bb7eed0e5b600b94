#include "opmode/window/history/plot_look.h"

#include "look/palettes.h"
#include "opmode/window/history/series_style.h"

namespace ktr {

void applySeriesLook(QCPGraph &graph, int channel, bool isSteps, const QPalette &palette)
{
    const QColor colour = seriesColour(channel, palette);
    QPen pen(colour, 1.6, isSteps ? Qt::SolidLine : seriesLine(channel));
    pen.setJoinStyle(Qt::RoundJoin);
    graph.setPen(pen);
    QColor fill = colour;
    fill.setAlpha(45);
    graph.setBrush(isSteps ? QBrush(fill) : QBrush(Qt::NoBrush));
    graph.setScatterStyle(isSteps ? QCPScatterStyle(QCPScatterStyle::ssNone)
                                  : QCPScatterStyle(seriesMark(channel), QPen(colour, 1.5), colour, 6));
}

void applyAxesLook(const QCPAxisRect &part, const QPalette &palette, const QFont &font)
{
    for (const QCPAxis::AxisType side : {QCPAxis::atBottom, QCPAxis::atLeft, QCPAxis::atRight}) {
        QCPAxis *axis = part.axis(side);
        axis->setBasePen(QPen(fieldBorder(palette)));
        axis->setTickPen(QPen(fieldBorder(palette)));
        axis->setSubTickPen(QPen(hairline(palette)));
        axis->setTickLabelColor(palette.color(QPalette::WindowText));
        axis->setLabelColor(palette.color(QPalette::PlaceholderText));
        axis->setTickLabelFont(font);
        axis->setLabelFont(font);
        axis->grid()->setPen(QPen(hairline(palette)));
        axis->grid()->setZeroLinePen(QPen(hairline(palette)));
    }
}

} // namespace ktr
