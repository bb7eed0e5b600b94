#include "opmode/station_tree.h"

namespace ktr {

void StationTree::beginLoading()
{
    beginResetModel();
    m_loading = true;
}

void StationTree::endLoading()
{
    m_loading = false;
    m_parents.clear();
    endResetModel();
    tellAlarmCount();
}

bool StationTree::load(const NodeElement &element)
{
    if (const auto place = m_parents.find(element.later)) {
        m_nodes.fetch(place->parent, place->name);
    }
    return load(element.key, element.text, element.colour);
}

bool StationTree::load(std::string_view key, std::string_view text, std::int32_t newColour)
{
    Q_ASSERT(m_loading);
    Id parent = NodeStore::root;
    std::string_view name = text; // a station's text has become its key
    std::optional<Id> node;
    if (key.find('/') == std::string_view::npos) {
        if (text.empty() || text.find('/') != std::string_view::npos) {
            return false;
        }
        node = addBranch(text);
    } else {
        if (const auto known = m_parents.find(key)) {
            parent = known->parent;
            name = known->name;
        } else if (const auto place = m_nodes.place(key)) {
            parent = place->parent;
            name = place->name;
            m_parents.remember(key, parent, m_nodes.kind(parent));
        } else {
            return false;
        }
        node = m_nodes.add(parent, name, text, normalColour); // most nodes are new: looked up once
    }
    if (!node) {
        node = m_nodes.child(parent, name);
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
        m_parents.clear();
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
