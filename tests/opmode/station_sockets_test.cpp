#include "link/io_thread.h"
#include "opmode/station/station.h"
#include "opmode/station/station_sockets.h"
#include "platform/exclusive_port.h"
#include "support/manual_timers.h"
#include "support/udp_peer.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <asio/post.hpp>

#include <future>

using namespace ktr;
using test::Peer;

namespace {

struct RecordingOwner : StationOwner
{
    void station_message(const QString &kennung, const QString &text) override
    {
        messages += kennung + QLatin1Char(':') + text;
        QElapsedTimer time;
        for (time.start(); time.elapsed() < busyFor;) {
        }
        if (during) {
            std::exchange(during, nullptr)();
        }
    }
    void stationChanged(const QString &kennung, StationChange what) override
    {
        if (what == StationChange::LossBegan || what == StationChange::LossOver) {
            changes +=
                kennung + (what == StationChange::LossOver ? QLatin1String(":over") : QLatin1String(":loss"));
            loss = *flooded->loss();
        }
    }
    void stationTrouble(const QString &, const QString &text) override { troubles += text; }

    QStringList messages;
    QStringList troubles;
    QStringList changes;
    const cStation *flooded = nullptr; ///< the one that loses datagrams
    DatagramLoss loss;
    std::function<void()> during;
    qint64 busyFor = 0; ///< ms
};

/// A module at an address of its own, and the station that watches it.
struct Watched
{
    Watched(int number, StationSockets &sockets, MLiteTimer &timers, RecordingOwner &owner)
        : address(QByteArray("127.0.1.") + QByteArray::number(number + 1)),
          module(address.constData()),
          line(sockets.createLine()),
          station(QString::number(number), *line, timers, owner)
    {
        station.setHostAddress(QString::fromLatin1(address) + QLatin1Char(':') +
                               QString::number(module.port()));
    }
    /// Where the station listens, once it has announced itself.
    quint16 port() const { return static_cast<quint16>(module.senderPort() + 1); }
    void say(const QByteArray &text) { module.send(text, port()); }

    QByteArray address;
    Peer module;
    std::unique_ptr<StationLine> line;
    cStation station;
};

} // namespace

class StationSocketsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoHundredStationsEachHearTheirOwnModule()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        StationSockets sockets(m_io);
        RecordingOwner owner;
        std::vector<std::unique_ptr<Watched>> all = watch(200, sockets, owner);
        std::set<quint16> ports;
        for (const auto &watched : all) {
            QVERIFY(watched->station.connectStation());
            QCOMPARE(watched->module.await(), "config\r\n");
            ports.insert(watched->port());
            QVERIFY(watched->port() % 2 == 1 && watched->port() < 32768);
        }
        QCOMPARE(ports.size(), 200U);
        for (int i = 0; i < 200; ++i) {
            all[std::size_t(i)]->say("at+cmgs=\"" + QByteArray::number(i) + "\"\r");
            all[std::size_t(i)]->say("alarm\x1A");
        }
        QTRY_COMPARE(owner.messages.size(), 200);
        owner.messages.sort();
        for (int i = 0; i < 200; ++i) {
            QVERIFY(owner.messages.contains(QStringLiteral("%1:%1 --> alarm").arg(i)));
        }

        // A module that talks to another's station is not heard there.
        all[0]->module.send("+CSQ: 1,0\r\n", all[1]->port());
        all[1]->say("+CSQ: 2,0\r\n");
        QTRY_COMPARE(all[1]->station.csq(), "2,0");
        QCOMPARE(sockets.foreignDatagrams(), 1);
        QCOMPARE(owner.troubles, QStringList());
    }

    void aQuestionInTheMiddleOfABatchKeepsTheOrder()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        StationSockets sockets(m_io);
        RecordingOwner owner;
        const auto all = watch(2, sockets, owner);
        for (const auto &watched : all) {
            watched->station.connectStation();
            watched->module.await();
        }
        owner.during = [&] {
            QVERIFY(QTest::qWaitFor([&] { return owner.messages.contains("1: --> d"); }, 60'000));
        };
        for (const char *text : {"a\x1A", "b\x1A", "c\x1A"}) {
            all[0]->say(text);
        }
        all[1]->say("d\x1A");
        QTRY_COMPARE(owner.messages.size(), 4);
        owner.messages.removeOne("1: --> d");
        QCOMPARE(owner.messages, (QStringList{"0: --> a", "0: --> b", "0: --> c"}));
    }

    void whatTakesLongLeavesTurnsToOthersAndKeepsItsOrder()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        StationSockets sockets(m_io);
        RecordingOwner owner;
        const auto all = watch(1, sockets, owner);
        all[0]->station.connectStation();
        all[0]->module.await();
        owner.busyFor = StationSockets::longestTurn.count() + 1;
        QTimer others;
        others.callOnTimeout([&owner] { owner.messages += QStringLiteral("turn"); });
        for (const char *text : {"a\x1A", "b\x1A", "c\x1A", "d\x1A"}) {
            all[0]->say(text);
        }
        others.start(0);
        QTRY_VERIFY(owner.messages.contains("0: --> d"));
        for (const char *text : {"0: --> b", "0: --> c", "0: --> d"}) {
            QCOMPARE(owner.messages.value(owner.messages.indexOf(text) - 1), "turn");
        }
        owner.messages.removeAll("turn");
        QCOMPARE(owner.messages, (QStringList{"0: --> a", "0: --> b", "0: --> c", "0: --> d"}));
    }

    void aFloodAtOneStationDelaysNoOtherAndIsCounted_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("isStranger");
        QTest::newRow("small datagrams") << QByteArray("M,fail\x1A") << 20'000 << false;
        QTest::newRow("large datagrams") << QByteArray(65'000, 'x') + '\x1A' << 500 << false;
        QTest::newRow("datagrams of somebody else") << QByteArray("M,fail\x1A") << 20'000 << true;
    }
    void aFloodAtOneStationDelaysNoOtherAndIsCounted()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        QFETCH(QByteArray, datagram);
        QFETCH(int, count);
        QFETCH(bool, isStranger);
        IntakeLimits limits;
        limits.burst = 100 * IntakeLimits::ofADatagram;
        limits.perSecond = 8 << 20;
        limits.waiting = 64 << 10;
        limits.quietUntilOver = std::chrono::milliseconds(300);
        StationSockets sockets(m_io, {}, limits);
        RecordingOwner owner;
        const auto all = watch(21, sockets, owner);
        for (const auto &watched : all) {
            watched->station.connectStation();
            watched->module.await();
        }
        owner.flooded = &all[0]->station;
        Peer stranger("127.0.2.1");
        Peer &from = isStranger ? stranger : all[0]->module;
        const qint64 counted = datagram.size() + IntakeLimits::ofADatagram;
        QElapsedTimer time;
        time.start();
        for (int i = 0; i < count; ++i) {
            from.send(datagram, all[0]->port());
            if (isStranger && i == 200) { // it is known by now
                QTRY_VERIFY(sockets.foreignDatagrams() >= 100);
            }
        }
        if (isStranger) { // whose own alarm finds room beside them
            all[0]->say("at+cmgs=\"+491\"\r");
            all[0]->say("M,fail\x1A");
            QTRY_COMPARE(owner.messages.filter(QRegularExpression("^0:")).size(), 1);
        }
        for (std::size_t i = 1; i < all.size(); ++i) {
            all[i]->say("at+cmgs=\"+491\"\r");
            all[i]->say("M,fail\x1A");
        }
        const auto floods = [&owner] { return owner.messages.filter(QRegularExpression("^0:")).size(); };
        const auto isHeard = [&owner, &floods] { return owner.messages.size() - floods() == 20; };
        QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 60'000);
        // Of the flood no more was told before than had been taken in, and in turns with the others.
        const qsizetype last = owner.messages.lastIndexOf(QRegularExpression("^[^0].*"));
        const qint64 letIn = limits.burst + limits.perSecond * (time.elapsed() + 1) / 1000;
        QVERIFY2((last - 19) * counted <= letIn + limits.waiting + counted,
                 qPrintable(QString::number(last)));

        if (!droppedDatagrams(test::Peer("127.0.0.1").handle())) {
            QSKIP("this system does not tell what it dropped");
        }
        QTRY_COMPARE_WITH_TIMEOUT(owner.changes, (QStringList{"0:loss", "0:over"}), 60'000);
        const auto taken = [&] { return isStranger ? sockets.foreignDatagrams() : floods(); };
        QTRY_COMPARE_WITH_TIMEOUT(taken() + owner.loss.dropped, count,
                                  60'000); // the system's rest comes slowly
        QVERIFY((isStranger || owner.loss.isFlood) && !all[0]->station.loss());
    }

    void nothingIsLostWhileTheProgramStandsStillForAMinute()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        StationSockets sockets(m_io);
        RecordingOwner owner;
        const auto all = watch(1, sockets, owner);
        owner.flooded = &all[0]->station;
        all[0]->station.connectStation();
        all[0]->module.await();
        std::promise<void> goesOn;
        asio::post(m_io.context(), [&goesOn] { goesOn.get_future().wait(); });
        constexpr int alarms = 600; // ten a second
        for (int i = 0; i < alarms; ++i) {
            all[0]->say("at+cmgs=\"+4917012345\"\r");
            all[0]->say("M,Alarm " + QByteArray::number(i) + " fail\x1A");
        }
        goesOn.set_value();
        const auto isOver = [&owner] { return owner.messages.size() == alarms || !owner.changes.isEmpty(); };
        QTRY_VERIFY_WITH_TIMEOUT(isOver(), 60'000);
        if (owner.messages.size() < alarms) { // told, at least
            QSKIP("this system allows no buffer that is large enough");
        }
        QCOMPARE(owner.changes, QStringList());
    }

    void whatHasArrivedIsHeardBeforeAStationIsLetGo()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        IntakeLimits limits;
        limits.burst = 1;
        limits.perSecond = 1; // the first is taken in, the others stay with the system
        StationSockets sockets(m_io, {}, limits);
        RecordingOwner owner;
        const auto all = watch(2, sockets, owner);
        for (const auto &watched : all) {
            watched->station.connectStation();
            watched->module.await();
            for (int i = 0; i < 50; ++i) {
                watched->say(QByteArray::number(i) + "\x1A");
            }
        }
        for (const auto &watched : all) {
            watched->station.handleWaiting();
            watched->station.disconnect();
        }
        QCOMPARE(owner.messages.size(), 100);
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(owner.messages[i], QStringLiteral("0: --> %1").arg(i));
        }
        if (droppedDatagrams(test::Peer("127.0.0.1").handle())) { // and what is lost by then is told
            owner.flooded = &all[0]->station;
            all[0]->station.connectStation();
            all[0]->module.await();
            for (int i = 0; i < 20'000; ++i) {
                all[0]->say("fail\x1A");
            }
            all[0]->station.handleWaiting();
            QCOMPARE(owner.messages.size() - 100 + owner.loss.dropped, 20'000);
        }
    }

    void aStationThatWasDisconnectedHearsNothingMore()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        StationSockets sockets(m_io);
        RecordingOwner owner;
        const auto all = watch(1, sockets, owner);
        Watched &watched = *all.front();
        watched.station.connectStation();
        watched.module.await();
        owner.during = [&] { watched.station.disconnect(); };
        watched.say("first\x1A");
        watched.say("second\x1A");
        QTRY_COMPARE(owner.messages.size(), 1);
        watched.station.connectStation();
        QCOMPARE(watched.module.await(), "config\r\n");
        watched.say("third\x1A");
        QTRY_COMPARE(owner.messages.size(), 2);
        QCOMPARE(owner.messages.last(), "0: --> third");
    }

    void aStationWithoutAPairIsToldAndComesInWhenOneIsFree()
    {
        StationSockets sockets(m_io, rangeOfTwoPairs());
        RecordingOwner owner;
        const auto all = watch(3, sockets, owner);
        for (const auto &watched : all) {
            watched->station.connectStation();
        }
        QCOMPARE(owner.troubles, QStringList{UdpPair::noPortFree().message()});
        all[0]->station.disconnect();
        m_time.advance(std::chrono::seconds(20));
        QCOMPARE(all[2]->module.await(), "config\r\n");
    }

    void aNameThatIsNotFoundIsTold()
    {
        StationSockets sockets(m_io);
        RecordingOwner owner;
        const auto all = watch(1, sockets, owner);
        all[0]->station.setHostAddress(QStringLiteral("no-such-module.invalid"));
        all[0]->station.connectStation();
        QTRY_COMPARE_WITH_TIMEOUT(owner.troubles.size(), 1, 60'000);
        QVERIFY(owner.troubles.first().contains("no-such-module.invalid"));
        QVERIFY(all[0]->station.online() && !all[0]->line->isOpen());
    }

private:
    PortRange rangeOfTwoPairs()
    {
        for (PortRange range{30'000, 30'003};; range.first += 4, range.last += 4) {
            UdpPair first(m_io, {range});
            UdpPair second(m_io, {range});
            if (first.open("127.0.0.1", quiet()) && second.open("127.0.0.1", quiet())) {
                return range;
            }
        }
    }
    static UdpPairEvents quiet()
    {
        return {[](QByteArray &&) {},  [] {}, [](const DatagramLoss &) {}, [] {}, [](const QString &) {},
                [](const QString &) {}};
    }
    std::vector<std::unique_ptr<Watched>> watch(int count, StationSockets &sockets, RecordingOwner &owner)
    {
        std::vector<std::unique_ptr<Watched>> all;
        for (int i = 0; i < count; ++i) {
            all.push_back(std::make_unique<Watched>(i, sockets, m_registry, owner));
        }
        return all;
    }

    IoThread m_io;
    test::ManualTimers m_time;
    QueuedCallbackTimers m_timers{m_time, [this] { return m_time.now(); }};
    MLiteTimer m_registry{m_timers};
};

QTEST_GUILESS_MAIN(StationSocketsTest)
#include "station_sockets_test.moc"
