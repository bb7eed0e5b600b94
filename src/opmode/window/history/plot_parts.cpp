#include "opmode/window/history/plot_parts.h"

#include "config/channel_use.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/input_caption.h"

namespace ktr {

namespace {

bool isCounter(int channel)
{
    return channel <= 8 || fixedMeasure(channel) == Measure::Hours ||
           fixedMeasure(channel) == Measure::Binary;
}

} // namespace

PlotParts::PlotParts(QCustomPlot &plot) : PlotFrame(plot, Qt::UTC)
{
    for (const QCPAxis::AxisType side : {QCPAxis::atLeft, QCPAxis::atRight}) {
        values().axis(side)->setNumberFormat(QStringLiteral("g"));
        values().axis(side)->setNumberPrecision(9);
    }
    values().axis(QCPAxis::atRight)->setTickLabels(true);
}

void PlotParts::setTitles(const QString &values, const QString &counters)
{
    m_valuesTitle = values;
    m_countersTitle = counters;
}

int PlotParts::arrange(const PlotCurves &curves)
{
    std::vector<int> lanes;
    bool anyLine = false;
    bool anyCounter = false;
    for (const auto &[channel, curve] : curves) {
        if (curve.isShown && curve.isSteps) {
            lanes.push_back(channel);
        } else if (curve.isShown) {
            (isCounter(channel) ? anyCounter : anyLine) = true;
        }
    }
    const bool hasTwoAxes = anyLine && anyCounter;
    QCPAxis *left = values().axis(QCPAxis::atLeft);
    QCPAxis *right = values().axis(QCPAxis::atRight);
    for (const auto &[channel, curve] : curves) {
        if (!curve.isSteps) {
            curve.graph->setValueAxis(hasTwoAxes && isCounter(channel) ? right : left);
        }
    }
    right->setVisible(hasTwoAxes);
    right->setLabel(m_countersTitle);
    left->setLabel(anyLine ? m_valuesTitle : anyCounter ? m_countersTitle : QString());
    QList<PlotLane> named;
    for (const int channel : lanes) {
        named += {curves.at(channel).lane, shortInputCaption(channel, m_names)};
    }
    return PlotFrame::arrange(named, anyLine || anyCounter);
}

void PlotParts::fitTicks(const QSize &plot, const QFontMetrics &metrics)
{
    const int numbers = PlotFrame::fitTicks(plot, metrics);
    for (const QCPAxis::AxisType side : {QCPAxis::atLeft, QCPAxis::atRight}) {
        values().axis(side)->ticker()->setTickCount(numbers);
    }
}

void PlotParts::scale(const PlotCurves &curves)
{
    for (QCPAxis *axis : {values().axis(QCPAxis::atLeft), values().axis(QCPAxis::atRight)}) {
        std::optional<QCPRange> found;
        for (const auto &[channel, curve] : curves) {
            if (!curve.isShown || curve.graph->valueAxis() != axis) {
                continue;
            }
            const auto points = curve.graph->data();
            const auto begin = points->findBegin(time().lower);
            const auto end = points->findEnd(time().upper);
            for (auto point = begin; point != end; ++point) {
                found = found ? found->expanded(QCPRange(point->value, point->value))
                              : QCPRange(point->value, point->value);
            }
            const auto count = end - begin; // marks at some of many
            curve.graph->setScatterSkip(count > 40 ? static_cast<int>(count / 12) : 0);
        }
        if (found) {
            const double margin =
                found->size() > 0 ? found->size() * 0.06 : qMax(std::abs(found->lower) * 0.05, 0.5);
            axis->setRange(found->lower - margin, found->upper + margin);
        }
    }
}

} // namespace ktr
