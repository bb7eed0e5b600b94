#include "opmode/window/history/series_style.h"

#include "config/channels.h"
#include "look/palettes.h"

#include <QPainter>

namespace ktr {

namespace {

constexpr int colourCount = 6;

// At least 3 : 1 against the card that curves are drawn on.
constexpr std::array<QRgb, colourCount> onLight = {0xff0072b2, 0xffc8500a, 0xff00805e,
                                                   0xffb0438c, 0xff8a6d00, 0xff3b474f};
constexpr std::array<QRgb, colourCount> onDark = {0xff56b4e9, 0xffff9a52, 0xff2cc295,
                                                  0xffe593c6, 0xffecd36a, 0xffdfe5e9};

/// Which of the colours, and which kind of line.
struct Look
{
    int colour;
    int line;
};

/// Curves that are often drawn together differ in colour.
constexpr std::array<Look, channelCount> looks = {{{0, 1},
                                                   {2, 1},
                                                   {1, 2},
                                                   {3, 2},
                                                   {4, 2},
                                                   {5, 2},
                                                   {0, 2},
                                                   {2, 2},
                                                   {0, 0},
                                                   {1, 0},
                                                   {4, 0},
                                                   {5, 0},
                                                   {4, 1},
                                                   {5, 1},
                                                   {3, 1},
                                                   {1, 1},
                                                   {2, 0},
                                                   {3, 0}}};

const Look &look(int channel)
{
    return looks[static_cast<std::size_t>(qBound(1, channel, channelCount) - 1)];
}

} // namespace

QColor seriesColour(int channel, const QPalette &palette)
{
    return QColor((isDark(palette) ? onDark : onLight)[static_cast<std::size_t>(look(channel).colour)]);
}

Qt::PenStyle seriesLine(int channel)
{
    constexpr std::array lines = {Qt::SolidLine, Qt::DashLine, Qt::DotLine};
    return lines[static_cast<std::size_t>(look(channel).line)];
}

QPainterPath seriesMark(int channel)
{
    constexpr double wide = 3.9;
    QPainterPath path;
    switch ((look(channel).colour + 2 * look(channel).line) % colourCount) {
    case 0:
        path.addEllipse(QPointF(), 3, 3);
        break;
    case 1:
        path.addRect(-3, -3, 6, 6);
        break;
    case 2:
        path.addPolygon(QPolygonF({{0, -wide}, {wide, 0}, {0, wide}, {-wide, 0}, {0, -wide}}));
        break;
    case 3:
        path.addPolygon(QPolygonF({{0, -wide}, {wide, 3}, {-wide, 3}, {0, -wide}}));
        break;
    case 4:
        path.moveTo(-3, -3);
        path.lineTo(3, 3);
        path.moveTo(3, -3);
        path.lineTo(-3, 3);
        break;
    default:
        path.moveTo(-wide, 0);
        path.lineTo(wide, 0);
        path.moveTo(0, -wide);
        path.lineTo(0, wide);
        break;
    }
    return path;
}

void drawSeriesSample(QPainter &painter, const QRectF &rect, int channel, bool isSteps,
                      const QPalette &palette)
{
    const QColor colour = seriesColour(channel, palette);
    const QPointF middle = rect.center();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isSteps) {
        constexpr double height = 9;
        const double low = middle.y() + height / 2;
        const double third = rect.width() / 3;
        painter.setPen(QPen(colour, 1.6));
        QPainterPath steps(QPointF(rect.left(), low));
        steps.lineTo(rect.left() + third, low);
        steps.lineTo(rect.left() + third, low - height);
        steps.lineTo(rect.right() - third, low - height);
        steps.lineTo(rect.right() - third, low);
        steps.lineTo(rect.right(), low);
        painter.drawPath(steps);
    } else {
        painter.setPen(QPen(colour, 2, seriesLine(channel), Qt::FlatCap));
        painter.drawLine(QPointF(rect.left(), middle.y()), QPointF(rect.right(), middle.y()));
        painter.setPen(QPen(colour, 1.5));
        painter.setBrush(colour);
        painter.drawPath(seriesMark(channel).translated(middle));
    }
    painter.restore();
}

QIcon seriesIcon(QSize size, qreal scale, int channel, bool isSteps, const QPalette &palette)
{
    const auto sampleOn = [&](const QBrush &ground) {
        constexpr double rounding = 3;
        QPixmap sample(size * scale);
        sample.setDevicePixelRatio(scale);
        sample.fill(Qt::transparent);
        QPainter painter(&sample);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(QPointF(), QSizeF(size)), rounding, rounding);
        drawSeriesSample(painter, QRectF(QPointF(), QSizeF(size)), channel, isSteps, palette);
        return sample;
    };
    QIcon icon(sampleOn(Qt::NoBrush));
    icon.addPixmap(sampleOn(palette.color(QPalette::Base)), QIcon::Selected);
    return icon;
}

} // namespace ktr
