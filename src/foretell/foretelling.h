#pragma once

#include "foretell/clock_changes.h"
#include "foretell/module_play.h"
#include "foretell/value_series.h"

namespace ktr {

/// What a configuration makes of some days.
struct Foretold
{
    QList<PlayEvent> events; ///< by time
    QList<QuietPoint> quietPoints;
    QList<std::pair<int, UnplayedWhy>> unplayed; ///< limit values, 0..19
    QList<int> withoutValues; ///< channels that limit values watch, and nobody gave values of
    QList<QDate> holidays;    ///< in the span
    QList<ClockChange> clockChanges;
    Assumptions restsOn; ///< all of it
};

/// The values that hold at the beginning of a span, and those that come in it.
QList<SeriesValue> valuesIn(const QList<SeriesValue> &values, const ModuleSpan &span);

/// The channels that limit values in use watch, in order.
QList<int> watchedChannels(const Configuration &configuration);

/// The holidays within a span, in order.
QList<QDate> holidaysIn(const HolidayList &list, const ModuleSpan &span);

Foretold foretell(const Configuration &configuration, const ModuleSpan &span, const ValueSeries &series,
                  const QTimeZone &zone, const Assumptions &otherwise = {});

} // namespace ktr
