#include "opmode/station/exclusive_schedule.h"

#include "platform/text_rules.h"

namespace ktr {

namespace {

constexpr int hoursOfADay = 24;
constexpr int minutesOfAnHour = 60;

/// The number of one or two digits, blanks around it allowed, below `bound`.
std::optional<int> part(QStringView text, int bound)
{
    const QStringView digits = text.trimmed();
    if (digits.isEmpty() || digits.size() > 2) {
        return std::nullopt;
    }
    int number = 0;
    for (const QChar c : digits) {
        if (!isDecimalDigit(c)) {
            return std::nullopt;
        }
        number = number * 10 + (c.unicode() - u'0');
    }
    return number < bound ? std::optional(number) : std::nullopt;
}

/// The last minute up to `now` in which a switch point acts.
std::optional<WallMinute> lastSwitch(const QString &hour, int day, WallMinute now)
{
    const DayRule rule = dayRule(day);
    const std::optional<int> minute = rule == DayRule::Never ? std::nullopt : minuteOfDay(hour);
    if (!minute) {
        return std::nullopt;
    }
    // Today when its minute has come, else one of the seven days before.
    for (int daysBack = 0; daysBack <= 7; ++daysBack) {
        const WallMinute candidate =
            now.plus(*minute - now.minuteOfDay() - daysBack * WallMinute::minutesOfADay);
        if (candidate <= now && holdsOn(rule, candidate.weekday())) {
            return candidate;
        }
    }
    return std::nullopt;
}

} // namespace

DayRule dayRule(int stored)
{
    const bool known =
        stored > static_cast<int>(DayRule::Never) && stored <= static_cast<int>(DayRule::Sunday);
    return known ? static_cast<DayRule>(stored) : DayRule::Never;
}

bool holdsOn(DayRule rule, int weekday)
{
    switch (rule) {
    case DayRule::Never:
        return false;
    case DayRule::Daily:
        return true;
    case DayRule::Weekdays:
        return weekday <= Qt::Friday;
    case DayRule::Weekend:
        return weekday >= Qt::Saturday;
    default:
        return weekday == static_cast<int>(rule) - static_cast<int>(DayRule::Monday) + Qt::Monday;
    }
}

std::optional<int> minuteOfDay(const QString &text)
{
    const QList<QStringView> parts = QStringView(text).split(u':');
    if (parts.size() < 2 || parts.size() > 3 || (parts.size() == 3 && !part(parts[2], minutesOfAnHour))) {
        return std::nullopt;
    }
    const std::optional<int> hours = part(parts[0], hoursOfADay);
    const std::optional<int> minutes = part(parts[1], minutesOfAnHour);
    return hours && minutes ? std::optional(*hours * minutesOfAnHour + *minutes) : std::nullopt;
}

QString shownTime(const QString &text)
{
    const std::optional<int> minute = minuteOfDay(text);
    return minute
               ? QTime(*minute / minutesOfAnHour, *minute % minutesOfAnHour).toString(QStringLiteral("HH:mm"))
               : text;
}

WallMinute WallMinute::of(const QDateTime &moment)
{
    static const QDate monday(2000, 1, 3);
    return WallMinute(monday.daysTo(moment.date()) * minutesOfADay +
                      moment.time().msecsSinceStartOfDay() / 60'000);
}

int WallMinute::weekday() const
{
    const qint64 ofWeek = m_minutes % minutesOfAWeek;
    return static_cast<int>((ofWeek < 0 ? ofWeek + minutesOfAWeek : ofWeek) / minutesOfADay) + 1;
}

int WallMinute::minuteOfDay() const
{
    const qint64 ofDay = m_minutes % minutesOfADay;
    return static_cast<int>(ofDay < 0 ? ofDay + minutesOfADay : ofDay);
}

std::optional<bool> switchedTo(const ExclusiveSchedule &schedule, WallMinute from, WallMinute now)
{
    const auto within = [from](std::optional<WallMinute> moment) {
        return moment && *moment >= from ? moment : std::nullopt;
    };
    const std::optional<WallMinute> on = within(lastSwitch(schedule.hourOn, schedule.dayOn, now));
    const std::optional<WallMinute> off = within(lastSwitch(schedule.hourOff, schedule.dayOff, now));
    return on || off ? std::optional(on >= off) : std::nullopt; // nothing counts as before every minute
}

} // namespace ktr
