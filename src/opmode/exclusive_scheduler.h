#pragma once

#include "opmode/stations.h"
#include "platform/environment.h"

namespace ktr {

/// Switches the exclusive mode of stations by their schedules. A switch point acts once, at its minute: a
/// station that is on daily from 22:00 to 06:00 and is switched off by hand at 23:00 stays off until 22:00
/// of the next day.
class ExclusiveScheduler
{
public:
    /// Both must outlive it.
    ExclusiveScheduler(const cStations &stations, const Environment &environment);

    void setSchedule(const QString &kennung, const ExclusiveSchedule &schedule);
    ExclusiveSchedule schedule(const QString &kennung) const { return m_schedules.value(kennung); }
    void remove(const QString &kennung) { m_schedules.remove(kennung); }
    void clear() { m_schedules.clear(); }

    /// Puts a station into the state that its switch points of the last week leave; without any it stays.
    void switchToPresentState(cStation &station) const;
    /// From here on the minutes are evaluated, the present one left out.
    void start();
    /// Evaluates the minutes since the last time, and calls with each station that was switched.
    void evaluate(const std::function<void(cStation &station)> &switched);

private:
    WallMinute now() const { return WallMinute::of(m_environment.now()); }
    void switchBy(WallMinute from, cStation &station) const;

    const cStations &m_stations;
    const Environment &m_environment;
    QHash<QString, ExclusiveSchedule> m_schedules;
    std::optional<WallMinute> m_nextMinute; ///< the first that is not evaluated
};

} // namespace ktr
