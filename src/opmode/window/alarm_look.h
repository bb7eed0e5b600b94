#pragma once

#include <QIcon>
#include <QPalette>

class QLocale;

namespace ktr {

/// For a bar that cannot be overlooked: light text on red in every appearance.
QPalette alarmBarPalette(const QPalette &palette);

/// A bell, drawn in a colour of its own, or in that of a text.
QIcon alarmIcon(const QColor &colour);
/// A bell crossed out.
QIcon muteIcon(const QColor &colour);

/// A time as the user's country writes it, with seconds; "—" for 0. `moment` is in milliseconds since 1970,
/// UTC.
QString shownTime(qint64 moment, const QLocale &locale);

} // namespace ktr
