#include "opmode/window/overview/tile_painter.h"

#include "look/palettes.h"
#include "opmode/window/quality_bars.h"
#include "opmode/window/station_mark.h"

#include <QFontInfo>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>

namespace ktr {

namespace {

constexpr double tilePadding = 0.5; // in heights of a line
/// Of a name and a state of two lines, likewise; with less its frame would lie on them.
constexpr double roomForThree = 3.6;
constexpr double halfGap = 1; // between tiles, on each side of them

QFont boldOf(QFont font)
{
    font.setBold(true);
    return font;
}

QFont smallOf(QFont font)
{
    constexpr double part = 0.85;
    if (font.pixelSize() > 0) { // of a wall
        font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * part)));
    } else {
        font.setPointSizeF(font.pointSizeF() * part);
    }
    return font;
}

/// It does not answer, or nobody watches it.
bool isUnheard(const StationGlance &glance)
{
    return glance.status.line == StationStatus::Line::Silent ||
           glance.status.line == StationStatus::Line::Offline;
}

/// How wide what is urgent at a tile's edge is: a frame, or some of the red.
double frameOf(Urgency urgency)
{
    switch (urgency) {
    case Urgency::Standing:
    case Urgency::Silent:
        return 2;
    case Urgency::HighAlarm:
    case Urgency::MediumAlarm:
    case Urgency::LowAlarm:
    case Urgency::Doubtful:
        return 1;
    default:
        return 0;
    }
}

QString exclamation(Urgency urgency)
{
    return urgency == Urgency::HighAlarm     ? QStringLiteral("!!!")
           : urgency == Urgency::MediumAlarm ? QStringLiteral("!!")
                                             : QStringLiteral("!");
}

/// A small curve; a state holds until the next one.
void paintTrend(QPainter &painter, const QRectF &where, const QList<QPointF> &trend, bool hasStates)
{
    const auto [least, most] =
        std::ranges::minmax_element(trend, {}, [](const QPointF &point) { return point.y(); });
    const double low = hasStates ? 0 : least->y();
    const double high = hasStates ? 1 : most->y();
    const double span = trend.back().x() - trend.front().x();
    QPolygonF curve;
    for (qsizetype at = 0; at < trend.size(); ++at) {
        const double part = span > 0 ? (trend[at].x() - trend.front().x()) / span
                                     : double(at) / double(std::max<qsizetype>(1, trend.size() - 1));
        const double height = high > low ? (trend[at].y() - low) / (high - low) : 0.5;
        const QPointF point(where.left() + part * where.width(), where.bottom() - height * where.height());
        if (hasStates && at > 0) {
            curve += QPointF(point.x(), curve.back().y());
        }
        curve += point;
    }
    painter.drawPolyline(curve);
}

} // namespace

std::span<const TileLevel> tileLevels()
{
    static constexpr TileLevel levels[] = {{19, 9.4}, {15, 7.6},   {13, 5.6},   {12, 3.7},
                                           {11, 2.5}, {9, 1.6},    {2.2, 2},    {1.5, 1.35},
                                           {1, 0.9},  {0.7, 0.65}, {0.5, 0.45}, {0.35, 0.32}};
    return levels;
}

TilePainter::TilePainter(const TileLevel &level, const QFont &font, const QPalette &palette)
    : m_level(level),
      m_font(font),
      m_bold(boldOf(font)),
      m_small(smallOf(font)),
      m_boldMetrics(m_bold),
      m_smallMetrics(m_small),
      m_palette(palette),
      m_line(QFontMetricsF(font).height())
{}

QColor TilePainter::ink(Urgency urgency) const
{
    return isWaiting(urgency)            ? QColor(Qt::white)
           : urgency == Urgency::Offline ? m_palette.color(QPalette::PlaceholderText)
                                         : m_palette.color(QPalette::WindowText);
}

QColor TilePainter::faintInk(Urgency urgency) const
{
    return isWaiting(urgency) ? QColor(Qt::white) : m_palette.color(QPalette::PlaceholderText);
}

void TilePainter::drawText(QPainter &painter, const QRectF &where, const QString &text, int flags) const
{
    const QFontMetricsF metrics(painter.font());
    painter.drawText(where, flags | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(text, Qt::ElideRight, where.width()));
}

void TilePainter::paintGround(QPainter &painter, const Place &place, Urgency urgency) const
{
    const QRectF tile = place.rect.adjusted(halfGap, halfGap, -halfGap, -halfGap);
    const double radius = m_level.isCell() ? 2 : 5;
    QColor ground = cardColour(m_palette);
    QPen frame(hairline(m_palette), 1);
    if (isWaiting(urgency)) {
        ground = alarmGround(m_palette);
        frame = QPen(ground, 1);
    } else if (urgency == Urgency::Standing) {
        frame = QPen(alarmText(m_palette), 2);
    } else if (urgency == Urgency::Silent || urgency == Urgency::Doubtful) {
        frame = QPen(doubtText(m_palette), urgency == Urgency::Silent ? 2 : 1);
    } else if (urgency == Urgency::Offline) {
        ground = m_palette.color(QPalette::Window);
        frame = QPen(fieldBorder(m_palette), 1, Qt::DotLine);
    }
    painter.setPen(frame);
    painter.setBrush(ground);
    const double inset = frame.widthF() / 2;
    painter.drawRoundedRect(tile.adjusted(inset, inset, -inset, -inset), radius, radius);
    if (place.isPointed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(veil(m_palette));
        painter.drawRoundedRect(tile, radius, radius);
    }
}

/// At the edge, or within a frame that tells something.
void TilePainter::paintChoice(QPainter &painter, const Place &place, double inset) const
{
    if (place.isChosen) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(accent(m_palette), m_level.isCell() ? 2 : 3));
        const double edge = 1 + inset;
        painter.drawRoundedRect(place.rect.adjusted(edge, edge, -edge, -edge), 4, 4);
    }
}

/// Gives how wide it is.
double TilePainter::paintMark(QPainter &painter, const QRectF &where, const StationGlance &glance) const
{
    const bool isRed = isWaiting(glance.urgency);
    double width = 0;
    if (glance.standing > 0) {
        const QString text = exclamation(glance.urgency);
        painter.setFont(m_bold);
        painter.setPen(isRed ? QColor(Qt::white) : alarmText(m_palette));
        painter.drawText(where, Qt::AlignVCenter | Qt::AlignLeft, text);
        width = m_boldMetrics.horizontalAdvance(text);
    }
    if (width == 0 || isUnheard(glance)) {
        const double left = width == 0 ? 0 : width + m_line / 5;
        const double side = std::min(where.height(), where.width());
        const QRectF place(where.left() + left, where.top(), side, where.height());
        paintStationMark(painter, place, glance.status, m_palette,
                         isRed ? std::optional(QColor(Qt::white)) : std::nullopt);
        width = left + side;
    }
    return width;
}

/// Tells the other one where a station is in alarm and not heard: an edge from side to side, which no colour
/// is needed for.
void TilePainter::paintCorner(QPainter &painter, const QRectF &where, const StationGlance &glance) const
{
    constexpr double part = 0.45;
    const bool isRed = isWaiting(glance.urgency) || glance.urgency == Urgency::Standing;
    const double side = part * std::min(where.width(), where.height());
    const QPointF corner = where.bottomRight();
    const QPolygonF cut{{corner, corner - QPointF(side, 0), corner - QPointF(0, side)}};
    painter.setPen(Qt::NoPen);
    painter.setBrush(!isRed                                              ? alarmText(m_palette)
                     : glance.status.line == StationStatus::Line::Silent ? doubtText(m_palette)
                                                                         : m_palette.color(QPalette::Window));
    painter.drawPolygon(cut);
    painter.setPen(
        QPen(isWaiting(glance.urgency) ? QColor(Qt::white) : m_palette.color(QPalette::WindowText), 1));
    painter.drawLine(cut[1], cut[2]);
}

void TilePainter::paintHead(QPainter &painter, QRectF where, const StationGlance &glance) const
{
    where.setLeft(where.left() + paintMark(painter, where, glance) + m_line / 3);
    if (glance.waiting > 1) {
        const QString count = QString::number(glance.waiting);
        painter.setFont(m_bold);
        painter.setPen(ink(glance.urgency));
        painter.drawText(where, Qt::AlignRight | Qt::AlignVCenter, count);
        where.setRight(where.right() - m_boldMetrics.horizontalAdvance(count) - m_line / 3);
    }
    painter.setFont(m_bold);
    painter.setPen(ink(glance.urgency));
    // What tells stations of one town apart often stands at the end.
    painter.drawText(where, Qt::AlignVCenter | Qt::TextSingleLine,
                     m_boldMetrics.elidedText(glance.name, Qt::ElideMiddle, where.width()));
}

void TilePainter::paint(QPainter &painter, const Place &place, const StationGlance &glance,
                        const TileTexts &texts) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter, place, glance.urgency);
    const double inset = tilePadding * m_line;
    QRectF rest = place.rect.adjusted(inset, 0, -inset, 0);
    if (m_level.hasState()) {
        const bool isShort = rest.height() < roomForThree * m_line ||
                             QFontMetricsF(m_font).horizontalAdvance(texts.state) <= rest.width();
        const double free = (rest.height() - (isShort ? 2 : 3) * m_line) / 2; // beside name and state
        const double padding = m_level.hasFoot() || free <= 0 ? inset * 0.8 : free;
        rest.adjust(0, padding, 0, -padding);
    } else { // the name alone stands in the middle
        rest.adjust(0, (rest.height() - m_line) / 2, 0, 0);
    }
    const auto take = [&rest](double height) {
        const QRectF line(rest.topLeft(), QSizeF(rest.width(), height));
        rest.setTop(line.bottom());
        return line;
    };
    paintHead(painter, take(m_line), glance);
    if (m_level.hasState()) {
        painter.setFont(m_font);
        painter.setPen(glance.urgency == Urgency::Silent     ? doubtText(m_palette)
                       : glance.urgency == Urgency::Standing ? alarmText(m_palette)
                                                             : faintInk(glance.urgency));
        paintState(painter, take(m_level.hasFoot() ? m_line : rest.height()), texts.state);
    }
    if (m_level.hasFoot()) {
        painter.setPen(faintInk(glance.urgency));
        paintFoot(painter, QRectF(rest.left(), rest.bottom() - m_line, rest.width(), m_line), texts);
        rest.setBottom(rest.bottom() - m_line);
    }
    const int count = std::min(m_level.values(), static_cast<int>(texts.values.size()));
    const int lines = m_level.values() / 2;
    for (int at = 0; at < count; ++at) {
        const QSizeF size(rest.width() / 2, rest.height() / lines);
        const int row = at / 2;
        const QRectF part(rest.left() + at % 2 * size.width(), rest.top() + row * size.height(),
                          size.width() - m_line / 3, size.height());
        painter.setPen(texts.isStale ? faintInk(glance.urgency) : ink(glance.urgency));
        paintValue(painter, part, texts.values[at], texts.isStale ? Urgency::Offline : glance.urgency);
    }
    paintChoice(painter, place, isWaiting(glance.urgency) ? 0 : frameOf(glance.urgency));
    painter.restore();
}

/// Over two lines where there is room for them.
void TilePainter::paintState(QPainter &painter, const QRectF &where, const QString &state) const
{
    constexpr double twoLines = 1.9;
    constexpr double fullLines = 1.8; // what words leave free at the first one's end
    const QFontMetricsF metrics(m_font);
    if (where.height() < twoLines * m_line || metrics.horizontalAdvance(state) <= where.width()) {
        drawText(painter, QRectF(where.topLeft(), QSizeF(where.width(), m_line)), state);
    } else {
        painter.drawText(where, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                         metrics.elidedText(state, Qt::ElideRight, fullLines * where.width()));
    }
}

/// The caption, and below it the value, with its curve where there is room for that.
void TilePainter::paintValue(QPainter &painter, const QRectF &where, const TileTexts::Value &value,
                             Urgency urgency) const
{
    const QColor text = painter.pen().color();
    painter.setFont(m_small);
    const double top = where.top() + std::max(0.0, (where.height() - 2 * m_line) / 2);
    const QRectF head(where.left(), top, where.width(), m_line);
    const double age = value.age.isEmpty() ? 0 : m_smallMetrics.horizontalAdvance(value.age) + 1;
    drawText(painter, head.adjusted(0, 0, age > 0 ? -age - m_line / 3 : 0, 0), value.caption);
    if (age > 0) {
        painter.setPen(isWaiting(urgency) ? text : m_palette.color(QPalette::PlaceholderText));
        drawText(painter, head, value.age, Qt::AlignRight);
    }
    const bool isMarked = !value.mark.isEmpty();
    painter.setPen(!isMarked || isWaiting(urgency) || urgency == Urgency::Offline ? text
                                                                                  : alarmText(m_palette));
    QRectF line(where.left(), top + m_line * 0.9, where.width(), m_line);
    if (value.state) {
        const double side = m_line * 0.5;
        painter.setPen(QPen(text, 1.5));
        painter.setBrush(*value.state ? QBrush(text) : Qt::NoBrush);
        painter.drawEllipse(QRectF(line.left() + 1, line.center().y() - side / 2, side, side));
        line.setLeft(line.left() + side + m_line / 3);
    }
    painter.setFont(m_bold);
    const QString number = (value.value.isEmpty() ? QStringLiteral("–") : value.value) +
                           (isMarked ? u' ' + value.mark : QString());
    const double width = std::min(m_boldMetrics.horizontalAdvance(number) + 1, line.width());
    drawText(painter, QRectF(line.topLeft(), QSizeF(width, m_line)), number);
    line.setLeft(line.left() + width + m_line / 5);
    painter.setPen(text);
    if (!value.unit.isEmpty()) {
        painter.setFont(m_small);
        const double unit = std::min(m_smallMetrics.horizontalAdvance(value.unit) + 1, line.width());
        drawText(painter, QRectF(line.topLeft(), QSizeF(unit, m_line)), value.unit);
        line.setLeft(line.left() + unit + m_line / 4);
    }
    if (value.trend.size() > 1 && line.width() > 2 * m_line) {
        painter.setPen(QPen(text, 1.2));
        paintTrend(painter, line.adjusted(0, m_line * 0.2, 0, -m_line * 0.2), value.trend,
                   value.state.has_value());
    }
}

void TilePainter::paintFoot(QPainter &painter, const QRectF &where, const TileTexts &texts) const
{
    painter.setFont(m_small);
    const QColor colour = painter.pen().color();
    double left = where.left();
    if (texts.bars) {
        const double step = m_line * 0.25;
        for (int bar = 0; bar < QualityBars::bars; ++bar) {
            const double height = m_line * 0.7 * (bar + 1) / QualityBars::bars;
            const QRectF place(left, where.bottom() - m_line * 0.15 - height, step - 1.5, height);
            painter.setPen(QPen(colour, 0.8));
            painter.setBrush(bar < *texts.bars ? QBrush(colour) : Qt::NoBrush);
            painter.drawRect(place);
            left += step;
        }
        painter.setPen(colour);
        left += m_line / 3;
    }
    drawText(painter, QRectF(left, where.top(), where.right() - left, where.height()), texts.heard,
             Qt::AlignRight);
}

/// A line over the whole width: an arrow, the name, how many stations, and how many of them are in alarm.
void TilePainter::paintHeading(QPainter &painter, const Place &place, const Heading &heading) const
{
    constexpr double leastHeight = 1.15; // in heights of a line
    constexpr double almost = 0.97;
    if (const double part = place.rect.height() / (leastHeight * m_line); part < almost) {
        QFont smaller = m_font;
        smaller.setPixelSize(std::max(1, static_cast<int>(QFontInfo(m_font).pixelSize() * part)));
        TilePainter(m_level, smaller, m_palette).paintHeading(painter, place, heading);
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (place.isPointed) {
        painter.fillRect(place.rect, veil(m_palette));
    }
    QRectF rest = place.rect.adjusted(m_line / 3, 0, -m_line / 3, 0);
    const QPointF middle(rest.left() + m_line * 0.35, rest.center().y());
    const double reach = m_line * 0.22;
    const QPolygonF right{{QPointF(-reach * 0.7, -reach), QPointF(reach, 0), QPointF(-reach * 0.7, reach)}};
    const QPolygonF down{{QPointF(-reach, -reach * 0.7), QPointF(reach, -reach * 0.7), QPointF(0, reach)}};
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_palette.color(QPalette::WindowText));
    painter.drawPolygon((heading.isFolded ? right : down).translated(middle));
    rest.setLeft(rest.left() + m_line);
    painter.setFont(m_bold);
    painter.setPen(m_palette.color(QPalette::WindowText));
    const double room = rest.width() - 3 * m_line -
                        m_boldMetrics.horizontalAdvance(heading.count + heading.waiting + heading.silent);
    const QString name = m_boldMetrics.elidedText(heading.name, Qt::ElideRight, std::max(0.0, room));
    drawText(painter, rest, name);
    rest.setLeft(rest.left() + m_boldMetrics.horizontalAdvance(name) + m_line / 2);
    painter.setFont(m_small);
    painter.setPen(m_palette.color(QPalette::PlaceholderText));
    drawText(painter, rest, heading.count);
    rest.setLeft(rest.left() + m_smallMetrics.horizontalAdvance(heading.count) + m_line / 2);
    if (!heading.waiting.isEmpty()) {
        painter.setPen(alarmText(m_palette));
        painter.setFont(m_bold);
        const QString text = QLatin1String("! ") + heading.waiting;
        drawText(painter, rest, text);
        rest.setLeft(rest.left() + m_boldMetrics.horizontalAdvance(text) + m_line / 2);
    }
    if (!heading.silent.isEmpty()) {
        StationStatus silent;
        silent.line = StationStatus::Line::Silent;
        const double side = m_line * 0.8;
        paintStationMark(painter, QRectF(rest.left(), rest.center().y() - side / 2, side, side), silent,
                         m_palette);
        rest.setLeft(rest.left() + side + m_line / 5);
        painter.setPen(doubtText(m_palette));
        painter.setFont(m_bold);
        drawText(painter, rest, heading.silent);
    }
    painter.setPen(QPen(hairline(m_palette), 1));
    painter.drawLine(place.rect.bottomLeft() + QPointF(0, -1), place.rect.bottomRight() + QPointF(0, -1));
    paintChoice(painter, place);
    painter.restore();
}

/// Thousands of them are seen at once, of few kinds, so each kind is drawn once.
void TilePainter::paintCell(QPainter &painter, const Place &place, const StationGlance &glance) const
{
    const double ratio = painter.device()->devicePixelRatioF();
    const QSize size = place.rect.size().toSize();
    const auto line = static_cast<int>(glance.status.line);
    const bool hasBoth = glance.standing > 0 && isUnheard(glance);
    const QString key = QStringLiteral("ktr-cell-%1-%2-%3x%4-%5-%6-%7-%8")
                            .arg(int(glance.urgency))
                            .arg(line)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(ratio)
                            .arg(place.isPointed)
                            .arg(m_palette.cacheKey())
                            .arg(hasBoth);
    QPixmap cell;
    if (!QPixmapCache::find(key, &cell)) {
        cell = QPixmap(size * ratio);
        cell.setDevicePixelRatio(ratio);
        cell.fill(Qt::transparent);
        QPainter inside(&cell);
        inside.setRenderHint(QPainter::Antialiasing);
        const QRectF whole({0, 0}, QSizeF(size));
        paintGround(inside, {whole, false, place.isPointed}, glance.urgency);
        // What needs nobody does not draw the eye.
        const double part = glance.urgency >= Urgency::Quiet ? 0.42 : 0.62;
        const double side = std::min(whole.width(), whole.height()) * part;
        QRectF middle(0, 0, side, side);
        middle.moveCenter(whole.center());
        if (isWaiting(glance.urgency) || glance.urgency == Urgency::Standing) {
            QFont font = m_bold;
            font.setPixelSize(std::max(6, static_cast<int>(side)));
            inside.setFont(font);
            inside.setPen(isWaiting(glance.urgency) ? QColor(Qt::white) : alarmText(m_palette));
            inside.drawText(whole, Qt::AlignCenter, exclamation(glance.urgency));
        } else {
            paintStationMark(inside, middle, glance.status, m_palette);
        }
        if (hasBoth) {
            paintCorner(inside, whole.adjusted(halfGap, halfGap, -halfGap, -halfGap), glance);
        }
        QPixmapCache::insert(key, cell);
    }
    painter.drawPixmap(place.rect.topLeft(), cell);
    constexpr double roomForBoth = 16;
    const bool isInside = std::min(size.width(), size.height()) >= roomForBoth && !isWaiting(glance.urgency);
    paintChoice(painter, place, isInside ? frameOf(glance.urgency) : 0);
}

void TilePainter::paintChosen(QPainter &painter, const QRectF &where, Urgency urgency) const
{
    constexpr int veil = 60;
    constexpr double largeSide = 24;
    const double width = std::min(where.width(), where.height()) < largeSide ? 1 : 2;
    QColor colour = isWaiting(urgency) ? QColor(Qt::white) : m_palette.color(QPalette::Highlight);
    const double inset = halfGap + frameOf(urgency) + width / 2;
    painter.save();
    painter.setPen(QPen(colour, width));
    if (frameOf(urgency) == 0) {
        colour.setAlpha(veil);
        painter.setBrush(colour);
    } else {
        painter.setBrush(Qt::NoBrush);
    }
    painter.drawRect(where.adjusted(inset, inset, -inset, -inset));
    painter.restore();
}

} // namespace ktr
