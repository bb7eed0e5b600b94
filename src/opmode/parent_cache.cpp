#include "opmode/parent_cache.h"

#include <QHashFunctions>

namespace ktr {

std::string_view ParentCache::beginningOf(std::string_view key)
{
    const std::size_t first = key.find('/');
    const std::size_t second = first == std::string_view::npos ? first : key.find('/', first + 1);
    return second == std::string_view::npos ? std::string_view() : key.substr(0, second + 1);
}

std::size_t ParentCache::lineOf(std::string_view beginning)
{
    return qHashBits(beginning.data(), beginning.size()) % lines;
}

std::optional<ParentCache::Place> ParentCache::find(std::string_view key) const
{
    const std::string_view beginning = beginningOf(key);
    if (!m_lines || beginning.empty()) {
        return std::nullopt;
    }
    const Line &line = (*m_lines)[lineOf(beginning)];
    if (std::string_view(line.beginning.data(), line.size) != beginning) {
        return std::nullopt;
    }
    return Place{line.parent, key.substr(beginning.size())};
}

void ParentCache::remember(std::string_view key, NodeStore::Id parent, NodeKind parentKind)
{
    const std::string_view beginning = beginningOf(key);
    // Only under these the rest of the key is a name, whatever it holds.
    const bool ofEntries = parentKind == NodeKind::Notifications || parentKind == NodeKind::History;
    if (ofEntries && beginning.size() <= sizeof(Line::beginning)) {
        if (!m_lines) {
            m_lines = std::make_unique<std::array<Line, lines>>();
        }
        Line &line = (*m_lines)[lineOf(beginning)];
        line.parent = parent;
        line.size = static_cast<std::uint32_t>(beginning.size());
        beginning.copy(line.beginning.data(), beginning.size());
    }
}

} // namespace ktr
