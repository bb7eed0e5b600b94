#pragma once

#include "opmode/window/history/history_plot.h"

// The header is written with the toolkit's keywords.
#define signals Q_SIGNALS
#define slots Q_SLOTS
#define foreach(variable, container)                                                                         \
    for (variable : container) // NOLINT(bugprone-macro-parentheses): a loop's head
#include <qcustomplot.h>
#undef signals
#undef slots
#undef foreach

#include <map>

namespace ktr {

/// The drawing of HistoryPlot: curves above, lanes of steps below, one time for both. Nothing but the plot
/// looks in here.
class HistoryPlot::Canvas : public QCustomPlot
{
public:
    /// `told` is called when another place is shown, or none.
    Canvas(QWidget *parent, std::function<void()> told);

    void removeCurves();
    /// Whether a channel is new or drawn otherwise now.
    bool add(const QList<PlotPoint> &points);
    void setShown(int channel, bool shown);
    bool isShown(int channel) const;
    bool isSteps(int channel) const;
    bool anyShown() const;
    QList<int> channels() const;

    void showWholeTime();
    QCPRange time() const { return m_values->axis(QCPAxis::atBottom)->range(); }
    /// By parts of the shown time.
    void move(double parts);
    void zoom(double factor);

    /// A record; or a place between records, then without a channel and with the value of the left axis,
    /// which lanes have none of.
    struct Place
    {
        int channel;
        double time;
        double value;
    };
    const std::optional<Place> &place() const { return m_place; }
    void pointAt(const QPointF &position);
    void pointAway();
    /// To the next record of the shown curves after the present place, or with -1 before it.
    void step(int direction);

    void takeColours();
    void setTitles(const QString &values, const QString &counters);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    struct Curve
    {
        QCPGraph *graph;
        bool isSteps; ///< only 0 and 1 so far
        bool isShown;
        QCPAxis *lane; ///< the value axis of steps
    };

    void redraw(); ///< not while nobody sees it
    void arrange();
    void fitTicks();
    void placeLanes(const std::vector<int> &lanes, bool alone);
    void recreate(int channel, Curve &curve);
    void colour(int channel, Curve &curve);
    void setTime(QCPRange range);
    void timeChanged(const QCPRange &range);
    void scaleValues();
    void show(const std::optional<Place> &place);
    QCPRange wholeTime() const;

    std::function<void()> m_told;
    std::map<int, Curve> m_curves;
    QCPAxisRect *m_values;
    QCPAxisRect *m_lanes;
    QCPItemStraightLine *m_cursorInValues;
    QCPItemStraightLine *m_cursorInLanes;
    QCPItemTracer *m_mark;
    std::optional<Place> m_place;
    QString m_valuesTitle;
    QString m_countersTitle;
    bool m_isWhole = true;
};

} // namespace ktr
