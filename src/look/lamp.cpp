#include "look/lamp.h"

#include <QPainter>

namespace ktr {

namespace {

const QColor green(0, 192, 0);
constexpr int diameter = 14;

} // namespace

Lamp::Lamp(QWidget *parent) : QWidget(parent)
{
    setFixedSize(diameter, diameter);
}

void Lamp::show(bool lit, const QString &meaning)
{
    m_lit = lit;
    QPalette palette;
    if (lit) {
        palette.setColor(QPalette::Window, green);
    }
    setPalette(palette);
    setToolTip(meaning);
    setAccessibleName(meaning);
    update();
}

void Lamp::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setBrush(m_lit ? QBrush(palette().color(QPalette::Window)) : Qt::NoBrush);
    painter.drawEllipse(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5));
}

} // namespace ktr
