#include "record/record_address.h"
#include "record/record_care.h"
#include "record/record_queries.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"
#include "support/private_postgres.h"
#include "support/test_files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

EventRow said(qint64 id, const QString &text, qint64 station = 1)
{
    return {.id = id, .at = 1000 * id, .station = station, .kind = EventKind::Notification, .text = text};
}

} // namespace

/// What is so of each record, in a file and in a server's database.
class RecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("isOnServer");
        QTest::addRow("file") << false;
        if (test::PrivatePostgres::canBe()) {
            QTest::addRow("server") << true;
        }
    }

    void initTestCase()
    {
        if (test::PrivatePostgres::canBe()) {
            const QString trouble = m_server.start();
            QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
        }
    }

    void init()
    {
        m_troubles.clear();
        QFETCH_GLOBAL(bool, isOnServer);
        if (isOnServer) {
            m_path = m_server.makeDatabase(u"record%1"_s.arg(++m_databases));
            const Status made = initRecord(m_path);
            QVERIFY2(made, qPrintable(made.message()));
            return;
        }
        // In memory where that can be: thousands of commits are waited for.
        const QString inMemory = u"/dev/shm"_s;
        const QString place = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
        m_folder = std::make_unique<QTemporaryDir>(place + u"/record_test-"_s);
        m_path = m_folder->filePath(u"a record.db"_s);
    }

    void everyKindOfRowComesBackAsItWasWritten()
    {
        const QString odd = u"'%_\\ \" ÄÖÜ €\n?$1x"_s;
        const StationRow station{7, odd, false, u"{}"_s};
        const EventRow full{1, 5, 7, EventKind::Commented, odd, u"{\"a\":1}"_s, u"Müller"_s, 3};
        const EventRow bare{2, 4, 0, EventKind::Started, {}, {}, {}, 0};
        const NotificationRow notification{7, odd, 1, 2, 3, 4, 5, true};
        const NotificationRow removed{7, u"removed"_s, 1, 2, 3, 4, 5, false};
        const AlarmRow alarm{3,   7, AlarmKind::Puk, odd, 1,      2,     3, 4, {u"a, b"_s, odd}, 5, u"x"_s,
                             odd, 6, u"y"_s,         7,   u"z"_s, u"w"_s};
        const AlarmRow open{4, 0, AlarmKind::Disk, u"full"_s, 2, 9, 9, 1};
        const HistoryRow record{7, 18, 99, u"12.5"_s, u"-"_s};
        const ValueRow value{7, 1, 98, u"on"_s};
        {
            auto writer = opened();
            for (const RecordRow &row :
                 {RecordRow(station), RecordRow(full), RecordRow(bare), RecordRow(notification),
                  RecordRow(removed), RecordRow(alarm), RecordRow(open), RecordRow(record), RecordRow(value),
                  RecordRow(ListFileRow{u"c"_s, 1, 0}), RecordRow(ListFileRow{u"c"_s, 2, 0}),
                  RecordRow(SettingRow{u"s"_s, odd})}) {
                writer->add(row);
            }
            HistoryRow again = record;
            again.second = u"other"_s;
            writer->add(again); // a report that comes twice stands once
            QVERIFY(writer->flushNow());
            QCOMPARE(writer->onDiskCount(), writer->addedCount());
        }
        QCOMPARE(openRecord(m_path).lastEvent, 2);
        if (!isServerAddress(m_path)) {
            QVERIFY(!test::othersMayRead(m_path));
            QCOMPARE(openRecord(m_path).lastAlarm, 4);
        } else { // each has numbers of its own
            QVERIFY(openRecord(m_path).lastAlarm < openRecord(m_path).lastAlarm);
        }
        RecordReader reader(m_path);
        QList<RecordRow> found;
        const auto take = [&found](const auto &row) { found += RecordRow(row); };
        QVERIFY(reader.stations(take));
        QVERIFY(reader.notifications(take));
        QVERIFY(reader.openAlarms(take));
        QVERIFY(reader.history(7, 18, 0, 100, take));
        QVERIFY(reader.values(7, 1, 0, 99, take));
        QVERIFY(found == QList<RecordRow>({station, notification, open, record, value}));
        QCOMPARE(reader.findEvents({}, {}, 9).rows, QList({full, bare}));
        QCOMPARE(reader.findAlarms({}, {}, 9).rows, QList({open, alarm}));
        std::optional<qint64> upto;
        QVERIFY(reader.lastListFile(u"c"_s, upto));
        QCOMPARE(upto, 2);
        std::optional<QString> setting;
        QVERIFY(reader.setting(u"s"_s, setting));
        QCOMPARE(setting, odd);
    }

    void theNewestQuestionOfAnAskerIsAnswered()
    {
        opened()->add(said(1, u"one"_s));
        RecordQueries queries(m_path);
        QList<int> answers;
        const auto ask = [&](const int *asker, int limit) {
            queries.ask(
                asker, [limit](RecordReader &reader) { return reader.findEvents({}, {}, limit); },
                [&answers, limit](const EventPage &page) {
                    answers += page.status && page.rows.size() == 1 ? limit : -limit;
                });
        };
        const int a = 0;
        const int b = 0;
        for (const int limit : {2, 3, 4}) {
            ask(&a, limit);
            ask(&b, 10 * limit);
        }
        QTRY_COMPARE(answers, QList({4, 40}));
    }

    /// With all texts in the index, with none and with some; by pages, each row once.
    void aSearchFindsWhatIsThere_data()
    {
        QTest::addColumn<int>("indexed");
        for (const int indexed : {0, 1000, 2000}) {
            QTest::addRow("%d", indexed) << indexed;
        }
    }
    void aSearchFindsWhatIsThere()
    {
        QFETCH(int, indexed);
        if (isServerAddress(m_path) && indexed != 0) {
            QSKIP("A server's index has each text at once");
        }
        const QStringList texts{u"M,Pump 1 fail"_s,
                                u"M,PUMP 2 ok"_s,
                                u"100%"_s,
                                u"a_b"_s,
                                u"say \"no\" pump"_s,
                                u"Störung"_s,
                                u"日本語🙂x"_s,
                                u""_s,
                                u"Trübung über Maß é[*]"_s,
                                u"Trabung uber maß e"_s,
                                u"ÉSSAI"_s};
        QList<EventRow> rows;
        auto writer = opened();
        const int count = indexed == 0 ? 6000 : 2000; // with none so many that they are looked for in parts
        for (int i = 1; i <= count; ++i) {
            EventRow row = said(i, texts[i * 7 % texts.size()], i % 5);
            row.at = 60 * (row.at - i % 11 * 5000); // the clock was set back
            row.alarm = i % 90 == 0 ? i / 90 : 0;
            row.kind = i % 3 == 0   ? EventKind::Values
                       : i % 4 == 0 ? EventKind::Commented
                                    : EventKind::Notification;
            row.operatorName = i % 50 == 0 ? u"op"_s : QString();
            rows += row;
            writer->add(row);
            if (i == indexed || i == count) {
                QVERIFY(writer->flushNow());
                for (int step = 0; i == indexed && !writer->isAtRest(); ++step) {
                    m_timers.advance(RecordWriter::restDelay);
                    QVERIFY(writer->flushNow());
                }
            }
        }
        RecordReader reader(m_path);
        for (const QString &text : {u""_s, u"pump"_s, u"1 FAIL"_s, u"0%"_s, u"00%"_s, u"a_b"_s, u"_b"_s,
                                    u"\"no\" p"_s, u"ör"_s, u"örung"_s, u"TRÜBUNG ÜBER"_s, u"Ü"_s, u"É[*"_s,
                                    u"maß"_s, u"本語🙂"_s, u"語🙂"_s, u"nowhere"_s}) {
            for (const EventFilter &filter :
                 {EventFilter{.text = text}, EventFilter{.from = 30'000'000, .to = 54'000'000, .text = text},
                  EventFilter{.stations = {2, 3}, .text = text},
                  EventFilter{.kinds = {EventKind::Commented}, .text = text},
                  EventFilter{
                      .kinds = {EventKind::Commented, EventKind::Values}, .text = text, .ofAlarms = true},
                  EventFilter{.kinds = {EventKind::Values}, .text = text},
                  EventFilter{.stations = {2, 3}, .kinds = {EventKind::Values}, .text = text},
                  EventFilter{.stations = {2, 3}, .operatorName = u"op"_s, .text = text},
                  EventFilter{.operatorName = u"op"_s, .text = text}}) {
                const bool areValues = filter.kinds == QList{EventKind::Values};
                QList<EventRow> expected;
                std::ranges::copy_if(rows, std::back_inserter(expected), [&](const EventRow &row) {
                    return (filter.from == 0 || row.at >= filter.from) &&
                           (filter.to == 0 || row.at < filter.to) &&
                           (filter.stations.isEmpty() || filter.stations.contains(row.station)) &&
                           (filter.kinds.isEmpty() || filter.kinds.contains(row.kind)) &&
                           (filter.operatorName.isEmpty() || row.operatorName == filter.operatorName) &&
                           (!filter.ofAlarms || row.alarm != 0) &&
                           (text.isEmpty() || ((areValues || searchableKinds().contains(row.kind)) &&
                                               row.text.contains(text, Qt::CaseInsensitive)));
                });
                std::ranges::sort(expected, std::greater(), [&](const EventRow &row) {
                    return std::pair(text.isEmpty() || areValues || !filter.stations.isEmpty() ? row.at : 0,
                                     row.id);
                });
                QList<EventRow> found;
                EventPage page;
                do {
                    page = reader.findEvents(filter, page.next, 37);
                    QVERIFY2(page.status, qPrintable(page.status.message()));
                    found += page.rows;
                } while (page.next);
                QVERIFY2(found == expected,
                         qPrintable(u"%1: %2 of %3"_s.arg(text).arg(found.size()).arg(expected.size())));
            }
        }
    }

    void whatIsOldGoesButWhatIsStillNeeded()
    {
        auto writer = opened();
        for (int i = 1; i <= 1500; ++i) {
            EventRow row = said(i, u"M,%1 fail"_s.arg(i));
            row.alarm = i == 5 ? 1 : i == 6 ? 2 : 0;
            row.kind = i % 2 == 0 ? EventKind::Notification : EventKind::OtherMessage;
            writer->add(row);
            writer->add(HistoryRow{i % 2, i % 3, 1000 * i, u"%1"_s.arg(i), u"-"_s});
        }
        writer->add(ListFileRow{u"c"_s, 1400, 0});
        writer->add(AlarmRow{.id = 1, .first = 1});
        writer->add(AlarmRow{.id = 2, .first = 1, .acknowledged = 2, .over = 3});
        QVERIFY(writer->flushNow());
        QTRY_VERIFY((m_timers.advance(RecordWriter::restDelay), writer->isAtRest()));
        writer->thinOut(
            {.history = 1'000'001,
             .alarms = 5,
             .events = {{EventKind::Notification, 1'450'000}, {EventKind::OtherMessage, 1'000'000}}});
        QTRY_VERIFY((m_timers.advance(RecordWriter::restDelay), writer->isAtRest()));
        RecordReader reader(m_path);
        QList<qint64> left;
        for (const EventRow &row : reader.findEvents({.text = u"fail"_s}, {}, 2000).rows) {
            left.prepend(row.id);
        }
        QList<qint64> expected{5};
        for (int i = 1001; i <= 1500; ++i) {
            if (i % 2 != 0 || i > 1400) {
                expected += i;
            }
        }
        QCOMPARE(left, expected);
        QCOMPARE(reader.findAlarms({}, {}, 9).rows.size(), 1);
        qint64 history = 0;
        QVERIFY(reader.count(u"history"_s, history));
        QCOMPARE(history, 500);
        double sum = 0;
        QVERIFY(reader.curve(1, 1, 0, 10'000'000, HistoryLevel::Hour, [&](const HistoryPoint &point) {
            sum += point.first->mean * static_cast<double>(point.count);
            QVERIFY(!point.second);
        }));
        QCOMPARE(sum, 103'667.); // 1003, 1009 and so on to 1495
        writer->add(HistoryRow{9, 1, 0, u"+1,5"_s, u"on"_s});
        writer->add(HistoryRow{9, 1, 1, u" -.5e1x"_s, u"inf 2"_s});
        QVERIFY(writer->flushNow());
        QList<HistoryPoint> points;
        QVERIFY(
            reader.curve(9, 1, 0, 9, HistoryLevel::Day, [&](const HistoryPoint &point) { points += point; }));
        QCOMPARE(points, (QList<HistoryPoint>{{0, 2, {{-5, -1.75, 1.5}}, {{0, 0, 0}}}}));
        QString copy = m_path;
        if (!isServerAddress(m_path)) {
            copy = m_folder->filePath(u"copy.db"_s);
            QVERIFY(backUpRecord(m_path, copy));
        }
        QVERIFY(!backUpRecord(m_path, copy));
        const RecordCheck check = checkRecord(copy);
        QVERIFY(check.status && check.faults.isEmpty());
        QVERIFY(check.rows.contains(std::pair(u"event"_s, qint64{expected.size()})));
    }

    void whatWasMeasuredAtAnInputIsInArchivesAndReports()
    {
        {
            auto writer = opened();
            for (int i = 0; i < 5; ++i) { // an archive that two inputs share, and one of its own
                writer->add(HistoryRow{1, 9, 100 * i, u"4"_s, u"%1"_s.arg(i)});
                writer->add(HistoryRow{1, 9, 100 * i, u"11"_s, u"77"_s});
                writer->add(HistoryRow{2, 9, 100 * i, u"4"_s, u"88"_s});
            }
            writer->add(HistoryRow{1, 4, 150, u"4"_s, u"1,5"_s});
            writer->add(HistoryRow{1, 4, 160, u"x"_s, u"9"_s});
            writer->add(ValueRow{1, 4, 250, u"2.5"_s});
            writer->add(ValueRow{1, 4, 260, u"?"_s});
            writer->add(ValueRow{1, 7, 250, u"3"_s});
            QVERIFY(writer->flushNow());
        }
        RecordReader reader(m_path);
        QList<int> channels;
        QVERIFY(reader.measuredChannels(1, channels));
        QCOMPARE(channels, (QList<int>{4, 7, 11}));
        QList<std::pair<qint64, double>> values;
        const Status read = reader.measured(1, 4, 100, 400, [&values](qint64 at, double value) {
            values.append({at, value});
        });
        QVERIFY2(read, qPrintable(read.message()));
        QCOMPARE(values,
                 (QList<std::pair<qint64, double>>{{100, 1}, {150, 1.5}, {200, 2}, {250, 2.5}, {300, 3}}));
    }

    void theFiguresOfATimeCountWhatCameInIt()
    {
        constexpr qint64 minute = 60'000;
        constexpr qint64 day = 1440 * minute;
        {
            auto writer = opened();
            // Of each: when it came, was acknowledged and was over, in minutes.
            const std::array<std::array<qint64, 4>, 7> alarms{{{1, 99, 100, 0},
                                                               {1, 100, 101, 101},
                                                               {2, 109, 112, 112},
                                                               {1, 110, 114, 0},
                                                               {1, 119, 149, 2000},
                                                               {2, 121, 0, 1000},
                                                               {1, 200, 0, 0}}};
            qint64 id = 0;
            for (const auto &[station, first, acknowledged, over] : alarms) {
                writer->add(AlarmRow{.id = ++id,
                                     .station = station,
                                     .text = u"x"_s,
                                     .first = first * minute,
                                     .count = 2,
                                     .acknowledged = acknowledged * minute,
                                     .over = over * minute});
            }
            id = 0;
            for (const QString &name : {u"b"_s, u"a"_s, u"b"_s, u"a"_s, u"a"_s, QString()}) {
                ++id;
                EventRow done = said(id, u"x"_s, 1 + id % 2);
                done.operatorName = name;
                done.kind = id > 3 ? EventKind::Sent : EventKind::Notification;
                writer->add(done);
            }
        }
        RecordReader reader(m_path);
        AlarmFigures figures;
        QVERIFY(reader.alarmFigures(100 * minute, 200 * minute, 100 * minute + 2 * day, figures));
        QCOMPARE(figures.came, 5);
        QCOMPARE(figures.tenMinutes,
                 (QList<AlarmFigures::Span>{{100 * minute, 2}, {110 * minute, 2}, {120 * minute, 1}}));
        QCOMPARE(figures.frequent, (QList<AlarmFigures::Frequent>{{1, u"x"_s, 3, 6}, {2, u"x"_s, 2, 4}}));
        QCOMPARE(figures.acknowledged, 4);
        QCOMPARE(figures.medianMs, 3 * minute);
        QCOMPARE(figures.ninetyMs, 30 * minute);
        QCOMPARE(figures.longestMs, 30 * minute);
        QCOMPARE(figures.standing, 2);
        qint64 change = 0;
        QVERIFY(reader.lastOperatorChange(change));
        QCOMPARE(change, 4000);
        QVERIFY(reader.begin(change));
        QCOMPARE(change, 1000);
        QStringList names;
        QVERIFY(reader.operators(names));
        QCOMPARE(names, (QStringList{u"a"_s, u"b"_s}));
        QHash<qint64, qint64> heard;
        QVERIFY(reader.lastHeard({1, 2, 3}, heard));
        QCOMPARE(heard, (QHash<qint64, qint64>{{1, 2000}, {2, 3000}}));
    }

private:
    std::unique_ptr<RecordWriter> opened()
    {
        const OpenedRecord record = openRecord(m_path);
        return std::make_unique<RecordWriter>(m_path, record, m_timers,
                                              [this](const QString &reason) { m_troubles += reason; });
    }

    test::PrivatePostgres m_server;
    int m_databases = 0;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    test::ManualTimers m_timers;
    QStringList m_troubles;
};

QTEST_GUILESS_MAIN(RecordTest)
#include "record_test.moc"
