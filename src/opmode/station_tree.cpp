#include "opmode/station_tree.h"

#include "platform/overloaded.h"

#include <array>

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

QString shown(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

std::string storedText(const QString &text)
{
    QString clean;
    clean.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
            clean += c;
            clean += text[++at];
        } else if (!c.isSurrogate() && (c >= u' ' || c == u'\t' || c == u'\n' || c == u'\r') &&
                   c < QChar(0xFFFE)) {
            clean += c;
        }
    }
    return clean.toStdString();
}

StationCaptions stationCaptions(const TextTable &texts)
{
    return {texts.text(Text::Notifications), texts.text(Text::History), texts.text(Text::Ip)};
}

QString channelCaption(int channel)
{
    static const std::array<QString, channelCount> captions = {
        QStringLiteral("Digital In 1      "), QStringLiteral("Digital In 2      "),
        QStringLiteral("Digital In 3      "), QStringLiteral("Digital In 4      "),
        QStringLiteral("Digital In 5      "), QStringLiteral("Digital In 6      "),
        QStringLiteral("Digital In 7      "), QStringLiteral("Digital In 8      "),
        QStringLiteral("Analog In 1     "),   QStringLiteral("Analog In 2     "),
        QStringLiteral("Digital Out 1   "),   QStringLiteral("Digital Out 2   "),
        QStringLiteral("Analog Out 1  "),     QStringLiteral("Analog Out 2  "),
        QStringLiteral("BStZ DOut 1   "),     QStringLiteral("BStZ DOut 2   "),
        QStringLiteral("PT 1000 In 1   "),    QStringLiteral("PT 1000 In 2   ")};
    return channel >= 1 && channel <= channelCount ? captions[static_cast<std::size_t>(channel - 1)]
                                                   : QString();
}

StationTree::StationTree(StationCaptions captions, QObject *parent)
    : QAbstractItemModel(parent), m_captions(std::move(captions))
{}

QModelIndex StationTree::addStation(const QString &kennung)
{
    const std::string name = storedText(kennung);
    if (name.empty() || !isFreeName(shown(name)) || !m_nodes.hasRoom(bytesOfABranch + name.size())) {
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
    m_nodes.add(*station, "meldung", m_captions.notifications.toStdString(), normalColour);
    m_nodes.add(*station, "history", m_captions.history.toStdString(), normalColour);
    const auto values = m_nodes.add(*station, "ip", m_captions.inputValues.toStdString(), normalColour);
    for (int channel = 1; values && channel <= channelCount; ++channel) {
        const QString text = channelCaption(channel) + m_captions.inputValues + QString::number(channel) +
                             QLatin1String(" = ?");
        m_nodes.add(*values, "ip" + std::to_string(channel), text.toStdString(), normalColour);
    }
    return station;
}

void StationTree::remove(const QModelIndex &index)
{
    if (index.isValid()) {
        const NodeChange change{NodeChange::What::Removed, m_nodes.key(idOf(index)), {}, 0};
        beginRemoveRows(index.parent(), index.row(), index.row());
        removeNode(idOf(index));
        endRemoveRows();
        if (m_changed) {
            m_changed(change);
        }
    }
}

void StationTree::removeNode(Id id)
{
    if (m_nodes.colour(id) == alarmColour) {
        countAlarm(id, -1);
    }
    m_statuses.remove(id);
    m_renamed.remove(id);
    m_alarms.remove(id);
    for (const Id child : m_nodes.children(id)) {
        m_alarms.remove(child);
    }
    m_nodes.remove(id);
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
    // A station that was given this text has it as its key in the next run.
    return std::ranges::none_of(
        m_renamed, [&](Id station) { return station != except && m_nodes.text(station) == wanted; });
}

StationTree::Outcome StationTree::take(const QString &kennung, const StationMessage &message,
                                       const QDateTime &now)
{
    Outcome outcome;
    const std::optional<Id> station = m_nodes.child(NodeStore::root, storedText(kennung));
    if (!station) {
        return outcome;
    }
    const auto notification = [&](const NotificationMessage &report) {
        const auto branch = m_nodes.child(*station, "meldung");
        const auto entry = branch ? addEntry(*branch, report.entry, report.alarm ? alarmColour : normalColour)
                                  : std::nullopt;
        outcome.alarm = report.alarm;
        outcome.entry = entry ? indexOf(*entry) : QModelIndex();
        if (branch && report.alarm) {
            colour(*branch, alarmColour);
        }
    };
    const auto values = [&](const InputValuesMessage &report) {
        const auto branch = m_nodes.child(*station, "ip");
        if (!branch) {
            return;
        }
        setText(*branch, QStringLiteral("IP (") + now.toString(QStringLiteral("HH:mm dd.MM.yyyy")) + u')');
        for (const InputValuesMessage::Value &value : report.values) {
            const std::string number = std::to_string(value.channel);
            if (const auto node = m_nodes.child(*branch, "ip" + number)) {
                setText(*node, channelCaption(value.channel) + QLatin1String("IP") +
                                   QString::fromStdString(number) + QLatin1String(" = ") + value.text);
            }
        }
    };
    const auto history = [&](const HistoryMessage &report) {
        const auto branch = m_nodes.child(*station, "history");
        for (const MessageEntry &entry : report.entries) {
            const auto made = branch ? addEntry(*branch, entry, normalColour) : std::nullopt;
            outcome.entry = made ? indexOf(*made) : outcome.entry;
        }
        outcome.unusable = report.unusable;
    };
    std::visit(Overloaded{notification, values, history,
                          [&](const UnusableMessage &report) { outcome.unusable = report.text; },
                          [](const NoStationMessage &) {}},
               message);
    return outcome;
}

std::optional<StationTree::Id> StationTree::addEntry(Id branch, const MessageEntry &entry,
                                                     std::int32_t colour)
{
    const std::string name = storedText(entry.key);
    const std::string text = storedText(entry.text);
    if (m_nodes.child(branch, name) || !m_nodes.hasRoom(name.size() + text.size())) {
        return std::nullopt;
    }
    const int row = static_cast<int>(m_nodes.children(branch).size());
    beginInsertRows(indexOf(branch), row, row);
    const std::optional<Id> id = m_nodes.add(branch, name, text, colour);
    endInsertRows();
    if (id) {
        if (colour == alarmColour) {
            countAlarm(*id, 1);
        }
        tell(NodeChange::What::Added, *id);
    }
    return id;
}

void StationTree::setText(Id id, const QString &text)
{
    if (m_nodes.setText(id, storedText(text))) {
        const QModelIndex index = indexOf(id);
        Q_EMIT dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    }
}

void StationTree::setStatus(const QString &kennung, const StationStatus &status)
{
    const std::optional<Id> station = m_nodes.child(NodeStore::root, storedText(kennung));
    if (station && m_statuses.value(*station) != status) {
        m_statuses.insert(*station, status);
        const QModelIndex index = indexOf(*station);
        Q_EMIT dataChanged(index, index, {StatusRole});
    }
}

void StationTree::setColour(const QModelIndex &index, std::int32_t newColour)
{
    if (index.isValid()) {
        colour(idOf(index), newColour);
    }
}

void StationTree::colour(Id id, std::int32_t colour)
{
    const std::int32_t before = m_nodes.colour(id);
    if (before == colour) {
        return;
    }
    m_nodes.setColour(id, colour);
    if (before == alarmColour || colour == alarmColour) {
        countAlarm(id, colour == alarmColour ? 1 : -1);
    }
    if (!m_loading) {
        const QModelIndex index = indexOf(id);
        Q_EMIT dataChanged(index, index, {ColourRole});
        tell(NodeChange::What::Colour, id);
    }
}

void StationTree::countAlarm(Id id, int by)
{
    if (m_nodes.kind(id) == NodeKind::Notification) {
        m_alarms[m_nodes.parent(id)] += by;
        if (!m_loading) {
            const QModelIndex above = indexOf(m_nodes.parent(id));
            Q_EMIT dataChanged(above, above, {AlarmCountRole});
        }
    }
}

void StationTree::tell(NodeChange::What what, Id id)
{
    if (m_changed && !m_loading) {
        m_changed({what, m_nodes.key(id), std::string(m_nodes.text(id)), m_nodes.colour(id)});
    }
}

void StationTree::beginLoading()
{
    beginResetModel();
    m_loading = true;
}

void StationTree::endLoading()
{
    m_loading = false;
    endResetModel();
}

bool StationTree::load(std::string_view key, std::string_view text, std::int32_t newColour)
{
    Q_ASSERT(m_loading);
    const bool isStation = key.find('/') == std::string_view::npos;
    const std::string_view path = isStation ? text : key; // a station's text has become its key
    const std::optional<NodeStore::Place> place = m_nodes.place(path);
    if (!place || path.empty() || (isStation && place->parent != NodeStore::root)) {
        return false;
    }
    if (isStation && text.find('/') != std::string_view::npos) {
        return false;
    }
    // Most nodes are new: looked up once.
    std::optional<Id> node =
        isStation ? addBranch(text) : m_nodes.add(place->parent, place->name, text, normalColour);
    if (!node) {
        node = m_nodes.child(place->parent, place->name);
        if (node) {
            m_nodes.setText(*node, text);
        }
    }
    if (node) {
        colour(*node, newColour);
    }
    return node.has_value();
}

void StationTree::replay(const NodeChange &change)
{
    Q_ASSERT(m_loading);
    if (change.what == NodeChange::What::Added) {
        load(change.key, change.text, change.colour);
        return;
    }
    const std::optional<Id> id = m_nodes.find(change.key);
    if (!id) {
        return;
    }
    switch (change.what) {
    case NodeChange::What::Text:
        m_nodes.setText(*id, change.text);
        if (m_nodes.kind(*id) == NodeKind::Station) {
            m_renamed.insert(*id);
        }
        break;
    case NodeChange::What::Colour:
        colour(*id, change.colour);
        break;
    case NodeChange::What::Removed:
        removeNode(*id);
        break;
    case NodeChange::What::Added:
        break;
    }
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
    case Qt::EditRole:
    case Qt::AccessibleTextRole:
        return shown(m_nodes.text(id));
    case KeyRole:
        return shown(m_nodes.key(id));
    case KindRole:
        return QVariant::fromValue(m_nodes.kind(id));
    case ColourRole:
        return m_nodes.colour(id);
    case StatusRole:
        return m_nodes.kind(id) == NodeKind::Station ? QVariant::fromValue(m_statuses.value(id)) : QVariant();
    case AlarmCountRole:
        return m_alarms.value(id);
    default:
        return {};
    }
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
    const QString text = shown(storedText(value.toString().trimmed()));
    if (text.isEmpty() || !isFreeName(text, id)) {
        return false;
    }
    setText(id, text);
    m_renamed.insert(id);
    tell(NodeChange::What::Text, id);
    return true;
}

} // namespace ktr
