#include "record/record_address.h"
#include "record/record_care.h"
#include "record/record_database.h"
#include "record/record_reader.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"
#include "support/private_postgres.h"

#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

const QString database = u"record"_s;

EventRow said(const QString &text)
{
    return {.at = 1, .station = 1, .kind = EventKind::Notification, .text = text};
}

} // namespace

/// What is so of a record in a server's database alone: others use it, and it may go and come.
class RecordServerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString trouble = m_server.start();
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
    }

    void init()
    {
        m_server.sql(u"postgres"_s, u"DROP DATABASE IF EXISTS record WITH (FORCE)"_s);
        m_address = m_server.makeDatabase(database);
        QVERIFY(initRecord(m_address));
    }

    void whatCannotBeUsedIsRefusedByName()
    {
        QVERIFY(initRecord(m_address)); // again does no harm
        const QString empty = m_server.makeDatabase(u"empty"_s);
        for (const QString &why :
             {openRecord(empty).status.message(), RecordReader(empty).open().message()}) {
            QVERIFY2(why.contains(u"ktrcli record init"_s) || why.contains(u"another version"_s),
                     qPrintable(why));
        }
        m_server.sql(database, u"DROP TABLE ktrconfig.transmission, ktrconfig.transmission_step;"
                               " UPDATE ktrconfig.setting SET value = '3' WHERE name = 'schema'"_s);
        QVERIFY(RecordReader(m_address).open().message().contains(u"ktrcli record init"_s));
        QVERIFY(initRecord(m_address) && RecordReader(m_address).open());
        m_server.sql(database, u"UPDATE ktrconfig.setting SET value = '99' WHERE name = 'schema'"_s);
        QVERIFY(openRecord(m_address).status.message().contains(u"newer version"_s));
        QVERIFY(!RecordReader(m_address).open());
        QVERIFY(openRecord(m_server.addressOf(u"nowhere"_s)).status.message().contains(u"nowhere"_s));
        for (const QString &secret :
             {u"postgresql://a:s3cret@h/d"_s, u"postgres://h/d?user=a&password=s3cret"_s}) {
            const QString why = openRecord(secret).status.message();
            QVERIFY2(why.contains(u"password file"_s) && !why.contains(u"s3cret"_s), qPrintable(why));
        }
        QVERIFY(!openRecord(u"postgresql://h/d?a;b=c"_s).status);
        QCOMPARE(serverAddress(u"postgresql://o%27x@h:5/d%20e?sslmode=verify-full"_s)
                     .connection.section(u"KTRconfig' "_s, 1),
                 u"host='h' port='5' user='o\\'x' dbname='d e' sslmode='verify-full'"_s);
    }

    /// Followers ask for what has a higher number than the last they have seen.
    void numbersAreInTheOrderOfTheCommits()
    {
        auto one = opened();
        auto other = opened();
        RecordReader reader(m_address);
        constexpr int each = 300;
        QSet<QString> seen;
        qint64 last = 0;
        for (int i = 0; i < each; ++i) {
            one->add(said(u"one %1"_s.arg(i)));
            other->add(AlarmRow{.id = other->nextAlarmId(), .station = 1, .first = 1});
            other->add(said(u"other %1"_s.arg(i)));
            one->flush();
            other->flush();
            QVERIFY(reader.eventsAfter(last, [&](const EventRow &event) {
                last = event.id;
                seen += event.text;
                return true;
            }));
            QCoreApplication::processEvents();
        }
        QVERIFY(one->flushNow() && other->flushNow());
        QVERIFY(reader.eventsAfter(last, [&](const EventRow &event) {
            seen += event.text;
            return true;
        }));
        QCOMPARE(seen.size(), 2 * each);
        QCOMPARE(reader.findAlarms({}, {}, 2 * each).rows.size(), each);
    }

    /// The server commits, and the connection is lost before it can say so.
    void whatTheServerMayHaveIsNotWrittenTwice()
    {
        auto writer = opened();
        const auto wait = [this](const QString &standby) {
            m_server.sql(u"postgres"_s, u"ALTER SYSTEM SET synchronous_standby_names = '%1'"_s.arg(standby));
            m_server.sql(u"postgres"_s, u"SELECT pg_reload_conf()"_s);
        };
        wait(u"nobody"_s);
        writer->add(said(u"first"_s));
        writer->flush();
        QTRY_COMPARE(m_server.sql(u"postgres"_s, u"SET synchronous_commit = local; SELECT count(*) FROM"
                                                 " pg_stat_activity WHERE wait_event = 'SyncRep'"_s),
                     u"1"_s);
        writer->add(said(u"second"_s));
        m_server.endConnections();
        wait({});
        QTRY_VERIFY(
            (m_timers.advance(RecordWriter::retryDelay), writer->onDiskCount() == writer->addedCount()));
        QCOMPARE(texts(), QStringList({u"first"_s, u"second"_s}));
        QCOMPARE(m_troubles.size(), 2); // and over again
    }

    /// It does not, and the connection is lost all the same.
    void whatTheServerHasNotIsWrittenAgain()
    {
        m_server.sql(database, u"CREATE FUNCTION ktrconfig.die() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
                               " PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NULL; END $$; CREATE"
                               " CONSTRAINT TRIGGER die AFTER INSERT ON ktrconfig.event DEFERRABLE INITIALLY"
                               " DEFERRED FOR EACH ROW EXECUTE FUNCTION ktrconfig.die()"_s);
        auto writer = opened();
        writer->add(said(u"first"_s));
        writer->flush();
        QTRY_VERIFY(writer->isFailing());
        writer->add(said(u"second"_s));
        m_server.sql(database, u"DROP TRIGGER die ON ktrconfig.event"_s);
        QTRY_VERIFY(
            (m_timers.advance(RecordWriter::retryDelay), writer->onDiskCount() == writer->addedCount()));
        QCOMPARE(texts(), QStringList({u"first"_s, u"second"_s}));
    }

    void whatComesWhileTheServerIsGoneIsWrittenLater()
    {
        auto writer = opened();
        RecordReader reader(m_address);
        QStringList expected;
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 20; ++j) {
                expected += QString::number(expected.size());
                writer->add(said(expected.constLast()));
                writer->flush();
                QCoreApplication::processEvents();
            }
            if (i == 1) {
                m_server.kill();
                QVERIFY(!writer->flushNow());
                QVERIFY(writer->isFailing() && !reader.stations([](const StationRow &) {}));
                QCOMPARE(m_server.startAgain(), QString());
            } else {
                m_server.endConnections();
            }
        }
        QTRY_VERIFY(
            (m_timers.advance(RecordWriter::retryDelay), writer->onDiskCount() == writer->addedCount()));
        QCOMPARE(texts(), expected);
        QVERIFY(reader.stations([](const StationRow &) {})); // by a new connection
    }

    /// A program that was stopped in the middle of a commit holds what all others need.
    void whoStandsStillHoldsUpNobodyForLong()
    {
        RecordDatabase stopped;
        QVERIFY(stopped.open(m_address, RecordDatabase::Use::Write));
        QVERIFY(stopped.begin() && stopped.beginNumbers());
        auto writer = opened();
        writer->add(said(u"first"_s));
        writer->flush();
        QTRY_COMPARE_WITH_TIMEOUT(texts(), QStringList{u"first"_s}, 60'000);
        QVERIFY(!stopped.commit() && stopped.isLost());
    }

    /// Nor does who just reads, or has no right but to log in.
    void whoReadsHoldsUpNobody()
    {
        RecordReader reader(m_address);
        qint64 rows = 0;
        QVERIFY(reader.beginSnapshot() && reader.count(u"value"_s, rows));
        RecordDatabase stranger;
        QVERIFY(stranger.open(m_address, RecordDatabase::Use::Read) &&
                stranger.execute(u"SELECT pg_advisory_lock(4936786)"_s));
        auto writer = opened();
        QVERIFY(
            writer->commit({said(u"first"_s), ValueRow{1, 1, QDateTime::currentMSecsSinceEpoch(), u"22"_s}}));
        QCOMPARE(texts(), QStringList{u"first"_s});
        QVERIFY(reader.count(u"value"_s, rows));
    }

    /// Tried as anybody may who has a client of the database.
    void eachRoleMayDoItsPart()
    {
        for (const QString &role : {u"viewer"_s, u"operator"_s, u"administrator"_s, u"keeper"_s}) {
            m_server.sql(database, u"DROP ROLE IF EXISTS a_%1"_s.arg(role));
            m_server.sql(database, u"CREATE ROLE a_%1 LOGIN IN ROLE ktrconfig_%1"_s.arg(role));
        }
        const auto may = [this](const QString &role, const QString &statement) {
            const QString said = m_server.sql(
                database,
                u"SET SESSION AUTHORIZATION a_%1; SET search_path = ktrconfig; "_s.arg(role) + statement);
            return !said.contains(u"permission denied"_s) && !said.contains(u"must be owner"_s);
        };
        const QString ask =
            u"INSERT INTO request(at, operator, what, detail) VALUES(1, 'Anna', 'acknowledge', '{}')"_s;
        for (const QString &role : {u"viewer"_s, u"operator"_s, u"administrator"_s}) {
            QVERIFY(may(role,
                        u"SELECT * FROM alarm_story, event_story, history_hourly, setting, keeper, duty"_s));
            QCOMPARE(may(role, ask), role != u"viewer"_s);
            for (const QString &never :
                 {u"DELETE FROM event"_s, u"UPDATE alarm SET over = 1"_s, u"UPDATE request SET taken = 1"_s,
                  u"INSERT INTO event(at, kind, text) VALUES(1, 1, '')"_s, u"UPDATE station SET keeper = 1"_s,
                  u"UPDATE duty SET keeper = 1"_s, u"SELECT drop_months('history', 1)"_s,
                  u"DROP TABLE event"_s, u"CREATE TABLE mine(x int)"_s,
                  u"INSERT INTO request(at, what, detail, login) VALUES(1, '', '', 'somebody')"_s}) {
                QVERIFY2(!may(role, never) || never.startsWith(u"DROP"_s),
                         qPrintable(role + u": "_s + never));
            }
        }
        QCOMPARE(
            m_server.sql(database, u"SELECT string_agg(login, ',' ORDER BY id) FROM ktrconfig.request"_s),
            u"a_operator,a_administrator"_s);
        int asked = 0; // by the server's clock, not by that of who asked
        QVERIFY(RecordReader(m_address).openRequests(0, [&](const RequestRow &row) {
            asked += row.at == 1 && row.age.value_or(-1) < 60'000 ? 1 : 0;
        }));
        QCOMPARE(asked, 2);
        // A keeper needs no more than its role.
        const QString address = QString(m_address).replace(u"administrator@"_s, u"a_keeper@"_s);
        m_address = address;
        auto writer = opened();
        writer->add(said(u"first"_s));
        writer->add(HistoryRow{1, 1, 1'700'000'000'000, u"1"_s, u"2"_s});
        writer->add(AlarmRow{.id = writer->nextAlarmId(), .station = 1, .first = 1});
        QVERIFY2(writer->flushNow(), qPrintable(m_troubles.join(u' ')));
        writer->thinOut({.history = 1'800'000'000'000});
        QTRY_VERIFY2((m_timers.advance(RecordWriter::restDelay), writer->isAtRest()),
                     qPrintable(m_troubles.join(u' ')));
        QVERIFY(!may(u"keeper"_s, u"CREATE TABLE mine(x int)"_s));
    }

    /// By the database as by the program.
    void viewsTellWhatTheProgramTells()
    {
        auto writer = opened();
        constexpr qint64 hour = 3'600'000;
        constexpr qint64 at = 1'790'000'000'000 / hour * hour;
        writer->add(StationRow{1, u"Pump 1"_s, true, u"{}"_s});
        const QStringList values{u"+1,5"_s, u" -.5e1x"_s, u"inf 2"_s,   u"-"_s,
                                 u""_s,     u"7"_s,       u"12.25 m"_s, u".x1"_s};
        for (int i = 0; i < values.size(); ++i) {
            writer->add(HistoryRow{1, 3, at + i * hour / 4, values[i], values[values.size() - 1 - i]});
        }
        writer->add(AlarmRow{.id = writer->nextAlarmId(),
                             .station = 1,
                             .text = u"fail"_s,
                             .first = 1000,
                             .acknowledged = 61'000,
                             .over = 0});
        QVERIFY(writer->flushNow());
        QStringList expected;
        const auto number = [](double value) {
            return QString::number(value, 'g', QLocale::FloatingPointShortest);
        };
        QVERIFY(RecordReader(m_address).curve(
            1, 3, at, at + 9 * hour, HistoryLevel::Hour, [&](const HistoryPoint &point) {
                QStringList cells{QString::number(point.at / 1000), QString::number(point.count)};
                for (const auto &range : {point.first, point.second}) {
                    cells += range
                                 ? QStringList{number(range->least), number(range->mean), number(range->most)}
                                 : QStringList{{}, {}, {}};
                }
                expected += cells.join(u'|');
            }));
        QVERIFY(expected.size() == 2);
        QCOMPARE(m_server.sql(database,
                              u"SELECT extract(epoch FROM hour)::bigint, records, first_least, first_mean,"
                              " first_most, second_least, second_mean, second_most FROM"
                              " ktrconfig.history_hourly WHERE station = 'Pump 1' ORDER BY hour"_s),
                 expected.join(u'\n'));
        QCOMPARE(m_server.sql(database,
                              u"SELECT station, text, waited, over IS NULL FROM ktrconfig.alarm_story"_s),
                 u"Pump 1|fail|00:01:00|t"_s);
    }

    /// Archives go by months; a clock that was wrong by decades makes none.
    void historyStandsInMonths()
    {
        auto writer = opened();
        const auto at = [](int year, int month) {
            return QDateTime(QDate(year, month, 1), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
        };
        for (const qint64 time :
             {at(1970, 1), at(2025, 12) - 1, at(2025, 12), at(2026, 1) - 1, at(2099, 1)}) {
            for (int twice = 0; twice < 2; ++twice) {
                writer->add(HistoryRow{1, 1, time, u"1"_s, u"2"_s});
                writer->add(ValueRow{1, 1, time, u"1"_s});
            }
        }
        QVERIFY2(writer->flushNow(), qPrintable(m_troubles.join(u' ')));
        const auto rows = [this] {
            return m_server.sql(
                database,
                u"SELECT tableoid::regclass, count(*) FROM ktrconfig.history GROUP BY 1 ORDER BY min(tableoid::regclass::text)"_s);
        };
        QCOMPARE(rows(),
                 u"ktrconfig.history_2025_11|1\nktrconfig.history_2025_12|2\nktrconfig.history_other|2"_s);
        // A month that is reached by the clock takes what had been put with the others.
        m_server.sql(database, u"SELECT ktrconfig.add_month('history', %1)"_s.arg(at(2099, 1) + 5));
        QVERIFY(rows().endsWith(u"ktrconfig.history_2099_01|1\nktrconfig.history_other|1"_s));
        writer->thinOut({.history = at(2025, 12) + 1});
        QTRY_VERIFY2((m_timers.advance(RecordWriter::restDelay), writer->isAtRest()),
                     qPrintable(m_troubles.join(u' ')));
        QCOMPARE(rows(), u"ktrconfig.history_2025_12|1\nktrconfig.history_2099_01|1"_s);
        QCOMPARE(m_server.sql(database, u"SELECT to_regclass('ktrconfig.history_2025_11') IS NULL"_s),
                 u"t"_s);
    }

private:
    std::unique_ptr<RecordWriter> opened()
    {
        const OpenedRecord record = openRecord(m_address);
        return std::make_unique<RecordWriter>(m_address, record, m_timers,
                                              [this](const QString &reason) { m_troubles += reason; });
    }

    QStringList texts()
    {
        QStringList texts;
        (void)RecordReader(m_address).eventsAfter(0, [&](const EventRow &event) {
            texts += event.text;
            return true;
        });
        return texts;
    }

    test::PrivatePostgres m_server;
    QString m_address;
    test::ManualTimers m_timers;
    QStringList m_troubles;
};

QTEST_GUILESS_MAIN(RecordServerTest)
#include "record_server_test.moc"
