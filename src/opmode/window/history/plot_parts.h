#pragma once

#include "config/channel_names.h"
#include "opmode/window/history/plot_frame.h"
#include "opmode/window/history/plot_places.h"

namespace ktr {

/// The frame of the plot of a station: curves of values above, with an axis at each side, and lanes of steps
/// below. Gives them their axes and the numbers at them.
class PlotParts : public PlotFrame
{
public:
    explicit PlotParts(QCustomPlot &plot);

    /// What the user calls the inputs; shown by the next arrange().
    void setNames(const ChannelNames &names) { m_names = names; }
    const ChannelNames &names() const { return m_names; }
    void setTitles(const QString &values, const QString &counters);
    /// Gives every shown curve its axis. Returns the least height at which the plot can be read.
    int arrange(const PlotCurves &curves);
    /// Puts as many numbers at the axes as have room in a plot of this size.
    void fitTicks(const QSize &plot, const QFontMetrics &metrics);
    /// Brings the values of the shown time into sight.
    void scale(const PlotCurves &curves);

private:
    ChannelNames m_names;
    QString m_valuesTitle;
    QString m_countersTitle;
};

} // namespace ktr
