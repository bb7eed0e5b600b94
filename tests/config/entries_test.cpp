#include "config/entry_table.h"
#include "config/fields.h"
#include "platform/tab_table.h"
#include "support/environment.h"
#include "support/random_configuration.h"

#include <QTest>

#include <numeric>

using namespace ktr;
using namespace ktr::test;

class EntriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_configuration = Configuration();
        makeNew(m_configuration, m_environment);
        for (int entry = 0; entry < 6; ++entry) {
            m_configuration.limitValues[static_cast<std::size_t>(entry)].channel =
                static_cast<qint16>(entry + 1);
            m_configuration.limitValues[static_cast<std::size_t>(entry)].alarm =
                QString("alarm %1").arg(entry + 1);
        }
        m_configuration.limitValues[16].reference = 0b101; // 1 and 3
        m_configuration.switchPoints[4] = {1, 15, "", "0", "1", 2};
        m_configuration.switchPoints[5] = {1, 16, "", "0", "1", 16};
        m_configuration.switchPoints[6] = {1, 12, "2611150600", "0", "1", 2}; // does not react to it
    }

    void whatNamesALimitValueFollowsOneThatMoves()
    {
        QVERIFY(moveEntries(m_configuration, {limitValues, 2}, 1, 5));
        QCOMPARE(alarms(), QStringList({"alarm 1", "alarm 2", "alarm 4", "alarm 5", "alarm 6", "alarm 3"}));
        QCOMPARE(m_configuration.limitValues[16].reference, 0b100001);
        QCOMPARE(m_configuration.switchPoints[4].limitValue, 5);
        QCOMPARE(m_configuration.switchPoints[6].limitValue, 2);

        QVERIFY(moveEntries(m_configuration, {limitValues, 5}, 1, 2));
        QVERIFY(moveEntries(m_configuration, {limitValues, 1}, 2, 0)); // two at once
        QCOMPARE(alarms(), QStringList({"alarm 2", "alarm 3", "alarm 1", "alarm 4", "alarm 5", "alarm 6"}));
        QCOMPARE(m_configuration.limitValues[16].reference, 0b110);
        QCOMPARE(m_configuration.switchPoints[4].limitValue, 1);

        QVERIFY(moveEntries(m_configuration, {limitValues, 16}, 1, 19));
        QCOMPARE(m_configuration.limitValues[19].reference, 0b110);
        QCOMPARE(m_configuration.switchPoints[5].limitValue, 19);
    }

    void nothingMovesBetweenTheKindsOrOutOfTheList()
    {
        const Configuration before = m_configuration;
        for (const auto &[from, count, to] :
             {std::array{15, 1, 16}, {14, 2, 15}, {16, 1, 15}, {3, 1, 17}, {0, 1, -1}}) {
            QVERIFY(!moveEntries(m_configuration, {limitValues, from}, count, to));
        }
        QVERIFY(!moveEntries(m_configuration, {switchPoints, 19}, 1, 20));
        QVERIFY(m_configuration == before);
        QVERIFY(moveEntries(m_configuration, {switchPoints, 4}, 1, 19));
        QCOMPARE(m_configuration.switchPoints[19].limitValue, 2);
    }

    void duplicatesGoWhereNothingIsAndNothingIsNamed()
    {
        m_configuration.limitValues[16].reference = 1 << 6; // 7 does nothing, but is named
        m_configuration.limitValues[7].alarm = "kept for later";
        int copy = -1;
        QVERIFY(duplicateEntries(m_configuration, limitValues, {4, 5}, copy));
        QCOMPARE(copy, 8);
        QCOMPARE(m_configuration.limitValues[9], m_configuration.limitValues[5]);
        QVERIFY(duplicateEntries(m_configuration, limitValues, {16}, copy));
        QCOMPARE(copy, 17);
        QVERIFY(duplicateEntries(m_configuration, switchPoints, {6}, copy));
        QCOMPARE(copy, 7);

        for (auto &value : m_configuration.limitValues) {
            value.alarm = value.alarm.isEmpty() ? "used" : value.alarm;
        }
        m_configuration.limitValues[3].alarm.clear();
        m_configuration.limitValues[3].channel = 0; // room for one
        const Configuration before = m_configuration;
        QVERIFY(!duplicateEntries(m_configuration, limitValues, {4, 5}, copy));
        QVERIFY(m_configuration == before);
        QVERIFY(duplicateEntries(m_configuration, limitValues, {4}, copy));
        QCOMPARE(copy, 3); // before it: the search begins anew
    }

    void aClearedEntryIsOneOfANewConfigurationAndStillNamed()
    {
        QCOMPARE(referencesTo(m_configuration, {limitValues, 2}),
                 QList<EntryPlace>({{limitValues, 16}, {switchPoints, 4}}));
        m_configuration.limitValues[2].repetitions = 9;
        clearEntry(m_configuration, {limitValues, 2}, m_environment);
        QVERIFY(isFree(m_configuration, {limitValues, 2}));
        QCOMPARE(m_configuration.limitValues[2].repetitions, 0);
        QCOMPARE(m_configuration.limitValues[2].recipients, 255);
        QCOMPARE(referencesTo(m_configuration, {limitValues, 2}).size(), 2);
    }

    void aClipIsTheSameEntryWhateverItHolds()
    {
        RandomConfiguration random(7);
        for (int round = 0; round < 40; ++round) {
            const Configuration from = random.make(QLocale::c());
            const EntryList list = round % 2 == 0 ? limitValues : switchPoints;
            const auto clip = readClip(writeClip(clipOf(from, list, all())));
            QVERIFY(clip);
            QVERIFY(pasteEntries(m_configuration, *clip, 0, m_environment));
            QVERIFY(m_configuration.limitValues == from.limitValues || list != limitValues);
            QVERIFY(m_configuration.switchPoints == from.switchPoints || list != switchPoints);
        }
        QVERIFY(
            !readClip("{\"list\":\"Grenzwert\",\"entries\":[{\"number\":21,\"values\":{\"IP\":\"1\"}}]}"));
        QVERIFY(!readClip("nonsense"));
    }

    void aSpreadsheetGivesTheSameEntryBack_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::newRow("decimal point") << QLocale::c();
        QTest::newRow("decimal comma") << QLocale(QLocale::German);
    }
    void aSpreadsheetGivesTheSameEntryBack()
    {
        QFETCH(QLocale, locale);
        const ComparisonWords words{m_texts, locale};
        m_configuration.limitValues[0] = {
            9, "=Well \"high\"\tor\nfull", "12.5", "0,5", "", 3, 0b11000101, 0, 15, "7"};
        m_configuration.limitValues[1] = {0, "-", "1e3", "-0", "3", 2, 5, 0, 0, ""};
        m_configuration.limitValues[18].reference = 65535;
        m_configuration.switchPoints[0] = {10, 13, "0001010000", "1.5", "-4,25", 19};
        m_configuration.switchPoints[1] = {0, 0, "whenever", "", "", 0};
        const Configuration from = m_configuration;
        Configuration back = from;
        back.limitValues[0].alarm = "=Well \"high\" or full"; // a field has one line
        for (const EntryList list : {limitValues, switchPoints}) {
            EntryClip clip;
            QString table = entryTable(from, list, all(), words);
            table.replace("0001010000", "1010000"); // what a spreadsheet makes of it
            QVERIFY(readEntryTable(table, list, words, clip));
            QVERIFY(pasteEntries(m_configuration, clip, 0, m_environment));
            QCOMPARE(differences(back, m_configuration, QLocale::c()), QStringList());
        }
    }

    void columnsMayBeMovedAndLeftOut()
    {
        EntryClip clip;
        QVERIFY(read("Notification\tGrenzwert\tchannel\r\nGröße\t3,5\t10\r\n", clip));
        QVERIFY(pasteEntries(m_configuration, clip, 1, m_environment));
        const LimitValue &value = m_configuration.limitValues[1];
        QCOMPARE(value.alarm, "Groesse"); // as typed
        QCOMPARE(value.limit, "3,5");
        QCOMPARE(value.channel, 10);
        QCOMPARE(value.recipients, 255);
        // Who changes the numbers of a mask with other bits means the numbers.
        for (const auto &[cell, mask] : QList<QPair<QString, int>>{
                 {"1+2", 195}, {"1+2 (=3)", 3}, {"1+3 (=3)", 5}, {"1+2+3 (=67)", 71}, {"0 (=3)", 0}}) {
            QVERIFY(read("Notification to\n" + cell, clip));
            QVERIFY(pasteEntries(m_configuration, clip, 1, m_environment));
            QCOMPARE(m_configuration.limitValues[1].recipients, mask);
        }
        QVERIFY(read("times every (min.)\n2000", clip));
        QVERIFY(pasteEntries(m_configuration, clip, 1, m_environment));
        QCOMPARE(value.repetitionInterval, "1440");
    }

    void whatIsNotUnderstoodIsToldAndNothingPasted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("told");
        QTest::newRow("not a table") << "hello"
                                     << "neither headings";
        QTest::newRow("nothing") << " \n\t\n"
                                 << "no entry";
        QTest::newRow("an unknown column") << "Limit value\tDelay\tColour\n1\t2\tred"
                                           << "\"Colour\"";
        QTest::newRow("no number") << "Limit value\n12\nhigh"
                                   << "Row 2, Limit Value: \"high\"";
        QTest::newRow("no channel") << "Channel\n19 more"
                                    << "\"19 more\"";
        QTest::newRow("no comparison") << "Comparison\n<="
                                       << "\"<=\"";
        QTest::newRow("no administrator") << "Notification to\n1+7"
                                          << "\"1+7\"";
        QTest::newRow("too many") << "Delay" + QString("\n1").repeated(20) << "no room from 2";
        QTest::newRow("of the other kind") << "Reference\n1+2"
                                           << "Limit value 2 has no";
        QTest::newRow("more than the field holds") << "Notification to\n1 (=256)"
                                                   << "\"256\"";
    }
    void whatIsNotUnderstoodIsToldAndNothingPasted()
    {
        QFETCH(QString, text);
        QFETCH(QString, told);
        const Configuration before = m_configuration;
        EntryClip clip;
        Status done = read(text, clip);
        if (done) {
            done = pasteEntries(m_configuration, clip, 1, m_environment);
        }
        QVERIFY(!done);
        QVERIFY2(done.message().contains(told), qPrintable(done.message()));
        QVERIFY(m_configuration == before);
    }

    void targetsAreReadByTheirItemsAndByTheirNumbers()
    {
        for (const auto &[cell, position] :
             {std::pair{"GSM Num. 2", 6}, {"14", 4}, {"65", 6}, {"invalid", 0}, {"11 DigOut 1", 1}}) {
            EntryClip clip;
            QVERIFY(readEntryTable(QString("Target\n%1").arg(cell), switchPoints,
                                   {m_texts, m_environment.locale}, clip));
            QVERIFY(pasteEntries(m_configuration, clip, 0, m_environment));
            QCOMPARE(m_configuration.switchPoints[0].target, position);
        }
    }

    void tablesAreReadAsSpreadsheetsWriteThem()
    {
        QCOMPARE(readTabTable(u"a\tb\r\n\"c\nd\"\t\"\"\"e\"\"\"\n\t\n\"open\tf"),
                 QList<QStringList>({{"a", "b"}, {"c\nd", "\"e\""}, {"", ""}, {"\"open", "f"}}));
        QCOMPARE(readTabTable(u""), QList<QStringList>());
        QCOMPARE(tabTable({{"=1", "-1", "+49", "-a"}}), "'=1\t-1\t+49\t'-a\n");
    }

private:
    static constexpr EntryList limitValues = EntryList::LimitValues;
    static constexpr EntryList switchPoints = EntryList::SwitchPoints;

    static QList<int> all()
    {
        QList<int> entries(entriesOfList);
        std::iota(entries.begin(), entries.end(), 0);
        return entries;
    }

    Status read(const QString &text, EntryClip &clip) const
    {
        return readEntryTable(text, limitValues, {m_texts, m_environment.locale}, clip);
    }

    QStringList alarms() const
    {
        QStringList texts;
        for (std::size_t entry = 0; entry < 6; ++entry) {
            texts += m_configuration.limitValues[entry].alarm;
        }
        return texts;
    }

    Environment m_environment = fixedEnvironment(QLocale::c());
    TextTable m_texts;
    Configuration m_configuration;
};

QTEST_GUILESS_MAIN(EntriesTest)
#include "entries_test.moc"
