#include "opmode/window/overview/shown_rows.h"

#include "opmode/window/list_rows.h"

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
    const int row = rowBeside(model.rowCount(), last + 1, last, [&](int at) {
        const QString key = keyAt(model, at);
        return !key.isEmpty() && !going.contains(key);
    });
    return row < 0 ? QString() : keyAt(model, row);
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

} // namespace ktr
