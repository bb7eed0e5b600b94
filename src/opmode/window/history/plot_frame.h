#pragma once

#include "opmode/window/history/qcustomplot_header.h"

#include <array>

namespace ktr {

/// A lane of steps, with an axis of its own.
struct PlotLane
{
    QCPAxis *axis;
    QString name;                            ///< of so many characters at most, or its end is left out
    static constexpr qsizetype longest = 24; ///< or the curves would have no room
};

/// A name with "…" for what is left out of it.
QString shortened(const QString &name, qsizetype longest);

/// The two parts of a plot over one time: values above, and lanes of steps below.
class PlotFrame
{
public:
    /// Times are seconds since 1970, and shown as UTC or as they are on the wall.
    PlotFrame(QCustomPlot &plot, Qt::TimeSpec times);
    PlotFrame(const PlotFrame &) = delete; // the parts are the plot's
    PlotFrame &operator=(const PlotFrame &) = delete;

    QCPAxisRect &values() { return *m_values; }
    QCPAxisRect &lanes() { return *m_lanes; }
    std::array<QCPAxisRect *, 2> both() const { return {m_values, m_lanes}; }
    /// The visible one that a position lies in; null for none.
    const QCPAxisRect *at(const QPoint &position) const;

    QCPRange time() const { return m_values->axis(QCPAxis::atBottom)->range(); }
    /// Of both.
    void setTime(const QCPRange &time);

    /// Gives the parts their room; values are shown, too, unless there are only lanes. Returns the least
    /// height at which the plot can be read.
    int arrange(const QList<PlotLane> &lanes, bool hasValues);
    /// Puts as many times below as have room in a plot of this size. Returns how many numbers have room at an
    /// axis of values.
    int fitTicks(const QSize &plot, const QFontMetrics &metrics);
    void applyLook(const QPalette &palette, const QFont &font);

private:
    void placeLanes(const QList<PlotLane> &lanes, bool alone);

    QCPAxisRect *m_values;
    QCPAxisRect *m_lanes;
};

} // namespace ktr
