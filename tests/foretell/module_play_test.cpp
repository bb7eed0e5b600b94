#include "foretell/event_texts.h"
#include "foretell/foretelling.h"

#include <QTest>

using namespace ktr;

namespace {

using Kind = PlayEvent::Kind;

const ModuleMs begin = moduleMs({2026, 11, 23}, QTime(12, 0));
const ModuleSpan span{begin, begin + 14 * msPerDay};

ModuleMs seconds(int count)
{
    return begin + count * msPerSecond;
}
ModuleMs minutes(int count)
{
    return begin + count * msPerMinute;
}

enum Comparison { Less = 1, Equal = 2, Greater = 3 };

LimitValue limitValue(int channel, Comparison comparison, const QString &limit)
{
    LimitValue value;
    value.channel = static_cast<qint16>(channel);
    value.comparison = static_cast<qint16>(comparison);
    value.limit = limit;
    value.alarm = "fail";
    value.recipients = 5;
    return value;
}

SwitchPoint reacting(int type, int limitValue, int target, const QString &value)
{
    SwitchPoint point;
    point.type = static_cast<qint16>(type);
    point.limitValue = static_cast<qint16>(limitValue);
    point.target = static_cast<qint16>(target);
    point.value = value;
    return point;
}

/// "12:00:30 notified 1", a line for each event: the time, what it is, whose.
QString told(const QList<PlayEvent> &events)
{
    QStringList lines;
    for (const PlayEvent &event : events) {
        QStringList parts{clockOf(event.at).toString("HH:mm:ss"), eventKindName(event.kind)};
        if (event.limitValue >= 0) {
            parts += QString::number(event.limitValue + 1);
        }
        if (event.kind == Kind::Switched) {
            parts += QString::number(event.target) + '=' + event.value;
        }
        lines += parts.join(' ');
    }
    return lines.join("; ");
}

} // namespace

class ModulePlayTest : public QObject
{
    Q_OBJECT

private:
    Configuration m_configuration;
    LimitValue &limit(int number) { return m_configuration.limitValues[std::size_t(number - 1)]; }

    static QString feed(ModulePlay &play, const QList<SeriesValue> &values, ModuleMs to)
    {
        QList<PlayEvent> events;
        for (const SeriesValue &each : values) {
            events += play.setValue(each.at, each.channel, each.value);
        }
        return told(events + play.advance(to));
    }

private Q_SLOTS:
    void init() { m_configuration = {}; }

    void whatHasAnotherReadingPlaysOtherwise_data()
    {
        QTest::addColumn<Assumption>("assumption");
        QTest::addColumn<QString>("usual");
        QTest::addColumn<QString>("otherwise");
        const auto row = [](const char *name, Assumption assumption, const QString &usual,
                            const QString &otherwise) {
            QTest::newRow(name) << assumption << usual << otherwise;
        };
        const QString all =
            "12:00:00 standing 1; 12:00:00 notified 1; 12:00:00 switched 1 1=1; 12:01:00 over 1; "
            "12:01:00 switched 1 1=0";
        row("edge", Assumption::HysteresisEdge, all,
            "12:00:00 standing 1; 12:00:00 notified 1; 12:00:00 switched 1 1=1");
        row("first value", Assumption::FirstValueCounts, all,
            "12:00:00 standing 1; 12:01:00 over 1; 12:01:00 switched 1 1=0");
        row("members", Assumption::MembersSpeakToo, all,
            "12:00:00 standing 1; 12:00:00 switched 1 1=1; 12:01:00 over 1; 12:01:00 switched 1 1=0");
        row("direction", Assumption::SwitchedByCondition, all,
            "12:00:00 standing 1; 12:00:00 notified 1; 12:00:00 switched 1 1=0; 12:01:00 over 1; "
            "12:01:00 switched 1 1=1");
        row("combination", Assumption::CombinationNeedsAll, all,
            "12:00:00 standing 1; 12:00:00 notified 1; 12:00:00 switched 1 1=1; 12:00:00 standing 17; "
            "12:00:00 notified 17; 12:01:00 over 1; 12:01:00 switched 1 1=0; 12:01:00 over 17");
    }
    void whatHasAnotherReadingPlaysOtherwise()
    {
        QFETCH(const Assumption, assumption);
        limit(1) = limitValue(9, Less, "3");
        limit(1).hysteresis = "1";
        limit(2) = limitValue(10, Less, "3");
        limit(17).reference = 3; // both of them
        limit(17).alarm = "both";
        limit(17).recipients = 1;
        m_configuration.switchPoints[0] = reacting(15, 0, 1, "1");
        m_configuration.switchPoints[1] = reacting(16, 0, 1, "0");
        const QList<SeriesValue> values{{begin, 9, 2}, {minutes(1), 9, 4}};
        ModulePlay usual(m_configuration, span);
        QTEST(feed(usual, values, minutes(2)), "usual");
        ModulePlay otherwise(m_configuration, span, {assumption});
        QTEST(feed(otherwise, values, minutes(2)), "otherwise");
    }

    void daysAreReadOtherwise()
    {
        const QSet<QDate> holidays{QDate(2026, 11, 25)};
        const auto days = [&holidays](int type, const Assumptions &otherwise) {
            QString on;
            for (int day = 23; day < 30; ++day) { // Monday to Sunday
                on += switchesOn(type, {2026, 11, day}, holidays, otherwise) ? 'x' : '-';
            }
            return on;
        };
        QCOMPARE(days(7, {}), "xxxxx--");
        QCOMPARE(days(7, {Assumption::HolidaysChangeNothing}), "xx-xx--");
        QCOMPARE(days(12, {Assumption::HolidaysChangeNothing}), "xxxxxxx");
        QCOMPARE(days(10, {}), "xx-xx--");
        QCOMPARE(days(10, {Assumption::WorkingDaysWithoutHolidays}), "xx-xxx-");
        SwitchPoint daily{1, 12, "2612010600", "0", "1", 0};
        m_configuration.switchPoints[0] = daily;
        m_configuration.switchPoints[1] = daily;
        m_configuration.switchPoints[1].value = "0";
        const ModuleSpan two{moduleMs({2026, 11, 30}), moduleMs({2026, 12, 2})};
        QCOMPARE(planSwitchings(m_configuration, two).switchings.size(), 2);
        QCOMPARE(planSwitchings(m_configuration, two, {Assumption::StartDateHolds}).switchings.size(), 4);
        QCOMPARE(planSwitchings(m_configuration, two).switchings.last().value, "0");
        QCOMPARE(
            planSwitchings(m_configuration, two, {Assumption::OrderAtEqualTimes}).switchings.last().value,
            "1");
    }

    void aNotificationComesBehindItsDelayAndGoesToItsRecipients()
    {
        limit(3) = limitValue(9, Greater, "3,2");
        limit(3).delay = "60";
        limit(3).hysteresis = "0.2";
        ModulePlay play(m_configuration, span);
        QCOMPARE(feed(play, {{begin, 9, 3.2}, {seconds(10), 9, 3.5}}, seconds(69)), "12:00:10 waiting 3");
        QCOMPARE(play.state(2).phase, ModulePlay::Phase::Waiting);
        const QList<PlayEvent> events = play.advance(seconds(70));
        QCOMPARE(told(events), "12:01:10 standing 3; 12:01:10 notified 3");
        QCOMPARE(events.last().recipients, quint8(5));
        QCOMPARE(events.last().text, "fail");
        QVERIFY(events.last().restsOn.contains(Assumption::DelayInSeconds));
        // Within the hysteresis it stays, at its edge it is over, and it comes anew only beyond the limit.
        QCOMPARE(
            feed(play, {{seconds(80), 9, 3.1}, {seconds(90), 9, 3.0}, {seconds(91), 9, 3.15}}, seconds(300)),
            "12:01:30 over 3");
    }

    void theDelayBeginsAnewWhenTheLimitIsNotPassedAllTheTime()
    {
        limit(1) = limitValue(17, Less, "5");
        limit(1).delay = "30";
        limit(1).hysteresis = "2";
        ModulePlay play(m_configuration, span);
        QCOMPARE(feed(play,
                      {{begin, 17, 8},
                       {seconds(1), 17, 4},
                       {seconds(20), 17, 5},
                       {seconds(25), 17, 4.5},
                       {seconds(30), 17, 4}},
                      seconds(55)),
                 "12:00:01 waiting 1; 12:00:20 withdrawn 1; 12:00:25 waiting 1; 12:00:55 standing 1; "
                 "12:00:55 notified 1");
    }

    void repetitionsEndWithTheirNumberOrTheLimitValue()
    {
        limit(1) = limitValue(5, Equal, "1");
        limit(1).repetitions = 2;
        limit(1).repetitionInterval = "10";
        ModulePlay play(m_configuration, span);
        QCOMPARE(feed(play, {{begin, 5, 0}, {minutes(1), 5, 1}}, minutes(60)),
                 "12:01:00 standing 1; 12:01:00 notified 1; 12:11:00 repeated 1; 12:21:00 repeated 1");
        QCOMPARE(feed(play, {{minutes(70), 5, 0}, {minutes(80), 5, 1}, {minutes(95), 5, 0}}, minutes(200)),
                 "13:10:00 over 1; 13:20:00 standing 1; 13:20:00 notified 1; 13:30:00 repeated 1; "
                 "13:35:00 over 1");
    }

    void whatIsBeyondItsLimitFromTheBeginningIsMarked()
    {
        limit(1) = limitValue(5, Equal, "1");
        ModulePlay play(m_configuration, span);
        const auto marked = [](const QList<PlayEvent> &events) {
            return events.last().restsOn.contains(Assumption::FirstValueCounts);
        };
        QVERIFY(marked(play.setValue(begin, 5, 1)));
        play.setValue(seconds(1), 5, 0);
        QVERIFY(!marked(play.setValue(seconds(2), 5, 1)));
    }

    void aCombinationNeedsAllOfItsLimitValues()
    {
        limit(1) = limitValue(9, Greater, "3");
        limit(1).delay = "60";
        limit(2) = limitValue(6, Equal, "1");
        limit(2).alarm.clear();
        limit(17).reference = 3;
        limit(17).alarm = "both";
        limit(17).recipients = 2;
        limit(18).reference = 1 << 7; // of one that is not in use
        ModulePlay play(m_configuration, span);
        QCOMPARE(feed(play, {{begin, 9, 4}, {seconds(10), 6, 1}}, seconds(59)),
                 "12:00:00 waiting 1; 12:00:10 standing 2");
        const QList<PlayEvent> events = play.advance(minutes(1));
        QCOMPARE(told(events),
                 "12:01:00 standing 1; 12:01:00 notified 1; 12:01:00 standing 17; 12:01:00 notified 17");
        QCOMPARE(events[3].text, "both");
        QCOMPARE(events[3].recipients, quint8(2));
        QVERIFY(events[3].restsOn.contains(Assumption::CombinationNeedsAll));
        QVERIFY(events[3].restsOn.contains(Assumption::DelayInSeconds)); // of a member
        QVERIFY(events[1].restsOn.contains(Assumption::MembersSpeakToo));
        QCOMPARE(feed(play, {{minutes(2), 6, 0}}, minutes(3)), "12:02:00 over 2; 12:02:00 over 17");
        QCOMPARE(play.whyUnplayed(17), UnplayedWhy::NoMember);
    }

    void aLimitValueSwitchesAndWhatItSwitchesIsSeen()
    {
        limit(1) = limitValue(9, Greater, "3");
        limit(2) = limitValue(12, Equal, "1");
        m_configuration.switchPoints[0] = reacting(15, 0, 2, "1");
        m_configuration.switchPoints[1] = reacting(16, 0, 2, "0");
        m_configuration.switchPoints[2] = reacting(15, 1, 5, "7");
        ModulePlay play(m_configuration, span);
        QCOMPARE(feed(play, {{begin, 9, 4}, {minutes(1), 9, 2}}, minutes(2)),
                 "12:00:00 standing 1; 12:00:00 notified 1; 12:00:00 switched 1 2=1; 12:00:00 standing 2; "
                 "12:00:00 notified 2; 12:00:00 switched 2 5=7; 12:01:00 over 1; 12:01:00 switched 1 2=0; "
                 "12:01:00 over 2");
        QCOMPARE(play.value(12), 0.0);
    }

    void theCalendarIsCarriedOutAndSeen()
    {
        limit(1) = limitValue(11, Equal, "1");
        SwitchPoint daily;
        daily.target = 1;
        daily.type = 12;
        daily.start = "2601010600";
        daily.value = "1";
        m_configuration.switchPoints[3] = daily;
        m_configuration.gsm.aliveCycle = "720";
        ModulePlay play(m_configuration, span);
        QCOMPARE(told(play.advance(begin + msPerDay)), "00:00:00 alive; 06:00:00 switched 1=1; 06:00:00 "
                                                       "standing 1; 06:00:00 notified 1; 12:00:00 alive");
    }

    /// An output that switches itself off, which switches it on.
    void whatNeverEndsIsToldAndEnds()
    {
        limit(1) = limitValue(11, Equal, "1");
        m_configuration.switchPoints[0] = reacting(15, 0, 1, "0");
        m_configuration.switchPoints[1] = reacting(16, 0, 1, "1");
        ModulePlay play(m_configuration, span);
        const QList<PlayEvent> events = play.setValue(begin, 11, 1);
        QCOMPARE(events.last().kind, Kind::Endless);
        QVERIFY(play.isStopped());
        QVERIFY(play.advance(minutes(10)).isEmpty());
        // With a delay it goes on for ever, too, but in time.
        limit(1).delay = "0.001";
        ModulePlay slow(m_configuration, span);
        slow.setValue(begin, 11, 1);
        QCOMPARE(slow.advance(span.to).last().kind, Kind::Endless);
        // An edit lets it go on.
        m_configuration.switchPoints[1] = {};
        play.configure(m_configuration);
        QVERIFY(!play.isStopped());
    }

    void anEditKeepsTheStateOfWhatItLeavesAlone()
    {
        limit(1) = limitValue(9, Greater, "3");
        limit(1).repetitions = 1;
        limit(1).repetitionInterval = "30";
        limit(2) = limitValue(9, Greater, "10");
        ModulePlay play(m_configuration, span);
        play.setValue(begin, 9, 4);
        play.advance(minutes(10));
        limit(2).limit = "3.5";
        QCOMPARE(told(play.configure(m_configuration)), "12:10:00 standing 2; 12:10:00 notified 2");
        QCOMPARE(told(play.advance(minutes(40))), "12:30:00 repeated 1");
    }

    void numbersThatAreNoneAreNotPlayed()
    {
        limit(1) = limitValue(9, Greater, "high");
        limit(2) = limitValue(9, Greater, "3");
        limit(2).delay = "-1";
        limit(3) = limitValue(9, Greater, "3");
        limit(3).comparison = 4;
        limit(4) = limitValue(9, Greater, "");
        ModulePlay play(m_configuration, span);
        QCOMPARE(feed(play, {{begin, 9, 4}}, minutes(1)), "12:00:00 standing 4; 12:00:00 notified 4");
        QCOMPARE(play.whyUnplayed(0), UnplayedWhy::BadLimit);
        QCOMPARE(play.whyUnplayed(1), UnplayedWhy::BadDelay);
        QCOMPARE(play.whyUnplayed(2), UnplayedWhy::BadComparison);
    }

    void countedPulsesKnowNoDelay()
    {
        limit(1) = limitValue(1, Greater, "90");
        limit(1).delay = "60";
        m_configuration.digitalInputs[0].countsPulses = true;
        ModulePlay play(m_configuration, span);
        const QList<PlayEvent> events = play.setValue(begin, 1, 91);
        QCOMPARE(told(events), "12:00:00 standing 1; 12:00:00 notified 1");
        QVERIFY(events.last().restsOn.contains(Assumption::PerIntervalLeftOut));
        QVERIFY(!events.last().restsOn.contains(Assumption::DelayInSeconds));
    }

    void allOfASpanIsForetoldAtOnce()
    {
        limit(1) = limitValue(9, Greater, "3");
        limit(2) = limitValue(10, Greater, "3");
        m_configuration.holidays.add({2026, 12, 25});
        m_configuration.holidays.add({2026, 11, 25});
        m_configuration.administrators[0] = {"Owen", "+447700900147"};
        m_configuration.administrators[2] = {"Zoe", "+44"};
        ValueSeries series;
        series.values = {{begin - 2, 9, 9}, {begin - 1, 9, 2}, {minutes(5), 9, 4}, {span.to, 9, 2}};
        const Foretold foretold = foretell(m_configuration, span, series, QTimeZone::utc());
        QCOMPARE(told(foretold.events), "12:05:00 standing 1; 12:05:00 notified 1");
        QCOMPARE(foretold.withoutValues, QList<int>{10});
        QCOMPARE(foretold.holidays, QList<QDate>({QDate(2026, 11, 25)}));
        const TextTable texts;
        QCOMPARE(eventRecipients(foretold.events.last(), m_configuration, texts),
                 "Owen, Zoe (has no number)");
        QCOMPARE(eventCause(foretold.events.last(), m_configuration, texts),
                 "limit value 1 (9 AnalogIn 1 > 3)");
    }
};

QTEST_GUILESS_MAIN(ModulePlayTest)

#include "module_play_test.moc"
