#include "opmode/window/record/find_page.h"
#include "opmode/window/record/report_output.h"
#include "opmode/window/timemap/time_map_view.h"
#include "platform/files.h"
#include "record/record_file.h"
#include "record/record_writer.h"
#include "support/choosing.h"
#include "support/manual_timers.h"

#include <QDateTimeEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::choose;

class RecordWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"record.sqlite"_s);
        const OpenedRecord opened = openRecord(m_path);
        QVERIFY(opened.status);
        m_writer = std::make_unique<RecordWriter>(m_path, opened, m_timers, [](const QString &) {});
        m_writer->add(StationRow{1, u"Well"_s, true, u"{}"_s});
        m_writer->add(StationRow{2, u"Old well"_s, false, u"{}"_s});
        m_writer->add(StationRow{3, u"Works"_s, true, u"{}"_s});
        for (int i = 0; i < 1000; ++i) {
            add(1 + i % 3, u"pump %1 fail"_s.arg(i), now().toMSecsSinceEpoch() - (1000 - i) * 60'000);
        }
        QVERIFY(m_writer->flushNow());
        m_queries = std::make_unique<RecordQueries>(m_path);
        m_page = std::make_unique<FindPage>(
            *m_queries, m_path,
            FindPage::Services{.askSave = [this](const QString &, const QString &) { return m_saveAs; },
                               .now = [] { return now(); },
                               .showInTree =
                                   [this](const RecordLine &line) {
                                       m_shown = stationOf(line);
                                       return m_shown != 2; // which is gone
                                   }});
        m_page->show();
        QTRY_COMPARE(rows(), 200);
    }
    void cleanup()
    {
        m_page.reset();
        m_queries.reset();
        m_writer.reset();
    }

    void whatIsFoundIsFetchedByPagesAndWhatComesStandsInFront()
    {
        QCOMPARE(text(0), "pump 999 fail");
        table()->verticalScrollBar()->setValue(table()->verticalScrollBar()->maximum());
        QTRY_COMPARE(rows(), 400);
        QCOMPARE(text(399), "pump 600 fail");
        QTest::keyClicks(field("Text_record_station"), "WELL");
        QTRY_COMPARE(text(1), "pump 997 fail"); // 998 is of the works
        QCOMPARE(cell(1, 1), "Old well (removed)");
        table()->verticalScrollBar()->setValue(table()->verticalScrollBar()->maximum());
        QTRY_COMPARE(rows(), 400);
        table()->selectRow(1);
        add(3, u"of the works"_s);
        add(1, u"new"_s);
        QVERIFY(m_writer->flushNow());
        QTRY_VERIFY((m_page->follow(), text(0) == "new"));
        QCOMPARE(rows(), 401);
        QCOMPARE(table()->currentIndex().row(), 2); // the row that was chosen
        QTest::keyClicks(field("Text_record_text"), "p 99");
        QTRY_COMPARE(rows(), 8); // 99, 990 to 999 but those of the works
        const auto *note = m_page->findChild<QLabel *>("Label_record_note"); // of kinds that were passed over
        QVERIFY(note->isVisible());
        choose(m_page->findChild<QComboBox *>("Combo_record_kind"), 1); // notifications
        QTRY_VERIFY(!note->isVisible());
        QTest::keyClicks(field("Text_record_station"), "; no such");
        field("Text_record_station")->setText(u"no such"_s);
        QTRY_COMPARE(rows(), 0);
    }

    void aLineLeadsToItsStationByKeyAndMouse()
    {
        table()->selectRow(0);
        QTest::keyClick(table(), Qt::Key_Return);
        QCOMPARE(m_shown, 1);
        const QRect cell = table()->visualRect(table()->model()->index(2, 1));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(m_shown, 2);
        QVERIFY(m_page->findChild<QLabel *>("Label_record_count")->text().contains(u"\"Old well\""_s));
    }

    void theMapOfTimeIsWalkedWithKeysAndLeadsToOneStationsHours()
    {
        const HourGrid grid(QDate(2026, 3, 2), 7);
        std::vector<HourFigures> hours(static_cast<std::size_t>(grid.count()));
        hours[26] = {.alarms = 4, .priority = 1};
        TimeMapView map;
        map.setMap({TimeMapTopic::Alarms, grid, hours, 3, grid.to()});
        QCOMPARE(map.chosen(), std::pair(grid.to() - 3'600'000, grid.to()));
        QTest::keyClick(&map, Qt::Key_Home, Qt::ControlModifier);
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Down}) {
            QTest::keyClick(&map, key);
        }
        QCOMPARE(map.chosenFigures(), hours[26]);
        QVERIFY(map.accessibleDescription().contains(u"4 alarms"_s));
        QTest::keyClick(&map, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(map.chosen(), std::pair(grid.hour(26).from, grid.hour(27).to));
        const QSignalSpy wanted(&map, &TimeMapView::wanted);
        QTest::keyClick(&map, Qt::Key_Return);
        QCOMPARE(wanted.size(), 1);

        const qint64 moment = now().toMSecsSinceEpoch();
        for (const qint64 station : {1, 2}) {
            m_writer->add(EventRow{
                .id = m_writer->nextEventId(), .at = moment, .station = station, .kind = EventKind::Silent});
        }
        QVERIFY(m_writer->flushNow());
        m_page->showTimes(false, moment, moment + 1, u"\"Well\""_s);
        QTRY_COMPARE(rows(), 1); // and not the old well
        QCOMPARE(cell(0, 1), "Well");
    }

    void whatIsFoundIsNarrowedByTimeKindAndOperator()
    {
        m_writer->add(EventRow{.id = m_writer->nextEventId(),
                               .at = now().toMSecsSinceEpoch(),
                               .station = 1,
                               .kind = EventKind::Acknowledged,
                               .text = u"pump 999 fail"_s,
                               .operatorName = u"Ada"_s});
        QVERIFY(m_writer->flushNow());
        const auto list = [this](const char *name) { return m_page->findChild<QComboBox *>(name); };
        choose(list("Combo_record_period"), 2); // yesterday, since 19:20
        QTRY_COMPARE(text(0), "pump 279 fail");
        choose(list("Combo_record_period"), 4);
        auto *from = m_page->findChild<QDateTimeEdit *>("Date_record_from");
        from->setSelectedSection(QDateTimeEdit::HourSection);
        QTest::keyClicks(from, "11");
        QTRY_COMPARE(rows(), 61); // one a minute, and the acknowledgement
        choose(list("Combo_record_kind"), 1);
        QTRY_COMPARE(rows(), 60);
        choose(list("Combo_record_kind"), 0);
        QTRY_COMPARE(rows(), 61);
        QTRY_VERIFY((m_page->follow(), list("Combo_record_operator")->count() == 2));
        choose(list("Combo_record_operator"), 1);
        QTRY_COMPARE(rows(), 1);
        QCOMPARE(cell(0, 3), "Ada");
    }

    void sortingOrdersAllThatIsFoundAndAThirdClickIsTheOrderOfTime()
    {
        QHeaderView *header = table()->horizontalHeader();
        const auto click = [header](int column) {
            const QPoint place(header->sectionViewportPosition(column) + 20, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
        };
        click(1);
        QTRY_COMPARE(rows(), 1000);
        QCOMPARE(cell(0, 1), "Old well (removed)");
        QCOMPARE(cell(999, 1), "Works");
        click(1);
        QCOMPARE(cell(0, 1), "Works");
        click(1);
        QCOMPARE(text(0), "pump 999 fail");
        QCOMPARE(text(999), "pump 0 fail");
    }

    void alarmsChangeWhereTheyStand()
    {
        AlarmRow alarm{.id = 1, .station = 1, .text = u"level"_s, .first = 5, .last = 5, .count = 1};
        m_writer->add(alarm);
        AlarmRow other = alarm;
        other.id = 2;
        m_writer->add(other);
        QVERIFY(m_writer->flushNow());
        m_page->findChild<QRadioButton *>("Opt_record_alarms")->click();
        QTRY_COMPARE(rows(), 2);
        table()->selectRow(1);
        alarm.acknowledged = 7;
        alarm.acknowledgedBy = u"Ada"_s;
        m_writer->add(alarm);
        QVERIFY(m_writer->flushNow());
        QTRY_VERIFY((m_page->follow(), cell(1, 7) == "Ada"));
        QVERIFY(table()->selectionModel()->isRowSelected(1));
        choose(m_page->findChild<QComboBox *>("Combo_record_state"), 1); // not acknowledged
        QTRY_COMPARE(rows(), 1);
    }

    void theExportHoldsAllThatIsFound()
    {
        const QString odd = u"=1+1;\"x\"\nÄ"_s;
        add(2, odd);
        QVERIFY(m_writer->flushNow());
        m_saveAs = m_folder->filePath(u"found.csv"_s);
        const QSignalSpy told(m_page.get(), &FindPage::statusMessage);
        m_page->findChild<QPushButton *>("Cmd_record_export")->click();
        QTRY_COMPARE(told.size(), 1);
        QByteArray file;
        QVERIFY(readFile(m_saveAs, file));
        QVERIFY(file.startsWith("\xEF\xBB\xBFTime;Station;Kind;Operator;Text\r\n"));
        QCOMPARE(file.count("\r\n"), 1002); // more than the table shows
        const QDateTime time = now();
        const QByteArray stamp = time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODate).toLatin1();
        QVERIFY(file.contains(stamp + ";Old well (removed);Notification;;\"'=1+1;\"\"x\"\" Ä\"\r\n"));
        m_saveAs = m_folder->filePath(u"no/such.csv"_s);
        m_page->findChild<QPushButton *>("Cmd_record_export")->click();
        QVERIFY(m_page->findChild<QLabel *>("Label_record_problem")->text().contains(u"such.csv"_s));
    }

    /// Of a time, from letter to letter what stations and users called it.
    void aReportHoldsWhatCameStandsAndWasDone()
    {
        const qint64 noon = now().toMSecsSinceEpoch();
        constexpr qint64 anHour = 3'600'000;
        const QString odd = u"<b>&amp;=1</b>"_s;
        m_writer->add(AlarmRow{.id = 1, .station = 1, .text = u"before"_s, .first = noon - 30 * anHour});
        AlarmRow came{.id = 2, .station = 2, .text = odd, .first = noon - anHour, .comment = u"known"_s};
        came.acknowledged = came.over = noon - 1;
        m_writer->add(came);
        m_writer->add(EventRow{.id = m_writer->nextEventId(),
                               .at = noon - 1,
                               .station = 2,
                               .kind = EventKind::Acknowledged,
                               .text = odd,
                               .operatorName = u"Ada"_s});
        QVERIFY(m_writer->flushNow());
        ReportQuestion question{.from = noon - 8 * anHour, .to = noon, .now = noon};
        question.silent = QStringList{u"Works"_s};
        question.offline = QStringList{u"Well"_s, u"Never heard"_s};
        RecordReader reader(m_path);
        const auto tables = [&](ReportKind kind) {
            question.kind = kind;
            const ReportAnswer answer = readReport(reader, question);
            return reportOf(question, answer, TimeForm::Shown, QLocale::c()).tables;
        };
        const auto counts = [](const QList<Report::Table> &all) {
            QList<qsizetype> rows;
            for (const Report::Table &table : all) {
                rows += table.rows.size();
            }
            return rows;
        };
        QCOMPARE(counts(tables(ReportKind::Shift)), (QList<qsizetype>{1, 1, 1, 1}));
        QCOMPARE(counts(tables(ReportKind::Figures)), (QList<qsizetype>{1, 1}));
        const QList<Report::Table> overlooked = tables(ReportKind::Overlooked);
        QCOMPARE(counts(overlooked), (QList<qsizetype>{1, 1, 1, 0}));
        QCOMPARE(overlooked[0].rows[0], (QStringList{u"Never heard"_s, u"never"_s, {}}));
        question.kind = ReportKind::Figures;
        question.from = noon - 40 * anHour; // the record covers 30 of them
        const QStringList lines =
            reportOf(question, readReport(reader, question), TimeForm::Shown, QLocale::c()).lines;
        QCOMPARE(lines.filter(u"of 180 ("_s).size(), 2);
        question.from = noon - 8 * anHour;
        question.kind = ReportKind::Shift;
        const Report report =
            reportOf(question, readReport(reader, question), TimeForm::WithZone, QLocale::c());
        QVERIFY(reportCsv(report).contains((";Old well (removed);\"" + odd + "\";0;").toUtf8()));
        QTextDocument document;
        showReport(report, document, 9, QLocale::c());
        QCOMPARE(document.toPlainText().count(odd), 2);
        QVERIFY(reportPdf(report, QLocale::c()).startsWith("%PDF-"));
    }

private:
    static QDateTime now() { return {QDate(2026, 11, 22), QTime(12, 0)}; }
    void add(qint64 station, const QString &text, qint64 at = now().toMSecsSinceEpoch())
    {
        m_writer->add(EventRow{.id = m_writer->nextEventId(),
                               .at = at,
                               .station = station,
                               .kind = EventKind::Notification,
                               .text = text});
    }
    QTableView *table() { return m_page->findChild<QTableView *>("Table_record"); }
    QLineEdit *field(const char *name) { return m_page->findChild<QLineEdit *>(QLatin1String(name)); }
    int rows() { return table()->model()->rowCount(); }
    QString cell(int row, int column) { return table()->model()->index(row, column).data().toString(); }
    QString text(int row) { return cell(row, 4); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    QString m_saveAs;
    qint64 m_shown = 0; ///< station
    test::ManualTimers m_timers;
    std::unique_ptr<RecordWriter> m_writer;
    std::unique_ptr<RecordQueries> m_queries;
    std::unique_ptr<FindPage> m_page;
};

QTEST_MAIN(RecordWindowTest)
#include "record_window_test.moc"
