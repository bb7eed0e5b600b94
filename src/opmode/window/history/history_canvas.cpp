#include "opmode/window/history/history_canvas.h"

#include "config/channel_use.h"
#include "look/palettes.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/history/history_plot.h"
#include "opmode/window/history/plot_look.h"
#include "opmode/window/history/time_ticks.h"

namespace ktr {

namespace {

constexpr double shortestTime = 5 * 60;
constexpr double laneStep = 1.6; ///< from lane to lane, in values of the steps
constexpr int laneHeight = 26;

bool canBeSteps(int channel)
{
    return channel <= 4 || fixedMeasure(channel) == Measure::Binary;
}

bool isCounter(int channel)
{
    return channel <= 8 || fixedMeasure(channel) == Measure::Hours ||
           fixedMeasure(channel) == Measure::Binary;
}

bool isZeroOrOne(const QCPGraphData &point)
{
    return point.value == 0 || point.value == 1;
}

} // namespace

HistoryCanvas::HistoryCanvas(QWidget *parent, std::function<void()> placeChanged)
    : QCustomPlot(parent),
      m_placeChanged(std::move(placeChanged)),
      m_values(axisRect()),
      m_lanes(new QCPAxisRect(this)),
      m_cursor({m_values, m_lanes})
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    setNoAntialiasingOnDrag(true);
    plotLayout()->addElement(1, 0, m_lanes);
    plotLayout()->setRowSpacing(0);
    auto *sides = new QCPMarginGroup(this);
    const QSharedPointer<TimeTicks> ticks(new TimeTicks);
    for (QCPAxisRect *rect : {m_values, m_lanes}) {
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, sides);
        rect->setRangeDrag(Qt::Horizontal);
        rect->setRangeZoom(Qt::Horizontal);
        rect->setRangeZoomFactor(0.8);
        rect->axis(QCPAxis::atBottom)->setTicker(ticks);
        connect(rect->axis(QCPAxis::atBottom), qOverload<const QCPRange &>(&QCPAxis::rangeChanged), this,
                &HistoryCanvas::timeChanged);
    }
    m_values->axis(QCPAxis::atLeft)->setNumberFormat(QStringLiteral("g"));
    m_values->axis(QCPAxis::atRight)->setNumberFormat(QStringLiteral("g"));
    m_values->axis(QCPAxis::atLeft)->setNumberPrecision(9);
    m_values->axis(QCPAxis::atRight)->setNumberPrecision(9);
    m_values->axis(QCPAxis::atRight)->setTickLabels(true);
    m_lanes->axis(QCPAxis::atLeft)->grid()->setVisible(false);
    m_lanes->axis(QCPAxis::atLeft)->setSubTicks(false);
    m_lanes->axis(QCPAxis::atLeft)->setTickLength(0);
    takeColours();
    arrange();
}

void HistoryCanvas::removeCurves()
{
    pointAway();
    for (auto &[channel, curve] : m_curves) {
        removeGraph(curve.graph);
        if (curve.lane != nullptr) {
            m_lanes->removeAxis(curve.lane);
        }
    }
    m_curves.clear();
    m_isWhole = true;
    arrange();
}

bool HistoryCanvas::add(const QList<PlotPoint> &points)
{
    std::map<int, QList<QCPGraphData>> added;
    for (const PlotPoint &point : points) {
        added[point.channel].append({double(point.time), point.value});
    }
    bool rearrange = false;
    for (const auto &[channel, list] : added) {
        const auto found = m_curves.find(channel);
        rearrange = rearrange || found == m_curves.end();
        PlotCurve &curve =
            found != m_curves.end()
                ? found->second
                : m_curves.emplace(channel, PlotCurve{nullptr, canBeSteps(channel), false, nullptr})
                      .first->second;
        if (curve.isSteps && !std::ranges::all_of(list, isZeroOrOne)) {
            curve.isSteps = false; // it counts
            rearrange = true;
        }
        if (curve.graph == nullptr) {
            recreate(channel, curve);
        }
        curve.graph->data()->add(list);
    }
    if (m_isWhole) {
        showWholeTime();
    }
    if (rearrange) {
        arrange();
    } else {
        scaleValues();
    }
    return rearrange;
}

/// A graph stays with the part of the plot that it was made for.
void HistoryCanvas::recreate(int channel, PlotCurve &curve)
{
    const QSharedPointer<QCPGraphDataContainer> points =
        curve.graph != nullptr ? curve.graph->data() : QSharedPointer<QCPGraphDataContainer>::create();
    if (curve.graph != nullptr) {
        if (place() && place()->channel == channel) {
            pointAway();
        }
        removeGraph(curve.graph);
    }
    if (curve.isSteps && curve.lane == nullptr) {
        curve.lane = m_lanes->addAxis(QCPAxis::atLeft);
        curve.lane->setVisible(false);
    } else if (!curve.isSteps && curve.lane != nullptr) {
        m_lanes->removeAxis(curve.lane);
        curve.lane = nullptr;
    }
    QCPAxisRect *rect = curve.isSteps ? m_lanes : m_values;
    curve.graph =
        addGraph(rect->axis(QCPAxis::atBottom), curve.isSteps ? curve.lane : m_values->axis(QCPAxis::atLeft));
    curve.graph->setData(points);
    curve.graph->setLineStyle(curve.isSteps ? QCPGraph::lsStepLeft : QCPGraph::lsLine);
    curve.graph->setVisible(curve.isShown);
    applySeriesLook(*curve.graph, channel, curve.isSteps, palette());
}

void HistoryCanvas::setShown(int channel, bool shown)
{
    const auto found = m_curves.find(channel);
    if (found != m_curves.end() && found->second.isShown != shown) {
        found->second.isShown = shown;
        pointAway();
        arrange();
    }
}

bool HistoryCanvas::isShown(int channel) const
{
    const auto found = m_curves.find(channel);
    return found != m_curves.end() && found->second.isShown;
}

bool HistoryCanvas::isSteps(int channel) const
{
    const auto found = m_curves.find(channel);
    return found != m_curves.end() && found->second.isSteps;
}

bool HistoryCanvas::anyShown() const
{
    return std::ranges::any_of(m_curves, [](const auto &each) { return each.second.isShown; });
}

QList<int> HistoryCanvas::channels() const
{
    QList<int> list;
    for (const auto &each : m_curves) {
        list.append(each.first);
    }
    return list;
}

/// Gives every shown curve its axis, and the two parts of the plot their room.
void HistoryCanvas::arrange()
{
    std::vector<int> lanes;
    bool anyLine = false;
    bool anyCounter = false;
    for (auto &[channel, curve] : m_curves) {
        if (curve.isSteps != (curve.lane != nullptr)) {
            recreate(channel, curve);
        }
        curve.graph->setVisible(curve.isShown);
        if (curve.isShown && curve.isSteps) {
            lanes.push_back(channel);
        } else if (curve.isShown) {
            (isCounter(channel) ? anyCounter : anyLine) = true;
        }
    }
    const bool both = anyLine && anyCounter;
    for (auto &[channel, curve] : m_curves) {
        if (!curve.isSteps) {
            const bool right = both && isCounter(channel);
            curve.graph->setValueAxis(m_values->axis(right ? QCPAxis::atRight : QCPAxis::atLeft));
        }
    }
    QCPAxis *right = m_values->axis(QCPAxis::atRight);
    right->setVisible(both);
    right->setLabel(m_countersTitle);
    m_values->axis(QCPAxis::atLeft)
        ->setLabel(anyLine      ? m_valuesTitle
                   : anyCounter ? m_countersTitle
                                : QString());
    const bool isAbove = anyLine || anyCounter || lanes.empty();
    m_values->setVisible(isAbove);
    m_values->setMinimumSize(0, isAbove ? 60 : 0);
    m_values->setMaximumSize(QWIDGETSIZE_MAX, isAbove ? QWIDGETSIZE_MAX : 0);
    m_values->axis(QCPAxis::atBottom)->setTickLabels(lanes.empty());
    placeLanes(lanes, !isAbove);
    constexpr int lowestValues = 110;
    constexpr int around = 64; // the times below, and the margins
    setMinimumHeight((isAbove ? lowestValues : 0) + m_lanes->minimumSize().height() + around);
    fitTicks();
    scaleValues();
}

void HistoryCanvas::placeLanes(const std::vector<int> &lanes, bool alone)
{
    const double whole = laneStep * double(lanes.size());
    const QSharedPointer<QCPAxisTickerText> names(new QCPAxisTickerText);
    double bottom = whole;
    for (const int channel : lanes) {
        bottom -= laneStep;
        names->addTick(bottom + laneStep / 2, channelCaption(channel).trimmed());
        m_curves.at(channel).lane->setRange(-bottom - 0.3, whole - bottom - 0.3);
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

QCPRange HistoryCanvas::wholeTime() const
{
    std::optional<QCPRange> whole;
    for (const auto &each : m_curves) {
        bool found = false;
        const QCPRange range = each.second.graph->data()->keyRange(found);
        if (found) {
            whole = whole ? whole->expanded(range) : range;
        }
    }
    if (!whole) {
        return {0, 86400};
    }
    const double margin = qMax(whole->size() * 0.02, 300.0);
    return {whole->lower - margin, whole->upper + margin};
}

void HistoryCanvas::showWholeTime()
{
    setTime(wholeTime());
}

void HistoryCanvas::setTime(QCPRange range)
{
    m_values->axis(QCPAxis::atBottom)->setRange(range);
}

void HistoryCanvas::move(double parts)
{
    const QCPRange range = time();
    setTime(range + range.size() * parts);
}

void HistoryCanvas::zoom(double factor)
{
    const QCPRange range = time();
    const double centre = place() && range.contains(place()->time) ? place()->time : range.center();
    setTime({centre - (centre - range.lower) * factor, centre + (range.upper - centre) * factor});
}

/// Keeps the time within what there are values for, the same in both parts, and the values in sight.
void HistoryCanvas::timeChanged(const QCPRange &range)
{
    const QCPRange whole = wholeTime();
    QCPRange kept = range;
    if (kept.size() < shortestTime) {
        kept = {range.center() - shortestTime / 2, range.center() + shortestTime / 2};
    }
    kept = kept.bounded(whole.lower, whole.upper);
    m_isWhole = kept.lower <= whole.lower && kept.upper >= whole.upper;
    m_values->axis(QCPAxis::atBottom)->setRange(kept); // the signal does not come again for the same one
    m_lanes->axis(QCPAxis::atBottom)->setRange(kept);
    scaleValues();
}

void HistoryCanvas::scaleValues()
{
    for (QCPAxis *axis : {m_values->axis(QCPAxis::atLeft), m_values->axis(QCPAxis::atRight)}) {
        std::optional<QCPRange> found;
        for (auto &[channel, curve] : m_curves) {
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
    redraw();
}

void HistoryCanvas::setTitles(const QString &values, const QString &counters)
{
    m_valuesTitle = values;
    m_countersTitle = counters;
    arrange();
}

void HistoryCanvas::redraw()
{
    if (isVisible()) {
        replot(rpQueuedReplot);
    }
}

void HistoryCanvas::showEvent(QShowEvent *event)
{
    QCustomPlot::showEvent(event);
    redraw();
}

/// As many numbers at the axes as have room.
void HistoryCanvas::fitTicks()
{
    constexpr int mostTimes = 8;
    constexpr int gap = 16;
    constexpr int sides = 130; ///< what stands beside the curves
    const int label = fontMetrics().horizontalAdvance(QStringLiteral("00.00."));
    constexpr int height = 40;
    const int half = label / 2 + 6; // one at the end is not drawn when it would be cut
    for (QCPAxisRect *rect : {m_values, m_lanes}) {
        rect->setMinimumMargins(QMargins(half, 10, half, 4));
    }
    const int above = QWidget::height() - (m_lanes->visible() ? m_lanes->minimumSize().height() : 0) - height;
    m_values->axis(QCPAxis::atBottom)
        ->ticker()
        ->setTickCount(qBound(2, (QWidget::width() - sides) / (label + gap), mostTimes));
    for (const QCPAxis::AxisType side : {QCPAxis::atLeft, QCPAxis::atRight}) {
        m_values->axis(side)->ticker()->setTickCount(qBound(3, above / height, 6));
    }
}

void HistoryCanvas::resizeEvent(QResizeEvent *event)
{
    fitTicks();
    if (!size().isEmpty()) { // it cannot draw on nothing
        QCustomPlot::resizeEvent(event);
    }
}

void HistoryCanvas::takeColours()
{
    setBackground(cardColour(palette()));
    for (const QCPAxisRect *part : {m_values, m_lanes}) {
        applyAxesLook(*part, palette(), font());
    }
    m_cursor.applyLook(palette());
    for (auto &[channel, curve] : m_curves) {
        applySeriesLook(*curve.graph, channel, curve.isSteps, palette());
    }
    redraw();
}

// The place under the mouse, or that the keys went to

void HistoryCanvas::pointAt(const QPointF &position)
{
    const QPoint pixel = position.toPoint();
    const bool isLanes = m_lanes->visible() && m_lanes->rect().contains(pixel);
    const QCPAxisRect &part = isLanes ? *m_lanes : *m_values;
    if (part.visible() && part.rect().contains(pixel)) {
        show(placeAt(position, part, isLanes, m_curves));
    } else {
        pointAway();
    }
}

void HistoryCanvas::pointAway()
{
    show(std::nullopt);
}

void HistoryCanvas::step(int direction)
{
    const double from = place() ? place()->time : direction > 0 ? time().lower : time().upper;
    if (const auto next = nextPlace(from, direction, m_curves)) {
        if (!time().contains(next->time)) {
            setTime(time() + (next->time - time().center()));
        }
        show(next);
    }
}

void HistoryCanvas::show(const std::optional<PlotPlace> &shown)
{
    if (!shown && !place()) {
        return;
    }
    m_cursor.show(shown, shown && shown->channel > 0 ? m_curves.at(shown->channel).graph : nullptr);
    if (isVisible()) {
        layer(QStringLiteral("overlay"))->replot();
    }
    m_placeChanged();
}

} // namespace ktr
