#include "opmode/keeping/nodes_file.h"
#include "opmode/window/form_betriebsmodus.h"
#include "opmode/window/retention_dialog.h"
#include "opmode/window/station_tree_view.h"
#include "platform/file_lock.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "record/record_care.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSysInfo>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QWheelEvent>

using namespace ktr;

class FormBetriebsmodusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(path("registry.json"));
    }
    void cleanup()
    {
        m_window.reset();
        m_mode.reset();
        m_lines.clear();
        m_folder.reset();
    }

    void withoutAListThereIsOneNewStationAndMoreGetNumbers()
    {
        open();
        QCOMPARE(stationNames(), QStringList("new"));
        click("mnu_station_add");
        click("mnu_station_add");
        QCOMPARE(stationNames(), (QStringList{"new", "new (1)", "new (2)"}));
        QCOMPARE(tree()->currentIndex().data().toString(), "new (2)");
        QCOMPARE(m_mode->tree().rowCount(tree()->currentIndex()), 3);
    }

    void renamingInTheTreeRefusesWhatAnotherStationHas()
    {
        open({"A", "B"});
        online("A");
        const auto rename = [this](const QString &name) {
            QTest::keyClick(tree(), Qt::Key_F2);
            auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
            QVERIFY(editor != nullptr);
            alarm(0, "DI1 " + name.toUtf8() + " fail"); // takes away neither the selection ...
            QTest::keyClicks(editor, name);
            alarm(0, "DI2 " + name.toUtf8() + " fail"); // ... nor what was typed
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_COMPARE(QApplication::focusWidget(), tree());
        };
        rename("B");
        QCOMPARE(stationNames(), (QStringList{"A", "B"}));
        QTRY_VERIFY(m_window->findChild<QLabel *>("lbl_event")->text().contains("\"B\""));
        rename("Works/4");
        QCOMPARE(stationNames(), (QStringList{"A", "B"}));
        rename("Works 4");
        QCOMPARE(stationNames(), (QStringList{"Works 4", "B"}));
        answerNext("OKButton");
        QVERIFY(m_window->close());
        QByteArray file;
        QVERIFY(readFile(path("nodes.xml"), file, 1 << 20));
        QVERIFY(file.contains("key=\"Works 4/ip/ip18\"") && !file.contains("key=\"A"));
    }

    void treeAndPagesFollowEachOther()
    {
        open({"A", "B"});
        auto *pages = m_window->findChild<QTabWidget *>("TabStrip_pages");
        tree()->setCurrentIndex(m_mode->tree().find("B/history"));
        QCOMPARE(pages->currentIndex(), 2);
        pages->setCurrentIndex(3);
        QCOMPARE(tree()->currentIndex().data(StationTree::KeyRole).toString(), "B/ip");
        tree()->setCurrentIndex(m_mode->tree().find("A"));
        QCOMPARE(pages->currentIndex(), 0);
        QCOMPARE(field("Text_pic0_name")->text(), "A");
    }

    void theAlarmsOfAllStationsStandOnAPageThatStays()
    {
        const QStringList stations{"A", "B", "C", "D", "E"};
        open(stations);
        for (const QString &station : stations) {
            online(station);
        }
        alarm(0, "DI1 fail");
        for (int i = 0; i < stations.size(); ++i) {
            alarm(i, "Power fail");
        }
        auto *pages = m_window->findChild<QTabWidget *>("TabStrip_pages");
        auto *list = m_window->findChild<QTreeView *>("Tree_alarms");
        m_timers.advance(Milliseconds(250));
        press(m_window->findChild<QWidget *>("AlarmBar"), "Cmd_alarm_all");
        QCOMPARE(pages->currentIndex(), 4);
        QCOMPARE(list->model()->rowCount(), 2);
        const auto textOf = [list](int row) { return list->model()->index(row, 1).data().toString(); };
        QCOMPARE(textOf(0), "DI1 fail"); // equally urgent, and came first
        QCOMPARE(list->model()->rowCount(list->model()->index(1, 0)), 5);
        tree()->setCurrentIndex(m_mode->tree().find("B"));
        QCOMPARE(pages->currentIndex(), 4);

        const QModelIndex storm = list->model()->index(1, 0);
        list->expand(storm);
        list->setCurrentIndex(list->model()->index(2, 0, storm));
        list->collapse(storm);
        list->selectionModel()->setCurrentIndex(list->model()->index(0, 0), QItemSelectionModel::NoUpdate);
        QTest::keyClick(list, Qt::Key_Space); // of what is no longer to be seen nothing is acknowledged
        QCOMPARE(m_mode->alarms().waitingCount(), 6);

        list->setCurrentIndex(list->model()->index(1, 0)); // the closed line of all five
        answerNext("CancelButton");
        QTest::keyClick(list, Qt::Key_Space);
        QCOMPARE(m_mode->alarms().waitingCount(), 6);
        answerNext("OKButton");
        QTest::keyClick(list, Qt::Key_Space);
        QCOMPARE(m_mode->alarms().waitingCount(), 1);

        list->setCurrentIndex(list->model()->index(0, 0));
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(pages->currentIndex(), 1);
        QCOMPARE(tree()->currentIndex().data(StationTree::KeyRole).toString(), "A/meldung");
        pages->setCurrentIndex(4);
        QTest::keyClick(list, Qt::Key_Space); // one alone is no question
        QCOMPARE(m_mode->alarms().waitingCount(), 0);
    }

    void afterAnAcknowledgementTheListGoesOnWithTheNextAlarm()
    {
        const QStringList stations{"A", "B", "C", "D"};
        open(stations);
        for (int i = 0; i < stations.size(); ++i) {
            online(stations[i]);
            alarm(i, "DI" + QByteArray::number(i) + " fail");
        }
        m_timers.advance(Milliseconds(250));
        press(m_window->findChild<QWidget *>("AlarmBar"), "Cmd_alarm_all");
        auto *list = m_window->findChild<QTreeView *>("Tree_alarms");
        auto *accept = list->parentWidget()->findChild<QPushButton *>("Cmd_alarm_accept"); // not the bar's
        const auto chosen = [list] {
            QStringList texts;
            for (const QModelIndex &line : list->selectionModel()->selectedRows(1)) {
                texts += line.data().toString();
            }
            return texts;
        };
        list->setFocus();
        list->setCurrentIndex(list->model()->index(1, 0));
        QCOMPARE(chosen(), QStringList("DI1 fail"));
        QTest::mouseClick(accept, Qt::LeftButton);
        QVERIFY(m_mode->alarms().waitingCount() == 3 && list->hasFocus());
        QCOMPARE(chosen(), QStringList("DI2 fail"));
        QTest::mouseClick(accept, Qt::LeftButton);
        QTest::mouseDClick(accept, Qt::LeftButton); // the second half of a double click is about nothing
        QCOMPARE(m_mode->alarms().waitingCount(), 2);
        QCOMPARE(chosen(), QStringList("DI3 fail"));
        m_timers.advance(Milliseconds(1000)); // what is acknowledged goes to its place
        QCOMPARE(chosen(), QStringList("DI3 fail"));
        accept->setFocus();
        QTest::keyClick(accept, Qt::Key_Space); // the last one of the list: it goes on above
        QVERIFY(m_mode->alarms().waitingCount() == 1 && list->hasFocus());
        QCOMPARE(chosen(), QStringList("DI0 fail"));
        QTest::keyClick(list, Qt::Key_Space);
        QVERIFY(m_mode->alarms().waitingCount() == 0 && list->hasFocus());

        for (int i = 0; i < 3; ++i) {
            alarm(i, "Power fail");
        }
        auto *all = list->parentWidget()->findChild<QPushButton *>("Cmd_alarm_acceptAll");
        QTRY_VERIFY((m_timers.advance(Milliseconds(250)), all->isEnabled()));
        answerNext("OKButton");
        QTest::mouseClick(all, Qt::LeftButton);
        QCOMPARE(m_mode->alarms().waitingCount(), 0);
        QCOMPARE(m_window->focusWidget(), list);
    }

    void aLineOfTheRecordLeadsToItsNotificationOrTellsThatItsStationIsGone()
    {
        open({"A", "B"});
        online("B");
        alarm(1, "DI1 fail");
        QVERIFY(m_mode->keepsChanges());
        click("mnu_record");
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto record = std::ranges::find(windows, QString("Form_record"), &QWidget::objectName);
        QVERIFY(record != windows.end());
        QTest::keyClicks((*record)->findChild<QLineEdit *>("Text_record_text"), "DI1");
        auto *found = (*record)->findChild<QTableView *>("Table_record");
        QTRY_COMPARE(found->model()->rowCount(), 1);
        found->selectRow(0);
        QTest::keyClick(found, Qt::Key_Return);
        QCOMPARE(tree()->currentIndex().data(StationTree::KeyRole).toString(), "B/meldung");
        const auto *notifications = m_window->findChild<QTableView *>("Tbl_meldung");
        QCOMPARE(notifications->selectionModel()->selectedRows().size(), 1);
        m_mode->removeStation("B");
        QTest::keyClick(found, Qt::Key_Return);
        QVERIFY((*record)->findChild<QLabel *>("Label_record_count")->text().contains("\"B\""));
    }

    void anAddressIsCheckedBeforeTheStationTakesIt()
    {
        open({"A"});
        typeOver(field("Text_pic0_hostAddress"), "300.1.2.3\n");
        QCOMPARE(m_mode->station("A")->hostAddress(), "");
        QVERIFY(m_window->findChild<QLabel *>("lbl_pic0_address")->isVisible());
        typeOver(field("Text_pic0_hostAddress"), "10.0.0.7");
        check("Check_pic0_online"); // counts what was typed and not left
        QCOMPARE(m_mode->station("A")->hostAddress(), "10.0.0.7");
        QCOMPARE(m_lines[0]->sent, QByteArrayList{"config\r\n"});
        QVERIFY(!m_window->findChild<QLabel *>("lbl_pic0_address")->isVisible());
        check("Check_pic0_online");
        QVERIFY(!m_lines[0]->isOpen());
    }

    void aRefusedNameStaysWithItsReasonUntilItIsRightOrGivenUp()
    {
        open({"A", "B"});
        auto *problem = m_window->findChild<QLabel *>("lbl_pic0_name");
        for (const char *refused : {"", "A/1", "B"}) {
            typeOver(field("Text_pic0_name"), QString::fromLatin1(refused) + '\n');
            QVERIFY(problem->isVisible());
            QCOMPARE(field("Text_pic0_name")->text(), refused);
        }
        QVERIFY(problem->text().contains("\"B\""));
        m_mode->removeStation("B"); // the reason goes
        QVERIFY(!problem->isVisible());
        typeOver(field("Text_pic0_name"), "A/1\n");
        QTest::keyClick(field("Text_pic0_name"), Qt::Key_Escape);
        QVERIFY(!problem->isVisible());
        QCOMPARE(field("Text_pic0_name")->text(), "A");
    }

    void aTimeThatIsNoneIsFoundFaultWithWhereADayIsChosen()
    {
        open({"A"});
        auto *problem = m_window->findChild<QLabel *>("lbl_pic0_exclusiveOFF");
        typeOver(field("Text_pic0_exclusiveOFF"), "25:99\n");
        QVERIFY(!problem->isVisible());
        auto *day = m_window->findChild<QComboBox *>("Combo_pic0_exclusiveOFF");
        const QPointF middle = day->rect().center();
        QWheelEvent wheel(middle, day->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(day, &wheel); // the page is scrolled, not the list
        QCOMPARE(day->currentIndex(), 0);
        day->setFocus();
        QTest::keyClick(day, Qt::Key_Down);
        QVERIFY(problem->isVisible());
        typeOver(field("Text_pic0_exclusiveOFF"), "5:9");
        QVERIFY(!problem->isVisible());
    }

    void theExclusiveScheduleIsEditedAndActsAtOnce()
    {
        open({"A"}); // it is Sunday, 14:05
        auto *day = m_window->findChild<QComboBox *>("Combo_pic0_exclusiveON");
        QCOMPARE(day->itemText(10), "sontags");
        QCOMPARE(day->itemText(0), QString::fromUtf8("ungültig"));
        day->setFocus();
        QTest::keyClick(day, Qt::Key_End);
        typeOver(field("Text_pic0_exclusiveON"), "7:5");
        QVERIFY(m_mode->station("A")->exclusiveMode());
        QVERIFY(m_window->findChild<QCheckBox *>("Check_pic0_exclusive")->isChecked());
        QTest::keyClick(field("Text_pic0_exclusiveON"), Qt::Key_Tab);
        QCOMPARE(field("Text_pic0_exclusiveON")->text(), "07:05");
        QCOMPARE(m_mode->schedule("A").hourOn, "07:05");
        check("Check_pic0_exclusive");
        QVERIFY(!m_mode->station("A")->exclusiveMode());
    }

    void howLongWhatIsKeptIsChosenAndTheRecordCopied()
    {
        open({"A"});
        RetentionDialog dialog(*m_mode, m_texts, [this](auto, auto) { return path("copy.sqlite"); });
        const auto *figures = dialog.findChild<QLabel *>("lbl_record");
        QTRY_VERIFY2(figures->text().contains("Events: "), qPrintable(figures->text()));
        press(&dialog, "Cmd_record_backup");
        QTRY_VERIFY(dialog.findChild<QLabel *>("lbl_backup")->text().endsWith("copy.sqlite"));
        QVERIFY(checkRecord(path("copy.sqlite")).faults.isEmpty());
        dialog.findChild<QSpinBox *>("Spin_tree")->setValue(30); // the record keeps them
        press(&dialog, "Cmd_record_ok");
        QCOMPARE(m_mode->retention().tree, 30);
        dialog.findChild<QSpinBox *>("Spin_events")->setValue(60);
        QTimer::singleShot(0, this, [] {
            QWidget *question = QApplication::activeModalWidget();
            QVERIFY(question->accessibleName().contains("60"));
            QTest::keyClick(question, Qt::Key_Return); // loses nothing
        });
        press(&dialog, "Cmd_record_ok");
        QCOMPARE(m_mode->retention().events, 0);
        answerNext("OKButton");
        press(&dialog, "Cmd_record_ok");
        QCOMPARE(m_mode->retention().events, 60);
    }

    void deletingAsksAndAlarmsOfTheStationGoWithIt()
    {
        open({"A", "B"});
        online("A");
        alarm(0, "DI1 fail");
        QTRY_VERIFY(m_window->findChild<QWidget *>("AlarmBar")->isVisible());
        QVERIFY(m_window->windowTitle().startsWith("(1!)"));
        tree()->setCurrentIndex(m_mode->tree().find("A"));
        for (const char *action : {"mnu_station_del", "mnu_station_alloffline"}) { // Enter loses nothing
            QTimer::singleShot(0, this,
                               [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return); });
            click(action);
        }
        QVERIFY(stationNames().size() == 2 && m_mode->station("A")->online());
        answerNext("CancelButton");
        click("mnu_station_del");
        QCOMPARE(stationNames().size(), 2);
        answerNext("OKButton");
        click("mnu_station_del");
        QCOMPARE(stationNames(), QStringList("B"));
        m_timers.advance(Milliseconds(1000));
        QTRY_VERIFY(!m_window->findChild<QWidget *>("AlarmBar")->isVisible());
        QCOMPARE(field("Text_pic0_name")->text(), "B");
    }

    void anAlarmIsMadeVisibleAndAcknowledgedFromTheBar()
    {
        open({"A", "B"});
        online("B");
        alarm(1, "Pump 1 fail");
        const QModelIndex branch = m_mode->tree().find("B/meldung");
        QTRY_VERIFY(tree()->isExpanded(branch) && tree()->isExpanded(branch.parent()));
        auto *bar = m_window->findChild<QWidget *>("AlarmBar");
        QTRY_VERIFY(bar->isVisible());
        QCOMPARE(m_mode->tree().alarmCount(), 1);
        const auto buttons = bar->findChildren<QPushButton *>();
        const auto accept = std::ranges::find(buttons, QString("Acknowledge"), &QPushButton::text);
        QVERIFY(accept != buttons.end());
        QTest::mouseClick(*accept, Qt::LeftButton);
        QCOMPARE(m_mode->tree().alarmCount(), 0);
        m_timers.advance(Milliseconds(1000));
        QTRY_VERIFY(!bar->isVisible());
        QVERIFY(!m_window->windowTitle().contains('!'));
        auto *closing = m_window->findChild<QTimer *>("Timer_close");
        QVERIFY(closing->isActive() && closing->remainingTime() <= 10'000); // while one looks
        closing->start(0);
        QTRY_VERIFY(!tree()->isExpanded(branch.parent()));
    }

    void aRightClickBelowTheLastRowOffersNothingAboutAStation()
    {
        open({"A"});
        for (const bool isBelow : {false, true}) {
            const QRect row = tree()->visualRect(m_mode->tree().find("A"));
            const QPoint place = row.center() + QPoint(0, isBelow ? 10 * row.height() : 0);
            QContextMenuEvent event(QContextMenuEvent::Mouse, place, tree()->viewport()->mapToGlobal(place));
            QApplication::sendEvent(tree()->viewport(), &event);
            const auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (const char *about : {"mnu_station_del", "mnu_station_rename", "mnu_station_online",
                                      "mnu_konfiguration", "mnu_export"}) {
                QCOMPARE(menu->actions().contains(m_window->findChild<QAction *>(about)), !isBelow);
            }
            QVERIFY(menu->actions().contains(m_window->findChild<QAction *>("mnu_station_add")));
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        }
    }

    void nothingMovesAwayFromUnderTheMouseInAnAlarmShower()
    {
        open({"A", "B", "C", "D", "E", "F", "G", "H"});
        for (int station = 0; station < 8; ++station) {
            online(QString(QChar(u'A' + station)));
        }
        alarm(0, "Pump 1 on");
        tree()->expand(m_mode->tree().find("A"));
        tree()->expand(m_mode->tree().find("A/meldung"));
        QTRY_VERIFY(isSeen("A/meldung/+4917012345 --> M,Pump 1 on"));
        const auto pointAt = [this](const QPoint &place) {
            QTest::mouseMove(m_window->windowHandle(), m_window->mapFromGlobal(place));
            return QTest::qWaitFor([this] { return tree()->underMouse(); }, 60'000);
        };
        auto *rest = tree()->findChild<QTimer *>("Timer_rest");
        QVERIFY(pointAt(placeOf("A"))); // nor below it, as long as the mouse was moved just now
        const QPoint next = placeOf("B");
        alarm(0, "Pump 1 fail");
        QVERIFY(awaitTurns(15)); // more than the hand's own rest takes
        QCOMPARE(placeOf("B"), next);
        rest->stop();
        QTRY_VERIFY(isSeen("A/meldung/+4917012345 --> M,Pump 1 fail"));
        const QPoint place = placeOf("F");
        QVERIFY(pointAt(place));
        QTRY_VERIFY(rest->isActive());
        rest->stop();
        const auto shower = [this](const QByteArray &text) {
            for (int number = 0; number < 24; ++number) {
                alarm(number % 8, text + QByteArray::number(number) + " fail");
            }
        };
        shower("first ");
        // What is new above is to be seen, and the row stays.
        QTRY_VERIFY(isSeen("A/meldung/+4917012345 --> M,first 16 fail"));
        QVERIFY(awaitTurns());
        QCOMPARE(placeOf("F"), place);
        QVERIFY(!tree()->isExpanded(m_mode->tree().find("B")));
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->viewport()->mapFromGlobal(place));
        QCOMPARE(tree()->currentIndex().data().toString(), "F");
        QCOMPARE(field("Text_pic0_name")->text(), "F");

        // The focus of the user's click holds it, too; when both are elsewhere the alarms are made visible.
        QTest::mouseMove(m_window->windowHandle(), {5, 5});
        QTRY_VERIFY(!tree()->underMouse());
        shower("second ");
        QTRY_VERIFY(isSeen("A/meldung/+4917012345 --> M,second 16 fail"));
        QVERIFY(awaitTurns());
        QCOMPARE(placeOf("F"), place);
        QVERIFY(!tree()->isExpanded(m_mode->tree().find("B")));
        field("Text_filter_station")->setFocus();
        QTRY_VERIFY(tree()->isExpanded(m_mode->tree().find("B/meldung")));
        QCOMPARE(placeOf("F"), place); // which the user chose: branches open around it

        // After the storm it closes what it opened, but for the latest alarm.
        tree()->expand(m_mode->tree().find("C/history"));
        tree()->setCurrentIndex(m_mode->tree().find("D/meldung"));
        m_window->findChild<QTimer *>("Timer_quiet")->start(0);
        QTRY_VERIFY(!tree()->isExpanded(m_mode->tree().find("B")));
        for (const char *open : {"A", "A/meldung", "D", "H", "H/meldung"}) {
            QVERIFY2(tree()->isExpanded(m_mode->tree().find(open)), open);
        }
        QVERIFY(!tree()->isExpanded(m_mode->tree().find("D/meldung")));

        // What is acknowledged closes as well, and what the user is at once that is elsewhere.
        tree()->setCurrentIndex(m_mode->tree().find("A"));
        QVERIFY(m_mode->acknowledge({m_mode->tree().find("D"), m_mode->tree().find("H")}));
        m_window->findChild<QTimer *>("Timer_close")->start(0);
        QTRY_VERIFY(!tree()->isExpanded(m_mode->tree().find("H")));
        QVERIFY(!tree()->isExpanded(m_mode->tree().find("D")) &&
                tree()->isExpanded(m_mode->tree().find("A")));
    }

    void theTreeScrollsToAnAlarmUntilSomebodyWorksInIt()
    {
        QStringList stations;
        for (int number = 10; number < 70; ++number) {
            stations += 'S' + QString::number(number);
        }
        open(stations);
        for (const QString &station : std::as_const(stations)) {
            online(station);
        }
        alarm(59, "DI1 fail");
        QTRY_VERIFY(isInView("S69/meldung/+4917012345 --> M,DI1 fail"));
        tree()->scrollToTop();
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {},
                          tree()->visualRect(m_mode->tree().find("S15")).center());
        field("Text_filter_station")->setFocus();
        QTest::mouseMove(m_window->windowHandle(), {5, 5});
        QTRY_VERIFY(!tree()->underMouse());
        const QPoint place = placeOf("S15");
        for (const int station : {2, 50}) { // above and below it
            alarm(station, "DI1 fail");
            QTRY_VERIFY(tree()->isExpanded(m_mode->tree().find(stations[station] + "/meldung")));
            QCOMPARE(placeOf("S15"), place);
        }
        QVERIFY(!isInView("S60/meldung/+4917012345 --> M,DI1 fail"));
    }

    void aFilterThatFollowsTheAlarmsMovesNothingUnderTheMouse()
    {
        open({"A", "B", "C", "D"});
        for (const char *station : {"A", "B", "C", "D"}) {
            online(station);
        }
        alarm(0, "DI1 fail");
        alarm(2, "DI1 fail");
        auto *kind = m_window->findChild<QComboBox *>("Combo_filter_station");
        kind->setFocus();
        QTest::keyClick(kind, Qt::Key_Down); // in alarm
        QTRY_VERIFY(tree()->isRowHidden(3, {}) && tree()->isExpanded(m_mode->tree().find("C/meldung")));
        const QPoint place = placeOf("C");
        QTest::mouseMove(m_window->windowHandle(), m_window->mapFromGlobal(place));
        QTRY_VERIFY(tree()->underMouse());
        alarm(1, "DI1 fail");
        QVERIFY(awaitTurns() && tree()->isRowHidden(1, {}));
        tree()->findChild<QTimer *>("Timer_rest")->stop();
        QTRY_VERIFY(!tree()->isRowHidden(1, {}));
        QCOMPARE(placeOf("C"), place);
        QVERIFY(m_mode->acknowledge({m_mode->tree().find("A"), m_mode->tree().find("B")}));
        QVERIFY(awaitTurns());
        QCOMPARE(placeOf("C"), place);
        QTest::mouseMove(m_window->windowHandle(), {5, 5});
        QTRY_VERIFY(tree()->isRowHidden(1, {}));
        QVERIFY(!tree()->isRowHidden(0, {})); // its page is open: it goes when another one is chosen
        QCOMPARE(tree()->chosenStations(), QStringList("A"));
        tree()->choose(m_mode->tree().find("C"));
        QTRY_VERIFY(tree()->isRowHidden(0, {}));
    }

    void theFilterHidesStationsAndCountsTellIt()
    {
        open({"Pump 1", "Tank", "Pump 2"});
        QVERIFY(m_window->findChild<QLabel *>("lbl_counts")->text().contains('3')); // at once
        m_mode->setHostAddress("Tank", "10.0.0.9");
        const auto shown = [this] {
            QStringList names;
            for (int row = 0; row < m_mode->tree().rowCount(); ++row) {
                if (!tree()->isRowHidden(row, {})) {
                    names += m_mode->tree().index(row, 0).data().toString();
                }
            }
            return names;
        };
        typeOver(field("Text_filter_station"), "pump");
        QTRY_COMPARE(shown(), (QStringList{"Pump 1", "Pump 2"}));
        typeOver(field("Text_filter_station"), "0.9");
        QTRY_COMPARE(shown(), QStringList("Tank"));
        QTRY_VERIFY(m_window->findChild<QLabel *>("lbl_counts")->text().contains('1'));
        typeOver(field("Text_filter_station"), "");
        QTRY_COMPARE(shown().size(), 3);
    }

    void whileAQuestionIsOpenTheWindowDoesNotClose()
    {
        open({"A"});
        bool closed = true;
        QTimer::singleShot(0, this, [&] {
            closed = m_window->close();
            press(QApplication::activeModalWidget(), "CancelButton");
        });
        click("mnu_station_del");
        QVERIFY(!closed && m_window->isVisible() && m_mode->isOpen());
        QSignalSpy gone(m_window.get(), &Form_betriebsmodus::closed);
        QVERIFY(m_window->close());
        QCOMPARE(gone.size(), 1);
        QCOMPARE(m_mode->stations().Count(), 0);
    }

    void aListThatCannotBeWrittenIsAskedAboutAndNothingIsLost()
    {
        open({"A"});
        online("A");
        alarm(0, "DI1 fail");
        QVERIFY(QFile::rename(path("nodes.xml"), path("old.xml")));
        QVERIFY(QDir(m_folder->path()).mkdir("nodes.xml")); // nothing can take its place
        m_window->setAsksBeforeEnd(false);                  // that A is watched
        answerNext("CancelButton");
        QVERIFY(!m_window->close());
        QVERIFY(m_mode->station("A")->online());
        answerNext("OKButton");
        QVERIFY(m_window->close());
        QVERIFY(QDir(m_folder->path()).rmdir("nodes.xml") &&
                QFile::rename(path("old.xml"), path("nodes.xml")));
        cleanupWindow();
        openWindow();
        QCOMPARE(m_mode->tree().alarmCount(), 1);
    }

    void aListThatCannotBeUsedIsToldUntilTheUserDealsWithIt()
    {
        QVERIFY(test::writeFile(path("nodes.xml"), "torn"));
        openWindow();
        answerMessage();
        QVERIFY(banner()->isVisible() && banner()->findChild<QPushButton *>("Cmd_list_empty")->isVisible());
        QVERIFY(banner()->findChild<QLabel *>("lbl_list_reason")->text().contains(path("nodes.xml")));
        QCOMPARE(stationNames(), QStringList("new"));
        QVERIFY(!tree()->isEnabled() && !m_window->findChild<QAction *>("mnu_station_add")->isEnabled());
        QVERIFY(m_window->close());
        QCOMPARE(test::contentOf(path("nodes.xml")), "torn"); // as it was
        cleanupWindow();
        openWindow();
        answerMessage();
        press(banner(), "Cmd_list_retry");
        answerMessage();
        QVERIFY(banner()->isVisible());
        answerNext("OKButton");
        press(banner(), "Cmd_list_empty");
        QVERIFY(!banner()->isVisible() && tree()->isEnabled());
        click("mnu_station_add");
        QCOMPARE(stationNames(), (QStringList{"new", "new (1)"}));
        QVERIFY(m_window->close());
        QCOMPARE(test::contentOf(path("nodes (1).xml")), "torn");
        QVERIFY(test::contentOf(path("nodes.xml")).contains("new (1)"));
    }

    void whatOfAListWasLostIsToldUntilTheUserNotesIt()
    {
        QVERIFY(test::writeFile(path("nodes.xml"), "<KTR><item1 key=\"A text=\"A\"/>"
                                                   "<item2 key=\"A/meldung\" text=\"N\"/></KTR>"));
        openWindow();
        answerMessage();
        QVERIFY(banner()->isVisible() && tree()->isEnabled());
        QVERIFY(banner()->findChild<QLabel *>("lbl_list_reason")->text().section('\n', 0, 0).endsWith(": A"));
        QCOMPARE(stationNames(), QStringList("A"));
        press(banner(), "Cmd_list_noted");
        QVERIFY(!banner()->isVisible());
    }

    void whatKeepsAListFromBeingKeptOrLockedIsToldAsLongAsItDoes()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("nodes.lock") && QDir(m_folder->path()).mkdir("record.sqlite"));
        open({"A"});
        QVERIFY(isTold("LockBanner", path("nodes.lock")));
        QVERIFY(isTold("UnkeptBanner", path("record.sqlite"))); // there is none
        QVERIFY(m_window->windowTitle().startsWith("(1!)"));    // an alarm without an entry in the tree
        press(m_window->findChild<QWidget *>("AlarmBar"), "Cmd_alarm_latest");
        m_mode->closeWithoutFile();
        m_lines.clear();
        QVERIFY(QDir(m_folder->path()).rmdir("record.sqlite"));
        QVERIFY(m_mode->open(path("nodes.xml"), OperationalMode::Use::Keep));
        QVERIFY(!isTold("UnkeptBanner", "") && m_mode->keepsChanges());
        m_mode->addStation("A");
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other"); // has the record to itself
        other.setDatabaseName(m_mode->recordPath());
        QVERIFY(other.open() && other.exec("BEGIN EXCLUSIVE").lastError().type() == QSqlError::NoError);
        online("A"); // two changes
        alarm(0, "DI1 fail");
        m_timers.advance(Milliseconds(10));
        QTRY_VERIFY(isTold("UnkeptBanner", path("record.sqlite")));
        const auto waiting = [this](quint64 count) {
            return isTold("UnkeptBanner", QStringLiteral("wait: %1.").arg(count));
        };
        const quint64 count = m_mode->unkeptChanges()->count;
        QVERIFY(count > 2 && waiting(count));
        alarm(0, "DI1 fail");
        m_timers.advance(Milliseconds(1000));
        QVERIFY(m_mode->unkeptChanges()->count > count && waiting(m_mode->unkeptChanges()->count));
        other.close();
        const auto isKept = [&] {
            m_timers.advance(RecordWriter::retryDelay);
            return !isTold("UnkeptBanner", "");
        };
        QTRY_VERIFY(isKept());
        m_timers.advance(Milliseconds(0));
        const std::map<qint64, AlarmRow> &standing = m_mode->alarms().standing();
        QVERIFY(std::ranges::any_of(standing, [](const auto &each) {
            return each.second.kind == AlarmKind::Disk && each.second.over != 0;
        }));
        press(m_window->findChild<QWidget *>("LockBanner"), "Cmd_list_noted");
        QVERIFY(!isTold("LockBanner", ""));
    }

    void aListThatAnotherProgramWatchesIsJoinedOrWatchedOnceThatIsOver()
    {
        open({"A"});
        m_mode->setHostAddress("A", "10.0.0.7");
        m_mode->setOnline("A", true);
        {
            test::ManualTimers timers; // apart from those of who keeps the list
            OperationalMode viewer(
                {test::fixedEnvironment(), timers, [] { return std::make_unique<test::RecordedLine>(); }},
                {});
            QVERIFY(m_mode->keepsChanges());
            Form_betriebsmodus second(viewer, m_texts, {m_timers, test::english(), {}, {}});
            second.show();
            second.open(path("nodes.xml"));
            auto *joined = second.findChild<QWidget *>("JoinedBanner");
            auto *watch = joined->findChild<QPushButton *>("Cmd_list_watch");
            QVERIFY(viewer.isJoined() && joined->isVisible() && !watch->isVisible());
            const auto *online = second.findChild<QWidget *>("Check_pic0_online");
            QVERIFY(online != nullptr && online->isEnabled());
            const auto isOffered = [&second](const char *action) {
                const auto *found = second.findChild<QAction *>(action);
                return found->isEnabled() && !found->toolTip().startsWith("Done in");
            };
            QVERIFY(!isOffered("mnu_rules") && isOffered("mnu_maintenance") && isOffered("mnu_station_add"));
            QVERIFY(second.windowTitle().contains(QSysInfo::machineHostName()));
            timers.advance(KeeperBeat::patience + ListFollower::period);
            const auto *headline = joined->findChild<QLabel *>("lbl_list");
            QVERIFY(headline->text().endsWith("is not heard") && !watch->isVisible());
            m_mode->setHostAddress("A", "10.0.0.8");
            QVERIFY(m_mode->keepsChanges());
            timers.advance(ListFollower::period);
            QVERIFY(headline->text().startsWith("Another program watches"));
            answerNext("OKButton");
            QVERIFY(m_window->close());
            cleanupWindow();
            timers.advance(ListFollower::period);
            QVERIFY(!second.windowTitle().contains(QSysInfo::machineHostName()) && !online->isEnabled());
            QVERIFY(!isOffered("mnu_maintenance") && !isOffered("mnu_station_add"));
            press(joined, "Cmd_list_watch");
            QVERIFY(!viewer.isJoined() && !joined->isVisible() && online->isEnabled());
            QVERIFY(isOffered("mnu_rules") && isOffered("mnu_maintenance") && isOffered("mnu_station_add"));
            answerNext("OKButton");
            QVERIFY(second.close());
        }
        FileLock other;
        QCOMPARE(other.take(listLockPath(path("nodes.xml"))), FileLock::Outcome::Taken);
        openWindow();
        answerMessage();
        QVERIFY(banner()->isVisible() && !banner()->findChild<QPushButton *>("Cmd_list_empty")->isVisible());
        QVERIFY(
            banner()->findChild<QLabel *>("lbl_list_reason")->text().contains(QSysInfo::machineHostName()));
        QVERIFY(m_lines.isEmpty() && stationNames().isEmpty());
        other.release();
        press(banner(), "Cmd_list_retry");
        QVERIFY(!banner()->isVisible() && tree()->isEnabled());
        QCOMPARE(stationNames(), QStringList("A"));
        QCOMPARE(m_lines[0]->sent, QByteArrayList{"config\r\n"});
    }

private:
    QWidget *banner() const { return m_window->findChild<QWidget *>("ListBanner"); }
    bool isTold(const char *banner, const QString &text) const
    {
        const auto *shown = m_window->findChild<QWidget *>(banner);
        return shown->isVisible() && shown->findChild<QLabel *>("lbl_list_reason")->text().contains(text);
    }
    /// A message that names the file is there; it is read.
    void answerMessage(const QString &file = "nodes.xml")
    {
        QPointer<QWidget> box;
        QVERIFY(QTest::qWaitFor(
            [&box] {
                for (QWidget *window : QApplication::topLevelWidgets()) {
                    if (window->objectName() == "Dialog" && window->isVisible()) {
                        box = window;
                    }
                }
                return !box.isNull();
            },
            60'000));
        QVERIFY(box->accessibleName().contains(path(file)));
        press(box, "OKButton");
        QVERIFY(QTest::qWaitFor([&box] { return box.isNull(); }, 60'000));
    }
    QString path(const QString &name) const { return m_folder->filePath(name); }

    void open(const QStringList &stations = {})
    {
        QByteArray document;
        for (const QString &station : stations) {
            const QByteArray name = station.toUtf8();
            document += "<item key=\"" + name + "\" text=\"" + name + "\" ForeColor=\"-2147483640\"/>";
        }
        if (!stations.isEmpty()) {
            QVERIFY(replaceFile(path("nodes.xml"), "<KTR>" + document + "</KTR>"));
        }
        openWindow();
    }

    void openWindow()
    {
        const auto createLine = [this] {
            auto line = std::make_unique<test::RecordedLine>();
            m_lines += line.get();
            return line;
        };
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{test::fixedEnvironment(), m_timers, createLine, [] {},
                                      test::manualCallbackTimers(m_timers)},
            stationCaptions(m_texts));
        m_window = std::make_unique<Form_betriebsmodus>(
            *m_mode, m_texts, Form_betriebsmodus::Services{m_timers, test::english(), {}, {}});
        m_window->show();
        m_window->open(path("nodes.xml"));
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get())); // a message may be the active one
        if (m_mode->hindrance() == OperationalMode::Hindrance::None) {
            QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        }
    }

    void cleanupWindow()
    {
        m_window.reset();
        m_mode.reset();
        m_lines.clear();
    }

    /// A place in a node's row on the screen.
    QPoint placeOf(const QString &key) const
    {
        const QRect row = tree()->visualRect(m_mode->tree().find(key));
        return tree()->viewport()->mapToGlobal(QPoint(row.left() + 40, row.center().y()));
    }
    /// Whether a node has a row, in the part that is scrolled to or not.
    bool isSeen(const QString &key) const { return tree()->visualRect(m_mode->tree().find(key)).isValid(); }
    bool isInView(const QString &key) const
    {
        const QRect row = tree()->visualRect(m_mode->tree().find(key));
        return tree()->viewport()->rect().contains(row.center());
    }
    /// Waits until the tree has several times had the opportunity to show what it keeps back.
    bool awaitTurns(int count = 5)
    {
        auto *timer = m_window->findChild<QTimer *>("Timer_doView");
        QSignalSpy turns(timer, &QTimer::timeout);
        return QTest::qWaitFor([&] { return turns.size() >= count; }, 60'000);
    }
    StationTreeView *tree() const { return m_window->findChild<StationTreeView *>(); }
    QLineEdit *field(const char *name) const { return m_window->findChild<QLineEdit *>(name); }
    void click(const char *action) { m_window->findChild<QAction *>(action)->trigger(); }

    void check(const char *name)
    {
        auto *box = m_window->findChild<QCheckBox *>(name);
        QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
    }

    static void typeOver(QLineEdit *edit, const QString &text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        for (const QChar c : text) {
            c == u'\n' ? QTest::keyClick(edit, Qt::Key_Return) : QTest::keyClick(edit, c.toLatin1());
        }
    }

    static void press(QWidget *question, const char *button)
    {
        QVERIFY(question != nullptr);
        QTest::mouseClick(question->findChild<QPushButton *>(button), Qt::LeftButton);
    }
    void answerNext(const char *button)
    {
        QTimer::singleShot(0, this, [button] { press(QApplication::activeModalWidget(), button); });
    }

    QStringList stationNames() const
    {
        QStringList names;
        for (int row = 0; row < m_mode->tree().rowCount(); ++row) {
            names += m_mode->tree().index(row, 0).data().toString();
        }
        return names;
    }

    void online(const QString &kennung)
    {
        m_mode->setHostAddress(kennung, "10.0.0.7");
        m_mode->setOnline(kennung, true);
    }
    void alarm(int station, const QByteArray &text)
    {
        m_lines[station]->say("at+cmgs=\"+4917012345\"\r");
        m_lines[station]->say("M," + text + '\x1A');
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    TextTable m_texts;
    test::ManualTimers m_timers;
    QList<test::RecordedLine *> m_lines;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<Form_betriebsmodus> m_window;
};

QTEST_MAIN(FormBetriebsmodusTest)
#include "form_betriebsmodus_test.moc"
