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

/// A record that goes wrong while it is in use.
class MendTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const QString inMemory = u"/dev/shm"_s;
        const QString place = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
        m_folder = std::make_unique<QTemporaryDir>(place + u"/mend_test-"_s);
        m_path = m_folder->filePath(u"record.db"_s);
        m_mended.clear();
    }

    /// In any page, found by who writes or by who reads.
    void aRecordThatIsDamagedIsKeptAsideAndGoesOn()
    {
        constexpr qint64 count = 3000;
        {
            auto writer = opened();
            for (int i = 1; i <= count; ++i) {
                writer->add(said(i));
                writer->add(HistoryRow{i % 3 + 1, i % 18 + 1, i, u"1"_s, u"2"_s});
            }
        }
        const QByteArray sound = test::contentOf(m_path);
        constexpr qsizetype page = 4096;
        int byWriting = 0;
        int byReading = 0;
        for (qsizetype at = page; at < sound.size(); at += 9 * page) {
            init();
            QVERIFY(test::writeFile(m_path, sound));
            const OpenedRecord before = openRecord(m_path);
            QByteArray damaged = sound;
            damaged.replace(at, page, QByteArray(page, '\xA5'));
            QVERIFY(test::writeFile(m_path, damaged));
            auto writer = writing(before);
            for (int i = 0; i < 50; ++i) {
                writer->add(said(writer->nextEventId()));
            }
            awaitDisk(*writer);
            byWriting += static_cast<int>(m_mended.size());
            RecordQueries queries(m_path);
            queries.setFoundDamage([&] { writer->mend(); });
            qint64 rows = -1;
            queries.ask(this, &allRows, [&](qint64 read) { rows = read; });
            QTRY_VERIFY(rows >= 0);
            awaitDisk(*writer);
            byReading += rows == 0 ? 1 : 0;
            writer.reset();
            const QByteArray where = QByteArray::number(at);
            const QStringList faults = checkRecord(m_path).faults;
            QVERIFY2(faults.isEmpty() || m_mended.isEmpty(), faults.join(u' ').toUtf8() + where);
            for (const OpenedRecord &mended : std::as_const(m_mended)) {
                QVERIFY2(QFile::exists(mended.keptAside), where);
            }
            RecordReader reader(m_path);
            constexpr qint64 rowsOfAPage = 300;
            QVERIFY2(m_mended.isEmpty() || allRows(reader) > 2 * count - rowsOfAPage, where);
            QCOMPARE(idsBehind(count).size(), 50);
        }
        QVERIFY(byWriting > 0 && byReading > 0);
    }

    void aRecordThatIsTakenAwayIsPutBack_data()
    {
        QTest::addColumn<bool>("isReplaced");
        QTest::addColumn<QStringList>("removed");
        QTest::newRow("removed") << false << QStringList{QString()};
        QTest::newRow("removed with its log") << false << QStringList{QString(), u"-wal"_s, u"-shm"_s};
        QTest::newRow("replaced") << true << QStringList();
    }
    void aRecordThatIsTakenAwayIsPutBack()
    {
        QFETCH(bool, isReplaced);
        QFETCH(QStringList, removed);
        const QString other = m_folder->filePath(u"other.db"_s);
        {
            RecordWriter writer(other, openRecord(other), m_timers, [](const QString &) {});
            writer.add(said(77));
        }
        auto writer = opened();
        for (int i = 0; i < 10; ++i) {
            writer->add(said(writer->nextEventId()));
        }
        QVERIFY(writer->flushNow());
        RecordReader reader(m_path);
        QCOMPARE(allRows(reader), 10);
        for (const QString &end : std::as_const(removed)) {
            QVERIFY(QFile::remove(m_path + end));
        }
        QVERIFY(!isReplaced || ::rename(qPrintable(other), qPrintable(m_path)) == 0);
        QVERIFY(reader.isStale());
        QVERIFY(!writer->commit({said(writer->nextEventId())})); // not waited for, and not kept
        writer->add(said(writer->nextEventId()));
        awaitDisk(*writer);
        QCOMPARE(m_mended.size(), 1);
        QCOMPARE(m_mended[0].keptAside.isEmpty(), !isReplaced);
        QVERIFY(!isReplaced || checkRecord(m_mended[0].keptAside).faults.isEmpty());
        writer.reset();
        QCOMPARE(idsBehind(9), QList<qint64>({10, 12}));
        QVERIFY(checkRecord(m_path).faults.isEmpty() && openRecord(m_path).keptAside.isEmpty());
    }

    void aLogWithoutItsRecordIsKeptAside()
    {
        opened()->add(said(1));
        QVERIFY(QFile::rename(m_path, m_path + u"-wal"_s));
        QVERIFY(checkRecord(m_path).status.message().contains(m_path + u"-wal"_s));
        const OpenedRecord found = openRecord(m_path);
        QVERIFY(found.status && QFile::exists(found.keptAside) && !found.lost.isEmpty());
        QVERIFY(!QFile::exists(m_path + u"-wal"_s));
    }

private:
    static EventRow said(qint64 id)
    {
        return {.id = id, .at = id, .station = 1, .text = u"a text of some length, number %1"_s.arg(id)};
    }

    /// Of two tables, through their indices; 0 when they could not be read.
    static qint64 allRows(RecordReader &reader)
    {
        qint64 rows = 0;
        EventPage page;
        do {
            page = reader.findEvents({}, page.next, 500);
            rows += page.rows.size();
        } while (page.next);
        bool isRead = static_cast<bool>(page.status);
        for (int station = 1; isRead && station <= 3; ++station) {
            for (int channel = 1; isRead && channel <= 18; ++channel) {
                isRead = static_cast<bool>(
                    reader.history(station, channel, 0, 99'999, [&](const HistoryRow &) { ++rows; }));
            }
        }
        return isRead ? rows : 0;
    }

    QList<qint64> idsBehind(qint64 id)
    {
        QList<qint64> ids;
        (void)RecordReader(m_path).eventsAfter(id, [&](const EventRow &row) {
            ids += row.id;
            return true;
        });
        return ids;
    }

    std::unique_ptr<RecordWriter> opened() { return writing(openRecord(m_path)); }

    std::unique_ptr<RecordWriter> writing(const OpenedRecord &record)
    {
        auto writer = std::make_unique<RecordWriter>(m_path, record, m_timers, [](const QString &) {});
        writer->setMended([this](const OpenedRecord &found) { m_mended += found; });
        return writer;
    }

    void awaitDisk(RecordWriter &writer)
    {
        QTRY_VERIFY((m_timers.advance(RecordWriter::retryDelay),
                     writer.onDiskCount() == writer.addedCount() && !writer.isFailing()));
        QCoreApplication::processEvents(); // what was mended is told
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    test::ManualTimers m_timers;
    QList<OpenedRecord> m_mended;
};

QTEST_GUILESS_MAIN(MendTest)
#include "mend_test.moc"
