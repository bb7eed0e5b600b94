#include "opmode/window/history/history_table_model.h"

#include "opmode/window/input_caption.h"
#include "opmode/window/value_text.h"

#include <QTimer>

#include <algorithm>
#include <numeric>

namespace ktr {

HistoryTableModel::HistoryTableModel(const StationTree &tree, QObject *parent)
    : QAbstractTableModel(parent), m_tree(tree), m_batch(new QTimer(this))
{
    m_batch->setSingleShot(true);
    m_batch->setInterval(batch);
    connect(m_batch, &QTimer::timeout, this, &HistoryTableModel::takeUp);
    connect(&tree, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &branch) {
        if (m_branch.isValid() && m_branch == branch && !m_batch->isActive()) {
            m_batch->start();
        }
    });
    connect(&tree, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex &branch, int first, int last) {
                if (!m_branch.isValid()) {
                    show({});
                } else if (m_branch == branch) {
                    takeRemoved(first, last);
                }
            });
    connect(&tree, &QAbstractItemModel::modelReset, this, [this] { show({}); });
}

void HistoryTableModel::show(const QModelIndex &branch)
{
    if (!branch.isValid() && m_entries.empty() && !m_branch.isValid()) {
        return;
    }
    m_branch = branch;
    load();
}

void HistoryTableModel::load()
{
    beginResetModel();
    m_batch->stop();
    m_lostSome = false;
    m_entries.clear();
    m_rows.clear();
    read(m_tree.rowCount(m_branch));
    sortRows();
    endResetModel();
    Q_EMIT entriesReplaced();
}

/// Reads the entries of the tree up to that row.
void HistoryTableModel::read(int end)
{
    if (!m_branch.isValid()) {
        return;
    }
    m_entries.reserve(static_cast<std::size_t>(end));
    m_rows.reserve(static_cast<std::size_t>(end));
    for (int row = static_cast<int>(m_entries.size()); row < end; ++row) {
        const QString text = m_tree.index(row, 0, m_branch).data().toString();
        EntryFigures figures{0, m_entries.empty() ? 0 : m_entries.back().minute, 0, false, false};
        if (const auto entry = splitHistoryEntry(text)) {
            const std::optional<double> number = toNumber(entry->value);
            figures = {number.value_or(0), entry->minute.value_or(figures.minute),
                       static_cast<quint16>(entry->input), entry->minute.has_value(), number.has_value()};
        }
        m_rows.push_back(static_cast<quint32>(m_entries.size()));
        m_entries.push_back(figures);
    }
}

void HistoryTableModel::takeUp()
{
    if (std::exchange(m_lostSome, false)) {
        Q_EMIT entriesRemoved();
    }
    const std::size_t known = m_entries.size();
    const int end = m_branch.isValid() ? m_tree.rowCount(m_branch) : 0;
    if (end <= static_cast<int>(known)) {
        return;
    }
    beginInsertRows({}, static_cast<int>(known), end - 1);
    read(end);
    endInsertRows();
    const auto before = [this](quint32 left, quint32 right) { return isBefore(left, right); };
    if (!std::is_sorted(m_rows.begin() + static_cast<std::ptrdiff_t>(known > 0 ? known - 1 : 0), m_rows.end(),
                        before)) {
        sort(m_column, m_order);
    }
    Q_EMIT entriesAdded(known);
}

/// At once, since the numbers of those behind are others in the tree already.
void HistoryTableModel::takeRemoved(int first, int last)
{
    for (int gone = std::min(last, static_cast<int>(m_entries.size()) - 1); gone >= first; --gone) {
        const auto place = std::ranges::find(m_rows, static_cast<quint32>(gone));
        const int row = static_cast<int>(place - m_rows.begin());
        beginRemoveRows({}, row, row);
        m_rows.erase(place);
        for (quint32 &entry : m_rows) {
            entry -= entry > static_cast<quint32>(gone) ? 1 : 0;
        }
        m_entries.erase(m_entries.begin() + gone);
        endRemoveRows();
        m_lostSome = true;
    }
    if (m_lostSome && !m_batch->isActive()) {
        m_batch->start();
    }
}

QModelIndex HistoryTableModel::entry(int row) const
{
    return m_tree.index(static_cast<int>(m_rows.at(static_cast<std::size_t>(row))), 0, m_branch);
}

bool HistoryTableModel::isBefore(quint32 left, quint32 right) const
{
    const bool ascending = m_order == Qt::AscendingOrder;
    const quint32 first = ascending ? left : right;
    const quint32 second = ascending ? right : left;
    const EntryFigures &a = m_entries[first];
    const EntryFigures &b = m_entries[second];
    if (m_column == Input && a.input != b.input) {
        return a.input < b.input;
    }
    if (m_column == Value && (a.hasValue != b.hasValue || a.value != b.value)) {
        return a.hasValue == b.hasValue ? a.value < b.value : b.hasValue;
    }
    return a.minute != b.minute ? a.minute < b.minute : first < second;
}

void HistoryTableModel::sortRows()
{
    std::sort(m_rows.begin(), m_rows.end(),
              [this](quint32 left, quint32 right) { return isBefore(left, right); });
}

void HistoryTableModel::sort(int column, Qt::SortOrder order)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<quint32> held;
    held.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex &index : before) {
        held.push_back(m_rows[static_cast<std::size_t>(index.row())]);
    }
    m_column = column;
    m_order = order;
    sortRows();
    if (!before.isEmpty()) {
        std::vector<int> rowOf(m_rows.size());
        for (std::size_t row = 0; row < m_rows.size(); ++row) {
            rowOf[m_rows[row]] = static_cast<int>(row);
        }
        QModelIndexList after;
        for (std::size_t at = 0; at < held.size(); ++at) {
            after += index(rowOf[held[at]], before[static_cast<qsizetype>(at)].column());
        }
        changePersistentIndexList(before, after);
    }
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void HistoryTableModel::setLocale(const QLocale &locale)
{
    m_locale = locale;
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, Value), index(rowCount() - 1, Value), {Qt::DisplayRole});
    }
}

int HistoryTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int HistoryTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString HistoryTableModel::textOf(quint32 entry) const
{
    return m_tree.index(static_cast<int>(entry), 0, m_branch).data().toString();
}

QVariant HistoryTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const quint32 number = m_rows[static_cast<std::size_t>(index.row())];
    const EntryFigures &figures = m_entries[number];
    if (role == Qt::TextAlignmentRole && index.column() == Value) {
        const Qt::Alignment side = figures.hasValue ? Qt::AlignRight : Qt::AlignLeft;
        return QVariant::fromValue(side | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != WholeLineRole) {
        return {};
    }
    const QString text = textOf(number);
    const auto entry = splitHistoryEntry(text);
    if (role == WholeLineRole) {
        return !entry;
    }
    if (role == Qt::ToolTipRole) {
        return entry ? QVariant() : QVariant(text);
    }
    if (!entry) { // as it is
        return index.column() == Value ? text : QString();
    }
    switch (index.column()) {
    case Time:
        return entry->time.toString();
    case Input: {
        const QString caption = shortInputCaption(entry->input, m_names);
        return caption.isEmpty() ? QLatin1String("IP") + QString::number(entry->input) : caption;
    }
    default:
        return figures.hasValue ? localValue(entry->value, m_locale) : entry->value.toString();
    }
}

QVariant HistoryTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole && orientation == Qt::Horizontal) {
        return QVariant::fromValue((section == Value ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return section == Time ? tr("Time") : section == Input ? tr("Input") : tr("Value");
}

} // namespace ktr
