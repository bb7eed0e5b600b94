#pragma once

#include <QItemSelection>

#include <functional>
#include <vector>

namespace ktr {

// The rows of a list or, of a tree, those of the first level.

/// Of so many rows the first one from `behind` on that may be it, or else the last one up to `before`; -1 for
/// none.
int rowBeside(int count, int behind, int before, const std::function<bool(int)> &mayBe);

/// Of rows in growing order; those that follow each other are one range.
QItemSelection selectionOf(const QAbstractItemModel &model, const std::vector<int> &rows);

} // namespace ktr
