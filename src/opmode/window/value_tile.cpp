#include "opmode/window/value_tile.h"

#include "look/palettes.h"

#include <QPainter>
#include <QPainterPath>

namespace ktr {

namespace {

constexpr int padding = 12;
constexpr double radius = 8;
constexpr double tallestTrend = 110;

// The value's letters, in those of the window: in the smallest tile, and at most.
constexpr double large = 1.9;
constexpr double largest = 3.2;

QFont enlarged(QFont font, double factor)
{
    font.setPointSizeF(font.pointSizeF() * factor);
    return font;
}

} // namespace

ValueTile::ValueTile(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ValueTile::show(const Content &content)
{
    if (m_content == content) {
        return;
    }
    m_content = content;
    const QString value = content.value.isEmpty() ? tr("no value yet") : content.value;
    QStringList parts{content.caption + QLatin1String(": ") + value +
                      (content.unit.isEmpty() ? QString() : QString(u' ' + content.unit))};
    parts += {content.beyond, content.age, content.stale};
    parts.removeAll(QString());
    setAccessibleName(parts.join(QLatin1String(", ")));
    update();
}

QSize ValueTile::sizeHint() const
{
    return minimumSizeHint() + QSize(20, 30);
}

QSize ValueTile::minimumSizeHint() const
{
    const int line = fontMetrics().height();
    const int value = QFontMetrics(enlarged(font(), large)).height();
    return {fontMetrics().horizontalAdvance(QStringLiteral("Digital Out 1 IP18")) + 2 * padding,
            line + value + 2 * line + 2 * padding + 12};
}

void ValueTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isBeyond = !m_content.beyond.isEmpty() && m_content.stale.isEmpty();
    painter.setPen(QPen(hasFocus() ? accent(palette())
                        : isBeyond ? alarmText(palette())
                                   : hairline(palette()),
                        hasFocus() || isBeyond ? 2 : 1));
    painter.setBrush(cardColour(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);

    QRectF inner = QRectF(rect()).adjusted(padding, padding, -padding, -padding);
    const QFontMetricsF metrics(font());
    const QRectF top(inner.topLeft(), QSizeF(inner.width(), metrics.height()));
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(top, Qt::AlignRight | Qt::AlignVCenter, m_content.number);
    const double rest = top.width() - metrics.horizontalAdvance(m_content.number) - 6;
    painter.setPen(palette().color(QPalette::WindowText));
    const bool isNarrow = metrics.horizontalAdvance(m_content.caption) > rest;
    const QString &caption = isNarrow && !m_content.name.isEmpty() ? m_content.name : m_content.caption;
    painter.drawText(top, Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(caption, Qt::ElideRight, rest));

    const double factor = qBound(large, large * height() / (1.2 * minimumSizeHint().height()), largest);
    const double valueHeight = QFontMetricsF(enlarged(font(), factor)).height();
    inner.setTop(top.bottom() + 4);
    drawValue(painter, QRectF(inner.topLeft(), QSizeF(inner.width(), valueHeight)), factor);
    const double foot = metrics.height();
    drawFoot(painter, QRectF(inner.left(), inner.bottom() - foot, inner.width(), foot));
    inner.setBottom(inner.bottom() - foot - 4);
    inner.setTop(qMax(inner.top() + valueHeight + 6, inner.bottom() - tallestTrend));
    drawTrend(painter, inner);
}

void ValueTile::drawValue(QPainter &painter, const QRectF &place, double factor) const
{
    double left = place.left();
    if (m_content.mark != Content::Mark::None) {
        const double size = place.height() * 0.42;
        const QPointF centre(left + size / 2 + 1, place.center().y());
        const bool on = m_content.mark == Content::Mark::On;
        painter.setPen(QPen(on ? accent(palette()) : fieldBorder(palette()), 2));
        painter.setBrush(on ? QBrush(accent(palette())) : QBrush(Qt::NoBrush));
        painter.drawEllipse(centre, size / 2, size / 2);
        left += size + 12;
    }
    const bool none = m_content.value.isEmpty();
    const QString value = none ? QStringLiteral("\u2013") : m_content.value;
    const double unitWidth =
        m_content.unit.isEmpty() || none ? 0 : QFontMetricsF(font()).horizontalAdvance(m_content.unit) + 6;
    const double room = place.right() - left - unitWidth;
    QFont big = enlarged(font(), factor);
    big.setWeight(QFont::DemiBold);
    while (factor > 1 && QFontMetricsF(big).horizontalAdvance(value) > room) {
        factor -= 0.1;
        big = enlarged(font(), factor);
        big.setWeight(QFont::DemiBold);
    }
    const QFontMetricsF metrics(big);
    const QString shown = metrics.elidedText(value, Qt::ElideRight, room);
    const double base = place.top() + (place.height() + metrics.ascent() - metrics.descent()) / 2;
    painter.setFont(big);
    painter.setPen(none || !m_content.stale.isEmpty() ? palette().color(QPalette::PlaceholderText)
                   : m_content.beyond.isEmpty()       ? palette().color(QPalette::WindowText)
                                                      : alarmText(palette()));
    painter.drawText(QPointF(left, base), shown);
    painter.setFont(font());
    if (unitWidth > 0) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(QPointF(left + metrics.horizontalAdvance(shown) + 6, base), m_content.unit);
    }
}

/// The limits, or the one that the value is beyond; why it is of before, and its age.
void ValueTile::drawFoot(QPainter &painter, const QRectF &place) const
{
    const QFontMetricsF metrics(font());
    const QColor faint = palette().color(QPalette::PlaceholderText);
    constexpr double gap = 8;
    QString right = m_content.stale;
    right += right.isEmpty() || m_content.age.isEmpty() ? m_content.age : QString(u", " + m_content.age);
    painter.setPen(faint);
    painter.setFont(font());
    const QString shown = metrics.elidedText(right, Qt::ElideRight, place.width());
    painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, shown);
    const double room = place.width() - metrics.horizontalAdvance(shown) - gap;
    const QString &left = m_content.beyond.isEmpty() ? m_content.limits : m_content.beyond;
    if (!m_content.beyond.isEmpty() && m_content.stale.isEmpty()) {
        painter.setPen(alarmText(palette()));
    }
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(left, Qt::ElideRight, qMax(0.0, room)));
}

void ValueTile::drawTrend(QPainter &painter, const QRectF &place) const
{
    const QList<QPointF> &trend = m_content.trend;
    constexpr double least = 8;
    if (trend.size() < 2 || place.height() < least) {
        return;
    }
    const bool hasStates = m_content.mark != Content::Mark::None;
    double lowest = hasStates ? 0 : trend.front().y();
    double highest = hasStates ? 1 : lowest;
    for (const QPointF &point : trend) {
        lowest = qMin(lowest, point.y());
        highest = qMax(highest, point.y());
    }
    constexpr double end = 3; // the dot's radius
    const QRectF inner = place.adjusted(0, end, -end, -end);
    const double span = trend.back().x() - trend.front().x();
    const auto at = [&](qsizetype index) {
        const double part = span > 0 ? (trend[index].x() - trend.front().x()) / span
                                     : double(index) / double(trend.size() - 1);
        const double height = highest > lowest ? (trend[index].y() - lowest) / (highest - lowest) : 0.5;
        return QPointF(inner.left() + part * inner.width(), inner.bottom() - height * inner.height());
    };
    QPainterPath curve(at(0));
    for (qsizetype index = 1; index < trend.size(); ++index) {
        if (hasStates) { // a state holds until the next
            curve.lineTo(at(index).x(), at(index - 1).y());
        }
        curve.lineTo(at(index));
    }
    QPainterPath area = curve;
    area.lineTo(inner.right(), place.bottom());
    area.lineTo(inner.left(), place.bottom());
    const QColor ink =
        m_content.stale.isEmpty() ? accent(palette()) : palette().color(QPalette::PlaceholderText);
    QColor fill = ink;
    fill.setAlpha(26);
    painter.fillPath(area, fill);
    painter.setPen(QPen(alarmText(palette()), 1, Qt::DashLine));
    for (const double limit : m_content.lines) { // those that the curve comes near to
        if (!hasStates && limit >= lowest && limit <= highest && highest > lowest) {
            const double y = inner.bottom() - (limit - lowest) / (highest - lowest) * inner.height();
            painter.drawLine(QPointF(inner.left(), y), QPointF(inner.right(), y));
        }
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(curve);
    painter.setBrush(ink);
    painter.drawEllipse(at(trend.size() - 1), end - 1, end - 1);
}

} // namespace ktr
