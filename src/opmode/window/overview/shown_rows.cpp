#include "opmode/window/overview/shown_rows.h"

#include <algorithm>

namespace ktr {

namespace {

/// Of a station; empty of a heading.
QString keyAt(const OverviewModel &model, int row)
{
    return model.index(row).data(OverviewModel::KeyRole).toString();
}

} // namespace

QStringList shownKeys(const OverviewModel &model)
{
    QStringList keys;
    for (int row = 0; row < model.rowCount(); ++row) {
        keys += keyAt(model, row);
    }
    keys.removeAll(QString());
    return keys;
}

QString shownBeside(const OverviewModel &model, const QStringList &stations)
{
    const QSet<QString> going(stations.cbegin(), stations.cend());
    int last = -1;
    for (const QString &kennung : stations) {
        last = std::max(last, model.rowOf(kennung));
    }
    const auto stays = [&](const QString &key) { return !key.isEmpty() && !going.contains(key); };
    for (int row = last + 1; row < model.rowCount(); ++row) {
        if (QString key = keyAt(model, row); stays(key)) {
            return key;
        }
    }
    for (int row = last; row >= 0; --row) {
        if (QString key = keyAt(model, row); stays(key)) {
            return key;
        }
    }
    return {};
}

std::vector<int> rowsOf(const OverviewModel &model, const QStringList &stations)
{
    std::vector<int> rows;
    for (const QString &kennung : stations) {
        if (const int row = model.rowOf(kennung); row >= 0) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

QItemSelection selectionOf(const OverviewModel &model, const std::vector<int> &rows)
{
    QItemSelection selection;
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) {
            ++last;
        }
        selection.append({model.index(rows[first]), model.index(rows[last])});
        first = last + 1;
    }
    return selection;
}

} // namespace ktr
