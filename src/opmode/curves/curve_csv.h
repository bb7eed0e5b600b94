#pragma once

#include "opmode/curves/curve_axes.h"

#include <memory>

namespace ktr {

/// A curve as it is shown.
struct ShownCurve
{
    CurveSeries series;
    std::shared_ptr<const CurvePoints> points; ///< null while it was not read
    CurveScale scale{};
    QString unit{}; ///< of the scaled values
};

/// What is seen as a table for spreadsheets: a line for each time, with the zone's offset, and for each
/// series its value, or least, mean and greatest one.
QByteArray curvesCsv(const QList<ShownCurve> &curves, const CurveRange &range);

} // namespace ktr
