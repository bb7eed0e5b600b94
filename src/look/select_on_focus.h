#pragma once

class QLineEdit;

namespace ktr {

/// Selects all of a field when the user comes to it, by a key or by a click, so that typing replaces it. A
/// second click places the caret, and dragging selects a part. Coming back from a menu or another window
/// changes nothing.
void selectAllOnFocus(QLineEdit *edit);

} // namespace ktr
