#pragma once

#include <QStyledItemDelegate>

namespace ktr {

/// Paints the names of the curves in their list: in one line where all have room, else the station above its
/// input, both so that they can be told from the others.
class CurveNameDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The width that names need in two lines without anything left out, with all beside them.
    static int widthInTwoLines(const QAbstractItemView &list);
    /// For a column of such a width. True when the heights of the lines are others by that.
    bool fit(const QAbstractItemView &list, int width);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QStringList m_names; ///< that were fitted into m_width
    int m_width = 0;
    QStringList m_stations; ///< shortened, of each line
    QStringList m_inputs;
    bool m_hasTwoLines = false;
};

} // namespace ktr
