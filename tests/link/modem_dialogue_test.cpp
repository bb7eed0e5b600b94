#include "link/conversation_log.h"
#include "link/line_assembler.h"
#include "link/modem_dialogue.h"
#include "link/module_session.h"
#include "link/port_search.h"
#include "support/environment.h"
#include "support/manual_timers.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <deque>

using namespace ktr;
using namespace Qt::StringLiterals;
using Action = ModemDialogue::Action;

namespace {

/// Texts of what a line leads to: "> " for sent lines, "= " for anything else but the log.
QStringList outcome(ModemDialogue &dialogue, const QString &line)
{
    QStringList texts;
    for (const Action &action : dialogue.lineReceived(line)) {
        if (const auto *send = std::get_if<ModemDialogue::Send>(&action)) {
            texts += u"> "_s + send->line;
        } else if (const auto *reply = std::get_if<ModemDialogue::Reply>(&action)) {
            texts += u"= reply %1 %2 %3"_s.arg(static_cast<int>(reply->kind)).arg(reply->number, reply->text);
        } else if (const auto *sent = std::get_if<ModemDialogue::CommandSent>(&action)) {
            texts += u"= sent %1 %2"_s.arg(sent->step.value_or(-1)).arg(sent->command);
        } else if (const auto *refused = std::get_if<ModemDialogue::CommandRefused>(&action)) {
            texts += u"= refused %1"_s.arg(refused->step.value_or(-1));
        } else if (std::holds_alternative<ModemDialogue::Caught>(action)) {
            texts += u"= caught"_s;
        } else if (std::holds_alternative<ModemDialogue::NothingToRead>(action)) {
            texts += u"= nothing"_s;
        } else if (std::holds_alternative<ModemDialogue::FirmwareAnnounced>(action)) {
            texts += u"= firmware"_s;
        } else if (const auto *confirmed = std::get_if<ModemDialogue::ServiceConfirmed>(&action)) {
            texts += u"= confirmed "_s + confirmed->text;
        }
    }
    return texts;
}

/// A line whose other end is the test.
class ScriptedTransport : public Transport
{
public:
    Status open(const QString &address) override
    {
        opened += address;
        if (refused.contains(address)) {
            return Status::failed(address + u": the port is already in use"_s);
        }
        present = address;
        return Status::done();
    }
    void close() override { present.clear(); }
    bool isOpen() const override { return !present.isEmpty(); }
    void send(const QByteArray &bytes) override { sent += bytes; }
    void whenDrained(std::function<void()> drained) override { drained(); }

    QStringList opened;
    QStringList refused;
    QString present;
    QByteArray sent;
};

} // namespace

class ModemDialogueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreCompleteAtTheirEndHoweverTheyArrive()
    {
        const QByteArray stream = "at+cpin?\rat+cmgr=1\rtext\x1Arest";
        // Cut in two at every position: all bytes up to the last end come out in order, the rest waits.
        for (qsizetype cut = 0; cut <= stream.size(); ++cut) {
            LineAssembler lines;
            QByteArray out;
            for (const QByteArray &piece : {stream.left(cut), stream.mid(cut)}) {
                if (const auto line = lines.push(piece)) {
                    QVERIFY(line->endsWith('\r') || line->endsWith('\x1A'));
                    out += *line;
                }
            }
            QCOMPARE(out, stream.left(stream.lastIndexOf('\x1A') + 1));
            QCOMPARE(lines.push("\r"), "rest\r");
        }
        LineAssembler bytewise;
        QByteArrayList single;
        for (const char byte : stream) {
            if (const auto line = bytewise.push(QByteArrayView(&byte, 1))) {
                single += *line;
            }
        }
        QCOMPARE(single, (QByteArrayList{"at+cpin?\r", "at+cmgr=1\r", "text\x1A"}));
    }

    void aLineWithoutEndIsDroppedBeforeItFillsTheMemory()
    {
        LineAssembler lines;
        for (int i = 0; i < 1000; ++i) {
            QVERIFY(!lines.push(QByteArray(1000, 'x')));
        }
        const auto line = lines.push("at+cpin?\r");
        QVERIFY(line && line->endsWith("at+cpin?\r"));
        QVERIFY(line->size() <= LineAssembler::longestLine + 1009);
        QCOMPARE(lines.dropped() + line->size(), 1000 * 1000 + 9);
    }

    void aTransmissionGoesLikeThis()
    {
        std::deque<StepCommand> commands{{0, u"V,§"_s}, {1, QString(161, u'n')}, {2, u"g,1,1"_s}};
        ModemDialogue dialogue([&]() -> std::optional<StepCommand> {
            if (commands.empty()) {
                return std::nullopt;
            }
            const StepCommand next = commands.front();
            commands.pop_front();
            return next;
        });
        const QString reads = u"at+cmgr=1\r"_s;
        QCOMPARE(outcome(dialogue, u"at+cpin?\r"_s),
                 (QStringList{u"> at+cpin?"_s, u"= caught"_s, u"> config"_s, u"> OK"_s}));
        QCOMPARE(outcome(dialogue, reads),
                 (QStringList{u"> at+cmgr=1"_s, u"> ,\"+IP\""_s, u"> V,§"_s, u"= sent 0 V,§"_s, u"> OK"_s}));
        // The module's answer, as two lines and as one: it is told once.
        QCOMPARE(outcome(dialogue, u"at+cmgs=\"+4930\"\r"_s),
                 (QStringList{u"> at+cmgs=\"+4930\""_s, u"> OK"_s}));
        QCOMPARE(outcome(dialogue, u"V,2.1 --> 05\x1A"_s),
                 (QStringList{u"> V,2.1 --> 05"_s, u"= reply 0 +4930 V,2.1 --> 05"_s, u"> OK"_s}));
        QCOMPARE(outcome(dialogue, u"at+cmgs=\"+IP\"\rOK: §,3,0\x1A"_s),
                 (QStringList{u"> at+cmgs=\"+IP\"\rOK: §,3,0"_s, u"= reply 0 +IP OK: §,3,0"_s,
                              u"= confirmed 3,0"_s, u"> OK"_s}));
        // An over-long command is left out and the next one follows on the next reading.
        QCOMPARE(outcome(dialogue, reads), (QStringList{u"> at+cmgr=1"_s, u"= refused 1"_s, u"> OK"_s}));
        QCOMPARE(outcome(dialogue, u"noise"_s + reads).value(3), "= sent 2 g,1,1");
        QCOMPARE(outcome(dialogue, reads), (QStringList{u"> at+cmgr=1"_s, u"= nothing"_s, u"> OK"_s}));
    }

    void otherLinesOfTheModuleAreTold()
    {
        const QList<std::pair<QString, QString>> rows{
            {u"H,1,0911151400,1,12.5\r"_s, u"= reply 1  H,1,0911151400,1,12.5"_s},
            {u"at+cmgs=\"+IP\"\rH,1,2\x1A"_s, u"= reply 1 +IP H,1,2"_s},
            {u"at+cmgs=\"+IP\"\rM,TEMP HIGH, pump 1\x1A"_s, u"= reply 0 +IP M,TEMP HIGH, pump 1"_s},
            {u"+49 --> M,fail\r"_s, u"= reply 2 +49 --> M,fail"_s},
            {u"--> M,fail\r"_s, u"= reply 2  --> M,fail"_s},
            {u"<-- M,fail\r"_s, u"= reply 2  <-- M,fail"_s},
            {u"--> M,a\r+49 --> M,b\r"_s, u"= reply 2  --> M,a\r+49 --> M,b"_s},
            {u"+49 --> M,a\r--> M,b\r"_s, u"= reply 2 +49 --> M,a\r--> M,b"_s},
            {u"+49\r> --> M,a --> b\r"_s, u"= reply 2  --> M,a --> b"_s},
            {u"--> H,1,0911151400,1,12.5\r"_s, u"= reply 1  --> H,1,0911151400,1,12.5"_s},
            {u"OK: §,0,6\r"_s, u"= confirmed 0,6"_s},
            // A report's text confirms nothing.
            {u"at+cmgs=\"+49\"\rM,pump OK: §,0,6\x1A"_s, u"= reply 0 +49 M,pump OK: §,0,6"_s},
            {u" --> >M,pump OK: §,0,6\r"_s, u"= reply 2  --> >M,pump OK: §,0,6"_s},
            // A text may hold anything; a half one is told, and is no answer.
            {u"at+cmgs=\"+49\"\rM,at+1\x1A"_s, u"= reply 0 +49 M,at+1"_s},
            {u"at+cmgs=\"+49\"\rM,half\rat+cpas\r"_s, u"= reply 2 +49 M,half"_s}};
        for (const auto &[line, told] : rows) {
            ModemDialogue dialogue([] { return std::nullopt; });
            QCOMPARE(outcome(dialogue, line), (QStringList{u"> "_s + line.chopped(1), told, u"> OK"_s}));
        }
    }

    void aReplyInTheMiddleOfAnSmsIsToldByItself()
    {
        ModemDialogue dialogue([] { return std::nullopt; });
        outcome(dialogue, u"at+cmgs=\"+IP\"\r"_s);
        QCOMPARE(outcome(dialogue, u"+49 --> M,fail\r"_s).value(1), "= reply 2 +49 --> M,fail");
        QCOMPARE(outcome(dialogue, u"--> M,two fail\r"_s).value(1), "= reply 2  --> M,two fail");
        QCOMPARE(outcome(dialogue, u"<-- V,1,X,KTR\r"_s).value(1), "= reply 2  <-- V,1,X,KTR");
        QCOMPARE(outcome(dialogue, u"H,1,0911151400,1,2\r"_s).value(1), "= reply 1  H,1,0911151400,1,2");
        QCOMPARE(outcome(dialogue, u"OK: G,1\x1A"_s).value(1), "= reply 0 +IP OK: G,1");
    }

    void aReplyIsShownWithItsNumberAndItsMarker()
    {
        using Kind = ModemDialogue::ReplyKind;
        using Reply = ModemDialogue::Reply;
        QCOMPARE((Reply{Kind::Sms, u"+IP"_s, u"OK: G,1"_s}.shown()), "+IP <-- OK: G,1");
        QCOMPARE((Reply{Kind::Sms, u"+4917012345"_s, u"M,fail"_s}.shown()), "+4917012345 <-- M,fail");
        QCOMPARE((Reply{Kind::Sms, u"+IP"_s, u" --> V,1"_s}.shown()), "+IP --> V,1");
        QCOMPARE((Reply{Kind::Message, u"+49"_s, u"--> M,fail"_s}.shown()), "+49 --> M,fail");
        QCOMPARE((Reply{Kind::History, {}, u"H,1"_s}.shown()), " <-- H,1");
        QCOMPARE((Reply{Kind::Message, {}, u"failed (ERROR)"_s}.shown()), "failed (ERROR)");
    }

    void theLineFeedBehindALineIsNotEchoedWithTheNext()
    {
        for (const QByteArrayList &pieces : {QByteArrayList{"at+cpas\r\n", "at\r\n"},
                                             {"at+cpas\r", "\nat\r", "\n"},
                                             {"at+cpas\r", "\n", "at\r\n"}}) {
            ScriptedTransport line;
            test::ManualTimers timers;
            ModuleSession session(line, timers, test::fixedEnvironment());
            for (const QByteArray &piece : pieces) {
                Q_EMIT line.received(piece);
            }
            QCOMPARE(line.sent, "at+cpas\r\nOK\r\nat\r\nOK\r\n");
        }
    }

    void anSmsThatIsBrokenOffIsNotMixedWithTheNextLine()
    {
        ModemDialogue dialogue([] { return std::nullopt; });
        outcome(dialogue, u"at+cmgs=\"+IP\"\r"_s);
        QCOMPARE(outcome(dialogue, u"at+cpin?\r"_s).value(1), "= caught");
        QCOMPARE(outcome(dialogue, u"stray\x1A"_s), (QStringList{u"> stray"_s, u"> OK"_s}));
    }

    void aServiceCommandWaitsForTheNextReading()
    {
        ModemDialogue dialogue([] { return std::nullopt; });
        dialogue.place(u"§88"_s);
        QCOMPARE(outcome(dialogue, u"+CSQ: 18,0\r"_s).size(), 2);
        QCOMPARE(outcome(dialogue, u"at+cmgr=1\r"_s).mid(3),
                 (QStringList{u"= sent -1 §88"_s, u"= firmware"_s, u"> OK"_s}));
        QCOMPARE(dialogue.outgoing(), "");
    }

    void noLogLineShowsAPinOrAControlCharacter()
    {
        QCOMPARE(logText(u"com <---- at+cpin=\"4711\"\r"_s), "at+cpin=\"****\"");
        QCOMPARE(logText(u"com <---- at+cpwd=\"SC\",\"4711\",\"1\"\r"_s), "at+cpwd=\"****\"");
        QCOMPARE(logText(u"+IP <-- >n,4711,PW"_s), "+IP <-- >n,****,PW");
        QCOMPARE(logText(u"com <---- at+cpin?\r"_s), "com <---- at+cpin?");
        QCOMPARE(logText(u"com ----> n,4711,PW,+49"_s), "com ----> n,****,PW,+49");
        QCOMPARE(logText(u"N,4711,PW,+49"_s), "N,****,PW,+49");
        QCOMPARE(logText(u"com ----> g,1,1,0"_s), "com ----> g,1,1,0");
        QCOMPARE(logText(u"com <---- a\rtext\x1A"_s), "com <---- a\\rtext\\x1a");
        QCOMPARE(logText(u"com <---- fail: N,4711,PW: expected"_s), "com <---- fail: N,****,PW: expected");
        QCOMPARE(withoutPin(u"+49 --> N,4711,PW"_s), "+49 --> N,****,PW");
        const QString terminal = u"\x1B[2J\u009B31m\x7F"_s; // commands to it
        QCOMPARE(logText(terminal), "\\x1b[2J\\x9b31m\\x7f");
        QCOMPARE(fromLogText(logText(terminal)), terminal);
        QCOMPARE(logText(u"com <---- b\r\n"_s), "com <---- b");
    }

    void theSessionSendsWhatALineLeadsToAndTellsItsEnd()
    {
        ScriptedTransport line;
        test::ManualTimers timers;
        ModuleSession session(line, timers, test::fixedEnvironment());
        QSignalSpy transmitted(&session, &ModuleSession::transmitted);
        QSignalSpy silent(&session, &ModuleSession::stalled);
        Configuration configuration;
        configuration.versionText = u"Käse"_s;
        QByteArray drained; // what one line leads to is one piece, also where it is waited for
        connect(&session, &ModuleSession::commandSent, &session,
                [&] { session.whenDrained([&] { drained = line.sent; }); });
        session.startTransmission(configuration, false, 77);
        session.setTimeout(Milliseconds(60000));
        timers.advance(Milliseconds(59999));
        Q_EMIT line.received("at+cmgr=1\r");
        QCOMPARE(line.sent, "at+cmgr=1\r\n,\"+IP\"\r\nt,09,11,15,14,05,37,7\r\nOK\r\n");
        QCOMPARE(drained, line.sent);
        line.sent.clear();
        timers.advance(Milliseconds(59999));
        QCOMPARE(transmitted.count() + silent.count(), 0);
        Q_EMIT line.received("at+cm");
        Q_EMIT line.received("gr=1\r");
        QCOMPARE(line.sent, "at+cmgr=1\r\n,\"+IP\"\r\nv,K\xE4se\r\nOK\r\n");
        QCOMPARE(transmitted.count(), 1);
        QCOMPARE(session.step(), steps::idle);
        timers.advance(Milliseconds(60000));
        QCOMPARE(silent.count(), 1);
    }

    void theSearchGoesRoundThePortsAndComesBackToOneThatReturns()
    {
        ScriptedTransport line;
        line.refused = {u"A"_s};
        test::ManualTimers timers;
        QStringList ports{u"A"_s, u"B"_s, u"C"_s};
        PortSearch search(line, timers, [&ports] { return ports; });
        QSignalSpy refused(&search, &PortSearch::refused);
        search.start();
        QCOMPARE(line.opened, (QStringList{u"A"_s, u"B"_s}));
        QCOMPARE(refused.count(), 1);
        timers.advance(PortSearch::tickInterval * PortSearch::ticksPerPort);
        QCOMPARE(search.port(), "C");
        // Round once more: the refused port is tried again and told no second time.
        timers.advance(PortSearch::tickInterval * PortSearch::ticksPerPort);
        QCOMPARE(search.port(), "B");
        QCOMPARE(refused.count(), 1);

        ports = {u"A"_s};
        timers.advance(PortSearch::tickInterval);
        QCOMPARE(search.port(), "");
        QVERIFY(!line.isOpen());
        ports = {u"A"_s, u"B"_s};
        timers.advance(PortSearch::tickInterval);
        QCOMPARE(search.port(), "B");
        search.stop();
        line.opened.clear();
        timers.advance(std::chrono::minutes(10));
        QCOMPARE(line.opened.size() + refused.count() - 1, 0);
        QVERIFY(line.isOpen());
    }

    void theSearchGivesUpAfter250Ticks()
    {
        ScriptedTransport line;
        test::ManualTimers timers;
        PortSearch search(line, timers, [] { return QStringList{u"A"_s}; });
        QSignalSpy gaveUp(&search, &PortSearch::gaveUp);
        search.start();
        timers.advance(PortSearch::tickInterval * 248);
        QCOMPARE(gaveUp.count(), 0);
        QVERIFY(line.isOpen());
        timers.advance(PortSearch::tickInterval);
        QCOMPARE(gaveUp.count(), 1);
        QVERIFY(!line.isOpen() && !search.isRunning());
    }

    void theLogIsAppendedAndAnUnwritableOneIsToldOnly()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"log.txt"_s);
        for (const QString line : {"com <---- at+cpin?\r", "com ----> OK"}) {
            ConversationLog log;
            QVERIFY(log.open(path));
            log.write(test::fixedEnvironment().now(), line);
            QVERIFY(log.status());
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(),
                 "2009-11-15 14:05:35.000 com <---- at+cpin?\n2009-11-15 14:05:35.000 com ----> OK\n");

        ConversationLog log;
        QVERIFY(!log.open(folder.path()));
        log.write(QDateTime(), u"x"_s);
        ConversationLog full;
        QVERIFY(full.open(u"/dev/full"_s));
        full.write(QDateTime(), u"x"_s);
        QVERIFY(!full.status());
    }
};

QTEST_GUILESS_MAIN(ModemDialogueTest)
#include "modem_dialogue_test.moc"
