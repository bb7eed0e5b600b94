#pragma once

#include <QList>
#include <QStringList>

namespace ktr::cli {

/// Prints rows of cells as columns of equal width; the last one is as it is. A cell that no column can take
/// is shown with "…" at its end: one text of a module or a file must not push all others away.
void printTable(const QList<QStringList> &rows);

/// The same for a text in a line of its own.
QString elided(const QString &text);

} // namespace ktr::cli
