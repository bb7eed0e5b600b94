#include "opmode/window/list_rows.h"

#include <algorithm>

namespace ktr {

int rowBeside(int count, int behind, int before, const std::function<bool(int)> &mayBe)
{
    for (int row = std::max(behind, 0); row < count; ++row) {
        if (mayBe(row)) {
            return row;
        }
    }
    for (int row = std::min(before, count - 1); row >= 0; --row) {
        if (mayBe(row)) {
            return row;
        }
    }
    return -1;
}

QItemSelection selectionOf(const QAbstractItemModel &model, const std::vector<int> &rows)
{
    QItemSelection selection;
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] <= rows[last] + 1) {
            ++last;
        }
        selection.append({model.index(rows[first], 0), model.index(rows[last], 0)});
        first = last + 1;
    }
    return selection;
}

} // namespace ktr
