#include "opmode/window/curves/curve_columns.h"

#include "opmode/window/curves/curve_name_delegate.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>

namespace ktr {

CurveColumns::CurveColumns(QTreeView &list, const CurvesLegend &legend)
    : QObject(&list), m_list(list), m_legend(legend), m_names(new CurveNameDelegate(&list))
{
    list.setIconSize(CurvesLegend::sampleSize);
    list.header()->setStretchLastSection(false);
    list.header()->setHighlightSections(false);
    list.setItemDelegateForColumn(CurvesLegend::Name, m_names);
    list.installEventFilter(this);
    connect(list.header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!m_isFitting && width > 0) {
            m_chosenWidths[column] = width;
            widenNames();
        }
    });
    connect(list.header(), &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) {
        m_chosenWidths.remove(column);
        fit(true);
    });
}

void CurveColumns::fitAnew(HistoryLevel level)
{
    m_level = level;
    const bool isRaw = level == HistoryLevel::Raw;
    {
        const QScopedValueRollback fitting(m_isFitting, true);
        m_list.setColumnHidden(CurvesLegend::Least, isRaw); // they are the value
        m_list.setColumnHidden(CurvesLegend::Most, isRaw);
    }
    fit(true);
}

bool CurveColumns::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        widenNames();
    }
    return QObject::eventFilter(watched, event);
}

/// Values are whole. Columns do not get narrower while one looks on, unless they are made anew; what the user
/// drew them to stays.
void CurveColumns::fit(bool anew)
{
    const QScopedValueRollback fitting(m_isFitting, true);
    constexpr int room = 20;
    const QFontMetrics metrics(m_list.font());
    const auto widthOf = [&metrics](const QString &text) { return metrics.size(0, text).width(); };
    const QString usualTime = m_level == HistoryLevel::Day   ? QStringLiteral("00.00.0000")
                              : m_level == HistoryLevel::Raw ? QStringLiteral("00.00.0000 00:00:00")
                                                             : QStringLiteral("00.00.0000 00:00");
    for (int column = CurvesLegend::Value; column < CurvesLegend::ColumnCount; ++column) {
        const QString usual = column == CurvesLegend::Time   ? usualTime
                              : column == CurvesLegend::Unit ? QStringLiteral("m³/h")
                                                             : QStringLiteral("-00,000");
        int width = qMax(m_list.header()->sectionSizeHint(column) - room, widthOf(usual));
        for (int row = 0; row < m_legend.rowCount(); ++row) {
            width = qMax(width, widthOf(m_legend.cell(row, column)));
        }
        const int before = anew || m_list.isColumnHidden(column) ? 0 : m_list.columnWidth(column);
        const int wanted = m_chosenWidths.value(column, qMax(before, width + room));
        m_list.header()->resizeSection(column, wanted);
        if (column == CurvesLegend::Time) {
            m_timesWidth = wanted;
        }
    }
    widenNames();
}

/// They have what the other columns leave, unless the user wants it otherwise. Where that is too little, the
/// times stand at the values' tool tips alone; what is too much then can be scrolled to.
void CurveColumns::widenNames()
{
    const QScopedValueRollback fitting(m_isFitting, true);
    constexpr int least = 150;
    QHeaderView &header = *m_list.header();
    const int room = m_list.viewport()->width();
    const int wanted = qMax(least, qMin(CurveNameDelegate::widthInTwoLines(m_list), room / 2));
    const auto leftByOthers = [&](bool withTimes) {
        int others = 0;
        for (int column = CurvesLegend::Name + 1; column < CurvesLegend::ColumnCount; ++column) {
            const bool isLeftOut = column == CurvesLegend::Time && !withTimes;
            others += isLeftOut                      ? 0
                      : column == CurvesLegend::Time ? m_timesWidth
                                                     : header.sectionSize(column); // 0 of a hidden one
        }
        return room - others;
    };
    const bool hasTimes = leftByOthers(true) >= wanted || m_chosenWidths.contains(CurvesLegend::Name);
    m_list.setColumnHidden(CurvesLegend::Time, !hasTimes);
    const int width = m_chosenWidths.value(CurvesLegend::Name, qMax(wanted, leftByOthers(hasTimes)));
    header.resizeSection(CurvesLegend::Name, width);
    if (m_names->fit(m_list, width)) {
        Q_EMIT m_names->sizeHintChanged({});
    }
    m_list.viewport()->update();
}

} // namespace ktr
