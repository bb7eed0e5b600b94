#include "app/switch_timeline.h"

#include "look/palettes.h"
#include "platform/text_rules.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

constexpr int laneGap = 5;
constexpr int namesGap = 10;
constexpr int reach = 6; ///< of the mouse, in pixels
constexpr int markRadius = 4;

/// Levels of a lane between its lowest and highest value; values that are no number have none.
struct Levels
{
    double lowest = 0;
    double highest = 0;

    explicit Levels(const QList<SwitchTimeline::Mark> &marks)
    {
        for (const SwitchTimeline::Mark &mark : marks) {
            const double value = toNumber(mark.value).value_or(0);
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
    }
    /// 0 for the lowest, 1 for the highest.
    double shareOf(const QString &value) const
    {
        const double height = highest - lowest;
        return height > 0 ? (toNumber(value).value_or(0) - lowest) / height : 0;
    }
};

} // namespace

QString shortDayName(QDate day)
{
    static constexpr std::array names = {
        QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Mon"), QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Tue"),
        QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Wed"), QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Thu"),
        QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Fri"), QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Sat"),
        QT_TRANSLATE_NOOP("ktr::SwitchTimeline", "Sun")};
    return day.isValid() ? SwitchTimeline::tr(names[static_cast<std::size_t>(day.dayOfWeek() - 1)])
                         : QString();
}

SwitchTimeline::SwitchTimeline(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::MinimumExpanding);
}

void SwitchTimeline::showContents(const Contents &contents)
{
    m_contents = contents;
    if (markOf(m_chosen) == nullptr) {
        m_chosen = {};
    }
    updateGeometry();
    update();
}

void SwitchTimeline::showTime(ModuleMs at)
{
    if (std::lround(xOf(at)) != std::lround(xOf(m_time))) {
        update();
    }
    m_time = at;
}

void SwitchTimeline::setNotice(const QString &notice)
{
    m_notice = notice;
    update();
}

int SwitchTimeline::headHeight() const
{
    return 2 * fontMetrics().height() + laneGap;
}

int SwitchTimeline::laneHeight() const
{
    return fontMetrics().height() + 2 * laneGap;
}

int SwitchTimeline::namesWidth() const
{
    int widest = fontMetrics().horizontalAdvance(QStringLiteral("13 AnalogOut 1"));
    for (const Lane &lane : m_contents.lanes) {
        widest = std::max(widest, fontMetrics().horizontalAdvance(lane.name));
    }
    constexpr int mostShare = 4;
    return std::min(widest + 2 * namesGap, std::max(width() / mostShare, 1));
}

QSize SwitchTimeline::sizeHint() const
{
    constexpr int comfortable = 800;
    const auto lanes = std::max<qsizetype>(m_contents.lanes.size(), 2);
    return {comfortable, headHeight() + static_cast<int>(lanes) * laneHeight() + laneGap};
}

QSize SwitchTimeline::minimumSizeHint() const
{
    constexpr int narrowest = 400;
    return {narrowest, sizeHint().height()};
}

double SwitchTimeline::xOf(ModuleMs at) const
{
    const ModuleSpan &span = m_contents.span;
    const double length = double(std::max<ModuleMs>(span.to - span.from, 1));
    const int left = namesWidth();
    return left + double(at - span.from) / length * (width() - left - 1);
}

QRect SwitchTimeline::laneRect(qsizetype lane) const
{
    const int left = namesWidth();
    return {left, headHeight() + static_cast<int>(lane) * laneHeight(), width() - left, laneHeight()};
}

const SwitchTimeline::Mark *SwitchTimeline::markOf(const Place &place) const
{
    if (place.lane < 0 || place.lane >= m_contents.lanes.size()) {
        return nullptr;
    }
    const QList<Mark> &marks = m_contents.lanes[place.lane].marks;
    return place.mark >= 0 && place.mark < marks.size() ? &marks[place.mark] : nullptr;
}

QString SwitchTimeline::wordsOf(const Place &place) const
{
    const Mark *const mark = markOf(place);
    if (mark == nullptr) {
        return {};
    }
    const Lane &lane = m_contents.lanes[place.lane];
    return shortDayName(dateOf(mark->at)) + u' ' + clockText(mark->at) + QLatin1String("  ") + lane.name +
           QLatin1String(lane.isCall ? ", " : " = ") + mark->value + QLatin1String("  ") +
           m_contents.cause(*mark) + u' ' + assumptionNumbers(mark->restsOn);
}

QString SwitchTimeline::chosenWords() const
{
    return wordsOf(m_chosen);
}

// Choosing

SwitchTimeline::Place SwitchTimeline::placeAt(QPoint point) const
{
    for (qsizetype lane = 0; lane < m_contents.lanes.size(); ++lane) {
        if (!laneRect(lane).contains(point)) {
            continue;
        }
        const QList<Mark> &marks = m_contents.lanes[lane].marks;
        Place nearest;
        double least = reach + 1;
        for (qsizetype mark = 0; mark < marks.size(); ++mark) {
            const double distance = std::abs(xOf(marks[mark].at) - point.x());
            if (distance < least) {
                least = distance;
                nearest = {lane, mark};
            }
        }
        return nearest;
    }
    return {};
}

void SwitchTimeline::choose(Place place)
{
    if (markOf(place) == nullptr || place == m_chosen) {
        return;
    }
    m_chosen = place;
    const QString words = chosenWords();
    setAccessibleDescription(words);
    update();
    Q_EMIT chosen(words);
}

/// The mark so many further on in the same lane.
SwitchTimeline::Place SwitchTimeline::stepped(int by) const
{
    if (markOf(m_chosen) == nullptr) {
        return onLane(0);
    }
    const qsizetype last = m_contents.lanes[m_chosen.lane].marks.size() - 1;
    return {m_chosen.lane, std::clamp<qsizetype>(m_chosen.mark + by, 0, last)};
}

/// The mark of a lane that is nearest in time to the chosen one.
SwitchTimeline::Place SwitchTimeline::onLane(qsizetype lane) const
{
    if (lane < 0 || lane >= m_contents.lanes.size() || m_contents.lanes[lane].marks.isEmpty()) {
        return {};
    }
    const Mark *const present = markOf(m_chosen);
    const ModuleMs at = present == nullptr ? m_contents.span.from : present->at;
    const QList<Mark> &marks = m_contents.lanes[lane].marks;
    const auto nearest =
        std::ranges::min_element(marks, {}, [at](const Mark &mark) { return std::abs(mark.at - at); });
    return {lane, nearest - marks.begin()};
}

void SwitchTimeline::keyPressEvent(QKeyEvent *event)
{
    constexpr int all = SwitchPlan::mostOfOne * SwitchPoint::count;
    switch (event->key()) {
    case Qt::Key_Left:
        return choose(stepped(-1));
    case Qt::Key_Right:
        return choose(stepped(1));
    case Qt::Key_Home:
        return choose(stepped(-all));
    case Qt::Key_End:
        return choose(stepped(all));
    case Qt::Key_Up:
        return choose(onLane(m_chosen.lane - 1));
    case Qt::Key_Down:
        return choose(onLane(m_chosen.lane + 1));
    default:
        QWidget::keyPressEvent(event);
    }
}

void SwitchTimeline::mousePressEvent(QMouseEvent *event)
{
    choose(placeAt(event->position().toPoint()));
}

void SwitchTimeline::mouseMoveEvent(QMouseEvent *event)
{
    const bool isOnMark = markOf(placeAt(event->position().toPoint())) != nullptr;
    setCursor(isOnMark ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void SwitchTimeline::focusInEvent(QFocusEvent *event)
{
    if (event->reason() == Qt::TabFocusReason && markOf(m_chosen) == nullptr) {
        choose(onLane(0));
    }
    QWidget::focusInEvent(event);
}

bool SwitchTimeline::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QToolTip::showText(help->globalPos(), wordsOf(placeAt(help->pos())), this);
        return true;
    }
    return QWidget::event(event);
}

// Drawing

void SwitchTimeline::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().base());
    drawDays(painter);
    for (qsizetype lane = 0; lane < m_contents.lanes.size(); ++lane) {
        drawLane(painter, lane);
    }
    if (m_contents.lanes.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(0, headHeight(), 0, 0), Qt::AlignCenter | Qt::TextWordWrap,
                         m_notice);
    }
    painter.setPen(QPen(palette().color(QPalette::PlaceholderText), 1, Qt::DotLine));
    for (const ModuleMs at : m_contents.clockChanges) {
        painter.drawLine(QPointF(xOf(at), 0), QPointF(xOf(at), height()));
    }
    if (m_contents.span.contains(m_time)) {
        painter.setPen(QPen(accent(palette()), 2));
        painter.drawLine(QPointF(xOf(m_time), headHeight() - laneGap), QPointF(xOf(m_time), height()));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(hasFocus() ? QPen(accent(palette()), 2) : QPen(hairline(palette()), 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

void SwitchTimeline::drawDays(QPainter &painter) const
{
    const ModuleSpan &span = m_contents.span;
    const QFontMetrics metrics = fontMetrics();
    for (QDate day = dateOf(span.from); moduleMs(day) < span.to; day = day.addDays(1)) {
        const double left = xOf(std::max(span.from, moduleMs(day)));
        const double right = xOf(std::min(span.to, moduleMs(day) + msPerDay));
        const QRectF column(left, 0, right - left, height());
        const bool isHoliday = m_contents.holidays.contains(day);
        if (isHoliday) {
            painter.fillRect(column, tint(palette()));
        } else if (day.dayOfWeek() >= Qt::Saturday) {
            painter.fillRect(column, veil(palette(), 2));
        }
        painter.setPen(hairline(palette()));
        painter.drawLine(column.topLeft(), column.bottomLeft());
        const QString name = shortDayName(day);
        const QString date = day.toString(QStringLiteral("dd.MM."));
        painter.setPen(palette().color(QPalette::Text));
        if (metrics.horizontalAdvance(date) + 2 <= column.width()) {
            const QRectF head(column.left(), 2, column.width(), headHeight() - laneGap);
            painter.drawText(head, Qt::AlignHCenter | Qt::AlignTop, name);
            painter.drawText(head, Qt::AlignHCenter | Qt::AlignBottom, date);
        }
    }
    painter.setPen(hairline(palette()));
    painter.drawLine(0, headHeight(), width(), headHeight());
}

void SwitchTimeline::drawLane(QPainter &painter, qsizetype lane) const
{
    const Lane &each = m_contents.lanes[lane];
    const QRect area = laneRect(lane);
    painter.setPen(palette().color(QPalette::Text));
    const QRect names(namesGap / 2, area.top(), area.left() - namesGap, area.height());
    painter.drawText(names, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(each.name, Qt::ElideRight, names.width()));
    if (!each.isCall) {
        drawLevels(painter, each, area);
    }
    const double middle = area.center().y();
    double drawn = -1;
    for (qsizetype index = 0; index < each.marks.size(); ++index) {
        const Mark &mark = each.marks[index];
        const double x = xOf(mark.at);
        const bool isChosen = m_chosen == Place{lane, index};
        if (!isChosen && x - drawn < 1) { // one would hide the other
            continue;
        }
        drawn = x;
        const QColor colour = mark.limitValue >= 0 ? doubtText(palette()) : accent(palette());
        painter.setPen(QPen(isChosen ? palette().color(QPalette::Text) : colour, isChosen ? 2 : 1));
        painter.setBrush(each.isCall || isChosen ? QBrush(colour) : QBrush(palette().base()));
        const double radius = markRadius - (each.isCall || isChosen ? 0 : 1);
        painter.drawEllipse(QPointF(x, middle), radius, radius);
    }
    painter.setPen(hairline(palette()));
    painter.drawLine(0, area.bottom(), width(), area.bottom());
}

/// A bar for each value up to the next one; what was before the first is not known.
void SwitchTimeline::drawLevels(QPainter &painter, const Lane &lane, const QRect &area) const
{
    const Levels levels(lane.marks);
    const double base = area.bottom() - 2;
    const double height = area.height() - 2 * 2;
    painter.setPen(QPen(palette().color(QPalette::PlaceholderText), 1, Qt::DashLine));
    const double first = lane.marks.isEmpty() ? area.right() : xOf(lane.marks.front().at);
    painter.drawLine(QPointF(area.left(), area.center().y()), QPointF(first, area.center().y()));
    QColor fill = accent(palette());
    constexpr int faint = 90;
    fill.setAlpha(faint);
    for (qsizetype index = 0; index < lane.marks.size();) {
        const double left = xOf(lane.marks[index].at);
        qsizetype last = index; // of those at one place the last counts
        while (last + 1 < lane.marks.size() && xOf(lane.marks[last + 1].at) - left < 1) {
            ++last;
        }
        const Mark &mark = lane.marks[last];
        const double right = last + 1 < lane.marks.size() ? xOf(lane.marks[last + 1].at) : area.right();
        const double top = base - levels.shareOf(mark.value) * height;
        painter.fillRect(QRectF(left, top, right - left, base - top + 1), fill);
        painter.setPen(QPen(palette().color(QPalette::Text)));
        const double room = right - left - 2 * markRadius;
        if (fontMetrics().horizontalAdvance(mark.value) <= room) {
            painter.drawText(QRectF(left + markRadius + 2, area.top(), room, area.height()),
                             Qt::AlignLeft | Qt::AlignVCenter, mark.value);
        }
        index = last + 1;
    }
}

} // namespace ktr
