#pragma once

#include "opmode/station/station_attributes.h"
#include "platform/large_pages.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace ktr {

/// The attributes of an element of the file of nodes, in the order in which they are written.
enum NodeAttribute : std::size_t {
    ExclusiveAttribute,
    DayOnAttribute,
    DayOffAttribute,
    HourOnAttribute,
    HourOffAttribute,
    HostAttribute,
    OnlineAttribute,
    KeyAttribute, ///< the first one of all nodes but stations
    TextAttribute,
    ColourAttribute,
    NodeAttributes
};
inline constexpr std::array<std::string_view, NodeAttributes> nodeAttributeNames = {"exclusiveMode",
                                                                                    "exclusive_day_on",
                                                                                    "exclusive_day_off",
                                                                                    "exclusive_hour_on",
                                                                                    "exclusive_hour_off",
                                                                                    "hostAddress",
                                                                                    "online",
                                                                                    "key",
                                                                                    "text",
                                                                                    "ForeColor"};
using NodeAttributeValues = std::array<std::string_view, NodeAttributes>;

/// What a reader found in a document of nodes, before it is handed over as StoredNodes. The texts stay where
/// they were found.
class ParsedNodes
{
public:
    struct Node
    {
        std::string_view key;
        std::string_view text;
        std::int32_t colour;
        bool isStation;
    };

    /// A document of that many bytes is going to be read.
    void reserve(std::size_t bytes);
    void add(const NodeAttributeValues &values);

    using Nodes = std::vector<Node, LargePageAllocator<Node>>;
    const Nodes &nodes() const { return m_nodes; }
    const std::vector<StationAttributes> &stations() const { return m_stations; } ///< one for each station
    /// Of the nodes with a number or truth value that is none; that of a new station stands in its place.
    const std::vector<std::string_view> &unreadable() const { return m_unreadable; }
    /// About how many bytes the texts have, and the names that differ from them.
    std::size_t bytes() const { return m_bytes; }

private:
    Nodes m_nodes;
    std::vector<StationAttributes> m_stations;
    std::vector<std::string_view> m_unreadable;
    std::size_t m_bytes = 0;
};

} // namespace ktr
