#include "opmode/operational_mode.h"
#include "record/record_database.h"
#include "support/module_process.h"
#include "support/private_postgres.h"
#include "support/recorded_line.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using ktr::test::ModuleProcess;

namespace {

const QString database = u"record"_s;

} // namespace

/// Several `ktrcli keep` with one record on a server, and a fleet of virtual modules.
class SharedKeepTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString trouble = m_server.start();
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
        m_address = m_server.makeDatabase(database);
    }

    void stationsAreFollowedByAnotherKeeper()
    {
        ModuleProcess early({u"keep"_s, u"--record"_s, m_address}, u"ktrcli record init"_s);
        QCOMPARE(early.exitCode(), 1);
        const QString list = m_folder.filePath(u"fleet.xml"_s);
        ModuleProcess fleet({u"simulate"_s, u"--fleet"_s, u"8"_s, u"--port"_s, u"0"_s, u"--nodes"_s, list,
                             u"--every"_s, u"1"_s});
        ModuleProcess init({u"record"_s, u"init"_s, m_address}, u"has its tables"_s);
        QCOMPARE(init.exitCode(), 0);
        for (const QString &told : {u"added: 8, there already: 0"_s, u"added: 0, there already: 8"_s}) {
            ModuleProcess import({u"record"_s, u"import"_s, m_address, list}, told);
            QCOMPARE(import.exitCode(), 0);
        }

        auto one = keeper();
        ModuleProcess other({u"keep"_s, u"--record"_s, m_address}, u"watching"_s);
        QTRY_COMPARE_WITH_TIMEOUT(shares(), (QList<int>{4, 4}), 60'000);
        QTRY_VERIFY_WITH_TIMEOUT(count(u"event WHERE kind = 1"_s) > 20, 60'000);

        ::kill(static_cast<pid_t>(other.id()), SIGSTOP);
        QTRY_COMPARE_WITH_TIMEOUT(shares(), (QList<int>{8}), 60'000);
        const int before = count(u"event"_s);
        QTRY_VERIFY_WITH_TIMEOUT(
            count(u"(SELECT station FROM ktrconfig.event WHERE id > %1 AND kind < 10 GROUP BY 1) AS heard"_s
                      .arg(before)) == 8,
            60'000);
        ::kill(static_cast<pid_t>(other.id()), SIGCONT);
        QVERIFY2(other.await(u"stations watched here: 0"_s), qPrintable(other.output()));
        QTRY_COMPARE_WITH_TIMEOUT(shares(), (QList<int>{4, 4}), 60'000);

        ::kill(static_cast<pid_t>(one->id()), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(shares(), (QList<int>{8}), 60'000);
        one = keeper(); // the place of the old one is nobody's
        QTRY_COMPARE_WITH_TIMEOUT(shares(), (QList<int>{4, 4}), 60'000);

        whoJoinsSeesAndAsks();
        if (QTest::currentTestFailed()) {
            return;
        }

        aTextHeardByAnotherIsTakenOnce();
        if (QTest::currentTestFailed()) {
            return;
        }

        m_server.kill();
        QCOMPARE(m_server.startAgain(), QString());
        const int then = count(u"event"_s);
        QTRY_VERIFY_WITH_TIMEOUT(count(u"event"_s) > then + 20, 60'000);
        QVERIFY2(one->terminate() && other.terminate(), qPrintable(one->output() + other.output()));
        QCOMPARE(shares(), QList<int>());
        // Whoever took a station over knew its alarms: none was begun a second time.
        QVERIFY(count(u"alarm WHERE kind = 1"_s) > 3);
        QCOMPARE(count(u"(SELECT 1 FROM ktrconfig.alarm WHERE kind = 1 AND acknowledged IS NULL"
                       " GROUP BY station, text HAVING count(*) > 1) AS doubled"_s),
                 0);
        QCOMPARE(
            count(
                u"(SELECT 1 FROM ktrconfig.notification WHERE acknowledged = 0 AND raised > 0 AND NOT EXISTS"
                " (SELECT 1 FROM ktrconfig.alarm WHERE alarm.station = notification.station)) AS alone"_s),
            0);
    }

private:
    /// As a window does, from any machine.
    void whoJoinsSeesAndAsks()
    {
        ktr::EventLoopTimers timers;
        ktr::OperationalMode window(
            {.environment = ktr::systemEnvironment(),
             .timers = timers,
             .createLine = [] { return std::make_unique<ktr::test::RecordedLine>(); }},
            ktr::stationCaptions({}));
        QStringList told;
        QObject::connect(&window, &ktr::OperationalMode::statusMessage, &window,
                         [&told](const QString &line) { told += line; });
        const ktr::Status joined = window.open(m_address, ktr::OperationalMode::Use::Look);
        QVERIFY2(joined, qPrintable(joined.message()));
        QVERIFY(window.isJoined() && window.keeper().count(u"ktrcli ("_s) == 2);
        QCOMPARE(window.tree().rowCount(), 8);
        const auto &standing = window.alarms().standing();
        QVERIFY(!standing.empty());
        QTRY_VERIFY_WITH_TIMEOUT(
            window.stations().Item(kennung(window, 0))->liveness() == ktr::cStation::Liveness::Alive, 60'000);

        // Of all stations at once, whoever their keepers are.
        QList<qint64> alarms;
        for (const auto &[id, alarm] : standing) {
            if (alarm.acknowledged == 0 && alarm.station != 0) {
                alarms += id;
            }
        }
        window.setOperator(u"Anna"_s);
        QVERIFY(window.acknowledgeAlarms(alarms));
        QTRY_VERIFY2_WITH_TIMEOUT(
            std::ranges::none_of(alarms,
                                 [&window](qint64 id) {
                                     const ktr::AlarmRow *alarm = window.alarms().alarm(id);
                                     return alarm != nullptr && alarm->acknowledged == 0;
                                 }),
            qPrintable(told.join(u'\n')), 60'000);
        QCOMPARE(count(u"alarm WHERE acknowledged_by LIKE 'Anna (%'"_s), int(alarms.size()));

        for (const int row : {0, 7}) {
            window.setOnline(kennung(window, row), false);
            QTRY_VERIFY2_WITH_TIMEOUT(!window.station(kennung(window, row))->online(),
                                      qPrintable(told.join(u'\n')), 60'000);
        }
        window.setAllOnline(true);
        QTRY_VERIFY2_WITH_TIMEOUT(window.station(kennung(window, 0))->online() &&
                                      window.station(kennung(window, 7))->online(),
                                  qPrintable(told.join(u'\n')), 60'000);
        QVERIFY2(told.isEmpty(), qPrintable(told.join(u'\n')));
    }

    /// Although the keeper cannot say for a while that it has it.
    void aTextHeardByAnotherIsTakenOnce()
    {
        ktr::RecordDatabase numbers;
        QVERIFY(numbers.open(m_address, ktr::RecordDatabase::Use::Write));
        QVERIFY(numbers.begin() && numbers.beginNumbers()); // nobody can commit an event
        m_server.sql(database,
                     u"INSERT INTO ktrconfig.request(at, what, detail) SELECT 1, 'heard', json_build_object("
                     "'station', id, 'at', 1234, 'text', '+491 --> M,Heard late') FROM ktrconfig.station"
                     " ORDER BY id LIMIT 1"_s);
        QVERIFY(!QTest::qWaitFor(
            [&] { // nothing new for some looks, then something
                return QTest::qWaitFor([&] { return !numbers.isOpen(); }, 600) ||
                       m_server.sql(database, u"SELECT txid_current()"_s).isEmpty();
            },
            3'000));
        numbers.rollBack();
        QTRY_COMPARE_WITH_TIMEOUT(count(u"request WHERE what = 'heard' AND taken IS NOT NULL"_s), 1, 60'000);
        QCOMPARE(count(u"event WHERE at = 1234 AND text LIKE '%Heard late'"_s), 1);
    }

    static QString kennung(ktr::OperationalMode &window, int row)
    {
        return window.tree().index(row, 0).data(ktr::StationTree::KeyRole).toString();
    }

    std::unique_ptr<ModuleProcess> keeper() const
    {
        return std::make_unique<ModuleProcess>(QStringList{u"keep"_s, u"--record"_s, m_address},
                                               u"watching"_s);
    }

    /// How many stations each keeper has that is there.
    QList<int> shares() const
    {
        ModuleProcess status({u"keep"_s, u"--status"_s, u"--json"_s, u"--record"_s, m_address}, u"}\n"_s);
        const QJsonObject told = QJsonDocument::fromJson(status.output().toUtf8()).object();
        QList<int> shares;
        for (const auto &keeper : told["keepers"_L1].toArray()) {
            shares += keeper["stations"_L1].toInt();
        }
        return status.exitCode() == (shares.isEmpty() ? 1 : 0) ? shares : QList<int>{-1};
    }

    int count(const QString &what) const
    {
        const QString from = what.startsWith(u'(') ? what : u"ktrconfig."_s + what;
        return m_server.sql(database, u"SELECT count(*) FROM "_s + from).toInt();
    }

    QTemporaryDir m_folder;
    ktr::test::PrivatePostgres m_server;
    QString m_address;
};

QTEST_GUILESS_MAIN(SharedKeepTest)
#include "shared_keep_test.moc"
