#include "opmode/curves/curve_range.h"

#include <algorithm>

namespace ktr {

namespace {

QDateTime momentOf(qint64 at)
{
    return QDateTime::fromMSecsSinceEpoch(at);
}

QDateTime movedBy(CurveSpan span, const QDateTime &moment, int count)
{
    constexpr int daysOfAWeek = 7;
    switch (span) {
    case CurveSpan::Hour:
        return moment.addMSecs(curveHourMs * count);
    case CurveSpan::Week:
        return moment.addDays(qint64{daysOfAWeek} * count);
    case CurveSpan::Month:
        return moment.addMonths(count);
    case CurveSpan::Year:
        return moment.addYears(count);
    case CurveSpan::Day:
    case CurveSpan::Own:
        break;
    }
    return moment.addDays(count);
}

} // namespace

CurveRange rangeEndingAt(CurveSpan span, qint64 to)
{
    return {movedBy(span, momentOf(to), -1).toMSecsSinceEpoch(), to};
}

CurveRange rangeAround(CurveSpan span, const QDate &day)
{
    QDate first = day;
    if (span == CurveSpan::Week) {
        first = day.addDays(1 - day.dayOfWeek());
    } else if (span == CurveSpan::Month) {
        first = QDate(day.year(), day.month(), 1);
    } else if (span == CurveSpan::Year) {
        first = QDate(day.year(), 1, 1);
    }
    const QDateTime begin = first.startOfDay();
    if (span == CurveSpan::Hour) {
        return {begin.toMSecsSinceEpoch(), begin.toMSecsSinceEpoch() + curveHourMs};
    }
    return {begin.toMSecsSinceEpoch(), movedBy(span, begin, 1).toMSecsSinceEpoch()};
}

CurveRange steppedRange(CurveSpan span, const CurveRange &range, int steps)
{
    if (span == CurveSpan::Own) {
        return {range.from + range.length() * steps, range.to + range.length() * steps};
    }
    return {movedBy(span, momentOf(range.from), steps).toMSecsSinceEpoch(),
            movedBy(span, momentOf(range.to), steps).toMSecsSinceEpoch()};
}

CurveRange boundedRange(const CurveRange &range)
{
    const qint64 middle = range.from + range.length() / 2;
    const qint64 length = std::clamp(range.length(), shortestCurveRange, longestCurveRange);
    const qint64 from = std::max<qint64>(0, middle - length / 2);
    return {from, from + length};
}

HistoryLevel levelOf(const CurveRange &range)
{
    constexpr qint64 longestRaw = 3 * curveDayMs;
    constexpr qint64 longestByQuarters = 35 * curveDayMs;
    constexpr qint64 longestByHours = 130 * curveDayMs;
    return range.length() <= longestRaw          ? HistoryLevel::Raw
           : range.length() <= longestByQuarters ? HistoryLevel::QuarterHour
           : range.length() <= longestByHours    ? HistoryLevel::Hour
                                                 : HistoryLevel::Day;
}

} // namespace ktr
