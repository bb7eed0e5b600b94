#include "opmode/window/notifications/notification_cells.h"

#include "look/palettes.h"
#include "opmode/tree/notifications.h"
#include "opmode/window/alarm_look.h"
#include "platform/text_rules.h"

#include <QApplication>

namespace ktr {

namespace {

QString textOf(const NodeStore &nodes, NodeStore::Id node)
{
    const std::string_view text = nodes.text(node);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

QString NotificationCells::header(int column)
{
    switch (column) {
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

QString NotificationCells::stateText(Id id) const
{
    if (isAlarm(m_tree, id)) {
        return m_notAcknowledged;
    }
    const qint64 when = m_tree.arrivals().value(id).acknowledged;
    return when == 0 ? QString() : acknowledgedAt(when);
}

QString NotificationCells::acknowledgedAt(qint64 moment)
{
    return tr("acknowledged %1").arg(shownMoment(moment));
}

QString NotificationCells::wholeText(Id id) const
{
    return onOneLine(textOf(m_tree.nodes(), id));
}

QString NotificationCells::text(Id id, int column) const
{
    const NodeStore &nodes = m_tree.nodes();
    switch (column) {
    case Received:
        return shownMoment(m_tree.arrivals().value(id).received);
    case Station:
        return onOneLine(textOf(nodes, nodes.parent(nodes.parent(id))));
    case Message:
        return splitNotification(textOf(nodes, id)).message;
    case State:
        return stateText(id);
    case Count: {
        const int count = m_tree.arrivals().value(id).count;
        return count > 1 ? u'×' + m_locale.toString(count) : QString();
    }
    case Number:
        return splitNotification(textOf(nodes, id)).number;
    default:
        return {};
    }
}

QVariant NotificationCells::data(Id id, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(id, column);
    case Qt::ToolTipRole:
        return column == Message ? wholeText(id) : QVariant();
    case Qt::ForegroundRole:
        return isAlarm(m_tree, id) && (column == State || column == Message)
                   ? QVariant(alarmText(QApplication::palette()))
                   : QVariant();
    case Qt::DecorationRole:
        return isAlarm(m_tree, id) && column == State
                   ? QVariant(alarmIcon(alarmText(QApplication::palette())))
                   : QVariant();
    default:
        return {};
    }
}

} // namespace ktr
