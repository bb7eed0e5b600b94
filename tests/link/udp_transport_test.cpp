#include "link/udp_transport.h"
#include "support/udp_peer.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>

using namespace ktr;
using test::Peer;

namespace {

QString at(const QString &host, quint16 port)
{
    return host + ':' + QString::number(port);
}

} // namespace

class UdpTransportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPairSendsFromAnEvenPortAndReceivesAtTheNext_data()
    {
        QTest::addColumn<QString>("host");
        QTest::newRow("address") << "127.0.0.1";
        QTest::newRow("address with zeros") << "127.000.000.001";
        QTest::newRow("name") << "localhost";
    }
    void aPairSendsFromAnEvenPortAndReceivesAtTheNext()
    {
        QFETCH(QString, host);
        Peer module("127.0.0.1");
        UdpTransport transport(m_io);
        QSignalSpy received(&transport, &Transport::received);
        QSignalSpy lost(&transport, &Transport::lost);
        QVERIFY(transport.open(at(host, module.port())));
        bool drained = false;
        transport.send("config\r\n"); // a name's look-up may still run
        int others = 0;               // several may wait for it
        transport.whenDrained([&] { ++others; });
        transport.whenDrained([&] { drained = others > 0; });
        QTRY_VERIFY(drained || !lost.isEmpty());
        if (!lost.isEmpty() && host == u"localhost") {
            QSKIP("this machine does not know the name localhost");
        }
        QCOMPARE(module.await(), "config\r\n");
        QCOMPARE(module.senderPort(), transport.sendPort());
        QVERIFY(transport.sendPort() % 2 == 0 && transport.sendPort() < 32768);
        module.send("at+cpin?\r", static_cast<quint16>(transport.sendPort() + 1));
        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(received[0].front().toByteArray(), "at+cpin?\r");
    }

    void datagramsFromElsewhereAreDropped()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        Peer module("127.0.0.1");
        Peer moduleElsewhere("127.0.0.1");
        Peer stranger("127.0.0.2");
        UdpTransport transport(m_io);
        QSignalSpy received(&transport, &Transport::received);
        QVERIFY(transport.open(at("127.0.0.1", module.port())));
        const auto port = static_cast<quint16>(transport.sendPort() + 1);
        stranger.send("at+cpin?\r", port);
        moduleElsewhere.send("+CSQ: 1\r", port); // any port of the module's address will do
        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(received[0].front().toByteArray(), "+CSQ: 1\r");
        QCOMPARE(transport.foreignDatagrams(), 1);
    }

    void whereNobodyListensYetSomebodyIsHeardLater()
    {
        const quint16 port = Peer("127.0.0.1").port();
        UdpTransport transport(m_io);
        QSignalSpy received(&transport, &Transport::received);
        QSignalSpy lost(&transport, &Transport::lost);
        QVERIFY(transport.open(at("127.0.0.1", port)));
        for (int i = 0; i < 3; ++i) {
            bool drained = false;
            transport.send("config\r\n");
            transport.whenDrained([&] { drained = true; });
            QTRY_VERIFY(drained);
        }
        Peer module("127.0.0.1", port);
        module.send("at+cpin?\r", static_cast<quint16>(transport.sendPort() + 1));
        QTRY_COMPARE(received.count(), 1);
        transport.send("config\r\n");
        QCOMPARE(module.await(), "config\r\n");
        QCOMPARE(lost.count(), 0);
    }

    void aTakenPortIsPassedOverAndNoFreePairIsTold()
    {
        // A range of two pairs: the neighbour of the first is taken, and so the pair as a whole.
        quint16 first = 0;
        std::unique_ptr<Peer> taken;
        for (quint16 port = 32'001; taken == nullptr; port = static_cast<quint16>(port + 10)) {
            try {
                const Peer next("0.0.0.0", static_cast<quint16>(port + 1));
                const Peer nextButOne("0.0.0.0", static_cast<quint16>(port + 2));
                taken = std::make_unique<Peer>("0.0.0.0", port);
                first = static_cast<quint16>(port - 1);
            } catch (const std::system_error &) { // another program's
            }
        }
        const PortRange range{first, static_cast<quint16>(first + 3)};
        UdpTransport transport(m_io, nullptr, range);
        UdpTransport second(m_io, nullptr, range);
        QVERIFY(transport.open("127.0.0.1"));
        QCOMPARE(transport.sendPort(), first + 2);
        const Status refused = second.open("127.0.0.1");
        QVERIFY(refused.is(Failure::NoPortFree) && !second.isOpen());
        transport.close();
        QVERIFY(second.open("[::1]:49111") || second.open("127.0.0.1"));
    }

    void aNameThatIsUnknownIsToldWithinTwoSeconds()
    {
        UdpTransport transport(m_io);
        QSignalSpy lost(&transport, &Transport::lost);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(transport.open("no-such-module.invalid"));
        QVERIFY(timer.elapsed() < 1000); // opening does not wait for the look-up
        transport.send("config\r\n");
        QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, 60000);
        QVERIFY2(lost[0].front().toString().contains("no-such-module.invalid"),
                 qPrintable(lost[0].front().toString()));
        QCOMPARE(lost[0].back(), false); // what was sent has not left
        QVERIFY(!transport.isOpen());
    }

    void whatIsNoAddressIsRefusedAtOnce()
    {
        UdpTransport transport(m_io);
        for (const char *address :
             {"", ":49111", "127.0.0.1:", "127.0.0.1:0", "127.0.0.1:65536", "[::1", "[::1]x", "1.2.3",
              "1.2.3.256", "4711", "0.0.0.0", "224.0.0.1", "two words", "-.-"}) {
            QVERIFY2(!transport.open(QString::fromLatin1(address)), address);
            QVERIFY(!transport.isOpen());
        }
    }

private:
    IoThread m_io;
};

QTEST_GUILESS_MAIN(UdpTransportTest)
#include "udp_transport_test.moc"
