#include "opmode/tree/station_nodes.h"

#include <algorithm>

namespace ktr {

namespace {

/// Enough for the names and texts of a station's fixed nodes.
constexpr std::size_t bytesOfFixedNodes = 4096;

} // namespace

void StationNodes::setCaptions(const StationCaptions &captions)
{
    m_notificationsText = captions.notifications.toStdString();
    m_historyText = captions.history.toStdString();
    m_inputValuesText = captions.inputValues.toStdString();
    for (int channel = 1; channel <= channelCount; ++channel) {
        const QString text =
            channelCaption(channel) + captions.inputValues + QString::number(channel) + QLatin1String(" = ?");
        m_inputValueTexts[static_cast<std::size_t>(channel - 1)] = text.toStdString();
    }
}

bool StationNodes::hasRoomForStation(std::string_view kennung) const
{
    return m_store.hasRoom(bytesOfFixedNodes + kennung.size());
}

std::optional<StationNodes::Id> StationNodes::addStation(std::string_view kennung)
{
    const std::optional<Id> station = m_store.add(NodeStore::root, kennung, kennung, normalColour);
    if (!station) {
        return std::nullopt;
    }
    m_store.add(*station, branches::notifications, m_notificationsText, normalColour);
    m_store.add(*station, branches::history, m_historyText, normalColour);
    const auto values = m_store.add(*station, branches::inputValues, m_inputValuesText, normalColour);
    for (std::size_t channel = 1; values && channel <= m_inputValueTexts.size(); ++channel) {
        m_store.add(*values, inputValueName(channel), m_inputValueTexts[channel - 1], normalColour);
    }
    return station;
}

std::optional<StationNodes::Id> StationNodes::addEntry(Id branch, std::string_view name,
                                                       std::string_view text, std::int32_t colour,
                                                       qint64 moment)
{
    const std::optional<Id> id = m_store.add(branch, name, text, colour);
    if (id && moment != 0) {
        m_arrivals.insert(*id, {moment, 0, 1, colour == alarmColour ? moment : 0});
    }
    if (id && colour == alarmColour) {
        m_alarms.add(branch, 1);
    }
    return id;
}

void StationNodes::setAside(Id station)
{
    if (const auto notifications = m_store.child(station, branches::notifications)) {
        m_alarms.remove(*notifications);
    }
    m_store.setAside(station);
}

bool StationNodes::putBack(Id station)
{
    if (!m_store.putBack(station)) {
        return false;
    }
    if (const auto notifications = m_store.child(station, branches::notifications)) {
        const auto red = std::ranges::count(m_store.children(*notifications), alarmColour,
                                            [this](Id notification) { return m_store.colour(notification); });
        m_alarms.add(*notifications, static_cast<int>(red));
    }
    return true;
}

void StationNodes::remove(Id id)
{
    switch (m_store.kind(id)) {
    case NodeKind::Station:
        if (const auto notifications = m_store.child(id, branches::notifications)) {
            forgetNotifications(*notifications);
        }
        break;
    case NodeKind::Notifications:
        forgetNotifications(id);
        break;
    case NodeKind::Notification:
        if (m_store.colour(id) == alarmColour) {
            m_alarms.add(m_store.parent(id), -1);
        }
        m_arrivals.remove(id);
        break;
    default:
        break;
    }
    m_store.remove(id);
}

void StationNodes::forgetNotifications(Id branch)
{
    m_alarms.remove(branch);
    for (const Id notification : m_store.children(branch)) {
        m_arrivals.remove(notification);
    }
}

bool StationNodes::setColour(Id id, std::int32_t colour)
{
    const std::int32_t before = m_store.colour(id);
    if (before == colour) {
        return false;
    }
    m_store.setColour(id, colour);
    if ((before == alarmColour || colour == alarmColour) && m_store.kind(id) == NodeKind::Notification) {
        m_alarms.add(m_store.parent(id), colour == alarmColour ? 1 : -1);
    }
    return true;
}

void StationNodes::countAgain(Id notification, const NodeChange &repeated)
{
    Arrival &arrival = m_arrivals[notification];
    arrival.count = repeated.count;
    arrival.received = repeated.moment;
    arrival.raised = repeated.raised;
    if (repeated.colour == alarmColour) {
        arrival.acknowledged = 0;
    }
}

} // namespace ktr
