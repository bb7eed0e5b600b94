#pragma once

class QByteArray;
class QString;
class QWidget;

namespace ktr {

/// The toolkit's restoreGeometry(), but no larger than the screen: that may be a smaller one by now. To be
/// called before the window is shown.
void restorePlace(QWidget &window, const QByteArray &kept);

/// Gives a window the size and the place that it had when it was last closed, on the screen on which it was,
/// or, where that is gone, on one that is there; and keeps them from then on under the name. To be called
/// when the window has its usual size, before it is shown.
void keepWindowPlace(QWidget &window, const QString &name);

} // namespace ktr
