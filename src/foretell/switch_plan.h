#pragma once

#include "config/configuration.h"
#include "foretell/assumptions.h"
#include "foretell/module_time.h"

#include <QList>
#include <QSet>

#include <optional>

namespace ktr {

/// A switch point switches by the calendar.
struct Switching
{
    ModuleMs at = 0;
    int point = 0;  ///< 0..19
    int target = 0; ///< a position in the list of targets, 1..10
    QString value;  ///< as it is sent
    Assumptions restsOn;

    bool operator==(const Switching &) const = default;
};

/// A switch point in use of which a span has no switching, or not all.
struct QuietPoint
{
    enum class Why {
        ReactsToLimitValue, ///< not by the calendar
        NotTheTime,         ///< it switches before the span or behind it
        Never,              ///< it has been, or there is no holiday to come
        BadStart,
        BadPeriod,
        BadType,
        TooOften, ///< the span has its first mostOfOne switchings alone
    };

    int point = 0;
    Why why = Why::NotTheTime;
    std::optional<ModuleMs> next; ///< behind the span, as far as is known

    bool operator==(const QuietPoint &) const = default;
};

struct SwitchPlan
{
    static constexpr int mostOfOne = 50'000; ///< one each minute for a month

    QList<Switching> switchings; ///< by time; at equal times by number, the last one decides
    QList<QuietPoint> quiet;
};

/// The holidays that a list's lines name; a line whose first six characters are no date is left out.
QSet<QDate> holidaysOf(const HolidayList &list);

/// Whether a switch point of a calendar's type (0 to 12) switches on that day.
bool switchesOn(int type, QDate day, const QSet<QDate> &holidays, const Assumptions &otherwise = {});

/// All switchings by the calendar in a span.
SwitchPlan planSwitchings(const Configuration &configuration, const ModuleSpan &span,
                          const Assumptions &otherwise = {});

} // namespace ktr
