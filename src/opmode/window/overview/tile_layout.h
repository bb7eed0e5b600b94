#pragma once

#include <QRect>

#include <utility>
#include <vector>

namespace ktr {

/// Where tiles and headings are: a heading takes the whole width, and below it stand its tiles in lines of
/// equal ones. Points are those of the whole content.
class TileLayout
{
public:
    struct Measures
    {
        int columns = 1;
        QSize tile{1, 1};
        int heading = 1; ///< its height
    };

    /// Of so many rows of a model, some of which are headings, in order.
    void arrange(int rows, const std::vector<int> &headings, const Measures &measures);

    int height() const { return m_height; }
    QRect rectOf(int row) const;
    /// -1 where there is none.
    int rowAt(const QPoint &point) const;
    /// The nearest one; -1 when there is none at all.
    int rowNear(const QPoint &point) const;
    /// The first row that reaches below `top`, and the one behind the last that begins above `bottom`.
    std::pair<int, int> rowsBetween(int top, int bottom) const;
    /// The row above and below another one; that itself where there is none.
    int above(int row) const;
    int below(int row) const;
    bool isHeading(int row) const;

private:
    struct Part
    {
        int heading; ///< -1 for none
        int first;   ///< the first tile
        int count;
        int top;
        int tilesTop;
    };
    std::size_t partOf(int row) const;
    std::size_t partAt(int y) const;
    int lines(const Part &part) const;

    Measures m_measures;
    std::vector<Part> m_parts;
    int m_height = 0;
};

} // namespace ktr
