#include "config/channels.h"
#include "config/fields.h"
#include "printout/printout.h"
#include "printout/receipt.h"
#include "support/environment.h"

#include <QFile>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

Configuration freshConfiguration()
{
    Configuration configuration;
    makeNew(configuration, test::fixedEnvironment());
    return configuration;
}

Printout printoutOf(const Configuration &configuration, PrintedEntries entries = PrintedEntries::InUse)
{
    return Printout(configuration, TextTable(),
                    {.fileName = u"/some/folder/station.xml"_s,
                     .now = QDateTime(QDate(2009, 11, 15), QTime(14, 5)),
                     .entries = entries});
}

QString allText(const Printout &printout)
{
    QString text;
    for (int page = 0; page < printout.pageCount(); ++page) {
        text += printout.pageText(page) + u'\n';
    }
    return text;
}

/// The rows of the last table in the section with this title.
QList<QStringList> rowsOf(const Configuration &configuration, const QString &section,
                          PrintedEntries entries = PrintedEntries::InUse,
                          const QLocale &locale = QLocale::c())
{
    for (const PrintSection &each : printContent(configuration, TextTable(), locale, entries)) {
        if (each.title == section) {
            return each.tables.back().rows;
        }
    }
    return {};
}

} // namespace

class PrintoutTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_QPA_PLATFORM", "offscreen"); }

private Q_SLOTS:
    void aReceiptHasFactsCommandsAndTheConfiguration()
    {
        Configuration configuration = freshConfiguration();
        configuration.gsm.stationId = u"Plant 7"_s;
        RememberedTransmission given;
        given.row = {.id = 12,
                     .station = u"Plant 7"_s,
                     .versionSent = u"2026-11-01"_s,
                     .verdict = TransmissionVerdict::InPart};
        for (int step = 0; step < 79; ++step) {
            given.steps += {step, u"G,%1"_s.arg(1000 + step),
                            step == 7 ? StepOutcome::Failed : StepOutcome::Confirmed, 1, 1};
        }
        const Printout receipt = receiptPages(given, configuration, TextTable(), test::fixedEnvironment());
        const QString text = allText(receipt);
        for (const QString &expected :
             {u"Plant 7"_s, u"in part"_s, u"78 confirmed, 1 failed"_s, u"not known"_s, u"G,1000"_s,
              u"G,1007 failed"_s, u"G,1078"_s, u"+49"_s}) {
            QVERIFY2(text.contains(expected), qPrintable(expected));
        }
        QVERIFY(receipt.pageCount() > printoutOf(configuration).pageCount());
    }

    void everyTextOfAConfigurationIsPrintedButForThePin()
    {
        Configuration configuration;
        QHash<QString, QString> places; // of the texts
        visitRecords(configuration, [&]<class Record>(const Group &group, Record &record, int index) {
            for (const Field<Record> &field : fieldsOf<Record>()) {
                if (const auto *member = std::get_if<QString Record::*>(&field.member);
                    member != nullptr && field.appliesTo(index)) {
                    record.*(*member) = u"t%1"_s.arg(places.size());
                    places.insert(record.*(*member), group.place(field.xmlName, index));
                }
            }
        });
        for (DigitalInput &input : configuration.digitalInputs) {
            input.countsPulses = input.countsHours = true;
        }
        for (LimitValue &limitValue : configuration.limitValues) {
            limitValue.repetitions = 1;
        }
        for (SwitchPoint &point : configuration.switchPoints) {
            point.type = 14;
        }
        places.remove(configuration.gsm.pin);
        configuration.gsm.pin = u"4739"_s;
        const QString printed = allText(printoutOf(configuration, PrintedEntries::All));
        const QStringList words = printed.split(QRegularExpression(u"\\W+"_s));
        for (const auto &[text, place] : places.asKeyValueRange()) {
            QVERIFY2(words.contains(text), qPrintable(place));
        }
        QVERIFY(!printed.contains("4739"_L1) && printed.contains("PIN **** Alive"_L1));
    }

    void aLimitValueIsPrintedWithUnitsAndNames_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<QString>("comparison");
        QTest::addColumn<QString>("hysteresis");
        QTest::newRow("none") << 0 << u"> 3.2"_s << u"0.15"_s;
        QTest::newRow("counting pulses") << 1 << u"> 3.2 Pulses"_s << u"0.15 Pulses"_s;
        QTest::newRow("not counting") << 2 << u"> 3.2"_s << u"0.15"_s;
        QTest::newRow("counting hours") << 4 << u"> 3.2 Hours"_s << u"0.15 Hours"_s;
        QTest::newRow("analog input") << 10 << u"> 3.2 bar"_s << u"0.15 bar"_s;
        QTest::newRow("analog output") << 13 << u"> 3.2 Hz"_s << u"0.15 Hz"_s;
        QTest::newRow("output's hours") << 16 << u"> 3.2 Hours"_s << u"0.15 Hours"_s;
        QTest::newRow("temperature") << 18 << u"> 3.2 °C"_s << u"0.15 Kelvin"_s;
        QTest::newRow("no channel") << -7 << u"> 3.2"_s << u"0.15"_s;
    }
    void aLimitValueIsPrintedWithUnitsAndNames()
    {
        QFETCH(int, channel);
        QFETCH(QString, comparison);
        QFETCH(QString, hysteresis);
        Configuration configuration = freshConfiguration();
        configuration.digitalInputs[0].countsPulses = configuration.digitalInputs[3].countsHours = true;
        configuration.scaling[1].unit = u"bar"_s;
        configuration.scaling[2].unit = u"Hz"_s;
        configuration.administrators[1].name.clear();
        configuration.limitValues[4] = {
            static_cast<qint16>(channel), u"high"_s, u"3.2"_s, u"0.15"_s, u"60"_s, 3, 0b11, 0, 3, u"30"_s};
        const QStringList row = rowsOf(configuration, u"Limit Value 1–16"_s).value(0);
        QCOMPARE(row.mid(2), QStringList({comparison, hysteresis, u"60"_s, u"Admin 1\nAdmin 2"_s, u"3 × 30"_s,
                                          u"high"_s}));
    }

    void aChannelShowsTheValuesThatItHas()
    {
        Configuration configuration = freshConfiguration();
        configuration.digitalInputs[1] = {true, u"100"_s, true, false, u"7"_s};
        configuration.digitalInputs[2] = {true, u"100"_s, true, false, u"7"_s}; // can count hours only
        configuration.outputHours[1] = {false, u"9"_s};
        configuration.scaling[3] = {u"-1"_s, u"0.5"_s, u"Hz"_s};
        const QList<QStringList> rows = rowsOf(configuration, u"Channel"_s);
        QCOMPARE(rows.size(), channelCount);
        const auto cells = [&rows](int channel) { return rows[channel - 1].mid(3).join(u'|'); };
        QCOMPARE(rows[1].mid(0, 3), QStringList({u"2 DigIn 2"_s, u"0"_s, u"0"_s}));
        QCOMPARE(cells(2), u"Pulses|100|on|7|||"_s);
        QCOMPARE(cells(3), u"–||||||"_s);
        QCOMPARE(cells(5), u"||||||"_s);
        QCOMPARE(cells(14), u"||||-1|0.5|Hz"_s);
        QCOMPARE(cells(16), u"Hours||off|9|||"_s);
    }

    void holidaysAreReadableDates()
    {
        Configuration configuration = freshConfiguration();
        for (int day = 1; day <= 6; ++day) {
            configuration.holidays.add(QDate(2027, 5, day));
        }
        configuration.holidays.append(u"no date"_s);
        const QList<QStringList> rows = rowsOf(configuration, u"Holidays"_s);
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows[0][4], u"5 May 2027"_s);
        QCOMPARE(rows[1], QStringList({u"6 May 2027"_s, u"no date"_s, {}, {}, {}}));
    }

    void aCombinationNamesItsLimitValues()
    {
        Configuration configuration = freshConfiguration();
        configuration.limitValues[16].reference = 0x8001;
        configuration.limitValues[17].reference = 1e300;
        configuration.limitValues[19].alarm = u"text alone"_s;
        const QList<QStringList> rows = rowsOf(configuration, u"Limit Value 17–20"_s);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0], QStringList({u"17"_s, u"1, 16"_s, u"Admin 1–6"_s, u"–"_s, u"–"_s}));
        QCOMPARE(rows[1][1], u"1E+300"_s);
        QCOMPARE(rows[2].mid(1, 1) + rows[2].mid(4), QStringList({u"–"_s, u"text alone"_s}));
    }

    void aSwitchPointIsPrintedAsItsTypeNeedsIt_data()
    {
        QTest::addColumn<SwitchPoint>("point");
        QTest::addColumn<QStringList>("cells");
        const auto row = [](const char *name, const SwitchPoint &point, const QStringList &cells) {
            QTest::newRow(name) << point << cells;
        };
        // clang-format off: a row a type
        row("date", {2, 6, u"0002291530"_s, u"9"_s, u"1"_s, 2},
            {u"12 DigOut 2"_s, u"6 on Saturdays"_s, u"29.02.00 15:30"_s, u"1"_s, {}, {}});
        row("no date", {5, 7, u"2613400000"_s, u"9"_s, u"1"_s, 2},
            {u"Ann"_s, u"7 weekdays (any weekday)"_s, u"2613400000"_s, u"1"_s, {}, {}});
        row("periodic", {1, 14, {}, u"9"_s, u"1"_s, 2},
            {u"11 DigOut 1"_s, u"14 periodic"_s, u"–"_s, u"1"_s, u"9"_s, {}});
        row("limit value", {1, 16, u"0002291530"_s, u"9"_s, {}, 2},
            {u"11 DigOut 1"_s, u"16 LV exceeded (below the limit)"_s, {}, u"–"_s, {}, u"3 (9 AnalogIn 1)"_s});
        row("combination", {1, 15, {}, u"9"_s, u"0"_s, 19},
            {u"11 DigOut 1"_s, u"15 LV exceeded (above the limit)"_s, {}, u"0"_s, {}, u"20"_s});
        row("out of bounds", {99, 99, u"+1-2+3-4+5"_s, {}, u"0"_s, 2},
            {u"99"_s, u"99"_s, u"+1-2+3-4+5"_s, u"0"_s, {}, {}});
        // clang-format on
    }
    void aSwitchPointIsPrintedAsItsTypeNeedsIt()
    {
        QFETCH(SwitchPoint, point);
        QFETCH(QStringList, cells);
        Configuration configuration = freshConfiguration();
        configuration.administrators[0].name = u"Ann"_s;
        configuration.limitValues[2].channel = 9;
        configuration.switchPoints[6] = point;
        const QList<QStringList> rows =
            rowsOf(configuration, u"Switchpoints"_s, PrintedEntries::InUse, test::german());
        QCOMPARE(rows, QList<QStringList>({QStringList(u"7"_s) + cells}));
    }

    void unusedEntriesArePrintedOnDemandOnly()
    {
        Configuration configuration = freshConfiguration();
        configuration.limitValues[3].limit = u"777"_s;
        configuration.limitValues[5].alarm = u"spare"_s;
        configuration.switchPoints[8].value = u"888"_s;
        const Printout brief = printoutOf(configuration);
        const Printout whole = printoutOf(configuration, PrintedEntries::All);
        QVERIFY(allText(brief).contains("spare"_L1) && allText(whole).contains("spare"_L1));
        for (const auto unused : {"777"_L1, "888"_L1}) {
            QVERIFY(!allText(brief).contains(unused) && allText(whole).contains(unused));
        }
        QVERIFY(brief.pageCount() < whole.pageCount());
    }

    void textsComeOutAsTyped()
    {
        Configuration configuration = freshConfiguration();
        configuration.info.comment = u"<b>5 &lt; 6 && \"7\"</b> %1 m³"_s;
        configuration.administrators[3].name = u"a\nb\001c\td"_s;
        const QString text = allText(printoutOf(configuration));
        QVERIFY(text.contains(configuration.info.comment));
        QVERIFY(text.contains(" a b c d "_L1));
    }

    void everyPageHasItsHeaderAndNoRowIsSplit()
    {
        Configuration configuration = freshConfiguration();
        configuration.gsm.stationId = u"PS Mill Lane"_s;
        for (int index = 0; index < LimitValue::firstReference; ++index) {
            LimitValue &limitValue = configuration.limitValues[static_cast<std::size_t>(index)];
            limitValue.alarm =
                u"first%1 "_s.arg(index) + u"some words "_s.repeated(30) + u"last%1 "_s.arg(index);
        }
        const Printout printout = printoutOf(configuration);
        const int count = printout.pageCount();
        int pagesWithRows = 0;
        for (int page = 0; page < count; ++page) {
            const QString text = printout.pageText(page);
            QVERIFY(text.contains(u"PS Mill Lane · station.xml"_s));
            QVERIFY(text.contains(u"%1 / %2 "_s.arg(page + 1).arg(count)));
            QVERIFY(text.endsWith("15 Nov 2009"_L1));
            const QRegularExpression first(u"first(\\d+) "_s);
            int rows = 0;
            for (auto row = first.globalMatch(text); row.hasNext(); ++rows) {
                QVERIFY(text.contains(u"last%1 "_s.arg(row.next().captured(1))));
            }
            QCOMPARE(rows > 0, text.contains("Hysteresis"_L1));
            pagesWithRows += rows > 0 ? 1 : 0;
        }
        QVERIFY(pagesWithRows > 1);
    }

    void nothingIsLostOrLeavesTheMarginsHoweverLongTheTexts()
    {
        Configuration configuration = freshConfiguration();
        configuration.gsm.stationId = QString(300, u'W');
        configuration.administrators[0].number = QString(200, u'8');
        configuration.limitValues[0].alarm = QString(6000, u'Q');
        configuration.limitValues[0].limit = QString(60, u'7');
        const Printout printout = printoutOf(configuration);
        QVERIFY(allText(printout).count(u'Q') == 6000);
        for (int page = 0; page < printout.pageCount(); ++page) {
            const QString text = printout.pageText(page);
            QVERIFY(!text.contains("QQQ"_L1) || text.contains("Hysteresis"_L1));
            QImage image(595, 842, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            printout.paintPage(painter, page);
            painter.fillRect(QRectF(42, 41, 595 - 84, 842 - 82), Qt::white); // 15 mm are 42.5 points
            painter.end();
            QImage white(image.size(), image.format());
            white.fill(Qt::white);
            QVERIFY2(image == white, qPrintable(QString::number(page)));
        }
    }

    void aPdfReplacesTheFileWholeOrNotAtAll()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"out.pdf"_s);
        QFile old(path);
        QVERIFY(old.open(QIODevice::ReadWrite) && old.write("old") == 3);
        old.close();
        const Printout printout = printoutOf(freshConfiguration(), PrintedEntries::All);
        QVERIFY(!printout.writePdf(path + u"/below-a-file.pdf"_s));
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), "old");
        old.close();
        QVERIFY(printout.writePdf(path));
        QFile written(path);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QByteArray pdf = written.readAll();
        QVERIFY(pdf.startsWith("%PDF-") && pdf.trimmed().endsWith("%%EOF"));
        QCOMPARE(pdf.count("/Type /Page\n"), printout.pageCount());
    }
};

QTEST_MAIN(PrintoutTest)
#include "printout_test.moc"
