#pragma once

#include "config/configuration.h"
#include "lang/text_table.h"

#include <QLocale>

namespace ktr {

// What pages and printout say of an entry in the same words.

/// The units of a channel's limit and hysteresis; "0/1" and "0" for a channel of two states.
struct LimitUnits
{
    QString limit;
    QString hysteresis;
};
LimitUnits limitUnits(const Configuration &configuration, int channel, const TextTable &texts);

/// "<", "=" or ">" for the comparisons 1 to 3, the number for any other.
QString comparisonSign(int comparison);

/// The numbers of the limit values that a combination refers to, counted from 1: {"1", "3", "5"}.
QStringList combinedLimitValues(double reference);

/// An administrator's name; "Admin 2" where there is none.
QString administratorName(const Configuration &configuration, std::size_t index, const TextTable &texts);

/// The start of a switch point, "0911151405", as date and time in the user's form; any other text as it is.
QString startText(const QString &start, const QLocale &locale);

} // namespace ktr
