#include "opmode/curves/curve_reading.h"
#include "record/record_address.h"
#include "record/record_care.h"
#include "record/record_writer.h"
#include "support/manual_timers.h"
#include "support/private_postgres.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60'000;
constexpr qint64 quarter = 15 * minute;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

} // namespace

/// Curves and the silences in them, of records in a file and on a server.
class CurveReadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initMain() { qputenv("TZ", "Europe/Berlin"); }

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
        QFETCH_GLOBAL(bool, isOnServer);
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = isOnServer ? m_server.makeDatabase(u"curves%1"_s.arg(++m_databases))
                            : m_folder->filePath(u"record.db"_s);
        if (isOnServer) {
            QVERIFY(initRecord(m_path));
        }
    }

    void everyFormOfANumberIsReadAlikeAtEachLevel()
    {
        const QStringList texts{u"1.5"_s, u"-2,5"_s, u"+4"_s, u" 7 "_s, u"3 bar"_s, u"none"_s,
                                u""_s,    u"8."_s,   u".5"_s, u"1e1"_s, u"-"_s,     u"x1"_s};
        QList<RecordRow> rows;
        for (qsizetype i = 0; i < texts.size(); ++i) {
            rows += ValueRow{1, 9, m_begin + i * minute, texts[i]};
        }
        rows += HistoryRow{1, 4, m_begin + hour, u"9"_s, u"2,25"_s};
        write(rows);
        RecordReader reader(m_path);
        const CurveRange range{m_begin, m_begin + day};
        const ReadCurve raw = readCurve(reader, 1, 9, range, HistoryLevel::Raw);
        QVERIFY2(raw.status, qPrintable(raw.status.message()));
        QList<double> values;
        for (const CurvePoint &point : raw.curve.points) {
            values += point.mean;
        }
        QCOMPARE(values, (QList<double>{1.5, -2.5, 4, 7, 3, 8, 0.5, 10, 0, 2.25}));
        const ReadCurve hours = readCurve(reader, 1, 9, range, HistoryLevel::Hour);
        QVERIFY2(hours.status, qPrintable(hours.status.message()));
        QCOMPARE(hours.curve.points.size(), 2U);
        QCOMPARE(hours.curve.points[0], (CurvePoint{m_begin, m_begin + hour, -2.5, 31.5 / 9, 10, 9}));
        QCOMPARE(hours.curve.points[1].mean, 2.25);
        QVERIFY(readCurve(reader, 1, 10, range, HistoryLevel::Day).curve.points.empty());
        QList<int> channels;
        QVERIFY(reader.measuredChannels(1, channels));
        QCOMPARE(channels, QList<int>{9});
    }

    void silenceIsAGapUnlessAnArchiveHasValuesOfIt()
    {
        using enum EventKind;
        const auto at = [this](qint64 minutes) { return m_begin + minutes * minute; };
        QList<RecordRow> rows{
            event(Started, 0, m_begin - day), event(Values, 1, at(0)),    event(Values, 2, at(0)),
            event(Silent, 1, at(62)),         event(Alive, 1, at(130)),   event(Silent, 1, at(300)),
            event(Silent, 2, at(320)),        event(Alive, 1, at(400)),   event(Alive, 2, at(410)),
            event(Stopped, 0, at(600)),       event(Started, 0, at(660)), event(Silent, 1, at(1000)),
        };
        for (int i = 0; i < 60; ++i) { // the archive knows what was in the first silence
            const qint64 when = m_begin + i * quarter;
            const bool isHeard = when < at(300) || (when > at(400) && when < at(600)) || when > at(660);
            if (isHeard) {
                rows += HistoryRow{1, 9, when, u"9"_s, QString::number(i)};
            }
        }
        write(rows);
        RecordReader reader(m_path);
        const bool isShared = isServerAddress(m_path); // another keeper may listen in the place of one
        const auto gapsOf = [&](qint64 station, int channel, CurveRange range) {
            const ReadGaps read = readGaps(reader, {{{station, channel}}, range, at(1100), !isShared});
            QList<std::pair<qint64, qint64>> gaps;
            for (const CurveRange &gap : read.status ? read.gaps.first() : std::vector<CurveRange>()) {
                gaps.append({(gap.from - m_begin) / minute, (gap.to - m_begin) / minute});
            }
            return gaps;
        };
        const QList<std::pair<qint64, qint64>> stop =
            isShared ? QList<std::pair<qint64, qint64>>() : QList<std::pair<qint64, qint64>>{{600, 660}};
        const QList<std::pair<qint64, qint64>> first{{300, 400}};
        const QList<std::pair<qint64, qint64>> last{{1000, 1100}}; // until now
        const CurveRange aDay{m_begin, m_begin + day};
        QCOMPARE(gapsOf(1, 9, aDay), first + stop + last);
        QCOMPARE(gapsOf(1, 10, {m_begin, at(200)}),
                 (QList<std::pair<qint64, qint64>>{{62, 130}})); // no values
        QCOMPARE(gapsOf(2, 9, aDay), (QList<std::pair<qint64, qint64>>{{320, 410}} + stop));
        QCOMPARE(gapsOf(2, 9, {at(330), at(340)}), (QList<std::pair<qint64, qint64>>{{330, 340}}));
        QVERIFY(gapsOf(2, 9, {m_begin - 3000 * day, m_begin + 3000 * day}).isEmpty()); // too short to be seen
    }

private:
    EventRow event(EventKind kind, qint64 station, qint64 at)
    {
        return {.id = ++m_lastEvent, .at = at, .station = station, .kind = kind};
    }
    void write(const QList<RecordRow> &rows)
    {
        const OpenedRecord record = openRecord(m_path);
        RecordWriter writer(m_path, record, m_timers, [](const QString &) {});
        for (int station = 1; station <= 2; ++station) {
            writer.add(StationRow{station, u"Pump %1"_s.arg(station), true, u"{}"_s});
        }
        for (const RecordRow &row : rows) {
            writer.add(row);
        }
        QVERIFY(writer.flushNow());
    }

    test::PrivatePostgres m_server;
    int m_databases = 0;
    const qint64 m_begin = QDateTime(QDate(2026, 3, 2), QTime(0, 0)).toMSecsSinceEpoch();
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    qint64 m_lastEvent = 0;
    test::ManualTimers m_timers;
};

QTEST_GUILESS_MAIN(CurveReadingTest)
#include "curve_reading_test.moc"
