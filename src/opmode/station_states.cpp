#include "opmode/station_states.h"

#include "link/conversation_log.h"
#include "opmode/station/station_messages.h"
#include "record/json_text.h"

namespace ktr {

namespace {

const QString pukNeeded = QStringLiteral("needed");
const QString pukCleared = QStringLiteral("cleared");
const QLatin1String droppedMember("dropped");
const QLatin1String floodMember("flood");
const QLatin1String overMember("over");

QString textOfLoss(StationChange what, const DatagramLoss &loss)
{
    QString text = what == StationChange::LossBegan  ? QStringLiteral("begins")
                   : what == StationChange::LossOver ? QStringLiteral("over")
                                                     : QStringLiteral("goes on");
    if (loss.dropped > 0) {
        text += QStringLiteral(": %1 datagrams dropped").arg(loss.dropped);
    }
    return text;
}

DatagramLoss lossOf(const EventRow &event)
{
    const QJsonObject detail = jsonOf(event.detail).object();
    return {detail[droppedMember].toInteger(), detail[floodMember].toBool(), detail[overMember].toBool()};
}

EventKind kindOf(StationEvent::Kind kind)
{
    switch (kind) {
    case StationEvent::Kind::Alive:
        return EventKind::Alive;
    case StationEvent::Kind::Silent:
        return EventKind::Silent;
    case StationEvent::Kind::Quality:
        return EventKind::Quality;
    case StationEvent::Kind::Puk:
        return EventKind::Puk;
    default:
        return EventKind::Flood;
    }
}

} // namespace

StationEvent stateEvent(const cStation &station, StationChange what, qint64 at)
{
    using Kind = StationEvent::Kind;
    const auto event = [&](Kind kind, const QString &text) {
        return StationEvent{station.kennung(), kind, text, at};
    };
    switch (what) {
    case StationChange::Alive:
        return event(Kind::Alive, station.hostAddress());
    case StationChange::Silent:
        return event(Kind::Silent, station.hostAddress());
    case StationChange::Quality:
        return event(Kind::Quality, station.csq());
    case StationChange::PukNeeded:
        return event(Kind::Puk, pukNeeded);
    case StationChange::PukCleared:
        return event(Kind::Puk, pukCleared);
    default:
        return event(station.loss()->isFlood ? Kind::Flood : Kind::Loss, textOfLoss(what, *station.loss()));
    }
}

std::optional<EventRow> StationStates::news(const cStation &station, StationChange what,
                                            const StationEvent &told)
{
    EventRow event;
    event.kind = kindOf(told.kind);
    event.text = told.text;
    if (event.kind == EventKind::Flood) {
        if (what == StationChange::LossGoesOn) {
            return std::nullopt;
        }
        const DatagramLoss &loss = *station.loss();
        const QJsonObject detail{
            {droppedMember, loss.dropped}, {floodMember, loss.isFlood}, {overMember, loss.isOver}};
        event.detail = jsonText(detail);
        return event;
    }
    if (event.kind == EventKind::Quality || event.kind == EventKind::Puk) { // told with each report
        QString &last = m_last[{told.kennung, static_cast<int>(event.kind)}];
        if (last == told.text) {
            return std::nullopt;
        }
        last = told.text;
    }
    return event;
}

const QList<EventKind> &stateKinds()
{
    static const QList<EventKind> kinds{EventKind::Alive, EventKind::Silent, EventKind::Quality,
                                        EventKind::Puk, EventKind::Flood};
    return kinds;
}

std::optional<StationEvent> toldAs(const EventRow &event, const QString &kennung)
{
    using Kind = StationEvent::Kind;
    const auto told = [&](Kind kind, const QString &text) {
        return StationEvent{kennung, kind, text, event.at};
    };
    switch (event.kind) {
    case EventKind::Notification:
        return told(Kind::Notification, withoutMark(event.text));
    case EventKind::Values:
        return told(Kind::Values, withoutMark(event.text));
    case EventKind::History:
        return told(Kind::History, withoutMark(event.text));
    case EventKind::OtherMessage:
        return told(Kind::Message, withoutPin(event.text));
    case EventKind::Alive:
        return told(Kind::Alive, event.text);
    case EventKind::Silent:
        return told(Kind::Silent, event.text);
    case EventKind::Quality:
        return told(Kind::Quality, event.text);
    case EventKind::Puk:
        return told(Kind::Puk, event.text);
    case EventKind::Flood:
        return told(lossOf(event).isFlood ? Kind::Flood : Kind::Loss, event.text);
    default:
        return std::nullopt;
    }
}

void takeState(cStation::Seen &seen, const EventRow &event)
{
    switch (event.kind) {
    case EventKind::Notification:
    case EventKind::Values:
    case EventKind::History:
    case EventKind::OtherMessage:
        seen.lastHeard = event.at;
        break;
    case EventKind::Alive:
        seen.liveness = cStation::Liveness::Alive;
        seen.lastHeard = event.at;
        break;
    case EventKind::Silent:
        seen.liveness = cStation::Liveness::Silent;
        break;
    case EventKind::Quality:
        seen.csq = event.text;
        break;
    case EventKind::Puk:
        seen.pukNeeded = event.text == pukNeeded;
        break;
    case EventKind::Flood: {
        const DatagramLoss loss = lossOf(event);
        seen.loss = loss.isOver ? std::nullopt : std::optional(loss);
        break;
    }
    default:
        break;
    }
}

} // namespace ktr
