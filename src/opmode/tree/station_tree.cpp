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

/// Enough for the names and texts of a station's fixed nodes.
constexpr std::size_t bytesOfABranch = 4096;

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
    for (int channel = 1; channel <= channelCount; ++channel) {
        const QString text = channelCaption(channel) + m_captions.inputValues + QString::number(channel) +
                             QLatin1String(" = ?");
        m_unknownValues[static_cast<std::size_t>(channel - 1)] = text.toStdString();
    }
    for (const Id station : m_nodes.children(NodeStore::root)) {
        if (const auto branches = m_nodes.children(station); !branches.empty()) {
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
    if (name.empty() || !isFreeName(textOf(name)) || !m_nodes.hasRoom(bytesOfABranch + name.size())) {
        return {};
    }
    const int row = rowCount();
    beginInsertRows({}, row, row);
    const std::optional<Id> station = addBranch(name);
    endInsertRows();
    if (!station) {
        return {};
    }
    tell(NodeChange::What::Added, *station);
    return indexOf(*station);
}

std::optional<StationTree::Id> StationTree::addBranch(std::string_view kennung)
{
    const std::optional<Id> station = m_nodes.add(NodeStore::root, kennung, kennung, normalColour);
    if (!station) {
        return std::nullopt;
    }
    m_nodes.add(*station, branches::notifications, m_captions.notifications.toStdString(), normalColour);
    m_nodes.add(*station, branches::history, m_captions.history.toStdString(), normalColour);
    const auto values =
        m_nodes.add(*station, branches::inputValues, m_captions.inputValues.toStdString(), normalColour);
    for (std::size_t channel = 1; values && channel <= m_unknownValues.size(); ++channel) {
        m_nodes.add(*values, inputValueName(channel), m_unknownValues[channel - 1], normalColour);
    }
    return station;
}

void StationTree::remove(const QModelIndex &index)
{
    if (!index.isValid()) {
        return;
    }
    const Id id = idOf(index);
    const bool red = m_nodes.colour(id) == alarmColour && m_nodes.kind(id) == NodeKind::Notification;
    const Id above = m_nodes.parent(id);
    NodeChange change;
    change.what = NodeChange::What::Removed;
    change.key = m_nodes.key(id);
    beginRemoveRows(index.parent(), index.row(), index.row());
    forget(id);
    m_nodes.remove(id);
    endRemoveRows();
    if (m_changed) {
        m_changed(change);
    }
    m_savedKeys.remove(change.key);
    if (red) {
        showAlarmCount(above);
        calm(above);
    }
    tellAlarmCount();
}

/// What is kept beside the nodes of a node that goes, and of those under it.
void StationTree::forget(Id id)
{
    switch (m_nodes.kind(id)) {
    case NodeKind::Station:
        m_statuses.remove(id);
        if (const auto notifications = m_nodes.child(id, branches::notifications)) {
            forget(*notifications);
        }
        break;
    case NodeKind::Notifications:
        m_alarmCount -= m_alarms.take(id);
        for (const Id child : m_nodes.children(id)) {
            m_arrivals.remove(child);
        }
        break;
    case NodeKind::Notification:
        if (m_nodes.colour(id) == alarmColour) {
            --m_alarms[m_nodes.parent(id)];
            --m_alarmCount;
        }
        m_arrivals.remove(id);
        break;
    default:
        break;
    }
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
    const std::optional<Id> found = m_nodes.child(NodeStore::root, wanted);
    if (found && found != except) {
        return false;
    }
    // A station that was given this text has it as its key in the next run, as it has those of the files now.
    bool isFree = true;
    m_savedKeys.forEach([&](const std::string &kennung) {
        const std::optional<Id> station = m_nodes.child(NodeStore::root, kennung);
        isFree = isFree && (!station || station == except ||
                            (m_nodes.text(*station) != wanted && !m_savedKeys.isOf(kennung, wanted)));
    });
    return isFree;
}

void StationTree::beginSaving()
{
    QList<std::pair<std::string, std::string>> stations;
    m_savedKeys.forEach([&](const std::string &kennung) {
        if (const std::optional<Id> station = m_nodes.child(NodeStore::root, kennung)) {
            stations.emplaceBack(kennung, m_nodes.text(*station));
        }
    });
    for (const auto &[kennung, text] : stations) {
        m_savedKeys.beginSaving(kennung, text);
    }
}

void StationTree::showChanged(Id id, const QList<int> &roles)
{
    if (!m_loading) {
        const QModelIndex index = indexOf(id);
        Q_EMIT dataChanged(index, index, roles);
    }
}

void StationTree::setStatus(const QString &kennung, const StationStatus &status)
{
    const std::optional<Id> station = m_nodes.child(NodeStore::root, storedText(kennung));
    if (station && m_statuses.value(*station) != status) {
        m_statuses.insert(*station, status);
        showChanged(*station, {StatusRole});
    }
}

void StationTree::tell(NodeChange::What what, Id id, qint64 now, int count)
{
    if (!m_changed || m_loading) {
        return;
    }
    m_told.what = what;
    m_nodes.getKey(id, m_told.key);
    const bool hasText = what == NodeChange::What::Added || what == NodeChange::What::Text;
    m_told.text.assign(hasText ? m_nodes.text(id) : std::string_view());
    m_told.colour = what == NodeChange::What::Text ? 0 : m_nodes.colour(id);
    m_told.moment = now;
    m_told.count = count;
    m_told.raised = what == NodeChange::What::Repeated ? m_arrivals.value(id).raised : 0;
    m_changed(m_told);
}

QModelIndex StationTree::find(const QString &key) const
{
    const std::optional<Id> id = m_nodes.find(storedText(key));
    return id ? indexOf(*id) : QModelIndex();
}

StationTree::Id StationTree::idOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Id>(index.internalId() * inverse(spread)) : NodeStore::root;
}

QModelIndex StationTree::indexOf(Id id) const
{
    return id == NodeStore::root ? QModelIndex()
                                 : createIndex(static_cast<int>(m_nodes.row(id)), 0, id * spread);
}

QModelIndex StationTree::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent)) {
        return {};
    }
    return createIndex(row, 0, m_nodes.children(idOf(parent))[static_cast<std::size_t>(row)] * spread);
}

QModelIndex StationTree::parent(const QModelIndex &child) const
{
    return child.isValid() ? indexOf(m_nodes.parent(idOf(child))) : QModelIndex();
}

int StationTree::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(m_nodes.children(idOf(parent)).size());
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
        return textOf(m_nodes.text(id));
    case KeyRole:
        return textOf(m_nodes.key(id));
    case KindRole:
        return QVariant::fromValue(m_nodes.kind(id));
    case ColourRole:
        return m_nodes.colour(id);
    case StatusRole:
        return m_nodes.kind(id) == NodeKind::Station ? QVariant::fromValue(m_statuses.value(id)) : QVariant();
    case AlarmCountRole:
        return m_alarms.value(m_nodes.kind(id) == NodeKind::Station
                                  ? m_nodes.child(id, branches::notifications).value_or(NodeStore::root)
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
    const QString text = textOf(m_nodes.text(id));
    const NodeKind kind = m_nodes.kind(id);
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
    if (m_nodes.kind(id) != NodeKind::Notification) {
        return {};
    }
    const Arrival arrival = m_arrivals.value(id);
    return role == CountRole      ? QVariant(arrival.count)
           : role == ReceivedRole ? QVariant(arrival.received)
           : role == RaisedRole   ? QVariant(arrival.raised)
                                  : QVariant(arrival.acknowledged);
}

Qt::ItemFlags StationTree::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractItemModel::flags(index);
    return index.isValid() && m_nodes.kind(idOf(index)) == NodeKind::Station ? usual | Qt::ItemIsEditable
                                                                             : usual;
}

bool StationTree::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const Id id = idOf(index);
    if (role != Qt::EditRole || m_nodes.kind(id) != NodeKind::Station) {
        return false;
    }
    const QString text = textOf(storedText(value.toString().trimmed()));
    if (text.isEmpty() || !isFreeName(text, id)) {
        return false;
    }
    m_savedKeys.add(std::string(m_nodes.name(id)));
    setText(id, text, 0);
    return true;
}

} // namespace ktr
