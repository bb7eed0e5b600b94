#pragma once

#include "opmode/curves/curve_range.h"

#include <QWidget>

class QComboBox;
class QDateTimeEdit;
class QToolButton;

namespace ktr {

/// Chooses the time that curves are shown of: a length, back and forward by it, up to now, or from and to.
class RangeBar : public QWidget
{
    Q_OBJECT

public:
    /// `now` is the clock, in milliseconds since 1970.
    explicit RangeBar(std::function<qint64()> now, QWidget *parent = nullptr);

    void applyTexts();
    CurveSpan span() const { return m_span; }
    const CurveRange &range() const { return m_range; }
    bool follows() const { return m_follows; }
    /// What was kept; a span of its own is shown as the last day.
    void restore(CurveSpan span, bool follows);
    /// Shows a time of its own length; where the span has that length, too, it stays.
    void showRange(const CurveRange &range);
    /// Moves on to the present moment, where it follows that.
    void goOn();
    void step(int direction);
    void setFollowing(bool follows);

Q_SIGNALS:
    void rangeChosen();

private:
    void chooseSpan(int item);
    void takeFrom();
    void takeTo();
    void set(CurveSpan span, const CurveRange &range, bool follows);
    void show();

    std::function<qint64()> m_now;
    CurveSpan m_span = CurveSpan::Day;
    CurveRange m_range;
    bool m_follows = true;
    QComboBox *m_spans;
    QToolButton *m_back;
    QToolButton *m_forward;
    QToolButton *m_nowButton;
    QDateTimeEdit *m_from;
    QDateTimeEdit *m_to;
};

} // namespace ktr
