#include "foretell/value_series.h"

#include <QTest>

using namespace ktr;

class ValueSeriesTest : public QObject
{
    Q_OBJECT

private:
    static ValueSeries read(const QString &text, const QString &station = {})
    {
        ValueSeries series;
        const Status status = readValueSeries(text, station, series);
        if (!status) {
            series.remarks += status.message();
        }
        return series;
    }
    static QString told(const ValueSeries &series)
    {
        QStringList all;
        for (const SeriesValue &each : series.values) {
            all += QStringLiteral("%1 %2 %3").arg(clockText(each.at)).arg(each.channel).arg(each.value);
        }
        return all.join("; ");
    }

private Q_SLOTS:
    void theFormsOfATable_data()
    {
        QTest::addColumn<QString>("text");
        const QString expected = "15.11.2026 14:00 9 12.5; 15.11.2026 14:15:30 10 -3.25";
        const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
        row("plain", "15.11.2026 14:00;9;12,5\r\n15.11.2026 14:15:30;10;-3.25\r\n");
        row("of a spreadsheet", "2026-11-15 14:00\t9\t12,5\n2026-11-15 14:15:30\t10 Analog In 2\t-3,25\n");
        row("channel first, by commas", "9,2026-11-15T14:00,12.5\n10,2026-11-15T14:15:30,-3.25");
        row("unsorted, with a heading",
            "When;What;How much\n15.11.2026 14:15:30;10;-3.25\n15.11.2026 14:00;9;12.5");
        row("named columns", "value;station;time;channel\n12.5;Mill;2026-11-15T14:00:00.000;9\n"
                             "-3.25;Mill;2026-11-15T14:15:30.000;10\n");
        row("the archive", "9;15.11.2026 14:00;1;12,5\r\n10;15.11.2026 14:15:30;1;-3,25\r\n");
        row("a record's history", "station;channel;time;value;second value\n"
                                  "Mill;9;2026-11-15T14:00:00.000;1;12.5\n"
                                  "Mill;10;2026-11-15T14:15:30.000;1;-3.25\n");
        row("an export of history",
            "\xEF\xBB\xBF"
            "Station;Zeit;Eingang;Eingangsname;Wert\r\n"
            "M;15.11.2026 14:00;9;Analog In 1;12,5\r\nM;15.11.2026 14:15:30;10;;-3,25\r\n");
    }
    void theFormsOfATable()
    {
        QFETCH(QString, text);
        const ValueSeries series = read(text);
        QCOMPARE(told(series), "15.11.2026 14:00 9 12.5; 15.11.2026 14:15:30 10 -3.25");
        QCOMPARE(series.remarks, QStringList());
        QCOMPARE(series.isOfArchive, text.contains(";1;"));
    }

    /// The module's clock was set by the one here.
    void aTimeWithAnOffsetIsTheTimeHere()
    {
        const QDateTime local(QDate(2026, 11, 15), QTime(14, 0));
        const QString utc = local.toUTC().toString(Qt::ISODateWithMs);
        QVERIFY(utc.endsWith('Z'));
        QCOMPARE(told(read(utc + ";9;1")), "15.11.2026 14:00 9 1");
    }

    void linesThatCannotBeUsedAreTold()
    {
        const ValueSeries series =
            read("15.11.2026 14:00;9;1\n31.02.2026 14:00;9;1\n15.11.2026 14:00;19;1\n"
                 "15.11.2026 14:00;9;on\n;;x\n15.11.2026 14:00;+9;1\n15.11.2026;9;1\n");
        QCOMPARE(told(series), "15.11.2026 14:00 9 1");
        QCOMPARE(series.remarks.size(), 6);
        QVERIFY2(series.remarks[0].startsWith("line 2: \"31.02.2026 14:00\" is no time"),
                 qPrintable(series.remarks[0]));
        QVERIFY(series.remarks[1].contains("\"19\" is no channel"));
        QVERIFY(series.remarks[2].contains("\"on\" is no number"));
        QCOMPARE(series.remarks.last(), "1 more lines cannot be used");
    }

    void oneStationIsChosen()
    {
        const QString table =
            "station;channel;time;value\nMill;9;2026-11-15T14:00;1\nAshby;9;2026-11-15T14:00;2\n";
        QCOMPARE(told(read(table, "Ashby")), "15.11.2026 14:00 9 2");
        QCOMPARE(read(table).remarks, QStringList("the values are of 2 stations; which one is meant?"));
        QVERIFY(read(table, "North").isEmpty());
        ValueSeries series;
        QVERIFY(!readValueSeries("", {}, series));
        QVERIFY(!readValueSeries("hello", {}, series));
    }
};

QTEST_GUILESS_MAIN(ValueSeriesTest)

#include "value_series_test.moc"
