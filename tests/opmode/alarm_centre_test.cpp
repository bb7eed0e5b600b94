#include "opmode/alarm_centre.h"
#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/station_tree_loader.h"
#include "support/manual_timers.h"

#include <QTest>

using namespace ktr;
using namespace ktr::test;

class AlarmCentreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree = std::make_unique<StationTree>(StationCaptions{"Notifications", "History", "IP"});
        m_tree->addStation("a");
        m_tree->addStation("b");
        m_centre = std::make_unique<AlarmCentre>(*m_tree, m_timers);
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
        raise("a", "2 fail"); // before the acknowledgement was told
        raise("a", "1 fail");
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(m_centre->first()->message, "3 fail");
        QCOMPARE(m_centre->latest()->message, "1 fail");
        const auto told = m_news.size();
        m_tree->remove(m_tree->find("a"));
        m_timers.advance(Milliseconds(1000));
        QCOMPARE(m_centre->unacknowledged(), 0);
        QVERIFY(!m_centre->first());
        QCOMPARE(m_news.size(), told);
    }

    void whatAnEarlierRunLeftRedIsToldOnce()
    {
        std::optional<StationTreeLoader> loader(std::in_place, *m_tree);
        for (const char *text : {"1 fail", "2 fail", "3 fail"}) {
            const std::string key = std::string("b/meldung/+49 --> M,") + text;
            loader->load(key, key.substr(10), StationTree::alarmColour);
        }
        loader.reset();
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
        m_now = m_now.addMSecs(1);
        m_centre->addAlarm(m_tree->apply(kennung, interpretStationMessage("+49 --> M," + text), m_now).entry);
    }

    void acknowledge(const QStringList &texts)
    {
        QModelIndexList entries;
        for (const QString &text : texts) {
            entries.append(m_tree->find("a/meldung/+49 --> M," + text));
        }
        m_tree->carryOut(acknowledgementOf(entries, *m_tree, m_now));
    }

    ManualTimers m_timers;
    QDateTime m_now = QDateTime::fromMSecsSinceEpoch(1'262'300'000'000);
    std::unique_ptr<StationTree> m_tree;
    std::unique_ptr<AlarmCentre> m_centre;
    QList<AlarmNews> m_news;
};

QTEST_GUILESS_MAIN(AlarmCentreTest)
#include "alarm_centre_test.moc"
