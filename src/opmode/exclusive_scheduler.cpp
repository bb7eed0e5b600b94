#include "opmode/exclusive_scheduler.h"

namespace ktr {

namespace {

/// A clock that is put back by more minutes had been wrong: it is not waited for until it is there again.
constexpr qint64 longestSetBack = 120;

} // namespace

ExclusiveScheduler::ExclusiveScheduler(const cStations &stations, const Environment &environment)
    : m_stations(stations), m_environment(environment)
{}

void ExclusiveScheduler::setSchedule(const QString &kennung, const ExclusiveSchedule &schedule)
{
    m_schedules.insert(kennung, schedule);
}

void ExclusiveScheduler::switchToPresentState(cStation &station) const
{
    switchBy(now().plus(-WallMinute::minutesOfAWeek), station);
}

void ExclusiveScheduler::switchBy(WallMinute from, cStation &station) const
{
    if (const auto exclusive = switchedTo(schedule(station.kennung()), from, now())) {
        station.setExclusiveMode(*exclusive);
    }
}

void ExclusiveScheduler::start()
{
    m_nextMinute = now().plus(1);
}

void ExclusiveScheduler::evaluate(const std::function<void(cStation &station)> &switched)
{
    const WallMinute present = now();
    if (*m_nextMinute > present) {
        if (*m_nextMinute <= present.plus(longestSetBack)) { // no switch point acts twice
            return;
        }
        m_nextMinute = present;
    }
    m_stations.forEach([&](cStation &station) {
        const bool before = station.exclusiveMode();
        switchBy(*m_nextMinute, station);
        if (station.exclusiveMode() != before) {
            switched(station);
        }
    });
    m_nextMinute = present.plus(1);
}

} // namespace ktr
