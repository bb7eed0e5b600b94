#pragma once

#include "record/record_reader.h"

#include <QDate>

namespace ktr {

inline constexpr qint64 curveHourMs = 3'600'000;
inline constexpr qint64 curveDayMs = 24 * curveHourMs;

/// A time that curves are shown of, in milliseconds since 1970, UTC.
struct CurveRange
{
    qint64 from = 0;
    qint64 to = 0; ///< before this
    qint64 length() const { return to - from; }
    bool contains(qint64 at) const { return at >= from && at < to; }
    bool contains(const CurveRange &other) const { return other.from >= from && other.to <= to; }
    bool operator==(const CurveRange &) const = default;
};

/// How long a time is shown. What was zoomed or typed is of its own length.
enum class CurveSpan { Hour, Day, Week, Month, Year, Own };
inline constexpr int chosenSpans = 5; ///< that have a length

inline constexpr qint64 shortestCurveRange = 60'000;
inline constexpr qint64 longestCurveRange = 20LL * 366 * 86'400'000;

/// The time of such a length that ends at a moment. Days, weeks and so on are those of the wall clock. A span
/// of its own is a day.
CurveRange rangeEndingAt(CurveSpan span, qint64 to);
/// The whole day, week, month or year that a day is in; of an hour the day's first one.
CurveRange rangeAround(CurveSpan span, const QDate &day);
/// The range so many lengths later, or with a negative number earlier.
CurveRange steppedRange(CurveSpan span, const CurveRange &range, int steps);
/// Not shorter or longer than can be shown, around the same middle.
CurveRange boundedRange(const CurveRange &range);

/// The level at which there are some thousand points at most in a time, where values come each 15 minutes.
HistoryLevel levelOf(const CurveRange &range);

} // namespace ktr
