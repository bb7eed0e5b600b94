#include "opmode/window/curves/curve_titles.h"

#include "opmode/curves/telling_names.h"
#include "opmode/window/history/plot_frame.h"

#include <algorithm>

namespace ktr {

namespace {

QString unitOf(const CurveAxis &axis)
{
    return axis.unit.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(axis.unit);
}

} // namespace

QStringList laneNames(const QList<CurveSeries> &lanes)
{
    QStringList stations;
    QStringList inputs;
    qsizetype longest = 0;
    for (const CurveSeries &lane : lanes) {
        stations += lane.station;
        inputs += lane.input;
        longest = std::max(longest, lane.input.size());
    }
    constexpr qsizetype room = PlotLane::longest - 1;
    const qsizetype ofStation = std::max(room / 2, room - longest);
    const auto upTo = [](qsizetype length) {
        return [length](const QString &text) { return text.size() <= length; };
    };
    const bool isOne =
        std::ranges::all_of(stations, [&](const QString &each) { return each == stations[0]; });
    const QStringList tellingStations = tellingNames(stations, upTo(isOne ? 0 : ofStation));
    const QStringList tellingInputs = tellingNames(inputs, upTo(isOne ? room : room - ofStation));
    QStringList names;
    for (qsizetype i = 0; i < lanes.size(); ++i) {
        names += isOne ? tellingInputs[i] : tellingStations[i] + u' ' + tellingInputs[i];
    }
    return names;
}

QString titleWithin(const CurveAxis &axis, int room, const QFontMetrics &metrics)
{
    if (metrics.horizontalAdvance(axis.title) <= room) {
        return axis.title;
    }
    const QString unit = unitOf(axis);
    const int ofNames = room - metrics.horizontalAdvance(unit);
    const qsizetype count = std::min<qsizetype>(2, axis.names.size());
    const int ofEach = ofNames / static_cast<int>(count) - metrics.horizontalAdvance(QStringLiteral(", "));
    const QStringList names = tellingNames(
        axis.names, [&](const QString &text) { return metrics.horizontalAdvance(text) <= ofEach; });
    QString text = names.first(count).join(QStringLiteral(", "));
    text += names.size() > count ? QStringLiteral(", …") : QString();
    return metrics.elidedText(text, Qt::ElideRight, ofNames) + unit;
}

QString wholeTitle(const CurveAxis &axis)
{
    return axis.names.join(QStringLiteral(", ")) + unitOf(axis);
}

} // namespace ktr
