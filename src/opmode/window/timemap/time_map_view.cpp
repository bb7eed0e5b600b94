#include "opmode/window/timemap/time_map_view.h"

#include "look/palettes.h"
#include "opmode/window/timemap/time_map_look.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

constexpr double narrowestDay = 2;
constexpr double lowestHour = 10;
constexpr double gapFrom = 6; ///< cells of this size on have lines between them
constexpr int mapMargin = 6;
constexpr int daysOfMonth = 31;

} // namespace

TimeMapView::TimeMapView(QWidget *parent) : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("TimeMap"));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    constexpr QSize least(260, 200);
    setMinimumSize(least);
}

void TimeMapView::setMap(Map map)
{
    const auto [from, to] = chosenHours();
    const bool isOther = map.grid.first() != m_map.grid.first() || map.grid.days() != m_map.grid.days();
    m_map = std::move(map);
    m_cursor = -1;
    m_anchor = -1;
    arrange();
    if (from != 0) {
        choose(from, to);
    }
    if (m_cursor < 0 && m_map.grid.count() > 0) {
        const int last = lastKnown();
        m_cursor = std::max(0, last);
        m_anchor = m_cursor;
    }
    if (isOther && m_cursor >= 0) {
        bringIntoView(m_cursor);
    }
    viewport()->update();
    Q_EMIT chosenChanged();
}

/// The hour that it is now, or the last one; -1 where all are later.
int TimeMapView::lastKnown() const
{
    const HourGrid &grid = m_map.grid;
    return m_map.now >= grid.to() ? grid.count() - 1 : grid.placeOf(m_map.now);
}

void TimeMapView::choose(qint64 from, qint64 to)
{
    const HourGrid &grid = m_map.grid;
    if (grid.count() == 0 || to <= grid.from() || from >= grid.to()) {
        return;
    }
    m_anchor = grid.placeOf(std::max(from, grid.from()));
    m_cursor = grid.placeOf(std::min(to, grid.to()) - 1);
    announce();
}

std::pair<qint64, qint64> TimeMapView::chosen() const
{
    const auto [from, to] = chosenHours();
    return {from, std::max(from, std::min(to, m_map.now))};
}

/// Also of those that are still to come.
std::pair<qint64, qint64> TimeMapView::chosenHours() const
{
    if (m_cursor < 0) {
        return {0, 0};
    }
    const auto [first, last] = std::minmax(m_cursor, m_anchor);
    return {m_map.grid.hour(first).from, m_map.grid.hour(last).to};
}

HourFigures TimeMapView::chosenFigures() const
{
    HourFigures all;
    if (m_cursor < 0 || m_map.hours.empty()) {
        return all;
    }
    const auto [first, last] = std::minmax(m_cursor, m_anchor);
    for (int place = first; place <= last; ++place) {
        const HourFigures &hour = m_map.hours[static_cast<std::size_t>(place)];
        all.alarms += hour.alarms;
        all.priority = all.priority == 0    ? hour.priority
                       : hour.priority == 0 ? all.priority
                                            : std::min(all.priority, hour.priority);
        all.stations = std::max(all.stations, hour.stations);
        all.unheardMs += hour.unheardMs;
        all.unknownMs += hour.unknownMs;
    }
    return all;
}

// Where hours are

void TimeMapView::arrange()
{
    const QFontMetrics metrics = fontMetrics();
    m_left = metrics.horizontalAdvance(QStringLiteral("00")) + 2 * mapMargin;
    m_top = metrics.height() + mapMargin;
    const double days = std::max(1, m_map.grid.days());
    const QSize room = viewport()->size();
    m_width = std::max(narrowestDay, (room.width() - m_left - 1) / days);
    m_height = std::max(lowestHour, (room.height() - m_top - 1) / double{HourGrid::rows});
    const auto setBar = [](QScrollBar *bar, double wanted, int there) {
        bar->setPageStep(there);
        bar->setRange(0, std::max(0, static_cast<int>(std::ceil(wanted)) - there));
    };
    setBar(horizontalScrollBar(), m_left + m_width * days, room.width());
    setBar(verticalScrollBar(), m_top + m_height * HourGrid::rows, room.height());
    constexpr int step = 20;
    horizontalScrollBar()->setSingleStep(step);
    verticalScrollBar()->setSingleStep(step);
}

/// An hour that is there twice is two halves, side by side.
QRectF TimeMapView::rectOf(int place) const
{
    const HourOfDay &hour = m_map.grid.hour(place);
    const double left = m_left + hour.day * m_width - horizontalScrollBar()->value();
    const double top = m_top + hour.hour * m_height - verticalScrollBar()->value();
    const double right = left + m_width;
    const QRectF whole(QPointF(std::round(left), std::round(top)),
                       QPointF(std::round(right), std::round(top + m_height)));
    if (!m_map.grid.isTwice(place)) {
        return whole;
    }
    const double half = std::round(whole.width() / 2);
    return hour.part == 0 ? whole.adjusted(0, 0, -(whole.width() - half), 0) : whole.adjusted(half, 0, 0, 0);
}

int TimeMapView::placeAt(const QPoint &point) const
{
    const double x = point.x() + horizontalScrollBar()->value() - m_left;
    const double y = point.y() + verticalScrollBar()->value() - m_top;
    if (x < 0 || y < 0 || m_width == 0 || point.x() < m_left || point.y() < m_top) {
        return -1;
    }
    const int place = m_map.grid.placeOf(static_cast<int>(x / m_width), static_cast<int>(y / m_height));
    const bool isSecond = place >= 0 && m_map.grid.isTwice(place) && !rectOf(place).contains(point);
    return isSecond ? place + 1 : place;
}

// Choosing

void TimeMapView::moveTo(int place, bool extends)
{
    if (place < 0 || place >= m_map.grid.count()) {
        return;
    }
    m_cursor = place;
    m_anchor = extends && m_anchor >= 0 ? m_anchor : place;
    bringIntoView(place);
    announce();
}

void TimeMapView::bringIntoView(int place)
{
    const QRectF where = rectOf(place);
    QScrollBar &across = *horizontalScrollBar();
    if (where.left() < m_left) {
        across.setValue(across.value() - static_cast<int>(m_left - where.left()));
    } else if (where.right() > viewport()->width()) {
        across.setValue(across.value() + static_cast<int>(where.right()) - viewport()->width());
    }
    QScrollBar &down = *verticalScrollBar();
    if (where.top() < m_top) {
        down.setValue(down.value() - static_cast<int>(m_top - where.top()));
    } else if (where.bottom() > viewport()->height()) {
        down.setValue(down.value() + static_cast<int>(where.bottom()) - viewport()->height());
    }
}

void TimeMapView::announce()
{
    setAccessibleDescription(m_cursor < 0 ? QString() : toolTipOf(m_cursor));
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
    viewport()->update();
    Q_EMIT chosenChanged();
}

/// The first hour of its row, or the last.
int TimeMapView::columnEnd(int direction) const
{
    const HourGrid &grid = m_map.grid;
    const int hour = grid.hour(m_cursor).hour;
    int day = direction < 0 ? 0 : grid.days() - 1;
    while (grid.placeOf(day, hour) < 0) {
        day -= direction;
    }
    return grid.placeOf(day, hour);
}

/// Where a key leads to; -1: nowhere.
int TimeMapView::moved(int key, bool isControl) const
{
    const HourGrid &grid = m_map.grid;
    const auto toDay = [&](int step) { // a day without the hour is passed over
        const HourOfDay &hour = grid.hour(m_cursor);
        int day = hour.day + step;
        while (day >= 0 && day < grid.days() && grid.placeOf(day, hour.hour) < 0) {
            day += step;
        }
        return grid.placeOf(day, hour.hour);
    };
    switch (key) {
    case Qt::Key_Left:
        return toDay(-1);
    case Qt::Key_Right:
        return toDay(1);
    case Qt::Key_Up:
        return m_cursor - 1;
    case Qt::Key_Down:
        return m_cursor + 1;
    case Qt::Key_Home:
        return isControl ? 0 : columnEnd(-1);
    case Qt::Key_End:
        return isControl ? grid.count() - 1 : columnEnd(1);
    default:
        return -1;
    }
}

void TimeMapView::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isEnter && m_cursor >= 0) {
        Q_EMIT wanted();
    } else if (key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
        Q_EMIT stepWanted(key == Qt::Key_PageUp ? -1 : 1);
    } else if (QList<int>{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End}
                   .contains(key) &&
               m_cursor >= 0) {
        moveTo(moved(key, event->modifiers().testFlag(Qt::ControlModifier)),
               event->modifiers().testFlag(Qt::ShiftModifier));
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void TimeMapView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        moveTo(placeAt(event->position().toPoint()), event->modifiers().testFlag(Qt::ShiftModifier));
    }
}

void TimeMapView::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton)) {
        const int place = placeAt(event->position().toPoint());
        if (place != m_cursor) {
            moveTo(place, true);
        }
    }
}

void TimeMapView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool isOne = m_cursor == m_anchor && placeAt(event->position().toPoint()) == m_cursor;
    if (event->button() == Qt::LeftButton && isOne && m_cursor >= 0) {
        Q_EMIT clicked();
    }
}

void TimeMapView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const int place = placeAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && place >= 0) {
        moveTo(place, false);
        Q_EMIT wanted();
    }
}

QString TimeMapView::toolTipOf(int place) const
{
    const HourOfDay &hour = m_map.grid.hour(place);
    const QString times = timesText(hour.from, hour.to, locale());
    const QString which = !m_map.grid.isTwice(place) ? QString()
                          : hour.part == 0           ? tr(" (before the clocks are set back)")
                                                     : tr(" (after the clocks were set back)");
    const QString figures = hour.from > m_map.now ? tr("is still to come")
                            : m_map.hours.empty()
                                ? tr("is being read")
                                : figuresText(m_map.topic, m_map.hours[static_cast<std::size_t>(place)],
                                              m_map.stations, locale());
    return times + which + QStringLiteral(": ") + figures;
}

bool TimeMapView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto &help = static_cast<const QHelpEvent &>(*event);
        const int place = placeAt(help.pos());
        const QString text = place < 0 ? QString() : toolTipOf(place);
        QToolTip::showText(help.globalPos(), text, viewport(),
                           place < 0 ? QRect() : rectOf(place).toAlignedRect());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void TimeMapView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    arrange();
}

void TimeMapView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LocaleChange) {
        arrange();
    }
}

// Painting

void TimeMapView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Window));
    if (m_map.grid.count() == 0) {
        return;
    }
    painter.save();
    painter.setClipRect(QRect(m_left, m_top, viewport()->width(), viewport()->height()));
    paintHours(painter);
    paintChosen(painter);
    painter.restore();
    paintCaptions(painter);
}

void TimeMapView::paintHours(QPainter &painter) const
{
    QFont small = font();
    constexpr double smaller = 0.85;
    small.setPixelSize(static_cast<int>(QFontInfo(small).pixelSize() * smaller));
    painter.setFont(small);
    for (int place = 0; place < m_map.grid.count(); ++place) {
        const QRectF where = rectOf(place);
        if (where.right() >= m_left && where.left() <= viewport()->width()) {
            paintHour(painter, place);
        }
    }
}

void TimeMapView::paintHour(QPainter &painter, int place) const
{
    const HourOfDay &hour = m_map.grid.hour(place);
    QRectF where = rectOf(place);
    where.adjust(0, 0, where.width() >= gapFrom ? -1 : 0, where.height() >= gapFrom ? -1 : 0);
    const bool isKnown = hour.from <= m_map.now && !m_map.hours.empty();
    if (!isKnown) { // still to come, or being read
        painter.fillRect(where, veil(palette()));
        return;
    }
    const HourFigures &figures = m_map.hours[static_cast<std::size_t>(place)];
    const qint64 length = std::min(hour.to, m_map.now) - hour.from;
    const int step = stepOf(m_map.topic, figures, length, m_map.stations);
    const QColor ground = hourColour(palette(), m_map.topic, figures.priority, step);
    painter.fillRect(where, ground);
    if (figures.unknownMs > 0) {
        painter.fillRect(where, unknownBrush(palette()));
    }
    const QString number = hourNumber(m_map.topic, figures, m_map.stations);
    const QFontMetrics metrics = painter.fontMetrics();
    if (!number.isEmpty() && metrics.horizontalAdvance(number) + 2 <= where.width() &&
        metrics.ascent() <= where.height()) {
        if (figures.unknownMs > 0) { // no lines behind digits
            const QSizeF room(metrics.horizontalAdvance(number) + 2,
                              std::min(where.height(), double(metrics.height())));
            QRectF plain({0, 0}, room);
            plain.moveCenter(where.center());
            painter.fillRect(plain, ground);
        }
        painter.setPen(textOn(ground));
        painter.drawText(where, Qt::AlignCenter, number);
    }
}

void TimeMapView::paintCaptions(QPainter &painter) const
{
    painter.setFont(font());
    const QFontMetrics metrics = fontMetrics();
    painter.setPen(palette().color(QPalette::WindowText));
    const int everyHour = static_cast<int>(std::ceil(metrics.height() / m_height));
    for (int hour = 0; hour < HourGrid::rows; hour += everyHour) {
        const double top = m_top + hour * m_height - verticalScrollBar()->value();
        if (top >= m_top - 1) {
            painter.drawText(QRectF(0, top, m_left - mapMargin, m_height), Qt::AlignRight | Qt::AlignVCenter,
                             QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')));
        }
    }
    const bool isMonth = m_map.grid.days() <= daysOfMonth;
    double free = m_left; // behind the last caption
    for (int day = 0; day < m_map.grid.days(); ++day) {
        const QDate date = m_map.grid.first().addDays(day);
        const double left = m_left + day * m_width - horizontalScrollBar()->value();
        if (!isMonth && date.day() != 1) {
            continue;
        }
        const bool isWide = isMonth && m_width > metrics.horizontalAdvance(QStringLiteral("Wed 30"));
        const QString text = !isMonth ? locale().standaloneMonthName(date.month(), QLocale::ShortFormat)
                             : isWide ? locale().dayName(date.dayOfWeek(), QLocale::ShortFormat) + u' ' +
                                            QString::number(date.day())
                                      : QString::number(date.day());
        const double width = metrics.horizontalAdvance(text);
        const double at = isMonth ? left + (m_width - width) / 2 : left;
        if (at >= free) {
            constexpr int saturday = 6;
            painter.setPen(isMonth && date.dayOfWeek() >= saturday ? accent(palette())
                                                                   : palette().color(QPalette::WindowText));
            painter.drawText(QPointF(at, m_top - mapMargin / 2.0 - metrics.descent()), text);
            free = at + width + 2;
        }
        if (!isMonth) {
            painter.setPen(hairline(palette()));
            painter.drawLine(QPointF(left, m_top - mapMargin), QPointF(left, m_top));
        }
    }
}

/// A frame around each day's part of what is chosen, and a stronger one around the hour that keys move.
void TimeMapView::paintChosen(QPainter &painter) const
{
    if (m_cursor < 0) {
        return;
    }
    const QColor colour = hasFocus() ? accent(palette()) : palette().color(QPalette::Text);
    const auto [first, last] = std::minmax(m_cursor, m_anchor);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1));
    for (int place = first; place <= last && first != last; ++place) {
        QRectF part = rectOf(place);
        while (place < last && m_map.grid.hour(place + 1).day == m_map.grid.hour(place).day) {
            part = part.united(rectOf(++place));
        }
        painter.drawRect(part.adjusted(-0.5, -0.5, -0.5, -0.5));
    }
    painter.setPen(QPen(colour, 2));
    painter.drawRect(rectOf(m_cursor).adjusted(0, 0, -1, -1));
}

} // namespace ktr
