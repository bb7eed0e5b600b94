#include "editor/entry_model.h"

#include "platform/text_rules.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

namespace ktr {

void EntryModel::setProblems(const QHash<int, QString> &messages)
{
    if (messages != m_problems) {
        m_problems = messages;
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
}

QString EntryModel::description(int entry) const
{
    QStringList parts = m_rows[static_cast<std::size_t>(entry)].cells;
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

int EntryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int EntryModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
}

QVariant EntryModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const EntryRow &row = m_rows[static_cast<std::size_t>(index.row())];
    const int column = index.column();
    const QString problem = m_problems.value(index.row());
    constexpr qsizetype widestCell = 300; // the toolkit measures all of a text before it cuts it to its cell
    switch (role) {
    case Qt::DisplayRole:
        return column == 0 ? QString::number(index.row() + 1)
                           : firstCharacters(row.cells.value(column - 1), widestCell);
    case Qt::ForegroundRole:
        return row.inUse ? QVariant() : QGuiApplication::palette().color(QPalette::PlaceholderText);
    case Qt::DecorationRole:
        return column != 0 || problem.isEmpty()
                   ? QVariant()
                   : QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    case Qt::ToolTipRole:
        return problem.isEmpty() && column > 0 ? row.cells.value(column - 1) : problem;
    case Qt::AccessibleDescriptionRole:
        return problem;
    default:
        return {};
    }
}

QVariant EntryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return m_titles.value(section);
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

void EntryModel::setTitles(const QStringList &titles)
{
    if (titles.size() != m_titles.size()) {
        beginResetModel();
        m_titles = titles;
        endResetModel();
    } else if (titles != m_titles) {
        m_titles = titles;
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    }
}

void EntryModel::setRows(std::vector<EntryRow> rows)
{
    if (rows.size() != m_rows.size()) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
        return;
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row] != m_rows[row]) {
            m_rows[row] = std::move(rows[row]);
            const int changed = static_cast<int>(row);
            Q_EMIT dataChanged(index(changed, 0), index(changed, columnCount() - 1));
        }
    }
}

} // namespace ktr
