#include "opmode/alarm_centre.h"
#include "opmode/watch_alarms.h"
#include "support/manual_timers.h"

#include <QTest>

using namespace ktr;
using namespace ktr::test;
using namespace Qt::StringLiterals;

/// Stations 1 ("a") and 2 ("b"), whose alarms go to one number.
class AlarmCentreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_book = std::make_unique<AlarmBook>();
        m_centre = std::make_unique<AlarmCentre>(
            *m_book,
            [](const AlarmRow &row) {
                Alarm alarm;
                alarm.kennung = row.station == 1 ? "a" : "b";
                alarm.message = row.text;
                alarm.received = row.last;
                alarm.raised = row.first;
                return alarm;
            },
            m_timers);
        m_news.clear();
        connect(m_centre.get(), &AlarmCentre::attention, this,
                [this](const AlarmNews &news) { m_news.append(news); });
    }

    void theFirstAlarmIsToldAtOnceAndTheOthersOfItsSecondTogether()
    {
        raise("a", "pump 0 fail");
        QCOMPARE(m_news.size(), 1);
        QCOMPARE(m_news[0].latest.message, "pump 0 fail");
        for (int i = 1; i < 500; ++i) {
            raise(i % 2 == 0 ? "a" : "b", QString("pump %1 fail").arg(i));
        }
        QCOMPARE(m_news.size(), 1);
        m_timers.advance(AlarmCentre::pauseBetweenNews);
        QCOMPARE(m_news.size(), 2);
        QCOMPARE(m_news[1].arrived, 499);
        QCOMPARE(m_news[1].unacknowledged, 500);
        QCOMPARE(m_news[1].first.message, "pump 1 fail");
        QCOMPARE(m_news[1].first.kennung, "b");
        QCOMPARE(m_news[1].latest.message, "pump 499 fail");
        QCOMPARE(m_centre->first()->message, "pump 0 fail");
        m_timers.advance(Milliseconds(5000));
        QCOMPARE(m_news.size(), 2); // silence is no news
    }

    void theProgramsOwnAlarmsAreToldInTheLanguageThatIsSpokenNow()
    {
        const QString born = u"In einer anderen Sprache"_s;
        for (const AlarmKind kind : {AlarmKind::Silent, AlarmKind::Flood, AlarmKind::Puk}) {
            const QString shown = WatchAlarms::shownText({.kind = kind, .text = born});
            QVERIFY(shown != born && !shown.isEmpty());
        }
        for (const AlarmKind kind : {AlarmKind::Module, AlarmKind::Disk, AlarmKind::Watcher}) {
            QCOMPARE(WatchAlarms::shownText({.kind = kind, .text = born}), born);
        }
    }

    void acknowledgedOnesMakeRoomForTheOldestAndNewestThatAreLeft()
    {
        for (const char *text : {"1 fail", "2 fail", "3 fail", "4 fail"}) {
            raise("a", text);
        }
        m_timers.advance(Milliseconds(1000));
        acknowledge({"1 fail", "4 fail"});
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(m_centre->unacknowledged(), 2);
        QCOMPARE(m_centre->first()->message, "2 fail");
        QCOMPARE(m_centre->latest()->message, "3 fail");

        const qint64 raised = m_centre->first()->received;
        raise("a", "2 fail"); // the oldest comes again
        raise("a", "1 fail"); // and one that was acknowledged
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(m_centre->unacknowledged(), 3);
        QCOMPARE(m_centre->first()->message, "2 fail");
        QCOMPARE(m_centre->first()->raised, raised);
        QVERIFY(m_centre->first()->received > raised);
        acknowledge({"2 fail"});
        raise("a", "2 fail"); // another occurrence, before the acknowledgement was told
        raise("a", "1 fail");
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(m_centre->first()->message, "3 fail");
        QCOMPARE(m_centre->latest()->message, "1 fail");
        const auto told = m_news.size();
        m_book->forget(1, m_now);
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(m_centre->unacknowledged(), 0);
        QVERIFY(!m_centre->first());
        QCOMPARE(m_news.size(), told);
    }

    void whatAnEarlierRunLeftRedIsToldOnce()
    {
        QList<AlarmRow> standing;
        for (const char *text : {"1 fail", "2 fail", "3 fail"}) {
            AlarmRow row;
            row.id = standing.size() + 1;
            row.text = text;
            standing += row;
        }
        m_book->load(standing, {});
        m_timers.advance(Milliseconds(5000));
        QCOMPARE(m_news.size(), 1);
        QCOMPARE(m_news[0].unacknowledged, 3);
        QCOMPARE(m_news[0].first.message, "1 fail");
        QCOMPARE(m_news[0].latest.message, "3 fail");
        QCOMPARE(m_news[0].latest.received, 0);
    }

private:
    void raise(const QString &kennung, const QString &text)
    {
        m_book->addNotification(kennung == "a" ? 1 : 2, "+49", text, ++m_now);
    }

    void acknowledge(const QStringList &texts)
    {
        QList<qint64> alarms;
        for (const QString &text : texts) {
            alarms += m_book->find(1, text)->id;
        }
        m_book->acknowledge(alarms, m_now, {});
    }

    ManualTimers m_timers;
    qint64 m_now = 1'262'300'000'000;
    std::unique_ptr<AlarmBook> m_book;
    std::unique_ptr<AlarmCentre> m_centre;
    QList<AlarmNews> m_news;
};

QTEST_GUILESS_MAIN(AlarmCentreTest)
#include "alarm_centre_test.moc"
