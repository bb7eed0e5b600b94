#pragma once

namespace ktr {

/// From now on the display neither goes dark nor shows a screen saver, or does as the user wants again, on
/// systems with a call for that; elsewhere it does nothing. To be called on one thread.
void setDisplayAwake(bool isAwake);

} // namespace ktr
