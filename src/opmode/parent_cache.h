#pragma once

#include "opmode/node_store.h"

#include <array>
#include <memory>

namespace ktr {

/// Remembers under which notifications and history nodes the entries of a file stand: entries of many
/// stations follow one another in the order of their arrival. It keeps nodes only as long as they live.
class ParentCache
{
public:
    struct Place
    {
        NodeStore::Id parent;
        std::string_view name;
    };
    /// The place of a key as NodeStore::place() gives it, when it is remembered.
    std::optional<Place> find(std::string_view key) const;
    /// Remembers the parent of a node of this key.
    void remember(std::string_view key, NodeStore::Id parent, NodeKind parentKind);
    void clear() { m_lines.reset(); }

private:
    struct Line
    {
        NodeStore::Id parent = NodeStore::root;
        std::uint32_t size = 0;
        std::array<char, 56> beginning{}; ///< of the key: two names, each with its "/"
    };
    static_assert(sizeof(Line) == 64);
    static constexpr std::size_t lines = 4096;

    static std::string_view beginningOf(std::string_view key);
    static std::size_t lineOf(std::string_view beginning);

    std::unique_ptr<std::array<Line, lines>> m_lines;
};

} // namespace ktr
