#include "opmode/window/overview/tile_layout.h"

#include <algorithm>

namespace ktr {

void TileLayout::arrange(int rows, const std::vector<int> &headings, const Measures &measures)
{
    m_measures = measures;
    m_parts.clear();
    m_height = 0;
    const auto add = [this](int heading, int first, int end) {
        const int tilesTop = m_height + (heading < 0 ? 0 : m_measures.heading);
        m_parts.push_back({heading, first, end - first, m_height, tilesTop});
        m_height = tilesTop + lines(m_parts.back()) * m_measures.tile.height();
    };
    const int before = headings.empty() ? rows : headings.front();
    if (before > 0) {
        add(-1, 0, before);
    }
    for (std::size_t at = 0; at < headings.size(); ++at) {
        add(headings[at], headings[at] + 1, at + 1 < headings.size() ? headings[at + 1] : rows);
    }
}

int TileLayout::lines(const Part &part) const
{
    return (part.count + m_measures.columns - 1) / m_measures.columns;
}

std::size_t TileLayout::partOf(int row) const
{
    const auto behind = std::ranges::upper_bound(
        m_parts, row, {}, [](const Part &part) { return part.heading < 0 ? part.first : part.heading; });
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, behind - m_parts.begin() - 1));
}

std::size_t TileLayout::partAt(int y) const
{
    const auto behind = std::ranges::upper_bound(m_parts, y, {}, &Part::top);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, behind - m_parts.begin() - 1));
}

bool TileLayout::isHeading(int row) const
{
    return !m_parts.empty() && m_parts[partOf(row)].heading == row;
}

QRect TileLayout::rectOf(int row) const
{
    if (m_parts.empty() || row < 0) {
        return {};
    }
    const Part &part = m_parts[partOf(row)];
    const QSize &tile = m_measures.tile;
    if (part.heading == row) {
        return {0, part.top, m_measures.columns * tile.width(), m_measures.heading};
    }
    const int at = row - part.first;
    if (at >= part.count) {
        return {};
    }
    return {QPoint(at % m_measures.columns * tile.width(),
                   part.tilesTop + at / m_measures.columns * tile.height()),
            tile};
}

int TileLayout::rowAt(const QPoint &point) const
{
    const int row = rowNear(point);
    return row >= 0 && rectOf(row).contains(point) ? row : -1;
}

int TileLayout::rowNear(const QPoint &point) const
{
    if (m_parts.empty()) {
        return -1;
    }
    const Part &part = m_parts[partAt(point.y())];
    if (part.count == 0 || (part.heading >= 0 && point.y() < part.tilesTop)) {
        return part.heading;
    }
    const int line = std::clamp((point.y() - part.tilesTop) / m_measures.tile.height(), 0, lines(part) - 1);
    const int column = std::clamp(point.x() / m_measures.tile.width(), 0, m_measures.columns - 1);
    return part.first + std::min(line * m_measures.columns + column, part.count - 1);
}

std::pair<int, int> TileLayout::rowsBetween(int top, int bottom) const
{
    if (m_parts.empty() || bottom <= top) {
        return {0, 0};
    }
    const int widest = m_measures.columns * m_measures.tile.width();
    const int last = rowNear({widest, bottom});
    return {rowNear({0, std::max(0, top)}), last + 1};
}

int TileLayout::above(int row) const
{
    const std::size_t at = partOf(row);
    const Part &part = m_parts[at];
    if (row != part.heading && row - m_measures.columns >= part.first) {
        return row - m_measures.columns;
    }
    if (row != part.heading && part.heading >= 0) {
        return part.heading;
    }
    if (row != part.heading || at == 0) {
        return row;
    }
    const Part &before = m_parts[at - 1];
    return before.count == 0 ? before.heading : before.first + (lines(before) - 1) * m_measures.columns;
}

int TileLayout::below(int row) const
{
    const std::size_t at = partOf(row);
    const Part &part = m_parts[at];
    const int end = part.first + part.count;
    if (row == part.heading && part.count > 0) {
        return part.first;
    }
    if (row != part.heading && row + m_measures.columns < end) {
        return row + m_measures.columns;
    }
    const bool isLastLine = row == part.heading || (row - part.first) / m_measures.columns == lines(part) - 1;
    if (isLastLine) {
        return at + 1 < m_parts.size() ? m_parts[at + 1].heading : row;
    }
    return at + 1 < m_parts.size() ? end - 1 : row; // under it is none, but the line goes on
}

} // namespace ktr
