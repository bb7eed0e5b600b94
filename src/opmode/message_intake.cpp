#include "opmode/message_intake.h"

#include "link/conversation_log.h"
#include "opmode/tree/notifications.h"
#include "platform/overloaded.h"
#include "record/record_address.h"

namespace ktr {

namespace {

StationEvent::Kind kindOf(const StationMessage &message)
{
    using Kind = StationEvent::Kind;
    return std::visit(Overloaded{[](const NotificationMessage &) { return Kind::Notification; },
                                 [](const InputValuesMessage &) { return Kind::Values; },
                                 [](const HistoryMessage &) { return Kind::History; },
                                 [](const UnusableMessage &) { return Kind::Values; },
                                 [](const NoStationMessage &) { return Kind::Message; }},
                      message);
}

EventKind recordedAs(StationEvent::Kind kind)
{
    switch (kind) {
    case StationEvent::Kind::Notification:
        return EventKind::Notification;
    case StationEvent::Kind::Values:
        return EventKind::Values;
    case StationEvent::Kind::History:
        return EventKind::History;
    default:
        return EventKind::OtherMessage;
    }
}

} // namespace

MessageIntake::MessageIntake(const ListParts &parts, QObject *parent)
    : QObject(parent), m_parts(parts), m_answers(parts.stations, parts.timers)
{}

void MessageIntake::handle(const QString &kennung, const QString &text)
{
    if (take(kennung, text, m_parts.environment.now()) && m_parts.record.isOpen()) {
        m_parts.record.writer().flush();
    }
}

void MessageIntake::handleLate(const QString &kennung, const QString &text, qint64 at)
{
    (void)take(kennung, text, QDateTime::fromMSecsSinceEpoch(at));
}

/// Gives whether it is urgent.
bool MessageIntake::take(const QString &kennung, const QString &text, const QDateTime &now)
{
    const StationMessage message = interpretStationMessage(text);
    const qint64 at = now.toMSecsSinceEpoch();
    const StationTree::Outcome outcome = m_parts.tree.apply(kennung, message, now);
    if (const auto *report = std::get_if<InputValuesMessage>(&message)) {
        m_parts.trends.add(kennung, report->values, now);
    }
    const StationEvent::Kind kind = kindOf(message);
    const bool isUrgent = keep(kennung, text, message, outcome, at) != 0 || outcome.alarm;
    Q_EMIT happened(
        {kennung, kind, kind == StationEvent::Kind::Message ? withoutPin(text) : withoutMark(text), at});
    if (!outcome.unusable.isEmpty()) {
        Q_EMIT statusMessage(tr("%1: not understood: %2").arg(kennung, outcome.unusable));
    }
    if (outcome.alarm) {
        Q_EMIT alarmRaised(outcome.entry);
    }
    return isUrgent;
}

void MessageIntake::handleAgain(const QString &kennung, const QString &text, qint64 at)
{
    const StationMessage message = interpretStationMessage(text);
    (void)keep(kennung, text, message,
               m_parts.tree.apply(kennung, message, QDateTime::fromMSecsSinceEpoch(at)), at);
}

/// The message, what it makes of its notification and of the alarm, and what it reports. Gives the alarm's
/// number, 0 where there is none.
qint64 MessageIntake::keep(const QString &kennung, const QString &text, const StationMessage &message,
                           const StationTree::Outcome &outcome, qint64 at)
{
    ListRecord &record = m_parts.record;
    qint64 alarm = 0;
    if (const auto *notification = std::get_if<NotificationMessage>(&message)) {
        const qint64 station = record.number(kennung);
        const NotificationText parts = splitNotification(notification->entry.text);
        alarm = m_parts.alarms.addNotification(station, parts.number, parts.message, at);
        record.add(record.notification(station, notification->entry.key,
                                       m_parts.tree.arrivals().value(StationTree::idOf(outcome.entry))));
    }
    const EventKind kind = recordedAs(kindOf(message));
    record.add(kind, kennung, at, kind == EventKind::OtherMessage ? withoutPin(text) : text,
               ListRecord::By::Program, {}, alarm);
    record.addContent(kennung, at, message);
    return alarm;
}

bool MessageIntake::answersLater(const QString &kennung)
{
    const ListRecord &record = m_parts.record;
    if (!record.isOpen() || !record.writer().isSafe()) {
        return false;
    }
    m_answers.add(kennung, record.writer().addedCount(), isServerAddress(record.path()));
    return true;
}

void MessageIntake::settled()
{
    const RecordWriter &writer = m_parts.record.writer();
    if (!writer.isSafe()) {
        m_answers.answerAll();
    } else {
        m_answers.answerUpTo(writer.onDiskCount());
    }
}

} // namespace ktr
