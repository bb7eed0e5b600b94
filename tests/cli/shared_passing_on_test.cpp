#include "opmode/operational_mode.h"
#include "support/module_process.h"
#include "support/mqtt_broker.h"
#include "support/private_postgres.h"
#include "support/recorded_line.h"
#include "support/test_files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <csignal>

using namespace Qt::StringLiterals;
using ktr::test::ModuleProcess;

namespace {

const QString database = u"record"_s;
constexpr int modules = 6;

QJsonObject objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

/// What a keeper tells over HTTP.
QString figuresAt(int port)
{
    const int line = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = ktr::test::loopback(port);
    QByteArray text;
    std::array<char, 4096> part{};
    if (::connect(line, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        ::send(line, "GET /metrics HTTP/1.0\r\n\r\n", 25, MSG_NOSIGNAL) == 25) {
        for (ssize_t size = 1; size > 0; text.append(part.data(), size)) {
            size = std::max<ssize_t>(::recv(line, part.data(), part.size(), 0), 0);
        }
    }
    ::close(line);
    return QString::fromUtf8(text);
}

} // namespace

/// Keepers that share a record, of which one at a time passes on what happens.
class SharedPassingOnTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (ktr::test::MqttBroker::program().isEmpty()) {
            QSKIP("mosquitto is not installed (scripts/setup check)");
        }
        mosquitto_lib_init();
        const QString trouble = m_server.start();
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
        m_address = m_server.makeDatabase(database);
        m_broker.start();
    }

    void wrongUsageIsToldBeforeAnythingIsOpened()
    {
        const QString nowhere = m_server.addressOf(u"nowhere"_s);
        for (const QStringList &wrong : {QStringList{u"--forward-ca"_s, u"x"_s},
                                         {u"--metrics"_s, u"x"_s},
                                         {u"--on-alarm-again"_s, u"5"_s},
                                         {u"--forward"_s, u"http://x"_s}}) {
            ModuleProcess keeper(QStringList{u"keep"_s, u"--record"_s, nowhere} + wrong, u"ktrcli"_s);
            QCOMPARE(keeper.exitCode(), 2);
        }
    }

    void whoFollowsGoesOnWhereTheOtherWasKilled()
    {
        const QString list = m_folder.filePath(u"fleet.xml"_s);
        ModuleProcess fleet({u"simulate"_s, u"--fleet"_s, QString::number(modules), u"--port"_s, u"0"_s,
                             u"--nodes"_s, list, u"--every"_s, u"1"_s});
        ModuleProcess init({u"record"_s, u"init"_s, m_address}, u"has its tables"_s);
        ModuleProcess import({u"record"_s, u"import"_s, m_address, list}, u"added"_s);
        QCOMPARE(import.exitCode(), 0);
        // Of a keeper that is gone: nobody would ever end it.
        sql(u"INSERT INTO ktrconfig.alarm(id, kind, text, priority, first, last, count, recipients)"
            " VALUES(900000000001, 5, 'The disk is full', 1, 1, 1, 1, '[]')"_s);

        const ktr::test::MqttListener listener(m_broker.port);
        QTRY_VERIFY_WITH_TIMEOUT(listener.isListening(), 30'000);
        std::vector<std::unique_ptr<ModuleProcess>> keepers;
        for (const int port : m_ports) {
            keepers.push_back(keeper(port));
        }
        QTRY_VERIFY_WITH_TIMEOUT(eventsAt(listener).size() > 10, 60'000);
        const std::size_t first = holder().contains(u"(%1)"_s.arg(keepers[0]->id())) ? 0 : 1;
        for (const QString &duty : {u"list"_s, u"forward"_s, u"on-alarm"_s}) {
            const QRegularExpression one(u"\nktrconfig_duty\\{name=\"%1[^\n]* 1\n"_s.arg(duty));
            const auto held = [&] {
                return std::ranges::count_if(m_ports,
                                             [&](int port) { return figuresAt(port).contains(one); });
            };
            QTRY_COMPARE_WITH_TIMEOUT(held(), 1, 30'000); // each is taken in a turn of its own
        }
        theDashboardAsksForWhatThereIs();
        if (QTest::currentTestFailed()) {
            return;
        }

        ::kill(static_cast<pid_t>(keepers[first]->id()), SIGKILL);
        QElapsedTimer time;
        time.start();
        const QString next = u"(%1)"_s.arg(keepers[1 - first]->id());
        QTRY_VERIFY_WITH_TIMEOUT(holder().contains(next), 60'000);
        qInfo("another keeper forwards after %.1f s", static_cast<double>(time.elapsed()) / 1e3);
        const auto heard = [&] { return listener.payloads(u"north/keeper"_s); };
        QTRY_COMPARE_WITH_TIMEOUT(objectOf(heard().constLast())["process"_L1].toInteger(),
                                  keepers[1 - first]->id(), 30'000);
        QVERIFY(std::ranges::any_of(
            heard(), [](const QByteArray &json) { return objectOf(json)["state"_L1] == "lost"_L1; }));
        const int then = number(u"SELECT max(id) FROM ktrconfig.event"_s);
        QTRY_VERIFY_WITH_TIMEOUT(
            number(u"SELECT count(DISTINCT station) FROM ktrconfig.event WHERE kind = 1 AND id > %1"_s.arg(
                then)) == modules,
            60'000);
        renameWhileItIsForwarded(listener);
        if (QTest::currentTestFailed()) {
            return;
        }

        // Every alarm was announced, by whichever of them, and hardly any twice.
        fleet.terminate();
        QTRY_COMPARE_WITH_TIMEOUT(
            number(u"SELECT count(*) FROM ktrconfig.alarm WHERE kind = 1 AND acknowledged IS NULL AND NOT"
                   " EXISTS (SELECT 1 FROM ktrconfig.event WHERE event.alarm = alarm.id AND kind = 54 AND"
                   " detail::json->>'announced' = 'true')"_s),
            0, 60'000);
        QTRY_COMPARE_WITH_TIMEOUT(sql(u"SELECT over_why FROM ktrconfig.alarm WHERE id = 900000000001"_s),
                                  u"the keeper that told it is gone"_s, 30'000);
        QVERIFY2(keepers[1 - first]->terminate(), qPrintable(keepers[1 - first]->output()));
        const int announced = number(u"SELECT count(*) FROM ktrconfig.alarm WHERE kind = 1"_s);
        const QByteArrayList runs = ktr::test::contentOf(m_announced).trimmed().split('\n');
        QSet<qint64> numbers;
        for (const QByteArray &run : runs) {
            numbers += objectOf(run)["number"_L1].toInteger();
        }
        QVERIFY(numbers.size() >= announced && runs.size() <= numbers.size() + 4);

        // The next one knows that nobody watched.
        sql(u"UPDATE ktrconfig.duty SET state = floor(extract(epoch FROM now()) - 60) * 1000"
            " WHERE name = 'list'"_s);
        const auto last = keeper(m_ports[0]);
        QTRY_COMPARE_WITH_TIMEOUT(
            number(u"SELECT count(*) FROM ktrconfig.alarm WHERE kind = 7 AND text LIKE 'Stations had no%'"_s),
            1, 30'000);

        // All events since the first that was forwarded, in the same words where they came twice.
        const QList<qint64> forwarded = eventsAt(listener).keys();
        const QStringList recorded = sql(u"SELECT id FROM ktrconfig.event WHERE id >= %1 ORDER BY id"_s.arg(
                                             *std::ranges::min_element(forwarded)))
                                         .split(u'\n', Qt::SkipEmptyParts);
        QVERIFY(recorded.size() > 60);
        const auto counted = [&](qsizetype times) {
            const QHash<qint64, QSet<QByteArray>> events = eventsAt(listener);
            return std::ranges::count_if(
                recorded, [&](const QString &id) { return events.value(id.toLongLong()).size() == times; });
        };
        QTRY_COMPARE_WITH_TIMEOUT(counted(1), recorded.size(), 30'000);
    }

private:
    std::unique_ptr<ModuleProcess> keeper(int port) const
    {
        return std::make_unique<ModuleProcess>(
            QStringList{u"keep"_s, u"--record"_s, m_address, u"--forward"_s,
                        u"mqtt://127.0.0.1:%1/north"_s.arg(m_broker.port), u"--on-alarm"_s,
                        u"/usr/bin/tee -a \"%1\""_s.arg(m_announced), u"--metrics"_s, QString::number(port)},
            u"watching"_s);
    }

    /// Who forwards, as the status tells.
    QString holder() const
    {
        ModuleProcess status({u"keep"_s, u"--status"_s, u"--json"_s, u"--record"_s, m_address}, u"}\n"_s);
        for (const auto &duty : objectOf(status.output().toUtf8())["duties"_L1].toArray()) {
            if (duty["name"_L1].toString().startsWith(u"forward"_s)) {
                return duty["keeper"_L1].toString();
            }
        }
        return {};
    }

    /// What the broker got of each event, by their numbers.
    static QHash<qint64, QSet<QByteArray>> eventsAt(const ktr::test::MqttListener &listener)
    {
        QHash<qint64, QSet<QByteArray>> events;
        for (const auto &one : listener.heard()) {
            if (one.topic.endsWith(u"/events"_s)) {
                events[objectOf(one.payload)["number"_L1].toInteger()] += one.payload;
            }
        }
        return events;
    }

    /// By a window, which asks the keeper that has the station.
    void renameWhileItIsForwarded(const ktr::test::MqttListener &listener)
    {
        ktr::EventLoopTimers timers;
        ktr::OperationalMode window(
            {.environment = ktr::systemEnvironment(),
             .timers = timers,
             .createLine = [] { return std::make_unique<ktr::test::RecordedLine>(); }},
            ktr::stationCaptions({}));
        QVERIFY(window.open(m_address, ktr::OperationalMode::Use::Look));
        const QModelIndex station = window.tree().index(0, 0);
        const QString before = u"north/stations/%1/state"_s.arg(station.data(Qt::EditRole).toString());
        QTRY_VERIFY_WITH_TIMEOUT(!listener.payloads(before).isEmpty(), 30'000);
        QVERIFY(window.tree().setData(station, u"Mühle"_s));
        QTRY_VERIFY_WITH_TIMEOUT(!listener.payloads(u"north/stations/Mühle/state"_s).isEmpty(), 30'000);
        QTRY_COMPARE_WITH_TIMEOUT(listener.payloads(before).constLast(), QByteArray(), 30'000);
    }

    /// A name that is none shows an empty curve, and nobody wonders.
    void theDashboardAsksForWhatThereIs()
    {
        const QJsonObject dashboard =
            objectOf(ktr::test::contentOf(QStringLiteral(KTR_SOURCE_DIR "/data/dashboard.json")));
        const QJsonArray panels = dashboard["panels"_L1].toArray();
        QVERIFY(panels.size() > 5);
        const QString figures = figuresAt(m_ports[0]) + figuresAt(m_ports[1]);
        static const QRegularExpression name(u"ktrconfig_[a-z_]+"_s);
        for (const auto &panel : panels) {
            for (const auto &target : panel["targets"_L1].toArray()) {
                const QString expression = target["expr"_L1].toString();
                for (auto found = name.globalMatch(expression); found.hasNext();) {
                    const QString metric = found.next().captured();
                    QVERIFY2(figures.contains(QRegularExpression(u"\n%1[ {]"_s.arg(metric))),
                             qPrintable(metric));
                }
                QString statement = target["rawSql"_L1].toString();
                QVERIFY(expression.isEmpty() != statement.isEmpty());
                if (!statement.isEmpty()) {
                    statement.replace(u"$station"_s, u"Pump"_s).replace(u"$channel"_s, u"1"_s);
                    statement.replace(QRegularExpression(u"\\$__timeFilter\\((\\w+)\\)"_s),
                                      u"\\1 BETWEEN now() - interval '1 hour' AND now()"_s);
                    const QString said = sql(u"CREATE TEMP VIEW asked AS %1; SELECT 'is sound' AS told,"
                                             " count(*) FROM asked"_s.arg(statement));
                    QVERIFY2(said.contains(u"is sound|"_s), qPrintable(statement + u": "_s + said));
                }
            }
        }
    }

    QString sql(const QString &statement) const
    {
        return m_server.sql(database, u"SET search_path = ktrconfig; "_s + statement);
    }
    int number(const QString &statement) const { return sql(statement).toInt(); }

    QTemporaryDir m_folder;
    const QString m_announced = m_folder.filePath(u"announced"_s);
    ktr::test::PrivatePostgres m_server;
    QString m_address;
    ktr::test::MqttBroker m_broker;
    const std::array<int, 2> m_ports{ktr::test::freePort(), ktr::test::freePort()};
};

QTEST_GUILESS_MAIN(SharedPassingOnTest)
#include "shared_passing_on_test.moc"
