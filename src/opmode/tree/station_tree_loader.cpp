#include "opmode/tree/station_tree_loader.h"

namespace ktr {

StationTreeLoader::StationTreeLoader(StationTree &tree) : m_tree(tree), m_nodes(tree.m_nodes)
{
    m_tree.beginResetModel();
    m_tree.m_order.clear(); // whoever arranged the stations does so anew
}

StationTreeLoader::~StationTreeLoader()
{
    m_tree.endResetModel();
    m_tree.emitAlarmCount();
}

std::optional<NodeStore::Place> StationTreeLoader::rememberedPlace(std::string_view key) const
{
    const auto found = m_parents.find(key);
    return found ? std::optional(nodes().place(found->parent, found->name)) : std::nullopt;
}

bool StationTreeLoader::load(const StoredNode &element)
{
    Announced &announced = m_announced[m_nextAnnounced];
    m_nextAnnounced = (m_nextAnnounced + 1) % m_announced.size();
    const Announced own = std::exchange(announced, {});
    if (const auto place = rememberedPlace(element.later)) {
        nodes().fetch(*place);
        announced = {element.later.data(), *place};
    }
    return own.key != nullptr && own.key == element.key.data()
               ? load(own.place, element.text, element.colour)
               : load(element.key, element.text, element.colour);
}

bool StationTreeLoader::load(std::string_view key, std::string_view text, std::int32_t colour)
{
    if (key.find('/') == std::string_view::npos) {
        const bool isName = !text.empty() && text.find('/') == std::string_view::npos;
        return isName && load(nodes().place(NodeStore::root, text), text, colour); // the text becomes the key
    }
    std::optional<NodeStore::Place> place = rememberedPlace(key);
    if (!place) {
        place = nodes().place(key);
        if (!place) {
            return false;
        }
        m_parents.remember(key, place->parent, nodes().kind(place->parent));
    }
    return load(*place, text, colour);
}

bool StationTreeLoader::load(const NodeStore::Place &place, std::string_view text, std::int32_t colour)
{
    // Most nodes are new: they are looked up once.
    std::optional<Id> node =
        place.parent == NodeStore::root ? m_nodes.addStation(place.name) : m_nodes.add(place, text);
    if (!node) {
        node = nodes().child(place);
        if (node) {
            m_nodes.setText(*node, text);
        }
    }
    if (node) {
        m_nodes.setColour(*node, colour);
    }
    return node.has_value();
}

bool StationTreeLoader::loadArrival(std::string_view key, const Arrival &arrival)
{
    const std::optional<Id> id = nodes().find(key);
    if (!id || nodes().kind(*id) != NodeKind::Notification) {
        return false;
    }
    m_nodes.setArrival(*id, arrival);
    return true;
}

void StationTreeLoader::colourStationsInAlarm()
{
    for (const Id station : nodes().children(NodeStore::root)) {
        const auto notifications = nodes().child(station, branches::notifications);
        if (notifications && m_nodes.alarms().under(*notifications) > 0) {
            m_nodes.setColour(station, StationNodes::alarmColour);
            m_nodes.setColour(*notifications, StationNodes::alarmColour);
        }
    }
}

bool StationTreeLoader::replay(const NodeChange &change)
{
    if (change.what == NodeChange::What::Added && !load(change.key, change.text, change.colour)) {
        return false;
    }
    const std::optional<Id> id = nodes().find(change.key);
    return id && replayOn(*id, change);
}

bool StationTreeLoader::replayOn(Id id, const NodeChange &change)
{
    const NodeKind kind = nodes().kind(id);
    const bool isNotification = kind == NodeKind::Notification;
    const bool isRed = change.colour == StationNodes::alarmColour;
    switch (change.what) {
    case NodeChange::What::Added:
        if (isNotification && change.moment != 0) {
            m_nodes.setArrival(id, {change.moment, 0, 1, isRed ? change.moment : 0});
        }
        return true;
    case NodeChange::What::Text:
        if (kind == NodeKind::Station) {
            m_tree.m_renamed.insert(id);
        }
        return m_nodes.setText(id, change.text);
    case NodeChange::What::Colour:
        if (m_nodes.setColour(id, change.colour) && isNotification) {
            m_nodes.setAcknowledged(id, isRed ? 0 : change.moment);
        }
        return true;
    case NodeChange::What::Removed:
        remove(id);
        return true;
    case NodeChange::What::Station:
        return kind == NodeKind::Station;
    case NodeChange::What::Repeated:
        if (isNotification) {
            m_nodes.countAgain(id, change);
            m_nodes.setColour(id, change.colour);
        }
        return isNotification;
    case NodeChange::What::Saved:
        return true;
    }
    return false;
}

void StationTreeLoader::remove(Id id)
{
    m_tree.m_renamed.remove(id);
    m_nodes.remove(id);
    // They may name the node.
    m_parents.clear();
    m_announced.fill({});
}

} // namespace ktr
