#include "link/ethernet_dialogue.h"
#include "link/line_assembler.h"
#include "link/module_session.h"
#include "platform/text_rules.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/silent_line.h"

#include <QSignalSpy>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

/// The dialogue behind its assembler: what bytes lead to, as log lines and "= " for what is told.
struct Conversation
{
    QStringList hear(const QByteArray &bytes)
    {
        const auto line = lines.push(bytes);
        return line ? texts(dialogue.lineReceived(fromWindows1252(*line))) : QStringList();
    }

    QStringList texts(const std::vector<ModuleDialogue::Action> &actions)
    {
        QStringList texts;
        QString announced;
        for (const auto &action : actions) {
            if (const auto *log = std::get_if<ModuleDialogue::Log>(&action)) {
                announced = log->line.section(u"----> "_s, 1);
                texts += log->line;
            } else if (const auto *send = std::get_if<ModuleDialogue::Send>(&action)) {
                // What is sent is what was logged just before.
                texts += send->line == announced ? QStringList() : QStringList(u"unlogged: "_s + send->line);
            } else if (const auto *reply = std::get_if<ModuleDialogue::Reply>(&action)) {
                texts += u"= %1"_s.arg(reply->text);
            } else if (std::holds_alternative<ModuleDialogue::Caught>(action)) {
                texts += u"= caught"_s;
            }
        }
        for (QString &text : texts) {
            while (text.endsWith(u'\r') || text.endsWith(u'\n')) {
                text.chop(1);
            }
        }
        return texts;
    }

    bool isWanted = true;
    std::optional<StepCommand> command;
    EthernetDialogue dialogue{[this] { return std::exchange(command, std::nullopt); },
                              [this] { return isWanted; }};
    LineAssembler lines;
};

const QStringList claimed{u"eth <---- at+cpin?"_s, u"= caught"_s, u"eth ----> config"_s};
const QStringList echoed{u"eth <---- at+cpin?"_s, u"eth ----> at+cpin?"_s, u"eth ----> OK"_s};

} // namespace

class EthernetDialogueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSameIsUnderstoodHoweverTheBytesArrive_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("outcome");
        const auto row = [](const char *name, const char *before, const char *bytes, const QStringList &out) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(bytes) << out;
        };
        row("signal", "", "+CSQ: 18,0\r\n", {u"gsm <---- +CSQ: 18,0"_s});
        row("modem's OK", "", "OK\r\n", {u"gsm <---- OK"_s});
        row("error", "", "ERROR\r\n", {u"= failed (ERROR)"_s, u"gsm <---- ERROR"_s});
        row("named error", "", "+CME ERROR: 10\r\n",
            {u"= failed (+CME ERROR: 10)"_s, u"gsm <---- +CME ERROR: 10"_s});
        row("no SMS", "", "+CMS ERROR: 321\r\n", {u"gsm <---- +CMS NO SMS"_s});
        row("error of a reading", "at+cmgr=1\r", "ERROR\r\n", {u"gsm <---- +CMS NO SMS"_s});
        row("asks for its SIM", "", "at+cpin?\r", claimed);
        row("asks again", "at+cpin?\r", "at+cpin?\r", echoed);
        row("reads", "", "at+cmgr=1\r",
            {u"eth <---- at+cmgr=1"_s, u"eth ----> at+cmgr=1"_s, u"eth ----> ,\"+IP\""_s, u"eth ----> V,§"_s,
             u"eth ----> OK"_s});
        row("SMS text", "at+cmgs=\"+IP\"\r", "OK: G,3\x1A",
            {u"eth <---- OK: G,3\x1A"_s, u"eth ----> OK: G,3"_s, u"+IP <-- OK: G,3"_s, u"= OK: G,3"_s,
             u"eth ----> OK"_s});
        row("done", "", "donE\r", {u"eth <---- donE"_s});
    }
    void theSameIsUnderstoodHoweverTheBytesArrive()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, outcome);
        // Whole, cut in two at each position, and a byte at a time; a further line finds nothing left over.
        for (qsizetype cut = 0; cut <= bytes.size(); ++cut) {
            Conversation conversation;
            conversation.hear(before);
            conversation.command = StepCommand{0, u"V,§"_s};
            QStringList texts;
            if (cut > 0) {
                texts = conversation.hear(bytes.left(cut));
                texts += conversation.hear(bytes.mid(cut));
            } else {
                for (const char byte : bytes) {
                    texts += conversation.hear(QByteArray(1, byte));
                }
            }
            QCOMPARE(texts, outcome);
            QCOMPARE(conversation.hear("+CREG: 1\r"), QStringList(u"gsm <---- +CREG: 1"_s));
        }
    }

    void reportsInFrontOfALineAreTakenOff()
    {
        Conversation conversation;
        QCOMPARE(conversation.hear("+CSQ: 18,0\r\nOK\r\nat+cpin?\r"),
                 QStringList({u"gsm <---- +CSQ: 18,0"_s, u"gsm <---- OK"_s}) + claimed);
        // A reading remains the last thing that the module did until its next line.
        conversation.hear("at+cmgr=1\r");
        QCOMPARE(conversation.hear("+CSQ: 18,0\r\n+CME ERROR: 5\r\n").last(), "gsm <---- +CMS NO SMS");
        conversation.hear("at+cmgs=\"+IP\"\r");
        QCOMPARE(conversation.hear("ERROR\r\n").first(), "= failed (ERROR)");
    }

    void theModuleIsClaimedOnceWhileItIsWanted()
    {
        Conversation conversation;
        QCOMPARE(conversation.texts(conversation.dialogue.connected()), QStringList(u"eth ----> config"_s));
        conversation.isWanted = false;
        QCOMPARE(conversation.hear("at+cpin?\r"), echoed);
        conversation.isWanted = true;
        const auto claimsAnewAfter = [&](const auto &event) {
            event();
            return conversation.hear("at+cpin?\r") == claimed && conversation.hear("at+cpin?\r") == echoed;
        };
        QVERIFY(claimsAnewAfter([] {}));
        QVERIFY(claimsAnewAfter([&] { conversation.hear("donE\r"); }));
        QVERIFY(claimsAnewAfter([&] { conversation.dialogue.transmissionEnded(); }));
        QVERIFY(claimsAnewAfter([&] { conversation.dialogue.connected(); }));
        // It asks on and on: what it was sent was lost on the way.
        QVERIFY(claimsAnewAfter([&] {
            for (int i = 1; i < EthernetDialogue::asksUntilClaimedAnew; ++i) {
                QCOMPARE(conversation.hear("at+cpin?\r"), echoed);
            }
        }));
    }

    void linesFollowEachOtherAtTheirPace()
    {
        test::ManualTimers timers;
        QByteArrayList sent;
        bool isBusy = false; // the machine: lines leave it when their call is made
        std::vector<std::function<void()>> leave;
        PacedSender sender(timers, [&](const QByteArray &line, const std::function<void()> &left) {
            sent += QByteArray::number(qint64(timers.now().count())) + ' ' + line.trimmed();
            QVERIFY(line.endsWith("\r\n"));
            isBusy ? leave.push_back(left) : left();
        });
        bool allSent = false;
        sender.send("config");
        sender.send("at+cmgr=1");
        sender.send("OK");
        sender.whenSent([&] { allSent = true; });
        timers.advance(Milliseconds(34));
        QVERIFY(!allSent && sender.isWaiting());
        timers.advance(Milliseconds(1));
        QVERIFY(allSent && !sender.isWaiting());
        timers.advance(Milliseconds(11));
        sender.send("a"); // the pause of the last line is not over
        timers.advance(Milliseconds(100));
        sender.send("b");
        sender.send("c");
        sender.clear();
        timers.advance(Milliseconds(100));
        sender.send("d");
        QCOMPARE(sent, (QByteArrayList{"0 config", "16 at+cmgr=1", "35 OK", "47 a", "146 b", "246 d"}));

        // No line is too long by itself; what waits is bounded.
        QVERIFY(sender.send(QByteArray(PacedSender::longestQueue * 3, 'x')));
        QVERIFY(!sender.send("too much"));

        // The pause counts from when the line has left; one that leaves after the end starts none.
        sender.clear();
        sent.clear();
        isBusy = true;
        sender.send("e");
        sender.send("f");
        timers.advance(Milliseconds(500));
        leave[0]();
        timers.advance(Milliseconds(11));
        QCOMPARE(sent, (QByteArrayList{"246 e", "757 f"}));
        sender.clear();
        sender.send("g");
        sender.send("h");
        leave[1]();
        timers.advance(Milliseconds(100));
        QCOMPARE(sent.last(), "757 g");
    }

    void aSessionClaimsForWhatWaitsAndRepeatsWhatWasNotTaken()
    {
        test::SilentLine line;
        test::ManualTimers timers;
        ModuleSession session(line, timers, test::fixedEnvironment(), LineKind::Ethernet);
        QSignalSpy sent(&session, &ModuleSession::commandSent);
        const auto hear = [&](const QByteArray &bytes) {
            line.sent.clear();
            Q_EMIT line.received(bytes);
            timers.advance(std::chrono::seconds(1));
            return line.sent;
        };
        QVERIFY(session.open(u"module"_s));
        QCOMPARE(line.sent, "config\r\n");
        timers.advance(std::chrono::seconds(14)); // after 2, 4 and 8 s it is called again until it is heard
        QCOMPARE(line.sent, QByteArray("config\r\n").repeated(4));
        QCOMPARE(hear("at+cpin?\r"), "at+cpin?\r\nOK\r\n"); // nothing waits
        timers.advance(std::chrono::minutes(1));
        QCOMPARE(line.sent, "at+cpin?\r\nOK\r\n");
        session.place(u"§1"_s);
        QCOMPARE(hear("at+cpin?\r"), "config\r\n");
        QCOMPARE(hear("at+cmgr=1\r"), "at+cmgr=1\r\n,\"+IP\"\r\n\xA7"
                                      "1\r\nOK\r\n");
        session.setExclusive(true);
        hear("donE\r");
        QCOMPARE(hear("at+cpin?\r"), "config\r\n");

        Configuration configuration;
        session.startTransmission(configuration, false);
        QVERIFY(hear("at+cmgr=1\r").contains("V,\xA7"));
        const QByteArray second = hear("at+cmgr=1\r");
        QCOMPARE(session.step(), 2);
        hear("donE\r"); // it has not gone on from the second command
        QCOMPARE(hear("at+cpin?\r"), "config\r\n");
        QCOMPARE(hear("at+cmgr=1\r"), second);

        // A doubled datagram is no second reading, and what waits is not continued on another connection.
        sent.clear();
        Q_EMIT line.received("at+cmgr=1\r");
        Q_EMIT line.received("at+cmgr=1\r");
        QCOMPARE(sent.count(), 1);
        session.close();
        QCOMPARE(hear(""), "");

        QVERIFY(session.open(u"module"_s));
        const QByteArray longLine(3000, 'x');
        QCOMPARE(hear(longLine + '\r'), longLine + "\r\n"); // echoed like any other
    }

    void aPromptStartConfirmsTheClosingCommandAndALateOneDoesNot()
    {
        test::SilentLine line;
        test::ManualTimers timers;
        ModuleSession session(line, timers, test::fixedEnvironment(), LineKind::Ethernet);
        const QSignalSpy transmitted(&session, &ModuleSession::transmitted);
        const auto hear = [&](const QByteArray &bytes, int ms = 400) {
            line.sent.clear();
            Q_EMIT line.received(bytes);
            timers.advance(Milliseconds(ms));
            return line.sent;
        };
        QVERIFY(session.open(u"module"_s));
        Configuration configuration;
        configuration.versionText = u"as it is"_s;
        session.startTransmission(configuration, true, 77);
        hear("at+cpin?\r");
        QVERIFY(hear("at+cmgr=1\r").contains("\r\nT,"));
        hear("at+cmgs=\"+IP\"\r");
        hear("OK: T\x1A");
        QVERIFY(hear("at+cmgr=1\r", 3000).contains("\r\nv,as it is\r\n"));
        hear("donE\r"); // it waited in vain: some line did not reach it
        QCOMPARE(hear("at+cpin?\r"), "config\r\n");
        // A datagram of that start may still be on its way.
        QCOMPARE(hear("at+cmgr=1\r"), "at+cmgr=1\r\nOK\r\n");
        hear("at+cpin?\r", 1000);
        QVERIFY(hear("at+cmgr=1\r").contains("\r\nv,as it is\r\n"));
        QVERIFY(hear("at+cmgr=1\r").contains("\r\nv,as it is\r\n")); // its header was lost
        QCOMPARE(transmitted.size(), 0);
        QCOMPARE(hear("at+cpin?\r"), "at+cpin?\r\nOK\r\n"); // nobody wants it any more
        QCOMPARE(transmitted.size(), 1);
        QCOMPARE(session.transmission().report().verdict(), TransmissionReport::Verdict::Whole);
    }
};

QTEST_GUILESS_MAIN(EthernetDialogueTest)
#include "ethernet_dialogue_test.moc"
