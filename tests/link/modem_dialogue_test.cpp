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
using Action = ModemDialogue::Action;

namespace {

/// Texts of what a line leads to: "> " for sent lines, "= " for anything else but the log.
QStringList outcome(ModemDialogue &dialogue, const QString &line)
{
    QStringList texts;
    for (const Action &action : dialogue.lineReceived(line)) {
        if (const auto *send = std::get_if<ModemDialogue::Send>(&action)) {
            texts += QStringLiteral("> ") + send->line;
        } else if (const auto *reply = std::get_if<ModemDialogue::Reply>(&action)) {
            texts += QStringLiteral("= reply %1 %2 %3")
                         .arg(static_cast<int>(reply->kind))
                         .arg(reply->number, reply->text);
        } else if (const auto *sent = std::get_if<ModemDialogue::CommandSent>(&action)) {
            texts += QStringLiteral("= sent %1 %2").arg(sent->step.value_or(-1)).arg(sent->command);
        } else if (const auto *refused = std::get_if<ModemDialogue::CommandRefused>(&action)) {
            texts += QStringLiteral("= refused %1").arg(refused->step.value_or(-1));
        } else if (std::holds_alternative<ModemDialogue::Caught>(action)) {
            texts += QStringLiteral("= caught");
        } else if (std::holds_alternative<ModemDialogue::NothingToRead>(action)) {
            texts += QStringLiteral("= nothing");
        } else if (std::holds_alternative<ModemDialogue::FirmwareAnnounced>(action)) {
            texts += QStringLiteral("= firmware");
        } else if (const auto *confirmed = std::get_if<ModemDialogue::ServiceConfirmed>(&action)) {
            texts += QStringLiteral("= confirmed ") + confirmed->text;
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
            return Status::failed(address + QStringLiteral(": the port is already in use"));
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
        std::deque<StepCommand> commands{
            {0, QStringLiteral("V,§")}, {1, QString(161, u'n')}, {2, QStringLiteral("g,1,1")}};
        ModemDialogue dialogue([&]() -> std::optional<StepCommand> {
            if (commands.empty()) {
                return std::nullopt;
            }
            const StepCommand next = commands.front();
            commands.pop_front();
            return next;
        });
        const QString reads = QStringLiteral("at+cmgr=1\r");
        QCOMPARE(outcome(dialogue, QStringLiteral("at+cpin?\r")),
                 (QStringList{QStringLiteral("> at+cpin?"), QStringLiteral("= caught"),
                              QStringLiteral("> config"), QStringLiteral("> OK")}));
        QCOMPARE(
            outcome(dialogue, reads),
            (QStringList{QStringLiteral("> at+cmgr=1"), QStringLiteral("> ,\"+IP\""), QStringLiteral("> V,§"),
                         QStringLiteral("= sent 0 V,§"), QStringLiteral("> OK")}));
        // The module's answer, as two lines and as one: it is told once.
        QCOMPARE(outcome(dialogue, QStringLiteral("at+cmgs=\"+4930\"\r")),
                 (QStringList{QStringLiteral("> at+cmgs=\"+4930\""), QStringLiteral("> OK")}));
        QCOMPARE(outcome(dialogue, QStringLiteral("V,2.1 --> 05\x1A")),
                 (QStringList{QStringLiteral("> V,2.1 --> 05"),
                              QStringLiteral("= reply 0 +4930 V,2.1 --> 05"), QStringLiteral("> OK")}));
        QCOMPARE(outcome(dialogue, QStringLiteral("at+cmgs=\"+IP\"\rOK: §,3,0\x1A")),
                 (QStringList{QStringLiteral("> at+cmgs=\"+IP\"\rOK: §,3,0"),
                              QStringLiteral("= reply 0 +IP OK: §,3,0"), QStringLiteral("= confirmed 3,0"),
                              QStringLiteral("> OK")}));
        // An over-long command is left out and the next one follows on the next reading.
        QCOMPARE(outcome(dialogue, reads),
                 (QStringList{QStringLiteral("> at+cmgr=1"), QStringLiteral("= refused 1"),
                              QStringLiteral("> OK")}));
        QCOMPARE(outcome(dialogue, QStringLiteral("noise") + reads).value(3), "= sent 2 g,1,1");
        QCOMPARE(outcome(dialogue, reads),
                 (QStringList{QStringLiteral("> at+cmgr=1"), QStringLiteral("= nothing"),
                              QStringLiteral("> OK")}));
    }

    void otherLinesOfTheModuleAreTold_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("told");
        QTest::newRow("history") << "H,1,0911151400,1,12.5\r"
                                 << "= reply 1  H,1,0911151400,1,12.5";
        QTest::newRow("history by SMS") << "at+cmgs=\"+IP\"\rH,1,2\x1A"
                                        << "= reply 1 +IP H,1,2";
        QTest::newRow("message") << "\n+49 --> M,fail\r"
                                 << "= reply 2  --> M,fail";
        QTest::newRow("confirmation") << "OK: §,0,6\r"
                                      << "= confirmed 0,6";
    }
    void otherLinesOfTheModuleAreTold()
    {
        QFETCH(QString, line);
        QFETCH(QString, told);
        ModemDialogue dialogue([] { return std::nullopt; });
        QCOMPARE(outcome(dialogue, line),
                 (QStringList{QStringLiteral("> ") + line.chopped(1), told, QStringLiteral("> OK")}));
    }

    void anSmsThatIsBrokenOffIsNotMixedWithTheNextLine()
    {
        ModemDialogue dialogue([] { return std::nullopt; });
        outcome(dialogue, QStringLiteral("at+cmgs=\"+IP\"\r"));
        QCOMPARE(outcome(dialogue, QStringLiteral("at+cpin?\r")).value(1), "= caught");
        QCOMPARE(outcome(dialogue, QStringLiteral("stray\x1A")),
                 (QStringList{QStringLiteral("> stray"), QStringLiteral("> OK")}));
    }

    void aServiceCommandWaitsForTheNextReading()
    {
        ModemDialogue dialogue([] { return std::nullopt; });
        dialogue.place(QStringLiteral("§88"));
        QCOMPARE(outcome(dialogue, QStringLiteral("+CSQ: 18,0\r")).size(), 2);
        QCOMPARE(outcome(dialogue, QStringLiteral("at+cmgr=1\r")).mid(3),
                 (QStringList{QStringLiteral("= sent -1 §88"), QStringLiteral("= firmware"),
                              QStringLiteral("> OK")}));
        QCOMPARE(dialogue.outgoing(), "");
    }

    void noLogLineShowsAPinOrAControlCharacter_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("logged");
        QTest::newRow("PIN entry") << "com <---- at+cpin=\"4711\"\r"
                                   << "at+cpin=\"****\"";
        QTest::newRow("PIN question") << "com <---- at+cpin?\r"
                                      << "com <---- at+cpin?";
        QTest::newRow("numbers") << "com ----> n,4711,PW,+49"
                                 << "com ----> n,****,PW,+49";
        QTest::newRow("numbers, answered") << "N,4711,PW,+49"
                                           << "N,****,PW,+49";
        QTest::newRow("other command") << "com ----> g,1,1,0"
                                       << "com ----> g,1,1,0";
        QTest::newRow("Ctrl-Z") << "com <---- text\x1A"
                                << "com <---- text\\x1a";
        QTest::newRow("lines in one piece") << "com <---- a\rb\r\n"
                                            << "com <---- a\\rb";
    }
    void noLogLineShowsAPinOrAControlCharacter()
    {
        QFETCH(QString, line);
        QFETCH(QString, logged);
        QCOMPARE(logText(line), logged);
    }

    void theSessionSendsWhatALineLeadsToAndTellsItsEnd()
    {
        ScriptedTransport line;
        test::ManualTimers timers;
        ModuleSession session(line, timers, test::fixedEnvironment());
        QSignalSpy transmitted(&session, &ModuleSession::transmitted);
        QSignalSpy silent(&session, &ModuleSession::silent);
        Configuration configuration;
        configuration.versionText = QStringLiteral("Käse");
        session.startTransmission(configuration, false, 77);
        session.setTimeout(Milliseconds(60000));
        timers.advance(Milliseconds(59999));
        Q_EMIT line.received("at+cmgr=1\r");
        QCOMPARE(line.sent, "at+cmgr=1\r\n,\"+IP\"\r\nt,09,11,15,14,05,37,7\r\nOK\r\n");
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
        line.refused = {QStringLiteral("A")};
        test::ManualTimers timers;
        QStringList ports{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};
        PortSearch search(line, timers, [&ports] { return ports; });
        QSignalSpy refused(&search, &PortSearch::refused);
        search.start();
        QCOMPARE(line.opened, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
        QCOMPARE(refused.count(), 1);
        timers.advance(PortSearch::tickInterval * PortSearch::ticksPerPort);
        QCOMPARE(search.port(), "C");
        // Round once more: the refused port is tried again and told no second time.
        timers.advance(PortSearch::tickInterval * PortSearch::ticksPerPort);
        QCOMPARE(search.port(), "B");
        QCOMPARE(refused.count(), 1);

        ports = {QStringLiteral("A")};
        timers.advance(PortSearch::tickInterval);
        QCOMPARE(search.port(), "");
        QVERIFY(!line.isOpen());
        ports = {QStringLiteral("A"), QStringLiteral("B")};
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
        PortSearch search(line, timers, [] { return QStringList{QStringLiteral("A")}; });
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
        const QString path = folder.filePath(QStringLiteral("log.txt"));
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
        log.write(QDateTime(), QStringLiteral("x"));
        ConversationLog full;
        QVERIFY(full.open(QStringLiteral("/dev/full")));
        full.write(QDateTime(), QStringLiteral("x"));
        QVERIFY(!full.status());
    }
};

QTEST_GUILESS_MAIN(ModemDialogueTest)
#include "modem_dialogue_test.moc"
