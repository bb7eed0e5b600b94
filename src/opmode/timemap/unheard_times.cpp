#include "opmode/timemap/unheard_times.h"

#include "opmode/keeping/list_replay.h"

#include <algorithm>
#include <utility>

namespace ktr {

UnheardTimes::UnheardTimes(qint64 from, qint64 to, bool hasOneKeeper, Take take)
    : m_from(from), m_to(to), m_hasOneKeeper(hasOneKeeper), m_take(std::move(take))
{}

void UnheardTimes::tell(qint64 station, const Since &since, qint64 to) const
{
    const Time time{station, std::max(since.at, m_from), std::min(to, m_to), since.isOffline};
    if (time.from < time.to) {
        m_take(time);
    }
}

void UnheardTimes::begin(qint64 station, qint64 at, bool isOffline)
{
    const auto [known, isNew] = m_unheard.try_emplace(station, Since{at, isOffline});
    if (!isNew && isOffline && !known->second.isOffline) { // silent before
        tell(station, known->second, at);
        known->second = {at, true};
    }
}

void UnheardTimes::end(qint64 station, qint64 at)
{
    const auto known = m_unheard.find(station);
    if (known != m_unheard.end()) {
        tell(station, known->second, at);
        m_unheard.erase(known);
    }
}

/// Who is offline remains so, whatever program listens.
void UnheardTimes::endSilences(qint64 at)
{
    std::erase_if(m_unheard, [&](const auto &each) {
        if (!each.second.isOffline) {
            tell(each.first, each.second, at);
        }
        return !each.second.isOffline;
    });
}

void UnheardTimes::playProgram(const ConnectionChange &change)
{
    if (!m_hasOneKeeper) {
        return;
    }
    endSilences(change.at);
    if (change.kind == EventKind::Stopped) {
        m_stopped = change.at;
    } else if (const qint64 since = std::exchange(m_stopped, 0); since != 0) {
        tell(0, {since, false}, change.at);
    }
}

void UnheardTimes::play(const ConnectionChange &change)
{
    switch (change.kind) {
    case EventKind::Silent:
        begin(change.station, change.at, false);
        break;
    case EventKind::Attributes:
        if (!stationAttributes(change.detail).online) {
            begin(change.station, change.at, true);
        } else if (const auto known = m_unheard.find(change.station);
                   known != m_unheard.end() && known->second.isOffline) {
            end(change.station, change.at);
        }
        break;
    case EventKind::Started:
    case EventKind::Stopped:
        playProgram(change);
        break;
    default: // it said something, or is gone
        end(change.station, change.at);
    }
}

void UnheardTimes::finish()
{
    for (const auto &[station, since] : m_unheard) {
        tell(station, since, m_to);
    }
    m_unheard.clear();
    if (m_stopped != 0) {
        tell(0, {std::exchange(m_stopped, 0), false}, m_to);
    }
}

} // namespace ktr
