#include "opmode/window/curves/curves_canvas.h"

#include "look/palettes.h"
#include "opmode/window/curves/curve_look.h"
#include "opmode/window/curves/curve_titles.h"
#include "opmode/window/history/plot_look.h"
#include "opmode/window/history/series_style.h"
#include "platform/time_texts.h"

#include <QHelpEvent>
#include <QToolTip>

namespace ktr {

namespace {

constexpr double msOfASecond = 1000;
constexpr double markHeight = 0.03; ///< above the axis of time, as a part of the plot's height
constexpr int markReach = 6;        ///< pixels

double secondsAt(qint64 at)
{
    return static_cast<double>(at) / msOfASecond;
}

qint64 momentAt(double seconds)
{
    return qRound64(seconds * msOfASecond);
}

/// Where nothing was heard there is no line.
QVector<QCPGraphData> drawn(const ShownCurve &curve, double CurvePoint::*value)
{
    QVector<QCPGraphData> data;
    for (const CurvePoints::LinePlace &place : curve.points->line(value)) {
        data.append({secondsAt(place.at), place.value ? curve.scale.shown(*place.value) : qQNaN()});
    }
    return data;
}

} // namespace

CurvesCanvas::CurvesCanvas(QWidget *parent, Answers answers)
    : QCustomPlot(parent),
      m_answers(std::move(answers)),
      m_frame(*this, Qt::LocalTime),
      m_cursor(m_frame.both()),
      m_markAxis(m_frame.values().addAxis(QCPAxis::atLeft))
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    setNoAntialiasingOnDrag(true);
    setPlottingHints(QCP::phFastPolylines);
    m_frame.values().addAxis(QCPAxis::atLeft);
    m_frame.values().addAxis(QCPAxis::atRight);
    m_markAxis->setVisible(false);
    m_markAxis->setRange(0, 1);
    for (QCPAxisRect *part : m_frame.both()) {
        connect(part->axis(QCPAxis::atBottom), qOverload<const QCPRange &>(&QCPAxis::rangeChanged), this,
                &CurvesCanvas::timeChanged);
    }
    connect(selectionRect(), &QCPSelectionRect::accepted, this,
            [this](const QRect &band) { zoomInto(band); });
    takeColours();
}

/// The first of units is at the left, the second at the right, and two more stand outside of them.
QCPAxis *CurvesCanvas::axisOf(qsizetype place)
{
    constexpr int outerLeft = 2; // the marks have one of the left
    switch (place) {
    case 0:
        return m_frame.values().axis(QCPAxis::atLeft);
    case 1:
        return m_frame.values().axis(QCPAxis::atRight);
    case 2:
        return m_frame.values().axis(QCPAxis::atLeft, outerLeft);
    default:
        return m_frame.values().axis(QCPAxis::atRight, 1);
    }
}

void CurvesCanvas::clear()
{
    clearGraphs();
    for (int i = itemCount() - 1; i >= 0; --i) {
        if (item(i)->layer() != layer(QStringLiteral("overlay"))) { // the cursor stays
            removeItem(i);
        }
    }
    for (QCPAxis *lane : std::as_const(m_laneAxes)) {
        m_frame.lanes().removeAxis(lane);
    }
    m_laneAxes.clear();
}

void CurvesCanvas::show(const CurvesShown &shown, const CurveRange &range)
{
    const QScopedValueRollback showing(m_isShowing, true);
    clear();
    m_shown = shown;
    m_range = range;
    const QList<PlotLane> lanes = addLanes();
    bool hasValues = false;
    for (qsizetype place = 0; place < mostAxes; ++place) {
        QCPAxis *axis = axisOf(place);
        bool isUsed = false;
        if (place < m_shown.axes.size()) {
            for (const int each : std::as_const(m_shown.axes[place].series)) {
                const ShownCurve &curve = m_shown.curves[each];
                if (curve.points != nullptr && !curve.points->areStates) {
                    isUsed = true;
                    addBand(curve, *axis);
                    addCurve(curve, *axis, m_frame.values());
                }
            }
        }
        axis->setVisible(isUsed || place == 0);
        axis->setTickLabels(isUsed);
        axis->setLabel(isUsed ? m_shown.axes[place].unit : QString()); // its room is known later
        hasValues = hasValues || isUsed;
    }
    m_frame.setTime({secondsAt(range.from), secondsAt(range.to)});
    addMarks();
    setMinimumHeight(m_frame.arrange(lanes, hasValues));
    for (qsizetype place = 0; place < mostAxes; ++place) {
        scale(place);
    }
    fitTitles();
    const int numbers = m_frame.fitTicks(QWidget::size(), fontMetrics());
    std::array<QList<double>, 2> named; // at the left and at the right, in pixels
    for (qsizetype place = 0; place < mostAxes; ++place) {
        axisOf(place)->ticker()->setTickCount(numbers);
        addLimits(place, named.at(static_cast<std::size_t>(place % 2)));
    }
    setCursorAt(m_cursorAt);
    replot(rpQueuedReplot);
}

/// What stands above and below the part with the values, and the times, leaves the titles no room.
void CurvesCanvas::fitTitles()
{
    constexpr int around = 48;
    const int lanes = m_frame.lanes().visible() ? m_frame.lanes().minimumSize().height() : 0;
    const int room = QWidget::height() - lanes - around;
    for (qsizetype place = 0; place < qMin<qsizetype>(mostAxes, m_shown.axes.size()); ++place) {
        if (QCPAxis *axis = axisOf(place); !axis->label().isEmpty() || axis->tickLabels()) {
            axis->setLabel(titleWithin(m_shown.axes[place], room, fontMetrics()));
        }
    }
}

QList<PlotLane> CurvesCanvas::addLanes()
{
    QList<PlotLane> lanes;
    QList<CurveSeries> series;
    for (const ShownCurve &curve : std::as_const(m_shown.curves)) {
        if (curve.points != nullptr && curve.points->areStates) {
            series += curve.series;
        }
    }
    const QStringList names = laneNames(series);
    for (const ShownCurve &curve : std::as_const(m_shown.curves)) {
        if (curve.points != nullptr && curve.points->areStates) {
            QCPAxis *axis = m_frame.lanes().addAxis(QCPAxis::atLeft);
            axis->setVisible(false);
            m_laneAxes += axis;
            lanes += {axis, names.value(lanes.size())};
            addCurve(curve, *axis, m_frame.lanes());
        }
    }
    return lanes;
}

void CurvesCanvas::addCurve(const ShownCurve &curve, QCPAxis &axis, QCPAxisRect &part)
{
    constexpr std::size_t mostMarks = 40;
    constexpr std::size_t someMarks = 12;
    QCPGraph *graph = addGraph(part.axis(QCPAxis::atBottom), &axis);
    const bool areStates = curve.points->areStates;
    graph->data()->set(drawn(curve, &CurvePoint::mean), true);
    graph->setLineStyle(areStates ? QCPGraph::lsStepLeft : QCPGraph::lsLine);
    applySeriesLook(*graph, lookOfSlot(curve.series.slot), areStates, palette());
    const auto [first, end] = curve.points->within(m_range);
    const std::size_t count = end - first;
    constexpr std::size_t many = 150;
    constexpr std::size_t dense = 1500; // of all curves together
    if (count > many) { // smooth thick lines with dashes take long to draw, and dashes could not be seen
        graph->setPen(QPen(graph->pen().color(), 1));
        graph->setAntialiased(count * static_cast<std::size_t>(m_shown.curves.size()) <= dense);
        graph->setAntialiasedFill(false);
    }
    graph->setScatterSkip(count > mostMarks ? static_cast<int>(count / someMarks) : 0);
}

/// From the least to the greatest value of each point, where there are several values.
void CurvesCanvas::addBand(const ShownCurve &curve, QCPAxis &axis)
{
    const auto &points = curve.points->points;
    if (m_shown.curves.size() > mostCurvesWithBands ||
        std::ranges::none_of(points, [](const CurvePoint &each) { return each.least < each.most; })) {
        return;
    }
    constexpr int faint = 55;
    QCPAxis *time = m_frame.values().axis(QCPAxis::atBottom);
    QCPGraph *low = addGraph(time, &axis);
    QCPGraph *high = addGraph(time, &axis);
    low->data()->set(drawn(curve, &CurvePoint::least), true);
    high->data()->set(drawn(curve, &CurvePoint::most), true);
    QColor colour = seriesColour(lookOfSlot(curve.series.slot), palette());
    colour.setAlpha(faint);
    low->setPen(Qt::NoPen);
    high->setPen(Qt::NoPen);
    high->setAntialiasedFill(false); // a smooth edge takes ten times as long
    high->setBrush(colour);
    high->setChannelFillGraph(low);
}

/// Their names stand at the side of their axis, at heights where none stands yet; others are left out.
void CurvesCanvas::addLimits(qsizetype place, QList<double> &named)
{
    if (!m_shown.hasLimits || place >= m_shown.axes.size()) {
        return;
    }
    QCPAxis &axis = *axisOf(place);
    const bool isLeft = axis.axisType() == QCPAxis::atLeft;
    QList<CurveLimit> known;
    for (const int each : std::as_const(m_shown.axes[place].series)) {
        const CurveSeries &series = m_shown.curves[each].series;
        const QColor colour = seriesColour(lookOfSlot(series.slot), palette());
        for (const CurveLimit &limit : series.limits) {
            if (known.contains(limit) || !axis.range().contains(limit.value)) {
                continue;
            }
            known += limit;
            auto *line = new QCPItemLine(this);
            line->setClipAxisRect(&m_frame.values());
            line->setPen(QPen(colour, 1.2, Qt::DashDotLine));
            line->setSelectable(false);
            setPlace(*line->start, axis, 0, limit.value);
            setPlace(*line->end, axis, 1, limit.value);
            const double height = axis.coordToPixel(limit.value);
            const double lineHeight = fontMetrics().height();
            if (std::ranges::any_of(named, [&](double other) { return qAbs(other - height) < lineHeight; })) {
                continue;
            }
            named += height;
            constexpr double beside = 0.005;
            auto *name = new QCPItemText(this);
            name->setClipAxisRect(&m_frame.values());
            const bool isAtTop = height - lineHeight < m_frame.values().top();
            name->setPositionAlignment((isLeft ? Qt::AlignLeft : Qt::AlignRight) |
                                       (isAtTop ? Qt::AlignTop : Qt::AlignBottom));
            name->setText(limit.text);
            name->setColor(colour);
            name->setFont(font());
            name->setSelectable(false);
            setPlace(*name->position, axis, isLeft ? beside : 1 - beside, limit.value);
        }
    }
}

void CurvesCanvas::setPlace(QCPItemPosition &position, QCPAxis &axis, double across, double value)
{
    position.setAxes(m_frame.values().axis(QCPAxis::atBottom), &axis);
    position.setAxisRect(&m_frame.values());
    position.setTypeX(QCPItemPosition::ptAxisRectRatio);
    position.setTypeY(QCPItemPosition::ptPlotCoords);
    position.setCoords(across, value);
}

void CurvesCanvas::addMarks()
{
    for (const bool areAlarms : {false, true}) {
        QVector<QCPGraphData> places;
        for (const CurveMark &mark : std::as_const(m_shown.marks)) {
            if (mark.isAlarm == areAlarms) {
                places.append({secondsAt(mark.at), markHeight});
            }
        }
        if (places.isEmpty()) {
            continue;
        }
        QCPGraph *graph = addGraph(m_frame.values().axis(QCPAxis::atBottom), m_markAxis);
        graph->data()->set(places);
        graph->setLineStyle(QCPGraph::lsNone);
        const QColor colour = areAlarms ? alarmText(palette()) : palette().color(QPalette::PlaceholderText);
        constexpr double size = 9;
        graph->setScatterStyle(
            QCPScatterStyle(areAlarms ? QCPScatterStyle::ssTriangle : QCPScatterStyle::ssTriangleInverted,
                            QPen(colour), QBrush(colour), size));
    }
}

void CurvesCanvas::scale(qsizetype place)
{
    if (place >= m_shown.axes.size()) {
        return;
    }
    std::optional<QCPRange> found;
    const auto take = [&found](double least, double most) {
        found = found ? found->expanded(QCPRange(least, most)) : QCPRange(least, most);
    };
    for (const int each : std::as_const(m_shown.axes[place].series)) {
        const ShownCurve &curve = m_shown.curves[each];
        if (curve.points == nullptr || curve.points->areStates) {
            continue;
        }
        const auto [first, end] = curve.points->within(m_range);
        for (std::size_t i = first; i < end; ++i) {
            const CurvePoint &point = curve.points->points[i];
            take(curve.scale.shown(point.least), curve.scale.shown(point.most));
        }
    }
    if (found && m_shown.hasLimits) { // those that are near: the others would press the curves flat
        const QCPRange measured = *found;
        const double near = qMax(measured.size(), qMax(std::abs(measured.lower), 1.0) / 10);
        for (const int each : std::as_const(m_shown.axes[place].series)) {
            for (const CurveLimit &limit : m_shown.curves[each].series.limits) {
                if (limit.value >= measured.lower - near && limit.value <= measured.upper + near) {
                    take(limit.value, limit.value);
                }
            }
        }
    }
    if (found) {
        constexpr double room = 0.06;
        constexpr double roomOfFlat = 0.05;
        constexpr double leastRoom = 0.5;
        const double margin =
            found->size() > 0 ? found->size() * room : qMax(std::abs(found->lower) * roomOfFlat, leastRoom);
        axisOf(place)->setRange(found->lower - margin, found->upper + margin);
    }
}

void CurvesCanvas::timeChanged(const QCPRange &time)
{
    if (m_isShowing) {
        return;
    }
    const CurveRange wanted = boundedRange({momentAt(time.lower), momentAt(time.upper)});
    {
        const QScopedValueRollback showing(m_isShowing, true);
        m_frame.setTime({secondsAt(wanted.from), secondsAt(wanted.to)});
    }
    m_answers.rangeWanted(wanted);
}

void CurvesCanvas::zoomInto(const QRect &band)
{
    constexpr int shortestBand = 4; // a slip of the hand
    const QRect normal = band.normalized();
    if (normal.width() >= shortestBand) {
        const QCPAxis *axis = m_frame.values().axis(QCPAxis::atBottom);
        m_answers.rangeWanted(boundedRange(
            {momentAt(axis->pixelToCoord(normal.left())), momentAt(axis->pixelToCoord(normal.right()))}));
    }
}

void CurvesCanvas::move(double parts)
{
    const auto by = static_cast<qint64>(static_cast<double>(m_range.length()) * parts);
    m_answers.rangeWanted(boundedRange({m_range.from + by, m_range.to + by}));
}

void CurvesCanvas::zoom(double factor)
{
    const qint64 centre =
        m_cursorAt && m_range.contains(*m_cursorAt) ? *m_cursorAt : m_range.from + m_range.length() / 2;
    const auto scaled = [&](qint64 length) {
        return static_cast<qint64>(static_cast<double>(length) * factor);
    };
    m_answers.rangeWanted(
        boundedRange({centre - scaled(centre - m_range.from), centre + scaled(m_range.to - centre)}));
}

// The cursor

void CurvesCanvas::setCursorAt(std::optional<qint64> moment)
{
    m_cursorAt = moment;
    m_cursor.show(moment ? std::optional(PlotPlace{0, secondsAt(*moment), qQNaN()}) : std::nullopt, nullptr);
    if (isVisible() && !m_isShowing) {
        layer(QStringLiteral("overlay"))->replot();
    }
    m_answers.cursorMoved();
}

void CurvesCanvas::step(int direction)
{
    const qint64 from = m_cursorAt ? *m_cursorAt : direction > 0 ? m_range.from : m_range.to;
    std::optional<qint64> next;
    for (const ShownCurve &curve : std::as_const(m_shown.curves)) {
        const CurvePoint *point = curve.points == nullptr ? nullptr : curve.points->next(from, direction);
        if (point != nullptr && (!next || (direction > 0) == (point->middle() < *next))) {
            next = point->middle();
        }
    }
    if (!next) {
        return;
    }
    if (!m_range.contains(*next)) {
        const qint64 by = *next - (m_range.from + m_range.length() / 2);
        m_answers.rangeWanted({m_range.from + by, m_range.to + by});
    }
    setCursorAt(next);
}

QStringList CurvesCanvas::marksAt(double pixel) const
{
    constexpr qsizetype mostLines = 12;
    const QCPAxis *axis = axisRect()->axis(QCPAxis::atBottom);
    QStringList lines;
    for (const CurveMark &mark : m_shown.marks) {
        if (qAbs(axis->coordToPixel(secondsAt(mark.at)) - pixel) <= markReach) {
            lines += wallClockText(mark.at) + QLatin1String("  ") + m_shown.stations.value(mark.station) +
                     QLatin1String(": ") + mark.text;
        }
    }
    if (lines.size() > mostLines) {
        lines = lines.first(mostLines) + QStringList{QStringLiteral("…")};
    }
    return lines;
}

/// What stands as a whole nowhere beside the curves: an axis' title, or a lane's name.
QString CurvesCanvas::titleAt(const QPoint &position)
{
    for (qsizetype place = 0; place < qMin<qsizetype>(mostAxes, m_shown.axes.size()); ++place) {
        const CurveAxis &axis = m_shown.axes[place];
        if (axisOf(place)->getPartAt(position) != QCPAxis::spNone) {
            return wholeTitle(axis);
        }
    }
    const QCPAxisRect &lanes = m_frame.lanes();
    if (!lanes.visible() || position.x() >= lanes.left() || position.y() < lanes.top() ||
        position.y() > lanes.bottom()) {
        return {};
    }
    QStringList names;
    for (const ShownCurve &curve : std::as_const(m_shown.curves)) {
        if (curve.points != nullptr && curve.points->areStates) {
            names += curve.series.name();
        }
    }
    const qsizetype lane = (position.y() - lanes.top()) * names.size() / qMax(1, lanes.height());
    return names.value(lane);
}

QStringList CurvesCanvas::marksAtCursor() const
{
    return m_cursorAt ? marksAt(axisRect()->axis(QCPAxis::atBottom)->coordToPixel(secondsAt(*m_cursorAt)))
                      : QStringList();
}

// Events

bool CurvesCanvas::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<const QHelpEvent *>(event);
        const QString title = titleAt(help->pos());
        const QStringList lines = title.isEmpty() ? marksAt(help->pos().x()) : QStringList(title);
        if (lines.isEmpty()) {
            QToolTip::hideText();
        } else {
            QToolTip::showText(help->globalPos(), lines.join(u'\n'), this);
        }
        return true;
    }
    if (event->type() == QEvent::Leave) {
        setCursorAt(std::nullopt);
    }
    return QCustomPlot::event(event);
}

void CurvesCanvas::keyPressEvent(QKeyEvent *event)
{
    constexpr double zoomFactor = 0.8;
    constexpr double part = 0.1;
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Up:
        zoom(zoomFactor);
        break;
    case Qt::Key_Minus:
    case Qt::Key_Down:
        zoom(1 / zoomFactor);
        break;
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int direction = event->key() == Qt::Key_Right ? 1 : -1;
        if (event->modifiers().testFlag(Qt::ControlModifier)) {
            step(direction);
        } else {
            move(direction * part);
        }
        break;
    }
    default:
        QCustomPlot::keyPressEvent(event);
    }
}

/// With Shift a rubber band is drawn, else the time is dragged.
void CurvesCanvas::mousePressEvent(QMouseEvent *event)
{
    setSelectionRectMode(event->modifiers().testFlag(Qt::ShiftModifier) ? QCP::srmCustom : QCP::srmNone);
    QCustomPlot::mousePressEvent(event);
}

void CurvesCanvas::mouseMoveEvent(QMouseEvent *event)
{
    QCustomPlot::mouseMoveEvent(event);
    const QCPAxisRect *part = m_frame.at(event->position().toPoint());
    setCursorAt(part == nullptr ? std::nullopt
                                : std::optional(momentAt(
                                      part->axis(QCPAxis::atBottom)->pixelToCoord(event->position().x()))));
}

void CurvesCanvas::resizeEvent(QResizeEvent *event)
{
    const int numbers = m_frame.fitTicks(QWidget::size(), fontMetrics());
    for (qsizetype place = 0; place < mostAxes; ++place) {
        axisOf(place)->ticker()->setTickCount(numbers);
    }
    fitTitles();
    if (!size().isEmpty()) { // it cannot draw on nothing
        QCustomPlot::resizeEvent(event);
    }
}

void CurvesCanvas::takeColours()
{
    setBackground(cardColour(palette()));
    m_frame.applyLook(palette(), font());
    for (qsizetype place = 2; place < mostAxes; ++place) { // as the inner ones have it
        QCPAxis *axis = axisOf(place);
        const QCPAxis *inner = axisOf(0);
        axis->setBasePen(inner->basePen());
        axis->setTickPen(inner->tickPen());
        axis->setSubTickPen(inner->subTickPen());
        axis->setTickLabelColor(inner->tickLabelColor());
        axis->setLabelColor(inner->labelColor());
        axis->setTickLabelFont(font());
        axis->setLabelFont(font());
        axis->grid()->setVisible(false);
    }
    for (qsizetype place = 0; place < mostAxes; ++place) {
        constexpr int digits = 9;
        axisOf(place)->setNumberFormat(QStringLiteral("g"));
        axisOf(place)->setNumberPrecision(digits);
    }
    m_cursor.applyLook(palette());
}

} // namespace ktr
