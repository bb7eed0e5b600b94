#include "link/conversation_log.h"
#include "link/module_session.h"
#include "simulator/replay.h"
#include "simulator/virtual_module.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/random_configuration.h"
#include "support/silent_line.h"

#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

/// A replay whose program is the test.
class Played
{
public:
    explicit Played(const QByteArray &log)
    {
        RecordedConversation conversation;
        readable = bool(readConversation(log, conversation));
        replay = std::make_unique<Replay>(std::move(conversation), timers,
                                          [this](const QByteArray &bytes) { sent += bytes; });
        replay->onDifference([this](const QString &difference) { differences += difference; });
        replay->onEnd([this] { ++ends; });
        replay->start();
        timers.advance(Milliseconds(0));
    }

    /// What the module says next, after the program has said this.
    QByteArray hears(const QByteArray &bytes, Milliseconds within = Milliseconds(0))
    {
        sent.clear();
        for (const char byte : bytes) {
            replay->receive(QByteArray(1, byte));
        }
        timers.advance(within);
        return sent;
    }

    test::ManualTimers timers;
    std::unique_ptr<Replay> replay;
    bool readable = false;
    QByteArray sent;
    QStringList differences;
    int ends = 0;
};

constexpr char twoReadings[] = "com <---- at+cpin?\n"
                               "com ----> config\n"
                               "com ----> OK\n"
                               "com <---- at+cmgr=1\n"
                               "com ----> ,\"+IP\"\n"
                               "com ----> g,1\n"
                               "com ----> OK\n"
                               "com <---- at+cmgr=1\n"
                               "com ----> OK\n";

} // namespace

class ReplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theModuleSaysWhatIsInTheLogAndWhatIsHiddenMayBeAny()
    {
        Played played("2026-11-16 09:30:00.000 at+cpin=\"****\"\n"
                      "2026-11-16 09:30:00.000 com ----> config\r\n"
                      "2026-11-16 09:30:00.000 com ----> OK\n"
                      "2026-11-16 09:30:00.200 com <---- \\n~\\x01\\x41\\at+cmgr=1\n"
                      "2026-11-16 09:30:00.200 com ----> n,****,P\xC3\xA4\xD0\x96,+49\n"
                      "12 bytes without a line end dropped\n"
                      "2026-11-16 09:30:00.200 com ----> t,09,11,15,14,05,37,7\n"
                      "2026-11-16 09:30:00.200 com ----> OK\n"
                      "2026-11-17 09:30:00.200 com <---- at+cmgs=\"+IP\"\\rdone\\x1a\n"
                      "2026-11-17 09:30:00.200 com ----> OK\n");
        QCOMPARE(played.sent, "at+cpin=\"****\"\r");
        QCOMPARE(played.hears("at+cpin=\"****\"\r\nconfig\r\nOK\r\n", Milliseconds(199)), "");
        QCOMPARE(played.hears("", Milliseconds(1)), "\n~\x01\\x41\\at+cmgr=1\r");
        QCOMPARE(played.hears("~\x01\\x41\\at+cmgr=1\r\nn,1234,P\xE4?,+49\r\nt,26,01,02,03,04,05,6\r\nOK\r\n",
                              Replay::longestPause),
                 "at+cmgs=\"+IP\"\rdone\x1A");
        QCOMPARE(played.ends, 0);
        played.hears("at+cmgs=\"+IP\"\rdone\r\nOK\r\n");
        QCOMPARE(played.ends, 1);
        QCOMPARE(played.differences, QStringList());
    }

    void aLineThatDiffersIsToldOnceAndTheRestGoesOn_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("difference");
        const QString line6 = u"differs at line 6: expected \"g,1\", heard \"%1\""_s;
        QTest::newRow("another") << QByteArray("at+cmgr=1\r\n,\"+IP\"\r\ng,2\r\nOK\r\n")
                                 << line6.arg(u"g,2"_s);
        QTest::newRow("one more") << QByteArray("at+cmgr=1\r\n,\"+IP\"\r\ng,0\r\ng,1\r\nOK\r\n")
                                  << line6.arg(u"g,0"_s);
        QTest::newRow("one missing") << QByteArray("at+cmgr=1\r\n,\"+IP\"\r\nOK\r\n") << line6.arg(u"OK"_s);
        QTest::newRow("no echo") << QByteArray(",\"+IP\"\r\ng,1\r\nOK\r\n")
                                 << u"differs at line 4: expected \"at+cmgr=1\", heard \",\"+IP\"\""_s;
        QTest::newRow("too much") << QByteArray("at+cmgr=1\r\n,\"+IP\"\r\ng,1\r\nOK\r\nOK\r\n")
                                  << u"differs at line 4: expected nothing more, heard \"OK\""_s;
    }
    void aLineThatDiffersIsToldOnceAndTheRestGoesOn()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, difference);
        Played played(twoReadings);
        QCOMPARE(played.hears("at+cpin?\r\nconfig\r\nOK\r\n"), "at+cmgr=1\r");
        QCOMPARE(played.hears(answer), "at+cmgr=1\r");
        QCOMPARE(played.differences, QStringList{difference});
        played.hears("at+cmgr=1\r\nOK\r\n");
        QCOMPARE(played.ends, 1);
        QCOMPARE(played.replay->differences(), 1);
    }

    void theFirstLineIsRepeatedAndASilentProgramEndsIt()
    {
        Played played(twoReadings);
        QCOMPARE(played.hears("", Replay::openingInterval), "at+cpin?\r");
        // The program answers both.
        played.hears("at+cpin?\r\nconfig\r\nOK\r\nat+cpin?\r\nconfig\r\nOK\r\nat+cm");
        QCOMPARE(played.differences, QStringList());
        played.hears("gr=1\r\n", Replay::answerTimeout - Milliseconds(1));
        QCOMPARE(played.ends, 0);
        played.hears("", Milliseconds(1));
        QCOMPARE(played.ends, 1);
        QCOMPARE(played.differences,
                 QStringList{u"differs at line 5: expected \",\"+IP\"\", heard nothing for 60 s"_s});
    }

    void whatASessionLogsIsReplayedWithoutADifference()
    {
        for (unsigned seed = 0; seed < 10; ++seed) {
            ModuleFaults faults;
            faults.mergesStatus = faults.garbageInFront = faults.garbageLines = seed > 0;
            faults.seed = seed;
            test::ManualTimers timers;
            QByteArray log;
            const auto transmit = [&](auto &module, QByteArray &waiting, const auto &isDone) {
                test::SilentLine line;
                ModuleSession session(line, timers, test::fixedEnvironment());
                Configuration configuration = test::RandomConfiguration(seed).make(QLocale::c());
                bool started = false;
                connect(&session, &ModuleSession::caught, &session, [&] {
                    if (!std::exchange(started, true)) {
                        session.startTransmission(configuration, seed % 2 == 0);
                    }
                });
                connect(&session, &ModuleSession::logged, &session,
                        [&](const QString &text) { log += logText(text).toUtf8() + '\n'; });
                module.start();
                for (int i = 0; i < 100000 && !isDone(); ++i) {
                    timers.advance(Milliseconds(10));
                    if (!waiting.isEmpty()) {
                        Q_EMIT line.received(std::exchange(waiting, {}));
                        module.receive(std::exchange(line.sent, {}));
                    }
                }
            };
            QByteArray toProgram;
            const auto send = [&toProgram](const QByteArray &bytes) { toProgram += bytes; };
            bool configured = false;
            std::optional<VirtualModule> module(std::in_place, timers, send, ModuleOptions{{}, faults, {}});
            module->onConfigured([&configured](const ModuleMemory &) { configured = true; });
            transmit(*module, toProgram, [&configured] { return configured; });
            QVERIFY(configured);
            module.reset();

            RecordedConversation conversation;
            QVERIFY(readConversation(std::exchange(log, {}), conversation));
            QCOMPARE(conversation.leftOut, 0);
            toProgram.clear();
            QStringList differences;
            bool ended = false;
            Replay replay(conversation, timers, send);
            replay.onDifference([&differences](const QString &difference) { differences += difference; });
            replay.onEnd([&ended] { ended = true; });
            transmit(replay, toProgram, [&ended] { return ended; });
            QVERIFY(ended);
            QVERIFY2(differences.isEmpty(), qPrintable(u"seed %1: "_s.arg(seed) + differences.join(u'\n')));
        }
    }
};

QTEST_GUILESS_MAIN(ReplayTest)
#include "replay_test.moc"
