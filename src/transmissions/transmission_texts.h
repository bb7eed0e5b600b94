#pragma once

#include "transmissions/transmission_memory.h"

#include <QJsonObject>

namespace ktr {

// A transmission in words for the user, and for other programs.

/// "whole", "broken off before step 6".
QString verdictText(const TransmissionRow &row);
QString outcomeText(StepOutcome outcome);
/// "2026-11-20 10:00:00" in local time; empty for a time that is not known.
QString transmissionTime(qint64 at);

/// A text of a file or a module as a line or a cell shows it: of a long one the beginning and "…". It must
/// not push away what stands beside it.
inline constexpr qsizetype longestCell = 80;
QString shortText(const QString &text, qsizetype longest = longestCell);

/// What is known of it but for its commands: a name and a value each.
QList<std::pair<QString, QString>> transmissionFacts(const RememberedTransmission &transmission);

/// All but the configuration; of its commands those that are given.
QJsonObject transmissionJson(const TransmissionRow &row);
QJsonObject transmissionJson(const RememberedTransmission &transmission);

} // namespace ktr
