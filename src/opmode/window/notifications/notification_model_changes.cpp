// What changes in the tree is taken over into the list.

#include "opmode/window/notifications/notification_model.h"

namespace ktr {

namespace {

/// More separate places than that are not told one by one: views do the work of a reset for each.
constexpr int mostRuns = 64;

} // namespace

void NotificationModel::note(Id id)
{
    m_noted.insert(id);
    m_isOldNoted = m_isOldNoted || id < m_seenEnd;
    if (!m_delay->isRunning()) {
        m_delay->start(longestDelay, [this] { update(); });
    }
}

std::optional<NodeStore::Id> NotificationModel::idOf(const QModelIndex &entry) const
{
    const QModelIndex branch = entry.parent();
    const QModelIndex station = branch.parent();
    if (!station.isValid() ||
        branch.data(StationTree::KindRole).value<NodeKind>() != NodeKind::Notifications) {
        return std::nullopt;
    }
    const auto child = [this](Id parent, int row) {
        return m_tree.nodes().children(parent)[static_cast<std::size_t>(row)];
    };
    return child(child(child(NodeStore::root, station.row()), branch.row()), entry.row());
}

void NotificationModel::takeInserted(const QModelIndex &parent, int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const auto id = idOf(m_tree.index(row, 0, parent));
        if (!id) {
            return;
        }
        note(*id);
    }
}

void NotificationModel::takeChanged(const QModelIndex &from, const QModelIndex &to, const QList<int> &roles)
{
    const bool isStation = !from.parent().isValid();
    if (isStation && (roles.isEmpty() || roles.contains(Qt::DisplayRole)) && !m_rows.empty()) {
        Q_EMIT dataChanged(index(0, Station), index(rowCount() - 1, Station));
        return;
    }
    takeInserted(from.parent(), from.row(), to.row());
}

void NotificationModel::update()
{
    m_delay->stop();
    Q_EMIT aboutToUpdate();
    QSet<Id> noted = std::exchange(m_noted, {});
    m_seenEnd = m_tree.nodes().end();
    if (std::exchange(m_isOldNoted, false) && !updateListed(noted)) {
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

/// Takes those that are listed out of `noted`. False, and nothing is done, when too much would have to be
/// told.
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
    if (!listed.isEmpty() && !m_rows.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
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
