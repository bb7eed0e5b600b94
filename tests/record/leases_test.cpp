#include "record/leases.h"
#include "record/record_care.h"
#include "support/manual_timers.h"
#include "support/private_postgres.h"

#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

constexpr Leases::Times times{Milliseconds(1500), Milliseconds(100), Milliseconds(200)};

/// A keeper that can stand still, as a program does that was stopped.
class Keeper
{
public:
    Keeper(const QString &address, const QString &name)
        : m_leases(address, name, m_timers,
                   {[this](const QList<qint64> &gained) { take(gained); },
                    [this](const QList<qint64> &lost) { letGo(lost); },
                    [this](const QString &reason) { troubles += reason; }},
                   times)
    {
        m_leases.want(u"forward"_s);
    }

    void turn()
    {
        m_timers.advance(times.period);
        m_leases.released(std::exchange(m_toRelease, {}));
    }
    bool isHeld() const { return m_leases.isHeld(); }
    Leases &leases() { return m_leases; }

    QSet<qint64> stations;
    QStringList troubles;

private:
    void take(const QList<qint64> &gained) { stations.unite(QSet(gained.cbegin(), gained.cend())); }
    void letGo(const QList<qint64> &lost)
    {
        stations.subtract(QSet(lost.cbegin(), lost.cend()));
        m_toRelease += lost;
    }

    QList<qint64> m_toRelease;
    test::ManualTimers m_timers;
    Leases m_leases;
};

} // namespace

class LeasesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString trouble = m_server.start();
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
    }

    void init()
    {
        m_keepers.clear();
        m_server.sql(u"postgres"_s, u"DROP DATABASE IF EXISTS record WITH (FORCE)"_s);
        m_address = m_server.makeDatabase(u"record"_s);
        QVERIFY(initRecord(m_address));
        sql(u"INSERT INTO ktrconfig.station SELECT i, 'Pump ' || i, CASE WHEN i = 11 THEN 0 ELSE 1 END, '{}'"
            " FROM generate_series(1, 11) AS i"_s);
    }

    void keepersShareTheStations()
    {
        begin(u"a"_s);
        QTRY_VERIFY(turns({10}));
        QVERIFY(!m_keepers.front()->stations.contains(11)); // it is not in the list
        begin(u"b"_s);
        QTRY_VERIFY(turns({5, 5}));
        begin(u"c"_s);
        QTRY_VERIFY(turns({3, 3, 4}) || turns({4, 3, 3}) || turns({3, 4, 3}) || turns({4, 4, 2}));
        m_keepers.pop_back(); // which ends well: nobody waits for its time to be over
        QTRY_VERIFY(turns({5, 5}));
        sql(u"UPDATE ktrconfig.station SET listed = 1 - listed WHERE id IN (1, 11)"_s);
        QTRY_VERIFY(turns({5, 5}) && !isWatched(1) && isWatched(11));
    }

    /// It must not go on where it stopped.
    void theStationsOfOneThatStandsStillAreFollowed()
    {
        begin(u"a"_s);
        begin(u"b"_s);
        QTRY_VERIFY(turns({5, 5}));
        auto stopped = std::move(m_keepers.back());
        m_keepers.pop_back();
        const QSet<qint64> had = stopped->stations;
        QTRY_VERIFY(turns({10}, stopped.get()));
        QVERIFY(!stopped->isHeld() && stopped->stations == had); // it does not know yet, but it may not send
        m_keepers.push_back(std::move(stopped));
        m_keepers.back()->turn();
        QVERIFY(m_keepers.back()->stations.isEmpty());
        QTRY_VERIFY(turns({5, 5}));
    }

    /// Who follows begins where the one before it stopped, which cannot say more about it then.
    void oneAloneHasADuty()
    {
        begin(u"a"_s);
        QTRY_VERIFY(turns({10}) && m_keepers[0]->leases().has(u"forward"_s));
        begin(u"b"_s);
        m_keepers[0]->leases().note(u"forward"_s, u"812"_s);
        QTRY_VERIFY(turns({5, 5}));
        QVERIFY(!m_keepers[1]->leases().has(u"forward"_s));
        QCOMPARE(m_keepers[1]->leases().overview().keepers, 2);
        auto stopped = std::move(m_keepers.front());
        m_keepers.erase(m_keepers.begin());
        stopped->leases().note(u"forward"_s, u"900"_s); // too late for it to be written
        QTRY_VERIFY(turns({10}, stopped.get()) && m_keepers[0]->leases().has(u"forward"_s));
        QVERIFY(!stopped->leases().has(u"forward"_s));
        QCOMPARE(m_keepers[0]->leases().noted(u"forward"_s), u"812"_s);
        m_keepers[0]->leases().note(u"forward"_s, u"820"_s);
        stopped->turn();
        m_keepers.erase(m_keepers.begin()); // which ends well, and writes what it noted
        m_keepers.push_back(std::move(stopped));
        QTRY_VERIFY(turns({10}) && m_keepers[0]->leases().has(u"forward"_s));
        QCOMPARE(m_keepers[0]->leases().noted(u"forward"_s), u"820"_s);
    }

    void whoIsCutOffLetsGoInTime()
    {
        begin(u"a"_s);
        begin(u"b"_s);
        QTRY_VERIFY(turns({5, 5}));
        m_server.endConnections(); // for a moment: nothing is lost
        m_keepers[0]->turn();
        QVERIFY(m_keepers[0]->stations.size() == 5);
        QTRY_VERIFY(turns({5, 5}));
        m_server.kill();
        QTRY_VERIFY(turns({0, 0}));
        QVERIFY(!m_keepers[0]->isHeld() && !m_keepers[1]->isHeld());
        QVERIFY(!m_keepers[0]->troubles.isEmpty() && !m_keepers[0]->troubles.constLast().isEmpty());
        QCOMPARE(m_server.startAgain(), QString());
        QTRY_VERIFY(turns({5, 5}));
        QCOMPARE(m_keepers[0]->troubles.constLast(), QString());
    }

private:
    void begin(const QString &name) { m_keepers.push_back(std::make_unique<Keeper>(m_address, name)); }

    /// A turn of each keeper; whether each has so many stations then. No station has two that may talk to it.
    bool turns(const QList<qsizetype> &counts, Keeper *still = nullptr)
    {
        QList<qsizetype> found;
        for (const auto &keeper : m_keepers) {
            keeper->turn();
        }
        QCoreApplication::processEvents();
        QHash<qint64, int> talking;
        int holders = 0;
        const auto count = [&](Keeper &keeper) {
            holders += keeper.leases().has(u"forward"_s) ? 1 : 0;
            for (const qint64 station : keeper.isHeld() ? keeper.stations : QSet<qint64>()) {
                ++talking[station];
            }
        };
        for (const auto &keeper : m_keepers) {
            found += keeper->stations.size();
            count(*keeper);
        }
        if (still != nullptr) {
            count(*still);
        }
        if (holders > 1) {
            qFatal("%d keepers have one duty", holders);
        }
        for (auto station = talking.cbegin(); station != talking.cend(); ++station) {
            if (*station > 1) {
                qFatal("station %lld has %d keepers", station.key(), *station);
            }
        }
        return found == counts;
    }

    bool isWatched(qint64 station) const
    {
        return std::ranges::any_of(m_keepers,
                                   [=](const auto &keeper) { return keeper->stations.contains(station); });
    }

    void sql(const QString &statement) { m_server.sql(u"record"_s, statement); }

    test::PrivatePostgres m_server;
    QString m_address;
    std::vector<std::unique_ptr<Keeper>> m_keepers;
};

QTEST_GUILESS_MAIN(LeasesTest)
#include "leases_test.moc"
