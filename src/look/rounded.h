#pragma once

#include <QBrush>
#include <QColor>
#include <QRect>

class QPainter;

namespace ktr {

/// Draws a rounded rectangle with a border of the given width that lies inside it. No border or fill where
/// the colour is not valid or the brush is none.
void drawRounded(QPainter *painter, const QRect &rect, double radius, const QColor &border,
                 const QBrush &fill, double width = 1);

} // namespace ktr
