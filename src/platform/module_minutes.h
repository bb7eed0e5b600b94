#pragma once

#include <QDate>

namespace ktr {

/// The history's times are minutes of a module's wall clock, counted from the beginning of this day.
inline const QDate firstModuleDay{2000, 1, 1};

inline constexpr qint64 minutesPerDay = qint64{24} * 60;

inline qint64 moduleMinutes(const QDate &day, int hour, int minute)
{
    const qint64 days = firstModuleDay.daysTo(day);
    return days * minutesPerDay + qint64{hour} * 60 + minute;
}

/// The seconds since 1970 at a minute of the module's clock, taken for UTC, which has every hour of every
/// day.
constexpr qint64 secondsAtModuleMinute(qint64 minute)
{
    constexpr qint64 firstModuleSecond = 946'684'800;
    return firstModuleSecond + minute * 60;
}

} // namespace ktr
