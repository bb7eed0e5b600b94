#include "opmode/operational_mode.h"
#include "record/closed_by_removal.h"
#include "record/record_reader.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace ktr;
using namespace ktr::test;

/// What a removal takes, and what its undoing brings back; how the window does it is tested with the window.
class StationRemovalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        open();
        for (const char *name : {"Silent", "Puk", "Flood", "Noted"}) {
            const QString kennung = m_mode->addStation(name, "10.0.0.7");
            m_mode->setOnline(kennung, true);
        }
        // Each has an alarm that the program itself raises; the last one's is acknowledged and stands on.
        m_timers.advance(6 * minute);
        for (const int station : {1, 2}) {
            m_lines[station]->say("OK\r\n");
        }
        QVERIFY(m_mode->acknowledgeAlarms({alarmOf("Puk"), alarmOf("Flood")})); // the silence is over
        QVERIFY(m_mode->acknowledgeAlarms({alarmOf("Noted")}));
        m_lines[1]->say("+CPIN: SIM PUK\r\n");
        m_lines[2]->lose({10, true, false});
        m_timers.advance(2 * minute);
        QCOMPARE(rows(),
                 (QStringList{"Flood 4 open", "Noted 2 acknowledged", "Puk 3 open", "Silent 2 open"}));
    }
    void cleanup()
    {
        m_mode.reset();
        m_lines.clear();
        m_folder.reset();
    }

    void anUndoneRemovalOpensTheProgramsOwnAlarmsAgain()
    {
        remove();
        QCOMPARE(m_mode->alarms().standing().size(), std::size_t{0});
        bringBack();
        QCOMPARE(rows(),
                 (QStringList{"Flood 4 over", "Noted 2 acknowledged", "Puk 3 open", "Silent 2 open"}));
        QVERIFY(m_mode->station("Puk")->pukNeeded());
        // What they tell of ends them, and does not open them twice.
        m_lines[5]->say("+CPIN: SIM PUK\r\n");
        QCOMPARE(rows().filter("Puk 3").size(), 1);
        m_lines[5]->say("+CPIN: SIM PIN\r\n");
        for (const int station : {4, 7}) {
            m_lines[station]->say("OK\r\n");
        }
        QCOMPARE(rows(), (QStringList{"Flood 4 over", "Puk 3 over", "Silent 2 over"}));
    }

    void howAStationWasSeenComesBackAtOnceAndItsSilenceIsCounted()
    {
        QVERIFY(m_mode->station("Flood")->liveness() == cStation::Liveness::Silent);
        m_lines[3]->say("OK\r\n");
        const qint64 heard = m_mode->station("Noted")->lastHeard();
        remove();
        bringBack();
        QVERIFY(m_mode->station("Flood")->liveness() == cStation::Liveness::Silent);
        QVERIFY(m_mode->station("Noted")->liveness() == cStation::Liveness::Alive);
        QCOMPARE(m_mode->station("Noted")->lastHeard(), heard);
        m_timers.advance(minute); // the new connection is not answered either
        QVERIFY(m_mode->station("Noted")->liveness() == cStation::Liveness::Silent);
        QVERIFY(!rows().contains("Flood 2 open"));
        m_timers.advance(6 * minute);
        QCOMPARE(rows().filter("Flood 2 open").size(), 1);
        QCOMPARE(rows().filter("Noted 2 open").size(), 1);
    }

    void theRecordTellsARemovalFromAnAcknowledgementAndItsUndoing()
    {
        const QList<AlarmRow> before = recorded();
        remove();
        int closed = 0;
        const QList<AlarmRow> removed = recorded();
        for (const AlarmRow &alarm : removed) {
            QVERIFY2(alarm.acknowledged != 0 && alarm.over != 0, qPrintable(alarm.text));
            closed += alarm.acknowledgedBy == closedByRemoval() ? 1 : 0;
        }
        QCOMPARE(closed, 3); // somebody has acknowledged the others
        AlarmFigures figures;
        RecordReader reader(m_mode->recordPath());
        QVERIFY(reader.alarmFigures(0, std::numeric_limits<qint64>::max() / 2, 1, figures));
        QCOMPARE(figures.acknowledged, figures.came - 3);
        bringBack();
        for (const AlarmRow &alarm : recorded()) {
            QVERIFY(alarm.acknowledgedBy != closedByRemoval());
            const auto same = std::ranges::find(before, alarm.id, &AlarmRow::id);
            QVERIFY(same != before.end());
            QVERIFY2(alarm == *same || alarm.kind == AlarmKind::Flood, qPrintable(alarm.text));
        }
        EventFilter undone;
        undone.kinds = {EventKind::Note};
        QCOMPARE(reader.findEvents(undone, {}, 9).rows.size(), 4);
    }

    void alarmsThatCameBackOutliveTheProgram()
    {
        remove();
        bringBack();
        QVERIFY(m_mode->keepsChanges());
        const QStringList before = rows();
        m_mode.reset();
        m_lines.clear();
        open();
        QVERIFY2(rows().contains("Silent 2 open") && rows().size() == before.size(),
                 qPrintable(rows().join(u',')));
    }

private:
    static constexpr Milliseconds minute{60'000};

    void open()
    {
        Environment environment = fixedEnvironment();
        environment.now = [this] {
            return QDateTime({2026, 11, 20}, {10, 0}).addMSecs(m_timers.now().count());
        };
        m_mode = std::make_unique<OperationalMode>(
            OperationalMode::Services{environment, m_timers,
                                      [this] {
                                          auto line = std::make_unique<RecordedLine>();
                                          m_lines += line.get();
                                          return line;
                                      },
                                      [] {}, manualCallbackTimers(m_timers)},
            StationCaptions{"Notifications", "History", "IP"});
        QVERIFY(m_mode->open(m_folder->filePath("nodes.xml"), OperationalMode::Use::Keep));
    }
    qint64 alarmOf(const QString &kennung) const
    {
        for (const auto &[id, alarm] : m_mode->alarms().standing()) {
            if (m_mode->stationOf(alarm) == kennung) {
                return id;
            }
        }
        return 0;
    }
    /// "STATION KIND STATE" of the alarms that stand.
    QStringList rows() const
    {
        QStringList rows;
        for (const auto &[id, alarm] : m_mode->alarms().standing()) {
            rows += m_mode->stationOf(alarm) + ' ' + QString::number(static_cast<int>(alarm.kind)) + ' ' +
                    (alarm.acknowledged != 0 ? "acknowledged"
                     : alarm.over != 0       ? "over"
                                             : "open");
        }
        rows.sort();
        return rows;
    }
    QList<AlarmRow> recorded() const
    {
        return m_mode->keepsChanges() ? RecordReader(m_mode->recordPath()).findAlarms({}, {}, 99).rows
                                      : QList<AlarmRow>();
    }
    void remove()
    {
        m_mode->removal().begin();
        for (const char *name : {"Silent", "Puk", "Flood", "Noted"}) {
            m_mode->removal().remove(name);
        }
        QCOMPARE(m_mode->tree().rowCount(), 0);
    }
    void bringBack()
    {
        while (m_mode->removal().count() > 0) {
            QVERIFY(m_mode->removal().restoreNext());
        }
        m_mode->settleRestored();
        QVERIFY(m_mode->keepsChanges());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    ManualTimers m_timers;
    QList<RecordedLine *> m_lines;
    std::unique_ptr<OperationalMode> m_mode;
};

QTEST_GUILESS_MAIN(StationRemovalTest)
#include "station_removal_test.moc"
