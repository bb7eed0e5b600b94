#pragma once

#include "opmode/curves/curve_points.h"
#include "opmode/curves/curve_series.h"

namespace ktr {

/// How values are shown.
enum class CurveForm {
    Measured,
    Change,     ///< since the beginning of the time that is shown
    Normalised, ///< in percent between the least and the greatest value in that time
};

/// How a series' values are shown: (value - zero) * factor.
struct CurveScale
{
    double zero = 0;
    double factor = 1;
    double shown(double value) const { return (value - zero) * factor; }
    double measured(double value) const { return value / factor + zero; }
    bool operator==(const CurveScale &) const = default;
};
CurveScale scaleOf(CurveForm form, const CurvePoints &points, const CurveRange &range);

/// An axis for all series of a unit.
struct CurveAxis
{
    QString unit;
    QString title;       ///< what is shown on it, with the unit
    QStringList names{}; ///< of all inputs on it
    QList<int> series{}; ///< their places in the list
};
inline constexpr int mostAxes = 4;

/// One for each unit, in the order of the series. More than mostAxes cannot be shown.
QList<CurveAxis> axesOf(const QList<CurveSeries> &series);

} // namespace ktr
