#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace ktr {

/// The days on which a switch point acts: the positions in the lists that choose them, as they are stored.
enum class DayRule {
    Never,
    Daily,
    Weekdays,
    Weekend,
    Monday,
    Tuesday,
    Wednesday,
    Thursday,
    Friday,
    Saturday,
    Sunday
};

/// The rule of a stored number; outside 0 to 10 it is Never.
DayRule dayRule(int stored);

/// Whether a rule holds on a weekday (Monday = 1 ... Sunday = 7).
bool holdsOn(DayRule rule, int weekday);

/// The minute of the day (0 to 1439) that "HH:MM" names; hours and minutes may have one digit ("7:5"),
/// seconds are cut off. Nothing when the text is no time of the day.
std::optional<int> minuteOfDay(const QString &text);

/// "HH:MM" for a time as the user typed it; any other text stays as it is.
QString shownTime(const QString &text);

/// When a station's exclusive mode is switched on and off, as the station stores it.
struct ExclusiveSchedule
{
    QString hourOn; ///< "HH:MM"; a text that is no time never switches
    int dayOn = 0;  ///< a DayRule
    QString hourOff;
    int dayOff = 0;

    bool operator==(const ExclusiveSchedule &) const = default;
};

/// A minute as clocks on the wall show it. Switch points are told by the wall clock: one that lies in the
/// hour left out in spring acts all the same, one in the hour that autumn repeats acts once.
class WallMinute
{
public:
    static WallMinute of(const QDateTime &moment);

    WallMinute plus(qint64 minutes) const { return WallMinute(m_minutes + minutes); }
    int weekday() const;     ///< Monday = 1 ... Sunday = 7
    int minuteOfDay() const; ///< 0 to 1439
    auto operator<=>(const WallMinute &) const = default;

    static constexpr qint64 minutesOfADay = qint64{24} * 60;
    static constexpr qint64 minutesOfAWeek = 7 * minutesOfADay;

private:
    explicit WallMinute(qint64 minutes) : m_minutes(minutes) {}

    qint64 m_minutes; ///< since the beginning of a Monday
};

/// What the switch points in `from` to `now`, both included, leave: on, off, or nothing when none lies there.
/// Where both act in the same minute, it is on. The work does not grow with the time between.
std::optional<bool> switchedTo(const ExclusiveSchedule &schedule, WallMinute from, WallMinute now);

} // namespace ktr
