#pragma once

#include "opmode/tree/station_tree.h"

#include <QPalette>
#include <QString>

#include <optional>

class QPainter;

namespace ktr {

/// Draws how a station is as a small round mark, told apart by its form as well as by its colour: alive is
/// a full disc, silent a ring with a bar through it, connecting a ring with a dot, offline a thin ring.
/// On a coloured ground it has one colour.
void paintStationMark(QPainter &painter, const QRectF &where, const StationStatus &status,
                      const QPalette &palette, const std::optional<QColor> &onGround = {});

/// How a station is, in words.
QString statusText(const StationStatus &status);

} // namespace ktr
