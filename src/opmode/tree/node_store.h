#pragma once

#include "platform/large_pages.h"

#include <QHash>
#include <QSet>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ktr {

/// The names of a station's branches, the last parts of their keys; under the last stand "ip1" to "ip18".
namespace branches {
inline constexpr std::string_view notifications = "meldung";
inline constexpr std::string_view history = "history";
inline constexpr std::string_view inputValues = "ip";
} // namespace branches

inline std::string inputValueName(std::size_t channel)
{
    return std::string(branches::inputValues) + std::to_string(channel);
}

/// What a node of the station tree is; it follows from where the node stands.
enum class NodeKind {
    Root,
    Station,
    Notifications,
    History,
    InputValues,
    InputValue,
    Notification,
    HistoryEntry,
    Other
};

/// The nodes of the station tree: twelve bytes each over one arena of texts (UTF-8), found by key in constant
/// time. A number names a node for the whole run; numbers grow in the order of creation.
class NodeStore
{
public:
    using Id = std::uint32_t;
    static constexpr Id root = 0;

    NodeStore();

    /// Where a node belongs, whether it is there or not, and its name there.
    struct Place
    {
        Id parent;
        std::string_view name;
        std::uint32_t hash; ///< of both
    };
    Place place(Id parent, std::string_view name) const { return {parent, name, hash(parent, name)}; }
    /// Of a key; nothing when there is no node above it. The names of notifications and of entries of the
    /// history may hold "/".
    std::optional<Place> place(std::string_view key) const;
    /// Begins to fetch the memory that looking for a child there, or adding it, will need.
    void fetch(const Place &place) const;

    /// Appends a child; nothing when the parent has a child of that name already or there is no room left.
    std::optional<Id> add(const Place &place, std::string_view text, std::int32_t colour);
    std::optional<Id> add(Id parent, std::string_view name, std::string_view text, std::int32_t colour)
    {
        return add(place(parent, name), text, colour);
    }
    /// Removes a node with all that is under it, also a station that is set aside.
    void remove(Id id);
    /// Takes a station with all that is under it out of the tree, or back into its place there. Meanwhile
    /// none of its nodes is alive. putBack() gives false where another station has its name by now.
    void setAside(Id station);
    bool putBack(Id station);
    bool setText(Id id, std::string_view text);
    /// Makes room for that many nodes more, whose names and texts have about that many bytes, at once.
    void reserve(std::size_t nodes, std::size_t bytes);
    void setColour(Id id, std::int32_t colour) { m_nodes[id].colour = colour; }

    std::optional<Id> child(const Place &place) const;
    std::optional<Id> child(Id parent, std::string_view name) const { return child(place(parent, name)); }
    /// The node of a key.
    std::optional<Id> find(std::string_view key) const;

    bool isAlive(Id id) const { return isStored(id) && (m_aside.isEmpty() || !isAside(id)); }
    Id parent(Id id) const { return m_nodes[id].parent; }
    const std::vector<Id> &children(Id id) const;
    std::size_t row(Id id) const; ///< among the children of its parent
    NodeKind kind(Id id) const;
    struct Texts
    {
        std::string_view name;
        std::string_view text; ///< mostly the very bytes of the name when it equals it
        std::size_t size;      ///< of both in the arena
    };
    Texts texts(Id id) const;
    std::string_view name(Id id) const { return texts(id).name; }
    std::string_view text(Id id) const { return texts(id).text; }
    std::string key(Id id) const;
    /// As key(), into a text that is used again and again.
    void getKey(Id id, std::string &key) const;
    /// The key that the node has after it was written and read: with the station's text in place of its name.
    void getKeyInNextRun(Id id, std::string &key) const;
    std::int32_t colour(Id id) const { return m_nodes[id].colour; }

    /// Whether a node whose name and text have that many bytes together still fits.
    bool hasRoom(std::size_t bytes) const;
    std::size_t arenaSize() const { return m_arena.size(); }
    /// Bytes in use and reserved for all but names and texts.
    std::size_t overhead() const;
    std::size_t count() const { return m_alive - m_asideCount; } ///< without the root
    Id end() const { return static_cast<Id>(m_nodes.size()); }   ///< beyond the last number

private:
    struct Node
    {
        Id parent;
        std::uint32_t text; ///< where its name and text begin in the arena
        std::int32_t colour;
    };
    static_assert(sizeof(Node) == 12);
    static constexpr std::uint32_t dead = 0xFFFFFFFF;

    struct Branch
    {
        NodeKind kind;
        std::vector<Id> children; ///< in growing order
    };
    struct Slot
    {
        Id id = root;           ///< root marks a free slot
        std::uint32_t hash = 0; ///< kept, so that a search looks at few nodes that it does not want
    };

    template <class Value> using Large = std::vector<Value, LargePageAllocator<Value>>;
    using Arena = std::basic_string<char, std::char_traits<char>, LargePageAllocator<char>>;

    bool isStored(Id id) const { return id < m_nodes.size() && m_nodes[id].text != dead; }
    bool isAside(Id id) const;
    std::size_t countFrom(Id id) const;
    static NodeKind childKind(NodeKind parent, std::string_view name);
    std::optional<std::uint32_t> store(std::string_view name, std::string_view text);
    void getKey(Id id, std::string_view stationName, std::string &key) const;
    std::size_t slotOf(const Place &place) const;
    std::uint32_t hash(Id parent, std::string_view name) const;
    void removeSlot(Id id);
    void leaveSiblings(Id id);
    void rebuildSlots(std::size_t slots);
    void compactWhenWasteful();

    Large<Node> m_nodes;
    QHash<Id, Branch> m_branches; ///< of the nodes that have, or are made to have, children
    Arena m_arena;
    std::size_t m_waste = 0; ///< bytes of the arena that no node uses
    std::size_t m_alive = 0;
    QSet<Id> m_aside;             ///< stations that were taken out
    std::size_t m_asideCount = 0; ///< of their nodes
    Large<Slot> m_slots;          ///< open addressing
    std::size_t m_seed;
};

} // namespace ktr
