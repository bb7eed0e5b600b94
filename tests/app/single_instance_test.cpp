#include "app/single_instance.h"
#include "platform/instances.h"
#include "support/manual_timers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

using namespace ktr;

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_name = QStringLiteral("KTRconfig-test-") + QUuid::createUuid().toString(QUuid::Id128); }

    void theOtherTellsWhatItDoesAndKeepsItsNameUntilItEnds()
    {
        Works works = Work::Watching;
        auto first = std::make_unique<SingleInstance>(m_timers, m_name, [&works] { return works; });
        QVERIFY(first->claim() && first->isClaimed());
        QVERIFY(first->claim()); // it is the one itself
        SingleInstance second(m_timers, m_name);
        QVERIFY(!second.claim() && !second.isClaimed());
        QSignalSpy answered(&second, &SingleInstance::otherAnswered);
        second.askWhatOtherDoes();
        QTRY_COMPARE(answered.count(), 1);
        QCOMPARE(answered.front().front().value<Works>(), Work::Watching);
        works = Work::Transmitting | Work::Uploading;
        m_timers.advance(std::chrono::seconds(1));
        QTRY_COMPARE(answered.count(), 2);
        QCOMPARE(answered.back().front().value<Works>(), Work::Transmitting | Work::Uploading);

        const QSignalSpy ended(&second, &SingleInstance::otherEnded);
        // What is asked of it may open a question, which must not stand inside the socket's own call.
        connect(first.get(), &SingleInstance::closeRequested, this, [&] { first.reset(); });
        second.askOtherToClose();
        QTRY_COMPARE(ended.count(), 1);
        QVERIFY(first == nullptr && second.claim() && second.isClaimed());
        m_timers.advance(SingleInstance::longestSilence);
        QCOMPARE(answered.count(), 2);
    }

    void whoDoesNotAnswerIsNotWaitedForLong_data()
    {
        QTest::addColumn<QByteArray>("says");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("something else") << QByteArray("HTTP/1.1 400 Bad Request\r\n\r\n");
        QTest::newRow("no line") << QByteArray(100'000, 'x');
    }
    void whoDoesNotAnswerIsNotWaitedForLong()
    {
        QFETCH(QByteArray, says);
        QLocalServer other;
        QVERIFY(other.listen(m_name));
        connect(&other, &QLocalServer::newConnection, this,
                [&] { other.nextPendingConnection()->write(says); });
        SingleInstance next(m_timers, m_name);
        QVERIFY(!next.claim());
        const QSignalSpy answered(&next, &SingleInstance::otherAnswered);
        const QSignalSpy silent(&next, &SingleInstance::otherSilent);
        next.askWhatOtherDoes();
        m_timers.advance(SingleInstance::longestSilence - Milliseconds(1));
        QCoreApplication::processEvents();
        QCOMPARE(answered.count() + silent.count(), 0);
        m_timers.advance(Milliseconds(1));
        QCOMPARE(silent.count(), 1);
        next.passOver();
        QVERIFY(next.claim() && next.isClaimed() && !next.metStranger());
        QVERIFY(!SingleInstance(m_timers, m_name).claim()); // a third finds one of the two
    }

    void theOneThatWasPassedOverIsFoundAgainAndTakesNobodysPlace()
    {
        auto first = std::make_unique<SingleInstance>(m_timers, m_name);
        QVERIFY(first->claim());
        SingleInstance second(m_timers, m_name);
        QVERIFY(!second.claim());
        const QSignalSpy silent(&second, &SingleInstance::otherSilent);
        second.askWhatOtherDoes();
        second.passOver();
        QVERIFY(second.claim());
        m_timers.advance(SingleInstance::longestSilence); // nobody is waited for any more
        QCOMPARE(silent.count(), 0);
        for (int others = 2; others > 0; --others) {
            SingleInstance third(m_timers, m_name);
            for (int met = 0; met < others; ++met) {
                QVERIFY(!third.claim());
                third.passOver();
            }
            QVERIFY(third.claim());
            first.reset();
        }
    }

    void theNameIsOutOfReachOfOthers()
    {
#ifdef Q_OS_UNIX
        const QTemporaryDir session; // nobody else can enter it
        const QTemporaryDir home;
        qputenv("XDG_CACHE_HOME", QFile::encodeName(home.path()));
        for (const QString &folder : {session.path(), QDir::tempPath(), QStringLiteral("/nowhere")}) {
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder));
            const QFileInfo name(privateSocketName(QStringLiteral("name")));
            QCOMPARE(name.absolutePath(),
                     folder == session.path() ? folder : home.filePath(QStringLiteral("KTRconfig")));
            const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                                QFile::WriteOther | QFile::ExeOther;
            QCOMPARE(QFile::permissions(name.absolutePath()) & others, QFile::Permissions());
        }
#endif
    }

    void whatACrashedInstanceLeftIsNoObstacle()
    {
        QLocalServer crashed;
        QVERIFY(crashed.listen(m_name + QStringLiteral("-crashed")));
        const QString left = crashed.fullServerName();
        if (!QFileInfo::exists(left)) {
            QSKIP("names of this system go with the process");
        }
        QVERIFY(QFile::rename(left, QFileInfo(left).path() + u'/' + m_name));
        crashed.close();
        const QString lock = QDir(QDir::tempPath()).absoluteFilePath(m_name + QStringLiteral(".lock"));
        QCOMPARE(QProcess::execute(QStringLiteral("mkfifo"), {lock}), 0); // nor is what nobody writes to
        SingleInstance next(m_timers, m_name);
        QVERIFY(next.claim() && next.isClaimed());
        QVERIFY(QFile::remove(lock));
        QVERIFY(next.trouble().message().startsWith(lock));
        QVERIFY(!SingleInstance(m_timers, m_name).claim());
    }

private:
    test::ManualTimers m_timers;
    QString m_name;
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "single_instance_test.moc"
