#pragma once

#include <QStringView>

#include <optional>

namespace ktr {

// The form of what a module says: line ends, the prompt of its modem, markers. A text is what stands behind
// the prompt and the marker.

/// How a text of the module came: by itself ("--> ") or as the answer to a command ("<-- ").
enum class Direction { ByItself, Answer };

/// The place after the first line end, a carriage return or Ctrl-Z. A line feed after it begins the next
/// line.
qsizetype endOfLine(QStringView lines);

/// A line without the blanks and ">" that may stand in front of its text.
QStringView withoutPrompt(QStringView line);

/// The marker that a line begins with, behind a prompt or not.
std::optional<Direction> markerOf(QStringView line);

/// What follows the prompt and the marker of a line, and the prompt behind that.
QStringView plainText(QStringView line);

/// The marker of the first line that begins with one; -1 when none does.
qsizetype leadingMarker(QStringView lines);

/// The first marker "--> " behind something else ("+49 --> M,fail"); -1 when there is none. In a line that
/// begins with a marker it is part of the text.
qsizetype insideMarker(QStringView lines);

/// The letters of what a module reports: a notification, input values, a line of its archive.
inline constexpr QStringView reportLetters = u"MRH";

/// A report of the module, which may hold any text.
bool isReport(QStringView line);

/// Whether an answer says that a command failed, in whatever form. Reports and version replies never do.
bool reportsFailure(QStringView line);

/// What a plain answer names: "G,3" of "OK: G,3", "F,1" of "fail: F,1". Empty when it is of another form.
QString namedInAnswer(const QString &text);

} // namespace ktr
