#pragma once

#include "config/channel_names.h"
#include "opmode/window/history/plot_point.h"

#include <QList>
#include <QWidget>

#include <memory>

class QLabel;

namespace ktr {

class HistoryCanvas;

/// Curves over time. Inputs that are ever only 0 or 1 are steps, each in a lane of its own; counters have an
/// axis of their own beside other values. The wheel zooms, dragging moves, a double click shows the whole
/// time; with the keys: + and -, the arrows, Home, and Ctrl with the arrows from entry to entry. The value
/// axes follow by themselves.
class HistoryPlot : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryPlot(QWidget *parent = nullptr);
    ~HistoryPlot() override;

    void clear();
    /// What the user calls the inputs, before points are added.
    void setNames(const ChannelNames &names);
    const ChannelNames &names() const;
    /// Points may come in any order. A curve of a new channel is hidden at first. A plot that shows the whole
    /// time goes on doing so.
    void add(const QList<PlotPoint> &points);
    void setShown(int channel, bool shown);
    bool isShown(int channel) const;
    /// Whether it stands in a lane.
    bool isSteps(int channel) const;
    /// Those with points, in their order.
    QList<int> channels() const;

    void showWholeTime();
    /// The shown time, in seconds like those of the points.
    std::pair<double, double> timeShown() const;
    /// What of it there are points for.
    void showTime(const std::pair<double, double> &time);
    /// The words about the place under the mouse or the cursor of the keys.
    QString readOut() const;

    void applyTexts();
    /// The plot as it is with a title and a legend, twice as fine as on the screen.
    QImage picture(const QString &title) const;

Q_SIGNALS:
    /// A channel is new, or no longer drawn as steps.
    void channelsChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<HistoryCanvas> m_canvas;
    QLabel *m_readOut;
};

} // namespace ktr
