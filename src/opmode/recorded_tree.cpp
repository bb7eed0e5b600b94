#include "opmode/recorded_tree.h"

#include "opmode/tree/station_tree_loader.h"

namespace ktr {

namespace {

/// Two keepers may have given two stations one name. A name of somebody else's making has its place all the
/// same.
QString freeName(const StationTree &tree, const QString &name)
{
    const QString usable = QString::fromStdString(storedText(name)).replace(u'/', u'-').trimmed();
    return tree.freeName(usable.isEmpty() ? QStringLiteral("?") : usable);
}

} // namespace

QHash<qint64, QString> loadStations(StationTree &tree, const RecordedStations &states)
{
    QHash<qint64, QString> names;
    StationTreeLoader loader(tree);
    for (const StationRow &row : states.stations) {
        const QString kennung = freeName(tree, row.name);
        const std::string stored = storedText(kennung);
        if (row.listed && loader.load(stored, stored, StationTree::normalColour)) {
            names.insert(row.id, kennung);
        }
    }
    for (const NotificationRow &row : states.notifications) {
        const QString kennung = names.value(row.station);
        const std::string key = storedText(entryKey(kennung, branches::notifications, row.entry));
        const bool isRed = row.raised != 0 && row.acknowledged == 0;
        if (!kennung.isEmpty() && loader.load(key, storedText(row.entry),
                                              isRed ? StationTree::alarmColour : StationTree::normalColour)) {
            (void)loader.loadArrival(key,
                                     {row.last, row.acknowledged, static_cast<int>(row.count), row.raised});
        }
    }
    loader.colourStationsInAlarm();
    return names;
}

} // namespace ktr
