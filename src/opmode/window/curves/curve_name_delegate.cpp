#include "opmode/window/curves/curve_name_delegate.h"

#include "opmode/curves/telling_names.h"
#include "opmode/window/curves/curves_legend.h"

#include <QAbstractItemView>
#include <QPainter>

namespace ktr {

namespace {

/// Check mark, sample and the room around them.
constexpr int besideNames = 46 + CurvesLegend::sampleSize.width();
constexpr int betweenLines = 1;
constexpr int aroundLines = 6;

QStringList partsOf(const QAbstractItemView &list, int role)
{
    QStringList parts;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        parts += list.model()->index(row, CurvesLegend::Name).data(role).toString();
    }
    return parts;
}

int widestOf(const QFontMetrics &metrics, const QStringList &texts)
{
    int width = 0;
    for (const QString &text : texts) {
        width = qMax(width, metrics.horizontalAdvance(text));
    }
    return width;
}

} // namespace

int CurveNameDelegate::widthInTwoLines(const QAbstractItemView &list)
{
    return besideNames + qMax(widestOf(list.fontMetrics(), partsOf(list, CurvesLegend::StationRole)),
                              widestOf(list.fontMetrics(), partsOf(list, CurvesLegend::InputRole)));
}

bool CurveNameDelegate::fit(const QAbstractItemView &list, int width)
{
    const QFontMetrics metrics = list.fontMetrics();
    const QStringList names = partsOf(list, Qt::DisplayRole);
    const int room = width - besideNames;
    if (room == m_width && names == m_names) {
        return false;
    }
    const bool had = m_hasTwoLines;
    m_width = room;
    m_names = names;
    m_hasTwoLines = widestOf(metrics, names) > room;
    const auto hasRoom = [&](const QString &text) { return metrics.horizontalAdvance(text) <= room; };
    m_stations = tellingNames(partsOf(list, CurvesLegend::StationRole), hasRoom);
    m_inputs = tellingNames(partsOf(list, CurvesLegend::InputRole), hasRoom);
    return m_hasTwoLines != had;
}

void CurveNameDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    if (!m_hasTwoLines) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QStyle &style = *item.widget->style();
    const QRect where = style.subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
    item.text.clear();
    style.drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    const bool isChosen = item.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group =
        item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const int line = item.fontMetrics.height();
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &item, item.widget) + 1;
    QRect above(where.left() + margin, where.center().y() - line, where.width() - margin, line);
    painter->save();
    painter->setClipRect(item.rect);
    painter->setFont(item.font);
    painter->setPen(
        item.palette.color(group, isChosen ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->drawText(above, Qt::AlignLeft | Qt::AlignVCenter, m_stations.value(index.row()));
    painter->setPen(item.palette.color(group, isChosen ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(above.translated(0, line + betweenLines), Qt::AlignLeft | Qt::AlignVCenter,
                      m_inputs.value(index.row()));
    painter->restore();
}

QSize CurveNameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (m_hasTwoLines) {
        size.setHeight(qMax(size.height(), 2 * option.fontMetrics.height() + betweenLines + aroundLines));
    }
    return size;
}

} // namespace ktr
