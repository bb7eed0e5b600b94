#include "opmode/station/exclusive_schedule.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTimeZone>

using namespace ktr;

namespace {

/// Minute by minute, as the rule is told.
std::optional<bool> replay(const ExclusiveSchedule &schedule, WallMinute &from, WallMinute now)
{
    const std::optional<int> on = minuteOfDay(schedule.hourOn);
    const std::optional<int> off = minuteOfDay(schedule.hourOff);
    const auto matches = [](std::optional<int> minute, int day, WallMinute at) {
        return minute == at.minuteOfDay() && holdsOn(dayRule(day), at.weekday());
    };
    std::optional<bool> state;
    for (; from <= now; from = from.plus(1)) {
        state = matches(off, schedule.dayOff, from) ? std::optional(false) : state;
        state = matches(on, schedule.dayOn, from) ? std::optional(true) : state;
    }
    return state;
}

WallMinute wall(int day, int hour, int minute = 0)
{
    return WallMinute::of(QDateTime(QDate(2009, 11, day), QTime(hour, minute, 59)));
}

} // namespace

class ExclusiveScheduleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsWhatReplayingEveryMinuteGives()
    {
        QRandomGenerator chance(20091115);
        const QTimeZone zone("Europe/Berlin");
        QVERIFY(zone.isValid());
        const auto hour = [&chance] {
            const int minute = chance.bounded(-60, 1440); // now and then no time
            return minute < 0 ? QStringLiteral("25:%1").arg(-minute)
                              : QTime(minute / 60, minute % 60).toString("H:m");
        };
        for (int round = 0; round < 3000; ++round) {
            ExclusiveSchedule schedule{hour(), chance.bounded(-1, 12), hour(), chance.bounded(-1, 12)};
            if (round % 10 == 0) {
                schedule.hourOff = schedule.hourOn;
            }
            // Every second moment lies within a day around a change of the clocks.
            const QDateTime change =
                QDateTime(round % 4 == 1 ? QDate(2026, 3, 29) : QDate(2026, 10, 25), QTime(1, 0), Qt::UTC);
            const int spread = round % 2 == 1 ? 86'400 : 400 * 86'400;
            const QDateTime now = change.addSecs(chance.bounded(-spread, spread)).toTimeZone(zone);
            const WallMinute end = WallMinute::of(now);
            WallMinute from = end.plus(-chance.bounded(-100, round % 3 == 0 ? 60 : 11'000));
            WallMinute replayed = from;
            const std::optional<bool> expected = replay(schedule, replayed, end);
            QCOMPARE(switchedTo(schedule, from, end), expected);
            // The next evaluation, after up to two hours of the running clock.
            from = replayed;
            const WallMinute later = WallMinute::of(now.addSecs(chance.bounded(7200)));
            const std::optional<bool> next = replay(schedule, replayed, later);
            QCOMPARE(switchedTo(schedule, from, later), next);
        }
    }

    void theLastSwitchPointDecides()
    {
        const WallMinute saturday = wall(14, 10);
        const ExclusiveSchedule office{"08:00", 2, "17:00", 1};
        QCOMPARE(switchedTo(office, saturday.plus(-WallMinute::minutesOfAWeek), saturday), false);
        QCOMPARE(switchedTo(office, saturday.plus(-60), saturday), std::nullopt);
        QCOMPARE(switchedTo(office, wall(13, 8), wall(13, 8)), true);
        QCOMPARE(switchedTo({"8:0", 1, "08:00", 1}, wall(13, 8), wall(13, 8)), true);
        QCOMPARE(switchedTo({"8:0", 0, "x", 1}, wall(1, 0), saturday), std::nullopt);
        QCOMPARE(switchedTo({"00:00", 10, "", 0}, wall(8, 0), saturday), true); // Sundays only
        QCOMPARE(switchedTo({"00:00", 10, "", 0}, wall(8, 0, 1), saturday), std::nullopt);
    }

    void aTimeIsReadAsTheUserTypesIt_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("isTime");
        const auto row = [](const char *typed, const char *shown, bool isTime = true) {
            QTest::newRow(typed) << QString(typed) << QString(shown) << isTime;
        };
        row("7:5", "07:05");
        row(" 23:59 ", "23:59");
        row("17:00:30", "17:00");
        row("24:00", "24:00", false);
        row("12:60", "12:60", false);
        row("12", "12", false);
        row("+1:-1", "+1:-1", false);
        row("1:2:3:4", "1:2:3:4", false);
        row("", "", false);
    }
    void aTimeIsReadAsTheUserTypesIt()
    {
        QFETCH(const QString, typed);
        QTEST(shownTime(typed), "shown");
        QTEST(minuteOfDay(typed).has_value(), "isTime");
    }
};

QTEST_APPLESS_MAIN(ExclusiveScheduleTest)
#include "exclusive_schedule_test.moc"
