#include "opmode/curves/curve_axes.h"

#include <algorithm>

namespace ktr {

CurveScale scaleOf(CurveForm form, const CurvePoints &points, const CurveRange &range)
{
    constexpr double percent = 100;
    const auto [first, end] = points.within(range);
    if (form == CurveForm::Measured || first == end) {
        return {};
    }
    if (form == CurveForm::Change) {
        return {points.points[first].mean, 1};
    }
    double least = points.points[first].least;
    double most = points.points[first].most;
    for (std::size_t i = first; i < end; ++i) {
        least = std::min(least, points.points[i].least);
        most = std::max(most, points.points[i].most);
    }
    return most > least ? CurveScale{least, percent / (most - least)} : CurveScale{least, 1};
}

QList<CurveAxis> axesOf(const QList<CurveSeries> &series)
{
    QList<CurveAxis> axes;
    for (int place = 0; place < series.size(); ++place) {
        const QString &unit = series[place].unit;
        auto axis = std::ranges::find(axes, unit, &CurveAxis::unit);
        if (axis == axes.end()) {
            axes += CurveAxis{unit, {}, {}, {}};
            axis = axes.end() - 1;
        }
        axis->series += place;
    }
    for (CurveAxis &axis : axes) {
        QStringList &names = axis.names;
        for (const int place : std::as_const(axis.series)) {
            if (!names.contains(series[place].input)) {
                names += series[place].input;
            }
        }
        constexpr qsizetype mostNames = 3;
        const bool areMore = names.size() > mostNames;
        axis.title = names.first(std::min(mostNames, names.size())).join(QStringLiteral(", ")) +
                     (areMore ? QStringLiteral(", …") : QString()) +
                     (axis.unit.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(axis.unit));
    }
    return axes;
}

} // namespace ktr
