#pragma once

#include "platform/time_texts.h"

#include <QDateTime>

namespace ktr {

/// A moment of the module's clock in ms since 1970, taken for UTC: that clock has every hour of every day.
using ModuleMs = qint64;

inline constexpr ModuleMs msPerSecond = 1000;
inline constexpr ModuleMs msPerMinute = 60 * msPerSecond;
inline constexpr ModuleMs msPerDay = 24 * (60 * msPerMinute);

inline ModuleMs moduleMs(QDate date, QTime time = QTime(0, 0))
{
    return QDateTime(date, time, Qt::UTC).toMSecsSinceEpoch();
}
/// A clock that was set by the present local time shows this.
inline ModuleMs moduleMs(const QDateTime &local)
{
    return moduleMs(local.date(), local.time());
}

inline QDateTime clockOf(ModuleMs at)
{
    return QDateTime::fromMSecsSinceEpoch(at, Qt::UTC);
}
inline QDate dateOf(ModuleMs at)
{
    return clockOf(at).date();
}

/// "15.11.2026 14:05", with ":35" where the minute is not whole.
inline QString clockText(ModuleMs at)
{
    return clockOf(at).toString(at % msPerMinute == 0 ? shownMinuteForm
                                                      : shownMinuteForm + QLatin1String(":ss"));
}

/// From its beginning on, before its end.
struct ModuleSpan
{
    ModuleMs from = 0;
    ModuleMs to = 0;

    bool contains(ModuleMs at) const { return at >= from && at < to; }
    bool operator==(const ModuleSpan &) const = default;
};

} // namespace ktr
