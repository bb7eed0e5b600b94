#pragma once

#include "opmode/window/history/plot_cursor.h"
#include "opmode/window/history/plot_parts.h"
#include "opmode/window/history/plot_point.h"

namespace ktr {

/// What HistoryPlot draws into. It knows which curves there are, which time is shown and which place is
/// pointed at; where the curves stand is the matter of PlotParts. It is a class of its own so that nobody who
/// includes the plot's header has to compile that of QCustomPlot.
class HistoryCanvas : public QCustomPlot
{
public:
    /// `placeChanged` is called when another place is shown, or none.
    HistoryCanvas(QWidget *parent, std::function<void()> placeChanged);

    void removeCurves();
    /// Whether a channel is new or drawn otherwise now.
    bool add(const QList<PlotPoint> &points);
    void setShown(int channel, bool shown);
    bool isShown(int channel) const;
    bool isSteps(int channel) const;
    bool anyShown() const;
    QList<int> channels() const;

    void showWholeTime();
    QCPRange time() const { return m_parts.time(); }
    void setTime(QCPRange range);
    /// By parts of the shown time.
    void move(double parts);
    void zoom(double factor);

    const std::optional<PlotPlace> &place() const { return m_cursor.place(); }
    void pointAt(const QPointF &position);
    void pointAway();
    /// To the next entry of the shown curves after the present place, or with -1 before it.
    void step(int direction);

    void takeColours();
    void setNames(const ChannelNames &names) { m_parts.setNames(names); }
    const ChannelNames &names() const { return m_parts.names(); }
    void setTitles(const QString &values, const QString &counters);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void redraw(); ///< not while nobody sees it
    void arrange();
    void recreate(int channel, PlotCurve &curve);
    void timeChanged(const QCPRange &range);
    void scaleValues();
    void show(const std::optional<PlotPlace> &shown);
    QCPRange wholeTime() const;

    std::function<void()> m_placeChanged;
    PlotCurves m_curves;
    PlotParts m_parts;
    PlotCursor m_cursor;
    bool m_isWhole = true;
};

} // namespace ktr
