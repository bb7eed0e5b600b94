#include "look/kept_place.h"

#include "look/list_views.h"

#include <QAbstractItemView>
#include <QHash>
#include <QScrollBar>

#include <algorithm>

namespace ktr {

KeptPlace::KeptPlace(QAbstractItemView &view, Key key)
    : m_view(view),
      m_key(std::move(key)),
      m_scrolled(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value())
{
    const QModelIndex present = view.currentIndex();
    for (const QModelIndex &line : lines()) {
        if (present.isValid() && line == present.siblingAtColumn(0)) {
            m_present = m_keys.size();
        }
        m_keys += m_key(line);
    }
    for (const QModelIndex &line : chosenLines(view)) {
        m_chosen += m_key(line);
    }
    if (m_present >= 0) {
        const QRect shown = view.visualRect(present);
        m_top = shown.top();
        m_wasVisible = view.viewport()->rect().intersects(shown);
    }
}

QList<QModelIndex> KeptPlace::lines() const
{
    QList<QModelIndex> all;
    const QAbstractItemModel &model = *m_view.model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex line = model.index(row, 0);
        all += line;
        for (int child = 0; child < model.rowCount(line); ++child) {
            all += model.index(child, 0, line);
        }
    }
    return all;
}

QModelIndex KeptPlace::replacement(const QList<QModelIndex> &lines) const
{
    QHash<QString, QModelIndex> left;
    QList<QModelIndex> rows;
    for (const QModelIndex &line : lines) {
        if (m_view.model()->rowCount(line) == 0) {
            left.insert(m_key(line), line);
            rows += line;
        }
    }
    for (qsizetype at = m_present + 1; at < m_keys.size(); ++at) {
        if (const QModelIndex line = left.value(m_keys[at]); line.isValid()) {
            return line;
        }
    }
    for (qsizetype at = m_present - 1; at >= 0; --at) {
        if (const QModelIndex line = left.value(m_keys[at]); line.isValid()) {
            return line;
        }
    }
    return rows.isEmpty() ? QModelIndex() : rows[std::min(m_present, rows.size() - 1)];
}

void KeptPlace::giveBack() const
{
    m_view.doItemsLayout();
    const QList<QModelIndex> all = lines();
    QItemSelection chosen;
    QModelIndex same;
    for (const QModelIndex &line : all) {
        const QString key = m_key(line);
        if (m_present >= 0 && key == m_keys[m_present]) {
            same = line;
        }
        if (m_chosen.contains(key)) {
            chosen.select(line, line);
        }
    }
    const QModelIndex present = same.isValid() || m_present < 0 ? same : replacement(all);
    if (present.isValid()) {
        m_view.selectionModel()->setCurrentIndex(present, QItemSelectionModel::NoUpdate);
        if (!same.isValid()) {
            chosen = QItemSelection(present, present);
        }
    }
    m_view.selectionModel()->select(chosen, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scroll(same);
    if (m_wasVisible && present.isValid()) {
        m_view.scrollTo(present);
    }
    m_view.horizontalScrollBar()->setValue(m_scrolled.x());
}

/// The present line stays where it was in the window; lines may have come above it.
void KeptPlace::scroll(const QModelIndex &same) const
{
    QScrollBar &bar = *m_view.verticalScrollBar();
    bar.setValue(m_scrolled.y());
    if (!m_wasVisible || !same.isValid()) {
        return;
    }
    const QRect shown = m_view.visualRect(same);
    const bool byItem = m_view.verticalScrollMode() == QAbstractItemView::ScrollPerItem;
    const int lower = shown.top() - m_top;
    bar.setValue(bar.value() + (byItem ? lower / std::max(1, shown.height()) : lower));
}

} // namespace ktr
