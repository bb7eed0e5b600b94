#include "record/later_check.h"
#include "record/record_care.h"
#include "record/record_queries.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"
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

/// What is so of a record in a file alone.
class RecordFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_troubles.clear();
        // In memory where that can be: thousands of commits are waited for.
        const QString inMemory = u"/dev/shm"_s;
        const QString place = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
        m_folder = std::make_unique<QTemporaryDir>(place + u"/record_test-"_s);
        m_path = m_folder->filePath(u"a record.db"_s);
    }

    void whatIsRefusedWaitsWithinBoundsAndIsWrittenLater()
    {
        QVERIFY(QDir().mkdir(m_path));
        RecordWriter writer(
            m_path, {}, m_timers, [this](const QString &reason) { m_troubles += reason; }, 50'000);
        for (int i = 1; i <= 1000; ++i) {
            writer.add(said(writer.nextEventId(), u"x"_s));
            if (i % 100 == 0) {
                writer.add(AlarmRow{.id = writer.nextAlarmId(), .first = i});
                QVERIFY(!writer.flushNow());
            }
        }
        QCOMPARE(m_troubles, QStringList{m_path + u": is a folder"_s});
        QVERIFY(QDir().rmdir(m_path) && openRecord(m_path).status);
        RecordReader reader(m_path);
        const qint64 version = reader.dataVersion();
        QVERIFY(writer.flushNow());
        QVERIFY(!writer.isFailing() && m_troubles.constLast().isEmpty());
        QCOMPARE(writer.onDiskCount(), writer.addedCount());
        QCOMPARE(reader.findAlarms({}, {}, 99).rows.size(), 10);
        const QList<EventRow> left = reader.findEvents({}, {}, 2000).rows; // the newest
        QCOMPARE(quint64(left.size()) + writer.leftOutCount(), 1000);
        QVERIFY(left.size() > 50 && left.size() < 900);
        QCOMPARE(left.first().id - left.last().id, left.size() - 1);
        QCOMPARE(left.first().id, 1000);
        QVERIFY(reader.dataVersion() != version);
    }

    void whatCannotBeARecordIsRefusedByName()
    {
        QVERIFY(opened()->flushNow());
        const auto damage = [this](const QStringList &statements) {
            RecordDatabase database;
            QVERIFY(database.open(m_path, RecordDatabase::Use::Create));
            QVERIFY(database.execute(statements));
        };
        damage({u"UPDATE setting SET value = '99' WHERE name = 'schema'"_s});
        const QByteArray newer = test::contentOf(m_path);
        QVERIFY(openRecord(m_path).status.message().startsWith(m_path + u": was written by a newer"_s));
        QCOMPARE(test::contentOf(m_path), newer);
        QCOMPARE(checkRecord(m_path).schema, 99);
        m_path = m_folder->filePath(u"other.db"_s);
        damage({u"CREATE TABLE x(y)"_s});
        QVERIFY(openRecord(m_path).status.message().contains(u"another program"_s));
        QVERIFY(openRecord(m_folder->path()).status.message().startsWith(m_folder->path()));
    }

    /// As versions before made them, from the first tables on.
    void olderTablesAreBroughtForward()
    {
        const QList<QStringList> undoings{
            // the last step first
            {u"DROP TABLE transmission_step"_s, u"DROP TABLE transmission"_s},
            {u"DROP INDEX notification_listed"_s, u"DROP TABLE event_kind"_s,
             u"DELETE FROM setting WHERE name = 'sorted'"_s},
            {u"DROP INDEX request_new"_s, u"DROP TABLE request"_s, u"DROP INDEX alarm_changed"_s,
             u"ALTER TABLE alarm DROP COLUMN changed"_s}};
        const int newest = static_cast<int>(undoings.size()) + 1;
        for (int version = newest - 1; version > 0; --version) {
            init();
            const AlarmRow alarm{.id = 1, .station = 1, .text = u"Pump fail"_s, .first = 1, .last = 1};
            {
                auto writer = opened();
                writer->add(said(1, u"Pump fail"_s));
                writer->add(alarm);
                QVERIFY(writer->flushNow());
            }
            {
                RecordDatabase hand;
                QVERIFY(hand.open(m_path, RecordDatabase::Use::Write));
                for (int step = newest; step > version; --step) {
                    QVERIFY(hand.execute(undoings.at(newest - step)));
                }
                QVERIFY(
                    hand.execute(u"UPDATE setting SET value = '%1' WHERE name = 'schema'"_s.arg(version)));
            }
            QVERIFY(RecordReader(m_path).open().message().contains(u"another version"_s)); // it makes nothing
            QCOMPARE(checkRecord(m_path).schema, version);
            const OpenedRecord record = openRecord(m_path);
            QVERIFY2(record.status && record.lost.isEmpty(), qPrintable(record.status.message()));
            const RecordCheck found = checkRecord(m_path);
            QVERIFY2(found.faults.isEmpty(), qPrintable(found.faults.join(u'\n')));
            QCOMPARE(found.schema, newest);
            RecordReader reader(m_path);
            QCOMPARE(reader.findEvents({}, {}, 9).rows.value(0).text, u"Pump fail"_s);
            QCOMPARE(reader.findAlarms({}, {}, 9).rows, QList<AlarmRow>{alarm});
        }
    }

    void aLookThroughARecordFindsDamage()
    {
        {
            auto writer = opened();
            for (int i = 1; i <= 300; ++i) {
                writer->add(said(i, u"a text of some length, number %1"_s.arg(i)));
                writer->add(HistoryRow{i % 3 + 1, i % 18 + 1, i, u"1"_s, u"2"_s});
            }
        }
        const QString copy = m_folder->filePath(u"copy.db"_s);
        QVERIFY(backUpRecord(m_path, copy)); // no page of it is free
        const QByteArray sound = test::contentOf(copy);
        const auto isSound = [&](const QByteArray &content) {
            const RecordCheck found = checkRecord(test::writeFile(copy, content) ? copy : QString());
            return found.status && found.faults.isEmpty();
        };
        QVERIFY(isSound(sound));
        constexpr qsizetype page = 4096;
        for (qsizetype at = page; at < sound.size(); at += page) {
            QByteArray flipped = sound;
            flipped[at] = static_cast<char>(~flipped[at]);
            QVERIFY2(!isSound(flipped), QByteArray::number(at));
        }
        for (const qsizetype size : {qsizetype{100}, sound.size() / 2, sound.size() - page}) {
            QVERIFY(!isSound(sound.first(size)));
        }
        QVERIFY(isSound(sound));
        for (const QStringList &statements : // a row that came while the index was not known
             {QStringList{u"CREATE TABLE hidden AS SELECT * FROM sqlite_master WHERE name = 'event_at'"_s,
                          u"DELETE FROM sqlite_master WHERE name = 'event_at'"_s},
              QStringList{u"INSERT INTO event(id, at, kind, text) VALUES(1000, 5, 1, '')"_s},
              QStringList{u"INSERT INTO sqlite_master SELECT * FROM hidden"_s}}) {
            RecordDatabase hand;
            QVERIFY(hand.open(copy, RecordDatabase::Use::Write));
            QVERIFY(hand.execute(QStringList{u"PRAGMA writable_schema=ON"_s} + statements));
        }
        QVERIFY(!checkRecord(copy).faults.isEmpty());
    }

    /// Whatever of it a start reads; the rest is found when it is used.
    void aRecordThatWasDamagedAfterItsEndIsMendedAtTheStart()
    {
        {
            auto writer = opened();
            for (int i = 1; i <= 300; ++i) {
                writer->add(NotificationRow{.station = 1, .entry = u"+49 --> M,Pump %1 fail"_s.arg(i)});
                writer->add(AlarmRow{.id = i, .station = 1, .text = u"Pump %1 fail"_s.arg(i), .first = i});
            }
        }
        const QByteArray sound = test::contentOf(m_path);
        constexpr qsizetype page = 4096;
        int mended = 0;
        for (qsizetype at = page; at < sound.size(); at += page) {
            init();
            QByteArray damaged = sound;
            QVERIFY(test::writeFile(m_path, damaged.replace(at, page, QByteArray(page, '\xA5'))));
            const OpenedRecord record = openRecord(m_path);
            mended += record.keptAside.isEmpty() ? 0 : 1;
            RecordReader reader(m_path);
            Status read = reader.notifications([](const NotificationRow &) {});
            read = read ? reader.openAlarms([](const AlarmRow &) {}) : read;
            QVERIFY2(record.status && read, QByteArray::number(at));
        }
        QVERIFY(mended > 0);
    }

    /// Pages of tables and indices, and the file's head.
    void aDamagedRecordIsKeptAsideAndWhatCanBeReadIsSaved()
    {
        constexpr int count = 3000;
        {
            auto writer = opened();
            for (int i = 1; i <= count; ++i) {
                writer->add(said(i, u"a text of some length, number %1"_s.arg(i)));
                writer->add(HistoryRow{i % 3 + 1, i % 18 + 1, i, u"1"_s, u"2"_s});
            }
        }
        const QByteArray sound =
            test::contentOf(m_path).replace(QByteArrayLiteral("open0"), QByteArrayLiteral("open1"));
        constexpr qsizetype page = 4096;
        for (qsizetype at = 0; at < sound.size(); at += 11 * page) {
            init();
            QByteArray damaged = sound;
            damaged.replace(at, page, QByteArray(page, at % (2 * page) == 0 ? '\xA5' : '\0'));
            QVERIFY(test::writeFile(m_path, damaged));
            OpenedRecord record = openRecord(m_path, 0); // as a large one, which is not waited for
            QByteArray where = QByteArray::number(at) + ' ' + record.status.message().toUtf8();
            QCOMPARE(record.isUnchecked, record.keptAside.isEmpty());
            if (record.isUnchecked) {
                std::optional<Status> told;
                const LaterCheck check(m_path, [&told](const Status &found) { told = found; });
                QTRY_VERIFY2(told && !*told, where);
                record = openRecord(m_path);
                where += record.status.message().toUtf8();
            }
            QVERIFY2(record.status, where);
            RecordReader reader(m_path);
            qint64 events = 0;
            qint64 history = 0;
            QVERIFY2(reader.count(u"event"_s, events) && reader.count(u"history"_s, history), where);
            QVERIFY2(QFile::exists(record.keptAside) && checkRecord(m_path).faults.isEmpty(), where);
            constexpr qint64 rowsOfAPage = 300;
            QVERIFY2(at == 0 || events + history > 2 * count - rowsOfAPage, where);
            QCOMPARE(record.lost.isEmpty(), events + history == 2 * count);
        }
        init();
        QVERIFY(test::writeFile(m_path, sound.first(sound.size() / 2)));
        const OpenedRecord half = openRecord(m_path);
        QVERIFY(half.status && !half.lost.isEmpty());
        QVERIFY2(half.saved > count / 3, QByteArray::number(half.saved));
    }

private:
    std::unique_ptr<RecordWriter> opened()
    {
        const OpenedRecord record = openRecord(m_path);
        return std::make_unique<RecordWriter>(m_path, record, m_timers,
                                              [this](const QString &reason) { m_troubles += reason; });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    test::ManualTimers m_timers;
    QStringList m_troubles;
};

QTEST_GUILESS_MAIN(RecordFileTest)
#include "record_file_test.moc"
