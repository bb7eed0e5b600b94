#include "opmode/curves/curve_points.h"

#include <QDateTime>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

/// Modules send at steps of their own: what is far longer than most of them is a gap.
qint64 longestStepOf(const CurvePoints &curve)
{
    constexpr qint64 stepsLeftOut = 3;
    constexpr qint64 least = qint64{2} * 60'000;
    std::vector<qint64> steps;
    for (std::size_t i = 1; i < curve.points.size(); ++i) {
        steps.push_back(curve.points[i].middle() - curve.points[i - 1].middle());
    }
    if (steps.empty()) {
        return least;
    }
    // Not the middle one: many inputs send more often while they change.
    const auto usual = steps.begin() + static_cast<std::ptrdiff_t>((steps.size() - 1) * 3 / 4);
    std::ranges::nth_element(steps, usual);
    return std::max(least, *usual * stepsLeftOut + 1);
}

} // namespace

qint64 lengthOf(HistoryLevel level)
{
    switch (level) {
    case HistoryLevel::QuarterHour:
        return curveHourMs / 4;
    case HistoryLevel::Hour:
        return curveHourMs;
    case HistoryLevel::Day:
        return curveDayMs;
    case HistoryLevel::Raw:
        break;
    }
    return 0;
}

const CurvePoint *CurvePoints::at(qint64 moment) const
{
    const auto behind =
        std::ranges::upper_bound(points, moment, std::less(), [](const CurvePoint &each) { return each.at; });
    const auto isCutOff = [this](qint64 from, qint64 to) { return gapIn({from, to}) != nullptr; };
    const CurvePoint *before = behind == points.begin() ? nullptr : &*std::prev(behind);
    if (before != nullptr && moment < before->end) {
        return before;
    }
    if (level != HistoryLevel::Raw) {
        return nullptr;
    }
    const qint64 sinceBefore =
        before == nullptr || isCutOff(before->at, moment + 1) ? longestStep + 1 : moment - before->at;
    if (areStates) {
        return sinceBefore <= longestStep ? before : nullptr;
    }
    const CurvePoint *after = behind == points.end() ? nullptr : &*behind;
    const qint64 untilAfter =
        after == nullptr || isCutOff(moment, after->at) ? longestStep + 1 : after->at - moment;
    const qint64 nearest = std::min(sinceBefore, untilAfter);
    return nearest > longestStep / 2 ? nullptr : sinceBefore <= untilAfter ? before : after;
}

const CurvePoint *CurvePoints::next(qint64 moment, int direction) const
{
    const auto middle = [](const CurvePoint &each) { return each.middle(); };
    if (direction > 0) {
        const auto found = std::ranges::upper_bound(points, moment, std::less(), middle);
        return found == points.end() ? nullptr : &*found;
    }
    const auto found = std::ranges::lower_bound(points, moment, std::less(), middle);
    return found == points.begin() ? nullptr : &*std::prev(found);
}

std::pair<std::size_t, std::size_t> CurvePoints::within(const CurveRange &range) const
{
    const auto middle = [](const CurvePoint &each) { return each.middle(); };
    const auto first = std::ranges::lower_bound(points, range.from, std::less(), middle);
    const auto end = std::ranges::lower_bound(points, range.to, std::less(), middle);
    return {static_cast<std::size_t>(first - points.begin()), static_cast<std::size_t>(end - points.begin())};
}

bool CurvePoints::joins(std::size_t left) const
{
    return left + 1 < points.size() && points[left + 1].middle() - points[left].middle() <= longestStep;
}

const CurveRange *CurvePoints::gapIn(const CurveRange &range) const
{
    const auto found = std::ranges::upper_bound(gaps, range.from, std::less(), &CurveRange::to);
    return found != gaps.end() && found->from < range.to ? &*found : nullptr;
}

std::vector<CurvePoints::LinePlace> CurvePoints::line(double CurvePoint::*value) const
{
    std::vector<LinePlace> line;
    line.reserve(points.size() + 3 * gaps.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const qint64 at = points[i].middle();
        line.push_back({at, points[i].*value});
        if (i + 1 < points.size() && !joins(i)) {
            line.push_back({at + 1, std::nullopt});
        } else if (i + 1 < points.size()) {
            joinAround(i, value, line);
        }
    }
    return line;
}

/// From a point to the next one, but for the gaps between them. Behind one a state is not known.
void CurvePoints::joinAround(std::size_t left, double CurvePoint::*value, std::vector<LinePlace> &line) const
{
    const CurvePoint &begin = points[left];
    const CurvePoint &end = points[left + 1];
    const auto between = [&](qint64 at) {
        const double part =
            static_cast<double>(at - begin.middle()) / static_cast<double>(end.middle() - begin.middle());
        return areStates ? begin.*value : begin.*value + (end.*value - begin.*value) * part;
    };
    CurveRange rest{begin.middle(), end.middle()};
    for (const CurveRange *gap = gapIn(rest); gap != nullptr; gap = gapIn(rest)) {
        const qint64 from = std::max(gap->from, rest.from);
        if (from > begin.middle()) {
            line.push_back({from, between(from)});
        }
        line.push_back({from + 1, std::nullopt});
        rest.from = gap->to;
        if (areStates || rest.from >= rest.to - 1) {
            return;
        }
        line.push_back({rest.from, between(rest.from)});
    }
}

CurveBuilder::CurveBuilder(HistoryLevel level, const CurveRange &range)
{
    m_points.level = level;
    m_points.read = range;
}

void CurveBuilder::begin(qint64 at)
{
    CurvePoint point;
    const qint64 length = lengthOf(m_points.level);
    if (m_points.level == HistoryLevel::Day) {
        const QDate day = QDateTime::fromMSecsSinceEpoch(at).date();
        point.at = day.startOfDay().toMSecsSinceEpoch();
        point.end = day.addDays(1).startOfDay().toMSecsSinceEpoch();
    } else if (length > 0) {
        point.at = at - at % length;
        point.end = point.at + length;
    } else {
        point.at = point.end = at;
    }
    m_points.points.push_back(point);
}

/// The mean is a sum so far.
void CurveBuilder::endPoint()
{
    if (!m_points.points.empty()) {
        CurvePoint &last = m_points.points.back();
        last.mean /= static_cast<double>(last.count);
    }
}

void CurveBuilder::add(qint64 at, double value)
{
    std::vector<CurvePoint> &points = m_points.points;
    if (m_points.level == HistoryLevel::Raw && !points.empty() && points.back().at == at) {
        points.pop_back(); // it was archived and reported
    }
    add({at, 1, value, value, value});
}

void CurveBuilder::add(const RecordReader::MeasuredSpan &span)
{
    const auto isState = [](double value) { return value == 0 || value == 1; };
    m_areStates = m_areStates && isState(span.least) && isState(span.most);
    std::vector<CurvePoint> &points = m_points.points;
    const bool isRaw = m_points.level == HistoryLevel::Raw;
    if (points.empty() || isRaw || span.at >= points.back().end) {
        if (!isRaw) {
            endPoint();
        }
        begin(span.at);
        points.back().least = span.least;
        points.back().most = span.most;
    }
    CurvePoint &point = points.back();
    point.least = std::min(point.least, span.least);
    point.most = std::max(point.most, span.most);
    point.mean += span.sum;
    point.count += span.count;
}

CurvePoints CurveBuilder::take()
{
    if (m_points.level != HistoryLevel::Raw) {
        endPoint();
    }
    m_points.longestStep = longestStepOf(m_points);
    m_points.areStates = m_areStates && !m_points.points.empty();
    return std::move(m_points);
}

CurveRange riseRange(const CurveRange &shown, std::optional<qint64> moment, qint64 step)
{
    constexpr qint64 aMinute = 60'000;
    constexpr qint64 parts = 5;
    constexpr std::array lengths{aMinute,         2 * aMinute,      5 * aMinute,      10 * aMinute,
                                 15 * aMinute,    30 * aMinute,     curveHourMs,      2 * curveHourMs,
                                 4 * curveHourMs, 6 * curveHourMs,  12 * curveHourMs, curveDayMs,
                                 2 * curveDayMs,  5 * curveDayMs,   10 * curveDayMs,  30 * curveDayMs,
                                 60 * curveDayMs, 180 * curveDayMs, 360 * curveDayMs, 720 * curveDayMs};
    const auto above = std::ranges::upper_bound(lengths, shown.length() / parts);
    const qint64 usual = above == lengths.begin() ? lengths.front() : *std::prev(above);
    const auto enough = std::ranges::lower_bound(lengths, std::max(usual, step));
    if (!moment || enough == lengths.end() || *enough >= shown.length()) {
        return shown;
    }
    const qint64 from = std::clamp(*moment - *enough / 2, shown.from, shown.to - *enough);
    return {from, from + *enough};
}

std::optional<double> risePerHour(const CurvePoints &points, const CurveRange &range)
{
    const auto [first, end] = points.within(range);
    double weight = 0;
    double times = 0;
    double values = 0;
    const auto hours = [&range](const CurvePoint &point) {
        return static_cast<double>(point.middle() - range.from) / static_cast<double>(curveHourMs);
    };
    for (std::size_t i = first; i < end; ++i) {
        const auto count = static_cast<double>(points.points[i].count);
        weight += count;
        times += count * hours(points.points[i]);
        values += count * points.points[i].mean;
    }
    if (weight == 0) {
        return std::nullopt;
    }
    double across = 0;
    double both = 0;
    for (std::size_t i = first; i < end; ++i) {
        const auto count = static_cast<double>(points.points[i].count);
        const double away = hours(points.points[i]) - times / weight;
        across += count * away * away;
        both += count * away * (points.points[i].mean - values / weight);
    }
    return across > 0 ? std::optional(both / across) : std::nullopt;
}

} // namespace ktr
