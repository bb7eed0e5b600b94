#pragma once

#include "printout/content.h"

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QRectF>

namespace ktr {

// A4 pages as lists of what stands on them. Positions are tenths of a point from the page's upper left
// corner: fine enough for the size of a font, which is a whole number of them.

inline constexpr double layoutUnitsPerPoint = 10;
inline constexpr double layoutUnitsPerMm = layoutUnitsPerPoint * 72 / 25.4;

struct PrintedText
{
    QPointF baseline;
    QString text;
    QFont font;
    QColor color;
};

struct PrintedPage
{
    QList<std::pair<QRectF, QColor>> fills; ///< areas and rules, below the texts
    QList<PrintedText> texts;
};

/// What stands on every page around the content; the page's number stands opposite the header.
struct PageFrame
{
    QString header;
    QString footerLeft;
    QString footerRight;
};

/// Breaks sections into pages. A table's head stands again on each page that the table reaches; a row is
/// split only when it is higher than a page, a heading never ends a page.
QList<PrintedPage> layOut(const QString &title, const QList<PrintSection> &sections, const PageFrame &frame);

} // namespace ktr
