#include "opmode/tree/station_tree.h"

namespace ktr {

void StationTree::beginLoading()
{
    beginResetModel();
    m_loading = true;
    forgetParents();
}

void StationTree::endLoading()
{
    m_loading = false;
    forgetParents();
    endResetModel();
    tellAlarmCount();
}

void StationTree::forgetParents()
{
    m_parents.clear();
    m_announced.fill({});
}

std::optional<NodeStore::Place> StationTree::rememberedPlace(std::string_view key) const
{
    const auto found = m_parents.find(key);
    return found ? std::optional(m_nodes.place(found->parent, found->name)) : std::nullopt;
}

bool StationTree::load(const NodeElement &element)
{
    Announced &announced = m_announced[m_nextAnnounced];
    m_nextAnnounced = (m_nextAnnounced + 1) % m_announced.size();
    const Announced own = std::exchange(announced, {});
    if (const auto place = rememberedPlace(element.later)) {
        m_nodes.fetch(*place);
        announced = {element.later.data(), *place};
    }
    return own.key != nullptr && own.key == element.key.data()
               ? load(own.place, element.text, element.colour)
               : load(element.key, element.text, element.colour);
}

bool StationTree::load(std::string_view key, std::string_view text, std::int32_t colour)
{
    if (key.find('/') == std::string_view::npos) {
        const bool isName = !text.empty() && text.find('/') == std::string_view::npos;
        return isName && load(m_nodes.place(NodeStore::root, text), text, colour); // the text becomes the key
    }
    std::optional<NodeStore::Place> place = rememberedPlace(key);
    if (!place) {
        place = m_nodes.place(key);
        if (!place) {
            return false;
        }
        m_parents.remember(key, place->parent, m_nodes.kind(place->parent));
    }
    return load(*place, text, colour);
}

bool StationTree::load(const NodeStore::Place &place, std::string_view text, std::int32_t newColour)
{
    Q_ASSERT(m_loading);
    // Most nodes are new: they are looked up once.
    std::optional<Id> node =
        place.parent == NodeStore::root ? addBranch(place.name) : m_nodes.add(place, text, normalColour);
    if (!node) {
        node = m_nodes.child(place);
        if (node) {
            m_nodes.setText(*node, text);
        }
    }
    if (node) {
        colour(*node, newColour);
    }
    return node.has_value();
}

bool StationTree::loadArrival(std::string_view key, const Arrival &arrival)
{
    Q_ASSERT(m_loading);
    const std::optional<Id> id = m_nodes.find(key);
    if (!id || m_nodes.kind(*id) != NodeKind::Notification) {
        return false;
    }
    m_arrivals.insert(*id, arrival);
    return true;
}

bool StationTree::replay(const NodeChange &change)
{
    Q_ASSERT(m_loading);
    if (change.what == NodeChange::What::Added && !load(change.key, change.text, change.colour)) {
        return false;
    }
    const std::optional<Id> id = m_nodes.find(change.key);
    if (!id) {
        return false;
    }
    const NodeKind kind = m_nodes.kind(*id);
    switch (change.what) {
    case NodeChange::What::Added:
        if (kind == NodeKind::Notification && change.moment != 0) {
            m_arrivals.insert(*id, {change.moment, 0, 1, change.colour == alarmColour ? change.moment : 0});
        }
        return true;
    case NodeChange::What::Text:
        if (kind == NodeKind::Station) {
            m_savedKeys.add(change.key);
        }
        return m_nodes.setText(*id, change.text);
    case NodeChange::What::Colour:
        if (kind == NodeKind::Notification && m_nodes.colour(*id) != change.colour) {
            m_arrivals[*id].acknowledged = change.colour == alarmColour ? 0 : change.moment;
        }
        colour(*id, change.colour);
        return true;
    case NodeChange::What::Removed:
        forget(*id);
        m_nodes.remove(*id);
        m_savedKeys.remove(change.key);
        forgetParents();
        return true;
    case NodeChange::What::Station:
        return kind == NodeKind::Station;
    case NodeChange::What::Repeated:
        if (kind == NodeKind::Notification) {
            repeat(*id, change);
        }
        return kind == NodeKind::Notification;
    case NodeChange::What::Saved:
        return true;
    }
    return false;
}

} // namespace ktr
