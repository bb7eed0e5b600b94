#include "record/record_queries.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"

#include <QCoreApplication>
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

class RecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"a record.db"_s);
    }

    void everyKindOfRowComesBackAsItWasWritten()
    {
        const QString odd = u"'%_\\ \" ÄÖÜ €\n\0x"_s;
        const StationRow station{7, odd, false, u"{}"_s};
        const EventRow full{1, 5, 7, EventKind::Commented, odd, u"{\"a\":1}"_s, u"Müller"_s, 3};
        const EventRow bare{2, 4, 0, EventKind::Started, {}, {}, {}, 0};
        const NotificationRow notification{7, odd, 1, 2, 3, 4, 5, false};
        const AlarmRow alarm{3,   7, AlarmKind::Puk, odd, 1,      2,     3, 4, {u"a, b"_s, odd}, 5, u"x"_s,
                             odd, 6, u"y"_s,         7,   u"z"_s, u"w"_s};
        const AlarmRow open{4, 0, AlarmKind::Disk, u"full"_s, 2, 9, 9, 1};
        const HistoryRow record{7, 18, 99, u"12.5"_s, u"-"_s};
        const ValueRow value{7, 1, 98, u"on"_s};
        {
            auto writer = opened();
            for (const RecordRow &row :
                 {RecordRow(station), RecordRow(full), RecordRow(bare), RecordRow(notification),
                  RecordRow(alarm), RecordRow(open), RecordRow(record), RecordRow(value),
                  RecordRow(ListFileRow{u"c"_s, 1, 0}), RecordRow(ListFileRow{u"c"_s, 2, 0}),
                  RecordRow(SettingRow{u"s"_s, odd})}) {
                writer->add(row);
            }
            HistoryRow again = record;
            again.first = u"other"_s;
            writer->add(again); // a report that comes twice stands once
            QVERIFY(writer->flushNow());
            QCOMPARE(writer->onDiskCount(), writer->addedCount());
        }
        QCOMPARE(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
        QCOMPARE(openRecord(m_path).lastEvent, 2);
        QCOMPARE(openRecord(m_path).lastAlarm, 4);
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

private:
    std::unique_ptr<RecordWriter> opened()
    {
        const OpenedRecord record = openRecord(m_path);
        m_failure = record.status.message();
        return std::make_unique<RecordWriter>(m_path, record, m_timers,
                                              [this](const QString &reason) { m_troubles += reason; });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    test::ManualTimers m_timers;
    QString m_failure;
    QStringList m_troubles;
};

QTEST_GUILESS_MAIN(RecordTest)
#include "record_test.moc"
