#pragma once

#include <QImage>

namespace ktr {

class HistoryCanvas;

/// The curves as they are shown, with a title above and a legend below, twice as fine as on the screen: for a
/// file.
QImage historyPicture(HistoryCanvas &canvas, const QString &title, const QFont &font,
                      const QPalette &palette);

} // namespace ktr
