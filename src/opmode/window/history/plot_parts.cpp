#include "opmode/window/history/plot_parts.h"

#include "config/channel_use.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/history/plot_look.h"
#include "opmode/window/history/time_ticks.h"
#include "opmode/window/input_caption.h"
#include "platform/text_rules.h"

namespace ktr {

namespace {

constexpr double laneStep = 1.6; ///< from lane to lane, in values of the steps
constexpr int laneHeight = 26;

bool isCounter(int channel)
{
    return channel <= 8 || fixedMeasure(channel) == Measure::Hours ||
           fixedMeasure(channel) == Measure::Binary;
}

} // namespace

PlotParts::PlotParts(QCustomPlot &plot) : m_values(plot.axisRect()), m_lanes(new QCPAxisRect(&plot))
{
    plot.plotLayout()->addElement(1, 0, m_lanes);
    plot.plotLayout()->setRowSpacing(0);
    auto *sides = new QCPMarginGroup(&plot);
    const QSharedPointer<TimeTicks> ticks(new TimeTicks);
    for (QCPAxisRect *part : both()) {
        part->setMarginGroup(QCP::msLeft | QCP::msRight, sides);
        part->setRangeDrag(Qt::Horizontal);
        part->setRangeZoom(Qt::Horizontal);
        part->setRangeZoomFactor(0.8);
        part->axis(QCPAxis::atBottom)->setTicker(ticks);
    }
    for (const QCPAxis::AxisType side : {QCPAxis::atLeft, QCPAxis::atRight}) {
        m_values->axis(side)->setNumberFormat(QStringLiteral("g"));
        m_values->axis(side)->setNumberPrecision(9);
    }
    m_values->axis(QCPAxis::atRight)->setTickLabels(true);
    m_lanes->axis(QCPAxis::atLeft)->grid()->setVisible(false);
    m_lanes->axis(QCPAxis::atLeft)->setSubTicks(false);
    m_lanes->axis(QCPAxis::atLeft)->setTickLength(0);
}

const QCPAxisRect *PlotParts::at(const QPoint &position) const
{
    const QCPAxisRect *part = m_lanes->visible() && m_lanes->rect().contains(position) ? m_lanes : m_values;
    return part->visible() && part->rect().contains(position) ? part : nullptr;
}

void PlotParts::setTime(const QCPRange &time)
{
    for (QCPAxisRect *part : both()) {
        part->axis(QCPAxis::atBottom)->setRange(time);
    }
}

void PlotParts::setTitles(const QString &values, const QString &counters)
{
    m_valuesTitle = values;
    m_countersTitle = counters;
}

int PlotParts::arrange(const PlotCurves &curves)
{
    std::vector<int> lanes;
    bool anyLine = false;
    bool anyCounter = false;
    for (const auto &[channel, curve] : curves) {
        if (curve.isShown && curve.isSteps) {
            lanes.push_back(channel);
        } else if (curve.isShown) {
            (isCounter(channel) ? anyCounter : anyLine) = true;
        }
    }
    const bool hasTwoAxes = anyLine && anyCounter;
    QCPAxis *left = m_values->axis(QCPAxis::atLeft);
    QCPAxis *right = m_values->axis(QCPAxis::atRight);
    for (const auto &[channel, curve] : curves) {
        if (!curve.isSteps) {
            curve.graph->setValueAxis(hasTwoAxes && isCounter(channel) ? right : left);
        }
    }
    right->setVisible(hasTwoAxes);
    right->setLabel(m_countersTitle);
    left->setLabel(anyLine ? m_valuesTitle : anyCounter ? m_countersTitle : QString());
    const bool isAbove = anyLine || anyCounter || lanes.empty();
    m_values->setVisible(isAbove);
    m_values->setMinimumSize(0, isAbove ? 60 : 0);
    m_values->setMaximumSize(QWIDGETSIZE_MAX, isAbove ? QWIDGETSIZE_MAX : 0);
    m_values->axis(QCPAxis::atBottom)->setTickLabels(lanes.empty());
    placeLanes(lanes, curves, !isAbove);
    constexpr int lowestValues = 110;
    constexpr int around = 64; // the times below, and the margins
    return (isAbove ? lowestValues : 0) + m_lanes->minimumSize().height() + around;
}

void PlotParts::placeLanes(const std::vector<int> &channels, const PlotCurves &curves, bool alone)
{
    const double whole = laneStep * double(channels.size());
    const QSharedPointer<QCPAxisTickerText> names(new QCPAxisTickerText);
    double bottom = whole;
    constexpr qsizetype longestLane = 20; // or the curves would have no room
    for (const int channel : channels) {
        bottom -= laneStep;
        names->addTick(bottom + laneStep / 2,
                       firstCharacters(shortInputCaption(channel, m_names), longestLane));
        curves.at(channel).lane->setRange(-bottom - 0.3, whole - bottom - 0.3);
    }
    m_lanes->axis(QCPAxis::atLeft)->setTicker(names);
    m_lanes->axis(QCPAxis::atLeft)->setRange(0, channels.empty() ? 1 : whole);
    m_lanes->setVisible(!channels.empty());
    m_lanes->setSizeConstraintRect(QCPLayoutElement::scrInnerRect);
    const int count = static_cast<int>(channels.size());
    const int height = qMin(laneHeight * count, 220);
    m_lanes->setMinimumSize(0, height);
    m_lanes->setMaximumSize(QWIDGETSIZE_MAX, channels.empty() ? 0 : alone ? QWIDGETSIZE_MAX : height);
    m_lanes->setAutoMargins(channels.empty() ? QCP::msLeft | QCP::msRight : QCP::msAll);
    if (channels.empty()) {
        m_lanes->setMargins(QMargins());
    }
}

void PlotParts::fitTicks(const QSize &plot, const QFontMetrics &metrics)
{
    constexpr int mostTimes = 8;
    constexpr int gap = 16;
    constexpr int sides = 130; ///< what stands beside the curves
    const int label = metrics.horizontalAdvance(QStringLiteral("00.00."));
    constexpr int height = 40;
    const int half = label / 2 + 6; // one at the end is not drawn when it would be cut
    for (QCPAxisRect *part : both()) {
        part->setMinimumMargins(QMargins(half, 10, half, 4));
    }
    const int above = plot.height() - (m_lanes->visible() ? m_lanes->minimumSize().height() : 0) - height;
    m_values->axis(QCPAxis::atBottom)
        ->ticker()
        ->setTickCount(qBound(2, (plot.width() - sides) / (label + gap), mostTimes));
    for (const QCPAxis::AxisType side : {QCPAxis::atLeft, QCPAxis::atRight}) {
        m_values->axis(side)->ticker()->setTickCount(qBound(3, above / height, 6));
    }
}

void PlotParts::scale(const PlotCurves &curves)
{
    for (QCPAxis *axis : {m_values->axis(QCPAxis::atLeft), m_values->axis(QCPAxis::atRight)}) {
        std::optional<QCPRange> found;
        for (const auto &[channel, curve] : curves) {
            if (!curve.isShown || curve.graph->valueAxis() != axis) {
                continue;
            }
            const auto points = curve.graph->data();
            const auto begin = points->findBegin(time().lower);
            const auto end = points->findEnd(time().upper);
            for (auto point = begin; point != end; ++point) {
                found = found ? found->expanded(QCPRange(point->value, point->value))
                              : QCPRange(point->value, point->value);
            }
            const auto count = end - begin; // marks at some of many
            curve.graph->setScatterSkip(count > 40 ? static_cast<int>(count / 12) : 0);
        }
        if (found) {
            const double margin =
                found->size() > 0 ? found->size() * 0.06 : qMax(std::abs(found->lower) * 0.05, 0.5);
            axis->setRange(found->lower - margin, found->upper + margin);
        }
    }
}

void PlotParts::applyLook(const QPalette &palette, const QFont &font)
{
    for (const QCPAxisRect *part : both()) {
        applyAxesLook(*part, palette, font);
    }
}

} // namespace ktr
