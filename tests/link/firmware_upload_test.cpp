#include "link/firmware_upload.h"
#include "link/module_session.h"
#include "link/self_programming.h"
#include "link/serial_transport.h"
#include "platform/files.h"
#include "platform/pseudo_terminal.h"
#include "simulator/module_on_terminal.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/silent_line.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

namespace {

QByteArray pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 256);
    }
    return bytes;
}

} // namespace

class FirmwareUploadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_line = std::make_unique<SilentLine>();
        QVERIFY(m_line->open("COM1"));
    }

    void theImageHasItsLengthWhateverTheFileHas_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("told");
        QTest::newRow("one byte") << 1 << 1;
        QTest::newRow("shorter") << 40000 << 1;
        QTest::newRow("exact") << 43008 << 0;
        QTest::newRow("longer") << 50000 << 1;
    }
    void theImageHasItsLengthWhateverTheFileHas()
    {
        QFETCH(const int, length);
        ManualTimers timers;
        FirmwareUpload upload(*m_line, timers, serialPace);
        const QSignalSpy told(&upload, &FirmwareUpload::statusMessage);
        const QSignalSpy ended(&upload, &FirmwareUpload::ended);
        const QSignalSpy progressed(&upload, &FirmwareUpload::progressed);
        QVERIFY(upload.start(image(pattern(length))));
        QCOMPARE(m_line->sent, pattern(length).left(43008).leftJustified(43008, '\xFF'));
        QTEST(static_cast<int>(told.size()), "told");
        QCOMPARE(ended.size(), 1);
        QCOMPARE(ended[0][0].toBool(), true);
        QCOMPARE(progressed.last(), (QVariantList{43008, 43008}));
    }

    void datagramsArePaced()
    {
        ManualTimers timers;
        FirmwareUpload upload(*m_line, timers, datagramPace);
        const QSignalSpy ended(&upload, &FirmwareUpload::ended);
        QVERIFY(upload.start(image(pattern(43008))));
        for (int block = 1; block <= 168; ++block) {
            QCOMPARE(m_line->sent.size(), block * 256);
            timers.advance(datagramPace.pause - Milliseconds(1));
            QCOMPARE(m_line->sent.size(), block * 256);
            timers.advance(Milliseconds(1));
        }
        QCOMPARE(m_line->sent, pattern(43008));
        QCOMPARE(ended.size(), 1);
    }

    void nothingIsSentWithoutAnImageOrALine()
    {
        ManualTimers timers;
        FirmwareUpload upload(*m_line, timers, serialPace);
        const QSignalSpy ended(&upload, &FirmwareUpload::ended);
        const QString missing = m_folder->filePath("missing.bin");
        QCOMPARE(upload.start(missing).message(), missing + ": there is no such file");
        QVERIFY(upload.start(m_folder->path()).message().endsWith("is a folder"));
        QVERIFY(upload.start(image({})).message().endsWith("is empty"));
        m_line->close();
        QVERIFY(!upload.start(image(pattern(1))));
        QVERIFY(m_line->sent.isEmpty() && ended.isEmpty() && !upload.isRunning());
    }

    void anUploadThatEndsEarlySendsNothingMore_data()
    {
        QTest::addColumn<bool>("lost");
        QTest::newRow("cancelled") << false;
        QTest::newRow("line lost") << true;
    }
    void anUploadThatEndsEarlySendsNothingMore()
    {
        QFETCH(const bool, lost);
        ManualTimers timers;
        FirmwareUpload upload(*m_line, timers, datagramPace);
        const QSignalSpy ended(&upload, &FirmwareUpload::ended);
        QVERIFY(upload.start(image(pattern(43008))));
        timers.advance(Milliseconds(25));
        QVERIFY(!upload.start(image(pattern(43008)))); // one at a time
        if (lost) {
            Q_EMIT m_line->lost("unplugged", false);
        } else {
            upload.cancel();
        }
        timers.advance(Milliseconds(1000));
        QCOMPARE(m_line->sent.size(), 3 * 256);
        QCOMPARE(ended.size(), 1);
        QCOMPARE(ended[0][0].toBool(), false);
        m_line->sent.clear();
        QVERIFY(upload.start(image(pattern(43008)))); // from the beginning
        timers.advance(Milliseconds(2000));
        QCOMPARE(m_line->sent, pattern(43008));
    }

    void nothingGetsAmongTheBytesOfTheImage()
    {
        ManualTimers timers;
        ModuleSession session(*m_line, timers, fixedEnvironment(), LineKind::Ethernet);
        const QString file = image(pattern(43008));
        SelfProgramming programming(session, *m_line, timers, datagramPace, [&file] { return file; });
        const QSignalSpy ended(&programming, &SelfProgramming::ended);
        const QSignalSpy logged(&session, &ModuleSession::logged);
        session.place("§88");
        Q_EMIT m_line->received("at+cmgr=1\r");
        timers.advance(SelfProgramming::delay - Milliseconds(1));
        QVERIFY(m_line->sent.endsWith("OK\r\n"));
        m_line->sent.clear();
        session.place("K");
        timers.advance(Milliseconds(1 + 20));
        for (const char *line : {"at+cmgr=1\r", "at+cpin?\r", "at+cmgs=\"+IP\"\rM,fail\x1A"}) {
            Q_EMIT m_line->received(line);
        }
        QVERIFY(logged.last().first().toString().endsWith("M,fail\x1A"));
        timers.advance(Milliseconds(2000));
        QCOMPARE(m_line->sent, pattern(43008));
        QCOMPARE(ended.size(), 1);
        m_line->sent.clear();
        Q_EMIT m_line->received("at+cmgr=1\r");
        timers.advance(Milliseconds(1000));
        QVERIFY(m_line->sent.contains("K\r\n")); // the conversation goes on
    }

    void theModuleCountsEveryByteOverASerialPort()
    {
        if (!PseudoTerminal::isSupported) {
            QSKIP("this system has no pseudo-terminals");
        }
        EventLoopTimers timers;
        ModuleOnTerminal module(timers);
        QVERIFY(module.open());
        IoThread io;
        SerialTransport port(io);
        QVERIFY(port.open(module.path()));
        ModuleSession session(port, timers, fixedEnvironment());
        session.place("§88");
        bool expectsImage = false;
        module.module().onCommand(
            [&](const QString &, const Understood &command) { expectsImage = command.accepted; });
        QTRY_VERIFY_WITH_TIMEOUT(expectsImage, 60000);
        FirmwareUpload upload(port, timers, serialPace);
        const QSignalSpy ended(&upload, &FirmwareUpload::ended);
        QVERIFY(upload.start(image(pattern(40000))));
        QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, 60000);
        QTRY_COMPARE_WITH_TIMEOUT(module.module().counts().firmwareBytes, 43008, 60000);
    }

private:
    QString image(const QByteArray &bytes)
    {
        const QString path = m_folder->filePath("upgrade.bin");
        return replaceFile(path, bytes) ? path : QString();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SilentLine> m_line;
};

QTEST_GUILESS_MAIN(FirmwareUploadTest)
#include "firmware_upload_test.moc"
