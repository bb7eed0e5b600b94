#pragma once

// Tables as spreadsheets put them on the clipboard: cells separated by tabs, a line a row.

#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// A cell that holds a tab, a line break or a quotation mark is quoted. What a spreadsheet would take for a
/// formula gets an apostrophe in front, which cellWithoutGuard() takes off.
QString tabTable(const QList<QStringList> &rows);

/// The rows of a text, empty ones and empty cells included, but for a last line end. A quoted cell may hold
/// tabs, line breaks and doubled quotation marks; one that is never closed is no quoted cell.
QList<QStringList> readTabTable(QStringView text);

/// A cell without the apostrophe that keeps it from being a formula.
QString cellWithoutGuard(const QString &cell);

} // namespace ktr
