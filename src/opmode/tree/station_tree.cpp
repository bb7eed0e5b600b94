#include "opmode/tree/station_tree.h"

#include "platform/text_rules.h"

#include <algorithm>

namespace ktr {

namespace {

static_assert(sizeof(quintptr) == sizeof(quint64), "the numbers of nodes are spread over 64 bits");

/// Views hash an index by little more than its number; small numbers in a row would all meet in few places.
constexpr quint64 spread = 0x9E3779B97F4A7C15;

constexpr quint64 inverse(quint64 odd)
{
    quint64 result = odd;
    for (int step = 0; step < 5; ++step) { // each step doubles the bits that are right
        result *= 2 - odd * result;
    }
    return result;
}
static_assert(spread * inverse(spread) == 1);

} // namespace

StationTree::StationTree(const StationCaptions &captions, QObject *parent) : QAbstractItemModel(parent)
{
    knowCaptions(stationCaptions({}));
    setCaptions(captions);
}

void StationTree::setCaptions(const StationCaptions &captions)
{
    m_captions = captions;
    knowCaptions(captions);
    m_nodes.setCaptions(captions);
    for (const Id station : nodes().children(NodeStore::root)) {
        if (const auto branches = nodes().children(station); !branches.empty()) {
            Q_EMIT dataChanged(indexOf(branches.front()), indexOf(branches.back()), {Qt::DisplayRole});
        }
    }
}

void StationTree::knowCaptions(const StationCaptions &captions)
{
    if (!m_knownCaptions.contains(captions)) {
        m_knownCaptions.append(captions);
    }
}

QModelIndex StationTree::addStation(const QString &kennung)
{
    const std::string name = storedText(kennung);
    if (name.empty() || !isFreeName(textOf(name)) || !m_nodes.hasRoomForStation(name)) {
        return {};
    }
    const int row = rowCount();
    beginInsertRows({}, row, row);
    const std::optional<Id> station = m_nodes.addStation(name);
    if (station && !m_order.empty()) {
        m_order.push_back(*station);
        numberStations(m_order.size() - 1);
    }
    endInsertRows();
    return station ? indexOf(*station) : QModelIndex();
}

void StationTree::remove(const QModelIndex &index)
{
    if (!index.isValid()) {
        return;
    }
    const Id id = idOf(index);
    const bool isRed = nodes().colour(id) == alarmColour && nodes().kind(id) == NodeKind::Notification;
    const Id above = nodes().parent(id);
    beginRemoveRows(index.parent(), index.row(), index.row());
    m_statuses.remove(id);
    m_renamed.remove(id);
    leaveOrder(id);
    m_nodes.remove(id);
    endRemoveRows();
    if (isRed) {
        showAlarmCount(above);
        clearAlarmColour(above);
    }
    emitAlarmCount();
}

NodeStore::Id StationTree::setAside(const QModelIndex &station)
{
    const Id id = idOf(station);
    beginRemoveRows({}, station.row(), station.row());
    m_statuses.remove(id);
    m_renamed.remove(id);
    leaveOrder(id);
    m_nodes.setAside(id);
    endRemoveRows();
    emitAlarmCount();
    return id;
}

QModelIndex StationTree::putBack(Id station)
{
    const QString text = textOf(nodes().texts(station).text);
    const QString name = textOf(nodes().texts(station).name);
    if (!isFreeName(text, station) || !isFreeName(name, station)) {
        return {};
    }
    const std::vector<Id> &stations = nodes().children(NodeStore::root);
    const auto row = m_order.empty()
                         ? static_cast<int>(std::ranges::lower_bound(stations, station) - stations.begin())
                         : rowCount();
    beginInsertRows({}, row, row);
    m_nodes.putBack(station);
    if (!m_order.empty()) {
        m_order.push_back(station);
        numberStations(m_order.size() - 1);
    }
    if (text != name) {
        m_renamed.insert(station);
    }
    endInsertRows();
    emitAlarmCount();
    return indexOf(station);
}

void StationTree::drop(Id station)
{
    m_nodes.remove(station);
}

QString StationTree::freeName(const QString &base) const
{
    QString name = base;
    for (int n = 1; !isFreeName(name); ++n) {
        name = base + QStringLiteral(" (%1)").arg(n);
    }
    return name;
}

bool StationTree::isFreeName(const QString &name, Id except) const
{
    if (name.contains(u'/')) {
        return false;
    }
    const std::string wanted = name.toStdString();
    const std::optional<Id> found = nodes().child(NodeStore::root, wanted);
    if (found && found != except) {
        return false;
    }
    if (const auto inFile = m_namesInFiles.constFind(wanted);
        inFile != m_namesInFiles.cend() && *inFile != except && nodes().isAlive(*inFile)) {
        return false;
    }
    // A station that was given this text has it as its key in the next run.
    return std::ranges::none_of(
        m_renamed, [&](Id station) { return station != except && nodes().text(station) == wanted; });
}

void StationTree::keepNames()
{
    for (const Id station : std::as_const(m_renamed)) {
        m_namesInFiles.insert(std::string(nodes().text(station)), station);
    }
}

void StationTree::showChanged(Id id, const QList<int> &roles)
{
    const QModelIndex index = indexOf(id);
    Q_EMIT dataChanged(index, index, roles);
}

void StationTree::setStatus(const QString &kennung, const StationStatus &status)
{
    const std::optional<Id> station = nodes().child(NodeStore::root, storedText(kennung));
    if (station && m_statuses.value(*station) != status) {
        m_statuses.insert(*station, status);
        showChanged(*station, {StatusRole});
    }
}

QModelIndex StationTree::find(const QString &key) const
{
    const std::optional<Id> id = nodes().find(storedText(key));
    return id ? indexOf(*id) : QModelIndex();
}

NodeStore::Id StationTree::idOf(const QModelIndex &index)
{
    return index.isValid() ? static_cast<Id>(index.internalId() * inverse(spread)) : NodeStore::root;
}

QModelIndex StationTree::indexOf(Id id) const
{
    return id == NodeStore::root ? QModelIndex()
           : nodes().parent(id) == NodeStore::root
               ? createIndex(stationRow(id), 0, id * spread)
               : createIndex(static_cast<int>(nodes().row(id)), 0, id * spread);
}

const std::vector<NodeStore::Id> &StationTree::rowsUnder(Id parent) const
{
    return parent == NodeStore::root && !m_order.empty() ? m_order : nodes().children(parent);
}

int StationTree::stationRow(Id station) const
{
    return m_order.empty() ? static_cast<int>(nodes().row(station)) : m_rows[station];
}

void StationTree::numberStations(std::size_t from)
{
    m_rows.resize(nodes().end());
    for (std::size_t row = from; row < m_order.size(); ++row) {
        m_rows[m_order[row]] = static_cast<int>(row);
    }
}

void StationTree::leaveOrder(Id station)
{
    if (!m_order.empty() && nodes().parent(station) == NodeStore::root) {
        const auto row = static_cast<std::size_t>(m_rows[station]);
        m_order.erase(m_order.begin() + static_cast<std::ptrdiff_t>(row));
        numberStations(row);
    }
}

void StationTree::arrange(const std::vector<Id> &stations)
{
    std::vector<Id> order;
    if (!stations.empty()) {
        std::vector<bool> isNamed(nodes().end());
        const auto take = [&](Id station) {
            if (nodes().isAlive(station) && !isNamed[station]) {
                isNamed[station] = true;
                order.push_back(station);
            }
        };
        std::ranges::for_each(stations, take);
        std::ranges::for_each(nodes().children(NodeStore::root), take);
    }
    if (order == m_order) {
        return;
    }
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    QModelIndexList before = persistentIndexList();
    before.removeIf([](const QModelIndex &index) { return index.parent().isValid(); });
    m_order = std::move(order);
    numberStations(0);
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : std::as_const(before)) {
        after += indexOf(idOf(index));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

QModelIndex StationTree::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent)) {
        return {};
    }
    return createIndex(row, 0, rowsUnder(idOf(parent))[static_cast<std::size_t>(row)] * spread);
}

QModelIndex StationTree::parent(const QModelIndex &child) const
{
    return child.isValid() ? indexOf(nodes().parent(idOf(child))) : QModelIndex();
}

int StationTree::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(nodes().children(idOf(parent)).size());
}

int StationTree::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant StationTree::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const Id id = idOf(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownText(id);
    case Qt::EditRole:
        return textOf(nodes().text(id));
    case KeyRole:
        return textOf(nodes().key(id));
    case KindRole:
        return QVariant::fromValue(nodes().kind(id));
    case ColourRole:
        return nodes().colour(id);
    case StatusRole:
        return nodes().kind(id) == NodeKind::Station ? QVariant::fromValue(m_statuses.value(id)) : QVariant();
    case AlarmCountRole:
        return alarms().under(nodes().kind(id) == NodeKind::Station
                                  ? nodes().child(id, branches::notifications).value_or(NodeStore::root)
                                  : id);
    case ReceivedRole:
    case CountRole:
    case AcknowledgedRole:
    case RaisedRole:
        return arrivalData(id, role);
    default:
        return {};
    }
}

QString StationTree::shownText(Id id) const
{
    const QString text = textOf(nodes().text(id));
    const NodeKind kind = nodes().kind(id);
    const auto caption = kind == NodeKind::Notifications ? &StationCaptions::notifications
                         : kind == NodeKind::History     ? &StationCaptions::history
                         : kind == NodeKind::InputValues ? &StationCaptions::inputValues
                                                         : nullptr;
    const auto isIt = [&](const StationCaptions &known) { return known.*caption == text; };
    return caption != nullptr && std::ranges::any_of(m_knownCaptions, isIt) ? m_captions.*caption
                                                                            : onOneLine(text);
}

QVariant StationTree::arrivalData(Id id, int role) const
{
    if (nodes().kind(id) != NodeKind::Notification) {
        return {};
    }
    const Arrival arrival = arrivals().value(id);
    return role == CountRole      ? QVariant(arrival.count)
           : role == ReceivedRole ? QVariant(arrival.received)
           : role == RaisedRole   ? QVariant(arrival.raised)
                                  : QVariant(arrival.acknowledged);
}

Qt::ItemFlags StationTree::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractItemModel::flags(index);
    return index.isValid() && nodes().kind(idOf(index)) == NodeKind::Station ? usual | Qt::ItemIsEditable
                                                                             : usual;
}

bool StationTree::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const Id id = idOf(index);
    if (role != Qt::EditRole || nodes().kind(id) != NodeKind::Station) {
        return false;
    }
    const QString text = textOf(storedText(value.toString().trimmed()));
    if (text.isEmpty() || !isFreeName(text, id)) {
        return false;
    }
    const QString before = textOf(nodes().text(id));
    if (text != before) {
        m_renamed.insert(id);
        setText(id, text);
        Q_EMIT stationRenamed(textOf(nodes().name(id)), before);
    }
    return true;
}

void StationTree::carryOut(const QList<NodeChange> &acknowledgement)
{
    QSet<Id> branches;
    m_isCarryingOut = true;
    for (const NodeChange &change : acknowledgement) {
        const std::optional<Id> id = nodes().find(change.key);
        if (!id) {
            continue;
        }
        if (nodes().kind(*id) == NodeKind::Notification) {
            if (arrivals().value(*id).count == change.count && setColourOf(*id, change.colour)) {
                m_nodes.setAcknowledged(*id, change.moment);
                showChanged(*id, {AcknowledgedRole});
                branches.insert(nodes().parent(*id));
            }
        } else {
            const auto branch = nodes().child(*id, branches::notifications);
            if (alarms().under(branch.value_or(*id)) == 0) {
                setColourOf(*id, change.colour);
            }
        }
    }
    m_isCarryingOut = false;
    for (const Id branch : branches) {
        showAlarmCount(branch);
    }
    emitAlarmCount();
}

bool StationTree::setColourOf(Id id, std::int32_t colour)
{
    const bool wasRed = nodes().colour(id) == alarmColour;
    if (!m_nodes.setColour(id, colour)) {
        return false;
    }
    const bool isCounted = nodes().kind(id) == NodeKind::Notification && (wasRed || colour == alarmColour);
    if (isCounted && !m_isCarryingOut) {
        showAlarmCount(nodes().parent(id));
        emitAlarmCount();
    }
    showChanged(id, {ColourRole});
    return true;
}

void StationTree::clearAlarmColour(Id notifications)
{
    if (alarms().under(notifications) > 0) {
        return;
    }
    for (const Id id : {notifications, nodes().parent(notifications)}) {
        if (nodes().colour(id) == alarmColour) {
            setColourOf(id, normalColour);
        }
    }
}

void StationTree::showAlarmCount(Id notifications)
{
    showChanged(notifications, {AlarmCountRole});
    showChanged(nodes().parent(notifications), {AlarmCountRole});
}

void StationTree::emitAlarmCount()
{
    if (std::exchange(m_emittedAlarmCount, alarmCount()) != alarmCount()) {
        Q_EMIT alarmCountChanged();
    }
}

} // namespace ktr
