#pragma once

#include "config/configuration.h"
#include "lang/text_table.h"

#include <QList>
#include <QLocale>
#include <QString>
#include <QStringList>

namespace ktr {

/// Which limit values and switch points are printed. In use is a limit value with a channel, a reference
/// or a text, and a switch point with a target.
enum class PrintedEntries { InUse, All };

// What is printed, before anything is known of paper and fonts.

struct PrintColumn
{
    enum class Style { Text, Number, Caption };

    QString title;
    double width = 0; ///< mm, when no word of a title needs more
    Style style = Style::Text;
    QString group = {}; ///< stands once above neighbours of the same group
};

/// Rows have a cell for each column. A table none of whose columns has a title has no head.
struct PrintTable
{
    QList<PrintColumn> columns;
    QList<QStringList> rows;
};

struct PrintSection
{
    QString title;
    QList<PrintTable> tables;
};

/// The width that every table fills, in mm.
inline constexpr double printWidth = 180;

/// The configuration in sections, titled in the language of the text table. Dates are given in the locale's
/// short form; texts and numbers stand as they were typed. The PIN is masked. An empty value is "–"; a cell
/// stays blank where there is no such value, or none that has an effect.
QList<PrintSection> printContent(const Configuration &configuration, const TextTable &texts,
                                 const QLocale &locale, PrintedEntries entries);

} // namespace ktr
