#include "opmode/timemap/hour_grid.h"

#include <QDateTime>

#include <algorithm>

namespace ktr {

namespace {

constexpr qint64 hourMs = 3'600'000;
constexpr qint64 quarterMs = hourMs / 4; // every zone's clock is set by whole quarters

} // namespace

HourGrid::HourGrid(QDate first, int days) : m_first(first)
{
    m_hours.reserve(static_cast<std::size_t>(days) * rows + 2);
    qint64 from = first.startOfDay().toMSecsSinceEpoch();
    for (int day = 0; day < days; ++day) {
        const qint64 to = first.addDays(day + 1).startOfDay().toMSecsSinceEpoch();
        addDay(day, from, to);
        m_begins.push_back(count());
        from = to;
    }
}

void HourGrid::addDay(int day, qint64 from, qint64 to)
{
    if (to - from == rows * hourMs) {
        for (int hour = 0; hour < rows; ++hour) {
            m_hours.push_back({from + hour * hourMs, from + (hour + 1) * hourMs, day, hour, 0});
        }
        return;
    }
    QTime before;
    for (qint64 at = from; at < to; at += quarterMs) { // a clock is set in the middle of an hour, too
        const QTime time = QDateTime::fromMSecsSinceEpoch(at).time();
        const qint64 end = std::min(at + quarterMs, to);
        if (before.isValid() && time.hour() == before.hour() && time > before) {
            m_hours.back().to = end;
        } else {
            const bool isAgain = before.isValid() && time <= before;
            m_hours.push_back({at, end, day, time.hour(), isAgain ? 1 : 0});
        }
        before = time;
    }
}

int HourGrid::placeOf(qint64 moment) const
{
    if (moment < from() || moment >= to()) {
        return -1;
    }
    const auto behind = std::ranges::upper_bound(m_hours, moment, {}, &HourOfDay::from);
    return static_cast<int>(behind - m_hours.begin()) - 1;
}

int HourGrid::placeOf(int day, int hour) const
{
    if (day < 0 || day >= days()) {
        return -1;
    }
    const auto at = static_cast<std::size_t>(day);
    for (int place = m_begins[at]; place < m_begins[at + 1]; ++place) {
        if (this->hour(place).hour == hour) {
            return place;
        }
    }
    return -1;
}

bool HourGrid::isTwice(int place) const
{
    const HourOfDay &wanted = hour(place);
    const auto isSame = [&](int other) {
        return other >= 0 && other < count() && hour(other).day == wanted.day &&
               hour(other).hour == wanted.hour;
    };
    return isSame(place - 1) || isSame(place + 1);
}

} // namespace ktr
