#include "opmode/window/alarm_look.h"

#include "look/palettes.h"

#include <QDateTime>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace ktr {

namespace {

class Bell : public QIconEngine
{
public:
    Bell(const QColor &colour, bool isCrossedOut) : m_colour(colour), m_isCrossedOut(isCrossedOut) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        constexpr double grid = 24;
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setOpacity(mode == QIcon::Disabled ? 0.4 : 1.0);
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / grid, side / grid);
        QPainterPath bell;
        bell.moveTo(4, 17.5);
        bell.cubicTo(6.5, 15, 6, 12.5, 6, 10);
        bell.cubicTo(6, 6.4, 8.6, 3.6, 12, 3.6);
        bell.cubicTo(15.4, 3.6, 18, 6.4, 18, 10);
        bell.cubicTo(18, 12.5, 17.5, 15, 20, 17.5);
        bell.closeSubpath();
        painter->setPen(QPen(m_colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(m_isCrossedOut ? QBrush(Qt::NoBrush) : QBrush(m_colour));
        painter->drawPath(bell);
        QPainterPath clapper;
        clapper.moveTo(9.7, 20.3);
        clapper.quadTo(12, 22.6, 14.3, 20.3);
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(clapper);
        if (m_isCrossedOut) {
            painter->drawLine(QPointF(3.5, 3.5), QPointF(20.5, 20.5));
        }
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new Bell(*this); }

private:
    QColor m_colour;
    bool m_isCrossedOut;
};

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
    return QIcon(new Bell(colour, false));
}

QIcon muteIcon(const QColor &colour)
{
    return QIcon(new Bell(colour, true));
}

QString shownMoment(qint64 moment)
{
    return moment == 0
               ? QStringLiteral("—")
               : QDateTime::fromMSecsSinceEpoch(moment).toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"));
}

} // namespace ktr
