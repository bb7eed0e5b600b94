#include "app/foretell_window.h"
#include "app/switch_timeline.h"
#include "look/style.h"
#include "platform/files.h"
#include "support/page_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>

using namespace ktr;
using namespace ktr::test;

/// The clock here stands at Sunday, 15 November 2009, 14:05.
class ForetellWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pages = std::make_unique<PageFixture>();
        m_pages->document.makeNew();
        m_pages->document.edit([](Configuration &configuration) {
            LimitValue &value = configuration.limitValues[2];
            value.channel = 9;
            value.comparison = 3;
            value.limit = "3";
            value.delay = "60";
            value.alarm = "level fail";
            value.recipients = 2;
            configuration.scaling[0] = {"-1", "0.5", "m"};
            SwitchPoint &point = configuration.switchPoints[0];
            point.target = 1;
            point.type = 1; // Mondays
            point.start = "0911010600";
            point.value = "1";
        });
        m_window = std::make_unique<ForetellWindow>(
            ForetellWindow::Services{m_pages->document, m_pages->texts, [this] { return m_chosen; },
                                     [this](const QString &) { return m_folder.filePath("events.csv"); }},
            nullptr);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    void cleanup() { m_window.reset(); }

    void aValueThatPassesItsLimitBecomesANotification()
    {
        QCOMPARE(lines(), QStringList());
        typeOver(control<QLineEdit>(*m_window, "Txt_foretell_9"), "3,5");
        QCOMPARE(lines(), QStringList("15.11.2009 14:05|limit passed, delay until 14:06|"));
        QVERIFY(label("lbl_foretell_states_9").contains("delay until 14:06"));
        click("Cmd_foretell_step");
        QCOMPARE(lines().size(), 3);
        QCOMPARE(lines().last(), "15.11.2009 14:06|notification|Admin 2 (has no number)");
        QVERIFY(label("lbl_foretell_clock").endsWith("14:06:00"));
        QVERIFY(label("lbl_foretell_states_9").contains("stands"));
        // What it rests on is named.
        const QString assumed = control<QPlainTextEdit>(*m_window, "Txt_foretell_assumed")->toPlainText();
        const QString numbers = cell(2, 5);
        for (const QString &number : numbers.mid(1, numbers.size() - 2).split(", ")) {
            QVERIFY2(assumed.contains("[" + number + "] "), qPrintable(number));
        }
        // The next event is the calendar's.
        click("Cmd_foretell_step");
        QCOMPARE(lines().last(), "16.11.2009 06:00|11 DigOut 1 = 1|");
    }

    void theSliderReachesTheSignalAndTheLimits()
    {
        auto *slider = control<QSlider>(*m_window, "Slider_foretell_9");
        auto *field = control<QLineEdit>(*m_window, "Txt_foretell_9");
        QCOMPARE(field->text(), QString());
        slider->setFocus();
        QTest::keyClick(slider, Qt::Key_End); // ten steps of the signal
        QCOMPARE(field->text(), "4");
        QCOMPARE(slider->toolTip(), "A signal of 10");
        QCOMPARE(lines().size(), 1);
        QTest::keyClick(slider, Qt::Key_Home);
        QCOMPARE(field->text(), "-1");
        QCOMPARE(lines().last(), "15.11.2009 14:05|back before the delay was over|");
    }

    void tabGoesFromTheButtonsToTheChannels()
    {
        m_pages->document.edit(
            [](Configuration &configuration) { configuration.limitValues[4].channel = 6; });
        QTRY_VERIFY(m_window->findChild<QCheckBox *>("Chk_foretell_6") != nullptr);
        QTRY_VERIFY(control<QCheckBox>(*m_window, "Chk_foretell_6")->isVisible());
        control<QCheckBox>(*m_window, "Chk_foretell_states")->setFocus();
        QStringList order;
        for (int stop = 0; stop < 4; ++stop) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            order += QApplication::focusWidget()->objectName();
        }
        QCOMPARE(order.mid(0, 3), QStringList({"Chk_foretell_6", "Slider_foretell_9", "Txt_foretell_9"}));
        QVERIFY(!order[3].isEmpty());
    }

    void theClockRuns()
    {
        typeOver(control<QLineEdit>(*m_window, "Txt_foretell_9"), "4");
        control<QComboBox>(*m_window, "Combo_foretell_speed")->setCurrentIndex(4);
        click("Cmd_foretell_play");
        QTRY_VERIFY(lines().size() >= 3);
        click("Cmd_foretell_play");
        const QString stands = label("lbl_foretell_clock");
        QTest::qWait(0);
        QCOMPARE(label("lbl_foretell_clock"), stands);
        click("Cmd_foretell_restart"); // with the value that was given
        QVERIFY(label("lbl_foretell_clock").endsWith("14:05:00"));
        QCOMPARE(lines(), QStringList("15.11.2009 14:05|limit passed, delay until 14:06|"));
    }

    void editsAreFollowed()
    {
        typeOver(control<QLineEdit>(*m_window, "Txt_foretell_9"), "2");
        m_pages->document.edit([](Configuration &configuration) {
            configuration.limitValues[2].limit = "1";
            configuration.limitValues[2].delay = "0";
            configuration.limitValues[4].channel = 6;
            configuration.switchPoints[0].target = 0;
        });
        QTRY_COMPARE(lines().value(1), "15.11.2009 14:05|notification|Admin 2 (has no number)");
        QTRY_VERIFY(control<QCheckBox>(*m_window, "Chk_foretell_6")->isVisible());
        auto *timeline = control<SwitchTimeline>(*m_window, "Timeline_foretell");
        timeline->setFocus();
        QTest::keyClick(timeline, Qt::Key_Home);
        QCOMPARE(timeline->chosenWords(), QString());
    }

    void theTimelineIsReadByKeys()
    {
        m_pages->document.edit([](Configuration &configuration) {
            SwitchPoint &point = configuration.switchPoints[4];
            point = configuration.switchPoints[0];
            point.target = 6;
            point.type = 2; // Tuesdays
        });
        QCoreApplication::processEvents();
        auto *timeline = control<SwitchTimeline>(*m_window, "Timeline_foretell");
        timeline->setFocus(Qt::TabFocusReason);
        const auto chosen = [this] { return label("lbl_foretell_chosen"); };
        QVERIFY2(chosen().contains("16.11.2009 06:00  11 DigOut 1 = 1  switch point 1"),
                 qPrintable(chosen()));
        QTest::keyClick(timeline, Qt::Key_Right);
        QVERIFY(chosen().contains("23.11.2009 06:00"));
        QTest::keyClick(timeline, Qt::Key_Down);
        QVERIFY2(chosen().contains("24.11.2009 06:00  Admin 2, 1  switch point 5"), qPrintable(chosen()));
        QTest::keyClick(timeline, Qt::Key_Home);
        QVERIFY(chosen().contains("17.11.2009 06:00"));
        QVERIFY(!m_window->grab().isNull());
    }

    void aPastedTableIsPlayed()
    {
        QApplication::clipboard()->setText("When\tWhat\tValue\n20.11.2009 08:00:30\t9\t3,5\n"
                                           "20.11.2009 09:00\t9\t1\nx\t9\t1\n");
        QTest::keyClick(m_window.get(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(control<QDateTimeEdit>(*m_window, "Date_foretell_begin")->dateTime(),
                 QDateTime(QDate(2009, 11, 20), QTime(8, 0)));
        QVERIFY(label("lbl_foretell_series").contains("2 values"));
        for (int step = 0; step < 3; ++step) {
            click("Cmd_foretell_step");
        }
        QCOMPARE(lines(), QStringList({"20.11.2009 08:00:30|limit passed, delay until 08:01:30|",
                                       "20.11.2009 08:01:30|limit value stands|",
                                       "20.11.2009 08:01:30|notification|Admin 2 (has no number)",
                                       "20.11.2009 09:00|limit value is over|"}));
        QCOMPARE(control<QLineEdit>(*m_window, "Txt_foretell_9")->text(), "1");
        const auto *remarks = control<QLabel>(*m_window, "lbl_foretell_remarks");
        QVERIFY(remarks->isVisible() && remarks->text().contains("line 4")); // whatever was played
        click("Cmd_foretell_restart");
        QVERIFY(remarks->isVisible());
        click("Cmd_foretell_dismiss");
        QVERIFY(!remarks->isVisible());
        click("Cmd_foretell_drop");
        QVERIFY(!label("lbl_foretell_series").contains("2 values"));

        QApplication::clipboard()->setText("nothing of use");
        click("Cmd_foretell_paste");
        QVERIFY(label("lbl_foretell_remarks").startsWith("Clipboard: there are no values"));
        click("Cmd_foretell_step");
        QVERIFY(control<QLabel>(*m_window, "lbl_foretell_remarks")->isVisible());
        m_chosen = m_folder.filePath("values.csv");
        QVERIFY(replaceFile(m_chosen, "9;01.02.2010 10:00;1;9,5\r\n"));
        click("Cmd_foretell_open");
        QVERIFY(label("lbl_foretell_series").startsWith("values.csv: 1 values"));
        QVERIFY(!control<QLabel>(*m_window, "lbl_foretell_remarks")->isVisible());
        QVERIFY(control<QPlainTextEdit>(*m_window, "Txt_foretell_assumed")->toPlainText().contains("[26] "));
    }

    void whatIsAssumedIsReadOtherwiseAndEventsAreSavedAsATable()
    {
        QApplication::clipboard()->setText("20.11.2009 08:00:30\t9\t3,5\n");
        QTest::keyClick(m_window.get(), Qt::Key_V, Qt::ControlModifier);
        auto *readings = control<QListWidget>(*m_window, "List_foretell_readings");
        const auto found = readings->findItems("[9] ", Qt::MatchStartsWith);
        QCOMPARE(found.size(), 1);
        found.first()->setCheckState(Qt::Checked); // minutes instead of seconds
        click("Cmd_foretell_step");
        QCOMPARE(lines(), QStringList("20.11.2009 08:00:30|limit passed, delay until 09:00:30|"));
        QVERIFY(control<QPlainTextEdit>(*m_window, "Txt_foretell_assumed")
                    ->toPlainText()
                    .contains("The delay of a limit value counts minutes."));
        click("Cmd_foretell_export");
        QByteArray table;
        QVERIFY(readFile(m_folder.filePath("events.csv"), table));
        QVERIFY2(table.startsWith("\xEF\xBB\xBF") && table.count("\r\n") == 2 &&
                     table.contains("20.11.2009 08:00:30;limit passed, delay until 09:00:30;"),
                 table);
        found.first()->setCheckState(Qt::Unchecked);
        click("Cmd_foretell_step");
        QCOMPARE(lines(), QStringList("20.11.2009 08:00:30|limit passed, delay until 08:01:30|"));
    }

    void nothingMoreIsToldAtTheEnd()
    {
        m_pages->document.edit(
            [](Configuration &configuration) { configuration.switchPoints[0].target = 0; });
        QCoreApplication::processEvents();
        click("Cmd_foretell_step");
        QVERIFY(label("lbl_foretell_told").contains("Nothing more"));
        QVERIFY(!control<QAbstractButton>(*m_window, "Cmd_foretell_play")->isEnabled());
        const QString unplayed = control<QPlainTextEdit>(*m_window, "Txt_foretell_unplayed")->toPlainText();
        QVERIFY2(unplayed.contains("9 AnalogIn 1: no value yet"), qPrintable(unplayed));
    }

private:
    void click(const QString &name) { control<QAbstractButton>(*m_window, name)->click(); }
    QString label(const QString &name) const { return control<QLabel>(*m_window, name)->text(); }
    const QAbstractItemModel &model() const
    {
        return *control<QTableView>(*m_window, "Table_foretell")->model();
    }
    QString cell(int row, int column) const { return model().index(row, column).data().toString(); }
    QStringList lines() const
    {
        QStringList all;
        for (int row = 0; row < model().rowCount(); ++row) {
            all += cell(row, 0) + '|' + cell(row, 1) + '|' + cell(row, 2);
        }
        return all;
    }

    QTemporaryDir m_folder;
    QString m_chosen;
    std::unique_ptr<PageFixture> m_pages;
    std::unique_ptr<ForetellWindow> m_window;
};

QTEST_MAIN(ForetellWindowTest)

#include "foretell_window_test.moc"
