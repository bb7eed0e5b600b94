#include "opmode/beside_list.h"
#include "opmode/operational_mode.h"
#include "opmode/overview/input_reading.h"
#include "opmode/overview/overview_model.h"
#include "opmode/watch_summary.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

class OverviewModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_model.reset();
        m_mode.reset();
        m_lines.clear();
        m_names = {};
        m_folder = std::make_unique<QTemporaryDir>();
        m_timers = std::make_unique<ManualTimers>();
        openMode();
        m_model = std::make_unique<OverviewModel>(*m_mode, *m_timers, english());
        m_model->setActive(true);
    }

    void theMostUrgentComesFirstAndEqualOnesByName()
    {
        add({"Pump 10", "Pump 9", "Dam", "Mill", "Lock", "Weir"});
        m_mode->alarmActions().setRules(AlarmRules(
            {{"burst", false, true, AlarmPriority::High}, {"fail", false, true, AlarmPriority::Low}}));
        for (const char *name : {"Mill", "Lock"}) {
            online(name);
        }
        m_timers->advance(Milliseconds(20'000)); // they become silent with the second announcement
        for (const char *name : {"Pump 10", "Pump 9", "Dam", "Weir"}) {
            online(name);
        }
        m_timers->advance(Milliseconds(20'000));
        say("Pump 10", "DI1 fail");
        say("Pump 9", "DI2 fail");
        say("Dam", "Pipe burst");
        say("Lock", "DI1 fail");
        say("Weir", "all well");
        m_mode->setOnline("Mill", false);
        settle();
        QCOMPARE(shown(), (QStringList{"Dam", "Lock", "Pump 9", "Pump 10", "Weir", "Mill"}));
        QCOMPARE(glance("Dam").urgency, Urgency::HighAlarm);
        QCOMPARE(glance("Weir").urgency, Urgency::Quiet);
        QCOMPARE(glance("Mill").urgency, Urgency::Offline);

        QVERIFY(m_mode->acknowledgeAlarms({glance("Dam").worst}));
        settle();
        QCOMPARE(shown(), (QStringList{"Lock", "Pump 9", "Pump 10", "Dam", "Weir", "Mill"}));
        QCOMPARE(glance("Dam").urgency, Urgency::Standing);
        QCOMPARE(glance("Dam").waiting, 0);
        m_model->setOrder(OverviewModel::Order::Name);
        QCOMPARE(shown(), (QStringList{"Dam", "Lock", "Mill", "Pump 9", "Pump 10", "Weir"}));
        QCOMPARE(m_model->counts()[std::size_t(Urgency::LowAlarm)], 3);
    }

    void silenceComesBeforeWhatIsAcknowledged()
    {
        add({"A", "B"});
        online("A");
        online("B");
        say("B", "DI1 fail");
        QVERIFY(m_mode->acknowledgeAlarms({*m_mode->alarms().waiting().begin()}));
        settle();
        QCOMPARE(shown().front(), "B"); // the other was not heard yet
        for (int period = 0; period < 2; ++period) {
            m_timers->advance(Milliseconds(20'000));
            say("B", "all well");
        }
        settle();
        QCOMPARE(glance("A").urgency, Urgency::Silent);
        QCOMPARE(shown(), (QStringList{"A", "B"}));
    }

    void whoIsSilentIsCountedSoWhateverElseIsWrong()
    {
        add({"Waits", "Acknowledged", "Silent", "Offline", "Alive"});
        for (const char *name : {"Waits", "Acknowledged", "Silent", "Offline", "Alive"}) {
            online(name);
        }
        for (const char *name : {"Acknowledged", "Offline"}) {
            say(name, "DI1 fail");
            QVERIFY(m_mode->acknowledgeAlarms({*m_mode->alarms().waiting().begin()}));
        }
        say("Waits", "DI1 fail");
        m_mode->setOnline("Offline", false);
        for (int period = 0; period < 2; ++period) {
            m_timers->advance(Milliseconds(20'000));
            say("Alive", "all well");
        }
        settle();
        QVERIFY(isWaiting(glance("Waits").urgency));
        const OverviewModel::Numbers all = m_model->countOf(OverviewModel::allGroups);
        QCOMPARE(all, (OverviewModel::Numbers{5, 1, 2, 3, 1}));
        const WatchSummary summary = summaryOf(*m_mode); // the status bar's
        QCOMPARE(summary.silent, all.silent);
        QCOMPARE(summary.offline, all.offline);
        QCOMPARE(summary.stations(), all.stations);
    }

    void manyEventsMoveTheTilesOnceAndTheChosenOneGoesAlong()
    {
        add({"A", "B", "C"});
        for (const char *name : {"A", "B", "C"}) {
            online(name);
        }
        settle();
        const QPersistentModelIndex chosen(m_model->index(m_model->rowOf("C")));
        QSignalSpy moved(m_model.get(), &QAbstractItemModel::layoutChanged);
        QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
        for (int n = 0; n < 50; ++n) {
            say("C", "Pump " + QByteArray::number(n) + " fail");
            say("B", "at " + QByteArray::number(n));
        }
        QCOMPARE(moved.size(), 0);
        settle();
        QCOMPARE(moved.size(), 1);
        QCOMPARE(reset.size(), 0);
        QCOMPARE(chosen.row(), 0);
        QCOMPARE(chosen.data(OverviewModel::KeyRole), "C");
        QCOMPARE(glance("C").waiting, 50);
    }

    void whileTheHandIsThereNothingMovesAndAllIsTold()
    {
        add({"A", "B"});
        online("A");
        online("B");
        settle();
        bool isHeld = true;
        m_model->setHold([&isHeld] { return isHeld; });
        say("B", "DI1 fail");
        m_mode->addStation("C");
        settle();
        QCOMPARE(shown(), (QStringList{"A", "B"}));
        QCOMPARE(glance("B").urgency, Urgency::MediumAlarm);
        isHeld = false;
        settle();
        QCOMPARE(shown(), (QStringList{"B", "A", "C"}));
    }

    void stationsThatComeGoAndAreRenamedAreFollowed()
    {
        add({"A", "B"});
        settle();
        m_model->setFilter("b");
        QCOMPARE(shown(), QStringList("B"));
        QVERIFY(m_mode->tree().setData(m_mode->tree().find("A"), "Abbey"));
        settle();
        QCOMPARE(shown(), (QStringList{"Abbey", "B"}));
        m_mode->removeStation("B");
        QCOMPARE(m_model->index(1).data(), "B"); // until it is taken over
        settle();
        QCOMPARE(shown(), QStringList("Abbey"));
        m_model->setActive(false);
        m_mode->addStation("Bank");
        settle();
        QCOMPARE(shown(), QStringList("Abbey"));
        m_model->setActive(true);
        QCOMPARE(shown(), (QStringList{"Abbey", "Bank"}));
    }

    /// Only those that changed are sorted in; the order must be that of sorting all.
    void whateverHappensTheOrderIsThatOfSortingAll()
    {
        QStringList names;
        for (int station = 0; station < 40; ++station) {
            names += QStringLiteral("Pump %1").arg(station * 7 % 40);
        }
        add(names);
        for (const QString &name : names) {
            online(name);
        }
        quint32 seed = 1;
        const auto chance = [&seed](int below) {
            seed = seed * 1'664'525U + 1'013'904'223U;
            return static_cast<int>((seed >> 8U) % static_cast<quint32>(below));
        };
        for (int round = 0; round < 120; ++round) {
            for (int event = chance(6); event >= 0; --event) {
                const QString &name = names[chance(40)];
                const int kind = chance(5);
                if (kind == 0) {
                    m_mode->setOnline(name, chance(2) == 0);
                } else if (kind == 1) {
                    const std::set<qint64> &waiting = m_mode->alarms().waiting();
                    QVERIFY(m_mode->acknowledgeAlarms({waiting.begin(), waiting.end()}));
                } else if (kind == 2) {
                    m_timers->advance(Milliseconds(20'000));
                } else {
                    say(name, kind == 3 ? "at 12" : "DI" + QByteArray::number(chance(3)) + " fail");
                }
            }
            settle();
            for (int row = 1; row < m_model->rowCount(); ++row) {
                const StationGlance &above = m_model->glance(row - 1);
                const StationGlance &below = m_model->glance(row);
                const auto number = [](const StationGlance &glance) { return glance.name.mid(5).toInt(); };
                QVERIFY2(std::pair(above.urgency, number(above)) < std::pair(below.urgency, number(below)),
                         qPrintable(above.name + " before " + below.name));
            }
            std::array<int, urgencyCount> counts{};
            for (int row = 0; row < m_model->rowCount(); ++row) {
                ++counts[static_cast<std::size_t>(m_model->glance(row).urgency)];
                QCOMPARE(m_model->rowOf(m_model->glance(row).kennung), row);
            }
            QCOMPARE(m_model->counts(), counts);
        }
    }

    void whatIsPutAsideWaitsForNobody()
    {
        add({"A", "B"});
        online("A");
        online("B");
        say("A", "DI1 fail");
        say("A", "DI2 fail");
        m_mode->alarmActions().shelve({*m_mode->alarms().waiting().begin()},
                                      m_mode->alarmActions().now() + 3'600'000, "being changed");
        settle();
        QCOMPARE(glance("A").waiting, 1);
        QCOMPARE(m_mode->alarms().alarm(glance("A").worst)->text, "DI2 fail"); // the one that waits
        m_mode->alarmActions().shelveStation(m_mode->alarmActions().numberOf("A"),
                                             m_mode->alarmActions().now() + 3'600'000, "maintenance");
        settle();
        QCOMPARE(glance("A").urgency, Urgency::Standing);
        QCOMPARE(glance("A").standing, 2);
    }

    void whoJoinsSeesTheSame()
    {
        add({"A", "B", "C"});
        for (const char *name : {"A", "B", "C"}) {
            online(name);
            say(name, "all well");
        }
        say("C", "DI1 fail");
        say("B", "DI2 fail");
        QVERIFY(m_mode->acknowledgeAlarms({*m_mode->alarms().waiting().rbegin()}));
        settle();
        QVERIFY(m_mode->keepsChanges());
        OperationalMode joined({fixedEnvironment(), *m_timers,
                                [] { return std::make_unique<RecordedLine>(); }, [] {},
                                manualCallbackTimers(*m_timers)},
                               StationCaptions{});
        QVERIFY(joined.open(m_folder->filePath("nodes.xml"), OperationalMode::Use::Look));
        OverviewModel other(joined, *m_timers, english());
        other.setActive(true);
        const auto compare = [&] {
            QCOMPARE(other.rowCount(), m_model->rowCount());
            for (int row = 0; row < other.rowCount(); ++row) {
                QCOMPARE(other.glance(row).name, m_model->glance(row).name);
                QCOMPARE(other.glance(row).urgency, m_model->glance(row).urgency);
                QCOMPARE(other.glance(row).waiting, m_model->glance(row).waiting);
            }
        };
        compare();
        QCOMPARE(shown().front(), "C");
        say("A", "DI3 fail");
        QVERIFY(m_mode->keepsChanges());
        settle();
        QTRY_VERIFY((m_timers->advance(Milliseconds(300)), isWaiting(other.glance(1).urgency)));
        settle();
        compare();
    }

    void groupsAreFoundByNameAndKeptWhole()
    {
        const QString list = m_folder->filePath("nodes.xml");
        QCOMPARE(groupsFileOf(list), m_folder->filePath("nodes.groups"));
        const QString shared = groupsFileOf("postgresql://host/stations");
        QVERIFY(shared != groupsFileOf("postgresql://host/others") && shared.endsWith(".groups"));
        const QByteArray text = "stray\n[North]\r\npump *\n# who is on duty\nTower\n[ ]\n"
                                "[South]\n*dam?\n\\*\n\\#1\n[North]\n*mill*er*\n";
        QStringList remarks;
        const StationGroups groups = StationGroups::parse(text, remarks);
        QCOMPARE(remarks.size(), 2);
        QVERIFY(remarks[0].contains('1') && remarks[1].contains('6'));
        QCOMPARE(groups.list().size(), 2);
        for (const auto &[station, group] : {std::pair("Pump 7", 0),
                                             {"Pump", -1},
                                             {"Tower", 0},
                                             {"Tower 2", -1},
                                             {"Great Dam2", 1},
                                             {"Dam", -1},
                                             {"*", 1},
                                             {"x", -1},
                                             {"#1", 1},
                                             {"Mill Weir Miller", 0},
                                             {"", -1}}) {
            QVERIFY2(groups.groupOf(station) == group, station);
        }
        QByteArray read;
        QVERIFY(readBesideList(groupsFileOf(list), read) && read.isEmpty());
        QVERIFY(writeBesideList(groupsFileOf(list), text));
        QVERIFY(readBesideList(groupsFileOf(list), read));
        QCOMPARE(read, text);
        QVERIFY(writeBesideList(groupsFileOf(list), "[N\xF6rd]"));
        QVERIFY(!readBesideList(groupsFileOf(list), read) && read.isEmpty());

        add({"Pump 1", "Pump 2", "Dam1", "Inn"});
        m_model->setGroups(groups);
        m_model->showGroup(0);
        QCOMPARE(shown(), (QStringList{"Pump 1", "Pump 2"}));
        m_model->showGroup(StationGroups::none);
        QVERIFY(shown().contains("Inn") && !shown().contains("Dam1"));
        online("Dam1");
        say("Dam1", "DI1 fail");
        settle();
        QCOMPARE(m_model->countOf(1), (OverviewModel::Numbers{1, 1, 0, 0, 0}));
        m_model->showGroup(1);
        m_model->setGroups({}); // the group that was shown is gone
        QCOMPARE(m_model->rowCount(), m_model->stationCount());
    }

    void groupsHaveHeadingsThatFold()
    {
        add({"Pump 1", "Pump 2", "Dam", "Inn"});
        online("Pump 2");
        QStringList remarks;
        m_model->setGroups(StationGroups::parse("[North]\nPump *\n[Empty]\nx\n[South]\nDam\n", remarks));
        m_model->setOrder(OverviewModel::Order::Group);
        QCOMPARE(shown(), (QStringList{"North", "Pump 2", "Pump 1", "South", "Dam", "", "Inn"}));
        QCOMPARE(m_model->headings(), (std::vector<int>{0, 3, 5}));
        QCOMPARE(m_model->headingAt(3), 2);
        QCOMPARE(m_model->headingAt(5), StationGroups::none);
        QCOMPARE(m_model->headingAt(4), std::nullopt);
        QVERIFY(m_model->index(0).data(OverviewModel::KeyRole).toString().isEmpty());
        const QPersistentModelIndex heading = m_model->index(3);

        online("Pump 1");
        say("Pump 1", "DI1 fail");
        settle();
        QCOMPARE(shown(), (QStringList{"North", "Pump 1", "Pump 2", "South", "Dam", "", "Inn"}));
        QCOMPARE(m_model->countOf(0), (OverviewModel::Numbers{2, 1, 0, 0, 0}));
        QCOMPARE(heading.row(), 3);

        m_model->setFolded(0, true);
        m_model->setFolded(StationGroups::none, true);
        QCOMPARE(shown(), (QStringList{"North", "South", "Dam", ""}));
        QCOMPARE(m_model->rowOf("Pump 1"), -1);
        m_model->setFilter("pump 2"); // what is searched for is not hidden
        QCOMPARE(shown(), (QStringList{"North", "Pump 2"}));
        m_model->setFilter({});
        QCOMPARE(m_model->foldedNames(), (QStringList{"North", ""}));
        m_model->setFoldedNames({"South"});
        QCOMPARE(shown(), (QStringList{"North", "Pump 1", "Pump 2", "South", "", "Inn"}));
        m_model->setGroups({}); // nothing to head
        QCOMPARE(shown().size(), 4);
    }

    void aGroupSaysWhichValuesItsStationsShow()
    {
        const QByteArray text = "# both\n[North]\r\nPump *\n=8\n[South]\n= 9, 30\n\\=9\n[North]\n= 1,2\nx";
        QStringList remarks;
        const StationGroups groups = StationGroups::parse(text, remarks);
        QCOMPARE(remarks.size(), 1); // it may be meant as inputs
        QVERIFY(remarks[0].contains("6"));
        QVERIFY(StationGroups::parse("[A]\n=9,10,1,2,3\n", remarks).list()[0].channels.isEmpty());
        QCOMPARE(remarks.size(), 2);
        QCOMPARE(groups.list()[0].channels, (QList<int>{1, 2}));
        QVERIFY(groups.list()[1].channels.isEmpty());
        QCOMPARE(groups.groupOf("= 9, 30"), 1); // no such channel: the name of a station, as ever
        QCOMPARE(groups.groupOf("=9"), 1);
        QCOMPARE(StationGroups::withChannels(text, "North", {9, 10}),
                 "# both\n[North]\r\n= 9, 10\nPump *\n[South]\n= 9, 30\n\\=9\n[North]\nx");
        QCOMPARE(StationGroups::withChannels("[A]\n= 4\nb\n", "A", {}), "[A]\nb\n");
        add({"Pump 1", "Inn"});
        m_model->setGroups(groups);
        QCOMPARE(m_model->channelsOf("Pump 1"), (QList<int>{1, 2}));
        QVERIFY(m_model->channelsOf("Inn").isEmpty());
    }

    void valuesHaveUnitsAndThoseWithNamesComeFirst()
    {
        add({"A"});
        online("A");
        const auto channels = [this](const QList<int> &chosen) {
            return shownChannels(*m_mode, "A", m_names, chosen, 2);
        };
        QCOMPARE(channels({}), QList<int>());
        for (const char *report : {"R,9,2.5", "R,5,1", "R,18,21"}) {
            sayRaw("A", report);
        }
        QCOMPARE(channels({}), (QList<int>{5, 9}));
        QCOMPARE(readingOf(*m_mode, "A", 5, {}).state, true);
        m_names.channels[16] = {"Cellar", ""};
        QCOMPARE(channels({}), QList<int>{17});
        QCOMPARE(channels({18, 9, 5}), (QList<int>{18, 9}));
        QCOMPARE(readingOf(*m_mode, "A", 17, {}).unit, QString::fromUtf8("°C"));
        auto inputs = std::make_shared<ConfiguredInputs>();
        inputs->names.channels[16].unit = "K";
        inputs->measures[0] = Measure::Pulses;
        inputs->limits = {{3, 9, 3, 2.4, 0, "high"}, {4, 9, 3, 9, 0, "very high"}, {5, 5, 1, 1, 0, ""}};
        StationConfiguration configuration;
        configuration.inputs = inputs;
        QCOMPARE(readingOf(*m_mode, "A", 17, configuration).unit, "K");
        QCOMPARE(readingOf(*m_mode, "A", 9, configuration).limits.size(), 2);
        QCOMPARE(readingOf(*m_mode, "A", 9, configuration).beyond->number, 3);
        QVERIFY(!readingOf(*m_mode, "A", 5, configuration).beyond);
        sayRaw("A", "R,1,1");
        QCOMPARE(readingOf(*m_mode, "A", 1, {}).state, true);
        QCOMPARE(readingOf(*m_mode, "A", 1, configuration).state, std::nullopt); // it counts
    }

    void agesAreThoseOfThisRunElseThoseOfTheRecord()
    {
        add({"A"});
        online("A");
        sayRaw("A", "R,9,2.5");
        sayRaw("A", "R,10,no number");
        const qint64 now = m_mode->now().toMSecsSinceEpoch() / 1000 * 1000;
        QCOMPARE(m_model->times().of("A", 9), now);
        QCOMPARE(m_model->times().of("A", 10), now);
        m_model.reset();
        m_mode.reset();
        openMode();
        QCOMPARE(m_mode->trends().heardAt("A", 9), 0);
        const ValueTimes times(*m_mode);
        const QSignalSpy found(&times, &ValueTimes::found);
        QCOMPARE(times.of("A", 9), 0); // asked for
        QTRY_COMPARE(found.count(), 1);
        QCOMPARE(times.of("A", 9), now);
        QCOMPARE(times.of("A", 1), 0);
    }

private:
    void openMode()
    {
        OperationalMode::Services services{fixedEnvironment(), *m_timers,
                                           [this] {
                                               auto line = std::make_unique<RecordedLine>();
                                               m_lines += line.get();
                                               return line;
                                           },
                                           [] {}, manualCallbackTimers(*m_timers)};
        m_mode = std::make_unique<OperationalMode>(services, StationCaptions{});
        QVERIFY(m_mode->open(m_folder->filePath("nodes.xml"), OperationalMode::Use::Keep));
    }
    void add(const QStringList &names)
    {
        for (const QString &name : names) {
            m_mode->addStation(name, "10.0.0.1");
        }
        settle();
    }
    void online(const QString &name) { m_mode->setOnline(name, true); }
    void settle() { m_timers->advance(OverviewModel::longestDelay); }
    void sayRaw(const QString &name, const QByteArray &sms)
    {
        const int line = m_mode->tree().find(name).row();
        m_lines[line]->say("at+cmgs=\"+4917012345\"\r");
        m_lines[line]->say(sms + '\x1A');
    }
    void say(const QString &name, const QByteArray &text) { sayRaw(name, "M," + text); }
    QStringList shown() const
    {
        QStringList names;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            names += m_model->index(row).data().toString();
        }
        return names;
    }
    const StationGlance &glance(const QString &name) const { return m_model->glance(m_model->rowOf(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ManualTimers> m_timers;
    QList<RecordedLine *> m_lines;
    ChannelNames m_names;
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<OverviewModel> m_model;
};

QTEST_GUILESS_MAIN(OverviewModelTest)
#include "overview_model_test.moc"
