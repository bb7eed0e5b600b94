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

/// The same for the user: "1, 3, 5"; a number that is none of a combination as it stands.
QString combinationText(double reference, const QLocale &locale);

/// A channel's item in the lists; "invalid" for 0, the number for one that no module has.
QString channelName(int channel, const TextTable &texts);

/// The same with what the user calls the channel: "9 AnalogIn 1 – Well".
QString channelName(const Configuration &configuration, int channel, const TextTable &texts);

/// The user's own unit of a channel that counts pulses or hours; empty elsewhere, and where he has given
/// none.
QString countedUnit(const Configuration &configuration, int channel);

/// What a channel's values count, by the user's own unit where he gave one; empty for one of two states.
LimitUnits shownUnits(const Configuration &configuration, int channel, const TextTable &texts);

/// An administrator's name; "Admin 2" where there is none. One that others have, too, is told with its
/// number: "Miller (Admin 2)".
QString administratorName(const Configuration &configuration, std::size_t index, const TextTable &texts);

/// Whom a limit value notifies; "Admin 1–6" for all of them.
QStringList recipientNames(const Configuration &configuration, int recipients, const TextTable &texts);

/// What a switch point acts on, by its position in the list of targets: an output or an administrator.
QString targetName(const Configuration &configuration, int position, const TextTable &texts);

/// What a switch type does, where the text of another one reads the same: "below the limit"; empty elsewhere.
QString switchTypeMeaning(int type, const TextTable &texts);

/// With its number, and with its meaning where it has one: "16 LV exceeded (below the limit)".
QString switchTypeName(int type, const TextTable &texts);

/// The limit value that a switch point reacts to, counted from 1, and its channel: "3 (9 AnalogIn 1)".
QString watchedLimitValue(const Configuration &configuration, int index, const TextTable &texts);

/// A holiday as a date in the user's form, by its line in the list; any other line as it is.
QString holidayText(const QString &line, const QLocale &locale);

/// The start of a switch point, "0911151405", as date and time in the user's form; any other text as it is.
QString startText(const QString &start, const QLocale &locale);

} // namespace ktr
