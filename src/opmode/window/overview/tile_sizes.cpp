#include "opmode/window/overview/tile_sizes.h"

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

constexpr double mostStretch = 1.8;

const TileLevel &levelAt(int level)
{
    return tileLevels()[static_cast<std::size_t>(level)];
}

/// How many lines of tiles there are.
int linesOf(const TileSizes::Rows &rows, int columns)
{
    TileLayout places;
    places.arrange(rows.count, rows.headings, {columns, QSize(1, 1), 0});
    return places.height();
}

} // namespace

int TileSizes::columnsAt(const TileLevel &level) const
{
    const int columns = std::max(1, static_cast<int>(m_room.width() / (level.width * m_line)));
    return m_mostColumns == 0 ? columns : std::min(columns, m_mostColumns);
}

/// Above cells they leave room for these.
int TileSizes::headingHeight(const TileLevel &level) const
{
    constexpr double aboveTiles = 1.8;
    constexpr double aboveCells = 1.2;
    constexpr double onWall = 0.8; // in letters of a centimetre
    const double lines = !level.isCell() ? aboveTiles : m_isOnWall ? onWall : aboveCells;
    return static_cast<int>(std::ceil(lines * m_line));
}

TileLayout::Measures TileSizes::measures(const TileLevel &level, int columns, int height) const
{
    return {columns, QSize((m_room.width() - 1) / columns, height), headingHeight(level)};
}

TileLayout::Measures TileSizes::measures(const TileLevel &level) const
{
    return measures(level, columnsAt(level), static_cast<int>(std::ceil(level.height * m_line)));
}

int TileSizes::smallestLevel() const
{
    constexpr double leastSide = 9;
    const auto levels = tileLevels();
    const auto tooSmall = std::ranges::find_if(levels, [this](const TileLevel &level) {
        return std::min(level.width, level.height) * m_line < leastSide;
    });
    return std::max(0, static_cast<int>(tooSmall - levels.begin()) - 1);
}

int TileSizes::fittingLevel(const Rows &rows) const
{
    const int smallest = smallestLevel();
    for (int level = 0; level < smallest; ++level) {
        TileLayout places;
        places.arrange(rows.count, rows.headings, measures(levelAt(level)));
        if (places.height() <= m_room.height()) {
            return level;
        }
    }
    return smallest;
}

TileLevel TileSizes::contents(int level, const QSize &tile) const
{
    const auto levels = tileLevels().first(static_cast<std::size_t>(level));
    const auto fits = std::ranges::find_if(levels, [&](const TileLevel &larger) {
        return larger.height * m_line <= tile.height() && larger.width * m_line <= tile.width();
    });
    return levelAt(fits == levels.end() || levelAt(level).isCell() ? level
                                                                   : static_cast<int>(fits - levels.begin()));
}

TileLayout::Measures TileSizes::fitted(int level, const Rows &rows) const
{
    constexpr double asGood = 0.97; // of the room that another number of columns fills
    const TileLevel &tile = levelAt(level);
    const TileLevel &larger = levelAt(std::max(0, level - 1));
    const TileLayout::Measures usual = measures(tile);
    const int room = m_room.height() - static_cast<int>(rows.headings.size()) * usual.heading;
    const int highest = static_cast<int>(mostStretch * tile.height * m_line);
    const double widest = std::max(mostStretch * tile.width, larger.width) * m_line;
    TileLayout::Measures best = usual;
    double bestFill = 0;
    double bestScale = 0;
    for (int columns = usual.columns; columns > 0; --columns) {
        const int lines = linesOf(rows, columns);
        if (lines == 0 || lines * usual.tile.height() > room ||
            (columns < usual.columns && m_room.width() > widest * columns)) {
            break;
        }
        const int height = std::min(highest, room / lines);
        const double fill = double(lines) * height / room;
        const double scale = std::min(m_room.width() / (columns * tile.width), height / tile.height);
        if (fill * asGood > bestFill || (fill > bestFill * asGood && scale > bestScale)) {
            best = measures(tile, columns, height);
            bestFill = fill;
            bestScale = scale;
        }
    }
    return best;
}

} // namespace ktr
