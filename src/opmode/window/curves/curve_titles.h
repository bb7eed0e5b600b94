#pragma once

#include "opmode/curves/curve_axes.h"

#include <QFontMetrics>

namespace ktr {

/// Something of each station and of its input, by which lanes can be told apart; the list of curves has both
/// as a whole. Where all are of one station the inputs alone.
QStringList laneNames(const QList<CurveSeries> &lanes);
/// As much of an axis' title as has room in so many pixels, but its unit as a whole.
QString titleWithin(const CurveAxis &axis, int room, const QFontMetrics &metrics);
/// With the names of all inputs on it.
QString wholeTitle(const CurveAxis &axis);

} // namespace ktr
