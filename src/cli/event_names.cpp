#include "cli/event_names.h"

namespace ktr::cli {

QString nameOf(StationEvent::Kind kind)
{
    switch (kind) {
    case StationEvent::Kind::Notification:
        return nameOf(EventKind::Notification);
    case StationEvent::Kind::Values:
        return nameOf(EventKind::Values);
    case StationEvent::Kind::History:
        return nameOf(EventKind::History);
    case StationEvent::Kind::Message:
        return nameOf(EventKind::OtherMessage);
    case StationEvent::Kind::Quality:
        return nameOf(EventKind::Quality);
    case StationEvent::Kind::Puk:
        return nameOf(EventKind::Puk);
    case StationEvent::Kind::Alive:
        return nameOf(EventKind::Alive);
    case StationEvent::Kind::Silent:
        return nameOf(EventKind::Silent);
    case StationEvent::Kind::Flood:
        return nameOf(EventKind::Flood);
    case StationEvent::Kind::Loss: // which the record counts among the floods
        return QStringLiteral("loss");
    }
    return {};
}

} // namespace ktr::cli
