#pragma once

#include "opmode/window/curves/curves_legend.h"

#include <QHash>
#include <QTreeView>

namespace ktr {

class CurveNameDelegate;

/// The widths of the columns in the list of curves: values are whole, and names have the rest. What the user
/// drew a column to stays.
class CurveColumns : public QObject
{
    Q_OBJECT

public:
    CurveColumns(QTreeView &list, const CurvesLegend &legend);

    /// Columns do not get narrower by it, so that they stand still while one looks on.
    void fit() { fit(false); }
    /// For values of such a level.
    void fitAnew(HistoryLevel level);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fit(bool anew);
    void widenNames();

    QTreeView &m_list;
    const CurvesLegend &m_legend;
    CurveNameDelegate *m_names;
    HistoryLevel m_level = HistoryLevel::Raw;
    QHash<int, int> m_chosenWidths; ///< that the user drew
    int m_timesWidth = 0;           ///< of the column with times, also while it is hidden
    bool m_isFitting = false;       ///< a column's new width is no user's
};

} // namespace ktr
