#pragma once

#include "foretell/module_play.h"
#include "lang/text_table.h"

namespace ktr {

// What is foretold, in words for the user.

/// For programs: "notified", "switched" and so on; they do not change.
QString eventKindName(PlayEvent::Kind kind);

/// What happens: "Notification", "Repetition 2 of 3", "DigOut 1 = 1".
QString eventTitle(const PlayEvent &event, const Configuration &configuration, const TextTable &texts);
/// Why, or what of: the limit value and its condition, or the switch point and its type.
QString eventCause(const PlayEvent &event, const Configuration &configuration, const TextTable &texts);
/// To whom: the names of those that have a number; "–" where nobody gets anything.
QString eventRecipients(const PlayEvent &event, const Configuration &configuration, const TextTable &texts);

/// "Limit value 3 (10 Analog In 2 > 110 m³/h)"
QString limitValueWords(const Configuration &configuration, int index, const TextTable &texts);
/// "Switch point 3: daily"
QString switchPointWords(const Configuration &configuration, int index, const TextTable &texts);

QString quietText(const QuietPoint &quiet, const Configuration &configuration, const TextTable &texts);
QString unplayedText(int limitValue, UnplayedWhy why);

} // namespace ktr
