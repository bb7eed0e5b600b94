#include "opmode/window/history/plot_frame.h"

#include "opmode/window/history/plot_look.h"
#include "opmode/window/history/time_ticks.h"
#include "platform/text_rules.h"

namespace ktr {

namespace {

constexpr double laneStep = 1.6; ///< from lane to lane, in values of the steps
constexpr int laneHeight = 26;

} // namespace

QString shortened(const QString &name, qsizetype longest)
{
    return name.size() <= longest ? name : firstCharacters(name, longest - 1).trimmed() + u'…';
}

PlotFrame::PlotFrame(QCustomPlot &plot, Qt::TimeSpec times)
    : m_values(plot.axisRect()), m_lanes(new QCPAxisRect(&plot))
{
    plot.plotLayout()->addElement(1, 0, m_lanes);
    plot.plotLayout()->setRowSpacing(0);
    auto *sides = new QCPMarginGroup(&plot);
    const QSharedPointer<TimeTicks> ticks(new TimeTicks(times));
    for (QCPAxisRect *part : both()) {
        part->setMarginGroup(QCP::msLeft | QCP::msRight, sides);
        part->setRangeDrag(Qt::Horizontal);
        part->setRangeZoom(Qt::Horizontal);
        part->setRangeZoomFactor(0.8);
        part->axis(QCPAxis::atBottom)->setTicker(ticks);
    }
    m_lanes->axis(QCPAxis::atLeft)->grid()->setVisible(false);
    m_lanes->axis(QCPAxis::atLeft)->setSubTicks(false);
    m_lanes->axis(QCPAxis::atLeft)->setTickLength(0);
}

const QCPAxisRect *PlotFrame::at(const QPoint &position) const
{
    const QCPAxisRect *part = m_lanes->visible() && m_lanes->rect().contains(position) ? m_lanes : m_values;
    return part->visible() && part->rect().contains(position) ? part : nullptr;
}

void PlotFrame::setTime(const QCPRange &time)
{
    for (QCPAxisRect *part : both()) {
        part->axis(QCPAxis::atBottom)->setRange(time);
    }
}

int PlotFrame::arrange(const QList<PlotLane> &lanes, bool hasValues)
{
    const bool isAbove = hasValues || lanes.empty();
    m_values->setVisible(isAbove);
    m_values->setMinimumSize(0, isAbove ? 60 : 0);
    m_values->setMaximumSize(QWIDGETSIZE_MAX, isAbove ? QWIDGETSIZE_MAX : 0);
    m_values->axis(QCPAxis::atBottom)->setTickLabels(lanes.empty());
    placeLanes(lanes, !isAbove);
    constexpr int lowestValues = 110;
    constexpr int around = 64; // the times below, and the margins
    return (isAbove ? lowestValues : 0) + m_lanes->minimumSize().height() + around;
}

void PlotFrame::placeLanes(const QList<PlotLane> &lanes, bool alone)
{
    const double whole = laneStep * double(lanes.size());
    const QSharedPointer<QCPAxisTickerText> names(new QCPAxisTickerText);
    double bottom = whole;
    for (const PlotLane &lane : lanes) {
        bottom -= laneStep;
        names->addTick(bottom + laneStep / 2, shortened(lane.name, PlotLane::longest));
        lane.axis->setRange(-bottom - 0.3, whole - bottom - 0.3);
    }
    m_lanes->axis(QCPAxis::atLeft)->setTicker(names);
    m_lanes->axis(QCPAxis::atLeft)->setRange(0, lanes.empty() ? 1 : whole);
    m_lanes->setVisible(!lanes.empty());
    m_lanes->setSizeConstraintRect(QCPLayoutElement::scrInnerRect);
    const int count = static_cast<int>(lanes.size());
    const int height = qMin(laneHeight * count, 220);
    m_lanes->setMinimumSize(0, height);
    m_lanes->setMaximumSize(QWIDGETSIZE_MAX, lanes.empty() ? 0 : alone ? QWIDGETSIZE_MAX : height);
    m_lanes->setAutoMargins(lanes.empty() ? QCP::msLeft | QCP::msRight : QCP::msAll);
    if (lanes.empty()) {
        m_lanes->setMargins(QMargins());
    }
}

int PlotFrame::fitTicks(const QSize &plot, const QFontMetrics &metrics)
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
    return qBound(3, above / height, 6);
}

void PlotFrame::applyLook(const QPalette &palette, const QFont &font)
{
    for (const QCPAxisRect *part : both()) {
        applyAxesLook(*part, palette, font);
    }
}

} // namespace ktr
