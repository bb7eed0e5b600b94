#pragma once

#include "opmode/tree/station_tree.h"

#include <set>

namespace ktr {

class OperationalMode;

/// How soon somebody has to look at a station, the soonest first.
enum class Urgency : quint8 {
    HighAlarm, ///< not acknowledged, of that priority at most
    MediumAlarm,
    LowAlarm,
    Silent,
    Standing, ///< an alarm that was acknowledged, or put aside, is not over
    Doubtful, ///< the PUK is needed, or datagrams are lost
    Unheard,  ///< online, and not heard yet
    Quiet,
    Offline ///< not watched
};
inline constexpr int urgencyCount = 9;

/// An alarm waits for somebody.
constexpr bool isWaiting(Urgency urgency)
{
    return urgency <= Urgency::LowAlarm;
}

/// What an overview tells of a station first.
struct StationGlance
{
    QString kennung;
    QString name;
    StationStatus status = {};
    Urgency urgency = Urgency::Offline;
    qint64 worst = 0;  ///< its worst alarm, which waits or, where none does, stands; 0 for none
    qint64 newest = 0; ///< when the newest of the alarms that wait came that are as urgent as the worst
    int waiting = 0;   ///< alarms that are neither acknowledged nor put aside
    int standing = 0;  ///< alarms that stand, those that wait, too
    bool operator==(const StationGlance &) const = default;
};

/// As it is now. Of the alarms those count that stand; the others are taken out of the set.
StationGlance glanceAt(const OperationalMode &mode, const QString &kennung, std::set<qint64> &alarms);

} // namespace ktr
