#pragma once

#include "opmode/tree/node_store.h"

#include <array>

namespace ktr {

/// Remembers under which notifications and history nodes the entries of a file stand: entries of many
/// stations follow one another in the order of their arrival. It keeps nodes only as long as they live.
class ParentCache
{
public:
    struct Found
    {
        NodeStore::Id parent;
        std::string_view name;
    };
    /// Where a node of this key belongs, and its name there, when that is remembered.
    std::optional<Found> find(std::string_view key) const;
    /// Remembers the parent of a node of this key.
    void remember(std::string_view key, NodeStore::Id parent, NodeKind parentKind);
    void clear();

private:
    struct Line
    {
        NodeStore::Id parent = NodeStore::root; ///< root marks a free line
        std::uint32_t size = 0;
        std::array<char, 56> beginning{}; ///< of the key: two names, each with its "/"

        std::string_view text() const { return {beginning.data(), size}; }
    };
    static_assert(sizeof(Line) == 64);

    std::size_t lineOf(std::string_view beginning) const;
    void grow();

    std::vector<Line> m_lines; ///< open addressing, half of them free at least
    std::size_t m_used = 0;    ///< lines
};

} // namespace ktr
