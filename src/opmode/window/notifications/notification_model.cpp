#include "opmode/window/notifications/notification_model.h"

#include "look/palettes.h"
#include "opmode/tree/notifications.h"
#include "opmode/window/alarm_look.h"
#include "platform/text_rules.h"

#include <QApplication>

namespace ktr {

NotificationModel::NotificationModel(const StationTree &tree, Timers &timers, const QLocale &locale,
                                     QObject *parent)
    : QAbstractTableModel(parent), m_tree(tree), m_locale(locale), m_delay(timers.create())
{
    connect(&tree, &StationTree::rowsInserted, this, &NotificationModel::takeInserted);
    connect(&tree, &StationTree::dataChanged, this, &NotificationModel::takeChanged);
    // What is gone must not be drawn any more.
    connect(&tree, &StationTree::rowsRemoved, this, [this] {
        m_isOldNoted = true;
        update();
    });
    connect(&tree, &StationTree::modelReset, this, &NotificationModel::reset);
}

NotificationModel::~NotificationModel() = default;

void NotificationModel::choose(const NotificationChoice &choice)
{
    if (choice != m_choice) {
        m_choice = choice;
        reset();
    }
}

void NotificationModel::reset()
{
    m_noted.clear();
    m_isOldNoted = false;
    m_delay->stop();
    beginResetModel();
    fill();
    endResetModel();
    Q_EMIT updated();
}

void NotificationModel::fill()
{
    m_rows.clear();
    m_seenEnd = m_tree.nodes().end();
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
    const QString whole = text(id, columns);
    if (holds(whole)) { // of 100,000 few, which are looked at closely
        const NotificationText parts = splitNotification(whole);
        if (holds(parts.message) || holds(parts.number)) {
            return true;
        }
    }
    return holds(text(id, Station));
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
    const auto id = idOf(entry);
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
    m_notAcknowledged = notAcknowledged;
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
    }
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

QString NotificationModel::stateText(Id id) const
{
    if (isAlarm(m_tree, id)) {
        return m_notAcknowledged;
    }
    const qint64 when = m_tree.arrivals().value(id).acknowledged;
    return when == 0 ? QString() : acknowledgedAt(when);
}

QString NotificationModel::acknowledgedAt(qint64 moment)
{
    return tr("acknowledged %1").arg(shownMoment(moment));
}

/// Of no column, the whole text of the notification.
QString NotificationModel::text(Id id, int column) const
{
    const NodeStore &nodes = m_tree.nodes();
    const auto textOf = [&nodes](Id node) {
        const std::string_view text = nodes.text(node);
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    };
    switch (column) {
    case Received:
        return shownMoment(m_tree.arrivals().value(id).received);
    case Station:
        return onOneLine(textOf(nodes.parent(nodes.parent(id))));
    case Message:
        return splitNotification(textOf(id)).message;
    case State:
        return stateText(id);
    case Count: {
        const int count = m_tree.arrivals().value(id).count;
        return count > 1 ? u'×' + m_locale.toString(count) : QString();
    }
    case Number:
        return splitNotification(textOf(id)).number;
    default:
        return onOneLine(textOf(id));
    }
}

QVariant NotificationModel::data(const QModelIndex &index, int role) const
{
    const Id id = m_rows[static_cast<std::size_t>(index.row())].id;
    if (!m_tree.nodes().isAlive(id)) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return text(id, index.column());
    case Qt::ToolTipRole:
        return index.column() == Message ? text(id, columns) : QVariant();
    case Qt::ForegroundRole:
        return isAlarm(m_tree, id) && (index.column() == State || index.column() == Message)
                   ? QVariant(alarmText(QApplication::palette()))
                   : QVariant();
    case Qt::DecorationRole:
        return isAlarm(m_tree, id) && index.column() == State
                   ? QVariant(alarmIcon(alarmText(QApplication::palette())))
                   : QVariant();
    default:
        return {};
    }
}

QVariant NotificationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    switch (section) {
    case Received:
        return tr("Received");
    case Station:
        return tr("Station");
    case Message:
        return tr("Text");
    case State:
        return tr("State");
    case Count:
        return tr("Count");
    case Number:
        return tr("Recipient");
    default:
        return {};
    }
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

} // namespace ktr
