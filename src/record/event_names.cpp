#include "record/event_names.h"

#include <array>

namespace ktr {

QString nameOf(EventKind kind)
{
    switch (kind) {
    case EventKind::Notification:
        return QStringLiteral("notification");
    case EventKind::Values:
        return QStringLiteral("values");
    case EventKind::History:
        return QStringLiteral("history");
    case EventKind::OtherMessage:
        return QStringLiteral("message");
    case EventKind::Alive:
        return QStringLiteral("alive");
    case EventKind::Silent:
        return QStringLiteral("silent");
    case EventKind::Quality:
        return QStringLiteral("csq");
    case EventKind::Puk:
        return QStringLiteral("puk");
    case EventKind::Flood:
        return QStringLiteral("flood");
    case EventKind::StationAdded:
        return QStringLiteral("station added");
    case EventKind::StationRemoved:
        return QStringLiteral("station removed");
    case EventKind::StationRenamed:
        return QStringLiteral("station renamed");
    case EventKind::Attributes:
        return QStringLiteral("attributes");
    case EventKind::EntryRemoved:
        return QStringLiteral("entry removed");
    case EventKind::Acknowledged:
        return QStringLiteral("acknowledged");
    case EventKind::Commented:
        return QStringLiteral("commented");
    case EventKind::Shelved:
        return QStringLiteral("shelved");
    case EventKind::Unshelved:
        return QStringLiteral("unshelved");
    case EventKind::AlarmOver:
        return QStringLiteral("alarm over");
    case EventKind::Sent:
        return QStringLiteral("sent");
    case EventKind::Started:
        return QStringLiteral("started");
    case EventKind::Stopped:
        return QStringLiteral("stopped");
    case EventKind::ListFollowed:
        return QStringLiteral("list followed");
    case EventKind::Trouble:
        return QStringLiteral("trouble");
    case EventKind::Note:
        return QStringLiteral("note");
    }
    return QString::number(static_cast<int>(kind)); // of a newer version
}

QString nameOf(AlarmKind kind)
{
    constexpr std::array names = {"module", "silent", "puk", "flood", "disk", "list", "watcher"};
    const auto index = static_cast<std::size_t>(kind) - 1;
    return index < names.size() ? QString::fromLatin1(names[index]) : QString();
}

} // namespace ktr
