#include "opmode/overview/overview_model.h"

#include "opmode/operational_mode.h"

#include <QCollator>

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

namespace ktr {

OverviewModel::OverviewModel(const OperationalMode &mode, Timers &timers, const QLocale &locale,
                             QObject *parent)
    : QAbstractListModel(parent), m_mode(mode), m_delay(timers.create()), m_locale(locale), m_times(mode)
{
    connectMode();
}

OverviewModel::~OverviewModel() = default;

void OverviewModel::connectMode()
{
    const StationTree &tree = m_mode.tree();
    const auto ofStations = [this](const QModelIndex &above) {
        if (!above.isValid()) {
            noteList();
        }
    };
    connect(&tree, &QAbstractItemModel::rowsInserted, this, ofStations);
    connect(&tree, &QAbstractItemModel::rowsRemoved, this, ofStations);
    connect(&tree, &QAbstractItemModel::modelReset, this, &OverviewModel::noteList);
    connect(&tree, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &index, const QModelIndex &, const QList<int> &roles) {
                if (m_isActive && !index.parent().isValid() && roles.contains(Qt::DisplayRole)) {
                    noteList();
                }
            });
    connect(&m_mode, &OperationalMode::stationChanged, this, &OverviewModel::note);
    connect(&m_mode, &OperationalMode::happened, this, [this](const StationEvent &event) {
        if (event.kind == StationEvent::Kind::Values) {
            note(event.kennung);
        }
    });
    connect(&m_mode.alarms(), &AlarmBook::changed, this, [this](const AlarmRow &alarm) {
        if (m_isActive) {
            m_alarms[alarm.station].insert(alarm.id);
            note(m_mode.stationOf(alarm));
        }
    });
    connect(&m_mode.alarms(), &AlarmBook::reset, this, &OverviewModel::noteList);
}

// What changes

void OverviewModel::setActive(bool isActive)
{
    if (m_isActive == isActive) {
        return;
    }
    m_isActive = isActive;
    m_isListStale = true;
    if (isActive) {
        update();
    } else {
        m_delay->stop();
        m_noted.clear();
    }
}

void OverviewModel::note(const QString &kennung)
{
    if (m_isActive) {
        m_noted.insert(kennung);
        postpone();
    }
}

void OverviewModel::noteList()
{
    m_isListStale = true;
    if (m_isActive) {
        postpone();
    }
}

void OverviewModel::postpone()
{
    if (m_delay->isRunning()) {
        return;
    }
    m_delay->start(longestDelay, [this] {
        const bool isHeld = m_isHeld();
        takeOver(!isHeld);
        if (isHeld && (m_anyMoved || m_isListStale)) {
            postpone();
        }
    });
}

void OverviewModel::update()
{
    m_delay->stop();
    takeOver(true);
}

void OverviewModel::takeOver(bool mayMove)
{
    if (m_isListStale && mayMove) {
        reload();
    } else {
        const QList<Number> changed = refreshNoted();
        if (mayMove && m_anyMoved) {
            sortMoved();
        }
        tellChanged(changed);
    }
    Q_EMIT updated();
}

void OverviewModel::reload()
{
    beginResetModel();
    readStations();
    rankNames();
    findGroups();
    showRows();
    m_isListStale = false;
    endResetModel();
}

void OverviewModel::readStations()
{
    m_noted.clear();
    m_alarms.clear();
    for (const auto &[id, alarm] : m_mode.alarms().standing()) {
        m_alarms[alarm.station].insert(id);
    }
    const StationTree &tree = m_mode.tree();
    const std::vector<NodeStore::Id> &list = tree.nodes().children(NodeStore::root);
    m_stations.clear();
    m_stations.reserve(list.size());
    m_numbers.clear();
    m_numbers.reserve(static_cast<qsizetype>(list.size()));
    m_counts = {};
    std::set<qint64> none;
    m_heard.clear();
    for (const NodeStore::Id id : list) {
        QString kennung = textOf(tree.nodes().name(id));
        if (const cStation *station = m_mode.station(kennung)) {
            kennung = station->kennung(); // one text for both
        }
        const auto alarms = m_alarms.find(m_mode.alarmActions().numberOf(kennung));
        StationGlance glance = glanceAt(m_mode, kennung, alarms == m_alarms.end() ? none : *alarms);
        if (glance.name == kennung) {
            glance.name = kennung;
        }
        ++m_counts[static_cast<std::size_t>(glance.urgency)];
        m_numbers.insert(kennung, static_cast<Number>(m_stations.size()));
        m_heard.push_back(heardOf(glance));
        m_stations.push_back(std::move(glance));
    }
    m_isMoved.assign(m_stations.size(), false);
    m_anyMoved = false;
}

/// Comparing names takes long; from now on numbers are compared.
void OverviewModel::rankNames()
{
    QCollator collator(m_locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(m_stations.size());
    for (const StationGlance &station : m_stations) {
        keys.push_back(collator.sortKey(station.name));
    }
    std::vector<Number> order(m_stations.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, [&keys](Number one, Number other) {
        return keys[static_cast<std::size_t>(one)] < keys[static_cast<std::size_t>(other)];
    });
    m_nameRanks.assign(m_stations.size(), 0);
    for (std::size_t rank = 0; rank < order.size(); ++rank) {
        m_nameRanks[static_cast<std::size_t>(order[rank])] = static_cast<int>(rank);
    }
}

/// Gives those that are not as they were told, or show other values.
QList<OverviewModel::Number> OverviewModel::refreshNoted()
{
    QList<Number> changed;
    std::set<qint64> none;
    for (const QString &kennung : std::exchange(m_noted, {})) {
        const auto number = m_numbers.constFind(kennung);
        if (number == m_numbers.cend() || !m_mode.tree().find(kennung).isValid()) {
            continue;
        }
        const auto at = static_cast<std::size_t>(*number);
        const auto alarms = m_alarms.find(m_mode.alarmActions().numberOf(kennung));
        StationGlance now = glanceAt(m_mode, kennung, alarms == m_alarms.end() ? none : *alarms);
        StationGlance &before = m_stations[at];
        now.kennung = before.kennung;
        now.name = before.name; // another one is taken over with the list
        if (m_order == Order::Newest && now.newest != before.newest) {
            m_isMoved[at] = true;
            m_anyMoved = true;
        }
        if (now.urgency != before.urgency) {
            --m_counts[static_cast<std::size_t>(before.urgency)];
            ++m_counts[static_cast<std::size_t>(now.urgency)];
            m_isMoved[at] = true;
            m_anyMoved = true;
        }
        before = std::move(now);
        if (const qint64 heard = heardOf(before); m_order == Order::Heard && m_heard[at] != heard) {
            m_heard[at] = heard;
            m_isMoved[at] = true;
            m_anyMoved = true;
        }
        changed += *number;
    }
    if (!changed.isEmpty()) {
        m_groupCounts.clear();
    }
    return changed;
}

// The rows

void OverviewModel::setOrder(Order order)
{
    if (m_order != order) {
        m_order = order;
        showAnew();
    }
}

void OverviewModel::setGrouping(Grouping grouping)
{
    if (m_grouping != grouping) {
        m_grouping = grouping;
        showAnew();
    }
}

int OverviewModel::sectionOf(std::size_t station) const
{
    switch (m_grouping) {
    case Grouping::State: {
        const Urgency urgency = m_stations[station].urgency;
        return static_cast<int>(isWaiting(urgency) ? Urgency::HighAlarm : urgency);
    }
    case Grouping::Groups:
        return m_groupsOf[station] == StationGroups::none ? static_cast<int>(m_groups.list().size())
                                                          : m_groupsOf[station];
    case Grouping::None:
        break;
    }
    return 0;
}

/// For the order: what is not watched is heard later than anything.
qint64 OverviewModel::heardOf(const StationGlance &station) const
{
    const cStation *found = m_mode.station(station.kennung);
    return found == nullptr || !found->online() ? std::numeric_limits<qint64>::max() : found->lastHeard();
}

void OverviewModel::setFilter(const QString &text)
{
    if (m_filter != text) {
        m_filter = text;
        showAnew();
    }
}

/// While nobody looks that is done when somebody does.
void OverviewModel::showAnew()
{
    m_isListStale = true;
    if (m_isActive) {
        update();
    }
}

void OverviewModel::setGroups(const StationGroups &groups)
{
    if (m_groups != groups) {
        m_groups = groups;
        findGroups();
        m_shownGroup = m_shownGroup < m_groups.list().size() ? m_shownGroup : allGroups;
        showAnew();
    }
}

void OverviewModel::showGroup(int group)
{
    if (m_shownGroup != group) {
        m_shownGroup = group;
        showAnew();
    }
}

void OverviewModel::Numbers::add(const StationGlance &station)
{
    ++stations;
    waiting += isWaiting(station.urgency) ? 1 : 0;
    acknowledged += station.standing > 0 && !isWaiting(station.urgency) ? 1 : 0;
    silent += station.status.line == StationStatus::Line::Silent ? 1 : 0;
    offline += station.status.line == StationStatus::Line::Offline ? 1 : 0;
}

void OverviewModel::Numbers::add(const Numbers &others)
{
    stations += others.stations;
    waiting += others.waiting;
    acknowledged += others.acknowledged;
    silent += others.silent;
    offline += others.offline;
}

OverviewModel::Numbers OverviewModel::countOf(int group) const
{
    if (m_groupCounts.empty()) {
        countGroups();
    }
    if (group == allGroups) {
        Numbers all;
        for (const Numbers &each : m_groupCounts) {
            all.add(each);
        }
        return all;
    }
    return m_groupCounts[group == StationGroups::none ? m_groupCounts.size() - 1
                                                      : static_cast<std::size_t>(group)];
}

void OverviewModel::countGroups() const
{
    m_groupCounts.assign(static_cast<std::size_t>(m_groups.list().size()) + 1, {});
    for (std::size_t at = 0; at < m_groupsOf.size(); ++at) {
        const int rank = groupRank(static_cast<Number>(at));
        m_groupCounts[static_cast<std::size_t>(rank)].add(m_stations[at]);
    }
}

/// Those in no group come last.
int OverviewModel::groupRank(Number number) const
{
    if (number < 0) {
        return -number - 1;
    }
    const int group = m_groupsOf[static_cast<std::size_t>(number)];
    return group == StationGroups::none ? static_cast<int>(m_groups.list().size()) : group;
}

// Headings

std::optional<int> OverviewModel::headingAt(int row) const
{
    const Number number = m_rows[static_cast<std::size_t>(row)];
    if (number >= 0) {
        return std::nullopt;
    }
    const int rank = groupRank(number);
    return rank == m_groups.list().size() ? StationGroups::none : rank;
}

QString OverviewModel::groupName(int group) const
{
    return group == StationGroups::none ? QString() : m_groups.list().value(group).name;
}

bool OverviewModel::isFolded(int group) const
{
    return m_filter.isEmpty() && m_folded.contains(groupName(group));
}

void OverviewModel::setFolded(int group, bool isFolded)
{
    const QString name = groupName(group);
    if (m_folded.contains(name) == isFolded) {
        return;
    }
    if (isFolded) {
        m_folded += name;
    } else {
        m_folded.removeAll(name);
    }
    if (m_isActive) {
        beginResetModel();
        showRows();
        endResetModel();
    }
}

void OverviewModel::setFoldedNames(const QStringList &names)
{
    m_folded = names;
    showAnew();
}

int OverviewModel::groupOf(const QString &kennung) const
{
    const auto number = m_numbers.constFind(kennung);
    return number == m_numbers.cend() ? StationGroups::none : m_groupsOf[static_cast<std::size_t>(*number)];
}

QList<int> OverviewModel::channelsOf(const QString &kennung) const
{
    const int group = groupOf(kennung);
    return group == StationGroups::none ? QList<int>() : m_groups.list()[group].channels;
}

QList<int> OverviewModel::countsWith(const StationGroups &groups) const
{
    QList<int> counts(groups.list().size() + 1);
    for (const StationGlance &station : m_stations) {
        const int group = groups.groupOf(station.name);
        ++counts[group == StationGroups::none ? counts.size() - 1 : group];
    }
    return counts;
}

void OverviewModel::findGroups()
{
    m_groupCounts.clear();
    m_groupsOf.clear();
    m_groupsOf.reserve(m_stations.size());
    for (const StationGlance &station : m_stations) {
        m_groupsOf.push_back(m_groups.groupOf(station.name));
    }
}

void OverviewModel::setDescription(std::function<QString(const StationGlance &)> describe,
                                   std::function<QString(int group)> describeHeading)
{
    m_describe = std::move(describe);
    m_describeHeading = std::move(describeHeading);
}

bool OverviewModel::isBefore(Number one, Number other) const
{
    if (isGrouped()) {
        const int rank = groupRank(one);
        const int otherRank = groupRank(other);
        if (rank != otherRank || one < 0 || other < 0) {
            return rank != otherRank ? rank < otherRank : one < 0 && other >= 0;
        }
    }
    const auto first = static_cast<std::size_t>(one);
    const auto second = static_cast<std::size_t>(other);
    if (m_grouping != Grouping::None && sectionOf(first) != sectionOf(second)) {
        return sectionOf(first) < sectionOf(second);
    }
    if (m_order == Order::List) {
        return one < other;
    }
    if (m_order == Order::Heard && m_heard[first] != m_heard[second]) {
        return m_heard[first] < m_heard[second];
    }
    if (m_order != Order::Name && m_stations[first].urgency != m_stations[second].urgency) {
        return m_stations[first].urgency < m_stations[second].urgency;
    }
    if (m_order == Order::Newest && isWaiting(m_stations[first].urgency) &&
        m_stations[first].newest != m_stations[second].newest) {
        return m_stations[first].newest > m_stations[second].newest;
    }
    return m_nameRanks[first] < m_nameRanks[second];
}

void OverviewModel::showRows()
{
    m_rows.clear();
    const auto groups = static_cast<std::size_t>(m_groups.list().size()) + 1;
    std::vector<bool> hasStations(groups);
    std::vector<bool> isHidden(groups);
    for (std::size_t rank = 0; isGrouped() && rank < groups; ++rank) {
        isHidden[rank] = isFolded(rank + 1 == groups ? StationGroups::none : static_cast<int>(rank));
    }
    for (std::size_t at = 0; at < m_stations.size(); ++at) {
        const bool isInGroup = m_shownGroup == allGroups || m_groupsOf[at] == m_shownGroup;
        if (!isInGroup ||
            !(m_filter.isEmpty() || m_stations[at].name.contains(m_filter, Qt::CaseInsensitive))) {
            continue;
        }
        const auto rank = static_cast<std::size_t>(groupRank(static_cast<Number>(at)));
        hasStations[rank] = true;
        if (!isHidden[rank]) {
            m_rows.push_back(static_cast<Number>(at));
        }
    }
    for (std::size_t rank = 0; isGrouped() && rank < groups; ++rank) {
        if (hasStations[rank]) {
            m_rows.push_back(-static_cast<Number>(rank) - 1);
        }
    }
    std::ranges::sort(m_rows, [this](Number one, Number other) { return isBefore(one, other); });
    place();
}

void OverviewModel::place()
{
    m_rowsOf.assign(m_stations.size(), -1);
    m_headings.clear();
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row] < 0) {
            m_headings.push_back(static_cast<int>(row));
        } else {
            m_rowsOf[static_cast<std::size_t>(m_rows[row])] = static_cast<int>(row);
        }
    }
}

int OverviewModel::rowOfNumber(Number number) const
{
    if (number >= 0) {
        return m_rowsOf[static_cast<std::size_t>(number)];
    }
    const auto found = std::ranges::find(m_rows, number);
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

/// The others are in order already.
void OverviewModel::sortMoved()
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QList<Number> stationsBefore;
    for (const QModelIndex &index : before) {
        stationsBefore += m_rows[static_cast<std::size_t>(index.row())];
    }
    const auto stays = [this](Number number) {
        return number < 0 || !m_isMoved[static_cast<std::size_t>(number)];
    };
    const auto less = [this](Number one, Number other) { return isBefore(one, other); };
    const auto moved = std::stable_partition(m_rows.begin(), m_rows.end(), stays);
    std::sort(moved, m_rows.end(), less);
    std::inplace_merge(m_rows.begin(), moved, m_rows.end(), less);
    m_isMoved.assign(m_stations.size(), false);
    m_anyMoved = false;
    place();
    QModelIndexList after;
    for (const Number number : std::as_const(stationsBefore)) {
        after += index(rowOfNumber(number));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void OverviewModel::tellChanged(const QList<Number> &changed)
{
    constexpr qsizetype few = 8;
    int first = rowCount();
    int last = -1;
    for (const Number number : changed) {
        const int row = m_rowsOf[static_cast<std::size_t>(number)];
        if (row < 0) {
            continue;
        }
        if (changed.size() <= few) {
            Q_EMIT dataChanged(index(row), index(row));
        }
        first = std::min(first, row);
        last = std::max(last, row);
    }
    if (changed.size() > few && last >= 0) {
        Q_EMIT dataChanged(index(first), index(last));
    }
    for (const int heading : changed.isEmpty() ? std::vector<int>() : m_headings) { // their counts
        Q_EMIT dataChanged(index(heading), index(heading));
    }
}

const StationGlance &OverviewModel::glance(int row) const
{
    return m_stations[static_cast<std::size_t>(m_rows[static_cast<std::size_t>(row)])];
}

int OverviewModel::rowOf(const QString &kennung) const
{
    const auto number = m_numbers.constFind(kennung);
    return number == m_numbers.cend() ? -1 : m_rowsOf[static_cast<std::size_t>(*number)];
}

int OverviewModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

Qt::ItemFlags OverviewModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractListModel::flags(index);
    return index.isValid() && headingAt(index.row()) ? usual & ~Qt::ItemIsSelectable : usual;
}

QVariant OverviewModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    if (const std::optional<int> group = headingAt(index.row())) {
        const bool isName = role == Qt::DisplayRole || !m_describeHeading;
        return role != Qt::DisplayRole && role != Qt::AccessibleTextRole && role != Qt::ToolTipRole
                   ? QVariant()
               : isName ? groupName(*group)
                        : m_describeHeading(*group);
    }
    const StationGlance &station = glance(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return station.name;
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole:
        return m_describe ? m_describe(station) : station.name;
    case KeyRole:
        return station.kennung;
    default:
        return {};
    }
}

} // namespace ktr
