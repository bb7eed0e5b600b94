#pragma once

#include "opmode/tree/parent_cache.h"
#include "opmode/tree/station_tree.h"

namespace ktr {

/// Fills a tree from its file. Views see all of it when the loader goes.
class StationTreeLoader
{
public:
    explicit StationTreeLoader(StationTree &tree);
    ~StationTreeLoader();
    Q_DISABLE_COPY_MOVE(StationTreeLoader)

    const NodeStore &nodes() const { return m_nodes.store(); }

    /// Adds a node of a file: a station, the text of a node that is there, or a new entry. Gives false when
    /// it has no place.
    bool load(const StoredNode &element);
    bool load(std::string_view key, std::string_view text, std::int32_t colour);
    /// Makes room for that many nodes, whose names and texts have about that many bytes, at once.
    void reserve(std::size_t nodes, std::size_t bytes) { m_nodes.reserve(nodes, bytes); }
    /// Gives a notification that was loaded its times. Gives false when there is none of this key.
    bool loadArrival(std::string_view key, const Arrival &arrival);
    /// Colours each station red that has a red notification, and its notifications node.
    void colourStationsInAlarm();
    /// Carries out a change of the journal that the version before kept. Gives false when it does not fit. Of
    /// a station's attributes it tells whether there is that station.
    bool replay(const NodeChange &change);

private:
    using Id = StationNodes::Id;

    /// A node that will be loaded soon, whose memory is being fetched.
    struct Announced
    {
        const char *key = nullptr;
        NodeStore::Place place{};
    };

    std::optional<NodeStore::Place> rememberedPlace(std::string_view key) const;
    bool load(const NodeStore::Place &place, std::string_view text, std::int32_t colour);
    bool replayOn(Id id, const NodeChange &change);
    void remove(Id id);

    StationTree &m_tree;
    StationNodes &m_nodes;
    ParentCache m_parents;
    std::array<Announced, nodesAhead> m_announced; ///< a ring
    std::size_t m_nextAnnounced = 0;
};

} // namespace ktr
