#pragma once

#include "config/channel_names.h"
#include "opmode/window/history/plot_places.h"

#include <array>

namespace ktr {

/// The two parts of a plot over one time: curves of values above, with an axis at each side, and lanes of
/// steps below. Gives them their room, their axes and the numbers at them.
class PlotParts
{
public:
    explicit PlotParts(QCustomPlot &plot);
    PlotParts(const PlotParts &) = delete; // the parts are the plot's
    PlotParts &operator=(const PlotParts &) = delete;

    QCPAxisRect &values() { return *m_values; }
    QCPAxisRect &lanes() { return *m_lanes; }
    std::array<QCPAxisRect *, 2> both() const { return {m_values, m_lanes}; }
    /// The visible one that a position lies in; null for none.
    const QCPAxisRect *at(const QPoint &position) const;

    QCPRange time() const { return m_values->axis(QCPAxis::atBottom)->range(); }
    /// Of both.
    void setTime(const QCPRange &time);

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
    void applyLook(const QPalette &palette, const QFont &font);

private:
    void placeLanes(const std::vector<int> &channels, const PlotCurves &curves, bool alone);

    QCPAxisRect *m_values;
    QCPAxisRect *m_lanes;
    ChannelNames m_names;
    QString m_valuesTitle;
    QString m_countersTitle;
};

} // namespace ktr
