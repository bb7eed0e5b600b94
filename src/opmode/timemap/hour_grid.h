#pragma once

#include <QDate>

#include <vector>

namespace ktr {

/// An hour of a day by the wall clock. Where the clocks change some days have an hour less or more: one that
/// is there twice is two of these, with the same `hour`. Times are milliseconds since 1970 UTC.
struct HourOfDay
{
    qint64 from = 0;
    qint64 to = 0;
    int day = 0; ///< of the grid, from 0 on
    int hour = 0;
    int part = 0; ///< 1: the same hour once more
    bool operator==(const HourOfDay &) const = default;
};

/// All hours of some days that follow each other, in the order of time.
class HourGrid
{
public:
    static constexpr int rows = 24;

    HourGrid() = default;
    HourGrid(QDate first, int days);

    QDate first() const { return m_first; }
    int days() const { return static_cast<int>(m_begins.size()) - 1; }
    qint64 from() const { return m_hours.empty() ? 0 : m_hours.front().from; }
    qint64 to() const { return m_hours.empty() ? 0 : m_hours.back().to; }
    int count() const { return static_cast<int>(m_hours.size()); }
    const HourOfDay &hour(int place) const { return m_hours[static_cast<std::size_t>(place)]; }
    /// The place of the hour that a moment is in; -1 for none.
    int placeOf(qint64 moment) const;
    /// The place of an hour of a day; -1 where that day has no such hour. One that is there twice is the
    /// first of the two, and the other one follows it.
    int placeOf(int day, int hour) const;
    /// Whether an hour is there twice.
    bool isTwice(int place) const;

private:
    void addDay(int day, qint64 from, qint64 to);

    QDate m_first;
    std::vector<HourOfDay> m_hours;
    std::vector<int> m_begins{0}; ///< of each day, and behind the last
};

} // namespace ktr
