#include "link/io_thread.h"
#include "opmode/station/station_sockets.h"

#include <QFile>
#include <QTest>

#include <sys/resource.h>

using namespace ktr;

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

        std::vector<std::unique_ptr<StationLine>> lines;
        Status opened = Status::done();
        while (opened && lines.size() < 100) {
            lines.push_back(sockets.createLine());
            opened = lines.back()->open(QStringLiteral("127.0.0.1"));
        }
        QVERIFY(!opened && !lines.back()->isOpen());
        QVERIFY2(opened.message().contains("no more connections"), qPrintable(opened.message()));
        QVERIFY(lines.size() > 40);
        std::vector<std::unique_ptr<QFile>> files;
        for (quint64 i = 0; i < StationSockets::descriptorsInReserve; ++i) {
            files.push_back(std::make_unique<QFile>(QCoreApplication::applicationFilePath()));
            QVERIFY(files.back()->open(QIODevice::ReadOnly));
        }
        files.clear();

        lines.front()->close(); // its place is free for another
        QVERIFY(lines.back()->open(QStringLiteral("127.0.0.1")));
    }
};

QTEST_GUILESS_MAIN(DescriptorLimitTest)
#include "descriptor_limit_test.moc"
