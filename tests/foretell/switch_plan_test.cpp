#include "foretell/clock_changes.h"
#include "foretell/switch_plan.h"

#include <QTest>

using namespace ktr;

namespace {

constexpr int digitalOutput = 1;

SwitchPoint switchPoint(int type, const QString &start, const QString &value = QStringLiteral("1"))
{
    SwitchPoint point;
    point.target = digitalOutput;
    point.type = static_cast<qint16>(type);
    point.start = start;
    point.value = value;
    return point;
}

ModuleSpan days(QDate first, int count)
{
    return {moduleMs(first), moduleMs(first.addDays(count))};
}

QStringList times(const SwitchPlan &plan)
{
    QStringList all;
    for (const Switching &each : plan.switchings) {
        all += clockText(each.at);
    }
    return all;
}

} // namespace

class SwitchPlanTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Monday, 21 December 2026, to Sunday, 3 January 2027; holidays are Friday the 25th, Saturday the 26th
    /// and Friday the 1st.
    void aTypeSwitchesOnItsDays_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("days");
        QTest::newRow("Sundays") << 0 << "27 3";
        QTest::newRow("Mondays") << 1 << "21 28";
        QTest::newRow("Fridays") << 5 << "25 1";
        QTest::newRow("Saturdays") << 6 << "26 2";
        QTest::newRow("Monday to Friday") << 7 << "21 22 23 24 25 28 29 30 31 1";
        QTest::newRow("weekend") << 8 << "26 27 2 3";
        QTest::newRow("weekend and holidays") << 9 << "25 26 27 1 2 3";
        QTest::newRow("working days") << 10 << "21 22 23 24 28 29 30 31";
        QTest::newRow("holidays") << 11 << "25 26 1";
        QTest::newRow("daily") << 12 << "21 22 23 24 25 26 27 28 29 30 31 1 2 3";
    }
    void aTypeSwitchesOnItsDays()
    {
        QFETCH(int, type);
        QFETCH(QString, days);
        Configuration configuration;
        configuration.switchPoints[4] = switchPoint(type, "2601010630");
        for (const QDate day : {QDate(2026, 12, 25), QDate(2026, 12, 26), QDate(2027, 1, 1)}) {
            configuration.holidays.add(day);
        }
        configuration.holidays.append("no date");
        const SwitchPlan plan = planSwitchings(configuration, ::days({2026, 12, 21}, 14));
        QStringList found;
        for (const Switching &each : plan.switchings) {
            found += QString::number(dateOf(each.at).day());
            QCOMPARE(clockOf(each.at).time(), QTime(6, 30));
            QCOMPARE(each.point, 4);
            const bool onHoliday = holidaysOf(configuration.holidays).contains(dateOf(each.at));
            QCOMPARE(each.restsOn.contains(Assumption::HolidaysChangeNothing), onHoliday && type < 9);
        }
        QCOMPARE(found.join(' '), days);
        QVERIFY(plan.quiet.isEmpty());
    }

    void theSpanHasItsBeginningAndNotItsEnd()
    {
        Configuration configuration;
        configuration.switchPoints[0] = switchPoint(12, "2601010000");
        QCOMPARE(times(planSwitchings(configuration, days({2026, 11, 23}, 2))),
                 QStringList({"23.11.2026 00:00", "24.11.2026 00:00"}));
        configuration.switchPoints[0] = switchPoint(13, "2611250000");
        QVERIFY(times(planSwitchings(configuration, days({2026, 11, 23}, 2))).isEmpty());
        QCOMPARE(times(planSwitchings(configuration, days({2026, 11, 25}, 1))),
                 QStringList("25.11.2026 00:00"));
    }

    void periodsAreCountedFromTheStartAcrossTheSpan()
    {
        Configuration configuration;
        configuration.switchPoints[0] = switchPoint(14, "2611222100");
        configuration.switchPoints[0].period = "500";
        QCOMPARE(times(planSwitchings(configuration, days({2026, 11, 23}, 1))),
                 QStringList({"23.11.2026 05:20", "23.11.2026 13:40", "23.11.2026 22:00"}));
        // In the future, and too short.
        configuration.switchPoints[0].start = "2611232330";
        QCOMPARE(times(planSwitchings(configuration, days({2026, 11, 23}, 1))),
                 QStringList("23.11.2026 23:30"));
        configuration.switchPoints[0].period = "0.5";
        const SwitchPlan plan = planSwitchings(configuration, days({2026, 11, 23}, 1));
        QCOMPARE(plan.quiet, QList({QuietPoint{0, QuietPoint::Why::BadPeriod, {}}}));
    }

    void whatDoesNotSwitchSaysWhyAndWhen()
    {
        using Why = QuietPoint::Why;
        Configuration configuration;
        auto &points = configuration.switchPoints;
        points[0] = switchPoint(13, "2601010000");
        points[1] = switchPoint(13, "2701010800");
        points[2] = switchPoint(0, "2702010800"); // Monday; the first Sunday is the 7th
        points[3] = switchPoint(11, "2601010000");
        points[4] = switchPoint(15, "");
        points[5] = switchPoint(12, "26");
        points[6] = switchPoint(17, "2601010000");
        points[7] = switchPoint(14, "2601010000");
        points[7].period = "1";
        configuration.holidays.add({2026, 11, 1});
        const SwitchPlan plan = planSwitchings(configuration, days({2026, 11, 23}, 92));
        const auto quiet = [&plan](int point) {
            const auto found = std::ranges::find(plan.quiet, point, &QuietPoint::point);
            return found == plan.quiet.end() ? QuietPoint{-1, Why::NotTheTime, {}} : *found;
        };
        QCOMPARE(quiet(0), (QuietPoint{0, Why::Never, {}}));
        QCOMPARE(quiet(1).point, -1); // within the 92 days
        QCOMPARE(quiet(2).point, -1);
        QCOMPARE(quiet(3), (QuietPoint{3, Why::Never, {}}));
        QCOMPARE(quiet(4), (QuietPoint{4, Why::ReactsToLimitValue, {}}));
        QCOMPARE(quiet(5), (QuietPoint{5, Why::BadStart, {}}));
        QCOMPARE(quiet(6), (QuietPoint{6, Why::BadType, {}}));
        QCOMPARE(quiet(7).why, Why::TooOften);
        QCOMPARE(*quiet(7).next, moduleMs({2026, 11, 23}) + SwitchPlan::mostOfOne * msPerMinute);

        configuration.holidays.add({2027, 5, 1});
        const SwitchPlan week = planSwitchings(configuration, days({2026, 11, 23}, 7));
        const auto next = [&week](int point) {
            return clockText(std::ranges::find(week.quiet, point, &QuietPoint::point)->next.value());
        };
        QCOMPARE(next(1), "01.01.2027 08:00");
        QCOMPARE(next(2), "07.02.2027 08:00");
        QCOMPARE(next(3), "01.05.2027 00:00");
    }

    void atEqualTimesTheHighestNumberComesLast()
    {
        Configuration configuration;
        configuration.switchPoints[7] = switchPoint(12, "2601010600", "0");
        configuration.switchPoints[2] = switchPoint(1, "2601010600", "1");
        configuration.switchPoints[9] = switchPoint(12, "2601010600", "5");
        configuration.switchPoints[9].target = 3;
        const SwitchPlan plan = planSwitchings(configuration, days({2026, 11, 23}, 2));
        QStringList order;
        for (const Switching &each : plan.switchings) {
            order += QString::number(each.point) +
                     (each.restsOn.contains(Assumption::OrderAtEqualTimes) ? "!" : "");
        }
        QCOMPARE(order.join(' '), "2! 7! 9 7 9");
    }

    /// What the module is given: a missing start is long past, a period of a year makes the value 1.
    void missingFieldsAreTakenAsTheyAreSent()
    {
        Configuration configuration;
        configuration.switchPoints[0] = switchPoint(12, "", "0");
        configuration.switchPoints[0].period = "525600";
        const SwitchPlan plan = planSwitchings(configuration, days({2026, 11, 23}, 1));
        QCOMPARE(times(plan), QStringList("23.11.2026 00:00"));
        QCOMPARE(plan.switchings.front().value, "1");
    }

    void theClocksHereChangeAndTheModulesGoesOn()
    {
        const QTimeZone berlin("Europe/Berlin");
        const ModuleSpan autumn = days({2026, 10, 20}, 14);
        const QList<ClockChange> back = clockChanges(autumn, berlin);
        QCOMPARE(back, QList({ClockChange{moduleMs({2026, 10, 25}, QTime(3, 0)), -3600}}));
        QCOMPARE(clockText(shownHere(moduleMs({2026, 10, 25}, QTime(2, 59)), back)), "25.10.2026 02:59");
        QCOMPARE(clockText(shownHere(moduleMs({2026, 10, 26}, QTime(6, 0)), back)), "26.10.2026 05:00");
        const QList<ClockChange> forth = clockChanges(days({2027, 3, 20}, 14), berlin);
        QCOMPARE(forth, QList({ClockChange{moduleMs({2027, 3, 28}, QTime(2, 0)), 3600}}));
        QVERIFY(clockChanges(days({2026, 11, 23}, 14), berlin).isEmpty());
        QVERIFY(clockChanges(autumn, QTimeZone::utc()).isEmpty());
        // A whole year ends where it began.
        QCOMPARE(clockChanges(days({2026, 6, 1}, 365), berlin).last().aheadBySeconds, 0);
    }
};

QTEST_GUILESS_MAIN(SwitchPlanTest)

#include "switch_plan_test.moc"
