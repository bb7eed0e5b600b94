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

} // namespace ktr
