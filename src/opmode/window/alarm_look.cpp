#include "opmode/window/alarm_look.h"

#include "look/icons.h"
#include "look/palettes.h"
#include "platform/time_texts.h"

#include <QPainter>
#include <QPainterPath>

namespace ktr {

namespace {

QIcon bell(const QColor &colour, bool isCrossedOut)
{
    return drawnIcon([=](QPainter &painter) {
        QPainterPath bell;
        bell.moveTo(4, 17.5);
        bell.cubicTo(6.5, 15, 6, 12.5, 6, 10);
        bell.cubicTo(6, 6.4, 8.6, 3.6, 12, 3.6);
        bell.cubicTo(15.4, 3.6, 18, 6.4, 18, 10);
        bell.cubicTo(18, 12.5, 17.5, 15, 20, 17.5);
        bell.closeSubpath();
        painter.setPen(QPen(colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(isCrossedOut ? QBrush(Qt::NoBrush) : QBrush(colour));
        painter.drawPath(bell);
        QPainterPath clapper;
        clapper.moveTo(9.7, 20.3);
        clapper.quadTo(12, 22.6, 14.3, 20.3);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(clapper);
        if (isCrossedOut) {
            painter.drawLine(QPointF(3.5, 3.5), QPointF(20.5, 20.5));
        }
    });
}

} // namespace

QPalette alarmBarPalette(const QPalette &palette)
{
    QPalette red = palette;
    red.setColor(QPalette::Window, alarmGround(palette));
    red.setColor(QPalette::Button, alarmGround(palette).darker(120));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::ButtonText, QPalette::Text, QPalette::BrightText}) {
        red.setColor(role, Qt::white);
    }
    return red;
}

QIcon alarmIcon(const QColor &colour)
{
    return bell(colour, false);
}

QIcon muteIcon(const QColor &colour)
{
    return bell(colour, true);
}

QString shownMoment(qint64 moment)
{
    return moment == 0 ? QStringLiteral("—") : wallClockText(moment);
}

} // namespace ktr
