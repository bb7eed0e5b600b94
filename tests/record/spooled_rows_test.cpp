#include "record/record_care.h"
#include "record/record_reader.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"
#include "support/private_postgres.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

const QString database = u"record"_s;

EventRow said(const QString &text, qint64 station = 1)
{
    return {.at = 1, .station = station, .kind = EventKind::Notification, .text = text};
}

} // namespace

/// What a server does not take waits in a file, and is in the record once afterwards, in its order.
class SpooledRowsTest : public QObject
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
        m_folder = std::make_unique<QTemporaryDir>();
        m_expected.clear();
        m_troubles.clear();
        m_remarks.clear();
    }
    void cleanup() { m_server.goOn(); }

    void whatComesWhileTheServerIsGoneIsInTheFileAtOnce()
    {
        auto writer = opened();
        for (int outage = 0; outage < 2; ++outage) {
            say(*writer, 20);
            if (outage == 0) {
                m_server.kill();
            } else {
                m_server.hang();
            }
            say(*writer, 20);
            QTRY_VERIFY((m_timers.advance(RecordWriter::patience), isOnDisk(*writer)));
            say(*writer, 20);
            QTRY_VERIFY(isOnDisk(*writer)); // from now on nothing is waited for
            QVERIFY(writer->isFailing() && writer->isSafe() && writer->spooled()->rows >= 20);
            QVERIFY(writer->inRecordCount() < writer->addedCount());
            if (outage == 0) {
                QCOMPARE(m_server.startAgain(), QString());
            } else {
                m_server.goOn();
            }
            say(*writer, 20);
            QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), isInRecord(*writer)));
            QVERIFY(!writer->isFailing() && !writer->isSpooling());
            QCOMPARE(texts(), m_expected);
        }
        QCOMPARE(m_remarks, QStringList());
        writer.reset();
        QCOMPARE(files(), QStringList()); // nothing is left of it
    }

    /// The end is not held up, and whoever begins next hands over.
    void whoEndsMeanwhileLosesNothing_data()
    {
        QTest::addColumn<bool>("isHung");
        QTest::newRow("gone") << false;
        QTest::newRow("hung") << true;
    }
    void whoEndsMeanwhileLosesNothing()
    {
        QFETCH(bool, isHung);
        auto writer = opened();
        say(*writer, 5);
        QVERIFY(writer->flushNow());
        if (isHung) {
            m_server.hang();
        } else {
            m_server.kill();
        }
        say(*writer, 5);
        QElapsedTimer time;
        time.start();
        writer.reset();
        QVERIFY2(time.elapsed() < 10'000, qPrintable(QString::number(time.elapsed())));
        if (isHung) {
            m_server.goOn();
        } else {
            QCOMPARE(m_server.startAgain(), QString());
        }
        writer = opened();
        QVERIFY(writer->isSpooling() && writer->spooled()->rows > 0);
        say(*writer, 5); // behind them
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), isInRecord(*writer)));
        QCOMPARE(texts(), m_expected);
    }

    /// It may have committed what is in the file, too.
    void whatTheServerMayHaveIsNotWrittenTwice_data()
    {
        QTest::addColumn<bool>("endsMeanwhile");
        QTest::newRow("by the same") << false;
        QTest::newRow("by the next") << true;
    }
    void whatTheServerMayHaveIsNotWrittenTwice()
    {
        QFETCH(bool, endsMeanwhile);
        auto writer = opened();
        const auto wait = [this](const QString &standby) {
            m_server.sql(u"postgres"_s, u"ALTER SYSTEM SET synchronous_standby_names = '%1'"_s.arg(standby));
            m_server.sql(u"postgres"_s, u"SELECT pg_reload_conf()"_s);
        };
        wait(u"nobody"_s);
        say(*writer, 3);
        QTRY_COMPARE(m_server.sql(u"postgres"_s, u"SET synchronous_commit = local; SELECT count(*) FROM"
                                                 " pg_stat_activity WHERE wait_event = 'SyncRep'"_s),
                     u"1"_s);
        QTRY_VERIFY((m_timers.advance(RecordWriter::patience), isOnDisk(*writer)));
        say(*writer, 3);
        QTRY_VERIFY(isOnDisk(*writer));
        if (endsMeanwhile) {
            writer.reset();
            m_server.endConnections();
            wait({});
            writer = opened();
        } else {
            m_server.endConnections();
            wait({});
        }
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), isInRecord(*writer)));
        QCOMPARE(texts(), m_expected);
    }

    /// What the server will not have, whenever it is asked, keeps nothing else from it.
    void aRowThatIsRefusedIsKeptAside()
    {
        m_server.sql(database, u"ALTER TABLE ktrconfig.event ADD CHECK (text <> 'bad')"_s);
        auto writer = opened();
        say(*writer, 1);
        writer->add(said(u"bad"_s));
        say(*writer, 1);
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), isInRecord(*writer)));
        say(*writer, 1);
        QVERIFY(writer->flushNow());
        QCOMPARE(texts(), m_expected);
        QCOMPARE(writer->spooled()->refused, qint64{1});
        QCOMPARE(m_remarks.size(), 1);
        QVERIFY2(m_remarks.constFirst().contains(writer->spooled()->path), qPrintable(m_remarks.join(u' ')));
        writer.reset();
        QVERIFY(!files().isEmpty());
    }

    /// Then memory has to do.
    void aFileThatCannotBeWrittenIsDoneWithout()
    {
        auto writer = opened();
        const QString path = writer->spooled()->path;
        writer.reset();
        QVERIFY(QDir().mkpath(path));
        writer = opened();
        say(*writer, 5);
        QVERIFY(writer->flushNow());
        m_server.kill();
        say(*writer, 5);
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), writer->isFailing()));
        QVERIFY(!writer->isSafe() && !writer->flushNow());
        QVERIFY2(m_remarks.join(u' ').contains(path), qPrintable(m_remarks.join(u' ')));
        QCOMPARE(m_server.startAgain(), QString());
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), isInRecord(*writer)));
        QCOMPARE(texts(), m_expected);
    }

    /// Of a station that another keeper has had since, its state is that one's to say.
    void whatAnotherKeeperHasIsNotSetBack()
    {
        auto writer = opened();
        writer->setKeeper(7);
        for (const qint64 station : {1, 2}) {
            writer->add(StationRow{station, u"Pump %1"_s.arg(station), true, u"{}"_s});
        }
        QVERIFY(writer->flushNow());
        m_server.sql(database, u"UPDATE ktrconfig.station SET keeper = 7"_s);
        m_server.hang();
        for (const qint64 station : {1, 2}) {
            writer->add(said(u"fail %1"_s.arg(station), station));
            writer->add(NotificationRow{station, u"fail"_s, 1, 1, 1});
            writer->add(AlarmRow{.id = writer->nextAlarmId(), .station = station, .text = u"fail"_s});
            writer->add(EventRow{.at = 2, .station = station, .kind = EventKind::Silent});
            writer->add(HistoryRow{station, 1, 1'790'000'000'000, u"1"_s, u"2"_s});
        }
        writer->add(said(u"taken"_s, 2));
        writer->flush();
        QTRY_VERIFY((m_timers.advance(RecordWriter::patience), isOnDisk(*writer)));
        writer.reset(); // so that nothing of it is in the server's hands
        m_server.goOn();
        m_server.sql(database, u"UPDATE ktrconfig.station SET keeper = 8 WHERE id = 2"_s);
        // It had been handed over to this one, which did not say in time that it has it.
        m_server.sql(database, u"INSERT INTO ktrconfig.event(at, station, kind, text)"
                               " VALUES(1, 2, 1, 'taken')"_s);
        writer = opened();
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay), isInRecord(*writer)));
        QCOMPARE(texts(), (QStringList{u"taken"_s, u"fail 1"_s, QString()}));
        for (const QString &table : {u"notification"_s, u"alarm"_s}) {
            QCOMPARE(
                m_server.sql(database, u"SELECT string_agg(station::text, ',') FROM ktrconfig."_s + table),
                u"1"_s);
        }
        QCOMPARE(m_server.sql(database, u"SELECT count(*) FROM ktrconfig.history"_s), u"2"_s);
        QCOMPARE(m_server.sql(database, u"SELECT what, detail::json->>'station', detail::json->>'text' FROM"
                                        " ktrconfig.request"_s),
                 u"heard|2|fail 2"_s);
    }

    /// Nor when it stood still, and the server has been there all the time.
    void whoStoodStillSetsNothingBack()
    {
        auto writer = opened();
        writer->setKeeper(7);
        writer->add(StationRow{1, u"Pump"_s, true, u"{}"_s});
        QVERIFY(writer->flushNow());
        for (const int keeper : {7, 8}) {
            m_server.sql(database, u"UPDATE ktrconfig.station SET keeper = %1"_s.arg(keeper));
            writer->add(said(u"fail %1"_s.arg(keeper)));
            writer->add(AlarmRow{.id = writer->nextAlarmId(), .station = 1, .text = u"fail"_s});
            QVERIFY(writer->flushNow());
        }
        QCOMPARE(texts(), QStringList{u"fail 7"_s});
        QCOMPARE(m_server.sql(database, u"SELECT count(*) FROM ktrconfig.alarm"_s), u"1"_s);
        QCOMPARE(m_server.sql(database, u"SELECT detail::json->>'text' FROM ktrconfig.request"_s),
                 u"fail 8"_s);
    }

private:
    std::unique_ptr<RecordWriter> opened()
    {
        const OpenedRecord record = openRecord(m_address);
        auto place = std::make_unique<SpoolPlace>();
        if (const Status taken = place->take(m_folder->path(), m_address); !taken) {
            qFatal("%s", qPrintable(taken.message()));
        }
        auto writer = std::make_unique<RecordWriter>(
            m_address, record, m_timers, [this](const QString &reason) { m_troubles += reason; },
            RecordWriter::mostWaiting, std::move(place));
        writer->setRemarked([this](const QString &what) { m_remarks += what; });
        return writer;
    }

    void say(RecordWriter &writer, int count)
    {
        for (int i = 0; i < count; ++i) {
            m_expected += QString::number(m_expected.size());
            writer.add(said(m_expected.constLast()));
            writer.flush();
            QCoreApplication::processEvents();
        }
    }
    static bool isOnDisk(const RecordWriter &writer) { return writer.onDiskCount() == writer.addedCount(); }
    static bool isInRecord(const RecordWriter &writer)
    {
        return !writer.isSpooling() && writer.inRecordCount() == writer.addedCount();
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
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    test::PrivatePostgres m_server;
    QString m_address;
    std::unique_ptr<QTemporaryDir> m_folder;
    test::ManualTimers m_timers;
    QStringList m_expected;
    QStringList m_troubles;
    QStringList m_remarks;
};

QTEST_GUILESS_MAIN(SpooledRowsTest)
#include "spooled_rows_test.moc"
