#pragma once

#include <QIcon>
#include <QPalette>

namespace ktr {

/// For a bar that cannot be overlooked: light text on red in every appearance.
QPalette alarmBarPalette(const QPalette &palette);

/// A bell, drawn in a colour of its own, or in that of a text.
QIcon alarmIcon(const QColor &colour);
/// A bell crossed out.
QIcon muteIcon(const QColor &colour);

/// A moment as the whole operational mode writes it, in every language: "DD.MM.YYYY HH:MM:SS" of the wall
/// clock; "—" for 0. `moment` is in milliseconds since 1970, UTC.
QString shownMoment(qint64 moment);
/// One whose text is as wide as any.
inline constexpr qint64 sampleMoment = 1'261'659'903'000;

} // namespace ktr
