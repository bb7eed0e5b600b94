#pragma once

#include <QString>

class QApplication;

namespace ktr {

/// What modules, files and users say is shown letter for letter, in every window of the program: a label or a
/// tool tip whose text looks like mark-up shows the marks, a long tool tip is folded, one that is open
/// follows its text, and the text of a long message box is bounded. A label that is to show mark-up of our
/// own says so with setTextFormat, and escapes all that it puts in: a picture that is named there would be
/// read from wherever it says. Done once; calling it again does nothing.
void showOutsideTextsPlain(QApplication &application);

/// A text as a tool tip shows it: lines of at most 80 characters, at most 15 of them, with "…" at the end
/// of what is left out.
QString foldedTip(const QString &text);

/// A line as a list or a box shows it, with at most `most` characters, three or more. Of a longer one the
/// middle is left out, in whose place stands how much that is, where there are a hundred or more.
QString shortenedLine(const QString &line, qsizetype most = 400);

/// Messages, a line each, as they are read on one line: each is a sentence of its own.
QString asSentences(const QString &lines);

/// A text as a box shows it: shortened lines, and of more than `mostLines` the first ones and how many more
/// there are.
QString boundedText(const QString &text, qsizetype mostLines = 100);

} // namespace ktr
