#pragma once

#include "opmode/window/history/qcustomplot_header.h"

#include <map>
#include <optional>

namespace ktr {

/// How the values of a channel are drawn.
struct PlotCurve
{
    QCPGraph *graph;
    bool isSteps; ///< only 0 and 1 so far
    bool isShown;
    QCPAxis *lane; ///< the value axis of steps
};
using PlotCurves = std::map<int, PlotCurve>; ///< by their channels

/// An entry; or a place between entries, then without a channel and with the value of the left axis, which
/// lanes have none of.
struct PlotPlace
{
    int channel;
    double time;
    double value;
};

/// What stands at a position within a part of the plot: the nearest entry of the curves shown there, if one
/// is near enough. In the lanes that is the step that lasts there.
PlotPlace placeAt(const QPointF &position, const QCPAxisRect &part, bool isLanes, const PlotCurves &curves);

/// The next entry of the shown curves after a time, or with -1 before it.
std::optional<PlotPlace> nextPlace(double from, int direction, const PlotCurves &curves);

} // namespace ktr
