#include "config/comparison.h"
#include "config/configuration_file.h"
#include "support/environment.h"
#include "support/random_configuration.h"

#include <QTest>

#include <set>

using namespace ktr;
using namespace ktr::test;
using Change = ComparedField::Change;

namespace {

const TextTable texts;

QList<ComparedField> compared(const Configuration &mine, const Configuration &theirs)
{
    const QLocale locale = german();
    return compareConfigurations(mine, theirs, {texts, locale});
}

/// "page, entry, label: mine -> theirs"
QString told(const ComparedField &field)
{
    return u"%1, %2, %3: %4 -> %5"_s.arg(field.page, field.entry, field.label, field.mine, field.theirs);
}

QStringList told(const QList<ComparedField> &fields)
{
    QStringList lines;
    for (const ComparedField &field : fields) {
        lines += told(field);
    }
    return lines;
}

Configuration fresh()
{
    Configuration configuration;
    makeNew(configuration, fixedEnvironment());
    return configuration;
}

} // namespace

class ComparisonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countersHaveTheUsersUnit()
    {
        Configuration mine = fresh();
        mine.digitalInputs[0].countsPulses = true;
        mine.limitValues[0].channel = 1;
        mine.limitValues[0].limit = u"80"_s;
        Configuration theirs = mine;
        theirs.limitValues[0].limit = u"90"_s;
        QVERIFY2(told(compared(mine, theirs)).join(u'\n').contains(u"80 Pulses -> 90 Pulses"),
                 qPrintable(told(compared(mine, theirs)).join(u'\n')));
        mine.names.channels[0].unit = theirs.names.channels[0].unit = u"kWh"_s;
        QVERIFY2(told(compared(mine, theirs)).join(u'\n').contains(u"80 kWh -> 90 kWh"),
                 qPrintable(told(compared(mine, theirs)).join(u'\n')));
        mine.digitalInputs[0].countsPulses = theirs.digitalInputs[0].countsPulses = false;
        QVERIFY(told(compared(mine, theirs)).join(u'\n').contains(u"80 -> 90")); // 0 or 1 has no unit
    }

    void takingEveryRowMakesBothTheSame()
    {
        for (unsigned seed = 0; seed < 100; ++seed) {
            Configuration mine = RandomConfiguration(seed).make(QLocale::c());
            const Configuration theirs = RandomConfiguration(seed + 1000).make(QLocale::c());
            QVERIFY(compared(mine, mine).isEmpty());
            std::set<QString> keys;
            QList<ComparedField> left = compared(mine, theirs);
            for (int round = 0; round < 3 && !left.isEmpty(); ++round) { // holidays need room, then an order
                for (const ComparedField &field : left) {
                    QVERIFY2(round > 0 || keys.insert(field.key).second, qPrintable(field.key));
                    QVERIFY2(!field.control.isEmpty() && !field.label.isEmpty() && !field.page.isEmpty(),
                             qPrintable(field.key));
                    takeField(mine, theirs, field.key);
                }
                left = compared(mine, theirs);
            }
            QCOMPARE(told(left), QStringList());
            QVERIFY(keys.size() > 150); // nearly every field of a random one
            QCOMPARE(mine.gsm, theirs.gsm);
            QCOMPARE(mine.ethernet, theirs.ethernet);
            QCOMPARE(mine.holidays, theirs.holidays);
            QCOMPARE(mine.versionText, theirs.versionText);
        }
    }

    void aFieldIsToldInTheWordsOfItsPage()
    {
        Configuration mine = fresh();
        mine.administrators[1].name = u"Meier"_s;
        mine.limitValues[2].channel = 9;
        mine.scaling[0].unit = u"bar"_s;
        Configuration theirs = mine;
        theirs.gsm.pin = u"1234"_s;
        theirs.administrators[1].number = u"+491711234567"_s;
        theirs.archiving[8].interval = u"15"_s;
        theirs.digitalInputs[0].countsPulses = true;
        theirs.scaling[0].factor = u"2,5"_s;
        theirs.limitValues[2].limit = u"4,5"_s;
        theirs.limitValues[2].recipients = 0b110;
        theirs.limitValues[16].reference = 0b101;
        theirs.switchPoints[0].target = 6;
        theirs.switchPoints[0].type = 15;
        theirs.switchPoints[0].limitValue = 2;
        theirs.switchPoints[0].start = u"2611241830"_s;
        theirs.holidays.add(QDate(2026, 12, 24));
        theirs.ethernet.mac4 = u"7F"_s;
        const QStringList expected{
            u"GSM, , PIN:  -> ****"_s,
            u"GSM, Admin 2, Phone Number: +49 -> +491711234567"_s,
            u"IP, 1 DigIn 1, Counter: no -> yes"_s,
            u"IP, 9 AnalogIn 1, Interval: 0 Minutes -> 15 Minutes"_s,
            u"IP, 9 AnalogIn 1, Factor: 1 -> 2,5"_s,
            u"Limit Value, LV 3, Limit Value: 0 bar -> 4,5 bar"_s,
            u"Limit Value, LV 3, Notification to: Admin 1–6 -> Meier, Admin 3"_s,
            u"Limit Value, LV 17, Reference:  -> 1, 3"_s,
            u"Switchpoint, Switchpoint 1, Target: invalid -> Meier"_s,
            u"Switchpoint, Switchpoint 1, Start:  -> 24.11.26 18:30"_s,
            u"Switchpoint, Switchpoint 1, Type: 0 on Sundays -> 15 LV exceeded (above the limit)"_s,
            u"Switchpoint, Switchpoint 1, Limit Value: 1 (invalid) -> 3 (9 AnalogIn 1)"_s,
            u"Switchpoint, Holidays, 24.12.26: no -> yes"_s,
            u"Ethernet, , MAC 5: 00 -> 7F"_s,
        };
        QCOMPARE(told(compared(mine, theirs)), expected);
    }

    void whatAFileLeavesEmptyIsNoDifference()
    {
        const Configuration mine = fresh();
        Configuration read;
        makeNew(read, fixedEnvironment());
        readConfiguration(writeConfiguration(mine, fixedEnvironment()), read, fixedEnvironment());
        QVERIFY(read != mine);
        QCOMPARE(told(compared(mine, read)), QStringList());
        read.switchPoints[3].target = 1; // now its start means something
        QCOMPARE(compared(mine, read).size(), 2);
    }

    void stampsAreToldApart()
    {
        Configuration mine = fresh();
        mine.versionText = mine.info.version = u"2026-11-01 12:00:00"_s;
        Configuration theirs = mine;
        theirs.versionText = theirs.info.version = u"2026-11-02 12:00:00"_s;
        QCOMPARE(compared(mine, theirs).size(), 2);
        QVERIFY(!differInMoreThanStamps(compared(mine, theirs)));
        theirs.info.comment = u"checked"_s;
        QVERIFY(differInMoreThanStamps(compared(mine, theirs)));
    }

    void threeOfThemTellWhoChangedWhat()
    {
        const QLocale locale = QLocale::c();
        Configuration base = fresh();
        base.holidays.add(QDate(2026, 12, 24));
        Configuration mine = base;
        Configuration theirs = base;
        mine.gsm.stationId = u"North"_s;
        theirs.gsm.aliveCycle = u"24"_s;
        mine.limitValues[0].delay = theirs.limitValues[0].delay = u"5"_s;
        mine.limitValues[1].delay = u"6"_s;
        theirs.limitValues[1].delay = u"7"_s;
        theirs.holidays.clear();
        theirs.holidays.add(QDate(2026, 12, 25));
        mine.versionText = u"a"_s;
        theirs.versionText = u"b"_s;
        const auto fields = compareConfigurations(mine, theirs, base, {texts, locale});
        const auto changeOf = [&fields](const QString &key) {
            const auto found = std::ranges::find(fields, key, &ComparedField::key);
            return found == fields.end() ? Change::Unknown : found->change;
        };
        QCOMPARE(fields.size(), 7);
        QCOMPARE(changeOf(u"Stationskennung"_s), Change::Mine);
        QCOMPARE(changeOf(u"Alivecycle"_s), Change::Theirs);
        QCOMPARE(changeOf(u"Grenzwert0 Delay"_s), Change::Both);
        QCOMPARE(changeOf(u"Grenzwert1 Delay"_s), Change::Conflict);
        QCOMPARE(changeOf(u"Feiertag 261224"_s), Change::Theirs);
        QCOMPARE(changeOf(u"Feiertag 261225"_s), Change::Theirs);
        QCOMPARE(changeOf(u"Version Version"_s), Change::Conflict);

        Merge merge = mergeConfigurations(mine, theirs, base, {texts, locale});
        QCOMPARE(merge.conflicts.size(), 1);
        QCOMPARE(merge.conflicts[0].base, u"0"_s);
        theirs.limitValues[1] = base.limitValues[1];
        merge = mergeConfigurations(mine, theirs, base, {texts, locale});
        QVERIFY(merge.conflicts.isEmpty());
        QCOMPARE(merge.configuration.gsm.stationId, u"North"_s);
        QCOMPARE(merge.configuration.gsm.aliveCycle, u"24"_s);
        QCOMPARE(merge.configuration.limitValues[1].delay, u"6"_s);
        QCOMPARE(merge.configuration.holidays.lines(), QStringList{HolidayList::line(QDate(2026, 12, 25))});
        QCOMPARE(merge.configuration.versionText, u"a"_s);
    }

    void aMergeKeepsWhatEitherChangedInAnyPair()
    {
        const QLocale locale = QLocale::c();
        for (unsigned seed = 0; seed < 50; ++seed) {
            const Configuration base = RandomConfiguration(seed).make(locale);
            Configuration theirs = RandomConfiguration(seed + 1000).make(locale);
            theirs.holidays = base.holidays;
            // Without changes of mine the merge is theirs, and the other way round mine.
            const ComparisonWords words{texts, locale};
            const auto onlyTheirs = mergeConfigurations(base, theirs, base, words);
            QVERIFY(onlyTheirs.conflicts.isEmpty());
            QVERIFY(!differInMoreThanStamps(compareConfigurations(onlyTheirs.configuration, theirs, words)));
            QCOMPARE(mergeConfigurations(theirs, base, base, words).configuration, theirs);
        }
    }

    void holidaysWithoutRoomAreAConflict()
    {
        const QLocale locale = QLocale::c();
        const Configuration base = fresh();
        Configuration mine = base;
        for (int day = 1; day <= HolidayList::capacity; ++day) {
            mine.holidays.add(QDate(2026, 12, day));
        }
        Configuration theirs = base;
        theirs.holidays.add(QDate(2027, 1, 1));
        Merge merge = mergeConfigurations(mine, theirs, base, {texts, locale});
        QCOMPARE(merge.conflicts.size(), 1);
        QVERIFY(!takeField(mine, theirs, u"Feiertag 270101"_s));
        QVERIFY(takeField(mine, theirs, u"Feiertag 261201"_s)); // they have not got it
        QVERIFY(takeField(mine, theirs, u"Feiertag 270101"_s));
        QVERIFY(!takeField(mine, theirs, u"Grenzwert99 Alarm"_s));
    }

    void theOrderOfHolidaysIsOneRow()
    {
        Configuration mine = fresh();
        Configuration theirs = mine;
        for (const QDate day : {QDate(2026, 12, 24), QDate(2026, 12, 25)}) {
            mine.holidays.add(day);
        }
        for (const QDate day : {QDate(2026, 12, 25), QDate(2026, 12, 24)}) {
            theirs.holidays.add(day);
        }
        const auto fields = compared(mine, theirs);
        QCOMPARE(
            told(fields),
            QStringList{u"Switchpoint, Holidays, Order: 24.12.26, 25.12.26 -> 25.12.26, "_s + u"24.12.26"_s});
        QVERIFY(takeField(mine, theirs, fields[0].key));
        QCOMPARE(mine.holidays, theirs.holidays);
    }
};

QTEST_GUILESS_MAIN(ComparisonTest)
#include "comparison_test.moc"
