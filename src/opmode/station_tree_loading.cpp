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
    endResetModel();
    tellAlarmCount();
}

bool StationTree::load(std::string_view key, std::string_view text, std::int32_t newColour)
{
    Q_ASSERT(m_loading);
    const bool isStation = key.find('/') == std::string_view::npos;
    const std::string_view path = isStation ? text : key; // a station's text has become its key
    const std::optional<NodeStore::Place> place = m_nodes.place(path);
    if (!place || path.empty() || (isStation && place->parent != NodeStore::root)) {
        return false;
    }
    if (isStation && text.find('/') != std::string_view::npos) {
        return false;
    }
    // Most nodes are new: looked up once.
    std::optional<Id> node =
        isStation ? addBranch(text) : m_nodes.add(place->parent, place->name, text, normalColour);
    if (!node) {
        node = m_nodes.child(place->parent, place->name);
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
            m_arrivals.insert(*id, {change.moment, 0, 1});
        }
        return true;
    case NodeChange::What::Text:
        if (kind == NodeKind::Station) {
            m_renamed.insert(*id);
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
        return true;
    case NodeChange::What::Station:
        return kind == NodeKind::Station;
    case NodeChange::What::Repeated:
        if (kind == NodeKind::Notification) {
            repeat(*id, change.count, change.colour, change.moment);
        }
        return kind == NodeKind::Notification;
    }
    return false;
}

} // namespace ktr
