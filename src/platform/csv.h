#pragma once

// Tables as text, as spreadsheets write and read them (RFC 4180). Those that are written have ";" between
// their cells and decimal commas in every language: with the one a spreadsheet expects the other.

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace ktr {

/// What a table as a file begins with, by which spreadsheets know that it is UTF-8.
inline constexpr char csvMark[] = "\xEF\xBB\xBF";

/// A cell for a file whose separator is ";", quoted where it has to be; control characters become blanks.
///
/// What a spreadsheet would take for a formula gets an apostrophe in front, inside of quotation marks. That
/// is also done to a number with a "+": a phone number would lose it, and all but its first 15 digits. Such a
/// cell reads '+4917012345, which people can read and dial. Negative numbers stay numbers.
QString csvCell(const QString &text);

/// The same for a cell that holds a measured value: a number stays one, whatever its sign.
QString csvValue(const QString &text);

/// A line of such cells with its end.
QByteArray csvLine(const QStringList &cells);

/// A number as a cell has it, up to 15 significant digits.
QString csvNumber(double value);
/// The same of a number as it was received; any other text stays.
QString csvNumber(QStringView received);

/// Hands over the cells of each line that is not blank, without blanks around them, and the number of the
/// line it begins at, counted from 1, until the call gives false. A quoted cell may hold separators, doubled
/// quotation marks and line ends; one that is never closed ends with its line. Gives the line of the first
/// quotation mark that is never closed, or behind whose counterpart the cell goes on: what stands there may
/// not be what was meant.
std::optional<int> readCsv(QStringView text, QChar separator,
                           const std::function<bool(const QStringList &cells, int line)> &take);

/// The one of tab, ";" and "," that stands in most of the first lines; of several the first.
QChar csvSeparator(QStringView text);

} // namespace ktr
