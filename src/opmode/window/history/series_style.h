#pragma once

#include <QIcon>
#include <QPainterPath>
#include <QPen>

class QPainter;
class QPalette;

namespace ktr {

/// How the curve of a channel is told from the others: six colours that stay apart for colour-blind eyes,
/// each with marks, and three kinds of line. No two of the channels 1 to 18 share all of it.
QColor seriesColour(int channel, const QPalette &palette);
Qt::PenStyle seriesLine(int channel);

/// Of six by six pixels around 0, 0.
QPainterPath seriesMark(int channel);

/// A piece of the curve as legends show it: a line with its mark, or a step.
void drawSeriesSample(QPainter &painter, const QRectF &rect, int channel, bool isSteps,
                      const QPalette &palette);
/// The same for lists; on a chosen line it stands on the ground of the others, or it could not be seen.
QIcon seriesIcon(QSize size, qreal scale, int channel, bool isSteps, const QPalette &palette);

} // namespace ktr
