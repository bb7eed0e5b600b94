#include "opmode/window/history/plot_places.h"

namespace ktr {

PlotPlace placeAt(const QPointF &position, const QCPAxisRect &part, bool isLanes, const PlotCurves &curves)
{
    constexpr double reach = 60; // pixels
    const double moment = part.axis(QCPAxis::atBottom)->pixelToCoord(position.x());
    const double height = part.axis(QCPAxis::atLeft)->pixelToCoord(position.y());
    PlotPlace best{0, moment, isLanes ? qQNaN() : height};
    double bestDistance = reach * reach;
    for (const auto &[channel, curve] : curves) {
        if (!curve.isShown || curve.isSteps != isLanes || curve.graph->data()->isEmpty()) {
            continue;
        }
        const auto points = curve.graph->data();
        auto point = points->findBegin(moment);
        for (int neighbour = 0; neighbour < 2 && point != points->constEnd(); ++neighbour, ++point) {
            const bool holds = curve.isSteps && point->key <= moment; // a step lasts until the next
            if (curve.isSteps && !holds) {
                break;
            }
            const double across = holds ? 0 : curve.graph->keyAxis()->coordToPixel(point->key) - position.x();
            const double shown = curve.isSteps ? 0.5 : point->value;
            const double up = curve.graph->valueAxis()->coordToPixel(shown) - position.y();
            const double distance = across * across + up * up;
            if (distance <= bestDistance) {
                bestDistance = distance;
                best = {channel, point->key, point->value};
            }
        }
    }
    return best;
}

std::optional<PlotPlace> nextPlace(double from, int direction, const PlotCurves &curves)
{
    std::optional<PlotPlace> next;
    for (const auto &[channel, curve] : curves) {
        const auto points = curve.graph->data();
        if (!curve.isShown || points->isEmpty()) {
            continue;
        }
        // A whole second: times are whole, and one moment may have several values.
        auto point = points->findBegin(direction > 0 ? from + 1 : from, false);
        if (direction < 0 && point == points->constBegin()) {
            continue;
        }
        point -= direction < 0 ? 1 : 0;
        if (point != points->constEnd() &&
            (!next || (direction > 0 ? point->key < next->time : point->key > next->time))) {
            next = {channel, point->key, point->value};
        }
    }
    return next;
}

} // namespace ktr
