#include "link/module_session.h"
#include "link/serial_transport.h"
#include "link/udp_transport.h"
#include "platform/pseudo_terminal.h"
#include "simulator/held_form.h"
#include "simulator/module_on_terminal.h"
#include "simulator/module_on_udp.h"
#include "support/direct_line.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/random_configuration.h"

#include <QEventLoop>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

struct Outcome
{
    bool transmitted = false;
    QStringList differences;
    int refusedByModule = 0;
};

/// Transmits a configuration to a virtual module with these faults.
Outcome transmitted(Configuration configuration, bool answer, const QLocale &locale,
                    const ModuleFaults &faults = {}, LineKind kind = LineKind::Serial,
                    const DatagramFaults &network = {})
{
    const Configuration expected = asHeld(configuration, locale);
    test::ManualTimers timers;
    ModuleOptions options;
    options.faults = faults;
    options.tellsEnd = kind == LineKind::Ethernet;
    test::DirectLine line(timers, options, network);
    ModuleSession session(line, timers, test::fixedEnvironment(locale), kind);
    Outcome outcome;
    bool started = false;
    QObject::connect(&session, &ModuleSession::caught, &session, [&] {
        if (!std::exchange(started, true)) {
            session.startTransmission(configuration, answer);
        }
    });
    QObject::connect(&session, &ModuleSession::transmitted, &session, [&] { outcome.transmitted = true; });
    line.module.start();
    if (kind == LineKind::Ethernet && session.open(QString())) {
        started = true;
        session.startTransmission(configuration, answer);
    }
    bool configured = false;
    line.module.onConfigured([&](const ModuleMemory &memory) {
        configured = true;
        outcome.differences = differences(expected, memory.configuration, locale);
        outcome.refusedByModule = memory.refused;
    });
    for (int i = 0; i < 100000 && !(configured && outcome.transmitted); ++i) {
        line.carry();
        timers.advance(Milliseconds(10));
    }
    if (!configured) {
        outcome.differences = QStringList{u"the module was never configured"_s};
    }
    return outcome;
}

/// The event loop's timers at twenty times their speed.
class QuickTimers : public Timers
{
public:
    std::unique_ptr<OneShotTimer> create() override { return std::make_unique<Quick>(m_timers.create()); }

private:
    struct Quick : OneShotTimer
    {
        explicit Quick(std::unique_ptr<OneShotTimer> slow) : timer(std::move(slow)) {}
        void start(Milliseconds wait, std::function<void()> fired) override
        {
            timer->start(wait / 20, std::move(fired));
        }
        void stop() override { timer->stop(); }
        bool isRunning() const override { return timer->isRunning(); }
        std::unique_ptr<OneShotTimer> timer;
    };
    EventLoopTimers m_timers;
};

/// Runs until the module has taken the closing command.
bool awaitConfigured(VirtualModule &module)
{
    bool configured = false;
    QEventLoop loop;
    module.onConfigured([&](const ModuleMemory &) {
        configured = true;
        loop.quit();
    });
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    loop.exec();
    return configured;
}

} // namespace

class TransmissionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theModuleUnderstandsWhatWasMeantInAThousandConfigurations()
    {
        for (unsigned seed = 0; seed < 1000; ++seed) {
            const QLocale locale = seed % 2 == 0 ? QLocale::c() : test::german();
            const Configuration configuration = test::RandomConfiguration(seed).make(locale);
            const Outcome outcome = transmitted(configuration, seed % 3 == 0, locale);
            QVERIFY2(outcome.differences.isEmpty(),
                     qPrintable(u"seed %1: "_s.arg(seed) + outcome.differences.join(u'\n')));
            QVERIFY(outcome.transmitted);
            QCOMPARE(outcome.refusedByModule, 0);
        }
    }

    void aBadLineChangesNothing_data()
    {
        QTest::addColumn<ModuleFaults>("faults");
        const auto row = [](const char *name, const auto &set) {
            ModuleFaults faults;
            set(faults);
            QTest::newRow(name) << faults;
        };
        row("byte by byte", [](ModuleFaults &f) { f.chunkSize = 1; });
        row("in sevens", [](ModuleFaults &f) { f.chunkSize = 7; });
        row("merged with status lines", [](ModuleFaults &f) { f.mergesStatus = true; });
        row("garbage in front", [](ModuleFaults &f) { f.garbageInFront = true; });
        row("lines of garbage", [](ModuleFaults &f) { f.garbageLines = true; });
        row("slow", [](ModuleFaults &f) { f.delayBeforeLine = Milliseconds(700); });
        row("all of it", [](ModuleFaults &f) {
            f.chunkSize = 3;
            f.mergesStatus = f.garbageInFront = f.garbageLines = true;
        });
    }
    void aBadLineChangesNothing()
    {
        QFETCH(ModuleFaults, faults);
        for (unsigned seed = 0; seed < 10; ++seed) {
            faults.seed = seed + 1;
            const Configuration configuration = test::RandomConfiguration(seed).make(QLocale::c());
            const Outcome outcome = transmitted(configuration, seed % 2 == 0, QLocale::c(), faults);
            QVERIFY2(outcome.differences.isEmpty(),
                     qPrintable(u"seed %1: "_s.arg(seed) + outcome.differences.join(u'\n')));
        }
    }

    void anOverlongCommandIsMissingAndAllOthersArrive()
    {
        Configuration configuration = test::RandomConfiguration(1).make(QLocale::c());
        configuration.limitValues[4].alarm = QString(160, u'x');
        const Outcome outcome = transmitted(configuration, false, QLocale::c());
        QVERIFY(outcome.transmitted);
        QVERIFY(!outcome.differences.isEmpty());
        for (const QString &line : outcome.differences) {
            QVERIFY2(line.startsWith(u"Grenzwert4 "_s), qPrintable(line));
        }
    }

    void aWholeTransmissionOverASerialPort()
    {
        if (!PseudoTerminal::isSupported) {
            QSKIP("this system has no pseudo-terminals");
        }
        EventLoopTimers timers;
        ModuleOnTerminal module(timers);
        QVERIFY(module.open());
        IoThread io;
        SerialTransport port(io);
        ModuleSession session(port, timers, test::fixedEnvironment());
        QVERIFY(session.open(module.path()));
        Configuration configuration = test::RandomConfiguration(7).make(QLocale::c());
        const Configuration expected = asHeld(configuration, QLocale::c());
        connect(&session, &ModuleSession::caught, &session,
                [&] { session.startTransmission(configuration, true); });
        QVERIFY(awaitConfigured(module.module()));
        QCOMPARE(differences(expected, module.module().memory().configuration, QLocale::c()), QStringList());
    }

    void aWholeTransmissionOverEthernet_data()
    {
        QTest::addColumn<ModuleFaults>("faults");
        QTest::newRow("plain") << ModuleFaults{};
        ModuleFaults bad;
        bad.chunkSize = 9;
        bad.mergesStatus = true;
        QTest::newRow("in pieces, with reports") << bad;
    }
    void aWholeTransmissionOverEthernet()
    {
        QFETCH(ModuleFaults, faults);
        QuickTimers timers;
        ModuleOptions options{{Milliseconds(1000), Milliseconds(200), Milliseconds(100000)}, faults, {}};
        ModuleOnUdp module(timers, options);
        QVERIFY(module.open(u"0"_s));
        IoThread io;
        UdpTransport transport(io);
        ModuleSession session(transport, timers, test::fixedEnvironment(), LineKind::Ethernet);
        Configuration configuration = test::RandomConfiguration(7).make(QLocale::c());
        const Configuration expected = asHeld(configuration, QLocale::c());
        QVERIFY(session.open(module.address()));
        session.startTransmission(configuration, true);
        QVERIFY(awaitConfigured(module.module()));
        QCOMPARE(differences(expected, module.module().memory().configuration, QLocale::c()), QStringList());
    }

    void aNetworkThatDoublesOrLosesIsLivedWith()
    {
        for (unsigned seed = 0; seed < 20; ++seed) {
            const Configuration configuration = test::RandomConfiguration(seed).make(QLocale::c());
            const auto over = [&](const DatagramFaults &network) {
                return transmitted(configuration, seed % 2 == 0, QLocale::c(), {}, LineKind::Ethernet,
                                   network);
            };
            const Outcome doubled = over({.doubled = seed < 2 ? 100 : 30, .seed = seed + 1});
            QVERIFY2(doubled.differences.isEmpty(),
                     qPrintable(u"seed %1: "_s.arg(seed) + doubled.differences.join(u'\n')));
            // A command may get lost, but not the transmission.
            QVERIFY2(over({.lost = 3, .seed = seed + 1}).transmitted, qPrintable(QString::number(seed)));
        }
    }

    void aSerialPortCarriesEveryByteAndBelongsToOneProgram()
    {
        if (!PseudoTerminal::isSupported) {
            QSKIP("this system has no pseudo-terminals");
        }
        PseudoTerminal terminal;
        QVERIFY(terminal.open());
        IoThread io;
        SerialTransport port(io);
        QVERIFY(port.open(terminal.slavePath()));
        SerialTransport second(io);
        const Status refused = second.open(terminal.slavePath());
        QVERIFY(!refused);
        QVERIFY2(refused.message().contains(u"in use"_s), qPrintable(refused.message()));

        QByteArray all;
        for (int byte = 0; byte < 256; ++byte) {
            all += static_cast<char>(byte);
        }
        const QByteArray much = all.repeated(200);
        QByteArray atProgram;
        QByteArray atModule;
        connect(&port, &Transport::received, &port, [&](const QByteArray &bytes) { atProgram += bytes; });
        connect(&terminal, &PseudoTerminal::readyRead, &terminal, [&] { atModule += terminal.readAll(); });
        terminal.write(much);
        for (const char byte : much) {
            port.send(QByteArray(1, byte));
        }
        bool drained = false;
        port.whenDrained([&drained] { drained = true; });
        QTRY_VERIFY_WITH_TIMEOUT(drained && atProgram.size() == much.size() && atModule.size() == much.size(),
                                 60000);
        QCOMPARE(atProgram, much);
        QCOMPARE(atModule, much);

        port.close();
        QVERIFY(second.open(terminal.slavePath()));
    }

    void aPortThatGoesAwayIsToldOnceAndCanBeOpenedAgain()
    {
        if (!PseudoTerminal::isSupported) {
            QSKIP("this system has no pseudo-terminals");
        }
        IoThread io;
        SerialTransport port(io);
        QSignalSpy lost(&port, &Transport::lost);
        for (int round = 1; round <= 2; ++round) {
            PseudoTerminal terminal;
            QVERIFY(terminal.open());
            QVERIFY(port.open(terminal.slavePath()));
            // The last that the other end hears, and it is gone: all of it was sent.
            QByteArray heard;
            connect(&terminal, &PseudoTerminal::readyRead, &terminal, [&] {
                heard += terminal.readAll();
                terminal.hangUp();
            });
            port.send("v,end\r\nOK\r\n");
            QTRY_COMPARE_WITH_TIMEOUT(lost.count(), round, 60000);
            QCOMPARE(heard, "v,end\r\nOK\r\n");
            QCOMPARE(lost.last().at(1).toBool(), true);
            QVERIFY(!port.isOpen());
            port.send("into the void");
        }
        const Status missing = port.open(u"/dev/ttyUSB999"_s);
        QVERIFY(!missing);
        QVERIFY2(missing.message().contains(u"no such port"_s), qPrintable(missing.message()));
        QVERIFY(!port.open(u"/dev/null"_s));
    }
};

QTEST_GUILESS_MAIN(TransmissionTest)
#include "transmission_test.moc"
