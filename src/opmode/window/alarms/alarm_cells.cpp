#include "opmode/window/alarms/alarm_cells.h"

#include "look/palettes.h"
#include "opmode/watch_alarms.h"
#include "opmode/window/alarm_look.h"
#include "platform/text_rules.h"
#include "record/closed_by_removal.h"

#include <QApplication>
#include <QFont>

namespace ktr {

namespace {

constexpr int highest = static_cast<int>(AlarmPriority::High);

/// "acknowledged 21.11.2026 10:20:00 (Miller)"
QString with(const QString &text, const QString &name)
{
    return name.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, name);
}

} // namespace

QString AlarmCells::header(int column)
{
    switch (column) {
    case Priority:
        return tr("Priority");
    case Text:
        return tr("Text");
    case Station:
        return tr("Station");
    case State:
        return tr("State");
    case First:
        return tr("First");
    case Last:
        return tr("Last");
    case Count:
        return tr("Count");
    case Recipients:
        return tr("Recipients");
    case Comment:
        return tr("Comment");
    default:
        return {};
    }
}

QString AlarmCells::priority(int priority)
{
    switch (static_cast<AlarmPriority>(priority)) {
    case AlarmPriority::High:
        return tr("high");
    case AlarmPriority::Medium:
        return tr("medium");
    case AlarmPriority::Low:
        return tr("low");
    }
    return {};
}

QString AlarmCells::acknowledgedBy(const AlarmRow &alarm)
{
    return alarm.acknowledgedBy == closedByRemoval() ? tr("nobody: station removed") : alarm.acknowledgedBy;
}

QString AlarmCells::station(const AlarmRow &alarm) const
{
    const QString kennung = m_mode.stationOf(alarm);
    return kennung.isEmpty() ? QString() : onOneLine(m_mode.tree().find(kennung).data().toString());
}

QString AlarmCells::state(const AlarmRow &alarm) const
{
    QStringList parts;
    if (alarm.shelvedUntil != 0) {
        const QString shelved =
            with(tr("shelved until %1").arg(shownMoment(alarm.shelvedUntil)), alarm.shelvedBy);
        parts += alarm.shelvedWhy.isEmpty() ? shelved : shelved + QLatin1String(": ") + alarm.shelvedWhy;
    }
    if (isShelfAlone(alarm)) {
        return parts.join(QLatin1String("; "));
    }
    parts += alarm.acknowledged == 0 ? m_notAcknowledged
             : alarm.acknowledgedBy == closedByRemoval()
                 ? tr("station removed %1").arg(shownMoment(alarm.acknowledged))
                 : with(tr("acknowledged %1").arg(shownMoment(alarm.acknowledged)), alarm.acknowledgedBy);
    if (alarm.over != 0) {
        parts += tr("over %1").arg(shownMoment(alarm.over));
    }
    return onOneLine(parts.join(QLatin1String("; ")));
}

QString AlarmCells::state(const AlarmLine &storm) const
{
    return storm.waiting == 0 ? tr("acknowledged or shelved")
                              : tr("%1: %L2").arg(m_notAcknowledged).arg(storm.waiting);
}

QString AlarmCells::text(const AlarmRow &alarm, int column) const
{
    switch (column) {
    case Priority:
        return isShelfAlone(alarm) ? QString() : priority(alarm.priority);
    case Text:
        return alarm.text.isEmpty() ? tr("all alarms: in maintenance")
                                    : onOneLine(WatchAlarms::shownText(alarm));
    case Station:
        return station(alarm);
    case State:
        return state(alarm);
    case First:
        return isShelfAlone(alarm) ? QString() : shownMoment(alarm.first);
    case Last:
        return alarm.last == 0 ? QString() : shownMoment(alarm.last);
    case Count: {
        const QString count = alarm.count > 1 ? u'×' + m_locale.toString(alarm.count) : QString();
        return m_mode.alarmActions().chatters(alarm) ? tr("%1 chatters").arg(count) : count;
    }
    case Recipients:
        return onOneLine(alarm.recipients.join(QLatin1String(", ")));
    case Comment:
        return onOneLine(alarm.comment);
    default:
        return {};
    }
}

QString AlarmCells::text(const AlarmLine &line, int column) const
{
    if (line.isStorm) {
        switch (column) {
        case Station:
            return tr("%L1 stations").arg(line.alarms.size());
        case State:
            return state(line);
        case Recipients:
        case Comment:
            return {};
        default:
            break;
        }
    }
    return text(line.sum, column);
}

/// What waits for somebody is to be seen at a glance, the most urgent of it first.
QVariant AlarmCells::look(int priority, bool isWaiting, int column, int role) const
{
    const bool isMarked = isWaiting && (column == Priority || column == Text || column == State);
    if (role == Qt::ForegroundRole && isMarked) {
        return alarmText(QApplication::palette());
    }
    if (role == Qt::DecorationRole && isWaiting && column == State) {
        return alarmIcon(alarmText(QApplication::palette()));
    }
    if (role == Qt::FontRole && isMarked && column != State && priority == highest) {
        QFont font = QApplication::font();
        font.setBold(true);
        return font;
    }
    return {};
}

QVariant AlarmCells::data(const AlarmRow &alarm, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(alarm, column);
    case Qt::ToolTipRole: {
        if (column == Count && m_mode.alarmActions().chatters(alarm)) {
            const ChatterLimit &limit = m_mode.alarmActions().chatterLimit();
            return tr("It came more than %1 times within %2 minutes").arg(limit.times).arg(limit.minutes);
        }
        const QString told = text(alarm, column);
        return column == State && alarm.over != 0 && !alarm.overWhy.isEmpty()
                   ? QVariant(with(told, onOneLine(alarm.overWhy)))
                   : QVariant(told);
    }
    case Qt::ForegroundRole:
        if (column == Count && m_mode.alarmActions().chatters(alarm)) {
            return doubtText(QApplication::palette());
        }
        [[fallthrough]];
    default:
        return look(alarm.priority, !isShelfAlone(alarm) && m_mode.alarms().isWaiting(alarm), column, role);
    }
}

QVariant AlarmCells::data(const AlarmLine &line, int column, int role) const
{
    if (!line.isStorm) {
        return data(line.sum, column, role);
    }
    return role == Qt::DisplayRole || role == Qt::ToolTipRole
               ? QVariant(text(line, column))
               : look(line.sum.priority, line.waiting > 0, column, role);
}

} // namespace ktr
