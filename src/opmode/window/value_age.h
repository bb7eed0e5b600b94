#pragma once

#include "opmode/configured_inputs.h"
#include "opmode/tree/station_tree.h"

#include <QLocale>

namespace ktr {

// How old a value is, and how it stands to its limits, in a few words.

/// How old what came at a moment (ms since 1970, UTC) is: "now", "3 min", "2 h", "since 21.11. 14:03"; empty
/// for 0. It changes once a minute at most.
QString ageText(qint64 at, const QDateTime &now);

/// Why values of the station are of before, and are shown grey; empty while it is heard.
QString staleReason(const StationStatus &status);

/// "< 0,5   > 3,5 m"; empty without limits.
QString limitsText(const QList<InputLimit> &limits, const QString &unit, const QLocale &locale);

/// Of the limit that a value is beyond: "▲ > 3,5 m"; the mark alone tells it, too.
QString beyondText(const InputLimit &limit, const QString &unit, const QLocale &locale);
QChar beyondMark(const InputLimit &limit);

/// A limit with its number and what the module says of it: "limit value 5: > 3,5 m, \"level high\"".
QString limitDescription(const InputLimit &limit, const QString &unit, const QLocale &locale);

} // namespace ktr
