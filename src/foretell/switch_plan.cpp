#include "foretell/switch_plan.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "platform/text_rules.h"

#include <QHash>

#include <algorithm>

namespace ktr {

namespace {

// Types 0 to 6 are Sunday to Saturday.
constexpr int weekdays = 7;
constexpr int weekend = 8;
constexpr int weekendAndHolidays = 9;
constexpr int workingDays = 10;
constexpr int holidaysOnly = 11;
constexpr int daily = 12;

bool isWeekend(QDate day)
{
    return day.dayOfWeek() >= Qt::Saturday;
}

Assumptions assumptionsOf(const SwitchPoint &point, bool isHoliday)
{
    Assumptions all;
    all.addIf(point.type <= daily, Assumption::StartDateHolds);
    all.addIf(point.type >= weekdays && point.type <= workingDays, Assumption::MondayToFriday);
    all.addIf(point.type == workingDays, Assumption::WorkingDaysWithoutHolidays);
    all.addIf(isHoliday && point.type <= weekend, Assumption::HolidaysChangeNothing);
    all.addIf(point.type == SwitchPoint::periodic, Assumption::PeriodFromStart);
    all.addIf(point.target >= firstAdministratorTarget, Assumption::CallOfAdministrator);
    return all;
}

/// The switchings of one switch point.
class PointPlan
{
public:
    PointPlan(const SwitchPoint &point, int index, const QSet<QDate> &holidays, const ModuleSpan &span,
              const Assumptions &otherwise)
        : m_point(point), m_index(index), m_holidays(holidays), m_span(span), m_otherwise(otherwise)
    {}

    void addTo(SwitchPlan &plan)
    {
        if (m_point.reactsToLimitValue()) {
            return quiet(plan, QuietPoint::Why::ReactsToLimitValue);
        }
        if (m_point.type < 0 || m_point.type >= SwitchPoint::typeCount) {
            return quiet(plan, QuietPoint::Why::BadType);
        }
        const auto start = toMinute(startSent(m_point));
        if (!start) {
            return quiet(plan, QuietPoint::Why::BadStart);
        }
        m_start = start->toMSecsSinceEpoch();
        const qsizetype before = plan.switchings.size();
        if (m_point.type == SwitchPoint::once) {
            addOnce(plan);
        } else if (m_point.type == SwitchPoint::periodic) {
            addPeriods(plan);
        } else {
            addDays(plan);
        }
        if (plan.switchings.size() == before && !m_isTold) {
            quiet(plan, m_next ? QuietPoint::Why::NotTheTime : QuietPoint::Why::Never);
        }
    }

private:
    void quiet(SwitchPlan &plan, QuietPoint::Why why)
    {
        plan.quiet += QuietPoint{m_index, why, m_next};
        m_isTold = true;
    }

    /// False once there are too many of them.
    bool add(SwitchPlan &plan, ModuleMs at)
    {
        if (m_count == SwitchPlan::mostOfOne) {
            m_next = at;
            quiet(plan, QuietPoint::Why::TooOften);
            return false;
        }
        ++m_count;
        plan.switchings += Switching{at, m_index, m_point.target, valueSent(m_point),
                                     assumptionsOf(m_point, m_holidays.contains(dateOf(at)))};
        return true;
    }

    void addOnce(SwitchPlan &plan)
    {
        if (m_span.contains(m_start)) {
            add(plan, m_start);
        } else if (m_start >= m_span.to) {
            m_next = m_start;
        }
    }

    void addPeriods(SwitchPlan &plan)
    {
        const double minutes = leadingNumber(m_point.period);
        if (minutes < 1 || minutes >= SwitchPoint::periodBound) {
            return quiet(plan, QuietPoint::Why::BadPeriod);
        }
        const auto period = static_cast<ModuleMs>(minutes * double(msPerMinute));
        const ModuleMs passed = std::max<ModuleMs>(0, m_span.from - m_start);
        ModuleMs at = m_start + (passed + period - 1) / period * period;
        for (; at < m_span.to; at += period) {
            if (!add(plan, at)) {
                return;
            }
        }
        m_next = at;
    }

    void addDays(SwitchPlan &plan)
    {
        const ModuleMs timeOfDay = m_start - moduleMs(dateOf(m_start));
        const bool isDated = !m_otherwise.contains(Assumption::StartDateHolds);
        const ModuleMs first = isDated ? m_start : std::min(m_start, m_span.from);
        QDate day = dateOf(std::max(first, m_span.from));
        for (; moduleMs(day) < m_span.to; day = day.addDays(1)) {
            const ModuleMs at = moduleMs(day) + timeOfDay;
            if (m_span.contains(at) && at >= first &&
                switchesOn(m_point.type, day, m_holidays, m_otherwise) && !add(plan, at)) {
                return;
            }
        }
        day = dateOf(std::max(first, m_span.to));
        constexpr int enough = 7 + HolidayList::capacity + 1; // even if all of the holidays are in a row
        const QDate last = m_point.type == holidaysOnly ? lastHoliday() : day.addDays(enough);
        for (; !m_next && day <= last; day = day.addDays(1)) {
            const ModuleMs at = moduleMs(day) + timeOfDay;
            if (at >= m_span.to && at >= first && switchesOn(m_point.type, day, m_holidays, m_otherwise)) {
                m_next = at;
            }
        }
    }

    QDate lastHoliday() const
    {
        QDate last;
        for (const QDate &day : m_holidays) {
            last = std::max(last, day);
        }
        return last;
    }

    const SwitchPoint &m_point;
    int m_index;
    const QSet<QDate> &m_holidays;
    const ModuleSpan &m_span;
    const Assumptions &m_otherwise;
    ModuleMs m_start = 0;
    std::optional<ModuleMs> m_next;
    int m_count = 0;
    bool m_isTold = false;
};

/// Marks those of one target at one time.
void markEqualTimes(QList<Switching> &switchings)
{
    for (qsizetype first = 0; first < switchings.size();) {
        qsizetype end = first;
        QHash<int, int> ofTarget;
        for (; end < switchings.size() && switchings[end].at == switchings[first].at; ++end) {
            ++ofTarget[switchings[end].target];
        }
        for (qsizetype at = first; at < end && ofTarget.size() < end - first; ++at) {
            switchings[at].restsOn.addIf(ofTarget.value(switchings[at].target) > 1,
                                         Assumption::OrderAtEqualTimes);
        }
        first = end;
    }
}

} // namespace

QSet<QDate> holidaysOf(const HolidayList &list)
{
    QSet<QDate> days;
    for (const QString &line : list.lines()) {
        if (const auto begin = toMinute(line.left(6) + QLatin1String("0000"))) {
            days += begin->date();
        }
    }
    return days;
}

bool switchesOn(int type, QDate day, const QSet<QDate> &holidays, const Assumptions &otherwise)
{
    const bool isHoliday = holidays.contains(day);
    if (type <= weekend && isHoliday && otherwise.contains(Assumption::HolidaysChangeNothing)) {
        return false;
    }
    const bool worksOnSaturdays = otherwise.contains(Assumption::WorkingDaysWithoutHolidays);
    switch (type) {
    case weekdays:
        return !isWeekend(day);
    case weekend:
        return isWeekend(day);
    case weekendAndHolidays:
        return isWeekend(day) || isHoliday;
    case workingDays:
        return day.dayOfWeek() <= (worksOnSaturdays ? Qt::Saturday : Qt::Friday) && !isHoliday;
    case holidaysOnly:
        return isHoliday;
    case daily:
        return true;
    default:
        return type >= 0 && type < weekdays && day.dayOfWeek() % weekdays == type;
    }
}

SwitchPlan planSwitchings(const Configuration &configuration, const ModuleSpan &span,
                          const Assumptions &otherwise)
{
    SwitchPlan plan;
    const QSet<QDate> holidays = holidaysOf(configuration.holidays);
    for (int index = 0; const SwitchPoint &point : configuration.switchPoints) {
        if (point.target > 0 && point.target < targetCount) {
            PointPlan(point, index, holidays, span, otherwise).addTo(plan);
        }
        ++index;
    }
    if (otherwise.contains(Assumption::OrderAtEqualTimes)) {
        std::ranges::reverse(plan.switchings);
    }
    std::ranges::stable_sort(plan.switchings, {}, &Switching::at); // they stand by number
    markEqualTimes(plan.switchings);
    return plan;
}

} // namespace ktr
