#pragma once

#include "platform/status.h"

#include <QList>
#include <QStringList>

namespace ktr {

/// A table as spreadsheets write it: a line of titles, then rows.
struct Table
{
    struct Row
    {
        int line; ///< counted from 1
        QStringList cells;
    };

    QStringList titles;
    QList<Row> rows;
};

/// Reads a table with ";", tab or "," between its cells, with quotation marks or without, of at most 16 MiB.
/// The apostrophe that spreadsheets need in front of "+49..." is no part of a cell. A failure names the file;
/// a table without any row is one, and a quotation
/// mark without its counterpart, whose line is told.
Status readTable(const QString &path, Table &table);

/// In words for the user: the line has a quotation mark without its counterpart.
QString unbalancedQuote(int line);

/// The text of a table: UTF-8, UTF-16 with its mark, or Windows-1252.
Status readTableText(const QString &path, QString &text);

} // namespace ktr
