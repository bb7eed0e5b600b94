#include "app/single_instance.h"
#include "support/manual_timers.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QSignalSpy>
#include <QTest>
#include <QUuid>

using namespace ktr;

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_name = QStringLiteral("KTRconfig-test-") + QUuid::createUuid().toString(QUuid::Id128); }

    void anInstanceThatIsAskedToCloseGivesUpItsNameFirst()
    {
        SingleInstance first(m_timers, m_name);
        SingleInstance second(m_timers, m_name);
        second.askOtherToClose(); // there is none
        first.claim();
        QVERIFY(first.isClaimed());
        QVERIFY(!first.otherIsRunning()); // it is the one itself
        QVERIFY(second.otherIsRunning());
        bool free = false;
        connect(&first, &SingleInstance::closeRequested, this, [&] { free = !second.otherIsRunning(); });
        const QSignalSpy asked(&first, &SingleInstance::closeRequested);
        second.askOtherToClose();
        QTRY_COMPARE(asked.count(), 1);
        QVERIFY(free && !first.isClaimed());
        second.claim();
        QVERIFY(second.isClaimed());
    }

    void aNameInUseIsTakenOnceItIsFree()
    {
        auto first = std::make_unique<SingleInstance>(m_timers, m_name);
        first->claim();
        SingleInstance second(m_timers, m_name);
        second.claim();
        QVERIFY(!second.isClaimed());
        m_timers.advance(Milliseconds(1000));
        QVERIFY(!second.isClaimed() && first->isClaimed());
        first.reset();
        m_timers.advance(Milliseconds(999));
        QVERIFY(!second.isClaimed());
        m_timers.advance(Milliseconds(1));
        QVERIFY(second.isClaimed());
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
        SingleInstance next(m_timers, m_name);
        QVERIFY(!next.otherIsRunning());
        next.claim();
        QVERIFY(next.isClaimed());
        QVERIFY(SingleInstance(m_timers, m_name).otherIsRunning());
    }

private:
    test::ManualTimers m_timers;
    QString m_name;
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "single_instance_test.moc"
