#include "opmode/window/alarm_bar.h"
#include "opmode/window/alarm_mute.h"
#include "opmode/window/alarm_sound.h"
#include "opmode/window/notifications/notification_page.h"
#include "platform/registry.h"
#include "support/choosing.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

using namespace ktr;
using namespace ktr::test;

class NotificationPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        Environment environment = fixedEnvironment();
        environment.now = [this] { return m_now; };
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{environment, m_timers,
                                      [this] {
                                          auto line = std::make_unique<RecordedLine>();
                                          m_lines += line.get();
                                          return line;
                                      }},
            stationCaptions(m_texts));
        m_lines.clear();
        QVERIFY(m_mode->open(m_folder->filePath("nodes.xml"), OperationalMode::Use::Keep));
        for (const char *name : {"North", "South"}) {
            m_mode->addStation(name);
            m_mode->setOnline(name, true);
        }
        m_centre = std::make_unique<AlarmCentre>(
            m_mode->alarms(), [this](const AlarmRow &row) { return alarmOf(*m_mode, row); }, m_timers);
        m_acknowledging = std::make_unique<Acknowledging>(*m_mode, m_texts);
        m_window = std::make_unique<QWidget>();
        m_bar = new AlarmBar(*m_centre, m_mode->alarms(), *m_acknowledging, m_texts);
        m_page = new NotificationPage(*m_mode, m_texts, *m_acknowledging, m_timers, QLocale::c());
        auto *layout = new QVBoxLayout(m_window.get());
        layout->addWidget(m_bar);
        layout->addWidget(m_page);
        m_window->resize(900, 500);
        m_window->show();
        m_page->showStation("North");
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup() { m_window.reset(); }

    void fiveHundredAlarmsOfOneTurnAreAllListedAndAcknowledgedByKeyboard()
    {
        table()->setFocus();
        for (int i = 1; i <= 500; ++i) {
            take("North", QString("pump %1 fail").arg(i));
        }
        settle();
        QCOMPARE(shown().size(), 500);
        QCOMPARE(shown().first(), "pump 500 fail");
        QCOMPARE(shown().last(), "pump 1 fail");
        QVERIFY(m_bar->isVisible());
        QVERIFY(barText("lbl_alarm").startsWith("500 alarms"));
        QVERIFY(barText("lbl_alarm_first").endsWith("pump 1 fail"));
        QVERIFY(barText("lbl_alarm_latest").endsWith("pump 500 fail"));
        QVERIFY(table()->hasFocus());

        QTest::keyClick(table(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(table(), Qt::Key_Space);
        QCOMPARE(tree().alarmCount(), 0);
        const QString when = m_now.toString("dd.MM.yyyy HH:mm:ss");
        QCOMPARE(rowTexts(table(), 499)[NotificationModel::State], "acknowledged " + when);
        settle();
        QVERIFY(!m_bar->isVisible());
    }

    void anAcknowledgementThatIsNotOnTheDiskIsToldAndLeavesTheAlarmRed()
    {
        take("North", "pump fail");
        settle();
        QVERIFY(m_mode->keepsChanges());
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other"); // has the record to itself
        other.setDatabaseName(m_mode->recordPath());
        QVERIFY(other.open() && other.exec("BEGIN EXCLUSIVE").lastError().type() == QSqlError::NoError);
        QStringList told;
        connect(m_acknowledging.get(), &Acknowledging::statusMessage, this,
                [&](const QString &line) { told += line; });
        QTest::mouseClick(control<QPushButton>("Cmd_meldung_acceptAll"), Qt::LeftButton);
        QCOMPARE(told.size(), 1);
        QVERIFY(told.first().contains("locked"));
        QCOMPARE(m_window->findChild<QLabel *>("Label_msg")->text(), told.first());
        QCOMPARE(rowTexts(table(), 0)[NotificationModel::State], "not acknowledged");
        settle();
        QVERIFY(m_bar->isVisible());
        other.close();
        QVERIFY(m_mode->keepsChanges());
        QTest::mouseClick(control<QPushButton>("Cmd_meldung_acceptAll"), Qt::LeftButton);
        settle();
        QVERIFY(barText("lbl_alarm_first").contains("cannot be written")); // another alarm, about the disk
        QTest::mouseClick(m_bar->findChild<QPushButton *>("Cmd_alarm_accept"), Qt::LeftButton);
        settle();
        QVERIFY(!m_bar->isVisible());
    }

    void whatArrivesLeavesSelectionAndPlaceAlone()
    {
        for (int i = 0; i < 100; ++i) {
            take("North", QString("report %1").arg(i));
        }
        settle();
        table()->selectRow(50);
        table()->verticalScrollBar()->setValue(45);
        const QString atTop = shown().at(45);
        const QString selected = shown().at(50);
        take("North", "pump fail");
        take("South", "pump fail");
        take("North", "report 3"); // again: goes to the top
        take("North", "report 4");
        settle();
        QCOMPARE(shown().first(), "report 4");
        QCOMPARE(rowTexts(table(), 0)[NotificationModel::Count], QString::fromUtf8("×2"));
        QCOMPARE(shown().size(), 101);
        const QModelIndexList rows = table()->selectionModel()->selectedRows(NotificationModel::Message);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows.first().data(), selected);
        QCOMPARE(shown().at(table()->indexAt(QPoint(0, 0)).row()), atTop);

        table()->scrollToTop();
        const auto middle = table()->viewport()->rect().center();
        QTest::mouseMove(table()->viewport(), middle);
        QTRY_VERIFY(table()->viewport()->underMouse());
        const QString pointedAt =
            table()->indexAt(middle).siblingAtColumn(NotificationModel::Message).data().toString();
        take("North", "report under the mouse");
        settle();
        QCOMPARE(table()->indexAt(middle).siblingAtColumn(NotificationModel::Message).data().toString(),
                 pointedAt);
        QTest::mouseMove(m_window.get(), QPoint(1, 1));
        QTRY_COMPARE(shown().at(table()->indexAt(QPoint(0, 0)).row()), "report under the mouse");

        m_mode->removeStation("North"); // nothing of it is drawn any more
        QCOMPARE(shown().size(), 0);
    }

    void noRowMovesUnderTheMouseAndAnActionIsAboutWhatWasChosen()
    {
        for (int i = 0; i < 5; ++i) { // all are in view: there is nothing to scroll
            take("North", QString("pump %1 fail").arg(i));
        }
        settle();
        const QStringList before = shown();
        const QPoint place =
            table()->visualRect(table()->model()->index(3, NotificationModel::Message)).center();
        QTest::mouseMove(table()->viewport(), place);
        QTRY_VERIFY(table()->viewport()->underMouse());
        for (const char *text : {"pump 5 fail", "pump 6 fail", "pump 1 fail"}) { // the last is pointed at
            take("North", text);
        }
        settle();
        QCOMPARE(shown(), before);
        QCOMPARE(rowTexts(table(), 3)[NotificationModel::Count], QString::fromUtf8("×2"));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseMove(m_window.get(), QPoint(1, 1));
        QTRY_COMPARE(shown().mid(0, 3), QStringList({"pump 1 fail", "pump 6 fail", "pump 5 fail"}));
        QTest::mouseClick(control<QPushButton>("Cmd_meldung_accept"), Qt::LeftButton);
        QCOMPARE(tree().alarmCount(), 6);
        QVERIFY(rowTexts(table(), 0)[NotificationModel::State].startsWith("acknowledged"));

        // A mouse that just lies there does not keep what is new out of sight.
        QTest::mouseMove(table()->viewport(), place);
        auto *rest = table()->findChild<QTimer *>("Timer_rest");
        QTRY_VERIFY(rest->isActive());
        take("North", "pump 7 fail");
        settle();
        QVERIFY(!shown().contains("pump 7 fail"));
        rest->stop();
        QTRY_VERIFY((settle(), shown().contains("pump 7 fail")));
    }

    void theChoiceNarrowsAndWidensTheList()
    {
        take("North", "door open");
        take("South", "pump fail");
        take("South", "door fail");
        settle();
        QCOMPARE(shown(), {"door open"});
        QTest::mouseClick(control<QRadioButton>("Opt_meldung_1"), Qt::LeftButton, {}, QPoint(8, 10));
        QCOMPARE(shown(), QStringList({"door fail", "pump fail", "door open"}));
        QTest::keyClicks(control<QLineEdit>("Text_filter"), "SOUTH");
        QCOMPARE(shown(), QStringList({"door fail", "pump fail"}));
        control<QLineEdit>("Text_filter")->clear();
        QTest::keyClicks(control<QLineEdit>("Text_filter"), "door");
        QTest::mouseClick(control<QCheckBox>("Check_meldung_offen"), Qt::LeftButton, {}, QPoint(8, 10));
        QCOMPARE(shown(), {"door fail"});
        table()->selectRow(0);
        QTest::keyClick(table(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text().split('\t').mid(1),
                 QStringList({"South", "door fail", "not acknowledged", "", "+49\n"}));
        QTest::keyClick(table(), Qt::Key_Return);
        QCOMPARE(shown(), QStringList()); // acknowledged, and gone from what is not
        m_page->showEntry(tree().find("South/meldung/+49 --> M,door fail"));
        QCOMPARE(table()->currentIndex().siblingAtColumn(NotificationModel::Message).data(), "door fail");
    }

    void aTextOfSeveralLinesIsShownOnOne()
    {
        take("North", "pump\r\n1\tfail");
        settle();
        QCOMPARE(shown(), {"pump 1 fail"});
        QVERIFY(barText("lbl_alarm_latest").isEmpty());
        const QString when = m_now.toString("dd.MM.yyyy HH:mm:ss");
        QCOMPARE(barText("lbl_alarm_first"), when + QString::fromUtf8("   North · pump 1 fail"));
        QCOMPARE(rowTexts(table(), 0)[NotificationModel::Received], when);
    }

    void anEntryThatIsListedIsChosenWithoutAnotherChoice()
    {
        for (int i = 0; i < 100; ++i) {
            take("North", QString("report %1").arg(i));
        }
        settle();
        QTest::keyClicks(control<QLineEdit>("Text_filter"), "report");
        table()->verticalScrollBar()->setValue(2);
        m_page->showEntry(tree().find("North/meldung/+49 --> M,report 95"));
        QCOMPARE(table()->currentIndex().siblingAtColumn(NotificationModel::Message).data(), "report 95");
        QCOMPARE(table()->verticalScrollBar()->value(), 2);
        QCOMPARE(control<QLineEdit>("Text_filter")->text(), "report");
        QTest::keyClicks(control<QLineEdit>("Text_filter"), " 9");
        m_page->showEntry(tree().find("North/meldung/+49 --> M,report 3"));
        QCOMPARE(table()->currentIndex().siblingAtColumn(NotificationModel::Message).data(), "report 3");
        QCOMPARE(control<QLineEdit>("Text_filter")->text(), "");
    }

    void everythingIsReachedAtAnyWidth()
    {
        take("North", "pump fail");
        settle();
        QStringList reached;
        control<QLineEdit>("Text_filter")->setFocus();
        while (!table()->hasFocus() && reached.size() < 9) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached += QApplication::focusWidget()->objectName();
        }
        reached.removeAll("Opt_meldung_1"); // the arrow keys lead there on some systems
        QCOMPARE(reached, (QStringList{"Opt_meldung_0", "Check_meldung_offen", "Tbl_meldung"}));
        QTest::mouseClick(control<QRadioButton>("Opt_meldung_1"), Qt::LeftButton, {}, QPoint(8, 10));
        QTRY_COMPARE(table()->horizontalScrollBar()->maximum(), 0);
        QVERIFY(!table()->isColumnHidden(NotificationModel::Number));
        QVERIFY(m_page->minimumWidth() <= 340);
        table()->selectRow(0);
        table()->actions().constFirst()->trigger(); // of the menu
        QCOMPARE(tree().alarmCount(), 0);
    }

    void whatArrivesUnderTheQuestionIsNotAcknowledgedWithTheOthers()
    {
        take("North", "1 fail");
        take("South", "2 fail");
        settle();
        QTimer::singleShot(0, this, [this] {
            take("North", "3 fail");
            take("South", "2 fail"); // once more
            QWidget *question = QApplication::activeModalWidget();
            QVERIFY(question != nullptr);
            QTest::mouseClick(question->findChild<QPushButton *>("OKButton"), Qt::LeftButton);
        });
        QTest::mouseClick(m_bar->findChild<QPushButton *>("Cmd_alarm_accept"), Qt::LeftButton);
        settle();
        QCOMPARE(tree().alarmCount(), 2);
        QVERIFY(barText("lbl_alarm_first").endsWith("2 fail")); // red longest, and came again last
        QVERIFY(barText("lbl_alarm_latest").endsWith("2 fail"));
    }

    void theUsersWishForSilenceIsRememberedAndEnds()
    {
        test::ManualTimers timers;
        Milliseconds jump{0};
        const auto now = [&] {
            return QDateTime({2026, 11, 20}, {13, 30}).addMSecs((timers.now() + jump).count());
        };
        {
            AlarmMute mute(timers, now);
            connect(m_bar, &AlarmBar::muteWanted, &mute, &AlarmMute::setMuted);
            take("North", "pump fail");
            settle();
            QTest::mouseClick(m_bar->findChild<QCheckBox *>("Check_stumm"), Qt::LeftButton, {},
                              QPoint(8, 10));
            QVERIFY(m_bar->isVisible());
            QCOMPARE(mute.until().time(), QTime(14, 30));
        }
        AlarmMute mute(timers, now);
        timers.advance(std::chrono::minutes(59));
        QVERIFY(mute.isMuted());
        timers.advance(std::chrono::minutes(1));
        QVERIFY(!mute.isMuted());
        mute.setLength(AlarmMute::Length::Shift);
        mute.setMuted(true);
        QCOMPARE(mute.until().time(), QTime(22, 0));
        jump = -std::chrono::hours(24 * 365); // the clock was wrong
        timers.advance(std::chrono::minutes(1));
        QVERIFY(!mute.isMuted() && !AlarmMute(timers, now).isMuted());
    }

private:
    StationTree &tree() { return m_mode->tree(); }

    void take(const QString &kennung, const QString &text)
    {
        m_now = m_now.addMSecs(10);
        RecordedLine *line = m_lines[kennung == "North" ? 0 : 1];
        line->say("at+cmgs=\"+49\"\r");
        line->say("M," + text.toLatin1() + "\x1A");
    }

    void settle()
    {
        m_timers.advance(Milliseconds(1000));
        QCoreApplication::processEvents();
    }

    template <class Control> Control *control(const char *name) const
    {
        return m_page->findChild<Control *>(name);
    }

    QTableView *table() const { return control<QTableView>("Tbl_meldung"); }
    QString barText(const char *name) const { return m_bar->findChild<QLabel *>(name)->text(); }

    QStringList shown() const
    {
        QStringList texts;
        for (int row = 0; row < table()->model()->rowCount(); ++row) {
            texts += table()->model()->index(row, NotificationModel::Message).data().toString();
        }
        return texts;
    }

    TextTable m_texts;
    ManualTimers m_timers;
    QDateTime m_now = QDateTime(QDate(2009, 12, 24), QTime(14, 5));
    QList<RecordedLine *> m_lines;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<AlarmCentre> m_centre;
    std::unique_ptr<Acknowledging> m_acknowledging;
    std::unique_ptr<QWidget> m_window;
    AlarmBar *m_bar = nullptr;
    NotificationPage *m_page = nullptr;
};

QTEST_MAIN(NotificationPageTest)
#include "notification_page_test.moc"
