#include "opmode/operational_mode.h"
#include "platform/files.h"
#include "record/record_care.h"
#include "record/record_reader.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace ktr;
using test::RecordedLine;

namespace {

/// An operational mode over a folder, with a clock that goes on with the timers.
struct Run
{
    explicit Run(const QString &folder, const NodesKeeper::Limits &limits = {},
                 const QDateTime &start = QDateTime({2026, 11, 20}, {9, 59, 30}))
        : path(folder + QStringLiteral("/nodes.xml"))
    {
        Environment environment = test::fixedEnvironment();
        environment.now = [this, start] { return start.addMSecs((timers.now() + clockJump).count()); };
        mode.emplace(OperationalMode::Services{environment, timers,
                                               [this] {
                                                   auto line = std::make_unique<RecordedLine>();
                                                   lines += line.get();
                                                   return line;
                                               },
                                               [this] { ++beeps; }, manualCallbackTimers(timers),
                                               [] { return 0; }, limits,
                                               [this](const QString &) { return room; }},
                     StationCaptions{QStringLiteral("Notifications"), QStringLiteral("History"),
                                     QStringLiteral("IP")});
        QObject::connect(&*mode, &OperationalMode::statusMessage, &*mode,
                         [this](const QString &line) { told += line; });
        QObject::connect(&*mode, &OperationalMode::happened, &*mode,
                         [this](const StationEvent &event) { events += event; });
        QObject::connect(&*mode, &OperationalMode::alarmRaised, &*mode,
                         [this](const QModelIndex &entry) { alarms += entry.data().toString(); });
        QObject::connect(&*mode, &OperationalMode::recovered, &*mode,
                         [this](const QString &line) { told += line; });
        opened = mode->open(path, OperationalMode::Use::Keep);
    }
    void say(int station, const QByteArray &sms)
    {
        lines[station]->say("at+cmgs=\"+4917012345\"\r");
        lines[station]->say(sms + '\x1A');
    }
    QModelIndex node(const QString &key) const { return mode->tree().find(key); }
    bool isRed(const QString &key) const
    {
        return node(key).data(StationTree::ColourRole).toInt() == StationTree::alarmColour;
    }
    QString textOf(const QString &key) const { return node(key).data().toString(); }
    QList<AlarmRow> waiting(AlarmKind kind) const
    {
        QList<AlarmRow> rows;
        for (const qint64 id : mode->alarms().waiting()) {
            if (const AlarmRow &row = *mode->alarms().alarm(id); row.kind == kind) {
                rows += row;
            }
        }
        return rows;
    }

    QString path;
    test::ManualTimers timers;
    Milliseconds clockJump{0};
    std::optional<DiskRoom> room{};
    QList<RecordedLine *> lines;
    QStringList told;
    QList<StationEvent> events;
    QStringList alarms;
    int beeps = 0;
    std::optional<OperationalMode> mode;
    Status opened = Status::done();
};

const QString alarmKey = QStringLiteral("S/meldung/+4917012345 --> M,Alarm DI1 fail");

QByteArray station(const QByteArray &name, const QByteArray &attributes)
{
    return "<item1 " + attributes + " key=\"" + name + "\" text=\"" + name + "\" ForeColor=\"-2147483640\"/>";
}

} // namespace

class OperationalModeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void cleanup() { m_folder.reset(); }

    void whatIsSavedComesBackAsItWas()
    {
        {
            Run run(m_folder->path());
            QVERIFY(run.opened);
            QCOMPARE(run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7")), "S");
            QCOMPARE(run.mode->addStation(QStringLiteral("S")), "S (1)");
            run.mode->setOnline(QStringLiteral("S"), true);
            QCOMPARE(run.lines[0]->sent, QByteArrayList{"config\r\n"});
            run.say(0, "M,Alarm DI1 fail");
            run.say(0, "R,5,12.3");
            QCOMPARE(run.alarms, QStringList{QStringLiteral("+4917012345 --> M,Alarm DI1 fail")});
            QVERIFY(run.isRed(alarmKey) && run.isRed(QStringLiteral("S/meldung")) &&
                    run.isRed(QStringLiteral("S")));
            QVERIFY(run.mode->tree().setData(run.node(QStringLiteral("S")), QStringLiteral("Works")));
            // The pause in front of a text that a module reads: what it says meanwhile waits.
            QVERIFY(run.mode->requestValues(QStringLiteral("S")));
            run.lines[0]->say("at+cpin?\r");
            run.lines[0]->say("at+cmgr=1\r");
            run.say(0, "M,Alarm DI2 fail");
            QCOMPARE(run.alarms.size(), 1);
            QVERIFY(run.mode->close());
            QVERIFY(!run.lines[0]->isOpen());
        }
        Run run(m_folder->path());
        QVERIFY(run.opened && run.told.isEmpty());
        QCOMPARE(run.mode->stations().Count(), 2);
        QCOMPARE(run.lines[0]->opened, QStringList{QStringLiteral("10.0.0.7")});
        for (const char *text : {"DI1", "DI2"}) {
            QVERIFY2(run.isRed(QStringLiteral("Works/meldung/+4917012345 --> M,Alarm %1 fail").arg(text)),
                     text);
        }
        QVERIFY(run.textOf(QStringLiteral("Works/ip/ip5")).endsWith(QLatin1String("IP5 = 12.3")));
    }

    void whatOperatorsSayAboutAlarmsIsThereInTheNextRun()
    {
        const QString text = QStringLiteral("Alarm DI1 fail");
        AlarmRule rule{QStringLiteral("low")};
        rule.priority = AlarmPriority::High;
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->setOnline(QStringLiteral("S"), true);
            run.mode->setOperator(QStringLiteral("Miller"));
            run.say(0, "M,Alarm DI1 fail");
            const qint64 id = *run.mode->alarms().waiting().begin();
            AlarmActions &actions = run.mode->alarmActions();
            actions.comment({id}, QStringLiteral("on the way"));
            actions.shelve({id}, actions.now() + 3'600'000, QStringLiteral("known"));
            actions.setRules(AlarmRules({rule, AlarmRules::standard().constFirst()}));
        } // without close()
        Run run(m_folder->path());
        QVERIFY(run.mode->operatorName().isEmpty());
        QCOMPARE(run.mode->lastOperator(), "Miller");
        QCOMPARE(run.mode->alarms().waitingCount(), 0);
        QCOMPARE(run.mode->alarms().rules().list().constFirst(), rule);
        const AlarmRow alarm = run.mode->alarms().standing().begin()->second;
        QCOMPARE(alarm.comment, "on the way");
        QCOMPARE(alarm.shelvedBy, "Miller");
        run.say(0, "M,Tank low");
        QCOMPARE(run.mode->alarms().find(alarm.station, QStringLiteral("Tank low"))->priority, 1);
        run.timers.advance(Milliseconds(2 * 3'600'000));
        QVERIFY(run.mode->alarms().isWaiting(*run.mode->alarms().find(alarm.station, text)));
        QVERIFY(run.mode->keepsChanges());

        RecordReader reader(run.mode->recordPath());
        QStringList told;
        for (const EventKind kind : {EventKind::Commented, EventKind::Shelved, EventKind::Unshelved}) {
            EventFilter filter;
            filter.kinds = {kind};
            for (const EventRow &event : reader.findEvents(filter, {}, 9).rows) {
                told += event.text + QStringLiteral(" - ") + event.operatorName;
                QCOMPARE(event.station, alarm.station);
            }
        }
        QCOMPARE(told,
                 (QStringList{QStringLiteral("on the way - Miller"),
                              text + QStringLiteral(": known - Miller"), text + QStringLiteral(" - ")}));
    }

    void aCrashLosesNothingThatWasShown_data()
    {
        QTest::addColumn<bool>("isRestored");
        QTest::newRow("record") << false;
        QTest::newRow("its backup") << true;
    }
    void aCrashLosesNothingThatWasShown()
    {
        QFETCH(const bool, isRestored);
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->addStation(QStringLiteral("T"));
            run.mode->setOnline(QStringLiteral("S"), true);
            run.mode->setSchedule(QStringLiteral("S"), {QStringLiteral("08:00"), 1, {}, 0});
            run.say(0, "M,Alarm DI1 fail");
            run.say(0, "M,Alarm DI2 fail");
            run.say(0, "R,5,12.3");
            run.mode->removeStation(QStringLiteral("T"));
            QVERIFY(run.mode->acknowledge({run.node(alarmKey)}));
            QVERIFY(!run.isRed(alarmKey) && run.isRed(QStringLiteral("S")));
            run.timers.advance(Milliseconds(1000));
            QVERIFY(backUpRecord(run.mode->recordPath(), file("backup")));
        } // without close()
        if (isRestored) {
            QVERIFY(QFile::remove(file("record.sqlite")));
            QVERIFY(QFile::rename(file("backup"), file("record.sqlite")));
        }
        Run run(m_folder->path());
        QVERIFY2(run.told.size() == 1 && run.told[0].contains(QLatin1String("record")),
                 qPrintable(run.told.join(u'\n')));
        QCOMPARE(run.mode->stations().Count(), 1);
        QCOMPARE(run.lines[0]->opened, QStringList{QStringLiteral("10.0.0.7")});
        QVERIFY(!run.isRed(alarmKey) && run.isRed(QStringLiteral("S/meldung")));
        QVERIFY(run.node(alarmKey).data(StationTree::AcknowledgedRole).toLongLong() > 0);
        QCOMPARE(run.waiting(AlarmKind::Watcher).size(), isRestored ? 1 : 0); // it was in use
        QVERIFY(run.textOf(QStringLiteral("S/ip/ip5")).endsWith(QLatin1String("12.3")));
        QVERIFY(run.mode->station(QStringLiteral("S"))->exclusiveMode());
        QCOMPARE(run.mode->station(QStringLiteral("S"))->msgText(), "A*");
    }

    void aFileWrittenInTheMiddleOfTheRunFitsTheRecord_data()
    {
        QTest::addColumn<bool>("isWritten");
        QTest::newRow("crash later") << true;
        QTest::newRow("crash before the file is written") << false;
    }
    void aFileWrittenInTheMiddleOfTheRunFitsTheRecord()
    {
        QFETCH(const bool, isWritten);
        const QString s = QStringLiteral("S");
        {
            Run run(m_folder->path());
            run.mode->addStation(s, QStringLiteral("10.0.0.7"));
            run.mode->setOnline(s, true);
            run.say(0, "M,Alarm DI1 fail");
            run.say(0, "M,Alarm DI2 fail");
            QVERIFY(run.mode->close());
        }
        const QString nodes = m_folder->filePath(QStringLiteral("nodes.xml"));
        QByteArray before;
        QVERIFY(readFile(nodes, before, 1 << 20));
        qint64 raised = 0;
        {
            Run run(m_folder->path(), {10, 0, 0});
            QVERIFY(run.mode->tree().setData(run.node(s), QStringLiteral("Works")));
            run.mode->addStation(QStringLiteral("gone"));
            for (int n = 10; n < 50; ++n) {
                run.say(0, "M,Alarm DI" + QByteArray::number(n) + " fail");
            }
            QVERIFY(run.mode->keepsChanges());
            run.timers.advance(Milliseconds(60'000)); // begins to write
            run.say(0, "M,Alarm DI3 fail");
            run.mode->removeStation(QStringLiteral("gone"));
            QTRY_VERIFY(test::contentOf(nodes) != before);
            QVERIFY(run.mode->tree().setData(run.node(s), QStringLiteral("Pumps")));
            QCOMPARE(run.mode->addStation(QStringLiteral("Works")), "Works (1)");
            QVERIFY(run.mode->acknowledge({run.node(alarmKey)}));
            run.timers.advance(Milliseconds(10));
            run.say(0, "M,Alarm DI1 fail");
            raised = run.node(alarmKey).data(StationTree::RaisedRole).toLongLong();
            run.timers.advance(Milliseconds(10));
            run.say(0, "M,Alarm DI1 fail");
            QVERIFY(run.mode->acknowledge(
                {run.node(QStringLiteral("S/meldung/+4917012345 --> M,Alarm DI3 fail"))}));
            run.mode->setHostAddress(s, QStringLiteral("10.0.0.8"));
        }
        if (!isWritten) {
            QVERIFY(replaceFile(nodes, before));
        }
        for (int round = 0; round < 2; ++round) {
            Run run(m_folder->path());
            QVERIFY2(run.opened && run.told.size() == 1, qPrintable(run.told.join(u'\n')));
            const QString key = isWritten ? QStringLiteral("Works") : s;
            QCOMPARE(run.mode->alarms().waitingCount(), 42);
            QCOMPARE(run.mode->stations().Count(), 2);
            QCOMPARE(run.textOf(key), "Pumps");
            QCOMPARE(run.mode->attributes(key).hostAddress, "10.0.0.8");
            QCOMPARE(run.node(key).data(StationTree::AlarmCountRole), 42);
            const auto entry = [&](const char *which) {
                return run.node(key + QLatin1String("/meldung/+4917012345 --> M,Alarm ") +
                                QLatin1String(which) + QLatin1String(" fail"));
            };
            QCOMPARE(entry("DI1").data(StationTree::RaisedRole).toLongLong(), raised);
            QCOMPARE(entry("DI1").data(StationTree::CountRole).toInt(), 3);
            QVERIFY(entry("DI2").data(StationTree::ReceivedRole).toLongLong() > 0);
            QVERIFY(entry("DI3").data(StationTree::AcknowledgedRole).toLongLong() > 0);
        }
    }

    void filesThatCannotBeWrittenInTheMiddleOfTheRunAreTriedAgainLater()
    {
        Run run(m_folder->path(), {1, 0, 1});
        QVERIFY(QDir().mkdir(run.path));
        run.mode->addStation(QStringLiteral("S"));
        run.mode->addStation(QStringLiteral("T"));
        QVERIFY(run.mode->keepsChanges());
        run.timers.advance(Milliseconds(60'000));
        QTRY_COMPARE(run.told.size(), 1);
        QVERIFY(QDir().rmdir(run.path));
        run.timers.advance(Milliseconds(60'000));
        QVERIFY(!QFileInfo::exists(run.path)); // nothing was begun
        run.timers.advance(Milliseconds(60'000));
        QTRY_VERIFY(QFileInfo::exists(run.path));
        QCOMPARE(run.told.size(), 1);
    }

    void schedulesActAtOpeningAndOncePerMinute()
    {
        QVERIFY(replaceFile(m_folder->filePath(QStringLiteral("nodes.xml")),
                            "<KTR>" +
                                station("on", "exclusive_day_on=\"1\" exclusive_hour_on=\"08:00\" "
                                              "hostAddress=\"10.0.0.1\" online=\"-1\"") +
                                station("later", "exclusive_day_on=\"8\" exclusive_hour_on=\"10:00\" "
                                                 "exclusive_day_off=\"1\" exclusive_hour_off=\"10:02\" "
                                                 "hostAddress=\"10.0.0.2\" online=\"True\"") +
                                "</KTR>"));
        Run run(m_folder->path());
        const auto isExclusive = [&run](const char *name) {
            return run.mode->station(QString::fromLatin1(name))->exclusiveMode();
        };
        QVERIFY(isExclusive("on") && !isExclusive("later"));
        run.timers.advance(Milliseconds(31'000)); // Friday, 10:00:01
        QVERIFY(isExclusive("later"));
        run.mode->setExclusive(QStringLiteral("later"), false);
        run.timers.advance(Milliseconds(60'000));
        QVERIFY(!isExclusive("later")); // by hand, until the next switch
        run.mode->setExclusive(QStringLiteral("later"), true);
        run.timers.advance(Milliseconds(60'000));
        QVERIFY(!isExclusive("later"));
    }

    void aClockThatJumpsLosesNoSwitchAndNoAlarm_data()
    {
        QTest::addColumn<int>("hours");
        for (const int hours : {-24 * 365 * 4, -48, -1, 1, 48, 24 * 365 * 4}) {
            QTest::addRow("%d hours", hours) << hours;
        }
    }
    void aClockThatJumpsLosesNoSwitchAndNoAlarm()
    {
        QFETCH(int, hours);
        Run run(m_folder->path());
        const QString s = QStringLiteral("S");
        run.mode->addStation(s, QStringLiteral("10.0.0.7"));
        run.mode->setOnline(s, true);
        run.timers.advance(Milliseconds(60'000)); // 10:00:30
        run.say(0, "M,Alarm DI1 fail");
        run.clockJump = std::chrono::hours(hours);
        run.mode->setSchedule(s, {QStringLiteral("11:40"), 1, QStringLiteral("12:40"), 1});
        const bool isExclusive = run.mode->attributes(s).exclusiveMode;
        QList<bool> switched;
        for (int minute = 0; minute < 3 * 24 * 60; ++minute) {
            run.timers.advance(Milliseconds(60'000));
            const bool now = run.mode->attributes(s).exclusiveMode;
            if (switched.isEmpty() ? now != isExclusive : now != switched.last()) {
                switched += now;
            }
        }
        QVERIFY2(switched.size() == 6,
                 qPrintable(QString::number(switched.size()))); // on and off, three days
        run.say(0, "M,Alarm DI2 fail");
        run.say(0, "M,Alarm DI1 fail");
        QCOMPARE(run.alarms.size(), 3);
        QCOMPARE(run.node(alarmKey).data(StationTree::CountRole).toInt(), 2);
        QVERIFY(run.mode->acknowledge({run.node(alarmKey)}));
        QVERIFY(!run.isRed(alarmKey) && run.isRed(s));
        // Timers go on by another clock.
        QCOMPARE(run.events.last().kind, StationEvent::Kind::Notification);
        run.say(0, "fail: N,4711,PW");
        QCOMPARE(run.events.last().text, "+4917012345 --> fail: N,****,PW"); // no PIN
        run.timers.advance(Milliseconds(40'000));
        QCOMPARE(run.events.last().kind, StationEvent::Kind::Silent);
    }

    void aStationThatSaysNothingForAPeriodIsSilent()
    {
        Run run(m_folder->path());
        run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
        run.mode->setOnline(QStringLiteral("S"), true);
        const auto line = [&run] {
            return run.node(QStringLiteral("S")).data(StationTree::StatusRole).value<StationStatus>().line;
        };
        QCOMPARE(line(), StationStatus::Line::Connecting);
        run.lines[0]->say("OK\r\n");
        QCOMPARE(line(), StationStatus::Line::Alive);
        run.timers.advance(Milliseconds(20'000)); // heard in this period
        QCOMPARE(line(), StationStatus::Line::Alive);
        run.timers.advance(Milliseconds(20'000));
        QCOMPARE(line(), StationStatus::Line::Silent);
        run.mode->setHostAddress(QStringLiteral("S"), QStringLiteral("10.0.0.8"));
        QCOMPARE(line(), StationStatus::Line::Connecting);
        QCOMPARE(run.lines[0]->opened.last(), "10.0.0.8");
        QList<StationEvent::Kind> kinds;
        for (const StationEvent &event : run.events) {
            kinds += event.kind;
        }
        QCOMPARE(kinds, (QList{StationEvent::Kind::Alive, StationEvent::Kind::Silent}));
        QVERIFY(run.mode->keepsChanges());
        RecordReader reader(run.mode->recordPath());
        EventFilter connections;
        connections.kinds = {EventKind::Alive, EventKind::Silent};
        QCOMPARE(reader.findEvents(connections, {}, 9).rows.size(), 2);
    }

    void whatKeepsFromWatchingIsAnAlarm()
    {
        const QString s = QStringLiteral("S");
        constexpr Milliseconds minute(60'000);
        {
            Run run(m_folder->path());
            run.mode->addStation(s, QStringLiteral("10.0.0.7"));
            run.mode->setOnline(s, true);
            run.lines[0]->say("OK\r\n");
            run.timers.advance(4 * minute);
            QVERIFY(run.waiting(AlarmKind::Silent).isEmpty());
            run.timers.advance(2 * minute);
            QCOMPARE(run.waiting(AlarmKind::Silent).size(), 1);
            run.lines[0]->say("OK\r\n");
            QVERIFY(run.waiting(AlarmKind::Silent)[0].over != 0);
            run.mode->setLongestSilence(1);
            run.timers.advance(2 * minute);
            const QList<AlarmRow> silent = run.waiting(AlarmKind::Silent); // still to be acknowledged
            QVERIFY(silent.size() == 1 && silent[0].count == 2 && silent[0].over == 0);
            QVERIFY(run.mode->acknowledgeAlarms({silent[0].id}));
            QVERIFY(run.mode->alarms().alarm(silent[0].id) != nullptr); // but not over

            for (const char *report : {"+CPIN: SIM PUK\r\n", "+CPIN: SIM PUK\r\n"}) {
                run.lines[0]->say(report);
                QVERIFY(run.waiting(AlarmKind::Puk).size() == 1 && run.waiting(AlarmKind::Puk)[0].over == 0);
            }
            QVERIFY(run.mode->alarms().alarm(silent[0].id) == nullptr);
            run.lines[0]->say("+CPIN: SIM PIN\r\n");
            QVERIFY(run.waiting(AlarmKind::Puk)[0].over != 0);

            run.lines[0]->lose({10, true, false});
            run.timers.advance(minute / 2);
            run.lines[0]->lose({20, true, false});
            QVERIFY(run.waiting(AlarmKind::Flood).isEmpty());
            run.timers.advance(minute);
            QCOMPARE(run.waiting(AlarmKind::Flood).size(), 1);
            run.mode->setOnline(s, false);
            QVERIFY(run.waiting(AlarmKind::Flood)[0].over != 0);

            run.clockJump = 2 * minute;
            run.timers.advance(minute);
            QCOMPARE(run.waiting(AlarmKind::Watcher).size(), 1);
            QVERIFY(run.waiting(AlarmKind::Watcher)[0].over != 0);
            run.mode->setOnline(s, true);
            run.room = DiskRoom{1 << 20, qint64{1} << 40};
            run.timers.advance(2 * minute);
            QVERIFY(run.waiting(AlarmKind::Silent)[0].over == 0);
            QCOMPARE(run.waiting(AlarmKind::Disk).size(), 1);
            run.room->free = qint64{20} << 30; // less than a twentieth, and enough
            run.timers.advance(minute);
            QVERIFY(run.waiting(AlarmKind::Disk)[0].over != 0);
        }
        Run run(m_folder->path()); // all of them are to be acknowledged, and the silence goes on
        QCOMPARE(run.mode->longestSilence(), 1);
        QCOMPARE(run.mode->alarms().waitingCount(), 5);
        run.lines[0]->say("OK\r\n");
        QVERIFY(run.waiting(AlarmKind::Silent)[0].over != 0);
    }

    void whatIsOldLeavesTheTreeAndStaysInTheRecord()
    {
        const auto entry = [](const char *text) {
            return QStringLiteral("S/meldung/+4917012345 --> M,") + QLatin1String(text);
        };
        for (const bool isAfterACrash : {false, true}) {
            Run run(m_folder->path(), {}, QDateTime({2026, 11, isAfterACrash ? 25 : 20}, {9, 59, 30}));
            if (!isAfterACrash) {
                run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
                run.mode->setOnline(QStringLiteral("S"), true);
                for (const char *text :
                     {"M,old", "M,red fail", "M,standing fail", "M,by hand", "M,by hand fail"}) {
                    run.say(0, text);
                }
                QVERIFY(run.mode->acknowledge({run.node(entry("standing fail"))}));
                run.say(0, "H,7,2611162359,1,5");
                run.say(0, "H,7,2611201100,1,6");
                run.say(0, "H,7,2611201101,1,7");
                run.mode->setRetention({.tree = 3});
                run.timers.advance(std::chrono::hours(72) - std::chrono::minutes(5));
                run.say(0, "M,new");
                QVERIFY(run.node(entry("old")).isValid());
                QCOMPARE(run.mode->removeEntries({run.node(entry("by hand")), run.node(entry("by hand fail")),
                                                  run.node(QStringLiteral("S")),
                                                  run.node(QStringLiteral("S/history/7,20.11.2026 11:01 : "
                                                                          "IP1 = 7"))}),
                         2);
                run.timers.advance(std::chrono::minutes(10));
            }
            QVERIFY(run.node(QStringLiteral("S/history")).isValid());
            QVERIFY(!run.node(QStringLiteral("S/history/7,16.11.2026 23:59 : IP1 = 5")).isValid());
            QVERIFY(run.node(QStringLiteral("S/history/7,20.11.2026 11:00 : IP1 = 6")).isValid());
            QVERIFY(!run.node(QStringLiteral("S/history/7,20.11.2026 11:01 : IP1 = 7")).isValid());
            QVERIFY(!run.node(entry("old")).isValid() && !run.node(entry("by hand")).isValid());
            for (const char *text : {"red fail", "standing fail", "by hand fail", "new"}) {
                QVERIFY2(run.node(entry(text)).isValid(), text);
            }
            QCOMPARE(run.mode->retention(), RetentionRules{.tree = 3});
        }
        RecordReader reader(file("record.sqlite"));
        QCOMPARE(reader.findEvents({.kinds = {EventKind::EntryRemoved}}, {}, 9).rows.size(), 4);
        QCOMPARE(reader.findEvents({.text = QStringLiteral("M,old")}, {}, 9).rows.size(),
                 2); // it and its end
    }

    void whatHasArrivedIsHeardBeforeAStationIsLetGo()
    {
        Run run(m_folder->path());
        const QString s = QStringLiteral("S");
        run.mode->addStation(s, QStringLiteral("10.0.0.7"));
        const QList<std::function<void()>> ends = {
            [&] { run.mode->setOnline(s, false); }, [&] { run.mode->setAllOnline(false); },
            [&] { run.mode->setHostAddress(s, QStringLiteral("10.0.0.8")); }, [&] { run.mode->lend(s); },
            [&] { QVERIFY(run.mode->close()); }};
        for (qsizetype i = 0; i < ends.size(); ++i) {
            run.mode->setOnline(s, true);
            run.lines[0]->arrived = {"at+cmgs=\"+491\"\r", "M,fail " + QByteArray::number(i) + '\x1A'};
            ends[i]();
            QCOMPARE(run.alarms.size(), i + 1);
        }
    }

    void aLossIsToldOnceAtItsBeginningAndOnceAtItsEnd()
    {
        Run run(m_folder->path());
        const QString s = QStringLiteral("S");
        run.mode->addStation(s, QStringLiteral("10.0.0.7"));
        run.mode->setOnline(s, true);
        const auto shown = [&] {
            return run.node(s).data(StationTree::StatusRole).value<StationStatus>().loss;
        };
        run.lines[0]->lose({10, true, false});
        run.lines[0]->lose({20, true, false});
        QCOMPARE(shown()->dropped, 20);
        run.lines[0]->lose({30, true, true});
        QVERIFY(!shown());
        run.lines[0]->lose({3, false, false});
        run.mode->setOnline(s, false); // the end of it as well
        QVERIFY(!shown());
        QCOMPARE(run.told,
                 (QStringList{"S: floods: 10 datagrams dropped", "S: the flood is over: 30 datagrams dropped",
                              "S: 3 datagrams dropped", "S: the loss is over: 3 datagrams dropped"}));
        QStringList events;
        for (const StationEvent &event : run.events) {
            events += (event.kind == StationEvent::Kind::Flood  ? "flood "
                       : event.kind == StationEvent::Kind::Loss ? "loss "
                                                                : "other ") +
                      event.text;
        }
        QCOMPARE(events,
                 (QStringList{"flood begins: 10 datagrams dropped", "flood goes on: 20 datagrams dropped",
                              "flood over: 30 datagrams dropped", "loss begins: 3 datagrams dropped",
                              "loss over: 3 datagrams dropped"}));
    }

    void whatWaitsInAPauseIsHeardBeforeTheStationGoes()
    {
        Run run(m_folder->path());
        run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
        run.mode->setOnline(QStringLiteral("S"), true);
        QVERIFY(run.mode->requestValues(QStringLiteral("S")));
        run.lines[0]->say("at+cpin?\r");
        run.lines[0]->say("at+cmgr=1\r");
        run.lines[0]->say("+CSQ: 18,0\r\n");
        run.say(0, "M,Alarm DI1 fail");
        QVERIFY(run.alarms.isEmpty());
        run.mode->removeStation(QStringLiteral("S"));
        QCOMPARE(run.alarms.size(), 1);
        QCOMPARE(run.mode->tree().rowCount(), 0);
        QCOMPARE(run.mode->tree().alarmCount(), 0);
    }

    void anEndInTheMiddleOfAPauseIsSurvived()
    {
        Run run(m_folder->path());
        run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
        run.mode->setOnline(QStringLiteral("S"), true);
        QVERIFY(run.mode->requestValues(QStringLiteral("S")));
        run.lines[0]->say("at+cpin?\r");
        run.lines[0]->say("at+cmgr=1\r");
        run.say(0, "M,Alarm DI1 fail");
        run.mode.reset(); // without close()
        QVERIFY(run.alarms.isEmpty());
    }

    void aDamagedFileIsKeptAsideBeforeItIsReplaced()
    {
        const QByteArray damaged =
            "<!DOCTYPE KTR><KTR>" + station("S", "hostAddress=\"10.0.0.7\"") + "<item2 key=\"\x01\"/></KTR>";
        QVERIFY(test::writeFile(file("nodes.xml"), damaged));
        {
            Run run(m_folder->path());
            QVERIFY(run.opened && run.told.size() == 5); // also where it is kept, and of a new record
            QCOMPARE(run.waiting(AlarmKind::List).size(), 1);
            QCOMPARE(run.mode->stations().Count(), 1);
            QVERIFY(run.mode->close());
        }
        QCOMPARE(test::contentOf(file("nodes (1).xml")), damaged);
        Run run(m_folder->path());
        QVERIFY(run.opened && run.told.isEmpty());
        QCOMPARE(run.mode->attributes(QStringLiteral("S")).hostAddress, "10.0.0.7");
    }

    void whatNoListHasHadGoesToTheOneThatIsThere_data()
    {
        QTest::addColumn<QByteArray>("find"); // in the list after a crash
        QTest::addColumn<QByteArray>("edit");
        QTest::addColumn<QString>("address");
        QTest::newRow("a blank") << QByteArray("<KTR>") << QByteArray("<KTR >") << "10.0.0.7";
        QTest::newRow("a torn end") << QByteArray("</KTR>") << QByteArray("</KT") << "10.0.0.7";
        QTest::newRow("a type") << QByteArray("<KTR>") << QByteArray("<!DOCTYPE KTR><KTR>") << "10.0.0.7";
        QTest::newRow("an address") << QByteArray("10.0.0.7") << QByteArray("10.0.0.8") << "10.0.0.8";
        QTest::newRow("a name") << QByteArray("=\"Wes") << QByteArray("=\"U") << "10.0.0.7";
    }
    void whatNoListHasHadGoesToTheOneThatIsThere()
    {
        QFETCH(const QByteArray, find);
        QFETCH(const QByteArray, edit);
        const QString s = QStringLiteral("S");
        const QString t = QStringLiteral("Wes");
        const auto alarm = [](const QString &station, const char *which) {
            return QStringLiteral("%1/meldung/+4917012345 --> M,Alarm %2 fail").arg(station, which);
        };
        {
            Run run(m_folder->path());
            run.mode->addStation(s, QStringLiteral("10.0.0.7"));
            run.mode->addStation(t);
            run.mode->setOnline(s, true);
            run.say(0, "M,Alarm DI1 fail");
            QVERIFY(run.mode->close());
        }
        {
            Run run(m_folder->path(), {}, QDateTime({2026, 11, 20}, {10, 30}));
            run.mode->setOnline(t, true);
            run.say(1, "M,Alarm DI4 fail");
            run.say(0, "M,Alarm DI2 fail");
            run.say(0, "M,Alarm DI3 fail");
            run.say(0, "R,5,12.3");
            QVERIFY(run.mode->acknowledge({run.node(alarm(s, "DI1")), run.node(alarm(s, "DI3"))}));
            QVERIFY(run.mode->tree().setData(run.node(t), QStringLiteral("U")));
            run.mode->setHostAddress(s, QStringLiteral("10.0.0.9"));
            run.mode->addStation(QStringLiteral("new"));
            run.mode->removeStation(QStringLiteral("new"));
        } // without close()
        QByteArray list = test::contentOf(file("nodes.xml"));
        QVERIFY(list.contains(find) && test::writeFile(file("nodes.xml"), list.replace(find, edit)));
        for (int round = 0; round < 2; ++round) { // what was taken up outlives a crash
            Run run(m_folder->path(), {}, QDateTime({2026, 11, 20}, {12, 0}));
            QCOMPARE(run.told.join(u'\n').contains(QLatin1String("edited or replaced")), round == 0);
            QCOMPARE(run.mode->stations().Count(), 2);
            QTEST(run.mode->attributes(s).hostAddress, "address");
            QVERIFY(!run.isRed(alarm(s, "DI1")) && run.isRed(alarm(s, "DI2")));
            QVERIFY(run.node(alarm(s, "DI3")).isValid() && !run.isRed(alarm(s, "DI3")) && run.isRed(s));
            QVERIFY(run.textOf(s + QLatin1String("/ip/ip5")).endsWith("12.3"));
            const QString name = edit.endsWith('U') ? QStringLiteral("U") : t;
            QVERIFY(run.isRed(alarm(name, "DI4")) && run.isRed(name) && run.textOf(name) == name);
        }
    }

    /// A clean end: the list has all that happened, and what was edited in it since is meant.
    void aListThatWasEditedIsFollowed()
    {
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->addStation(QStringLiteral("gone"));
            run.mode->setOnline(QStringLiteral("S"), true);
            run.say(0, "M,Alarm DI1 fail");
            QVERIFY(run.mode->close());
        }
        QVERIFY(test::writeFile(file("nodes.xml"), "<KTR>" + station("S", "") + station("X", "") + "</KTR>"));
        for (int round = 0; round < 2; ++round) {
            Run run(m_folder->path());
            QCOMPARE(run.told.size(), round == 0 ? 1 : 0);
            QCOMPARE(run.mode->stations().Count(), 2);
            QVERIFY(!run.node(alarmKey).isValid());
            QCOMPARE(run.mode->alarms().waitingCount(), 0);
            QVERIFY(run.mode->close());
        }
        {
            RecordReader reader(file("record.sqlite"));
            QMap<QString, bool> listed;
            QVERIFY(reader.stations([&](const StationRow &row) { listed.insert(row.name, row.listed); }));
            QCOMPARE(listed, (QMap<QString, bool>{{"S", true}, {"X", true}, {"gone", false}}));
            const AlarmPage alarms = reader.findAlarms({}, {}, 10);
            QCOMPARE(alarms.rows.size(), 1);
            QVERIFY(alarms.rows[0].acknowledged > 0);
        }
        QVERIFY(QFile::remove(file("record.sqlite")));
        const Run run(m_folder->path());
        QVERIFY2(run.told.size() == 1 && run.told[0].contains(u"no record"),
                 qPrintable(run.told.join(u'\n')));
    }

    /// A large record is looked through while it is in use.
    void damageThatIsFoundAfterTheOpeningIsMended()
    {
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->setOnline(QStringLiteral("S"), true);
            for (int i = 0; i < 500; ++i) {
                run.say(0, "H10E1D25.09.2012Z09:45W" + QByteArray::number(1000 + i) + "I1020;");
            }
            QVERIFY(run.mode->close());
        }
        const QString path = file("record.sqlite");
        QByteArray content = test::contentOf(path);
        const qsizetype page = 4096;
        content.replace(content.indexOf("W1250I") / page * page, page, QByteArray(page, '\xA5'));
        QVERIFY(test::writeFile(path, content));
        RecordDatabase hand;
        QVERIFY(hand.open(path, RecordDatabase::Use::Write));
        QVERIFY(hand.execute(QStringLiteral("UPDATE setting SET value = '1' WHERE name = 'open'")));
        hand.close();
        test::ManualTimers timers;
        ListRecord record(timers, [](const QString &) {});
        record.setList(file("nodes.xml"));
        const OpenedRecord opened = openRecord(path, 0);
        QVERIFY(opened.status && opened.isUnchecked && opened.keptAside.isEmpty());
        record.begin(opened, {}, 0);
        QStringList told;
        record.writer().setMended([&](const OpenedRecord &mended) { told = damageTold(path, mended); });
        QTRY_VERIFY(!told.isEmpty());
        record.end();
        QVERIFY2(checkRecord(path).faults.isEmpty() && told[0].contains(QLatin1String("record (1).sqlite")),
                 qPrintable(told[0]));
        QVERIFY(!openRecord(path, 0).isUnchecked);
    }

    void aRecordThatWasCutOffHasAllNotificationsAgain()
    {
        constexpr qint64 count = 300;
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->setOnline(QStringLiteral("S"), true);
            for (int i = 0; i < count; ++i) {
                run.say(0, "M,text " + QByteArray::number(i));
            }
            QVERIFY(run.mode->close());
        }
        const QByteArray content = test::contentOf(file("record.sqlite"));
        QVERIFY(test::writeFile(file("record.sqlite"), content.first(content.size() / 2)));
        Run run(m_folder->path());
        QVERIFY(run.told.join(u' ').contains(QLatin1String("record (1).sqlite")) && run.mode->keepsChanges());
        RecordReader reader(file("record.sqlite"));
        qint64 found = 0;
        QVERIFY(reader.count(QStringLiteral("notification"), found));
        QCOMPARE(found, count);
    }

    /// The files are of a run of the version before, which ended by a crash.
    void whatTheVersionBeforeKeptIsTakenOverOnce()
    {
        for (const char *name : {"nodes.xml", "nodes.journal", "nodes.times"}) {
            QVERIFY(QFile::copy(QStringLiteral(KTR_SOURCE_DIR "/tests/opmode/earlier/") + QLatin1String(name),
                                file(name)));
        }
        for (const bool isClosed : {false, false, true, true}) {
            Run run(m_folder->path());
            QVERIFY(run.opened && run.mode->defects().isEmpty());
            const auto alarm = [&run](int number) {
                return run.node(QStringLiteral("S/meldung/+49 --> M,Alarm %1 fail").arg(number));
            };
            for (int number = 1; number <= 4; ++number) {
                QCOMPARE(alarm(number).data(StationTree::AcknowledgedRole).toLongLong() > 0, number <= 2);
                QVERIFY(alarm(number).data(StationTree::RaisedRole).toLongLong() > 0);
            }
            QCOMPARE(run.mode->alarms().waitingCount(), 2);
            if (!isClosed) {
                QVERIFY(run.mode->keepsChanges());
                continue;
            }
            QVERIFY(run.mode->close());
        }
        QVERIFY(!QFileInfo::exists(file("nodes.journal")) && QFileInfo::exists(file("nodes (1).journal")));
    }

    void aStationWhoseElementIsDamagedIsRebuiltAndTold_data()
    {
        QTest::addColumn<QByteArray>("find");
        QTest::addColumn<QByteArray>("damage");
        QTest::addColumn<QString>("address"); // of the station that is rebuilt
        QTest::newRow("a quote") << QByteArray("key=\"S\"") << QByteArray("key=\"S") << "";
        QTest::newRow("a bracket") << QByteArray("<item1 excl") << QByteArray("item1 excl") << "";
        QTest::newRow("another text") << QByteArray("text=\"S\"") << QByteArray("text=\"X\"") << "";
        QTest::newRow("no name") << QByteArray("text=\"S\"") << QByteArray("text=\"/\"") << "10.0.0.7";
        QTest::newRow("not itself") << QByteArray("10.0.0.7") << QByteArray("10.0.0.&") << "10.0.0.&";
        QTest::newRow("its colour") << QByteArray("text=\"S\" ForeColor=\"2")
                                    << QByteArray("text=\"S\" ForeColor=\"x") << "10.0.0.7";
    }
    void aStationWhoseElementIsDamagedIsRebuiltAndTold()
    {
        QFETCH(const QByteArray, find);
        QFETCH(const QByteArray, damage);
        QFETCH(const QString, address);
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->setOnline(QStringLiteral("S"), true);
            run.say(0, "M,Alarm DI1 fail");
            QVERIFY(run.mode->close());
        }
        QByteArray list = test::contentOf(file("nodes.xml"));
        const qsizetype at = list.indexOf(find);
        QVERIFY(at > 0 && test::writeFile(file("nodes.xml"), list.replace(at, find.size(), damage)));
        {
            Run run(m_folder->path());
            QVERIFY(run.opened && run.isRed(alarmKey) && run.isRed(QStringLiteral("S")));
            QCOMPARE(run.mode->attributes(QStringLiteral("S")).hostAddress, address);
            const QString told = run.mode->defects().join(u'\n');
            QVERIFY2(told.section(u'\n', 0, 0).endsWith(QLatin1String(": S")) ||
                         told.contains(QLatin1String("(S)\n")) ||
                         (damage.endsWith('&') && told.contains(u'&')),
                     qPrintable(told));
            QVERIFY2(told.contains("nodes (1).xml"), qPrintable(told));
            QVERIFY(run.mode->close());
        }
        QCOMPARE(test::contentOf(file("nodes (1).xml")), list);
        Run run(m_folder->path());
        QVERIFY(run.opened && run.isRed(alarmKey) && run.mode->defects().isEmpty());
    }

    void aFileThatCannotBeUsedIsNotTouchedUntilTheUserWantsAnEmptyList_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::newRow("torn") << QByteArray("torn");
        QTest::newRow("sound, without a station")
            << "<KTR>" + station("S/ip", "") + station("S/meldung/1 fail", "") + "</KTR>";
    }
    void aFileThatCannotBeUsedIsNotTouchedUntilTheUserWantsAnEmptyList()
    {
        QFETCH(const QByteArray, list);
        const QMap<QString, QByteArray> files{{file("nodes.xml"), list},
                                              {file("nodes.times"), "of it"},
                                              {file("nodes.journal"), QByteArray(50, 'j')}};
        for (auto content = files.cbegin(); content != files.cend(); ++content) {
            QVERIFY(test::writeFile(content.key(), *content));
        }
        Run run(m_folder->path());
        QVERIFY(!run.opened);
        QCOMPARE(run.mode->hindrance(), OperationalMode::Hindrance::Unusable);
        run.mode->addStation(QStringLiteral("S"));
        QVERIFY(run.mode->close());
        QVERIFY(!run.mode->open(run.path, OperationalMode::Use::Keep));
        for (auto content = files.cbegin(); content != files.cend(); ++content) {
            QCOMPARE(test::contentOf(content.key()), *content);
        }
        QVERIFY(run.mode->openEmpty());
        QCOMPARE(run.mode->hindrance(), OperationalMode::Hindrance::None);
        QCOMPARE(run.mode->stations().Count(), 0);
        run.mode->addStation(QStringLiteral("S"));
        QVERIFY(run.mode->keepsChanges() && run.mode->close());
        for (auto content = files.cbegin(); content != files.cend(); ++content) {
            QCOMPARE(test::contentOf(QString(content.key()).replace(u'.', QLatin1String(" (1)."))), *content);
        }
    }

    void aListIsWatchedByOneProgramAtATime()
    {
        Run first(m_folder->path());
        first.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
        first.mode->setOnline(QStringLiteral("S"), true);
        QVERIFY(first.mode->keepsChanges());
        Run second(m_folder->path());
        QVERIFY(!second.opened && second.lines.isEmpty());
        QCOMPARE(second.mode->hindrance(), OperationalMode::Hindrance::InUse);
        QVERIFY2(second.opened.message().contains(QSysInfo::machineHostName()) &&
                     second.opened.message().contains(QString::number(QCoreApplication::applicationPid())),
                 qPrintable(second.opened.message()));
        QVERIFY(second.mode->close());
        QVERIFY(first.mode->close());
        QVERIFY(second.mode->open(second.path, OperationalMode::Use::Keep));
        QCOMPARE(second.mode->stations().Count(), 1);
        QVERIFY(second.mode->close());
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files),
                 (QStringList{QStringLiteral("nodes.xml"), QStringLiteral("record.sqlite")}));
    }

    /// Each thing once, in order, and shown as where it is kept.
    void anotherProgramJoinsAList()
    {
        const QString s = QStringLiteral("S");
        Run first(m_folder->path());
        first.mode->addStation(s, QStringLiteral("10.0.0.7"));
        first.mode->setOnline(s, true);
        first.say(0, "M,Alarm DI1 fail");
        QVERIFY(first.mode->keepsChanges());
        Run second(m_folder->path());
        QVERIFY(second.mode->open(second.path, OperationalMode::Use::Look));
        QCOMPARE(second.mode->station(s)->liveness(), cStation::Liveness::Alive);
        const auto compare = [&] {
            QVERIFY(first.mode->keepsChanges());
            second.timers.advance(ListFollower::period);
            QCOMPARE(shownBy(*second.mode), shownBy(*first.mode));
            QCOMPARE(second.mode->alarms().standing(), first.mode->alarms().standing());
        };
        compare();
        first.events.clear();
        first.alarms.clear();
        for (int i = 0; i < 3 * ListFollower::slice; ++i) {
            first.say(0, "M,text " + QByteArray::number(i));
        }
        first.say(0, "M,Alarm DI1 fail");
        first.say(0, "M,Alarm DI2 fail");
        first.say(0, "H10E1D25.09.2012Z09:45W21.5I1020;H10E1D25.09.2012Z10:45W21.6I1020;");
        first.lines[0]->say("+CSQ: 18,0\r\n");
        first.lines[0]->say("+CPIN: SIM PUK\r\n");
        first.lines[0]->lose({3, true, false});
        compare();
        QCOMPARE(second.alarms, first.alarms);
        QCOMPARE(told(second.events), told(first.events));
        QVERIFY(first.mode->acknowledge({first.node(alarmKey)}));
        first.mode->tree().setData(first.node(s), QStringLiteral("T"));
        first.mode->addStation(QStringLiteral("U"), QStringLiteral("10.0.0.8"));
        first.mode->setSchedule(s, {QStringLiteral("10:00"), 1, QStringLiteral("11:00"), 2});
        compare();
        first.mode->removeStation(s);
        first.mode->setOnline(QStringLiteral("U"), true);
        compare();
        for (int i = 0; i < 2; ++i) { // the second time it is no event that it was heard
            first.timers.advance(Milliseconds(3'000));
            first.lines[1]->say("OK\r\n");
        }
        first.timers.advance(KeeperBeat::period);
        compare();
        const qint64 heard = first.mode->station(QStringLiteral("U"))->lastHeard();
        QVERIFY(heard == first.mode->now().toMSecsSinceEpoch() - KeeperBeat::period.count());
        QCOMPARE(second.mode->station(QStringLiteral("U"))->lastHeard(), heard);
        const QSignalSpy keeperChanged(&*second.mode, &OperationalMode::keeperChanged);
        QVERIFY(second.mode->requestValues(QStringLiteral("U"))); // which says nothing of the other program
        second.timers.advance(KeeperBeat::patience - 2 * ListFollower::period);
        QVERIFY(!second.mode->unheardSince());
        second.timers.advance(2 * ListFollower::period);
        QVERIFY(second.mode->unheardSince() && !second.mode->unwatchedSince());
        first.timers.advance(KeeperBeat::period);
        compare();
        QVERIFY(!second.mode->unheardSince());
        QCOMPARE(keeperChanged.size(), 2);
        QCOMPARE(second.lines.size(), 2);
        QVERIFY(second.lines[1]->opened.isEmpty() && !second.mode->unwatchedSince());
        QVERIFY(first.mode->close());
        second.timers.advance(ListFollower::period);
        QVERIFY(second.mode->unwatchedSince() && second.mode->keeper().isEmpty());
        second.mode->closeWithoutFile();
        QVERIFY(second.mode->open(second.path, OperationalMode::Use::Keep) && !second.mode->isJoined());
        QVERIFY(second.lines.last()->isOpen());
    }

    void whoJoinsAsksAndWhoKeepsTheListDoesIt()
    {
        const QString s = QStringLiteral("S");
        const QString address = QStringLiteral("10.0.0.9");
        Run first(m_folder->path());
        first.mode->addStation(s, QStringLiteral("10.0.0.7"));
        first.mode->setOnline(s, true);
        first.say(0, "M,Alarm DI1 fail");
        first.say(0, "M,Alarm DI2 fail");
        QVERIFY(first.mode->keepsChanges());
        Run second(m_folder->path());
        QVERIFY(second.mode->open(second.path, OperationalMode::Use::Look));
        second.mode->setOperator(QStringLiteral("Ada"));
        const auto comesTrue = [&](const std::function<bool()> &what) {
            return QTest::qWaitFor(
                [&] {
                    first.timers.advance(RequestDesk::period);
                    second.timers.advance(ListFollower::period);
                    return first.mode->keepsChanges() && what();
                },
                60'000);
        };
        const QString secondKey = QString(alarmKey).replace(QStringLiteral("DI1"), QStringLiteral("DI2"));
        QVERIFY(second.mode->acknowledge({second.node(alarmKey)}) && second.isRed(alarmKey));
        QVERIFY(comesTrue([&] { return !first.isRed(alarmKey) && !second.isRed(alarmKey); }));
        QVERIFY(first.isRed(secondKey));
        const qint64 alarm = *second.mode->alarms().waiting().begin();
        second.mode->alarmActions().comment({alarm}, QStringLiteral("valve"));
        second.mode->alarmActions().shelve({alarm}, second.mode->now().toMSecsSinceEpoch() + 9'000'000, s);
        QVERIFY(comesTrue([&] { return second.mode->alarms().waitingCount() == 0; }));
        QCOMPARE(second.mode->alarms().shelves(), first.mode->alarms().shelves());
        QCOMPARE(first.mode->alarms().alarm(alarm)->shelvedBy, "Ada");
        second.mode->alarmActions().unshelve(1, first.mode->alarms().alarm(alarm)->text);
        QVERIFY(comesTrue([&] { return second.mode->alarms().waitingCount() == 1; }));
        QVERIFY(second.mode->acknowledgeAlarms({alarm}));
        QVERIFY(comesTrue([&] { return !second.isRed(secondKey); }));

        second.mode->setHostAddress(s, address);
        second.mode->setExclusive(s, true);
        second.mode->setSchedule(s, {QStringLiteral("10:00"), 1, QStringLiteral("11:00"), 2});
        QVERIFY(second.mode->tree().setData(second.node(s), QStringLiteral("T")));
        QCOMPARE(second.textOf(s), "S"); // as it is until that is done
        QCOMPARE(second.mode->addStation(QStringLiteral("V"), address, true), "V");
        QVERIFY(second.mode->requestValues(s));
        QVERIFY(comesTrue([&] {
            return second.textOf(s) == u'T' && second.mode->station(QStringLiteral("V")) != nullptr;
        }));
        QVERIFY(comesTrue([&] { return first.mode->station(s)->msgText() == u"A*"; }));
        QVERIFY(first.mode->station(QStringLiteral("V"))->online());
        second.mode->removeStation(QStringLiteral("V"));
        second.mode->setAllOnline(false);
        QVERIFY(comesTrue(
            [&] { return second.mode->stations().Count() == 1 && !second.mode->attributes(s).online; }));
        QCOMPARE(shownBy(*second.mode), shownBy(*first.mode));
        QCOMPARE(first.mode->operatorName(), "");
        RecordReader reader(file("record.sqlite"));
        EventFilter byAda;
        byAda.operatorName = QStringLiteral("Ada");
        QCOMPARE(reader.findEvents(byAda, {}, 100).rows.size(), 14);
    }

    /// After each start a station's key is its name.
    void whoJoinedMeansTheSameStationAfterItWasRenamed()
    {
        std::optional<Run> first(m_folder->path());
        for (const char *name : {"XX", "YY"}) {
            first->mode->addStation(QString::fromLatin1(name));
        }
        QVERIFY(first->mode->keepsChanges());
        Run second(m_folder->path());
        QVERIFY(second.mode->open(second.path, OperationalMode::Use::Look));
        for (const auto &[before, after] : {std::pair("XX", "TT"), std::pair("YY", "XX")}) {
            QVERIFY(first->mode->tree().setData(first->node(QString::fromLatin1(before)),
                                                QString::fromLatin1(after)));
            QVERIFY(first->mode->close());
            first.emplace(m_folder->path());
            QVERIFY(first->mode->keepsChanges());
            second.timers.advance(ListFollower::period);
            QCoreApplication::processEvents(); // it is opened again
            QCOMPARE(shownBy(*second.mode), shownBy(*first->mode));
        }
        const QString kennung = second.mode->tree().index(0, 0).data(StationTree::KeyRole).toString();
        QCOMPARE(second.textOf(kennung), "TT");
        second.mode->removeStation(kennung);
        QTRY_COMPARE((first->timers.advance(RequestDesk::period), first->mode->stations().Count()), 1);
        QCOMPARE(first->mode->tree().index(0, 0).data().toString(), "XX");
    }

    /// Nothing is done that who asked for it could not know of, or that comes too late.
    void whatIsAskedForInVainIsTold()
    {
        const QString s = QStringLiteral("S");
        Run first(m_folder->path());
        first.mode->addStation(s, QStringLiteral("10.0.0.7"));
        first.mode->setOnline(s, true);
        first.say(0, "M,Alarm DI1 fail");
        first.mode->requestValues(s);
        QVERIFY(first.mode->keepsChanges());
        Run second(m_folder->path());
        QVERIFY(second.mode->open(second.path, OperationalMode::Use::Look));
        QVERIFY(first.mode->acknowledge({first.node(alarmKey)}));
        first.timers.advance(Milliseconds(1000));
        first.say(0, "M,Alarm DI1 fail"); // which the second has not seen
        QVERIFY(second.mode->acknowledge({second.node(alarmKey)}));
        second.mode->requestValues(s);
        second.mode->removeStation(QStringLiteral("gone"));
        RequestWriter writer(file("record.sqlite"));
        const qint64 now = first.mode->now().toMSecsSinceEpoch();
        int written = 0;
        const auto count = [&](const Status &status, qint64) { written += status ? 1 : 100; };
        const QString aboutS = QStringLiteral(R"({"station":1})");
        for (const RequestRow &row : {RequestRow{0, now - 60'000, {}, requests::remove, aboutS},
                                      RequestRow{0, now, {}, QStringLiteral("§88"), aboutS},
                                      RequestRow{0, now, {}, requests::acknowledge, QStringLiteral("{]")}}) {
            writer.write(row, count);
        }
        QTRY_COMPARE(written, 3);
        second.told.clear();
        QTRY_VERIFY2((first.timers.advance(RequestDesk::period), first.mode->keepsChanges(),
                      second.timers.advance(ListFollower::period), second.told.size() >= 3),
                     qPrintable(second.told.join(u'\n')));
        QVERIFY(first.isRed(alarmKey) && first.mode->stations().Count() == 1);
        RecordReader reader(file("record.sqlite"));
        QHash<qint64, QString> answers;
        QVERIFY(reader.answersOf({1, 2, 3, 4, 5, 6, 7}, answers));
        QCOMPARE(answers.size(), 6); // nobody asked a seventh time
        const QStringList results = answers.values();
        QCOMPARE(results.count(QString()), 1); // nothing is asked for
        QVERIFY(results.join(u' ').contains(QStringLiteral("§88")));
        QVERIFY(first.mode->close());
        second.timers.advance(ListFollower::period);
        second.told.clear();
        QVERIFY(!second.mode->acknowledge({second.node(alarmKey)}));
        second.mode->setOnline(s, false);
        QCOMPARE(second.told.size(), 1);
    }

    /// Its module forgets a text once it is answered.
    void aTextIsAnsweredWhenTheDiskHasIt_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("alarm") << QByteArray("M,Alarm DI1 fail");
        QTest::newRow("value") << QByteArray("R,1,7");
    }
    void aTextIsAnsweredWhenTheDiskHasIt()
    {
        QFETCH(QByteArray, text);
        Run run(m_folder->path());
        run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
        run.mode->setExclusive(QStringLiteral("S"), true);
        run.mode->setOnline(QStringLiteral("S"), true);
        RecordedLine &line = *run.lines[0];
        line.say("at+cpin?\r");
        run.say(0, text);
        line.say("at+csq\r"); // waits for its turn
        QCOMPARE(line.sent.last(), text + "\r\n");
        run.timers.advance(RecordWriter::longestDelay);
        QTRY_COMPARE(line.sent.size(), 8);
        int events = 0;
        QVERIFY(RecordReader(file("record.sqlite")).eventsAfter(0, [&](const EventRow &event) {
            events += event.text.contains(QString::fromLatin1(text)) ? 1 : 0;
            return true;
        }));
        QCOMPARE(events, 1);
        QCOMPARE(line.sent.sliced(4), (QByteArrayList{text + "\r\n", "OK\r\n", "at+csq\r\n", "OK\r\n"}));
    }

    void aLentStationIsSavedAsOnline()
    {
        Run run(m_folder->path());
        run.mode->addStation(QStringLiteral("S"), QStringLiteral(" 10.0.0.7:49111"));
        QCOMPARE(run.mode->stationAt(QStringLiteral("10.0.0.7")), "");
        run.mode->setOnline(QStringLiteral("S"), true);
        QCOMPARE(run.mode->stationAt(QStringLiteral("010.000.000.007")), "S");
        run.mode->lend(QStringLiteral("S"));
        QVERIFY(!run.lines[0]->isOpen() && run.mode->attributes(QStringLiteral("S")).online);
        run.mode->takeBack();
        QVERIFY(run.lines[0]->isOpen());
    }

    /// What a run left that had no time to write the list's file is in the record alone.
    void aRecordThatCannotBeOpenedAtFirstIsTakenUpLater_data()
    {
        QTest::addColumn<bool>("endedWell");
        QTest::newRow("all is in the file") << true;
        QTest::newRow("some is in the record alone") << false;
    }
    void aRecordThatCannotBeOpenedAtFirstIsTakenUpLater()
    {
        QFETCH(bool, endedWell);
        const QString record = ListRecord::pathFor(m_folder->filePath(QStringLiteral("nodes.xml")));
        const QString elsewhere = m_folder->filePath(QStringLiteral("elsewhere"));
        const QString again = QStringLiteral("S/meldung/+4917012345 --> M,Alarm DI2 fail");
        const QString late = QStringLiteral("S/meldung/+4917012345 --> M,Alarm DI3 fail");
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->setOnline(QStringLiteral("S"), true);
            QVERIFY(run.mode->close());
        }
        qint64 first = 0;
        {
            Run run(m_folder->path());
            run.say(0, "M,Alarm DI1 fail");
            run.say(0, "M,Alarm DI2 fail");
            QVERIFY(run.mode->acknowledge({run.node(again)}));
            first = *run.mode->alarms().waiting().begin();
            run.mode->alarmActions().comment({first}, QStringLiteral("seen to"));
            QVERIFY(run.mode->keepsChanges() && (!endedWell || run.mode->close()));
        }
        QVERIFY(QFile::rename(record, elsewhere) && QDir().mkdir(record));
        {
            Run run(m_folder->path());
            QVERIFY(run.opened && run.mode->unkeptChanges());
            const QPersistentModelIndex station = run.node(QStringLiteral("S"));
            run.say(0, "M,Alarm DI1 fail");
            run.say(0, "M,Alarm DI3 fail");
            QCOMPARE(run.mode->addStation(QStringLiteral("T")), "T");
            QVERIFY(run.mode->acknowledge({run.node(late)}).message().contains(record));
            QVERIFY(run.mode->unkeptChanges()->count > 2);
            QVERIFY(QDir().rmdir(record) && QFile::rename(elsewhere, record));
            QTRY_VERIFY((run.timers.advance(KeptList::openDelay), !run.mode->unkeptChanges()));
            QCOMPARE(station.isValid(), endedWell);
            const AlarmRow *alarm = run.mode->alarms().alarm(first);
            QVERIFY(alarm != nullptr && run.isRed(alarmKey) && run.isRed(late));
            QCOMPARE(alarm->comment, "seen to");
            QCOMPARE(alarm->count, 2);
            QVERIFY(run.node(again).isValid() && !run.isRed(again));
            QVERIFY(run.mode->acknowledge({run.node(late)}) && !run.isRed(late));
            run.say(0, "M,Alarm DI2 fail");
            QCOMPARE(run.waiting(AlarmKind::Disk).size(), 1); // over, and yet to be acknowledged
            QVERIFY(run.waiting(AlarmKind::Disk)[0].over != 0);
            QVERIFY(run.mode->close());
        }
        Run run(m_folder->path());
        QVERIFY(run.told.isEmpty() && run.isRed(alarmKey) && run.isRed(again) && !run.isRed(late));
        QCOMPARE(run.mode->stations().Count(), 2);
        QStringList texts;
        QSet<qint64> stations;
        qint64 last = 0;
        RecordReader reader(record);
        QVERIFY(reader.eventsAfter(0, [&](const EventRow &event) {
            if (event.kind == EventKind::Notification) {
                texts += event.text.section(u' ', -2, -2);
                stations += event.station;
            }
            return std::exchange(last, event.id) < event.id;
        }));
        QCOMPARE(texts.join(u' '), "DI1 DI2 DI1 DI3 DI2");
        QCOMPARE(stations.size(), 1);
    }

    void aRecordThatIsDamagedInUseHasAllThatStandsAgain()
    {
        const QString record = ListRecord::pathFor(m_folder->filePath(QStringLiteral("nodes.xml")));
        Run run(m_folder->path());
        run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
        run.mode->setOnline(QStringLiteral("S"), true);
        run.say(0, "M,Alarm DI1 fail");
        const qint64 first = *run.mode->alarms().waiting().begin();
        run.mode->alarmActions().comment({first}, QStringLiteral("seen to"));
        QVERIFY(run.mode->keepsChanges());
        Run viewer(m_folder->path());
        QVERIFY(viewer.mode->open(viewer.path, OperationalMode::Use::Look));
        {
            RecordDatabase hand; // all tables are empty, as after the loss of most pages
            QVERIFY(hand.open(record, RecordDatabase::Use::Write));
            for (const char *table : {"event", "alarm", "station", "notification", "list_file"}) {
                QVERIFY(hand.execute(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table))));
            }
            QVERIFY(hand.execute(
                {QStringLiteral("PRAGMA writable_schema=ON"),
                 QStringLiteral("UPDATE sqlite_master SET rootpage = 99999 WHERE name = 'event'")}));
        }
        run.mode->mendRecord();
        run.say(0, "M,Alarm DI2 fail");
        QTRY_VERIFY((run.timers.advance(RecordWriter::retryDelay), run.waiting(AlarmKind::Disk).size() > 0));
        QTRY_VERIFY((run.timers.advance(RecordWriter::retryDelay), !run.mode->unkeptChanges()));
        QTRY_VERIFY(run.told.join(u' ').contains(QLatin1String("record (1).sqlite"))); // all was added again
        QCOMPARE(QDir(m_folder->path()).entryList({QStringLiteral("record (*).sqlite")}),
                 QStringList{QStringLiteral("record (1).sqlite")});
        QVERIFY(run.mode->keepsChanges());
        viewer.timers.advance(ListFollower::period);
        QVERIFY(viewer.isRed(QStringLiteral("S/meldung/+4917012345 --> M,Alarm DI2 fail")));
        QCOMPARE(viewer.mode->alarms().alarm(first)->comment, "seen to");
        RecordReader reader(record);
        QList<AlarmRow> open;
        QVERIFY(reader.openAlarms([&](const AlarmRow &alarm) { open += alarm; }));
        QVERIFY(open.size() >= 3 && open[0] == *run.mode->alarms().alarm(first));
        QVERIFY(run.mode->close());
        QVERIFY(checkRecord(record).faults.isEmpty());
        Run next(m_folder->path());
        QVERIFY(next.told.isEmpty() && next.isRed(alarmKey));
    }

    void aCopyOfARecordInUseOpensAsTheListWasAtOneMoment()
    {
        const QString nodes = m_folder->filePath(QStringLiteral("nodes.xml"));
        const QString record = ListRecord::pathFor(nodes);
        const auto alarm = [](int number) { return QStringLiteral("M,Alarm n%1x fail").arg(number); };
        const auto key = [&](int number) {
            return QString(QStringLiteral("S/meldung/+4917012345 --> ") + alarm(number));
        };
        {
            Run run(m_folder->path());
            run.mode->addStation(QStringLiteral("S"), QStringLiteral("10.0.0.7"));
            run.mode->setOnline(QStringLiteral("S"), true);
            QVERIFY(run.mode->close());
        }
        std::vector<std::unique_ptr<QTemporaryDir>> copies;
        for (int i = 0; i < 3; ++i) {
            copies.push_back(std::make_unique<QTemporaryDir>());
            QVERIFY(QFile::copy(nodes, copies.back()->filePath(QStringLiteral("nodes.xml"))));
        }
        Run run(m_folder->path());
        std::atomic<int> copied = 0;
        std::thread copying([&] {
            for (const auto &copy : copies) {
                copied += backUpRecord(record, copy->filePath(QStringLiteral("record.sqlite"))) ? 1 : 100;
            }
        });
        int said = 0;
        for (; copied < 3 || said < 200; ++said) {
            run.say(0, alarm(said).toUtf8());
            if (said % 3 == 0) {
                QVERIFY(run.mode->acknowledge({run.node(key(said))}));
            }
            run.timers.advance(RecordWriter::longestDelay);
            QCoreApplication::processEvents();
        }
        copying.join();
        QCOMPARE(copied, 3);
        QVERIFY(run.mode->keepsChanges());
        const auto eventsOf = [](const QString &path) {
            QList<EventRow> events;
            (void)RecordReader(path).eventsAfter(0, [&](const EventRow &event) {
                events += event;
                return true;
            });
            return events;
        };
        const QList<EventRow> all = eventsOf(record);
        for (const auto &copy : copies) {
            const QString path = copy->filePath(QStringLiteral("record.sqlite"));
            const QList<EventRow> events = eventsOf(path);
            QCOMPARE(events, all.first(events.size()));
            Run restored(copy->path());
            QVERIFY(restored.opened && restored.mode->defects().isEmpty());
            int red = 0;
            QStringList told;
            for (const EventRow &event : events) {
                const bool isAlarm = event.kind == EventKind::Notification;
                const bool isAcknowledged = event.kind == EventKind::Acknowledged;
                red += isAlarm ? 1 : isAcknowledged ? -1 : 0;
                told += isAlarm ? event.text : QString();
            }
            told.removeAll(QString());
            for (int i = 0; i < said; ++i) {
                QCOMPARE(restored.node(key(i)).isValid(), i < told.size());
            }
            QCOMPARE(restored.mode->tree().alarmCount(), red);
            QCOMPARE(restored.waiting(AlarmKind::Module).size(), red);
            RecordReader reader(path);
            for (const int number : {0, static_cast<int>(told.size()) - 1, said}) {
                const qsizetype found = reader.findEvents({.text = alarm(number).mid(2)}, {}, 9).rows.size();
                QCOMPARE(found, std::ranges::count_if(events, [&](const EventRow &event) {
                             return event.text.contains(alarm(number));
                         }));
            }
        }
    }

private:
    /// All of the tree and of its stations that the eyes see.
    static QStringList shownBy(const OperationalMode &mode)
    {
        QStringList lines;
        const StationTree &tree = mode.tree();
        const std::function<void(const QModelIndex &)> add = [&](const QModelIndex &node) {
            QStringList parts{node.data(StationTree::KeyRole).toString()};
            for (const int role :
                 {int{Qt::EditRole}, int{StationTree::ColourRole}, int{StationTree::AlarmCountRole},
                  int{StationTree::ReceivedRole}, int{StationTree::CountRole},
                  int{StationTree::AcknowledgedRole}, int{StationTree::RaisedRole}}) {
                parts += node.data(role).toString();
            }
            lines += parts.join(u'|');
            for (int row = 0; row < tree.rowCount(node); ++row) {
                add(tree.index(row, 0, node));
            }
        };
        for (int row = 0; row < tree.rowCount(); ++row) {
            add(tree.index(row, 0));
        }
        mode.stations().forEach([&](const cStation &station) {
            const StationAttributes attributes = mode.attributes(station.kennung());
            lines += toJson(attributes) + station.csq() + (station.pukNeeded() ? u'p' : u'-') +
                     QString::number(int(station.liveness())) +
                     (station.loss() ? QString::number(station.loss()->dropped) : QString());
        });
        return lines;
    }
    static QStringList told(const QList<StationEvent> &events)
    {
        QStringList lines;
        for (const StationEvent &event : events) {
            lines +=
                QString::number(event.at) + event.kennung + QString::number(int(event.kind)) + event.text;
        }
        return lines;
    }
    QString file(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(OperationalModeTest)
#include "operational_mode_test.moc"
