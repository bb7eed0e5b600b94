#include "opmode/window/history/history_canvas.h"

#include "config/channel_use.h"
#include "look/palettes.h"
#include "opmode/window/history/plot_look.h"

namespace ktr {

namespace {

constexpr double shortestTime = 5 * 60;

bool canBeSteps(int channel)
{
    return channel <= 4 || fixedMeasure(channel) == Measure::Binary;
}

bool isZeroOrOne(const QCPGraphData &point)
{
    return point.value == 0 || point.value == 1;
}

} // namespace

HistoryCanvas::HistoryCanvas(QWidget *parent, std::function<void()> placeChanged)
    : QCustomPlot(parent), m_placeChanged(std::move(placeChanged)), m_parts(*this), m_cursor(m_parts.both())
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    setNoAntialiasingOnDrag(true);
    for (QCPAxisRect *part : m_parts.both()) {
        connect(part->axis(QCPAxis::atBottom), qOverload<const QCPRange &>(&QCPAxis::rangeChanged), this,
                &HistoryCanvas::timeChanged);
    }
    takeColours();
    arrange();
}

void HistoryCanvas::removeCurves()
{
    pointAway();
    for (auto &[channel, curve] : m_curves) {
        removeGraph(curve.graph);
        if (curve.lane != nullptr) {
            m_parts.lanes().removeAxis(curve.lane);
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
        curve.lane = m_parts.lanes().addAxis(QCPAxis::atLeft);
        curve.lane->setVisible(false);
    } else if (!curve.isSteps && curve.lane != nullptr) {
        m_parts.lanes().removeAxis(curve.lane);
        curve.lane = nullptr;
    }
    QCPAxisRect &part = curve.isSteps ? m_parts.lanes() : m_parts.values();
    curve.graph =
        addGraph(part.axis(QCPAxis::atBottom), curve.isSteps ? curve.lane : part.axis(QCPAxis::atLeft));
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

void HistoryCanvas::arrange()
{
    for (auto &[channel, curve] : m_curves) {
        if (curve.isSteps != (curve.lane != nullptr)) {
            recreate(channel, curve);
        }
        curve.graph->setVisible(curve.isShown);
    }
    setMinimumHeight(m_parts.arrange(m_curves));
    m_parts.fitTicks(QWidget::size(), fontMetrics());
    scaleValues();
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
    m_parts.values().axis(QCPAxis::atBottom)->setRange(range);
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
    m_parts.setTime(kept); // the signal does not come again for the same one
    scaleValues();
}

void HistoryCanvas::scaleValues()
{
    m_parts.scale(m_curves);
    redraw();
}

void HistoryCanvas::setTitles(const QString &values, const QString &counters)
{
    m_parts.setTitles(values, counters);
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

void HistoryCanvas::resizeEvent(QResizeEvent *event)
{
    m_parts.fitTicks(QWidget::size(), fontMetrics());
    if (!size().isEmpty()) { // it cannot draw on nothing
        QCustomPlot::resizeEvent(event);
    }
}

void HistoryCanvas::takeColours()
{
    setBackground(cardColour(palette()));
    m_parts.applyLook(palette(), font());
    m_cursor.applyLook(palette());
    for (auto &[channel, curve] : m_curves) {
        applySeriesLook(*curve.graph, channel, curve.isSteps, palette());
    }
    redraw();
}

// The place under the mouse, or that the keys went to

void HistoryCanvas::pointAt(const QPointF &position)
{
    if (const QCPAxisRect *part = m_parts.at(position.toPoint())) {
        show(placeAt(position, *part, part == &m_parts.lanes(), m_curves));
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
