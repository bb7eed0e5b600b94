#pragma once

#include <QString>

class QApplication;

namespace ktr {

/// What modules, files and users say is shown letter for letter, in every window of the program: a label or a
/// tool tip whose text looks like mark-up shows the marks, and a long tool tip is folded. A label that is to
/// show mark-up of our own says so with setTextFormat, and escapes all that it puts in: a picture that is
/// named there would be read from wherever it says. Done once; calling it again does nothing.
void showOutsideTextsPlain(QApplication &application);

/// A text as a tool tip shows it: lines of at most 80 characters, at most 15 of them, with "…" at the end
/// of what is left out.
QString foldedTip(const QString &text);

} // namespace ktr
