#include "opmode/window/alarm_sound.h"
#include "opmode/window/form_betriebsmodus.h"
#include "platform/registry.h"
#include "record/record_reader.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace ktr;

/// What users say about alarms in general: rules, limits, operators, maintenance.
class AlarmSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        openWindow();
        m_kennung = m_mode->tree().index(0, 0).data(StationTree::KeyRole).toString();
        m_mode->setHostAddress(m_kennung, "10.0.0.7");
        m_mode->setOnline(m_kennung, true);
    }
    void cleanup()
    {
        m_window.reset();
        m_mode.reset();
        m_lines.clear();
    }

    void damagedRulesOfARecordAreToldUntilOthersAreSet()
    {
        const auto isTold = [this] { return m_window->findChild<QWidget *>("RulesBanner")->isVisible(); };
        QVERIFY(!isTold());
        m_mode->record().add(SettingRow{AlarmActions::rulesSetting, "[{\"pattern\":"});
        QVERIFY(m_mode->keepsChanges());
        cleanup();
        openWindow();
        QVERIFY(isTold());
        inDialog("mnu_rules", [](QDialog &dialog) { dialog.reject(); });
        QVERIFY(isTold());
        inDialog("mnu_rules", [](QDialog &dialog) { dialog.accept(); }); // the usual ones, unchanged
        QVERIFY(!isTold() && m_mode->keepsChanges());
        cleanup();
        openWindow();
        QVERIFY(!isTold());
    }

    void aRuleIsWrittenWithKeysAndHoldsFromThenOn()
    {
        inDialog("mnu_rules", [](QDialog &dialog) {
            QTest::keyClick(&dialog, Qt::Key_Return); // nothing changed
        });
        say("Tank low");
        QCOMPARE(m_mode->alarms().waitingCount(), 0);
        inDialog("mnu_rules", [](QDialog &dialog) {
            auto *table = dialog.findChild<QTableView *>("tbl_rules");
            QCOMPARE(table->model()->index(0, 0).data().toString(), "fail");
            QCOMPARE(QApplication::focusWidget(), table);
            const auto key = [](Qt::Key which) { QTest::keyClick(QApplication::focusWidget(), which); };
            key(Qt::Key_Insert);
            QTest::keyClicks(QApplication::focusWidget(), "low");
            key(Qt::Key_Return); // ends the cell, not the dialog
            QTRY_COMPARE(QApplication::focusWidget(), table);
            for (int column = 0; column < 3; ++column) {
                key(Qt::Key_Right);
            }
            key(Qt::Key_F2);
            key(Qt::Key_Up);
            key(Qt::Key_Return);
            QTRY_COMPARE(QApplication::focusWidget(), table);
            key(Qt::Key_Right);
            key(Qt::Key_Space); // without sound
            key(Qt::Key_Right);
            for (const char letter : {'f', 'u', 'l', 'l'}) { // the first one opens the cell
                QTest::keyClick(QApplication::focusWidget(), letter);
            }
            key(Qt::Key_Return);
            QTRY_COMPARE(QApplication::focusWidget(), table);
            QTest::keyClick(table, Qt::Key_Down, Qt::AltModifier);
            auto *tried = dialog.findChild<QLineEdit *>("Text_rule_try");
            QTest::keyClicks(tried, "Tank low");
            QCOMPARE(dialog.findChild<QLabel *>("lbl_rule_try")->text(),
                     "Rule 2 fits: an alarm, priority high, without sound. It is over when the station sends "
                     "\"tank full\".");
            QTest::keyClick(tried, Qt::Key_Return);
            QVERIFY(!dialog.isVisible());
        });
        say("Tank low");
        QCOMPARE(m_mode->alarms().waitingCount(), 1);

        cleanup();
        openWindow();
        const QList<AlarmRule> &rules = m_mode->alarmActions().rules().list();
        QCOMPARE(rules.size(), 2);
        AlarmRule rule{"low"};
        rule.priority = AlarmPriority::High;
        rule.sounds = false;
        rule.ending = "full";
        QCOMPARE(rules[1], rule);
        say("TANK FULL");
        QVERIFY(m_mode->alarms().standing().begin()->second.over != 0);
    }

    void rulesThatSayNothingAreFoundFaultWithAndCancelKeepsTheOldOnes()
    {
        inDialog("mnu_rules", [](QDialog &dialog) {
            auto *table = dialog.findChild<QTableView *>("tbl_rules");
            auto *ok = dialog.findChild<QPushButton *>("Cmd_rules_ok");
            auto *problem = dialog.findChild<QLabel *>("Label_rules_problem");
            QTest::mouseClick(dialog.findChild<QPushButton *>("Cmd_rule_add"), Qt::LeftButton);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            QVERIFY(dialog.isVisible() && !ok->isEnabled());
            QCOMPARE(problem->text(), "Rule 1 has no text to look for");
            QAbstractItemModel &rules = *table->model();
            rules.setData(rules.index(0, 0), "FAIL");
            rules.setData(rules.index(0, 5), "fail");
            QVERIFY(problem->text().startsWith("Rule 1:") && !ok->isEnabled());
            rules.setData(rules.index(0, 5), "ok");
            QVERIFY(ok->isEnabled() && !problem->isVisible());
            rules.setData(rules.index(0, 0), "pump fail");
            QTest::mouseClick(dialog.findChild<QPushButton *>("Cmd_rule_down"), Qt::LeftButton);
            QVERIFY(problem->text().startsWith("Rule 2 never") && ok->isEnabled());
            QTest::keyClick(table, Qt::Key_Escape);
            QVERIFY(!dialog.isVisible());
        });
        QCOMPARE(m_mode->alarmActions().rules(), AlarmRules());
    }

    void theOperatorIsProposedAndStandsInTheAcknowledgement()
    {
        auto *bar = m_window->findChild<QWidget *>("OperatorBar");
        auto *name = m_window->findChild<QLineEdit *>("Text_operator");
        const auto *shown = m_window->findChild<QToolButton *>("Cmd_operator");
        QVERIFY(bar->isVisible() && QApplication::activeModalWidget() == nullptr);
        QCOMPARE(QApplication::focusWidget(), name);
        QTest::keyClick(name, Qt::Key_Escape);
        QVERIFY(!bar->isVisible() && m_mode->operatorName().isEmpty());
        say("DI1 fail");
        acknowledgeAll();
        QTRY_VERIFY(m_window->findChild<QLabel *>("lbl_event")->text().contains("without a name"));

        QTest::mouseClick(m_window->findChild<QWidget *>("Cmd_operator"), Qt::LeftButton);
        name->clear();
        QTest::keyClicks(name, " Miller ");
        QTest::keyClick(name, Qt::Key_Return);
        QVERIFY(!bar->isVisible());
        QCOMPARE(shown->text(), "Operator: Miller");
        say("DI2 fail");
        acknowledgeAll();
        QVERIFY(m_mode->keepsChanges());
        RecordReader reader(m_mode->recordPath());
        EventFilter filter;
        filter.kinds = {EventKind::Acknowledged};
        QStringList names;
        for (const EventRow &event : reader.findEvents(filter, {}, 9).rows) {
            names += event.operatorName;
        }
        names.sort();
        QCOMPARE(names, (QStringList{"", "Miller"}));

        cleanup(); // another shift
        openWindow();
        QCOMPARE(m_window->findChild<QLineEdit *>("Text_operator")->text(), "Miller");
        QVERIFY(m_mode->operatorName().isEmpty());
        QTest::mouseClick(m_window->findChild<QPushButton *>("Cmd_operator_take"), Qt::LeftButton);
        QCOMPARE(m_mode->operatorName(), "Miller");
    }

    void aStationInMaintenanceTellsNoAlarmsUntilItIsTakenBack()
    {
        const auto press = [this](const char *name) {
            QTest::mouseClick(m_window->findChild<QPushButton *>(name), Qt::LeftButton);
        };
        QTimer::singleShot(0, this, [] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog != nullptr);
            QTest::keyClicks(dialog->findChild<QLineEdit *>("Text_shelve_why"), "new pump");
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        press("Cmd_pic0_maintenance");
        const auto *state = m_window->findChild<QLabel *>("lbl_pic0_maintenance");
        QCOMPARE(state->text(), "In maintenance until 15.11.2009 15:05:35: new pump");
        say("DI1 fail");
        QCOMPARE(m_mode->alarms().waitingCount(), 0);
        QVERIFY(m_window->findChild<QAction *>("mnu_maintenance_end")->isEnabled());
        press("Cmd_pic0_maintenance_end");
        QCOMPARE(m_mode->alarms().waitingCount(), 1);
        QVERIFY(!m_window->findChild<QAction *>("mnu_maintenance_end")->isEnabled());
    }

    void chatteringAndSilenceAreChosen()
    {
        inDialog("mnu_limits", [](QDialog &dialog) {
            QTest::keyClicks(QApplication::focusWidget(), "3"); // in place of what stands there
            dialog.findChild<QSpinBox *>("Spin_silence")->setValue(0);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        QCOMPARE(m_mode->alarmActions().chatterLimit(), (ChatterLimit{3, 10}));
        QCOMPARE(m_mode->longestSilence(), 0);
    }

    void theMostUrgentAlarmThatWaitsIsHeard()
    {
        AlarmRule low{"low"};
        low.priority = AlarmPriority::Low;
        AlarmRule high{"fire"};
        high.priority = AlarmPriority::High;
        AlarmRule quiet{"door"};
        quiet.priority = AlarmPriority::High;
        quiet.sounds = false;
        AlarmBook book;
        book.setRules(AlarmRules({low, high, quiet}));
        const AlarmCentre centre(
            book, [](const AlarmRow &) { return Alarm(); }, m_timers);
        QList<AlarmPriority> heard;
        QString fault;
        int silences = 0;
        QList<int> volumes;
        const auto play = [&](std::optional<AlarmPriority> tones, int volume, const Sound::Told &told) {
            silences += tones ? 0 : 1;
            if (tones) {
                heard += *tones;
                volumes += volume;
            }
            told({fault.isEmpty() ? Status::done() : Status::failed(fault)});
        };
        AlarmSound sound(centre, m_timers, play);
        const auto come = [&](const char *text) {
            const qint64 id = book.addNotification(1, "+49", text, 1);
            m_timers.advance(AlarmCentre::pauseBetweenNews);
            return id;
        };
        using enum AlarmPriority;
        come("door open");
        QCOMPARE(heard, QList<AlarmPriority>());
        come("tank low");
        QCOMPARE(heard, QList{Low});
        const qint64 fire = come("fire");
        come("oil low");
        QCOMPARE(heard, (QList{Low, High, High}));
        sound.setMuted(true);
        come("fire 2");
        QCOMPARE(heard.size(), 3);
        sound.setMuted(false);
        m_timers.advance(AlarmSound::reminderInterval);
        QCOMPARE(heard.size(), 4);
        book.acknowledge({fire, fire + 2}, 2, {});
        m_timers.advance(AlarmSound::reminderInterval);
        QCOMPARE(heard.constLast(), Low);
        QCOMPARE(silences, 0); // the alarm told it

        // Where it is not heard that is a state, until it is heard again.
        QSignalSpy told(&sound, &AlarmSound::troubleChanged);
        fault = "no device";
        m_timers.advance(AlarmSound::reminderInterval);
        QCOMPARE(sound.trouble(), "no device");
        sound.setMuted(true);
        m_timers.advance(AlarmSound::reminderInterval);
        QCOMPARE(silences, 1);
        QCOMPARE(told.size(), 1);
        fault.clear();
        m_timers.advance(AlarmSound::reminderInterval);
        QVERIFY(sound.trouble().isEmpty());
        QCOMPARE(told.size(), 2);
        m_timers.advance(2 * AlarmSound::reminderInterval);
        QCOMPARE(silences, 2); // and no more
        const AlarmBook empty;
        const AlarmCentre calm(
            empty, [](const AlarmRow &) { return Alarm(); }, m_timers);
        const AlarmSound atBeginning(calm, m_timers, play);
        m_timers.advance(AlarmSound::firstTry);
        QCOMPARE(silences, 3);

        QCOMPARE(volumes.constLast(), AlarmSound::usualVolume);
        sound.setVolume(30);
        sound.test(High, [](const SoundOutcome &) {}); // muted or not
        QCOMPARE(volumes.constLast(), 30);
        QCOMPARE(AlarmSound(centre, m_timers, play).volume(), 30);
        const QByteArray loud = alarmTones(High, 70);
        QVERIFY(loud != alarmTones(Medium, 70) && alarmTones(Medium, 70) != alarmTones(Low, 70));
        QVERIFY(loud != alarmTones(High, 100) && loud.size() == alarmTones(High, 100).size());
    }

private:
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
        m_window->open(m_folder->filePath("nodes.xml"));
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    /// Does something in the dialog that an action opens, which it must close.
    void inDialog(const char *action, const std::function<void(QDialog &)> &act)
    {
        QTimer::singleShot(0, this, [act] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog != nullptr);
            QTRY_VERIFY(dialog->isAncestorOf(QApplication::focusWidget()));
            act(*dialog);
            dialog->reject(); // after a failure
        });
        m_window->findChild<QAction *>(action)->trigger();
    }

    void acknowledgeAll()
    {
        m_timers.advance(AlarmCentre::pauseBetweenNews);
        QTest::mouseClick(m_window->findChild<QPushButton *>("Cmd_alarm_accept"), Qt::LeftButton);
        QCOMPARE(m_mode->alarms().waitingCount(), 0);
    }

    void say(const QByteArray &text)
    {
        m_lines[0]->say("at+cmgs=\"+4917012345\"\r");
        m_lines[0]->say("M," + text + '\x1A');
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    const TextTable m_texts;
    test::ManualTimers m_timers;
    QList<test::RecordedLine *> m_lines;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<Form_betriebsmodus> m_window;
    QString m_kennung;
};

QTEST_MAIN(AlarmSettingsTest)
#include "alarm_settings_test.moc"
