#include "link/io_thread.h"
#include "opmode/station/station_sockets.h"
#include "support/udp_peer.h"

#include <QFile>
#include <QTest>

#include <sys/resource.h>

using namespace ktr;

namespace {

class Listener : public StationLineListener
{
public:
    void DataArrival(const QByteArray &datagram) override { heard.append(datagram); }
    void socket_SendComplete() override { ++sent; }
    void lineTrouble(const QString &text) override { troubles.append(text); }
    void linesLost(const DatagramLoss &) override {}

    QByteArrayList heard;
    int sent = 0;
    QStringList troubles;
};

} // namespace

class DescriptorLimitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stationsBeyondTheLimitAreRefusedAndFilesCanStillBeOpened()
    {
        IoThread io;
        StationSockets sockets(io);
        rlimit limit{};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        QCOMPARE(limit.rlim_cur, limit.rlim_max);
        limit.rlim_cur = 200;
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);

        test::Peer module("127.0.0.1");
        const QString address = QStringLiteral("127.0.0.1:%1").arg(module.port());
        std::vector<std::unique_ptr<StationLine>> lines;
        Status opened = Status::done();
        while (opened && lines.size() < 100) {
            lines.push_back(sockets.createLine());
            opened = lines.back()->open(address);
        }
        QVERIFY(!opened && !lines.back()->isOpen());
        QVERIFY2(opened.message().contains("no more connections"), qPrintable(opened.message()));
        QVERIFY2(lines.size() > 70, qPrintable(QString::number(lines.size())));
        std::vector<std::unique_ptr<QFile>> files;
        for (quint64 i = 0; i < StationSockets::descriptorsInReserve; ++i) {
            files.push_back(std::make_unique<QFile>(QCoreApplication::applicationFilePath()));
            QVERIFY(files.back()->open(QIODevice::ReadOnly));
        }
        files.clear();

        // A line that shares what is scarce talks like any other, also while somebody looks at its port.
        lines.pop_back();
        StationLine &line = *lines.back();
        Listener listener;
        line.setListener(&listener);
        line.send("one");
        line.send("two");
        QCOMPARE(module.await(), "one");
        const quint16 port = module.senderPort();
        QCOMPARE(port % 2, 0);
        QCOMPARE(module.await(), "two");
        QCOMPARE(module.senderPort(), port);
        {
            const test::Peer somebody("0.0.0.0", port);
            line.send("three");
            QVERIFY(!QTest::qWaitFor([&] { return listener.sent > 2; }, 50));
        }
        QCOMPARE(module.await(), "three");
        QCOMPARE(module.senderPort(), port);
        module.send("answer", port + 1);
        QTRY_COMPARE(listener.heard, QByteArrayList{"answer"});
        QTRY_COMPARE(listener.sent, 3);
        QCOMPARE(listener.troubles, QStringList());

        lines.front()->close(); // its place is free for another
        lines.push_back(sockets.createLine());
        QVERIFY(lines.back()->open(address));
    }
};

QTEST_GUILESS_MAIN(DescriptorLimitTest)
#include "descriptor_limit_test.moc"
