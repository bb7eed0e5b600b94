#pragma once

#include <QPalette>

namespace ktr {

/// The two sets of colours. Text has a contrast of at least 4.5 : 1 on every ground it is drawn on, disabled
/// text and placeholders at least 3 : 1.
QPalette lightPalette();
QPalette darkPalette();

/// How well one is told from the other, 1 to 21, by the luminance that eyes see.
double contrast(const QColor &one, const QColor &other);

/// Whether light text stands on dark ground.
bool isDark(const QPalette &palette);

// Colours beyond the palette's roles, fitting to a palette of the above.
QColor cardColour(const QPalette &palette);
/// Lines that divide, such as a card's border.
QColor hairline(const QPalette &palette);
/// The border of what can be changed: fields, boxes, buttons; at least 3 : 1 against the ground.
QColor fieldBorder(const QPalette &palette);
/// Marks focus, choice and check marks.
QColor accent(const QPalette &palette);
/// For text and marks on the accent colour.
QColor accentText(const QPalette &palette);
/// A ground of a shade of the accent for what is chosen and keeps the colour of its text.
QColor tint(const QPalette &palette);
/// For texts and marks of what is wrong, of what is in doubt and of what is well; on any ground.
QColor alarmText(const QPalette &palette);
QColor doubtText(const QPalette &palette);
QColor wellText(const QPalette &palette);
/// A ground that cannot be overlooked, for white text.
QColor alarmGround(const QPalette &palette);
/// A thin veil over what the mouse is on, or with double strength over what is pressed.
QColor veil(const QPalette &palette, int strength = 1);

} // namespace ktr
