#include "cli/columns.h"

#include "cli/console.h"
#include "transmissions/transmission_texts.h"

#include <algorithm>

namespace ktr::cli {

namespace {

constexpr qsizetype longestColumn = 40;
constexpr qsizetype longestLast = 400; ///< a command has 160 characters, paths are longer

} // namespace

QString elided(const QString &text)
{
    return shortText(text, longestLast);
}

void printTable(const QList<QStringList> &rows)
{
    QList<qsizetype> widths;
    for (const QStringList &row : rows) {
        for (qsizetype column = 0; column < row.size(); ++column) {
            if (widths.size() <= column) {
                widths += 0;
            }
            widths[column] = std::max(widths[column], std::min(longestColumn, row[column].size()));
        }
    }
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype column = 0; column + 1 < row.size(); ++column) {
            line += shortText(row[column], longestColumn).leftJustified(widths[column] + 2);
        }
        line += elided(row.last());
        print(line.trimmed());
    }
}

} // namespace ktr::cli
