#include "opmode/tree/parent_cache.h"

#include <QHashFunctions>
#include <QHashSeed>

#include <utility>

namespace ktr {

namespace {

constexpr std::size_t fewestLines = 64;

/// Two names, each with its "/"; empty when the key has fewer.
std::string_view beginningOf(std::string_view key)
{
    const std::size_t first = key.find('/');
    const std::size_t second = first == std::string_view::npos ? first : key.find('/', first + 1);
    return second == std::string_view::npos ? std::string_view() : key.substr(0, second + 1);
}

} // namespace

std::optional<ParentCache::Found> ParentCache::find(std::string_view key) const
{
    const std::string_view beginning = beginningOf(key);
    if (m_lines.empty() || beginning.empty()) {
        return std::nullopt;
    }
    const Line &line = m_lines[lineOf(beginning)];
    if (line.parent == NodeStore::root) {
        return std::nullopt;
    }
    return Found{line.parent, key.substr(beginning.size())};
}

void ParentCache::remember(std::string_view key, NodeStore::Id parent, NodeKind parentKind)
{
    const std::string_view beginning = beginningOf(key);
    // Only under these the rest of the key is a name, whatever it holds.
    const bool ofEntries = parentKind == NodeKind::Notifications || parentKind == NodeKind::History;
    if (!ofEntries || beginning.size() > sizeof(Line::beginning)) {
        return;
    }
    if ((m_used + 1) * 2 > m_lines.size()) {
        grow();
    }
    Line &line = m_lines[lineOf(beginning)];
    m_used += line.parent == NodeStore::root ? 1 : 0;
    line.parent = parent;
    line.size = static_cast<std::uint32_t>(beginning.size());
    beginning.copy(line.beginning.data(), beginning.size());
}

void ParentCache::clear()
{
    m_lines = {};
    m_used = 0;
}

/// Where a beginning is remembered, or the free line where it would be.
std::size_t ParentCache::lineOf(std::string_view beginning) const
{
    const std::size_t mask = m_lines.size() - 1;
    std::size_t at = qHashBits(beginning.data(), beginning.size(), QHashSeed::globalSeed()) & mask;
    while (m_lines[at].parent != NodeStore::root && m_lines[at].text() != beginning) {
        at = (at + 1) & mask;
    }
    return at;
}

void ParentCache::grow()
{
    const std::vector<Line> before =
        std::exchange(m_lines, std::vector<Line>(std::max(fewestLines, 2 * m_lines.size())));
    for (const Line &line : before) {
        if (line.parent != NodeStore::root) {
            m_lines[lineOf(line.text())] = line;
        }
    }
}

} // namespace ktr
