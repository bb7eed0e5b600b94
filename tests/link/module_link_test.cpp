#include "config/fields.h"
#include "link/module_link.h"
#include "platform/text_rules.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/silent_line.h"

#include <QSignalSpy>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

class ModuleLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_link.goOffline();
        m_now = fixedEnvironment().now();
        m_ports = QStringList{"COM1", "COM2"};
        m_line.opened.clear();
        m_line.sent.clear();
    }

    void oneSearchAtTheStartStaysAtTheFirstPort()
    {
        m_link.searchOnce();
        QCOMPARE(m_link.line().port(), "COM1");
        m_timers.advance(std::chrono::minutes(5));
        QCOMPARE(m_line.opened, QStringList("COM1"));
        QVERIFY(!m_link.isConnected());
        say("at+cpin?\r");
        QVERIFY(m_link.isConnected());
        QCOMPARE(m_link.state(), ModuleLink::State::Caught);
    }

    void aSearchThatFindsNobodyGoesOffline()
    {
        const QSignalSpy told(&m_link, &ModuleLink::statusMessage);
        m_link.connectSerial({});
        m_timers.advance(std::chrono::minutes(10));
        QCOMPARE(m_link.state(), ModuleLink::State::Offline);
        QVERIFY(!m_line.isOpen());
        QVERIFY(m_line.opened.contains("COM2"));
        QCOMPARE(told.last().front().toString(), "No module was heard at any serial port");
    }

    void aChosenPortIsTheOnlyOneTried()
    {
        m_link.connectSerial("COM2");
        say("at+cpin?\r");
        m_timers.advance(std::chrono::minutes(5));
        QCOMPARE(m_line.opened, QStringList("COM2")); // the search has ended with the module
    }

    void aTransmissionSendsTheConfigurationOfItsStart()
    {
        const QSignalSpy ended(&m_transmitter, &Transmitter::ended);
        Configuration configuration;
        makeNew(configuration, fixedEnvironment());
        configuration.gsm.stationId = "as it was";
        m_link.connectSerial("COM1");
        m_transmitter.transmit(configuration, false);
        configuration.gsm.stationId = "edited later";
        say("at+cpin?\r");
        for (int step = steps::first; step <= steps::last; ++step) {
            QVERIFY(m_transmitter.isTransmitting());
            say("at+cmgr=1\r");
        }
        QVERIFY(m_line.sent.contains("as it was"));
        QVERIFY(!m_line.sent.contains("edited later"));
        QCOMPARE(ended.size(), 1);
        QCOMPARE(m_transmitter.report().sent, steps::last + 1);
        QVERIFY(!m_transmitter.report().brokenAt && !m_transmitter.canResume(configuration));
    }

    void noTextOfAConfigurationStartsAService()
    {
        const QSignalSpy told(&m_link, &ModuleLink::statusMessage);
        const QSignalSpy left(&m_waiting, &WaitingCommand::sent);
        Configuration configuration;
        for (std::size_t i = 0; i < configuration.limitValues.size(); ++i) {
            configuration.limitValues[i].alarm = QStringList{"§88", "§,77", "§,0,6"}[static_cast<int>(i) % 3];
        }
        configuration.gsm.stationId = configuration.versionText = "§88";
        m_link.connectSerial("COM1");
        m_transmitter.transmit(configuration, false);
        for (int step = steps::first; step <= steps::last; ++step) {
            say("at+cmgr=1\r");
            m_timers.advance(Milliseconds(1500));
        }
        QVERIFY(!m_transmitter.isTransmitting() && left.isEmpty());
        for (const QVariantList &line : told) {
            QVERIFY2(!line.first().toString().contains("firmware"), qPrintable(line.first().toString()));
        }
    }

    void aLineThatBreaksTellsTheStepAndIsLookedForAgain()
    {
        const QSignalSpy ended(&m_transmitter, &Transmitter::ended);
        m_link.connectSerial("COM1");
        m_transmitter.transmit({}, false);
        say("at+cpin?\r");
        say("at+cmgr=1\r");
        m_line.close();
        Q_EMIT m_line.lost("unplugged", true);
        QCOMPARE(ended.size(), 1);
        QCOMPARE(m_transmitter.report().brokenAt, 0); // it was handed over, but did it arrive?
        QVERIFY(!m_link.isConnected() && !m_transmitter.isTransmitting());
        QCOMPARE(m_line.opened, QStringList({"COM1", "COM1"}));
        m_line.sent.clear();
        say("at+cmgr=1\r");
        QVERIFY(!m_line.sent.contains("+IP")); // nothing goes on by itself

        Configuration edited;
        edited.gsm.stationId = "another";
        QVERIFY(!m_transmitter.canResume(edited));
        QVERIFY(m_transmitter.canResume({}));
        Configuration reported;
        reported.gsm.stationType = "NVA"; // as the module says, and no command carries it
        QVERIFY(m_transmitter.canResume(reported));
        m_transmitter.resume();
        say("at+cmgr=1\r");
        say("at+cmgr=1\r");
        QVERIFY(m_line.sent.contains("\r\nn,")); // step 1, after the version of step 0
        m_transmitter.cancel();
        QCOMPARE(m_transmitter.report().brokenAt, 1);
        m_link.connectSerial("COM2");
        QVERIFY(!m_transmitter.canResume({})); // it may be another module
    }

    /// Whoever ends it: the module that reads next may be another one, and the command has PIN and numbers.
    void whatWasBrokenOffReachesNobody()
    {
        const auto ends = std::to_array<std::function<void()>>({
            [this] { m_transmitter.cancel(); },
            [this] { m_link.goOffline(); },
            [this] { m_link.connectEthernet("10.0.0.2", true); },
        });
        for (const auto &end : ends) {
            m_link.connectEthernet("10.0.0.1", true);
            m_transmitter.transmit({}, true);
            sayOverNet("at+cmgr=1\r");
            sayOverNet("at+cmgs=\"+IP\"\rV,1,2,KTR\x1A");
            sayOverNet("at+cmgr=1\r"); // the numbers, which it does not answer
            end();
            m_link.connectEthernet("10.0.0.2", true);
            m_net.sent.clear();
            sayOverNet("at+cmgr=1\r");
            QVERIFY(!m_net.sent.contains("+IP") && !m_transmitter.isTransmitting());
            QCOMPARE(m_transmitter.report().brokenAt, 1);
        }
    }

    void whatOneModuleBeganAnotherOneDoesNotEnd()
    {
        const QSignalSpy replied(&m_link, &ModuleLink::replied);
        m_link.connectSerial("COM1");
        say("at+cmgs=\"+4917012345\"\r");
        say("M,Pump of one module ");
        m_link.connectSerial("COM2");
        m_line.sent.clear();
        say("fail\x1A");
        QVERIFY(!m_line.sent.contains("Pump"));
        for (const QVariantList &reply : replied) {
            QVERIFY(!reply.first().value<ModuleDialogue::Reply>().text.contains("Pump of one module fail"));
        }
    }

    void answersAndRefusalsAreReportedByStep()
    {
        Configuration configuration;
        configuration.limitValues[2].alarm = QString(200, u'x');
        m_link.connectSerial("COM1");
        m_transmitter.transmit(configuration, true);
        for (int step = 0; step < 6; ++step) {
            say("at+cmgr=1\r");
            // What it tells others, its reports and its modem's errors answer nothing, nor does what names
            // another command.
            for (const char *text :
                 {"+4917012345\"\rM,Pump 1 fail", "+IP\"\rM,Pump 1 fail", "+IP\"\rR,1,fail",
                  "+IP\"\rH,1,0911151405,1,1", "+IP\"\rfail: G,9: expected", "+49\"\rOK"}) {
                sms(text);
            }
            sms(step == 0 ? "+IP\"\rV,2.1.05,failsafe,KTR" : step == 1 ? "+IP\"\rfailed N" : "+IP\"\rOK");
        }
        QCOMPARE(m_transmitter.report().refused, QList<int>{4});
        QCOMPARE(m_transmitter.report().failed, QList<int>{1});
        QCOMPARE(m_transmitter.report().sent, 5);
        QCOMPARE(m_transmitter.report().answered, 5);
        say("at+cmgr=1\r");
        say("at+cmgr=1\r");
        QCOMPARE(m_transmitter.report().unconfirmed, (QList<int>{6, 7})); // the next answer may be of either
    }

    void aCommandWaitsForTheModuleThatItWasPlacedFor()
    {
        QSignalSpy told(&m_link, &ModuleLink::statusMessage);
        QCOMPARE(m_waiting.place("k"), WaitingCommand::Placing::NoConnection);
        QVERIFY(m_waiting.text().isEmpty());
        const std::initializer_list<std::function<void()>> leave{
            [&] { m_link.connectEthernet("10.0.0.7", false); },
            [&] { m_link.connectSerial("COM2"); },
            [&] { Q_EMIT m_line.lost("unplugged", true); },
            [&] { m_link.goOffline(); },
            [&] {
                m_link.connectSerial({}), m_waiting.place("k"), m_timers.advance(std::chrono::minutes(1));
            },
            [&] { m_waiting.takeBack(); }};
        for (const auto &change : leave) {
            for (const auto &connect :
                 {std::function<void()>([&] { m_link.connectSerial("COM1"); }),
                  std::function<void()>([&] { m_link.connectEthernet("10.0.0.8", true); })}) {
                connect();
                QCOMPARE(m_waiting.place("k"), WaitingCommand::Placing::Waits);
                QCOMPARE(m_waiting.text(), "k");
                change();
                QVERIFY(m_waiting.text().isEmpty());
                connect();
                m_line.sent.clear();
                m_net.sent.clear();
                say("at+cmgr=1\r");
                Q_EMIT m_net.received("at+cmgr=1\r");
                m_timers.advance(std::chrono::seconds(1));
                QVERIFY(!m_line.sent.contains("k\r\n") && !m_net.sent.contains("k\r\n"));
            }
        }
        m_link.connectSerial("COM1");
        m_waiting.place("k");
        m_transmitter.transmit({}, false);
        QCOMPARE(told.last().front().toString(), "k was not sent and waits no longer");
        QCOMPARE(m_waiting.place("k"), WaitingCommand::Placing::Transmitting);
        QVERIFY(m_waiting.text().isEmpty());
    }

    void whatIsToldOfACommandAndItsTimeDoNotAge()
    {
        QSignalSpy told(&m_link, &ModuleLink::statusMessage);
        const auto handedOver = [&] {
            m_now = m_now.addSecs(3600);
            m_line.sent.clear();
            say("at+cmgr=1\r");
            return fromWindows1252(m_line.sent).section("\r\n", 2, 2);
        };
        m_link.connectSerial("COM1");
        m_waiting.placeClock();
        QCOMPARE(m_waiting.text(), QStringLiteral("T,…"));
        QCOMPARE(handedOver(), "T,09,11,15,15,05,37,7");
        QCOMPARE(told.last().front().toString(), "T,09,11,15,15,05,37,7 was handed to the module");
        m_waiting.placeClock();
        m_waiting.place("k");
        QCOMPARE(handedOver(), "k");
        QCOMPARE(told.last().front().toString(), "k was handed to the module");
        m_waiting.place("K");
        m_waiting.takeBack();
        QCOMPARE(told.last().front().toString(), "K was not sent and waits no longer");
        m_link.goOffline();
        QCOMPARE(told.last().front().toString(), "The line was closed");
        m_link.connectSerial("COM3");
        QCOMPARE(told.last().front().toString(), "There is no port COM3 yet; the search goes on");
        m_ports += "COM3";
        m_timers.advance(std::chrono::seconds(1));
        QCOMPARE(told.last().front().toString(), "Looking for the module at COM3");
    }

    void aCommandThatIsTooLongIsToldAtOnce()
    {
        const QSignalSpy tooLong(&m_link, &ModuleLink::commandTooLong);
        Configuration configuration;
        configuration.limitValues[0].alarm = QString(200, u'x');
        configuration.limitValues[19].alarm = QString(200, u'y');
        m_link.connectSerial("COM1");
        m_transmitter.transmit(configuration, false);
        while (m_transmitter.isTransmitting() && tooLong.empty()) {
            say("at+cmgr=1\r");
        }
        QVERIFY(m_transmitter.isTransmitting());
        while (m_transmitter.isTransmitting()) {
            say("at+cmgr=1\r");
        }
        QCOMPARE(tooLong.size(), 2);
        m_waiting.place(QString(161, u'z'));
        say("at+cmgr=1\r");
        QCOMPARE(tooLong.size(), 3);
    }

    void aModuleThatTalksAndDoesNotGetOnIsToldOf()
    {
        QSignalSpy stalled(&m_link, &ModuleLink::stalled);
        const QSignalSpy interrupted(&m_link, &ModuleLink::interrupted);
        m_link.connectSerial("COM1");
        m_transmitter.transmit({}, false);
        for (int second = 0; second < 61; ++second) {
            say("at+cpin?\r");
            m_timers.advance(std::chrono::seconds(1));
        }
        QCOMPARE(stalled.size(), 1);
        QCOMPARE(stalled[0].front().toString(),
                 "no progress for 60 s; heard: 60 lines, the last one \"at+cpin?\"");
        QVERIFY(m_transmitter.isTransmitting() && interrupted.isEmpty());
        m_timers.advance(std::chrono::minutes(3));
        QVERIFY(!m_transmitter.isTransmitting());
        QCOMPARE(interrupted.size(), 1);
    }

    void offlineEndsEverything()
    {
        m_link.connectSerial("COM1");
        say("at+cpin?\r");
        m_transmitter.transmit({}, false);
        m_link.goOffline();
        QVERIFY(!m_line.isOpen() && !m_transmitter.isTransmitting() && !m_link.isConnected());
        m_timers.advance(std::chrono::minutes(5));
        QCOMPARE(m_line.opened.size(), 1);
    }

private:
    void say(const QByteArray &line) { Q_EMIT m_line.received(line); }
    void sayOverNet(const QByteArray &line)
    {
        Q_EMIT m_net.received(line);
        m_timers.advance(std::chrono::seconds(2));
    }
    void sms(const QByteArray &text) { say("at+cmgs=\"" + text + "\x1A"); }

    SilentLine m_line;
    ManualTimers m_timers;
    SilentLine m_net;
    QDateTime m_now;
    QStringList m_ports;
    Environment m_environment = [this] {
        Environment environment = fixedEnvironment();
        environment.now = [this] { return m_now; };
        return environment;
    }();
    ModuleLink m_link{m_line, m_net, m_timers, m_environment, [this] { return m_ports; }};
    Transmitter &m_transmitter = m_link.transmitter();
    WaitingCommand &m_waiting = m_link.waitingCommand();
};

QTEST_GUILESS_MAIN(ModuleLinkTest)
#include "module_link_test.moc"
