#include "opmode/alarms/alarm_chatter.h"

#include <algorithm>

namespace ktr {

namespace {

constexpr qint64 minuteMs = 60'000;
constexpr qsizetype fewPlaces = 1000;

} // namespace

AlarmChatter::AlarmChatter(const AlarmBook &book, QObject *parent) : QObject(parent), m_sizeToDrop(fewPlaces)
{
    connect(&book, &AlarmBook::changed, this, [this](const AlarmRow &alarm, AlarmBook::Change change) {
        if (change == AlarmBook::Change::Came || change == AlarmBook::Change::CameAgain) {
            note(alarm);
        }
    });
    connect(&book, &AlarmBook::reset, this, [this] { m_times.clear(); });
}

void AlarmChatter::setLimit(const ChatterLimit &limit)
{
    m_limit = {std::max(limit.times, 1), std::max(limit.minutes, 1)};
}

qint64 AlarmChatter::span() const
{
    return m_limit.minutes * minuteMs;
}

void AlarmChatter::note(const AlarmRow &alarm)
{
    QList<qint64> &times = m_times[{alarm.station, alarm.text}];
    times += alarm.last;
    if (times.size() > m_limit.times + 1) {
        times.remove(0, times.size() - m_limit.times - 1);
    }
    if (m_times.size() > m_sizeToDrop) {
        dropOld(alarm.last);
    }
}

/// Of years of texts only those of the last minutes count.
void AlarmChatter::dropOld(qint64 now)
{
    m_times.removeIf([&](const std::pair<const Place &, QList<qint64> &> &entry) {
        return entry.second.constLast() < now - span();
    });
    m_sizeToDrop = std::max(fewPlaces, 2 * m_times.size());
}

bool AlarmChatter::chatters(const AlarmRow &alarm, qint64 now) const
{
    const auto found = m_times.constFind({alarm.station, alarm.text});
    return found != m_times.cend() && found->size() > m_limit.times &&
           found->at(found->size() - m_limit.times - 1) >= now - span();
}

} // namespace ktr
