#pragma once

#include "config/comparison.h"
#include "config/entry_clip.h"

namespace ktr {

/// Entries as a table for a spreadsheet: a line of headings, then a row each, with channels, targets and
/// types as their lists show them and numbers with the locale's decimal separator.
QString entryTable(const Configuration &configuration, EntryList list, const QList<int> &entries,
                   const ComparisonWords &words);

/// The rows of such a table, which a spreadsheet may have changed: columns in any order or left out, by their
/// headings or their names in the file; without headings all columns in the order of entryTable(). Fails with
/// the row and column that cannot be understood.
Status readEntryTable(QStringView text, EntryList list, const ComparisonWords &words, EntryClip &clip);

} // namespace ktr
