#pragma once

#include "opmode/curves/curve_range.h"

#include <optional>
#include <vector>

namespace ktr {

/// What was measured at a moment, or in a part of an hour, an hour or a day.
struct CurvePoint
{
    qint64 at = 0;
    qint64 end = 0; ///< of a value that was measured, the same
    double least = 0;
    double mean = 0;
    double most = 0;
    qint64 count = 0;
    /// Where it is drawn.
    qint64 middle() const { return at + (end - at) / 2; }
    bool operator==(const CurvePoint &) const = default;
};

/// The points of a curve, the oldest first.
struct CurvePoints
{
    HistoryLevel level = HistoryLevel::Raw;
    CurveRange read; ///< the time that they were read of
    std::vector<CurvePoint> points;
    qint64 longestStep = 0; ///< points further from each other are not joined: nothing was heard between them
    bool areStates = false; ///< only 0 and 1, each of which lasts until the next
    std::vector<CurveRange> gaps; ///< in which nobody heard the station, one after the other

    /// The point that stands for a moment: the nearest within half a step, or of states the last one;
    /// null where nothing was heard.
    const CurvePoint *at(qint64 moment) const;
    /// The first point that is drawn behind a moment, or with -1 the last one before it; null for none.
    const CurvePoint *next(qint64 moment, int direction) const;
    /// Those that are drawn within a time.
    std::pair<std::size_t, std::size_t> within(const CurveRange &range) const;
    bool joins(std::size_t left) const; ///< the point and the next one
    /// The first gap that has a part of a time; null for none.
    const CurveRange *gapIn(const CurveRange &range) const;

    /// A place of the line that is drawn through the points.
    struct LinePlace
    {
        qint64 at = 0;
        std::optional<double> value; ///< nothing: the line ends before and begins again behind it
    };
    /// The line of one of the values; of states each lasts until the next. It leaves out the gaps.
    std::vector<LinePlace> line(double CurvePoint::*value) const;

private:
    void joinAround(std::size_t left, double CurvePoint::*value, std::vector<LinePlace> &line) const;
};

/// Makes points of a level from values in the order of their times. Days are those of the wall clock.
class CurveBuilder
{
public:
    CurveBuilder(HistoryLevel level, const CurveRange &range);
    void add(qint64 at, double value);
    /// Values that were put together to a part of a point, or a whole one.
    void add(const RecordReader::MeasuredSpan &span);
    CurvePoints take();

private:
    void begin(qint64 at);
    void endPoint();

    CurvePoints m_points;
    bool m_areStates = true;
};

qint64 lengthOf(HistoryLevel level); ///< of a point; of a day an usual one's; 0 of a value

/// By how much the values rise in an hour, by the straight line nearest to them; nothing with less than two
/// points, or where all are of one moment.
std::optional<double> risePerHour(const CurvePoints &points, const CurveRange &range);

/// The time whose rise is told: all that is shown, or around a moment about a fifth of it, of a length that
/// is told in a word, in which there are several values of `step` between each other.
CurveRange riseRange(const CurveRange &shown, std::optional<qint64> moment, qint64 step);

} // namespace ktr
