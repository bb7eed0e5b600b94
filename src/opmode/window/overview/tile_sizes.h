#pragma once

#include "opmode/window/overview/tile_layout.h"
#include "opmode/window/overview/tile_painter.h"

namespace ktr {

/// How large tiles are where there is so much room, and how many stand beside each other.
class TileSizes
{
public:
    /// Rows of a model, of which some are headings, in order.
    struct Rows
    {
        int count = 0;
        const std::vector<int> &headings;
    };

    /// `line` is the height of a line of text, all in pixels. On a wall headings take less room. Not more
    /// than so many columns; 0: as many as there is room for.
    TileSizes(int line, const QSize &room, bool isOnWall, int mostColumns = 0)
        : m_line(line), m_room(room), m_isOnWall(isOnWall), m_mostColumns(mostColumns)
    {}

    /// The place in tileLevels() of the smallest tiles that can still be told apart and hit.
    int smallestLevel() const;
    /// That of the largest tiles with which all rows are seen at once, or else the smallest.
    int fittingLevel(const Rows &rows) const;
    TileLayout::Measures measures(const TileLevel &level) const;
    /// The same, stretched so that all rows together fill the room, as far as tiles do not become
    /// much larger than those of the level; where they do not fit, not stretched.
    TileLayout::Measures fitted(int level, const Rows &rows) const;
    /// What has room in a tile of a level that was stretched.
    TileLevel contents(int level, const QSize &tile) const;

private:
    int columnsAt(const TileLevel &level) const;
    int headingHeight(const TileLevel &level) const;
    TileLayout::Measures measures(const TileLevel &level, int columns, int height) const;

    int m_line;
    QSize m_room;
    bool m_isOnWall;
    int m_mostColumns;
};

} // namespace ktr
