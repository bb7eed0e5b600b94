#include "opmode/tree/station_tree.h"
#include "platform/overloaded.h"

namespace ktr {

/// Asking for the offset from UTC costs more than all the rest of a message, and many come at one moment.
qint64 StationTree::momentOf(const QDateTime &time)
{
    const std::tuple shown(time.timeSpec(), time.date(), time.time());
    if (!time.isValid() || m_lastTime != shown) {
        m_lastTime = shown;
        m_lastMoment = time.isValid() ? time.toMSecsSinceEpoch() : 0;
    }
    return m_lastMoment;
}

StationTree::Outcome StationTree::apply(const QString &kennung, const StationMessage &message,
                                        const QDateTime &now)
{
    const std::optional<Id> station = nodes().child(NodeStore::root, storedText(kennung));
    if (!station) {
        return {};
    }
    return std::visit(Overloaded{[&](const NotificationMessage &report) {
                                     return applyNotification(*station, report, now);
                                 },
                                 [&](const InputValuesMessage &report) {
                                     applyValues(*station, report, now);
                                     return Outcome();
                                 },
                                 [&](const HistoryMessage &report) { return applyHistory(*station, report); },
                                 [&](const UnusableMessage &report) {
                                     Outcome outcome;
                                     outcome.unusable = report.text;
                                     return outcome;
                                 },
                                 [](const NoStationMessage &) { return Outcome(); }},
                      message);
}

StationTree::Outcome StationTree::applyNotification(Id station, const NotificationMessage &message,
                                                    const QDateTime &now)
{
    Outcome outcome;
    outcome.alarm = message.alarm;
    const auto branch = nodes().child(station, branches::notifications);
    if (!branch) {
        return outcome;
    }
    const qint64 moment = momentOf(now);
    const std::string name = storedText(message.entry.key);
    std::optional<Id> entry = nodes().child(*branch, name);
    if (entry) {
        const Arrival before = arrivals().value(*entry);
        const std::int32_t colourBefore = nodes().colour(*entry);
        NodeChange change;
        change.colour = message.alarm ? alarmColour : colourBefore;
        change.moment = moment;
        change.count = before.count + 1;
        change.raised = message.alarm && colourBefore != alarmColour ? moment : before.raised;
        countAgain(*entry, change);
    } else {
        entry =
            addEntry(*branch, name, message.entry.text, message.alarm ? alarmColour : normalColour, moment);
    }
    if (message.alarm) {
        setColourOf(*branch, alarmColour);
        setColourOf(station, alarmColour);
    }
    outcome.entry = entry ? indexOf(*entry) : QModelIndex();
    return outcome;
}

void StationTree::countAgain(Id id, const NodeChange &repeated)
{
    m_nodes.countAgain(id, repeated);
    setColourOf(id, repeated.colour);
    showChanged(id, {ReceivedRole, CountRole, AcknowledgedRole, RaisedRole});
}

void StationTree::applyValues(Id station, const InputValuesMessage &message, const QDateTime &now)
{
    const auto branch = nodes().child(station, branches::inputValues);
    if (!branch) {
        return;
    }
    setText(*branch, QStringLiteral("IP (") + now.toString(QStringLiteral("HH:mm dd.MM.yyyy")) + u')');
    for (const InputValuesMessage::Value &value : message.values) {
        if (const auto node =
                nodes().child(*branch, inputValueName(static_cast<std::size_t>(value.channel)))) {
            setText(*node, channelCaption(value.channel) + QLatin1String("IP") +
                               QString::number(value.channel) + QLatin1String(" = ") + value.text);
        }
    }
}

StationTree::Outcome StationTree::applyHistory(Id station, const HistoryMessage &message)
{
    Outcome outcome;
    outcome.unusable = message.unusable;
    const auto branch = nodes().child(station, branches::history);
    for (const MessageEntry &entry : message.entries) {
        const std::string name = storedText(entry.key);
        const bool isNew = branch && !nodes().child(*branch, name);
        const auto made = isNew ? addEntry(*branch, name, entry.text, normalColour, 0) : std::nullopt;
        outcome.entry = made ? indexOf(*made) : outcome.entry;
    }
    return outcome;
}

std::optional<StationTree::Id> StationTree::addEntry(Id branch, std::string_view name, const QString &entry,
                                                     std::int32_t colour, qint64 now)
{
    const std::string text = storedText(entry);
    if (!nodes().hasRoom(name.size() + text.size())) {
        return std::nullopt;
    }
    const int row = static_cast<int>(nodes().children(branch).size());
    beginInsertRows(indexOf(branch), row, row);
    const std::optional<Id> id = m_nodes.addEntry(branch, name, text, colour, now);
    endInsertRows();
    if (id) {
        if (colour == alarmColour) {
            showAlarmCount(branch);
            emitAlarmCount();
        }
    }
    return id;
}

void StationTree::setText(Id id, const QString &text)
{
    const std::string stored = storedText(text);
    if (nodes().text(id) != stored && m_nodes.setText(id, stored)) {
        showChanged(id, {Qt::DisplayRole, Qt::EditRole});
    }
}

} // namespace ktr
