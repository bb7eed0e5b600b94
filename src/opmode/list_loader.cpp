#include "opmode/list_loader.h"

#include <QCoreApplication>

#include <algorithm>

namespace ktr {

namespace {

/// The name of the station under which a node stands that is one of a station's fixed nodes, or an entry.
std::string_view stationOfBranch(std::string_view key)
{
    const auto name = std::find(key.begin(), key.end(), '/');
    const auto below = name == key.end() ? name : std::next(name);
    const std::string_view branch(below, std::find(below, key.end(), '/'));
    const bool isFixed =
        branch == branches::notifications || branch == branches::history || branch == branches::inputValues;
    return isFixed ? std::string_view(key.begin(), name) : std::string_view();
}

} // namespace

ListLoader::ListLoader(NodesFile &file, StationTreeLoader &tree) : m_file(file), m_tree(tree) {}

Status ListLoader::load()
{
    Status loaded =
        m_file.load([this](const StoredNode &element) { return load(element); },
                    [this](std::size_t nodes, std::size_t bytes) { m_tree.reserve(nodes, bytes); });
    if (!m_rebuilt.isEmpty()) {
        m_defects += QCoreApplication::translate(
                         "Files", "%1: stations that were damaged were rebuilt from what stands under them. "
                                  "Their addresses, schedules and whether they are online have to be "
                                  "checked: %2")
                         .arg(m_file.path(), m_rebuiltNames.text());
        m_file.mustKeepAside();
    }
    if (!m_defects.isEmpty() || !m_file.remarks().isEmpty()) {
        // Their own colours, or the nodes that had them, may be what is damaged.
        m_tree.colourStationsInAlarm();
    }
    return loaded;
}

bool ListLoader::load(const StoredNode &element)
{
    if (element.station != nullptr) {
        return loadStation(element);
    }
    return m_tree.load(element) ||
           (rebuild(stationOfBranch(element.key)) && m_tree.load(element.key, element.text, element.colour));
}

bool ListLoader::loadStation(const StoredNode &element)
{
    const QString name = textOf(element.text);
    const bool isSecond = m_attributes.contains(name) && !m_rebuilt.contains(name);
    const bool isLoaded = !isSecond && m_tree.load(element);
    if (isSecond) {
        m_defects += QCoreApplication::translate(
                         "Files", "There are two stations \"%1\" in the list; the second was left out")
                         .arg(name);
    }
    if (isLoaded) {
        m_attributes.insert(name, *element.station);
    }
    if (element.key != element.text) {
        m_unnamed.insert(textOf(element.key), isLoaded ? StationAttributes() : *element.station);
    }
    return isLoaded;
}

/// In a sound document nothing stands under a station that is not there, unless that station's key and text
/// differ.
bool ListLoader::rebuild(std::string_view name)
{
    const QString kennung = textOf(name);
    const bool mayBeDamaged = !m_file.remarks().isEmpty() || m_unnamed.contains(kennung);
    if (!mayBeDamaged || m_attributes.contains(kennung) ||
        !m_tree.load(name, name, StationTree::normalColour)) {
        return false;
    }
    m_attributes.insert(kennung, m_unnamed.value(kennung));
    m_rebuilt.insert(kennung);
    m_rebuiltNames.add(kennung);
    return true;
}

} // namespace ktr
