#include "opmode/window/end_of_watching.h"

#include "opmode/operational_mode.h"

#include <QCoreApplication>

namespace ktr {

namespace {

bool isWatching(const OperationalMode &mode)
{
    return mode.isOpen() && !mode.isJoined() && mode.hindrance() == OperationalMode::Hindrance::None;
}

} // namespace

int stationsWithoutWatch(const OperationalMode &mode)
{
    int stations = 0;
    if (isWatching(mode)) {
        mode.stations().forEach([&](const cStation &station) {
            stations += station.online() || mode.isLent(station.kennung()) ? 1 : 0;
        });
    }
    return stations;
}

QString questionBeforeEnd(const OperationalMode &mode)
{
    const int stations = stationsWithoutWatch(mode);
    const int alarms = isWatching(mode) ? mode.alarms().waitingCount() : 0;
    if (stations == 0 && alarms == 0) {
        return {};
    }
    return QCoreApplication::translate(
               "EndOfWatching", "Close the operational mode? Nobody watches its stations then; stations "
                                "that are online: %L1, alarms that are open: %L2.")
        .arg(stations)
        .arg(alarms);
}

} // namespace ktr
