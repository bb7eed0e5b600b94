#include "opmode/overview/overview_model.h"
#include "opmode/window/form_betriebsmodus.h"
#include "opmode/window/overview/overview_view.h"
#include "opmode/window/station_tree_view.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace ktr;
using namespace ktr::test;

class SeveralStationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
    }
    void cleanup()
    {
        leave();
        m_folder.reset();
    }

    void severalAreChosenInTheTreeAndTheOverviewAlike()
    {
        open(8);
        click("S0");
        click("S3", Qt::ShiftModifier);
        click("S6", Qt::ControlModifier);
        QCOMPARE(tree()->chosenStations(), (QStringList{"S0", "S1", "S2", "S3", "S6"}));
        QVERIFY(label("lbl_chosen")->isVisible() && label("lbl_chosen")->text().startsWith("5 "));
        QVERIFY(!action("mnu_station_rename")->isEnabled() && action("mnu_station_del")->isEnabled());
        m_window->findChild<QTabWidget *>("TabStrip_pages")
            ->setCurrentIndex(2); // pages are about one of them
        QCOMPARE(tree()->chosenCount(), 5);
        action("mnu_overview")->trigger();
        auto *view = m_window->findChild<OverviewView *>("List_overview");
        QCOMPARE(view->chosenStations().size(), 5);
        QTest::keyClick(view, Qt::Key_Home);
        QTest::keyClick(view, Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(tree()->chosenStations(), (QStringList{"S0", "S1"}));
        QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(tree()->chosenCount(), 8);
        action("mnu_ansicht_normal")->trigger();
        tree()->setFocus();
        QTest::keyClick(tree(), Qt::Key_Up);
        QCOMPARE(tree()->chosenCount(), 1);
        QVERIFY(!label("lbl_chosen")->isVisible());
    }

    void allThatTheFilterShowsAreChosenAndNoneThatItHides()
    {
        open(12);
        auto *search = m_window->findChild<QLineEdit *>("Text_filter_station");
        search->setText("S1"); // 1, 10, 11
        QTRY_COMPARE(tree()->shownStations(), 3);
        tree()->setFocus();
        QTest::keyClick(tree(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(tree()->chosenStations(), (QStringList{"S1", "S10", "S11"}));
        QSignalSpy fleet(m_window.get(), &Form_betriebsmodus::fleetWanted);
        action("mnu_transmit_several")->trigger();
        QCOMPARE(fleet.first().first().toStringList(), (QStringList{"S1", "S10", "S11"}));
        search->setText("S10");
        QTRY_COMPARE(tree()->chosenStations(), QStringList("S10"));
    }

    void whatASearchHidesIsTheTargetOfNothing_data()
    {
        QTest::addColumn<bool>("isOverview");
        QTest::newRow("tree") << false;
        QTest::newRow("overview") << true;
    }
    void whatASearchHidesIsTheTargetOfNothing()
    {
        QFETCH(const bool, isOverview);
        open(12);
        click("S5");
        if (isOverview) {
            action("mnu_overview")->trigger();
        }
        auto *search =
            m_window->findChild<QLineEdit *>(isOverview ? "Text_overview_search" : "Text_filter_station");
        const auto isNothingChosen = [this] {
            constexpr std::array about = {"mnu_station_del",    "mnu_station_link", "mnu_station_online",
                                          "mnu_konfiguration",  "mnu_exclusive",    "mnu_values",
                                          "mnu_station_rename", "mnu_maintenance",  "mnu_transmit_several"};
            return tree()->chosenStations().isEmpty() &&
                   std::ranges::none_of(about, [this](const char *of) { return action(of)->isEnabled(); });
        };
        search->setFocus();
        QTest::keyClicks(search, "S1"); // 1, 10, 11
        QTRY_VERIFY(isNothingChosen());
        QVERIFY(isOverview || label("lbl_no_station")->isVisible()); // the page says so
        QTest::keyClick(search, Qt::Key_Escape);
        QCOMPARE(tree()->chosenStations(), QStringList("S5")); // given up, all is as before
        search->setFocus();
        QTest::keyClicks(search, "S1");
        QTest::keyClick(search, Qt::Key_Down); // sooner than it is filtered
        QCOMPARE(tree()->chosenStations(), QStringList("S1"));
        QVERIFY(!search->hasFocus() && action("mnu_station_del")->isEnabled());
        QVERIFY(isOverview || m_window->findChild<QLineEdit *>("Text_pic0_name")->text() == "S1");
        QSignalSpy fleet(m_window.get(), &Form_betriebsmodus::fleetWanted);
        action("mnu_transmit_several")->trigger();
        QCOMPARE(fleet.first().first().toStringList(), (QStringList{"S1", "S10", "S11"}));
        for (const QString &next : {QStringLiteral("S10"), QStringLiteral("S11"), QString()}) {
            answerNext("OKButton");
            action("mnu_station_del")->trigger();
            m_timers.advance(OverviewModel::longestDelay);
            QCOMPARE(tree()->chosenStations().join(','), next); // a hit, or nothing
        }
        QVERIFY(isNothingChosen() && (isOverview || label("lbl_no_station")->isVisible()));
        QCOMPARE(names().size(), 9);
    }

    void whatIsHiddenWhileAnotherListIsShownIsNotChosenThere()
    {
        open(3);
        click("S2");
        action("mnu_overview")->trigger();
        m_window->findChild<QLineEdit *>("Text_overview_search")->setText("S0");
        QVERIFY(tree()->chosenStations().isEmpty());
        action("mnu_ansicht_normal")->trigger();
        QCOMPARE(tree()->chosenStations(), QStringList("S2")); // here it is to be seen
        action("mnu_overview")->trigger();                     // where the search still is
        QVERIFY(tree()->chosenStations().isEmpty() && !action("mnu_station_del")->isEnabled());
        action("mnu_ansicht_normal")->trigger();
        auto *search = m_window->findChild<QLineEdit *>("Text_filter_station");
        search->setText("S1");
        QTRY_VERIFY(tree()->chosenStations().isEmpty());
        action("mnu_station_add")->trigger(); // what is chosen for the user is shown to the user
        const QString added = names().constLast();
        QCOMPARE(tree()->chosenStations(),
                 QStringList(m_mode->tree().index(3, 0).data(StationTree::KeyRole).toString()));
        QVERIFY2(!tree()->isRowHidden(3, {}), qPrintable(added));
        m_mode->removeStation(tree()->chosenStations().constFirst()); // as another program may do
        QCOMPARE(tree()->chosenStations(), QStringList("S1"));
    }

    void removedStationsComeBackWithAllTheyHadAlsoAfterACrash_data()
    {
        QTest::addColumn<bool>("isFileWritten");
        QTest::newRow("the file is older than the removal") << false;
        QTest::newRow("the file was written in between") << true;
    }
    void removedStationsComeBackWithAllTheyHadAlsoAfterACrash()
    {
        QFETCH(const bool, isFileWritten);
        open(5);
        m_mode->setHostAddress("S1", "10.0.0.7");
        m_mode->setOnline("S1", true);
        m_mode->setExclusive("S2", true);
        m_mode->tree().setData(m_mode->tree().find("S2"), "Works");
        alarm(1, "Pump fail");
        alarm(1, "Door open");
        const QString red = "S1/meldung/+4917012345 --> M,Pump fail";
        const auto isAsItWas = [&] {
            const QString works = m_mode->tree().index(2, 0).data(StationTree::KeyRole).toString();
            return names() == QStringList{"S0", "S1", "Works", "S3", "S4"} &&
                   m_mode->attributes("S1").online && m_mode->attributes("S1").hostAddress == "10.0.0.7" &&
                   m_mode->attributes(works).exclusiveMode &&
                   m_mode->tree().find(red).data(StationTree::ColourRole) == StationTree::alarmColour &&
                   m_mode->tree().rowCount(m_mode->tree().find("S1/meldung")) == 2 &&
                   m_mode->alarms().waitingCount() == 1 && m_mode->tree().alarmCount() == 1;
        };
        QVERIFY(isAsItWas());
        click("S1");
        click("S3", Qt::ShiftModifier);
        QString question;
        answerNext("OKButton", &question);
        action("mnu_station_del")->trigger();
        QVERIFY2(question.contains("3 stations") && question.contains("S1, Works, S3"), qPrintable(question));
        QCOMPARE(names(), (QStringList{"S0", "S4"}));
        QVERIFY(m_mode->alarms().waitingCount() == 0 && m_mode->tree().alarmCount() == 0);
        QCOMPARE(tree()->chosenStations(), QStringList("S4")); // where the focus goes on
        auto *undo = m_window->findChild<QToolButton *>("Cmd_many_undo");
        QVERIFY(undo->isVisible() && undo->text().startsWith("3 stations"));
        if (isFileWritten) {
            m_timers.advance(Milliseconds(60'000));
            QTRY_VERIFY((m_timers.advance(Milliseconds(10)), !fileHas("S3") && fileHas("S4")));
        }
        action("mnu_station_undo")->trigger();
        QVERIFY(isAsItWas());
        QVERIFY(!undo->isVisible() && tree()->chosenCount() == 3);
        QVERIFY(m_mode->station("S1")->online());
        if (isFileWritten) { // it has their entries again, after the writing that may still go on
            QTRY_VERIFY((m_timers.advance(Milliseconds(2000)), fileHas("S3") && fileHas("Door open")));
        }
        QVERIFY(m_mode->keepsChanges());
        leave(); // without writing the file
        openWindow();
        QVERIFY2(isAsItWas(), qPrintable(names().join(u',')));
    }

    void whatCannotComeBackWaitsAndTheNextRemovalEndsIt()
    {
        open(3);
        click("S0");
        answerNext("OKButton");
        action("mnu_station_del")->trigger();
        QVERIFY(m_mode->addStation("S0") == "S0");
        action("mnu_station_undo")->trigger();
        QCOMPARE(names(), (QStringList{"S1", "S2", "S0"}));
        auto *failures = m_window->findChild<QToolButton *>("Cmd_many_failures");
        QVERIFY(failures->isVisible());
        QVERIFY(m_mode->tree().setData(m_mode->tree().find("S0"), "Other"));
        action("mnu_station_undo")->trigger(); // its key is still the other's until the next start
        QCOMPARE(m_mode->removal().count(), 1);
        tree()->choose(m_mode->tree().find("S1"));
        answerNext("OKButton");
        action("mnu_station_del")->trigger();
        QCOMPARE(m_mode->removal().stations(), QStringList("S1"));
        action("mnu_station_undo")->trigger();
        QCOMPARE(names(), (QStringList{"S1", "S2", "Other"}));
        QVERIFY(!action("mnu_station_undo")->isEnabled());
    }

    void sortedAndGroupedRowsLeaveTheListsFileAsItIs()
    {
        open(3);
        QCOMPARE(m_mode->addStation("A"), "A");
        m_mode->setHostAddress("S2", "10.0.0.7");
        m_mode->setOnline("S2", true);
        tree()->choose(m_mode->tree().find("S1"));
        action("mnu_tree_order_1")->trigger();
        QCOMPARE(names(), (QStringList{"A", "S0", "S1", "S2"}));
        QCOMPARE(tree()->chosenStations(), QStringList("S1"));
        action("mnu_tree_grouping_1")->trigger();
        alarm(2, "Pump fail");
        m_timers.advance(Milliseconds(250));
        QTRY_COMPARE(names(), (QStringList{"S2", "A", "S0", "S1"}));
        QVERIFY(!tree()->sectionAt(m_mode->tree().find("S2")).isEmpty());
        QVERIFY(!tree()->sectionAt(m_mode->tree().find("A")).isEmpty());
        QVERIFY(tree()->sectionAt(m_mode->tree().find("S0")).isEmpty());
        answerNext("OKButton");
        action("mnu_station_del")->trigger(); // and the next one is chosen in the order that is seen
        QCOMPARE(names(), (QStringList{"S2", "A", "S0"}));
        QCOMPARE(tree()->chosenStations(), QStringList("S0"));
        action("mnu_station_undo")->trigger();
        m_timers.advance(Milliseconds(250));
        QTRY_COMPARE(names(), (QStringList{"S2", "A", "S0", "S1"}));
        action("mnu_tree_order_3")->trigger(); // the list's
        action("mnu_tree_grouping_0")->trigger();
        QCOMPARE(names(), (QStringList{"S0", "S1", "S2", "A"}));
        action("mnu_tree_order_4")->trigger(); // the longest unheard, and what is not watched at the end
        QCOMPARE(names().first(), "S2");
        answerNext("OKButton"); // S2 is watched
        QVERIFY(m_window->close());
        const QByteArray file = contentOf(m_folder->filePath("nodes.xml"));
        QVERIFY(file.indexOf("key=\"S1\"") > 0 && file.indexOf("key=\"S1\"") < file.indexOf("key=\"S2\""));
        QVERIFY(file.indexOf("key=\"S2\"") < file.indexOf("key=\"A\""));
    }

    void aJobTellsWhatFailedForWhichStationInOnePlace()
    {
        open(4);
        m_mode->setHostAddress("S1", "10.0.0.7");
        m_mode->setHostAddress("S2", "10.0.0.8");
        tree()->selectAll();
        action("mnu_station_online")->trigger();
        QVERIFY(m_mode->station("S1")->online() && m_mode->station("S2")->online());
        auto *failures = m_window->findChild<QToolButton *>("Cmd_many_failures");
        QVERIFY(failures->isVisible() && failures->text().endsWith(": 2"));
        QTest::mouseClick(failures, Qt::LeftButton);
        QWidget *box = nullptr;
        QTRY_VERIFY((box = QApplication::activeWindow()) != nullptr && box->objectName() == "Dialog");
        QVERIFY(box->accessibleName().contains("S0") && box->accessibleName().contains("S3"));
        QTest::keyClick(box, Qt::Key_Return);
        tree()->selectAll();
        action("mnu_values")->trigger();
        QCOMPARE(m_mode->station("S1")->msgText(), "A*");
        answerNext("OKButton");
        action("mnu_exclusive")->trigger();
        QVERIFY(m_mode->station("S0")->exclusiveMode() && m_mode->station("S3")->exclusiveMode());
        answerNext("OKButton");
        QVERIFY(!action("mnu_station_online")->isChecked());
        tree()->chooseStations({"S1", "S2"}, "S1");
        QVERIFY(action("mnu_station_online")->isChecked());
        action("mnu_station_online")->trigger();
        QVERIFY(!m_mode->station("S1")->online() && !m_mode->station("S2")->online());
    }

    /// Whatever stops or removes something.
    void enterAnswersNoQuestionThatCostsSomethingAndTheNumberIsTold_data()
    {
        QTest::addColumn<QString>("asking");
        QTest::addColumn<int>("chosen");
        QTest::addColumn<QString>("told");
        QTest::newRow("delete one") << "mnu_station_del" << 1 << "\"S0\"";
        QTest::newRow("delete several") << "mnu_station_del" << 3 << "3 stations";
        QTest::newRow("several offline") << "mnu_station_online" << 3 << "3 stations";
        QTest::newRow("several exclusive") << "mnu_exclusive" << 3 << "3 stations";
        QTest::newRow("all offline") << "mnu_station_alloffline" << 1 << "Online now: 4";
        QTest::newRow("close") << "mnu_close" << 1 << "online: 4, alarms that are open: 1";
    }
    void enterAnswersNoQuestionThatCostsSomethingAndTheNumberIsTold()
    {
        QFETCH(const QString, asking);
        QFETCH(const int, chosen);
        QFETCH(const QString, told);
        open(4);
        for (const QString &kennung : names()) {
            m_mode->setHostAddress(kennung, "10.0.0.7");
            m_mode->setOnline(kennung, true);
        }
        alarm(1, "Pump fail");
        tree()->chooseStations(names().first(chosen), "S0");
        QString question;
        QTimer::singleShot(0, this, [&question] {
            QWidget *box = QApplication::activeModalWidget();
            QVERIFY(box != nullptr);
            question = box->accessibleName();
            QTest::keyClick(box, Qt::Key_Return);
        });
        action(qPrintable(asking))->trigger();
        QVERIFY2(question.contains(told), qPrintable(question));
        QCOMPARE(question.contains("Ctrl+Z"), asking == "mnu_station_del"); // and until when
        QCOMPARE(question.contains("mode is closed"), asking == "mnu_station_del");
        QVERIFY(m_window->isVisible() && m_mode->isOpen());
        for (const char *kennung : {"S0", "S1", "S2", "S3"}) {
            const cStation *station = m_mode->station(kennung);
            QVERIFY(station != nullptr && station->online() && !station->exclusiveMode());
        }
    }

    void closingAsksOnlyWhereNobodyWatchesThen()
    {
        open(2);
        QSignalSpy closed(m_window.get(), &Form_betriebsmodus::closed);
        QVERIFY(m_window->close()); // nothing is watched
        QCOMPARE(closed.takeFirst().first().toInt(), 0);
        m_window->open(m_folder->filePath("nodes.xml"));
        m_window->show();
        m_mode->setHostAddress("S1", "10.0.0.7");
        m_mode->setOnline("S1", true);
        answerNext("OKButton");
        QVERIFY(m_window->close());
        QCOMPARE(closed.takeFirst().first().toInt(), 1);
        m_window->open(m_folder->filePath("nodes.xml"));
        m_window->show();
        m_window->setAsksBeforeEnd(false); // at a session's end nobody is there to answer
        QVERIFY(m_window->close());
        QCOMPARE(closed.size(), 1);
    }

    void keysOfATextAreTheTextsAndUndoIsTheWindowsWhileItHasNothingToUndo_data()
    {
        QTest::addColumn<QString>("field");
        QTest::newRow("tree") << "Text_filter_station";
        QTest::newRow("overview") << "Text_overview_search";
    }
    void keysOfATextAreTheTextsAndUndoIsTheWindowsWhileItHasNothingToUndo()
    {
        QFETCH(const QString, field);
        open(4);
        click("S1");
        if (field == "Text_overview_search") {
            action("mnu_overview")->trigger();
        }
        QWidget *list = m_window->focusWidget();
        const auto removeByKey = [&] {
            answerNext("OKButton");
            QTest::keyClick(list, Qt::Key_Delete, Qt::ControlModifier);
            QTRY_VERIFY(QApplication::activeModalWidget() == nullptr); // it goes after its answer
            QTRY_VERIFY((m_window->activateWindow(), m_window->isActiveWindow()));
        };
        removeByKey(); // in the list it is the command
        QCOMPARE(names(), (QStringList{"S0", "S2", "S3"}));
        auto *search = m_window->findChild<QLineEdit *>(field);
        search->setFocus();
        QTest::keyClick(search, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(names(), (QStringList{"S0", "S1", "S2", "S3"}));
        list->setFocus();
        removeByKey();
        search->setFocus();
        QTest::keyClicks(search, "pump station");
        QTest::keyClick(search, Qt::Key_Home);
        QTest::keyClick(search, Qt::Key_Delete, Qt::ControlModifier);
        QCOMPARE(search->text(), "station"); // and nothing is asked
        QCOMPARE(names().size(), 3);
        for (int steps = 0; search->isUndoAvailable() && steps < 99; ++steps) {
            QCOMPARE(names().size(), 3);
            QTest::keyClick(search, Qt::Key_Z, Qt::ControlModifier);
        }
        QTest::keyClicks(search, "x");
        QTest::keyClick(search, Qt::Key_Backspace); // what was searched for is over
        QTest::keyClick(search, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(search->text(), QString());
        QCOMPARE(names().size(), 4);
    }

    void aRemovalTellsWhatBecomesOfOpenAlarms()
    {
        open(3);
        alarm(1, "Pump fail");
        alarm(1, "Door fail");
        alarm(2, "Door fail");
        const auto *none = label("lbl_no_alarm");
        tree()->chooseStations({"S0", "S1"}, "S1");
        bool areThree = false;
        QTimer::singleShot(0, this, [&] { // while it stands there, one more comes
            QWidget *box = QApplication::activeModalWidget();
            QVERIFY(box != nullptr);
            const bool wereTwo = box->accessibleName().contains("will be closed: 2.");
            alarm(1, "Tank fail");
            areThree =
                QTest::qWaitFor([&] { return box->accessibleName().contains("will be closed: 3."); }) &&
                wereTwo;
            QTest::mouseClick(box->findChild<QPushButton *>("OKButton"), Qt::LeftButton);
        });
        action("mnu_station_del")->trigger();
        QVERIFY(areThree);
        tree()->chooseStations({"S2"}, "S2");
        QVERIFY(m_mode->acknowledgeAlarms({*m_mode->alarms().waiting().begin()}));
        m_timers.advance(Milliseconds(1000));
        QVERIFY(none->isVisible() && none->text().contains("closed by the removal of their stations: 3"));
        action("mnu_station_undo")->trigger();
        m_timers.advance(Milliseconds(1000));
        QVERIFY(!none->isVisible());
        QVERIFY2(m_window->windowTitle().startsWith("(3!)"), qPrintable(m_window->windowTitle()));
    }

    void anAlarmWithoutATimeIsCountedAndAcknowledgedLikeAnyOther()
    {
        const QByteArray entry = "S0/meldung/+4917012345 --&gt; M,Pump fail";
        QVERIFY(replaceFile(m_folder->filePath("nodes.xml"),
                            "<KTR><i key=\"S0\" text=\"S0\" ForeColor=\"255\"/>"
                            "<i key=\"S0/meldung\" text=\"N\" ForeColor=\"255\"/><i key=\"" +
                                entry +
                                "\" text=\"+4917012345 --&gt; M,Pump fail\" ForeColor=\"255\"/></KTR>"));
        openWindow();
        QCOMPARE(m_mode->alarms().waitingCount(), 1);
        QTest::keyClick(tree(), Qt::Key_5, Qt::AltModifier);
        auto *list = m_window->findChild<QAbstractItemView *>("Tree_alarms");
        const auto *accept = m_window->findChild<QPushButton *>("Cmd_alarm_acceptAll");
        QTRY_VERIFY((m_timers.advance(Milliseconds(1000)), list->model()->rowCount() == 1));
        QTRY_VERIFY(accept->isEnabled());
        QVERIFY(!list->model()->index(0, 0).data().toString().isEmpty()); // how urgent it is
        list->setCurrentIndex(list->model()->index(0, 0));
        QTest::keyClick(list, Qt::Key_Space);
        QCOMPARE(m_mode->alarms().waitingCount(), 0);
    }

    void whatIsBroughtBackIsAsItWasAtOnce()
    {
        open(3);
        for (const char *station : {"S0", "S1", "S2"}) {
            m_mode->setHostAddress(station, "10.0.0.7");
            m_mode->setOnline(station, true);
        }
        m_timers.advance(Milliseconds(41'000));
        m_lines[1]->say("OK\r\n"); // the others are silent
        m_timers.advance(Milliseconds(1000));
        const auto *counts = label("lbl_counts");
        const auto *overview = label("lbl_overview_counts");
        action("mnu_overview")->trigger();
        const QString before = "Stations: 3, alive 1, silent 2, offline 0";
        QTRY_COMPARE(counts->text(), before);
        const QString tiles = overview->text();
        tree()->selectAll();
        answerNext("OKButton");
        action("mnu_station_del")->trigger();
        QTRY_COMPARE(counts->text(), "Stations: 0, alive 0, silent 0, offline 0");
        action("mnu_station_undo")->trigger();
        QCOMPARE(overview->text(), tiles);
        QVERIFY2(!counts->text().contains("shown"), qPrintable(counts->text()));
        QTRY_COMPARE(counts->text(), before);
        QVERIFY(m_mode->station("S1")->liveness() == cStation::Liveness::Alive);
    }

    void keysGoFromPartToPartAndToEachPage()
    {
        open(3);
        alarm(1, "Pump fail");
        m_timers.advance(Milliseconds(1000));
        auto *pages = m_window->findChild<QTabWidget *>("TabStrip_pages");
        tree()->setFocus();
        QTest::keyClick(m_window->focusWidget(), Qt::Key_5, Qt::AltModifier);
        QCOMPARE(pages->currentWidget()->objectName(), "Page_alarms");
        QVERIFY(m_window->focusWidget()->inherits("QAbstractItemView"));
        const QWidget *list = m_window->focusWidget();
        const auto press = [this](Qt::KeyboardModifiers keys) {
            QTest::keyClick(m_window->focusWidget(), Qt::Key_F6, keys);
        };
        press(Qt::ShiftModifier);
        QVERIFY(tree()->hasFocus());
        press({});
        QCOMPARE(m_window->focusWidget(), list);
        QSet<QWidget *> seen;
        while (!seen.contains(m_window->focusWidget())) {
            seen += m_window->focusWidget();
            press({});
        }
        QStringList names;
        for (const QWidget *widget : std::as_const(seen)) {
            names += widget->objectName();
        }
        QVERIFY2(seen.contains(tree()) && names.filter("Cmd_alarm").size() == 1,
                 qPrintable(names.join(u',')));
        action("mnu_overview")->trigger();
        press(Qt::ShiftModifier); // to the alarms' bar
        QVERIFY(m_window->focusWidget()->objectName().startsWith("Cmd_alarm"));
        press({});
        QCOMPARE(m_window->focusWidget()->objectName(), "List_overview");
        for (int page = 0; page < pages->count(); ++page) {
            QTest::keyClick(m_window->focusWidget(), Qt::Key(Qt::Key_1 + page), Qt::AltModifier);
            QCOMPARE(pages->currentIndex(), page);
            QVERIFY(pages->isVisible() && pages->isAncestorOf(m_window->focusWidget()));
        }
    }

    void undoingARemovalShowsThePageThatWasShown()
    {
        open(3);
        tree()->choose(m_mode->tree().find("S1/history"));
        const auto *pages = m_window->findChild<QTabWidget *>("TabStrip_pages");
        const int page = pages->currentIndex();
        answerNext("OKButton");
        action("mnu_station_del")->trigger();
        QVERIFY(pages->currentIndex() != page);
        action("mnu_station_undo")->trigger();
        QCOMPARE(pages->currentIndex(), page);
        QCOMPARE(tree()->chosenStations(), QStringList("S1"));
    }

private:
    StationTreeView *tree() const { return m_window->findChild<StationTreeView *>(); }
    QLabel *label(const char *name) const { return m_window->findChild<QLabel *>(name); }
    QAction *action(const char *name) const { return m_window->findChild<QAction *>(name); }
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < m_mode->tree().rowCount(); ++row) {
            names += m_mode->tree().index(row, 0).data().toString();
        }
        return names;
    }
    bool fileHas(const char *text) const { return contentOf(m_folder->filePath("nodes.xml")).contains(text); }
    void click(const QString &station, Qt::KeyboardModifiers keys = {})
    {
        const QRect row = tree()->visualRect(m_mode->tree().find(station));
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, keys, row.center());
    }
    void answerNext(const char *button, QString *question = nullptr)
    {
        QTimer::singleShot(0, this, [button, question] {
            QWidget *box = QApplication::activeModalWidget();
            QVERIFY(box != nullptr);
            if (question != nullptr) {
                *question = box->accessibleName();
            }
            QTest::mouseClick(box->findChild<QPushButton *>(button), Qt::LeftButton);
        });
    }
    void alarm(int station, const QByteArray &text)
    {
        m_lines[station]->say("at+cmgs=\"+4917012345\"\r");
        m_lines[station]->say("M," + text + '\x1A');
    }

    void open(int stations)
    {
        QByteArray document;
        for (int station = 0; station < stations; ++station) {
            const QByteArray name = 'S' + QByteArray::number(station);
            document += "<item key=\"" + name + "\" text=\"" + name + "\" ForeColor=\"-2147483640\"/>";
        }
        QVERIFY(replaceFile(m_folder->filePath("nodes.xml"), "<KTR>" + document + "</KTR>"));
        openWindow();
    }
    void openWindow()
    {
        NodesKeeper::Limits limits;
        limits.events = 1;
        limits.timesTheNodes = 0;
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{fixedEnvironment(), m_timers,
                                      [this] {
                                          auto line = std::make_unique<RecordedLine>();
                                          m_lines += line.get();
                                          return line;
                                      },
                                      [] {}, manualCallbackTimers(m_timers), [] { return 0; }, limits},
            stationCaptions(m_texts));
        m_window = std::make_unique<Form_betriebsmodus>(
            *m_mode, m_texts, Form_betriebsmodus::Services{m_timers, english(), {}, {}});
        m_window->show();
        m_window->open(m_folder->filePath("nodes.xml"));
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    void leave()
    {
        m_window.reset();
        m_mode.reset();
        m_lines.clear();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    TextTable m_texts;
    ManualTimers m_timers;
    QList<RecordedLine *> m_lines;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<Form_betriebsmodus> m_window;
};

QTEST_MAIN(SeveralStationsTest)
#include "several_stations_test.moc"
