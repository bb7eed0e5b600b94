#include "opmode/keeping/list_replay.h"
#include "opmode/timemap/time_map.h"
#include "record/record_address.h"
#include "record/record_care.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"
#include "support/private_postgres.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60'000;
constexpr qint64 hour = 60 * minute;

} // namespace

/// Alarms and silence by days and hours, of records in a file and on a server.
class TimeMapTest : public QObject
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
        useZone("UTC");
        m_lastEvent = 0;
        QFETCH_GLOBAL(bool, isOnServer);
        if (isOnServer) {
            m_path = m_server.makeDatabase(u"map%1"_s.arg(++m_databases));
            QVERIFY(initRecord(m_path));
            return;
        }
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"record.db"_s);
    }

    void aDayHasTheHoursOfItsClock()
    {
        useZone("Europe/Berlin");
        const HourGrid spring(QDate(2026, 3, 28), 3);
        QCOMPARE(spring.count(), 24 + 23 + 24);
        QCOMPARE(spring.placeOf(1, 2), -1);
        QCOMPARE(spring.hour(spring.placeOf(1, 3)).from, spring.hour(spring.placeOf(1, 1)).to);
        const HourGrid autumn(QDate(2026, 10, 25), 2);
        QCOMPARE(autumn.count(), 25 + 24);
        const int first = autumn.placeOf(0, 2);
        QVERIFY(autumn.isTwice(first) && autumn.isTwice(first + 1) && !autumn.isTwice(first + 2));
        QCOMPARE(autumn.hour(first + 1).part, 1);
        QCOMPARE(autumn.placeOf(autumn.hour(first + 1).from), first + 1);
        QCOMPARE(autumn.hour(autumn.placeOf(0, 3)).hour, 3);
        useZone("Australia/Lord_Howe"); // whose clocks are set by half an hour
        const HourGrid half(QDate(2026, 4, 5), 1);
        QCOMPARE(half.to() - half.from(), 24 * hour + hour / 2);
        const int again = half.placeOf(0, 1) + 1;
        QCOMPARE(half.hour(again).part, 1);
        QCOMPARE(half.hour(again).to - half.hour(again).from, hour / 2);
        for (int place = 1; place < half.count(); ++place) {
            QCOMPARE(half.hour(place).from, half.hour(place - 1).to);
        }
    }

    void alarmsStandInTheHourInWhichTheyCame()
    {
        useZone("Asia/Kolkata"); // no hour begins when one of UTC does
        const HourGrid grid(QDate(2026, 3, 1), 2);
        const qint64 from = grid.from();
        write({alarm(1, 1, 3, from - 1), alarm(2, 1, 3, from), alarm(3, 1, 1, from + hour - 1),
               alarm(4, 2, 2, from + 25 * hour), alarm(5, 0, 2, from + 25 * hour),
               alarm(6, 1, 1, grid.to())});
        TimeMapAnswer all = map(TimeMapTopic::Alarms, grid, {}, grid.to());
        QCOMPARE(all.hours[0], (HourFigures{2, 1}));
        QCOMPARE(all.hours[25], (HourFigures{2, 2}));
        QCOMPARE(sumOf(all).alarms, 4);
        QCOMPARE(sumOf(map(TimeMapTopic::Alarms, grid, {2}, grid.to())).alarms, 1);
        const QList<StationFigures> stations =
            list({TimeMapTopic::Alarms, {}, grid.from(), grid.to()}).stations;
        QCOMPARE(stations,
                 (QList<StationFigures>{{1, u"Pump 1"_s, 2, 1}, {0, {}, 1, 2}, {2, u"Pump 2"_s, 1, 2}}));
    }

    void silenceLastsUntilAStationIsHeardOrNobodyListens()
    {
        const HourGrid grid(QDate(2026, 3, 1), 2);
        const qint64 from = grid.from();
        const auto at = [from](qint64 minutes) { return from + minutes * minute; };
        using enum EventKind;
        write({event(Started, 0, from - 9 * hour), event(Silent, 1, at(-120)),
               event(Notification, 2, at(-50)), event(Silent, 2, at(-40)), event(Notification, 3, at(-30)),
               event(Alive, 1, at(30)), event(Silent, 1, at(40)), event(Alive, 1, at(45)),
               event(Silent, 3, at(90)), event(Alive, 3, at(200)), online(4, false, at(300)),
               online(4, true, at(420)), event(StationRemoved, 2, at(60)), event(Silent, 3, at(500)),
               event(Stopped, 0, at(530)), event(Started, 0, at(600))});
        const TimeMapAnswer all = map(TimeMapTopic::Silence, grid, {}, at(720));
        const auto inHour = [&all](int of) { return all.hours[static_cast<std::size_t>(of)]; };
        QCOMPARE(inHour(0), (HourFigures{0, 0, 2, 95 * minute, 0})); // one of them twice
        QCOMPARE(inHour(1), (HourFigures{0, 0, 1, 30 * minute, 0}));
        QCOMPARE(inHour(2), (HourFigures{0, 0, 1, 60 * minute, 0}));
        QCOMPARE(inHour(3), (HourFigures{0, 0, 1, 20 * minute, 0}));
        QCOMPARE(inHour(5), (HourFigures{0, 0, 1, 60 * minute, 0}));
        QCOMPARE(inHour(6), (HourFigures{0, 0, 1, 60 * minute, 0}));
        if (isServerAddress(m_path)) { // another keeper may go on
            QCOMPARE(inHour(9), (HourFigures{0, 0, 1, 60 * minute, 0}));
            QCOMPARE(inHour(11).stations, 1);
        } else {
            QCOMPARE(inHour(8), (HourFigures{0, 0, 1, 30 * minute, 10 * minute}));
            QCOMPARE(inHour(9), (HourFigures{0, 0, 0, 0, 60 * minute}));
            QCOMPARE(inHour(11), HourFigures());
        }
        QCOMPARE(inHour(12), HourFigures()); // is still to come
        QCOMPARE(sumOf(map(TimeMapTopic::Silence, grid, {3, 4}, at(400))).unheardMs, (110 + 100) * minute);

        const StationsAnswer since = list({TimeMapTopic::Silence, {1, 2, 3, 4}, from, at(50)});
        QCOMPARE(since.stations, (QList<StationFigures>{{2, u"Pump 2"_s, 0, 0, 50 * minute, false, at(-40)},
                                                        {1, u"Pump 1"_s, 0, 0, 35 * minute}}));
        const StationsAnswer later = list({TimeMapTopic::Silence, {3}, at(90), at(150), true, at(510)});
        QCOMPARE(later.stations, // it was heard meanwhile
                 (QList<StationFigures>{{3, u"Pump 3"_s, 0, 0, 60 * minute, false, at(500)}}));
        const StationsAnswer offline = list({TimeMapTopic::Silence, {}, at(310), at(320)});
        QCOMPARE(offline.stations,
                 (QList<StationFigures>{{4, u"Pump 4"_s, 0, 0, 10 * minute, true, at(300), true}}));
    }

    void whatWasBeforeTheRecordIsNotKnown()
    {
        const HourGrid grid(QDate(2026, 3, 1), 1);
        QCOMPARE(map(TimeMapTopic::Silence, grid, {}, grid.to()).begin, 0);
        write({event(EventKind::Started, 0, grid.from() + 90 * minute)});
        const TimeMapAnswer all = map(TimeMapTopic::Silence, grid, {}, grid.to());
        QCOMPARE(all.hours[0].unknownMs, hour);
        QCOMPARE(all.hours[1].unknownMs, hour / 2);
        QCOMPARE(sumOf(all).unknownMs, hour * 3 / 2);
    }

    void hoursWithoutAWatchAreNotKnownOfAlarmsEither()
    {
        const HourGrid grid(QDate(2026, 3, 1), 1);
        const qint64 from = grid.from();
        using enum EventKind;
        write({event(Started, 0, from - 9 * hour), event(Stopped, 0, from - hour),
               event(Started, 0, from + 90 * minute), event(Silent, 1, from + 2 * hour),
               event(Stopped, 0, from + 4 * hour), alarm(1, 1, 2, from + 100 * minute)});
        const TimeMapAnswer all = map(TimeMapTopic::Alarms, grid, {}, from + 6 * hour);
        const auto inHour = [&all](int of) { return all.hours[static_cast<std::size_t>(of)]; };
        const bool isKnown = isServerAddress(m_path); // another keeper may listen
        QCOMPARE(inHour(0), (HourFigures{0, 0, 0, 0, isKnown ? 0 : hour}));
        QCOMPARE(inHour(1), (HourFigures{1, 2, 0, 0, isKnown ? 0 : hour / 2}));
        QCOMPARE(inHour(3), HourFigures());
        QCOMPARE(inHour(5).unknownMs, isKnown ? 0 : hour);
        QCOMPARE(inHour(6), HourFigures()); // is still to come
        QCOMPARE(
            map(TimeMapTopic::Alarms, HourGrid(QDate(2026, 2, 28), 1), {1}, grid.to()).hours[3].unknownMs,
            hour); // before the record
    }

    void oneOfManyIsSeenAndHalfOfThemStandOut()
    {
        const auto silence = [](double part) {
            return stepOf(TimeMapTopic::Silence, {0, 0, 1, qint64(part * 1000 * double(hour))}, hour, 1000);
        };
        QCOMPARE(silence(0), 0);
        QCOMPARE(silence(0.00001), 1);
        QCOMPARE(silence(0.05), 2);
        QCOMPARE(silence(0.3), 3);
        QCOMPARE(silence(1), 4);
        QCOMPARE(stepOf(TimeMapTopic::Alarms, {1, 3}, hour, 1), 1);
        QCOMPARE(stepOf(TimeMapTopic::Alarms, {2000, 3}, hour, 1), 4);
    }

private:
    static void useZone(const char *zone)
    {
        qputenv("TZ", zone);
        tzset();
    }

    EventRow event(EventKind kind, qint64 station, qint64 at)
    {
        return {.id = ++m_lastEvent, .at = at, .station = station, .kind = kind};
    }
    EventRow online(qint64 station, bool isOnline, qint64 at)
    {
        EventRow row = event(EventKind::Attributes, station, at);
        StationAttributes attributes;
        attributes.online = isOnline;
        row.detail = toJson(attributes);
        return row;
    }
    static AlarmRow alarm(qint64 id, qint64 station, int priority, qint64 first)
    {
        return {.id = id,
                .station = station,
                .text = u"fail"_s,
                .priority = priority,
                .first = first,
                .last = first,
                .count = 1};
    }

    /// And then each question gives the same before what was written is in order, and afterwards.
    void write(const QList<RecordRow> &rows)
    {
        const OpenedRecord record = openRecord(m_path);
        m_writer = std::make_unique<RecordWriter>(m_path, record, m_timers, [](const QString &) {});
        for (int station = 1; station <= 4; ++station) {
            m_writer->add(StationRow{station, u"Pump %1"_s.arg(station), true, u"{}"_s});
        }
        for (const RecordRow &row : rows) {
            m_writer->add(row);
        }
        QVERIFY(m_writer->flushNow());
    }

    TimeMapAnswer map(TimeMapTopic topic, const HourGrid &grid, const QList<qint64> &stations, qint64 now)
    {
        const auto ask = [&] {
            RecordReader reader(m_path);
            return readTimeMap(reader, {topic, grid, stations, now, !isServerAddress(m_path)});
        };
        TimeMapAnswer answer = ask();
        settle();
        const TimeMapAnswer later = ask();
        return answer.status && later.status && later.hours == answer.hours ? answer : TimeMapAnswer();
    }

    StationsAnswer list(StationsQuestion question)
    {
        question.hasOneKeeper = !isServerAddress(m_path);
        RecordReader reader(m_path);
        return readStationsOf(reader, question);
    }

    void settle()
    {
        if (m_writer) {
            QTRY_VERIFY((m_timers.advance(RecordWriter::restDelay), m_writer->isAtRest()));
            m_writer.reset();
        }
    }

    static HourFigures sumOf(const TimeMapAnswer &answer)
    {
        HourFigures sum;
        for (const HourFigures &each : answer.hours) {
            sum.alarms += each.alarms;
            sum.unheardMs += each.unheardMs;
            sum.unknownMs += each.unknownMs;
        }
        return sum;
    }

    test::PrivatePostgres m_server;
    int m_databases = 0;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    qint64 m_lastEvent = 0;
    test::ManualTimers m_timers;
    std::unique_ptr<RecordWriter> m_writer;
};

QTEST_GUILESS_MAIN(TimeMapTest)
#include "time_map_test.moc"
