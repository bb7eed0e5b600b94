#include "config/fields.h"
#include "link/command_sequence.h"
#include "support/environment.h"

#include <QMap>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

Configuration newConfiguration()
{
    Configuration configuration;
    makeNew(configuration, test::fixedEnvironment());
    return configuration;
}

CommandContext context(bool answer = false, const QLocale &locale = QLocale::c())
{
    return {answer, locale, test::fixedEnvironment().now()};
}

QMap<int, QString> allCommands(Configuration configuration, const CommandContext &context)
{
    QMap<int, QString> commands;
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, context)) {
        commands.insert(next->step, next->command);
    }
    return commands;
}

} // namespace

class CommandSequenceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewConfigurationGivesTheseCommands()
    {
        Configuration configuration = newConfiguration();
        configuration.versionText = u"stamp"_s;
        const QMap<int, QString> commands = allCommands(configuration, context());
        QCOMPARE(commands.size(), 79);
        const QMap<int, QString> expected{
            {0, u"V,§"_s},
            {1, u"n,,,+49,+49,+49,+49,+49,+49"_s},
            {2, u"g,1,1,0,,0,0,0,0,1,255,"_s},
            {17, u"g,16,1,0,,0,0,0,0,1,255,"_s},
            {18, u"g,17,1,0,,0,255,"_s},
            {21, u"g,20,1,0,,0,255,"_s},
            {22, u"d,1,0,0,0,1"_s},
            {25, u"d,4,0,0,0"_s},
            {26, u"d,9,0,1"_s},
            {29, u"d,14,0,1"_s},
            {30, u"s,11,0"_s},
            {33, u"s,14,0"_s},
            {34, u"h,1,0,0"_s},
            {51, u"h,18,0,0"_s},
            {52, u"z,1,0,0,0,0001010000,0"_s},
            {71, u"z,20,0,0,0,0001010000,0"_s},
            {72, u'f' + u",000101"_s.repeated(20)},
            {73, u"d,15,0,0"_s},
            {74, u"d,16,0,0"_s},
            {75, u"c,0"_s},
            {76, u"e,167772161,4294967040,0.96.169.0.0.0"_s},
            {77, u"t,09,11,15,14,05,37,7"_s},
            {78, u"v,stamp"_s},
        };
        for (auto it = expected.begin(); it != expected.end(); ++it) {
            QCOMPARE(commands.value(it.key()), it.value());
        }

        // In answer mode the letter is all that changes, and not in the first and the last command.
        const QMap<int, QString> answered = allCommands(configuration, context(true));
        for (auto it = commands.begin(); it != commands.end(); ++it) {
            const bool fixed = it.key() == 0 || it.key() == 78;
            QCOMPARE(answered.value(it.key()), (fixed ? it->left(1) : it->left(1).toUpper()) + it->mid(1));
        }
    }

    void filledFieldsGiveTheseCommands_data()
    {
        QTest::addColumn<int>("step");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("underDecimalComma"); // empty: the same
        const QString same;
        QTest::newRow("numbers") << 1 << "n,0042,PW 3,+49301,,+49,+49,+49,+49" << same;
        QTest::newRow("limit value") << 4 << "g,3,1,2,30,9,2.5,0.1,5,3,251,level high, pump 1,2" << same;
        QTest::newRow("limit value, joint in a field") << 5 << "g,4,1,0,,0,1,2,0,0,1,255," << same;
        QTest::newRow("line ends in a text") << 6 << "g,5,1,0,,0,0,0,0,1,255,a  at+cmgr=1 \tb" << same;
        QTest::newRow("reference") << 18 << "g,17,1,1,60,2.5,63,a,b"
                                   << "g,17,1,1,60,2,5,63,a,b";
        QTest::newRow("pulses") << 22 << "d,1,1,0,12.5,10.5" << same;
        QTest::newRow("pulses without start value") << 23 << "d,2,0,1,,1" << same;
        QTest::newRow("hours") << 24 << "d,3,1,1,7" << same;
        QTest::newRow("input scaling") << 27 << "d,10,-0.5,1.25" << same;
        QTest::newRow("output scaling") << 28 << "d,13,0.5,2" << same;
        QTest::newRow("digital output") << 31 << "s,12,1" << same;
        QTest::newRow("analog output") << 32 << "s,13,9.5" << same;
        QTest::newRow("archive") << 51 << "h,18,15,0.5" << same;
        QTest::newRow("switch point") << 52 << "z,1,65,12,1.5,0912241800,0" << same;
        QTest::newRow("switch point at a limit value") << 53 << "z,2,11,15,1,0001010000,4,1,5" << same;
        QTest::newRow("switch point beyond a year") << 54 << "z,3,14,14,1,0001010000,525600" << same;
        QTest::newRow("target outside the list") << 55 << "z,4,0,16,0,0001010000,20,0" << same;
        QTest::newRow("holidays") << 72 << "f,091224,091225" + u",000101"_s.repeated(18) << same;
        QTest::newRow("output hours") << 74 << "d,16,1,100.5" << same;
        QTest::newRow("alive cycle") << 75 << "c,1.5" << same;
        QTest::newRow("addresses") << 76 << "e,3232235777,,0.96.169.171.205.1" << same;
    }
    void filledFieldsGiveTheseCommands()
    {
        QFETCH(int, step);
        QFETCH(QString, command);
        QFETCH(QString, underDecimalComma);
        Configuration c = newConfiguration();
        c.gsm = {u"0042"_s, u"KTR"_s, u"PW 3"_s, u"1,5"_s};
        c.administrators[0].number = u"+49301"_s;
        c.administrators[1].number.clear();
        c.limitValues[2] = {9, u"level high, pump 1,2"_s, u"2,5"_s, u"0,1"_s, u"5"_s, 3, 251, 0, 2, u"30"_s};
        c.limitValues[3].limit = u"1°2"_s;
        c.limitValues[4].alarm = u"a\r\nat+cmgr=1\x1A\tb"_s;
        c.limitValues[16].alarm = u"a,b"_s;
        c.limitValues[16].reference = 2.5;
        c.limitValues[16].repetitions = 1;
        c.limitValues[16].repetitionInterval = u"60"_s;
        c.limitValues[16].recipients = 63;
        c.digitalInputs[0] = {true, u"10,5"_s, false, false, u"12,5"_s};
        c.digitalInputs[1] = {false, u"1"_s, true, true, QString()};
        c.digitalInputs[2] = {false, u"9"_s, true, true, u"7"_s};
        c.scaling[1] = {u"-0,5"_s, u"1,25"_s, u"m"_s};
        c.scaling[2] = {u"0.5"_s, u"2"_s, u"V"_s};
        c.outputValues[1] = {true, u"1"_s};
        c.outputValues[0] = {false, u"9,5"_s};
        c.archiving[17] = {u"15"_s, u"0,5"_s};
        c.switchPoints[0] = {6, 12, u"0912241800"_s, u"0"_s, u"1,5"_s, 3};
        c.switchPoints[1] = {1, 15, QString(), u"1,5"_s, u"1"_s, 3};
        c.switchPoints[2] = {4, 14, QString(), u"525600"_s, u"7"_s, 0};
        c.switchPoints[3] = {11, 16, QString(), u"0"_s, u"0"_s, 19};
        c.holidays.add(QDate(2009, 12, 24));
        c.holidays.add(QDate(2009, 12, 25));
        c.outputHours[1] = {true, u"100,5"_s};
        c.ethernet = {u"192.168.001.001"_s, u"255.255.255"_s, u"ab"_s, u"CD"_s, u"1"_s};
        QCOMPARE(allCommands(c, context()).value(step), command);
        QCOMPARE(allCommands(c, context(false, test::german())).value(step),
                 underDecimalComma.isEmpty() ? command : underDecimalComma);
    }

    void addressesThatAreNoneLeaveTheirFieldEmpty_data()
    {
        QTest::addColumn<QString>("ip");
        QTest::addColumn<QString>("mac5");
        QTest::addColumn<QString>("command");
        QTest::newRow("three parts") << "1.2.3"
                                     << "00"
                                     << "e,,4294967040,0.96.169.0.0.0";
        QTest::newRow("empty part") << "1..2.3"
                                    << "00"
                                    << "e,,4294967040,0.96.169.0.0.0";
        QTest::newRow("letters") << "1.2.3.x"
                                 << "00"
                                 << "e,,4294967040,0.96.169.0.0.0";
        QTest::newRow("a decimal comma") << "10.0.0.1,0"
                                         << "00"
                                         << "e,,4294967040,0.96.169.0.0.0";
        QTest::newRow("beyond 32 bits") << "300.0.0.0"
                                        << "00"
                                        << "e,,4294967040,0.96.169.0.0.0";
        QTest::newRow("highest") << "255.255.255.255"
                                 << "FF"
                                 << "e,4294967295,4294967040,0.96.169.0.0.255";
        QTest::newRow("no hexadecimal") << "0.0.0.1"
                                        << "G0"
                                        << "e,1,4294967040,";
        QTest::newRow("blank behind") << "0.0.0.1"
                                      << "A "
                                      << "e,1,4294967040,";
        QTest::newRow("prefix") << "0.0.0.1"
                                << "0x1"
                                << "e,1,4294967040,";
        QTest::newRow("empty byte") << "0.0.0.1"
                                    << ""
                                    << "e,1,4294967040,";
    }
    void addressesThatAreNoneLeaveTheirFieldEmpty()
    {
        QFETCH(QString, ip);
        QFETCH(QString, mac5);
        QFETCH(QString, command);
        Configuration c = newConfiguration();
        c.ethernet.ip = ip;
        c.ethernet.mac5 = mac5;
        QCOMPARE(allCommands(c, context()).value(76), command);
    }

    void withoutOutputValuesTheSequenceJumpsAndStartValuesStayEmpty()
    {
        Configuration c = newConfiguration();
        c.sendValues[0].enabled = false;
        const QMap<int, QString> commands = allCommands(c, context());
        QCOMPARE(commands.size(), 75);
        QVERIFY(commands.contains(29) && commands.contains(34));
        QVERIFY(!commands.contains(30) && !commands.contains(33));
        for (int step = 30; step <= 33; ++step) { // also where a transmission goes on there
            CommandSequence sequence;
            sequence.start(step);
            QCOMPARE(sequence.next(c, context())->step, 34);
        }
        QCOMPARE(commands.value(22), "d,1,0,0,,1");
        QCOMPARE(commands.value(24), "d,3,0,0,");
        QCOMPARE(commands.value(73), "d,15,0,0"); // these are always sent
    }

    void aPeriodOfAYearSetsTheValueInTheConfiguration()
    {
        Configuration c = newConfiguration();
        c.switchPoints[0].period = u"525599.9"_s;
        c.switchPoints[1].period = u"525600 min"_s;
        CommandSequence sequence;
        sequence.start(52);
        sequence.next(c, context());
        sequence.next(c, context());
        QCOMPARE(c.switchPoints[0].value, "0");
        QCOMPARE(c.switchPoints[1].value, "1");
        QCOMPARE(sequence.step(), 54);
    }

    void theClockTakesTheDateBeforeAndTheTimeAfterMidnight()
    {
        QCOMPARE(clockFields(QDateTime(QDate(2009, 12, 31), QTime(23, 59, 59))), "09,12,31,00,00,01,4");
    }
};

QTEST_GUILESS_MAIN(CommandSequenceTest)
#include "command_sequence_test.moc"
