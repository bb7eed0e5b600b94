#pragma once

class QApplication;

namespace ktr {

/// A button that is disabled while it has the focus, as in what its own click does, hands it to nobody: the
/// toolkit would give it to the next control, which the next key press then hits. The focus waits at what is
/// around the button and comes back when the button is enabled. Done once for the whole program; calling it
/// again does nothing.
void keepFocusOfDisabledButtons(QApplication &application);

} // namespace ktr
