#include "opmode/window/curves/drop_strip.h"

#include "look/palettes.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>

namespace ktr {

DropStrip::DropStrip(const OperationalMode &mode, std::function<void(const QList<SeriesId> &)> dropped,
                     QWidget *parent)
    : QLabel(parent), m_mode(mode), m_dropped(std::move(dropped))
{
    constexpr int height = 64;
    setObjectName(QStringLiteral("lbl_overview_curves"));
    setAcceptDrops(true);
    setAlignment(Qt::AlignCenter);
    setFixedHeight(height);
    hide();
}

void DropStrip::setDragging(bool isDragging)
{
    setText(QCoreApplication::translate("ktr::DropStrip", "Drop here to see the curves"));
    setVisible(isDragging);
}

void DropStrip::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasFormat(seriesMimeType)) {
        event->acceptProposedAction();
    }
}

void DropStrip::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    m_dropped(draggedSeries(m_mode, event->mimeData()->data(seriesMimeType)));
}

void DropStrip::paintEvent(QPaintEvent *event)
{
    constexpr double radius = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent(palette()), 2, Qt::DashLine));
    painter.setBrush(tint(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    painter.end();
    QLabel::paintEvent(event);
}

} // namespace ktr
