#include "opmode/window/notifications/notification_model.h"

#include "opmode/tree/notifications.h"

namespace ktr {

namespace {

/// Views do the work of a reset for each run of rows that goes; where there are more, one reset is cheaper.
constexpr int mostRuns = 64;

} // namespace

NotificationModel::NotificationModel(const StationTree &tree, Timers &timers, const QLocale &locale,
                                     QObject *parent)
    : QAbstractTableModel(parent),
      m_tree(tree),
      m_cells(tree, locale),
      m_changes(new NotificationChanges(tree, timers, this))
{
    connect(m_changes, &NotificationChanges::due, this, &NotificationModel::updateInPlace);
    connect(m_changes, &NotificationChanges::removed, this, &NotificationModel::updateInPlace);
    connect(m_changes, &NotificationChanges::stationRenamed, this, &NotificationModel::showStationsAnew);
    connect(m_changes, &NotificationChanges::replaced, this, &NotificationModel::reset);
}

void NotificationModel::choose(const NotificationChoice &choice)
{
    if (choice != m_choice) {
        m_choice = choice;
        reset();
    }
}

void NotificationModel::reset()
{
    m_changes->take(); // all is read anew
    beginResetModel();
    fill();
    endResetModel();
    Q_EMIT updated();
}

void NotificationModel::fill()
{
    m_rows.clear();
    const auto take = [this](Id id) {
        if (isWanted(id)) {
            m_rows.push_back(rowFor(id));
        }
    };
    if (m_choice.allStations) {
        eachNotification(m_tree, take);
    } else if (const auto only = station()) {
        eachNotificationOf(m_tree, *only, take);
    }
    std::ranges::sort(m_rows, [this](const Row &a, const Row &b) { return isBefore(a, b); });
}

bool NotificationModel::isInScope(Id id) const
{
    const NodeStore &nodes = m_tree.nodes();
    return m_choice.allStations || station() == nodes.parent(nodes.parent(id));
}

std::optional<NodeStore::Id> NotificationModel::station() const
{
    return m_tree.nodes().child(NodeStore::root, m_choice.kennung.toStdString());
}

bool NotificationModel::isWanted(Id id) const
{
    if (m_choice.onlyUnacknowledged && !isAlarm(m_tree, id)) {
        return false;
    }
    const auto holds = [this](const QString &text) {
        return text.contains(m_choice.filter, Qt::CaseInsensitive);
    };
    if (m_choice.filter.isEmpty()) {
        return true;
    }
    const QString whole = m_cells.wholeText(id);
    if (holds(whole)) { // of 100,000 few, which are looked at closely
        const NotificationText parts = splitNotification(whole);
        if (holds(parts.message) || holds(parts.number)) {
            return true;
        }
    }
    return holds(m_cells.text(id, Station));
}

NotificationModel::Row NotificationModel::rowFor(Id id) const
{
    return {m_tree.arrivals().value(id).received, id};
}

// What the page asks

QModelIndex NotificationModel::entry(int row) const
{
    return nodeIndex(m_tree, m_rows[static_cast<std::size_t>(row)].id);
}

int NotificationModel::rowOf(const QModelIndex &entry) const
{
    const auto id = notificationId(entry);
    const auto found = std::ranges::find_if(m_rows, [&](const Row &row) { return row.id == id; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

QModelIndexList NotificationModel::unacknowledged() const
{
    QModelIndexList entries;
    for (const Row &row : m_rows) {
        if (isAlarm(m_tree, row.id)) {
            entries.append(nodeIndex(m_tree, row.id));
        }
    }
    return entries;
}

int NotificationModel::unacknowledgedCount() const
{
    return static_cast<int>(
        std::ranges::count_if(m_rows, [this](const Row &row) { return isAlarm(m_tree, row.id); }));
}

void NotificationModel::setTexts(const QString &notAcknowledged)
{
    m_cells.setNotAcknowledged(notAcknowledged);
    showAnew();
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns - 1);
}

bool NotificationModel::isUnacknowledged(int row) const
{
    return isAlarm(m_tree, m_rows[static_cast<std::size_t>(row)].id);
}

// As a model

int NotificationModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int NotificationModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant NotificationModel::data(const QModelIndex &index, int role) const
{
    const Id id = m_rows[static_cast<std::size_t>(index.row())].id;
    if (!m_tree.nodes().isAlive(id)) {
        return {};
    }
    return m_cells.data(id, index.column(), role);
}

QVariant NotificationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    return NotificationCells::header(section);
}

void NotificationModel::sort(int column, Qt::SortOrder order)
{
    const bool newestFirst = order == Qt::DescendingOrder;
    if (column == Received && newestFirst != m_newestFirst) {
        m_newestFirst = newestFirst;
        const Rows before = m_rows;
        reorder(before, Rows(before.rbegin(), before.rend()));
    }
}

// What changes in the tree is taken over.

void NotificationModel::showStationsAnew()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, Station), index(rowCount() - 1, Station));
    }
}

void NotificationModel::showAnew()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
    }
}

void NotificationModel::updateInPlace()
{
    if (!m_isHeld()) {
        update();
        return;
    }
    m_changes->postpone();
    std::vector<bool> gone;
    gone.reserve(m_rows.size());
    for (const Row &row : m_rows) {
        gone.push_back(!m_tree.nodes().isAlive(row.id));
    }
    Q_EMIT aboutToUpdate();
    if (!dropRows(gone)) { // what is gone must not be drawn any more
        reset();
        return;
    }
    showAnew();
    Q_EMIT updated();
}

void NotificationModel::update()
{
    Q_EMIT aboutToUpdate();
    auto [noted, hasOld] = m_changes->take();
    if (hasOld && !updateListed(noted)) {
        reset();
        return;
    }
    Rows added;
    for (const Id id : noted) {
        if (m_tree.nodes().isAlive(id) && isInScope(id) && isWanted(id)) {
            added.push_back(rowFor(id));
        }
    }
    insertNew(std::move(added));
    Q_EMIT updated();
}

/// Takes those that are listed out of `noted`. False, and nothing is done, when the views would have to be
/// told of too many single changes.
bool NotificationModel::updateListed(QSet<Id> &noted)
{
    std::vector<bool> gone(m_rows.size(), false);
    Rows left;
    left.reserve(m_rows.size());
    QSet<Id> listed;
    bool isMoved = false;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const Id id = m_rows[i].id;
        const bool isNoted = noted.contains(id);
        if (isNoted) {
            listed.insert(id);
        }
        gone[i] = !m_tree.nodes().isAlive(id) || (isNoted && !isWanted(id));
        if (!gone[i]) {
            left.push_back(isNoted ? rowFor(id) : m_rows[i]);
            isMoved = isMoved || left.back() != m_rows[i];
        }
    }
    if (!dropRows(gone)) {
        return false;
    }
    noted.subtract(listed);
    if (isMoved) {
        reorder(left, sortedAgain(left));
    }
    if (!listed.isEmpty()) {
        showAnew();
    }
    return true;
}

/// The rows of the list with new times, in their order; most have the time that they had.
NotificationModel::Rows NotificationModel::sortedAgain(const Rows &rows) const
{
    const auto order = [this](const Row &a, const Row &b) { return isBefore(a, b); };
    Rows same;
    Rows other;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        (rows[i] == m_rows[i] ? same : other).push_back(rows[i]);
    }
    std::ranges::sort(other, order);
    Rows sorted(rows.size());
    std::ranges::merge(same, other, sorted.begin(), order);
    return sorted;
}

/// False, and nothing is done, when they stand in too many places.
bool NotificationModel::dropRows(const std::vector<bool> &gone)
{
    int runs = 0;
    for (std::size_t i = 0; i < gone.size(); ++i) {
        runs += gone[i] && (i == 0 || !gone[i - 1]) ? 1 : 0;
    }
    if (runs > mostRuns) {
        return false;
    }
    for (std::size_t end = gone.size(); runs > 0; --runs) {
        while (!gone[end - 1]) {
            --end;
        }
        std::size_t begin = end;
        while (begin > 0 && gone[begin - 1]) {
            --begin;
        }
        beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
        m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(begin),
                     m_rows.begin() + static_cast<std::ptrdiff_t>(end));
        endRemoveRows();
        end = begin;
    }
    return true;
}

/// `before` are the rows of the list as they stand, `sorted` the same in their new order.
void NotificationModel::reorder(const Rows &before, Rows sorted)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    m_rows = std::move(sorted);
    const auto order = [this](const Row &a, const Row &b) { return isBefore(a, b); };
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex &kept : from) {
        const auto place =
            std::ranges::lower_bound(m_rows, before[static_cast<std::size_t>(kept.row())], order);
        to.append(index(static_cast<int>(place - m_rows.begin()), kept.column()));
    }
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void NotificationModel::insertNew(Rows rows)
{
    const auto order = [this](const Row &a, const Row &b) { return isBefore(a, b); };
    std::ranges::sort(rows, order);
    for (std::size_t from = 0; from < rows.size();) {
        const auto place = std::ranges::lower_bound(m_rows, rows[from], order);
        std::size_t to = from + 1;
        while (to < rows.size() && (place == m_rows.end() || isBefore(rows[to], *place))) {
            ++to;
        }
        const int at = static_cast<int>(place - m_rows.begin());
        beginInsertRows({}, at, at + static_cast<int>(to - from) - 1);
        m_rows.insert(place, rows.begin() + static_cast<std::ptrdiff_t>(from),
                      rows.begin() + static_cast<std::ptrdiff_t>(to));
        endInsertRows();
        from = to;
    }
}

} // namespace ktr
