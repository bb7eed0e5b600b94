#include "opmode/window/station_mark.h"

#include "look/palettes.h"

#include <QCoreApplication>
#include <QPainter>

namespace ktr {

void paintStationMark(QPainter &painter, const QRectF &where, const StationStatus &status,
                      const QPalette &palette, const std::optional<QColor> &onGround)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(where.width(), where.height());
    const QPointF centre = where.center();
    const double radius = side / 2 - 1.5;
    using Line = StationStatus::Line;
    const QColor colour = onGround                      ? *onGround
                          : status.line == Line::Alive  ? wellText(palette)
                          : status.line == Line::Silent ? doubtText(palette)
                          : status.line == Line::Connecting
                              ? palette.color(QPalette::WindowText)
                              : palette.color(QPalette::Disabled, QPalette::WindowText);
    painter.setPen(QPen(colour, status.line == Line::Offline ? 1.2 : 2));
    painter.setBrush(status.line == Line::Alive ? QBrush(colour) : Qt::NoBrush);
    painter.drawEllipse(centre, radius, radius);
    if (status.line == Line::Silent) {
        const double reach = radius * 0.7;
        painter.drawLine(centre + QPointF(-reach, reach), centre + QPointF(reach, -reach));
    } else if (status.line == Line::Connecting) {
        painter.setBrush(colour);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(centre, radius / 3, radius / 3);
    }
    painter.restore();
}

namespace {

QString lineText(StationStatus::Line line)
{
    const auto text = [](const char *source) { return QCoreApplication::translate("StationMark", source); };
    switch (line) {
    case StationStatus::Line::Offline:
        return text(QT_TRANSLATE_NOOP("StationMark", "offline"));
    case StationStatus::Line::Connecting:
        return text(QT_TRANSLATE_NOOP("StationMark", "not heard yet"));
    case StationStatus::Line::Alive:
        return text(QT_TRANSLATE_NOOP("StationMark", "alive"));
    case StationStatus::Line::Silent:
        return text(QT_TRANSLATE_NOOP("StationMark", "silent"));
    }
    return {};
}

} // namespace

QString statusText(const StationStatus &status)
{
    const QString text = lineText(status.line);
    return status.loss ? text + QLatin1String(", ") + textOf(*status.loss) : text;
}

} // namespace ktr
