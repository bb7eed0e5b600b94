#include "opmode/window/timemap/time_map_legend.h"

#include "look/palettes.h"
#include "opmode/alarms/alarm_rules.h"
#include "opmode/window/timemap/time_map_look.h"

#include <QPainter>

namespace ktr {

namespace {

constexpr double swatch = 14;
constexpr double signGap = 6;
constexpr double betweenEntries = 18;

} // namespace

TimeMapLegend::TimeMapLegend(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void TimeMapLegend::show(TimeMapTopic topic, bool isOneStation)
{
    m_topic = topic;
    m_isOneStation = isOneStation;
    QStringList all;
    for (const Entry &entry : entries()) {
        all += entry.text;
    }
    setAccessibleName(tr("Legend"));
    setAccessibleDescription(all.join(QStringLiteral(", ")));
    setToolTip(all.join(u'\n'));
    update();
}

QList<TimeMapLegend::Entry> TimeMapLegend::entries() const
{
    QList<Entry> all;
    if (m_topic == TimeMapTopic::Alarms) {
        const auto ofPriority = [](AlarmPriority priority) {
            QList<std::pair<int, int>> steps;
            for (int step = 1; step < timeMapSteps; ++step) {
                steps.append({static_cast<int>(priority), step});
            }
            return steps;
        };
        all.append({tr("the most urgent alarm: high (\"!\")"), ofPriority(AlarmPriority::High)});
        all.append({tr("medium"), ofPriority(AlarmPriority::Medium)});
        all.append({tr("low"), ofPriority(AlarmPriority::Low)});
        all.append({tr("stronger from %1, %2 and %3 alarms on")
                        .arg(stepBegin(m_topic, 2))
                        .arg(stepBegin(m_topic, 3))
                        .arg(stepBegin(m_topic, 4)),
                    {}});
        all.append({tr("nobody watched"), {{0, -1}}});
        return all;
    }
    for (int step = 1; step < timeMapSteps; ++step) {
        const int begin = stepBegin(m_topic, step);
        all.append({begin == 0 ? tr("not heard below %1 % of the time").arg(stepBegin(m_topic, step + 1))
                               : tr("from %1 %").arg(begin),
                    {{0, step}}});
    }
    all.append({tr("nobody watched"), {{0, -1}}});
    all.append({m_isOneStation ? tr("number: minutes") : tr("number: stations"), {}});
    return all;
}

double TimeMapLegend::widthOf(const Entry &entry) const
{
    const double swatches = entry.grounds.isEmpty() ? 0 : swatch * double(entry.grounds.size()) + signGap;
    return swatches + fontMetrics().horizontalAdvance(entry.text);
}

QSize TimeMapLegend::sizeHint() const
{
    double width = 0;
    for (const Entry &entry : entries()) {
        width += widthOf(entry) + betweenEntries;
    }
    return {static_cast<int>(width), 2 * (fontMetrics().height() + 4)};
}

QSize TimeMapLegend::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

double TimeMapLegend::paintEntry(QPainter &painter, const Entry &entry, QPointF at) const
{
    const double line = fontMetrics().height() + 4;
    for (const auto &[priority, step] : entry.grounds) {
        const QRectF where(at.x(), at.y() + (line - swatch) / 2, swatch, swatch);
        painter.fillRect(where, hourColour(palette(), m_topic, priority, std::max(0, step)));
        if (step < 0) {
            painter.fillRect(where, unknownBrush(palette()));
        }
        painter.setPen(hairline(palette()));
        painter.drawRect(where.adjusted(0.5, 0.5, -0.5, -0.5));
        at.rx() += swatch;
    }
    at.rx() += entry.grounds.isEmpty() ? 0 : signGap;
    painter.setPen(palette().color(QPalette::WindowText));
    const double width = fontMetrics().horizontalAdvance(entry.text);
    painter.drawText(QRectF(at.x(), at.y(), width + 1, line), Qt::AlignLeft | Qt::AlignVCenter, entry.text);
    return at.x() + width;
}

/// In two lines where one is too long.
void TimeMapLegend::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QPointF at(0, 0);
    for (const Entry &entry : entries()) {
        if (at.x() > 0 && at.x() + widthOf(entry) > width()) {
            at = {0, at.y() + fontMetrics().height() + 4};
        }
        at.setX(paintEntry(painter, entry, at) + betweenEntries);
    }
}

} // namespace ktr
