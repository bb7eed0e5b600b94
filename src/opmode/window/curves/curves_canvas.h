#pragma once

#include "opmode/curves/curve_csv.h"
#include "opmode/curves/curve_reading.h"
#include "opmode/window/history/plot_cursor.h"
#include "opmode/window/history/plot_frame.h"

namespace ktr {

/// What is drawn.
struct CurvesShown
{
    QList<ShownCurve> curves; ///< with points; those that are hidden are left out
    QList<CurveAxis> axes;    ///< of these curves
    QList<CurveMark> marks;
    QHash<qint64, QString> stations; ///< names by the numbers of the marks
    bool hasLimits = true;           ///< they are shown in the curves' unit
};

/// What the curves of several stations are drawn into: an axis for each unit, lanes of states, limit values,
/// notifications and the cursor.
class CurvesCanvas : public QCustomPlot
{
public:
    /// Of more curves least and greatest values cover each other, and take long to draw.
    static constexpr qsizetype mostCurvesWithBands = 4;

    struct Answers
    {
        std::function<void(const CurveRange &)> rangeWanted; ///< by wheel, drag, rubber band or keys
        std::function<void()> cursorMoved;
    };
    CurvesCanvas(QWidget *parent, Answers answers);

    void show(const CurvesShown &shown, const CurveRange &range);
    const CurveRange &range() const { return m_range; }
    /// The moment under the mouse, or that the keys went to.
    std::optional<qint64> cursor() const { return m_cursorAt; }
    /// The notifications beside the cursor.
    QStringList marksAtCursor() const;
    void setCursorAt(std::optional<qint64> moment);
    /// To the next value of any curve, or with -1 the one before.
    void step(int direction);
    void move(double parts);
    void zoom(double factor);
    void takeColours();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void clear();
    QCPAxis *axisOf(qsizetype place);
    void addCurve(const ShownCurve &curve, QCPAxis &axis, QCPAxisRect &part);
    void addBand(const ShownCurve &curve, QCPAxis &axis);
    void addLimits(qsizetype place, QList<double> &named);
    void setPlace(QCPItemPosition &position, QCPAxis &axis, double across, double value);
    void addMarks();
    QList<PlotLane> addLanes();
    void fitTitles();
    QString titleAt(const QPoint &position);
    void scale(qsizetype place);
    void timeChanged(const QCPRange &time);
    void zoomInto(const QRect &band);
    QStringList marksAt(double pixel) const;

    Answers m_answers;
    PlotFrame m_frame;
    PlotCursor m_cursor;
    QCPAxis *m_markAxis;
    CurvesShown m_shown;
    CurveRange m_range;
    std::optional<qint64> m_cursorAt;
    QList<QCPAxis *> m_laneAxes;
    bool m_isShowing = false; ///< the change of the range is no user's
};

} // namespace ktr
