#pragma once

class QApplication;

namespace ktr {

/// In a field for text, keys are the text's as far as they do something with it: Undo and Redo are the
/// window's while the text has nothing to undo, and those that delete a word are never a command of the
/// window. The toolkit has both the other way round. Done once for the whole program; calling it again does
/// nothing.
void sortTextKeys(QApplication &application);

} // namespace ktr
