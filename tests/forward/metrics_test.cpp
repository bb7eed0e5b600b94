#include "forward/metrics.h"
#include "forward/metrics_server.h"
#include "link/io_thread.h"
#include "support/kept_stations.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>

#include <future>

using namespace ktr;
using asio::ip::tcp;

namespace {

/// The samples of a text, by name and labels. Fails the test on what the format does not allow.
void parse(const QByteArray &text, QHash<QString, double> &samples)
{
    static const QRegularExpression head(
        QStringLiteral("^# (?:HELP ([a-z_]+) [^\\\\]+|TYPE ([a-z_]+) (gauge|counter|histogram))$"));
    static const QRegularExpression sample(QStringLiteral(
        "^([a-z_]+)(\\{[a-z]+=\"(?:[^\"\\\\]|\\\\[\\\\\"n])*\"\\})? (-?[0-9]+(?:\\.[0-9]+)?(?:e-[0-9]+)?)$"));
    QVERIFY(text.endsWith('\n'));
    QString family;
    QString type;
    double bucket = 0;
    QSet<QString> families;
    for (const QString &line : QString::fromUtf8(text).chopped(1).split(u'\n')) {
        if (const auto found = head.match(line); found.hasMatch()) {
            if (found.hasCaptured(2)) {
                QCOMPARE(found.captured(2), family);
                type = found.captured(3);
                QCOMPARE(type == QLatin1String("counter"), family.endsWith(QLatin1String("_total")));
            } else {
                family = found.captured(1);
                QVERIFY2(!families.contains(family), qPrintable(line));
                families += family;
                type.clear();
                bucket = 0;
            }
            continue;
        }
        const auto found = sample.match(line);
        QVERIFY2(found.hasMatch() && !type.isEmpty(), qPrintable(line));
        const QString suffix = found.captured(1).mid(family.size());
        const bool isHistogram = type == QLatin1String("histogram");
        QVERIFY2(found.captured(1).startsWith(family) &&
                     (isHistogram ? QStringList{QStringLiteral("_bucket"), QStringLiteral("_sum"),
                                                QStringLiteral("_count")}
                                        .contains(suffix)
                                  : suffix.isEmpty()),
                 qPrintable(line));
        const QString name = found.captured(1) + found.captured(2);
        const double value = found.captured(3).toDouble();
        QVERIFY2(!samples.contains(name), qPrintable(line));
        samples.insert(name, value);
        if (suffix == QLatin1String("_bucket") || suffix == QLatin1String("_count")) {
            QVERIFY2(value >= bucket, qPrintable(line)); // each holds those before
            bucket = value;
        }
    }
}

/// What a client gets that sends so much, while the event loop goes on; ends with the connection.
QByteArray askedFor(quint16 port, const std::string &request)
{
    std::future<std::string> answer = std::async(std::launch::async, [port, request] {
        asio::io_context context;
        tcp::socket socket(context);
        std::string text;
        asio::error_code error;
        socket.connect({asio::ip::address_v4::loopback(), port}, error);
        asio::write(socket, asio::buffer(request), error);
        asio::read(socket, asio::dynamic_buffer(text), error);
        return text;
    });
    while (answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return QByteArray::fromStdString(answer.get());
}

const std::string wanted = "GET /metrics HTTP/1.1\r\nHost: here\r\n\r\n";

} // namespace

class MetricsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextIsWhatCollectorsRead()
    {
        const QTemporaryDir folder;
        test::KeptStations list(folder.path());
        list.add(QStringLiteral("S"));
        list.add(QStringLiteral("T"));
        list.mode->addStation(QStringLiteral("U"));
        list.say(0, "M,Alarm DI1 fail");
        list.say(0, "M,Alarm DI2 fail");
        QVERIFY(list.mode->acknowledgeAlarms({1}));
        QVERIFY(list.mode->keepsChanges());
        Metrics metrics = metricsOf(*list.mode);
        metrics.version = QStringLiteral("1 \"a\\b\"");
        metrics.forwardBacklog = 5;
        QHash<QString, double> samples;
        parse(metricsText(metrics), samples);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_stations{state=\"alive\"}")), 1);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_stations{state=\"unknown\"}")), 1);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_stations{state=\"off\"}")), 1);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_alarms_standing")), 2);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_alarms_unacknowledged")), 1);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_forward_backlog")), 5);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_record_rows_waiting"), -1), 0);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_build_info{version=\"1 \\\"a\\\\b\\\"\"}")), 1);
        const double commits = samples.value(QStringLiteral("ktrconfig_record_commit_seconds_count"));
        QVERIFY(commits > 0 && samples.value(QStringLiteral("ktrconfig_record_commit_seconds_sum")) > 0);
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_record_commit_seconds_bucket{le=\"+Inf\"}")),
                 commits);
        RecordReader reader(list.mode->recordPath());
        qint64 events = 0;
        QVERIFY(reader.count(QStringLiteral("event"), events));
        QCOMPARE(samples.value(QStringLiteral("ktrconfig_events_total")), static_cast<double>(events));
    }

    void requestsAreAnsweredOrRefused_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("answer"); // empty: it is cut off
        QTest::newRow("metrics") << QByteArray::fromStdString(wanted) << QByteArray("HTTP/1.1 200 OK\r\n");
        QTest::newRow("another page") << QByteArray("GET / HTTP/1.0\r\n\r\n") << QByteArray("HTTP/1.1 404 ");
        QTest::newRow("another method")
            << QByteArray("POST /metrics HTTP/1.1\r\n\r\n") << QByteArray("HTTP/1.1 405 ");
        QTest::newRow("no HTTP") << QByteArray("hello\r\n\r\n") << QByteArray("HTTP/1.1 400 ");
        QTest::newRow("half a request") << QByteArray("GET /metrics HTTP/1.1\r\n") << QByteArray();
        QTest::newRow("too long") << QByteArray(1 << 20, 'a') << QByteArray();
    }
    void requestsAreAnsweredOrRefused()
    {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, answer);
        IoThread io;
        MetricsServer server(io, [] { return QByteArray("a_b 1\n"); },
                             {.connections = 2, .time = std::chrono::milliseconds(500)});
        QVERIFY(server.listen({}));
        const QByteArray got = askedFor(server.port(), request.toStdString());
        QVERIFY2(answer.isEmpty() ? got.isEmpty() : got.startsWith(answer), got.constData());
        QCOMPARE(got.endsWith(
                     "\r\nContent-Length: 6\r\nCache-Control: no-store\r\nConnection: close\r\n\r\na_b 1\n"),
                 answer.contains("200"));
        MetricsServer second(io, [] { return QByteArray(); }, {});
        QVERIFY(!second.listen({QStringLiteral("127.0.0.1"), server.port()}));
    }

    void whoOnlyHoldsOnKeepsNobodyElseOut()
    {
        IoThread io;
        MetricsServer server(io, [] { return QByteArray("a_b 1\n"); },
                             {.connections = 2, .time = std::chrono::milliseconds(500)});
        QVERIFY(server.listen({}));
        asio::io_context context;
        std::vector<tcp::socket> idle;
        for (int i = 0; i < 10; ++i) {
            idle.emplace_back(context).connect({asio::ip::address_v4::loopback(), server.port()});
        }
        QTRY_VERIFY_WITH_TIMEOUT(askedFor(server.port(), wanted).endsWith("a_b 1\n"), 30'000);
    }

    void addressesAreThisMachinesUnlessNamed()
    {
        ListenAddress address;
        QVERIFY(readListenAddress(QStringLiteral("9100"), address));
        QCOMPARE(address.address + u' ' + QString::number(address.port), "127.0.0.1 9100");
        QVERIFY(readListenAddress(QStringLiteral("[::]:80"), address));
        QCOMPARE(address.address, "::");
        for (const char *wrong : {"", "70000", "host:80", "127.0.0.1:", "127.0.0.1"}) {
            QVERIFY2(!readListenAddress(QString::fromLatin1(wrong), address), wrong);
        }
    }
};

QTEST_GUILESS_MAIN(MetricsTest)
#include "metrics_test.moc"
